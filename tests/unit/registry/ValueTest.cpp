// Values read and written on real keys: every stored shape read back, every written value
// read back with the bytes the platform keeps, refusals that leave the stored value, and what
// the platform answers.
#include "TestKeys.h"

#include "frame/Ansi.h"
#include "platform/TestHook.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

namespace orbex {
namespace {

using namespace std::string_literals;
using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::Status;
using platform::testing::Recorder;
using platform::testing::Replace;
using namespace testing;

Currency Number(std::int64_t whole) { return {whole * 10000}; }

StringArray Strings(std::initializer_list<const wchar_t*> items, Long lower = 0) {
    StringArray array{lower, {}};
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
    struct Row {  // queries: the probe, and the read when there is one; size: the bytes handed over
        const char* name; Dword type; std::string bytes; Variant expected; Long raised = 0;
        std::size_t queries = 2; Boolean expand = True; std::size_t size = std::string::npos;
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
        const Long raised =
            std::get<0>(FailureOf([&] { got = key.GetValueEx(FromAnsi(row.name), dataType, Long{7}, row.expand); }));
        EXPECT_EQ(raised, row.raised) << row.name;
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

// HasDefaultValue holds only when the unnamed value holds data; the probe's result is not kept.
TEST(ReadValue, HasDefaultValue) {
    for (const auto& [type, bytes, has] : std::initializer_list<std::tuple<Dword, std::string, bool>>{
             {0, "", false}, {1, ""s, false}, {3, ""s, false}, {1, "x\0"s, true}, {4, "\x01\x00\x00\x00"s, true}}) {
        TestKey test;
        if (type != 0) test.SetRaw("", type, bytes);  // type 0: none stored
        RegistryKey key;
        test.Attach(key);
        EXPECT_EQ(key.HasDefaultValue(), has) << type;
        EXPECT_EQ(key.ReadLastError(), 0) << type;
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

// Whether the key carries Modified: with AutoFlush on, CloseKey flushes exactly then. A key
// whose handle is gone gets a fresh one first, since CloseKey does nothing without a handle.
bool Modified(RegistryKey& key, const TestKey& test) {
    if (!key.IsValidHandle()) key.SetKeyHandle(static_cast<Long>(test.Open()));
    int flushes = 0;
    Replace<&Api::RegFlushKey> count{[&](Handle) { return ++flushes, Status{0}; }};
    key.AutoFlush(True);
    key.CloseKey();
    return flushes == 1;
}

// Written through SetValue, read back through GetValueEx with expansion off. Most rows write
// the same name, so each also replaces the type the row before it stored.
TEST(WriteValue, WrittenValuesReadBackAndStoreTheirBytes) {
    ASSERT_EQ(_putenv("OrbexWrite=C:\\expanded"), 0);
    const String v = L"v";
    struct Row {  // type none: the default type; stored: the bytes as the platform keeps them
        String name; Variant value; std::optional<Long> type; Variant readBack; std::optional<std::string> stored = {};
    };
    const Row rows[] = {
        // The platform counts in the terminator that follows the text's bytes.
        {v, String(L"abc"), vqString, String(L"abc"), "abc\0"s},
        {v, Long{42}, std::nullopt, String(L"42"), "42\0"s},
        {v, String(L"a\0b", 3), vqString, String(L"a"), "a\0b\0"s},
        {v, Empty{}, vqString, String(), ""s},
        {v, String(L"%OrbexWrite%\\x"), vqExpandedString, String(L"%OrbexWrite%\\x"), "%OrbexWrite%\\x\0"s},
        {v, ByteArray{3, {1, 0, 255}}, vqBinary, ByteArray{0, {1, 0, 255}}, "\x01\x00\xFF"s},
        {v, ByteArray{}, vqBinary, ByteArray{0, {0}}, ""s},
        {v, Long{-1}, vqDWORD, Long{-1}, "\xFF\xFF\xFF\xFF"s},
        {v, Empty{}, vqDWORD, Long{0}, "\0\0\0\0"s},
        {v, String(L"12"), vqDWORD, Long{12}},
        {v, 2.5, vqDWORD, Long{2}},
        {v, 2147483647.0, vqDWORD, Long{2147483647}, "\xFF\xFF\xFF\x7F"s},
        {v, Strings({L"a", L"b"}), vqMultiString, Strings({L"a", L"b"}), "a\0b\0\0"s},
        {v, Strings({L"a", L""}), vqMultiString, Strings({L"a", L""}), "a\0\0\0"s},
        {v, Strings({L""}), vqMultiString, Strings({}), "\0\0"s},
        {v, Strings({}), vqMultiString, Strings({L"", L""}), "\0"s},
        {v, Strings({L"x", L"y"}, 2), vqMultiString, Strings({L"x", L"y"})},
        {v, StringArray{0, {String(L"a\0b", 3)}}, vqMultiString, Strings({L"a", L"b"}), "a\0b\0\0"s},
        {v, Long{5}, vqQWORD, Number(5), LittleEndian(5)},
        {v, 2.4, vqQWORD, Number(2)},
        {v, Long{-1}, vqQWORD, Number(-1), LittleEndian(-1)},
        {v, Number(922337203685477), vqQWORD, Number(922337203685477), LittleEndian(922337203685477)},
        {v, String(L"ignored"), 5, Empty{}, ""s},
        {v, Null{}, -3, Empty{}, ""s},
        {String(255, L'n'), String(L"x"), vqString, String(L"x")},
        {L"", String(L"d"), vqString, String(L"d")},
    };
    TestKey test;
    RegistryKey key;
    test.Attach(key);
    int trace = 0;  // the row's line in the table
    for (const Row& row : rows) {
        ++trace;
        if (row.type) {
            key.SetValue(row.name, row.value, *row.type);
        } else {
            key.SetValue(row.name, row.value);
        }
        Long dataType = 0;
        EXPECT_EQ(key.GetValueEx(row.name, dataType, Long{-7}, False), row.readBack) << trace;
        EXPECT_EQ(dataType, row.type.value_or(vqString)) << trace;
        if (row.stored) {
            EXPECT_EQ(test.GetRaw(std::string(row.name.begin(), row.name.end())).second, *row.stored) << trace;
        }
    }
    key.SetValue(v, String(L"%OrbexWrite%\\x"), vqExpandedString);
    EXPECT_EQ(key.GetValue(v), Variant{String(L"C:\\expanded\\x")});
    EXPECT_TRUE(key.HasDefaultValue());
}

// Every failure before the platform call: nothing is written and the stored value stays.
TEST(WriteValue, RefusedValuesLeaveTheStoredValue) {
    const Failure refused{vqInvalidDataType, L"SetValue",
                          L"Invalid data type.  Data passed in does not match the data type specified."};
    const Failure mismatch{RunTime::TypeMismatch, L"", L""}, overflow{RunTime::Overflow, L"", L""};
    const Variant bytes = ByteArray{0, {1}}, strings = Strings({L"a"});
    struct Row { Long root; String name; Variant value; Long type; Failure failure; };
    const Long user = vqCurrentUser;
    const Row rows[] = {
        {0, L"v", String(L"x"), vqString, {vqInvalidRegistryKey, L"SetValue", RegistryText::KeyClosed}},
        {-1, String(256, L'n'), String(L"x"), vqString, {vqInvalidRegistryKey, L"SetValue", RegistryText::KeyClosed}},
        {user, String(256, L'n'), String(L"x"), vqString, {vqInvalidArgument, L"SetValue", RegistryText::NameTooLong}},
        {user, L"v", Null{}, vqString, {RunTime::InvalidUseOfNull, L"", L""}},
        {user, L"v", strings, vqString, mismatch},
        {user, L"v", bytes, vqExpandedString, mismatch},
        {user, L"v", String(L"ab"), vqBinary, refused},
        {user, L"v", Byte{1}, vqBinary, refused},
        {user, L"v", Empty{}, vqBinary, refused},
        {user, L"v", String(L"12abc"), vqDWORD, refused},
        {user, L"v", Date{1}, vqDWORD, refused},
        {user, L"v", ErrorValue{5}, vqDWORD, refused},
        {user, L"v", String(L"2147483648"), vqDWORD, overflow},
        {user, L"v", 2147483648.0, vqDWORD, overflow},
        {user, L"v", -2147483649.0, vqDWORD, overflow},
        {user, L"v", String(L"a"), vqMultiString, refused},
        {user, L"v", Empty{}, vqMultiString, refused},
        {user, L"v", String(L"x"), vqQWORD, refused},
        {user, L"v", Null{}, vqQWORD, refused},
        {user, L"v", 1e15, vqQWORD, overflow},
    };
    TestKey test;
    test.SetRaw("v", 1, "keep\0"s);
    for (const Row& row : rows) {
        RegistryKey key;
        test.Attach(key);
        key.SetRootKey(row.root);
        Recorder recorder;
        const Failure failure = FailureOf([&] { key.SetValue(row.name, row.value, row.type); });
        EXPECT_EQ(failure, row.failure) << row.type << ' ' << row.value.index();
        EXPECT_EQ(recorder.count("RegSetValueExA"), 0u) << row.type << ' ' << row.value.index();
        EXPECT_EQ(test.GetRaw("v").second, "keep\0"s);
        EXPECT_FALSE(Modified(key, test));
    }
}

// SetValue and DeleteValue on what the platform answers. DeleteValue has no closed-key test:
// every key reaches the platform, whose failure reads as a missing value unless it is a refusal.
TEST(WriteValue, PlatformResultOfSetValueAndDeleteValue) {
    const Long user = vqCurrentUser;
    const Failure missing{vqInvalidArgument, L"DeleteValue", L"The value does not exist."};
    const String noAccess = L"The user does not have permission to complete the operation.";
    const Failure setDenied{vqNoAccess, L"SetValue", noAccess}, deleteDenied{vqNoAccess, L"DeleteValue", noAccess};
    struct Row {  // remove: DeleteValue of the value, else SetValue of "new"
        bool remove, exists; Long root; Dword access; bool closeFirst; std::optional<Status> fake;
        Boolean errorOnMissing; Failure failure; Long lastError;
    };
    for (const Row& row : {
             Row{false, true, user, KeyAllAccess, false, {}, False, NoFailure, 0},
             Row{false, true, user, KeyRead, false, {}, False, setDenied, 5},
             Row{false, true, user, KeyAllAccess, false, 5, False, setDenied, 5},
             Row{false, true, user, KeyAllAccess, false, 1, False, NoFailure, 1},
             Row{false, true, user, KeyAllAccess, true, {}, False, NoFailure, 6},
             Row{true, true, user, KeyAllAccess, false, {}, True, NoFailure, 0},
             Row{true, true, 0, KeyAllAccess, false, {}, True, NoFailure, 0},
             Row{true, false, user, KeyAllAccess, false, {}, False, NoFailure, 2},
             Row{true, false, user, KeyAllAccess, false, {}, True, missing, 2},
             Row{true, true, user, KeyRead, false, {}, False, deleteDenied, 5},
             Row{true, true, user, KeyAllAccess, false, 5, False, deleteDenied, 5},
             Row{true, true, user, KeyAllAccess, false, 1, True, missing, 1},
             Row{true, true, user, KeyAllAccess, true, {}, False, NoFailure, 6},
             Row{true, true, user, KeyAllAccess, true, {}, True, missing, 6},
         }) {
        TestKey test;
        if (row.exists) test.SetRaw("v", 1, "keep\0"s);
        RegistryKey key;
        test.Attach(key, row.access);
        key.SetRootKey(row.root);
        if (row.closeFirst) key.CloseKey();
        Failure failure;
        {
            std::optional<Replace<&Api::RegSetValueExA>> fakeSet;
            std::optional<Replace<&Api::RegDeleteValueA>> fakeDelete;
            if (row.fake && !row.remove) fakeSet.emplace([&](auto...) { return *row.fake; });
            if (row.fake && row.remove) fakeDelete.emplace([&](auto...) { return *row.fake; });
            failure = FailureOf([&] {
                if (row.remove) {
                    key.DeleteValue(L"v", row.errorOnMissing);
                } else {
                    key.SetValue(L"v", String(L"new"));
                }
            });
        }
        const std::string what = (row.remove ? "delete " : "set ") + std::to_string(row.lastError);
        EXPECT_EQ(failure, row.failure) << what;
        EXPECT_EQ(key.ReadLastError(), row.lastError) << what;
        const bool changed = row.exists && row.lastError == 0;
        const auto expected = !row.exists || (changed && row.remove) ? std::pair<long, std::string>{-1, ""}
                              : changed ? std::pair<long, std::string>{1, "new\0"s}
                                        : std::pair<long, std::string>{1, "keep\0"s};
        EXPECT_EQ(test.GetRaw("v"), expected) << what;
        EXPECT_EQ(Modified(key, test), changed) << what;
    }
}

}  // namespace
}  // namespace orbex
