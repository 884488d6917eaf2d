#include "TestKeys.h"

#include "platform/TestHook.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <cstdlib>
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
    struct Row {
        String name;
        Variant value;
        std::optional<Long> type;  // none: the default type
        Variant readBack;
        std::optional<std::string> stored = {};  // as the platform keeps it
    };
    const Row rows[] = {
        // The platform counts in the terminator that follows the text's bytes.
        {v, String(L"abc"), vqString, String(L"abc"), "abc\0"s},
        {v, Long{42}, std::nullopt, String(L"42"), "42\0"s},
        {v, String(L"a\0b", 3), vqString, String(L"a"), "a\0b\0"s},
        {v, Empty{}, vqString, String(), ""s},
        {v, Date{36526.5}, vqString, String(L"1/1/2000 12:00:00 PM")},
        {v, String(L"%OrbexWrite%\\x"), vqExpandedString, String(L"%OrbexWrite%\\x"), "%OrbexWrite%\\x\0"s},
        {v, ByteArray{3, {1, 0, 255}}, vqBinary, ByteArray{0, {1, 0, 255}}, "\x01\x00\xFF"s},
        {v, ByteArray{}, vqBinary, ByteArray{0, {0}}, ""s},
        {v, Long{-1}, vqDWORD, Long{-1}, "\xFF\xFF\xFF\xFF"s},
        {v, BooleanValue{True}, vqDWORD, Long{-1}},
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
        {v, Long{5}, vqQWORD, Number(5), "\x05\0\0\0\0\0\0\0"s},
        {v, 2.4, vqQWORD, Number(2)},
        {v, Long{-1}, vqQWORD, Number(-1), "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s},
        {v, Number(922337203685477), vqQWORD, Number(922337203685477), "\x65\x88\x63\x5D\xDC\x46\x03\x00"s},
        {v, Number(-922337203685477), vqQWORD, Number(-922337203685477)},
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
    const Variant object = Opaque{Opaque::Kind::Object}, otherArray = Opaque{Opaque::Kind::OtherArray};
    const Variant bytes = ByteArray{0, {1}}, strings = Strings({L"a"});
    struct Row { Long root; String name; Variant value; Long type; Failure failure; };
    const Long user = vqCurrentUser;
    const Row rows[] = {
        {0, L"v", String(L"x"), vqString, {vqInvalidRegistryKey, L"SetValue", RegistryText::KeyClosed}},
        {-1, String(256, L'n'), String(L"x"), vqString, {vqInvalidRegistryKey, L"SetValue", RegistryText::KeyClosed}},
        {user, String(256, L'n'), String(L"x"), vqString, {vqInvalidArgument, L"SetValue", RegistryText::NameTooLong}},
        {user, L"v", Null{}, vqString, {RunTime::InvalidUseOfNull, L"", L""}},
        {user, L"v", strings, vqString, mismatch},
        {user, L"v", object, vqString, mismatch},
        {user, L"v", bytes, vqExpandedString, mismatch},
        {user, L"v", String(L"ab"), vqBinary, refused},
        {user, L"v", otherArray, vqBinary, refused},
        {user, L"v", Byte{1}, vqBinary, refused},
        {user, L"v", Empty{}, vqBinary, refused},
        {user, L"v", String(L"12abc"), vqDWORD, refused},
        {user, L"v", Date{1}, vqDWORD, refused},
        {user, L"v", ErrorValue{5}, vqDWORD, refused},
        {user, L"v", object, vqDWORD, refused},
        {user, L"v", String(L"2147483648"), vqDWORD, overflow},
        {user, L"v", 2147483648.0, vqDWORD, overflow},
        {user, L"v", -2147483649.0, vqDWORD, overflow},
        {user, L"v", String(L"a"), vqMultiString, refused},
        {user, L"v", bytes, vqMultiString, refused},
        {user, L"v", Empty{}, vqMultiString, refused},
        {user, L"v", String(L"x"), vqQWORD, refused},
        {user, L"v", Date{1}, vqQWORD, refused},
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
    struct Row {
        bool remove;  // DeleteValue of the value, else SetValue of "new"
        bool exists;
        Long root;
        Dword access;
        bool closeFirst;
        std::optional<Status> fake;
        Boolean errorOnMissing;
        Failure failure;
        Long lastError;
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
            if (row.fake && !row.remove) {
                fakeSet.emplace([&](Handle, const char*, Dword, Dword, const std::uint8_t*, Dword) { return *row.fake; });
            }
            if (row.fake && row.remove) fakeDelete.emplace([&](Handle, const char*) { return *row.fake; });
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
