#include "registry/RegLib.h"

#include "frame/RaisedError.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::OsVersionInfoEx;
using Property = std::unique_ptr<RegistryKey> (RegLib::*)(const String&);

TEST(RegLib, RootsAreMadeWithoutCallingThePlatform) {
    struct Row { Property property; vqRegKeys root; const wchar_t* name; };
    for (const Row& row : {Row{&RegLib::ClassesRoot, vqClassesRoot, L"HKEY_CLASSES_ROOT\\"},
                           Row{&RegLib::CurrentConfig, vqCurrentConfig, L"HKEY_CURRENT_CONFIG\\"},
                           Row{&RegLib::CurrentUser, vqCurrentUser, L"HKEY_CURRENT_USER\\"},
                           Row{&RegLib::LocalMachine, vqLocalMachine, L"HKEY_LOCAL_MACHINE\\"},
                           Row{&RegLib::Users, vqUsers, L"HKEY_USERS\\"}}) {
        platform::testing::Recorder recorder;
        auto key = (RegLib{}.*row.property)(L" srv");
        ASSERT_TRUE(key) << row.name;
        EXPECT_TRUE(recorder.calls().empty()) << row.name;
        EXPECT_EQ(key->Name(), row.name);
        EXPECT_EQ(key->GetKeyHandle(), row.root);
        EXPECT_EQ(key->MachineName(), L"\\\\srv");
    }
    // The machine name waits for a sub-key to be opened; the root object reads the local root.
    auto local = RegLib{}.LocalMachine(), named = RegLib{}.LocalMachine(L"nosuchmachine");
    EXPECT_GT(local->SubKeyCount(), 0);
    EXPECT_EQ(named->SubKeyCount(), local->SubKeyCount());
    EXPECT_EQ(named->ReadLastError(), 0);
    // Wine is of the NT family.
    EXPECT_EQ(RegLib{}.DynData(), nullptr);
    EXPECT_NE(RegLib{}.PerformanceData(), nullptr);
}

TEST(RegLib, FamilyRootsFollowTheVersionRecord) {
    struct Row {
        platform::Bool extended, plain;  // the answers to the extended record and to the plain one
        platform::Dword family, acted;   // reported, and what the library should make of it
    };
    for (const Row& row : {Row{1, 0, 1, 1}, Row{1, 0, 2, 2}, Row{1, 0, 0, 0}, Row{0, 1, 1, 1},
             Row{2, 1, 2, 2},  // only exactly 1 succeeds
             Row{0, 0, 2, 0}}) {
        for (bool dyn : {true, false}) {
            int calls = 0;
            platform::testing::Replace<&Api::GetVersionExA> fake{[&](OsVersionInfoEx* info) {
                info->dwPlatformId = row.family;
                return ++calls == 1 ? row.extended : row.plain;
            }};
            auto key = dyn ? RegLib{}.DynData(L"srv") : RegLib{}.PerformanceData(L"srv");
            ASSERT_EQ(key != nullptr, row.acted == (dyn ? 1u : 2u)) << row.family << row.extended << row.plain;
            if (!key) continue;
            EXPECT_EQ(key->GetKeyHandle(), dyn ? vqDynData : vqPerformanceData);
            EXPECT_EQ(key->MachineName(), L"\\\\srv");
        }
    }
    platform::testing::Replace<&Api::GetVersionExA> raising{
        [](OsVersionInfoEx*) -> platform::Bool { Raise(1, L"x", L"y"); }};
    EXPECT_EQ(RegLib{}.PerformanceData(), nullptr);
}

}  // namespace
}  // namespace orbex
