#include "registry/RegLib.h"

#include "frame/RaisedError.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstring>
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
        RegLib lib;
        auto key = (lib.*row.property)(L" srv");
        ASSERT_TRUE(key) << row.name;
        EXPECT_TRUE(recorder.calls().empty()) << row.name;
        EXPECT_EQ(key->Name(), row.name);
        EXPECT_EQ(key->GetKeyHandle(), row.root);
        EXPECT_EQ(key->MachineName(), L"\\\\srv");
    }
}

// The machine name waits for a sub-key to be opened; the root object reads the local root.
TEST(RegLib, RootWithMachineNameReadsTheLocalRoot) {
    RegLib lib;
    auto local = lib.LocalMachine();
    auto named = lib.LocalMachine(L"nosuchmachine");
    EXPECT_GT(local->SubKeyCount(), 0);
    EXPECT_EQ(named->SubKeyCount(), local->SubKeyCount());
    EXPECT_EQ(named->ReadLastError(), 0);
}

TEST(RegLib, FamilyRootsFollowTheVersionRecord) {
    struct Row {
        const char* what;
        platform::Bool extended, plain;  // the answers to size 156 and to size 148
        platform::Dword family, acted;  // reported, and what the library should make of it
        std::vector<platform::Dword> sizes;
    };
    for (const Row& row : {Row{"9x", 1, 0, 1, 1, {156}}, Row{"NT", 1, 0, 2, 2, {156}},
             Row{"Win32s", 1, 0, 0, 0, {156}}, Row{"9x, plain record only", 0, 1, 1, 1, {156, 148}},
             Row{"only exactly 1 succeeds", 2, 1, 2, 2, {156, 148}},
             Row{"both refused", 0, 0, 2, 0, {156, 148}}}) {
        for (bool dyn : {true, false}) {
            std::vector<platform::Dword> sizes;
            platform::testing::Replace<&Api::GetVersionExA> fake{[&](OsVersionInfoEx* info) {
                OsVersionInfoEx zeroed{};
                zeroed.dwOSVersionInfoSize = info->dwOSVersionInfoSize;
                if (sizes.empty()) {
                    EXPECT_EQ(std::memcmp(info, &zeroed, sizeof zeroed), 0);
                }
                sizes.push_back(info->dwOSVersionInfoSize);
                info->dwPlatformId = row.family;
                return sizes.size() == 1 ? row.extended : row.plain;
            }};
            auto key = dyn ? RegLib{}.DynData(L"srv") : RegLib{}.PerformanceData(L"srv");
            EXPECT_EQ(sizes, row.sizes) << row.what;
            ASSERT_EQ(key != nullptr, row.acted == (dyn ? 1u : 2u)) << row.what;
            if (!key) continue;
            EXPECT_EQ(key->GetKeyHandle(), dyn ? vqDynData : vqPerformanceData);
            EXPECT_EQ(key->MachineName(), L"\\\\srv");
        }
    }
}

TEST(RegLib, FamilyRootsSwallowFailures) {
    platform::testing::Replace<&Api::GetVersionExA> fake{
        [](OsVersionInfoEx*) -> platform::Bool { Raise(1, L"x", L"y"); }};
    EXPECT_EQ(RegLib{}.PerformanceData(), nullptr);
}

TEST(RegLib, WineIsOfTheNtFamily) {
    EXPECT_EQ(RegLib{}.DynData(), nullptr);
    EXPECT_NE(RegLib{}.PerformanceData(), nullptr);
}

}  // namespace
}  // namespace orbex
