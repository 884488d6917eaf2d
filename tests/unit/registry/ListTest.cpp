#include "Failures.h"
#include "TestKeys.h"

#include "platform/TestHook.h"
#include "registry/KeyHandles.h"
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
using testing::Failure;
using testing::FailureOf;
using testing::NoFailure;
using testing::TestKey;

const StringArray EmptyForm{-1, {L""}};

// Values come back in the platform's order, which differs between Windows and Wine.
StringArray Sorted(StringArray names) {
    std::sort(names.items.begin(), names.items.end());
    return names;
}

std::unique_ptr<RegistryKey> OpenTestKey(const TestKey& test, Boolean writeable = False) {
    const std::string& path = test.path();
    return RegLib{}.CurrentUser()->OpenSubKey(String(path.begin(), path.end()), writeable);
}

TEST(GetNames, ListTheEntriesOrGiveTheEmptyForm) {
    struct Row {
        const char* what;
        std::vector<std::string> subKeys, values;  // values of no data, but the default's
        StringArray subKeyNames, valueNames;
    };
    for (const Row& row : {Row{"nothing", {}, {}, EmptyForm, EmptyForm},
             Row{"one sub-key", {"a"}, {}, {0, {L"a"}}, EmptyForm},
             Row{"values only", {}, {"", "x", "yy"}, EmptyForm, {0, {L"", L"x", L"yy"}}},
             Row{"values without data", {}, {"x"}, EmptyForm, {0, {L"x"}}},
             Row{"both", {"b", "a"}, {"v"}, {0, {L"a", L"b"}}, {0, {L"v"}}}}) {
        TestKey test;
        for (const std::string& name : row.subKeys) test.CreateSubKey(name);
        for (const std::string& name : row.values) test.SetRaw(name, name.empty() ? 1 : 3, name.empty() ? "d" : "");
        for (Boolean writeable : {False, True}) {
            const auto key = OpenTestKey(test, writeable);
            EXPECT_EQ(key->GetSubKeyNames(), row.subKeyNames) << row.what;
            EXPECT_EQ(Sorted(key->GetValueNames()), row.valueNames) << row.what;
            EXPECT_EQ(key->ReadLastError(), 0) << row.what;
        }
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
        Replace<&Api::RegQueryInfoKeyA> query{[&](Handle key, char* c, Dword* cl, Dword* r, Dword* sk, Dword* msk,
                                                  Dword* mc, Dword* v, Dword* mvn, Dword* mv, Dword* sd,
                                                  platform::FileTime* t) {
            const Status status = real.RegQueryInfoKeyA(key, c, cl, r, sk, msk, mc, v, mvn, mv, sd, t);
            return row.atQuery ? row.result : status;
        }};
        Replace<&Api::RegEnumKeyExA> enumKey{[&](Handle key, Dword index, char* n, Dword* nl, Dword* r,
                                                 char* c, Dword* cl, platform::FileTime* t) {
            return index == 2 ? row.result : real.RegEnumKeyExA(key, index, n, nl, r, c, cl, t);
        }};
        Replace<&Api::RegEnumValueA> enumValue{[&](Handle key, Dword index, char* n, Dword* nl, Dword* r,
                                                   Dword* type, std::uint8_t* d, Dword* ds) {
            return index == 2 ? row.result : real.RegEnumValueA(key, index, n, nl, r, type, d, ds);
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

std::string Numbered(char first, int index) {
    char name[16];
    std::snprintf(name, sizeof name, "%c%05d", first, index);
    return name;
}

// Sub-keys k00000 up, with values v00000 up beside them. The sub-keys go from the last: Wine
// deletes from the end of a long list far faster than from its start.
struct ManyEntries {
    const platform::Api& real = platform::realApi();
    Handle handle;
    int count = 0;
    StringArray keys{0, {}}, values{0, {}};

    ManyEntries(const TestKey& test, int wanted) : handle(test.Open()) {
        char className[] = "0";
        for (Handle child = 0; count < wanted; ++count, real.RegCloseKey(child)) {
            const std::string key = Numbered('k', count), value = Numbered('v', count);
            if (real.RegCreateKeyExA(handle, key.c_str(), 0, className, 0, 0x4001F, nullptr, &child, nullptr)) break;
            real.RegSetValueExA(handle, value.c_str(), 0, 4, reinterpret_cast<const std::uint8_t*>(&count), 4);
            keys.items.emplace_back(key.begin(), key.end());
            values.items.emplace_back(value.begin(), value.end());
        }
    }
    ~ManyEntries() {
        while (count > 0) real.RegDeleteKeyA(handle, Numbered('k', --count).c_str());
        real.RegCloseKey(handle);
    }
};

TEST(GetNames, TenThousandEntriesTakeOneQueryAndOneFetchEach) {
    constexpr int Count = 10000;
    TestKey test;
    const ManyEntries entries(test, Count);
    ASSERT_EQ(entries.count, Count);
    const auto key = OpenTestKey(test);
    Recorder recorder;
    EXPECT_EQ(key->GetSubKeyNames(), entries.keys);  // the platform's index order is by name
    EXPECT_EQ(recorder.count("RegQueryInfoKeyA"), 1u);
    EXPECT_EQ(recorder.count("RegEnumKeyExA"), std::size_t{Count});
    recorder.clear();
    EXPECT_EQ(Sorted(key->GetValueNames()), entries.values);
    EXPECT_EQ(recorder.count("RegQueryInfoKeyA"), 1u);
    EXPECT_EQ(recorder.count("RegEnumValueA"), std::size_t{Count});
}

}  // namespace
}  // namespace orbex
