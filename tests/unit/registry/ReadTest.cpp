#include "TestKeys.h"

#include "frame/Ansi.h"
#include "frame/Raises.h"
#include "platform/TestHook.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

namespace orbex {
namespace {

using namespace std::string_literals;
using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::NothingRaised;
using testing::RaisedNumber;
using testing::TestKey;

constexpr auto Whole = std::string::npos;

Currency Number(std::int64_t whole) { return {whole * 10000}; }

StringArray Strings(std::initializer_list<const wchar_t*> items) {
    StringArray array;
    for (const wchar_t* item : items) array.items.emplace_back(item);
    return array;
}

std::string LittleEndian(std::int64_t number, int width) {
    std::string bytes;
    for (int i = 0; i < width; ++i) bytes += static_cast<char>((number >> (8 * i)) & 0xFF);
    return bytes;
}

// Each stored shape, written raw, read back with a default that must not come back.
TEST(ReadValue, EveryStoredTypeReadsBackByItsOwnRule) {
    ASSERT_EQ(_putenv("OrbexRead=C:\\expanded"), 0);
    struct Row {
        const char* name;
        Dword type;
        std::string bytes;
        std::size_t size;  // bytes handed to the platform, Whole for all of them
        Boolean expand;
        Variant expected;
        Long raised;
        std::size_t queries;  // the probe, and the read when there is one
    };
    const Long none = NothingRaised;
    const Row rows[] = {
        {"sz", 1, "abc\0"s, Whole, True, String(L"abc"), none, 2},
        {"sz empty", 1, ""s, Whole, True, String(), none, 2},
        {"sz without terminator", 1, "abX"s, 2, True, String(L"ab"), none, 2},
        {"sz inner nul", 1, "ab\0cd\0"s, Whole, True, String(L"ab"), none, 2},
        {"expand off", 2, "%OrbexRead%\\x\0"s, Whole, False, String(L"%OrbexRead%\\x"), none, 2},
        {"expand on", 2, "%OrbexRead%\\x\0"s, Whole, True, String(L"C:\\expanded\\x"), none, 2},
        {"expand unknown", 2, "%OrbexNoSuch%\0"s, Whole, True, String(L"%OrbexNoSuch%"), none, 2},
        {"expand inner nul", 2, "%OrbexRead%\0b\0"s, Whole, True, String(L"C:\\expanded"), none, 2},
        {"multi two", 7, "a\0b\0\0"s, Whole, True, Strings({L"a", L"b"}), none, 2},
        {"multi middle empty", 7, "a\0\0b\0\0"s, Whole, True, Strings({L"a", L"", L"b"}), none, 2},
        {"multi two nuls", 7, "\0\0"s, Whole, True, Strings({}), none, 2},
        {"multi one nul", 7, "\0"s, Whole, True, Strings({L"", L""}), none, 2},
        {"multi one terminator", 7, "a\0"s, Whole, True, Strings({L"a", L""}), none, 2},
        {"multi size 0", 7, ""s, Whole, True, Strings({}), none, 2},
        {"binary", 3, "\x01\x00\xFF"s, Whole, True, ByteArray{0, {1, 0, 255}}, none, 2},
        {"binary size 0", 3, ""s, Whole, True, ByteArray{0, {0}}, none, 1},
        {"dword all bits", 4, "\xFF\xFF\xFF\xFF"s, Whole, True, Long{-1}, none, 2},
        {"dword bit 31", 4, "\x01\x00\x00\x80"s, Whole, True, Long{-2147483647}, none, 2},
        {"dword short", 4, "\x34\x12"s, Whole, True, Long{0x1234}, none, 2},
        {"dword long", 4, "\x01\x02\x03\x04\x05\x06"s, Whole, True, Long{0x04030201}, none, 2},
        {"qword largest", 11, LittleEndian(922337203685477, 8), Whole, True,
         Number(922337203685477), none, 2},
        {"qword smallest", 11, LittleEndian(-922337203685477, 8), Whole, True,
         Number(-922337203685477), none, 2},
        {"qword beyond", 11, LittleEndian(922337203685478, 8), Whole, True, Empty{}, RunTime::Overflow, 2},
        {"qword below", 11, LittleEndian(-922337203685478, 8), Whole, True, Empty{}, RunTime::Overflow, 2},
        {"qword all bits", 11, LittleEndian(-1, 8), Whole, True, Number(-1), none, 2},
        {"qword long", 11, LittleEndian(5, 8) + "\x07\x07"s, Whole, True, Number(5), none, 2},
        {"qword short", 11, "\x05\x01"s, Whole, True, Number(0x105), none, 2},
        {"none with data", 0, "xyz"s, Whole, True, Empty{}, none, 1},
        {"big-endian dword", 5, "\x00\x00\x00\x01"s, Whole, True, Empty{}, none, 1},
        {"type 42", 42, "q"s, Whole, True, Empty{}, none, 1},
    };
    TestKey test;
    RegistryKey key;
    test.Attach(key);
    for (const Row& row : rows) {
        test.SetRaw(row.name, row.type, row.bytes, row.size);
        Long dataType = -99;
        Variant got;
        Recorder recorder;
        const Long raised = RaisedNumber([&] {
            got = key.GetValueEx(FromAnsi(row.name), dataType, Long{7}, row.expand);
        });
        EXPECT_EQ(raised, row.raised) << row.name;
        if (raised == none) {
            EXPECT_EQ(got, row.expected) << row.name;
        }
        EXPECT_EQ(dataType, static_cast<Long>(row.type)) << row.name;
        EXPECT_EQ(recorder.count("RegQueryValueExA"), row.queries) << row.name;
        // A value that is only probed leaves the probe's "more data" behind.
        EXPECT_EQ(key.ReadLastError(), row.queries == 1 && !row.bytes.empty() ? 234 : 0) << row.name;
    }
}

// A missing value, or any key the probe fails on, gives the default as it was passed.
TEST(ReadValue, FailedProbeGivesTheDefaultWithItsOwnSubtype) {
    TestKey test;
    test.SetRaw("here", 1, "x\0"s);
    RegistryKey open;
    test.Attach(open);
    RegistryKey closed;  // passes the closed-key test, but its handle is gone
    test.Attach(closed);
    closed.CloseKey();
    struct Row { RegistryKey* key; const wchar_t* name; Variant given, expected; Long lastError; };
    for (const Row& row : {Row{&open, L"missing", Long{7}, Long{7}, 2},
             Row{&open, L"missing", Null{}, Null{}, 2},
             Row{&open, L"missing", Strings({L"d"}), Strings({L"d"}), 2},
             Row{&closed, L"here", 2.5, 2.5, 6}}) {
        Long dataType = -99;
        EXPECT_EQ(row.key->GetValueEx(row.name, dataType, row.given), row.expected) << row.name;
        EXPECT_EQ(dataType, 0) << row.name;
        EXPECT_EQ(row.key->ReadLastError(), row.lastError) << row.name;
        EXPECT_EQ(row.key->GetValue(row.name, row.given), row.expected) << row.name;
    }
    EXPECT_EQ(open.GetValue(L"missing"), Variant{String()});  // the default default
    EXPECT_EQ(open.GetValue(L"here"), Variant{String(L"x")});
    EXPECT_FALSE(closed.HasDefaultValue());
}

TEST(ReadValue, HasDefaultValueOnlyWhenTheUnnamedValueHoldsData) {
    struct Row { const char* label; Dword type; std::string bytes; bool has; };  // type 0: none stored
    for (const Row& row : {Row{"missing", 0, "", false}, Row{"text size 0", 1, ""s, false},
             Row{"binary size 0", 3, ""s, false}, Row{"text", 1, "x\0"s, true},
             Row{"dword", 4, "\x01\x00\x00\x00"s, true}}) {
        TestKey test;
        if (row.type != 0) test.SetRaw("", row.type, row.bytes);
        RegistryKey key;
        test.Attach(key);
        EXPECT_EQ(key.HasDefaultValue(), row.has) << row.label;
        EXPECT_EQ(key.ReadLastError(), 0) << row.label;  // the probe's result is not kept
        if (row.type == 1 && row.bytes.empty()) {
            EXPECT_EQ(key.GetValue(L"", Long{7}), Variant{String()});  // the stored "", not the default
        }
    }
}

// Only RootKey counts: 0 and -1 fail all three members before the platform is asked.
TEST(ReadValue, ClosedKeyRaisesWithSourceGetValue) {
    for (const Long root : {0, -1}) {
        RegistryKey key;
        key.SetRootKey(root);
        key.SetKeyHandle(vqCurrentUser);
        Long dataType = 77;
        Recorder recorder;
        const std::function<void()> calls[] = {
            [&] { key.HasDefaultValue(); }, [&] { key.GetValue(L"x"); },
            [&] { key.GetValueEx(L"x", dataType, Long{1}, False); }};
        for (const auto& call : calls) {
            try {
                call();
                ADD_FAILURE() << "nothing raised, root " << root;
            } catch (const RaisedError& error) {
                EXPECT_EQ(error.Number, vqInvalidRegistryKey);
                EXPECT_EQ(error.Source, L"GetValue");
                EXPECT_EQ(error.Description, L"The registry key is closed.");
            }
        }
        EXPECT_EQ(dataType, 77);
        EXPECT_TRUE(recorder.calls().empty());
    }
}

// The value changes between probe and read: the read is not checked or repeated, its result
// goes to LastError, and whatever reached the buffer is used.
TEST(ReadValue, ChangeBetweenProbeAndReadUsesWhatArrived) {
    struct Row {
        const char* label;
        Dword type, probeSize;
        std::string arriving;
        platform::Status readResult;
        Variant expected;
    };
    const Row rows[] = {
        {"text grew", 1, 3, "abc", 234, String(L"abc")},
        {"text gone", 1, 3, "", 2, String()},
        {"multi grew", 7, 4, "a\0b\0"s, 234, Strings({L"a", L"b", L""})},
        {"binary half", 3, 2, "\x07", 234, ByteArray{0, {7, 0}}},
        {"dword gone", 4, 4, "", 2, Long{0}},
        {"qword grew", 11, 8, LittleEndian(3, 8), 234, Number(3)},
        {"qword gone", 11, 8, "", 6, Number(0)},
    };
    Replace<&Api::RegCloseKey> keepHandle{[](Handle) { return 0; }};
    for (const Row& row : rows) {
        int calls = 0;
        Replace<&Api::RegQueryValueExA> changing{
            [&](Handle, const char*, Dword*, Dword* type, std::uint8_t* data, Dword* size) {
                *type = row.type;
                if (++calls == 1) {
                    EXPECT_EQ(*size, 0u) << row.label;  // the probe offers nothing
                    EXPECT_NE(data, nullptr) << row.label;
                    *size = row.probeSize;
                    return platform::Status{234};
                }
                EXPECT_EQ(*size, row.probeSize) << row.label;
                std::memcpy(data, row.arriving.data(), row.arriving.size());
                return row.readResult;
            }};
        RegistryKey key;
        key.SetRootKey(vqCurrentUser);
        key.SetKeyHandle(0x1234);
        Long dataType = 0;
        EXPECT_EQ(key.GetValueEx(L"v", dataType, Long{7}, False), row.expected) << row.label;
        EXPECT_EQ(calls, 2) << row.label;
        EXPECT_EQ(key.ReadLastError(), row.readResult) << row.label;
    }
}

}  // namespace
}  // namespace orbex
