#include "TestKeys.h"

#include "frame/Raises.h"
#include "platform/TestHook.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
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
using testing::KeyAllAccess;
using testing::KeyRead;
using testing::NothingRaised;
using testing::TestKey;

constexpr Long None = NothingRaised;

Currency Number(std::int64_t whole) { return {whole * 10000}; }

StringArray Strings(std::initializer_list<const wchar_t*> items, Long lower = 0) {
    StringArray array{lower, {}};
    for (const wchar_t* item : items) array.items.emplace_back(item);
    return array;
}

std::string LittleEndian(std::int64_t number, int width) {
    std::string bytes;
    for (int i = 0; i < width; ++i) bytes += static_cast<char>((number >> (8 * i)) & 0xFF);
    return bytes;
}

RaisedError Caught(const std::function<void()>& call) {
    try {
        call();
    } catch (const RaisedError& error) {
        return error;
    }
    return {None, {}, {}};
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
        const char* label;
        String name;
        Variant value;
        std::optional<Long> type;  // none: the default type
        Variant readBack;
        std::optional<std::string> stored;  // as the platform keeps it
    };
    const Row rows[] = {
        // The platform counts in the terminator that follows the text's bytes.
        {"text", v, String(L"abc"), vqString, String(L"abc"), "abc\0"s},
        {"default type", v, Long{42}, std::nullopt, String(L"42"), "42\0"s},
        {"text with nul", v, String(L"a\0b", 3), vqString, String(L"a"), "a\0b\0"s},
        {"text of Empty", v, Empty{}, vqString, String(), ""s},
        {"text of Boolean", v, BooleanValue{1}, vqString, String(L"True"), {}},
        {"text of Date", v, Date{36526.5}, vqString, String(L"1/1/2000 12:00:00 PM"), {}},
        {"unexpanded", v, String(L"%OrbexWrite%\\x"), vqExpandedString, String(L"%OrbexWrite%\\x"),
         "%OrbexWrite%\\x\0"s},
        {"binary bounds 3 to 5", v, ByteArray{3, {1, 0, 255}}, vqBinary, ByteArray{0, {1, 0, 255}},
         "\x01\x00\xFF"s},
        {"binary without elements", v, ByteArray{}, vqBinary, ByteArray{0, {0}}, ""s},
        {"dword -1", v, Long{-1}, vqDWORD, Long{-1}, "\xFF\xFF\xFF\xFF"s},
        {"dword True", v, BooleanValue{True}, vqDWORD, Long{-1}, "\xFF\xFF\xFF\xFF"s},
        {"dword Empty", v, Empty{}, vqDWORD, Long{0}, "\0\0\0\0"s},
        {"dword text", v, String(L"12"), vqDWORD, Long{12}, {}},
        {"dword 2.5", v, 2.5, vqDWORD, Long{2}, {}},
        {"dword largest", v, 2147483647.0, vqDWORD, Long{2147483647}, "\xFF\xFF\xFF\x7F"s},
        {"multi two", v, Strings({L"a", L"b"}), vqMultiString, Strings({L"a", L"b"}), "a\0b\0\0"s},
        {"multi a and empty", v, Strings({L"a", L""}), vqMultiString, Strings({L"a", L""}), "a\0\0\0"s},
        {"multi one empty", v, Strings({L""}), vqMultiString, Strings({}), "\0\0"s},
        {"multi no elements", v, Strings({}), vqMultiString, Strings({L"", L""}), "\0"s},
        {"multi bounds 2 to 3", v, Strings({L"x", L"y"}, 2), vqMultiString, Strings({L"x", L"y"}), {}},
        {"multi inner nul", v, StringArray{0, {String(L"a\0b", 3)}}, vqMultiString,
         Strings({L"a", L"b"}), "a\0b\0\0"s},
        {"qword 5", v, Long{5}, vqQWORD, Number(5), LittleEndian(5, 8)},
        {"qword 2.4", v, 2.4, vqQWORD, Number(2), {}},
        {"qword -1", v, Long{-1}, vqQWORD, Number(-1), LittleEndian(-1, 8)},
        {"qword text", v, String(L"7"), vqQWORD, Number(7), {}},
        {"qword largest", v, Number(922337203685477), vqQWORD, Number(922337203685477),
         LittleEndian(922337203685477, 8)},
        {"qword smallest", v, Number(-922337203685477), vqQWORD, Number(-922337203685477), {}},
        {"type 5", v, String(L"ignored"), 5, Empty{}, ""s},
        {"type -3 takes Null", v, Null{}, -3, Empty{}, ""s},
        {"name of 255", String(255, L'n'), String(L"x"), vqString, String(L"x"), {}},
        {"unnamed value", L"", String(L"d"), vqString, String(L"d"), {}},
    };
    TestKey test;
    RegistryKey key;
    test.Attach(key);
    for (const Row& row : rows) {
        if (row.type) {
            key.SetValue(row.name, row.value, *row.type);
        } else {
            key.SetValue(row.name, row.value);
        }
        Long dataType = 0;
        EXPECT_EQ(key.GetValueEx(row.name, dataType, Long{-7}, False), row.readBack) << row.label;
        EXPECT_EQ(dataType, row.type.value_or(vqString)) << row.label;
        if (row.stored) {
            const auto raw = test.GetRaw(std::string(row.name.begin(), row.name.end()));
            EXPECT_EQ(raw.bytes, *row.stored) << row.label;
        }
    }
    key.SetValue(v, String(L"%OrbexWrite%\\x"), vqExpandedString);
    EXPECT_EQ(key.GetValue(v), Variant{String(L"C:\\expanded\\x")});
    EXPECT_TRUE(key.HasDefaultValue());
}

// Every failure before the platform call: nothing is written and the stored value stays.
TEST(WriteValue, RefusedValuesLeaveTheStoredValue) {
    constexpr Long Refused = vqInvalidDataType;
    const Variant object = Opaque{Opaque::Kind::Object};
    const Variant otherArray = Opaque{Opaque::Kind::OtherArray};
    const Variant bytes = ByteArray{0, {1}};
    const Variant strings = Strings({L"a"});
    struct Row { const char* label; Long root; String name; Variant value; Long type; Long number; };
    const Long user = vqCurrentUser;
    const Row rows[] = {
        {"closed, root 0", 0, L"v", String(L"x"), vqString, vqInvalidRegistryKey},
        {"closed, root -1", -1, String(256, L'n'), String(L"x"), vqString, vqInvalidRegistryKey},
        {"name of 256", user, String(256, L'n'), String(L"x"), vqString, vqInvalidArgument},
        {"text of Null", user, L"v", Null{}, vqString, RunTime::InvalidUseOfNull},
        {"text of strings", user, L"v", strings, vqString, RunTime::TypeMismatch},
        {"text of bytes", user, L"v", bytes, vqString, RunTime::TypeMismatch},
        {"text of object", user, L"v", object, vqString, RunTime::TypeMismatch},
        {"text of other array", user, L"v", otherArray, vqString, RunTime::TypeMismatch},
        {"expandable of Null", user, L"v", Null{}, vqExpandedString, RunTime::InvalidUseOfNull},
        {"expandable of bytes", user, L"v", bytes, vqExpandedString, RunTime::TypeMismatch},
        {"binary of text", user, L"v", String(L"ab"), vqBinary, Refused},
        {"binary of Integer array", user, L"v", otherArray, vqBinary, Refused},
        {"binary of strings", user, L"v", strings, vqBinary, Refused},
        {"binary of Byte", user, L"v", Byte{1}, vqBinary, Refused},
        {"binary of Empty", user, L"v", Empty{}, vqBinary, Refused},
        {"binary of Null", user, L"v", Null{}, vqBinary, Refused},
        {"dword of text", user, L"v", String(L"12abc"), vqDWORD, Refused},
        {"dword of Date", user, L"v", Date{1}, vqDWORD, Refused},
        {"dword of Null", user, L"v", Null{}, vqDWORD, Refused},
        {"dword of error value", user, L"v", ErrorValue{5}, vqDWORD, Refused},
        {"dword of object", user, L"v", object, vqDWORD, Refused},
        {"dword of 2147483648 text", user, L"v", String(L"2147483648"), vqDWORD, RunTime::Overflow},
        {"dword of 2147483648", user, L"v", 2147483648.0, vqDWORD, RunTime::Overflow},
        {"dword of -2147483649", user, L"v", -2147483649.0, vqDWORD, RunTime::Overflow},
        {"multi of text", user, L"v", String(L"a"), vqMultiString, Refused},
        {"multi of bytes", user, L"v", bytes, vqMultiString, Refused},
        {"multi of Empty", user, L"v", Empty{}, vqMultiString, Refused},
        {"multi of Null", user, L"v", Null{}, vqMultiString, Refused},
        {"qword of text", user, L"v", String(L"x"), vqQWORD, Refused},
        {"qword of Date", user, L"v", Date{1}, vqQWORD, Refused},
        {"qword of Null", user, L"v", Null{}, vqQWORD, Refused},
        {"qword beyond Currency", user, L"v", 1e15, vqQWORD, RunTime::Overflow},
    };
    TestKey test;
    test.SetRaw("v", 1, "keep\0"s);
    for (const Row& row : rows) {
        RegistryKey key;
        test.Attach(key);
        key.SetRootKey(row.root);
        Recorder recorder;
        const RaisedError error = Caught([&] { key.SetValue(row.name, row.value, row.type); });
        EXPECT_EQ(error.Number, row.number) << row.label;
        const bool own = row.number < 0;  // the library's numbers; run-time ones carry no text
        EXPECT_EQ(error.Source, own ? L"SetValue" : L"") << row.label;
        if (row.number == Refused) {
            EXPECT_EQ(error.Description,
                      L"Invalid data type.  Data passed in does not match the data type specified.");
        } else if (!own) {
            EXPECT_EQ(error.Description, L"") << row.label;
        }
        EXPECT_EQ(recorder.count("RegSetValueExA"), 0u) << row.label;
        EXPECT_EQ(test.GetRaw("v").bytes, "keep\0"s) << row.label;
        EXPECT_FALSE(Modified(key, test)) << row.label;
    }
}

TEST(WriteValue, PlatformResultOfTheWrite) {
    struct Row {
        const char* label;
        Dword access;
        bool closeFirst;
        std::optional<Status> fake;
        Long raised;
        Long lastError;
        bool written;
    };
    for (const Row& row : {Row{"written", KeyAllAccess, false, {}, None, 0, true},
             Row{"read-only key", KeyRead, false, {}, vqNoAccess, 5, false},
             Row{"refused by the platform", KeyAllAccess, false, 5, vqNoAccess, 5, false},
             Row{"other failure", KeyAllAccess, false, 1, None, 1, false},
             Row{"after CloseKey", KeyAllAccess, true, {}, None, 6, false}}) {
        TestKey test;
        test.SetRaw("v", 1, "keep\0"s);
        RegistryKey key;
        test.Attach(key, row.access);
        if (row.closeFirst) key.CloseKey();
        RaisedError error;
        {
            std::optional<Replace<&Api::RegSetValueExA>> fake;
            if (row.fake) {
                fake.emplace([&](Handle, const char*, Dword, Dword, const std::uint8_t*, Dword) {
                    return *row.fake;
                });
            }
            error = Caught([&] { key.SetValue(L"v", String(L"new")); });
        }
        EXPECT_EQ(error.Number, row.raised) << row.label;
        if (row.raised == vqNoAccess) {
            EXPECT_EQ(error.Source, L"SetValue");
            EXPECT_EQ(error.Description, L"The user does not have permission to complete the operation.");
        }
        EXPECT_EQ(key.ReadLastError(), row.lastError) << row.label;
        EXPECT_EQ(test.GetRaw("v").bytes, row.written ? "new\0"s : "keep\0"s) << row.label;
        EXPECT_EQ(Modified(key, test), row.written) << row.label;
    }
}

// No closed-key test: every key reaches the platform, whose failure reads as a missing value
// unless it is a refusal.
TEST(DeleteValue, PlatformResultDecides) {
    const Long user = vqCurrentUser;
    const wchar_t* const missing = L"The value does not exist.";
    const wchar_t* const noAccess = L"The user does not have permission to complete the operation.";
    struct Row {
        const char* label;
        bool exists;
        Long root;
        Dword access;
        bool closeFirst;
        std::optional<Status> fake;
        Boolean errorOnMissing;
        Long raised;
        const wchar_t* description;
        Long lastError;
    };
    for (const Row& row : {
             Row{"existing", true, user, KeyAllAccess, false, {}, False, None, nullptr, 0},
             Row{"existing, flag", true, user, KeyAllAccess, false, {}, True, None, nullptr, 0},
             Row{"root 0", true, 0, KeyAllAccess, false, {}, True, None, nullptr, 0},
             Row{"missing", false, user, KeyAllAccess, false, {}, False, None, nullptr, 2},
             Row{"missing, flag", false, user, KeyAllAccess, false, {}, True, vqInvalidArgument, missing, 2},
             Row{"read-only", true, user, KeyRead, false, {}, False, vqNoAccess, noAccess, 5},
             Row{"refused", true, user, KeyAllAccess, false, 5, False, vqNoAccess, noAccess, 5},
             Row{"other failure, flag", true, user, KeyAllAccess, false, 1, True, vqInvalidArgument, missing, 1},
             Row{"after CloseKey", true, user, KeyAllAccess, true, {}, False, None, nullptr, 6},
             Row{"after CloseKey, flag", true, user, KeyAllAccess, true, {}, True, vqInvalidArgument, missing, 6},
         }) {
        TestKey test;
        if (row.exists) test.SetRaw("v", 4, "\x01\x00\x00\x00"s);
        RegistryKey key;
        test.Attach(key, row.access);
        key.SetRootKey(row.root);
        if (row.closeFirst) key.CloseKey();
        RaisedError error;
        {
            std::optional<Replace<&Api::RegDeleteValueA>> fake;
            if (row.fake) fake.emplace([&](Handle, const char*) { return *row.fake; });
            error = Caught([&] { key.DeleteValue(L"v", row.errorOnMissing); });
        }
        EXPECT_EQ(error.Number, row.raised) << row.label;
        if (row.description != nullptr) {
            EXPECT_EQ(error.Source, L"DeleteValue") << row.label;
            EXPECT_EQ(error.Description, row.description) << row.label;
        }
        EXPECT_EQ(key.ReadLastError(), row.lastError) << row.label;
        const bool deleted = row.exists && row.lastError == 0;
        EXPECT_EQ(test.GetRaw("v").type, row.exists && !deleted ? 4 : -1) << row.label;
        EXPECT_EQ(Modified(key, test), deleted) << row.label;
    }
}

}  // namespace
}  // namespace orbex
