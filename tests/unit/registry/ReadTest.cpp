#include "TestKeys.h"

#include "frame/Ansi.h"
#include "platform/TestHook.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace orbex {
namespace {

using namespace std::string_literals;
using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::testing::Recorder;
using platform::testing::Replace;
using namespace testing;

Currency Number(std::int64_t whole) { return {whole * 10000}; }

StringArray Strings(std::initializer_list<const wchar_t*> items) {
    StringArray array;
    for (const wchar_t* item : items) array.items.emplace_back(item);
    return array;
}

std::string LittleEndian(std::int64_t number) {
    std::string bytes;
    for (int i = 0; i < 8; ++i) bytes += static_cast<char>((number >> (8 * i)) & 0xFF);
    return bytes;
}

// Each stored shape, written raw, read back with a default that must not come back.
TEST(ReadValue, EveryStoredTypeReadsBackByItsOwnRule) {
    ASSERT_EQ(_putenv("OrbexRead=C:\\expanded"), 0);
    struct Row {
        const char* name;
        Dword type;
        std::string bytes;
        Variant expected;
        Long raised = 0;
        std::size_t queries = 2;  // the probe, and the read when there is one
        Boolean expand = True;
        std::size_t size = std::string::npos;  // bytes handed to the platform
    };
    const Long overflow = RunTime::Overflow;
    const Row rows[] = {
        {"sz", 1, "abc\0"s, String(L"abc")},
        {"sz empty", 1, ""s, String()},
        {"sz without terminator", 1, "abX"s, String(L"ab"), 0, 2, True, 2},
        {"sz inner nul", 1, "ab\0cd\0"s, String(L"ab")},
        {"expand off", 2, "%OrbexRead%\\x\0"s, String(L"%OrbexRead%\\x"), 0, 2, False},
        {"expand on", 2, "%OrbexRead%\\x\0"s, String(L"C:\\expanded\\x")},
        {"expand unknown", 2, "%OrbexNoSuch%\0"s, String(L"%OrbexNoSuch%")},
        {"expand inner nul", 2, "%OrbexRead%\0b\0"s, String(L"C:\\expanded")},
        {"multi two", 7, "a\0b\0\0"s, Strings({L"a", L"b"})},
        {"multi middle empty", 7, "a\0\0b\0\0"s, Strings({L"a", L"", L"b"})},
        {"multi two nuls", 7, "\0\0"s, Strings({})},
        {"multi one nul", 7, "\0"s, Strings({L"", L""})},
        {"multi one terminator", 7, "a\0"s, Strings({L"a", L""})},
        {"multi size 0", 7, ""s, Strings({})},
        {"binary", 3, "\x01\x00\xFF"s, ByteArray{0, {1, 0, 255}}},
        {"binary size 0", 3, ""s, ByteArray{0, {0}}, 0, 1},
        {"dword bit 31", 4, "\x01\x00\x00\x80"s, Long{-2147483647}},
        {"dword short", 4, "\x34\x12"s, Long{0x1234}},
        {"dword long", 4, "\x01\x02\x03\x04\x05\x06"s, Long{0x04030201}},
        {"qword largest", 11, LittleEndian(922337203685477), Number(922337203685477)},
        {"qword smallest", 11, LittleEndian(-922337203685477), Number(-922337203685477)},
        {"qword beyond", 11, LittleEndian(922337203685478), Empty{}, overflow},
        {"qword below", 11, LittleEndian(-922337203685478), Empty{}, overflow},
        {"qword long", 11, LittleEndian(5) + "\x07\x07"s, Number(5)},
        {"qword short", 11, "\x05\x01"s, Number(0x105)},
        {"none with data", 0, "xyz"s, Empty{}, 0, 1},
        {"big-endian dword", 5, "\x00\x00\x00\x01"s, Empty{}, 0, 1},
    };
    TestKey test;
    RegistryKey key;
    test.Attach(key);
    for (const Row& row : rows) {
        test.SetRaw(row.name, row.type, row.bytes, row.size);
        Long dataType = -99;
        Variant got = String(L"unset");
        Recorder recorder;
        const Failure failure = FailureOf([&] { got = key.GetValueEx(FromAnsi(row.name), dataType, Long{7}, row.expand); });
        EXPECT_EQ(std::get<0>(failure), row.raised) << row.name;
        EXPECT_EQ(got, row.raised ? Variant{String(L"unset")} : row.expected) << row.name;
        EXPECT_EQ(dataType, static_cast<Long>(row.type)) << row.name;
        EXPECT_EQ(recorder.count("RegQueryValueExA"), row.queries) << row.name;
        // A value that is only probed leaves the probe's "more data" behind.
        EXPECT_EQ(key.ReadLastError(), row.queries == 1 && !row.bytes.empty() ? 234 : 0) << row.name;
    }
}

// A missing value, or any key the probe fails on, gives the default as it was passed; a key
// whose root is 0 or -1 raises before the platform is asked.
TEST(ReadValue, FailedProbeGivesTheDefaultAndAClosedKeyRaises) {
    TestKey test;
    test.SetRaw("here", 1, "x\0"s);
    RegistryKey open, closed;  // closed passes the closed-key test, but its handle is gone
    test.Attach(open);
    test.Attach(closed);
    closed.CloseKey();
    struct Row { RegistryKey* key; const wchar_t* name; Variant given; Long lastError; };
    for (const Row& row : {Row{&open, L"missing", Long{7}, 2}, Row{&open, L"missing", Null{}, 2},
             Row{&open, L"missing", Strings({L"d"}), 2}, Row{&closed, L"here", 2.5, 6}}) {
        Long dataType = -99;
        EXPECT_EQ(row.key->GetValueEx(row.name, dataType, row.given), row.given) << row.name;
        EXPECT_EQ(dataType, 0) << row.name;
        EXPECT_EQ(row.key->ReadLastError(), row.lastError) << row.name;
        EXPECT_EQ(row.key->GetValue(row.name, row.given), row.given) << row.name;
    }
    EXPECT_EQ(open.GetValue(L"missing"), Variant{String()});  // the default default
    EXPECT_EQ(open.GetValue(L"here"), Variant{String(L"x")});
    EXPECT_FALSE(closed.HasDefaultValue());

    const Failure keyClosed{vqInvalidRegistryKey, L"GetValue", L"The registry key is closed."};
    for (const Long root : {0, -1}) {
        RegistryKey key;
        key.SetRootKey(root);
        key.SetKeyHandle(vqCurrentUser);
        Long dataType = 77;
        Recorder recorder;
        EXPECT_EQ(FailureOf([&] { key.HasDefaultValue(); }), keyClosed);
        EXPECT_EQ(FailureOf([&] { key.GetValue(L"x"); }), keyClosed);
        EXPECT_EQ(FailureOf([&] { key.GetValueEx(L"x", dataType, Long{1}, False); }), keyClosed);
        EXPECT_EQ(dataType, 77);
        EXPECT_TRUE(recorder.calls().empty());
    }
}

TEST(ReadValue, HasDefaultValueOnlyWhenTheUnnamedValueHoldsData) {
    struct Row { Dword type; std::string bytes; bool has; };  // type 0: none stored
    for (const Row& row : {Row{0, "", false}, Row{1, ""s, false}, Row{3, ""s, false}, Row{1, "x\0"s, true},
             Row{4, "\x01\x00\x00\x00"s, true}}) {
        TestKey test;
        if (row.type != 0) test.SetRaw("", row.type, row.bytes);
        RegistryKey key;
        test.Attach(key);
        EXPECT_EQ(key.HasDefaultValue(), row.has) << row.type;
        EXPECT_EQ(key.ReadLastError(), 0) << row.type;  // the probe's result is not kept
    }
}

// The value changes between probe and read: the read is not checked or repeated, its result
// goes to LastError, and whatever reached the buffer is used.
TEST(ReadValue, ChangeBetweenProbeAndReadUsesWhatArrived) {
    struct Row { Dword type, probeSize; std::string arriving; platform::Status readResult; Variant expected; };
    const Row rows[] = {
        {1, 3, "abc", 234, String(L"abc")},
        {1, 3, "", 2, String()},
        {7, 4, "a\0b\0"s, 234, Strings({L"a", L"b", L""})},
        {3, 2, "\x07", 234, ByteArray{0, {7, 0}}},
        {4, 4, "", 2, Long{0}},
        {11, 8, LittleEndian(3), 234, Number(3)},
        {11, 8, "", 6, Number(0)},
    };
    Replace<&Api::RegCloseKey> keepHandle{[](Handle) { return 0; }};
    for (const Row& row : rows) {
        int calls = 0;
        Replace<&Api::RegQueryValueExA> changing{
            [&](Handle, const char*, Dword*, Dword* type, std::uint8_t* data, Dword* size) {
                *type = row.type;
                if (++calls == 1) {
                    *size = row.probeSize;
                    return platform::Status{234};
                }
                EXPECT_EQ(*size, row.probeSize) << row.type;
                std::memcpy(data, row.arriving.data(), row.arriving.size());
                return row.readResult;
            }};
        RegistryKey key;
        key.SetRootKey(vqCurrentUser);
        key.SetKeyHandle(0x1234);
        Long dataType = 0;
        EXPECT_EQ(key.GetValueEx(L"v", dataType, Long{7}, False), row.expected) << row.type;
        EXPECT_EQ(calls, 2) << row.type;
        EXPECT_EQ(key.ReadLastError(), row.readResult) << row.type;
    }
}

}  // namespace
}  // namespace orbex
