#include "TestKeys.h"

#include "platform/TestHook.h"
#include "registry/RegLib.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::Status;
using platform::testing::Recorder;
using platform::testing::Replace;
using namespace testing;

const StringArray EmptyForm{-1, {L""}};

// Values come back in the platform's order, which differs between Windows and Wine.
StringArray Sorted(StringArray names) {
    std::sort(names.items.begin(), names.items.end());
    return names;
}

std::unique_ptr<RegistryKey> OpenTestKey(const TestKey& test, Boolean writeable = False) {
    return RegLib{}.CurrentUser()->OpenSubKey(Wide(test.path()), writeable);
}

TEST(GetNames, ListTheEntriesOrGiveTheEmptyForm) {
    struct Row {
        std::vector<std::string> subKeys, values;  // values of no data, but the default's
        StringArray subKeyNames, valueNames;
    };
    for (const Row& row : {Row{{}, {}, EmptyForm, EmptyForm}, Row{{"a"}, {}, {0, {L"a"}}, EmptyForm},
             Row{{}, {"", "x", "yy"}, EmptyForm, {0, {L"", L"x", L"yy"}}},
             Row{{"b", "a"}, {"v"}, {0, {L"a", L"b"}}, {0, {L"v"}}}}) {
        TestKey test;
        for (const std::string& name : row.subKeys) test.CreateSubKey(name);
        for (const std::string& name : row.values) test.SetRaw(name, name.empty() ? 1 : 3, name.empty() ? "d" : "");
        const auto key = OpenTestKey(test, True);
        EXPECT_EQ(key->GetSubKeyNames(), row.subKeyNames) << row.subKeys.size();
        EXPECT_EQ(Sorted(key->GetValueNames()), row.valueNames) << row.values.size();
        EXPECT_EQ(key->ReadLastError(), 0);
    }
}

TEST(GetNames, AFailedStepEmptiesTheListAndOnlyAccessDeniedIsRaised) {
    TestKey test;
    for (const char* name : {"a", "b", "c"}) {
        test.CreateSubKey(name);
        test.SetRaw(name, 3, "");
    }
    struct Row { bool values; bool atQuery; Status result; Failure failure; };
    const Failure keysDenied{vqNoAccess, L"GetSubKeyNames", RegistryText::NoAccess};
    const Failure valuesDenied{vqNoAccess, L"GetValueNames", RegistryText::NoAccess};
    for (const Row& row : {Row{false, true, 5, keysDenied}, Row{false, false, 5, keysDenied},
             Row{false, false, 259, NoFailure},  // an entry removed since the query
             Row{true, true, 5, valuesDenied}, Row{true, false, 5, valuesDenied},
             Row{true, false, 234, NoFailure}}) {  // a value grown since the query
        const auto& real = platform::realApi();
        Replace<&Api::RegQueryInfoKeyA> query{[&](auto... a) {
            const Status status = real.RegQueryInfoKeyA(a...);
            return row.atQuery ? row.result : status;
        }};
        Replace<&Api::RegEnumKeyExA> enumKey{[&](Handle key, Dword index, auto... rest) {
            return index == 2 ? row.result : real.RegEnumKeyExA(key, index, rest...);
        }};
        Replace<&Api::RegEnumValueA> enumValue{[&](Handle key, Dword index, auto... rest) {
            return index == 2 ? row.result : real.RegEnumValueA(key, index, rest...);
        }};
        const auto key = OpenTestKey(test);
        StringArray names;
        EXPECT_EQ(FailureOf([&] { names = row.values ? key->GetValueNames() : key->GetSubKeyNames(); }),
                  row.failure);
        if (row.failure == NoFailure) {
            EXPECT_EQ(names, EmptyForm);
        }
        EXPECT_EQ(key->ReadLastError(), row.result);
    }

    // A key closed by CloseKey still passes the closed-key test and lists nothing, silently.
    const auto key = OpenTestKey(test);
    key->CloseKey();
    EXPECT_EQ(key->GetSubKeyNames(), EmptyForm);
    EXPECT_EQ(key->ReadLastError(), 6);  // the platform's invalid handle
    const auto closed = RegistryKey{}.OpenRemoteBaseKey(-1, L"");
    EXPECT_EQ(FailureOf([&] { closed->GetSubKeyNames(); }),
              Failure(vqInvalidRegistryKey, L"GetSubKeyNames", RegistryText::KeyClosed));
    EXPECT_EQ(FailureOf([&] { closed->GetValueNames(); }),
              Failure(vqInvalidRegistryKey, L"GetValueNames", RegistryText::KeyClosed));
}

// Whatever came before, every fetch gets the whole buffer of the longest name plus one, all
// NULs, with that length.
TEST(GetNames, EveryFetchGetsAClearedBufferOfTheLongestName) {
    TestKey test;
    for (const char* name : {"a-long-name", "b"}) {
        test.CreateSubKey(name);
        test.SetRaw(name, 3, "");
    }
    std::vector<std::string> buffers;  // as each fetch received it, to the length it was given
    const auto& real = platform::realApi();
    Replace<&Api::RegEnumKeyExA> enumKey{[&](Handle key, Dword index, char* name, Dword* length, auto... rest) {
        buffers.emplace_back(name, *length);
        return real.RegEnumKeyExA(key, index, name, length, rest...);
    }};
    Replace<&Api::RegEnumValueA> enumValue{[&](Handle key, Dword index, char* name, Dword* length, auto... rest) {
        buffers.emplace_back(name, *length);
        return real.RegEnumValueA(key, index, name, length, rest...);
    }};
    const auto key = OpenTestKey(test);
    const StringArray names{0, {L"a-long-name", L"b"}};
    EXPECT_EQ(key->GetSubKeyNames(), names);
    EXPECT_EQ(Sorted(key->GetValueNames()), names);
    EXPECT_EQ(buffers, std::vector<std::string>(4, std::string(12, '\0')));
}

TEST(GetNames, TenThousandEntriesTakeOneQueryAndOneFetchEach) {
    constexpr int Count = 10000;
    TestKey test;
    const auto& real = platform::realApi();
    const Handle handle = test.Open();
    StringArray keys{0, {}}, values{0, {}};
    char className[] = "0", name[16];
    for (int i = 0; i < Count; ++i) {
        Handle child = 0;
        std::snprintf(name, sizeof name, "k%05d", i);
        ASSERT_EQ(real.RegCreateKeyExA(handle, name, 0, className, 0, 0x4001F, nullptr, &child, nullptr), 0);
        real.RegCloseKey(child);
        keys.items.push_back(Wide(name));
        name[0] = 'v';
        real.RegSetValueExA(handle, name, 0, 4, reinterpret_cast<const std::uint8_t*>(&i), 4);
        values.items.push_back(Wide(name));
    }
    const auto key = OpenTestKey(test);
    Recorder recorder;
    EXPECT_EQ(key->GetSubKeyNames(), keys);  // the platform's index order is by name
    EXPECT_EQ(recorder.count("RegQueryInfoKeyA"), 1u);
    EXPECT_EQ(recorder.count("RegEnumKeyExA"), std::size_t{Count});
    recorder.clear();
    EXPECT_EQ(Sorted(key->GetValueNames()), values);
    EXPECT_EQ(recorder.count("RegQueryInfoKeyA"), 1u);
    EXPECT_EQ(recorder.count("RegEnumValueA"), std::size_t{Count});
    // Wine deletes from the end of a long list far faster than from its start.
    for (int i = Count; i-- > 0;) {
        std::snprintf(name, sizeof name, "k%05d", i);
        real.RegDeleteKeyA(handle, name);
    }
    real.RegCloseKey(handle);
}

}  // namespace
}  // namespace orbex
