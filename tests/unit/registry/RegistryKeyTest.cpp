#include "TestKeys.h"

#include "platform/TestHook.h"
#include "registry/RegLib.h"
#include "registry/RegistryKey.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::Handle;
using platform::OsVersionInfoEx;
using platform::testing::Recorder;
using platform::testing::Replace;

constexpr Long FakeHandle = 0x1234;

// Flushes and closes of a handle the platform never gave out.
struct FakeKeyCalls {
    int flushes = 0, closes = 0;
    Handle closed = 0;
    platform::Status flushResult = 0;
    Replace<&Api::RegFlushKey> flush{[this](Handle) { ++flushes; return flushResult; }};
    Replace<&Api::RegCloseKey> close{[this](Handle key) { ++closes, closed = key; return 0; }};
};

TEST(RegistryKey, MachineNameAndName) {
    for (const auto& [given, stored] : std::initializer_list<std::pair<String, String>>{{L"", L""},
             {L"srv", L"\\\\srv"}, {L"  \\\\srv ", L"\\\\srv"}, {L"\\srv", L"\\\\\\srv"}, {L"   ", L"\\\\"}}) {
        RegistryKey key;
        key.SetMachineName(given);
        EXPECT_EQ(key.MachineName(), stored) << given;
    }
    // Root text and path, for the seven roots only.
    struct Row { Long root; const wchar_t* path; const wchar_t* name; };
    for (const Row& row : {Row{vqClassesRoot, L"", L"HKEY_CLASSES_ROOT\\"},
             Row{vqCurrentUser, L"\\A\\B", L"HKEY_CURRENT_USER\\A\\B"},
             Row{vqLocalMachine, L"\\\\A", L"HKEY_LOCAL_MACHINE\\\\A"},
             Row{vqUsers, L"A\\", L"HKEY_USERS\\A\\"}, Row{vqDynData, L"", L"HKEY_DYN_DATA\\"},
             Row{vqPerformanceData, L"", L"HKEY_PERFORMANCE_DATA\\"},
             Row{vqCurrentConfig, L"A", L"HKEY_CURRENT_CONFIG\\A"},
             Row{static_cast<Long>(0x80000007), L"A", L""}, Row{FakeHandle, L"A", L""}}) {
        RegistryKey key;
        key.SetRootKey(row.root);
        key.SetSubKeyPath(row.path);
        EXPECT_EQ(key.Name(), row.name) << row.root;
    }
}

TEST(RegistryKey, HandleTests) {
    struct Row { Long handle; bool valid, root; };
    RegistryKey key;
    key.SetKeyHandle(vqUsers);  // what -2 stands for
    for (const Row& row : {Row{0, false, false}, Row{-1, false, false}, Row{-2, true, true},
             Row{FakeHandle, true, false}, Row{vqClassesRoot, true, true},
             Row{vqDynData, true, true}, Row{static_cast<Long>(0x80000007), true, false}}) {
        EXPECT_EQ(key.IsValidHandle(row.handle), row.valid) << row.handle;
        EXPECT_EQ(key.IsRootHandle(row.handle), row.root) << row.handle;
    }
}

TEST(RegistryKey, CloseKeyFlushesOnlyWhenModifiedAndAutoFlushAndClosesOnce) {
    struct Row { bool modified; Boolean autoFlush; int flushes; };
    for (const Row& row : {Row{false, True, 0}, Row{true, False, 0}, Row{true, True, 1}, Row{true, 0x100, 1}}) {
        FakeKeyCalls calls;
        {
            RegistryKey key;
            key.SetKeyHandle(FakeHandle);
            if (row.modified) key.MarkModified();
            key.AutoFlush(row.autoFlush);
            EXPECT_EQ(key.AutoFlush(), row.autoFlush);  // as stored, not normalised
            key.CloseKey();
            EXPECT_EQ(key.GetKeyHandle(), -1);
            key.CloseKey();
        }
        EXPECT_EQ(calls.flushes, row.flushes) << row.modified << row.autoFlush;
        EXPECT_EQ(calls.closes, 1);  // not again at termination
    }
    // Flush clears Modified when it reaches the platform, even failing, and not without a handle.
    FakeKeyCalls calls;
    calls.flushResult = 5;
    RegistryKey key;
    key.AutoFlush(True);
    key.MarkModified();
    key.Flush();
    key.SetKeyHandle(FakeHandle);
    key.Flush();
    EXPECT_EQ(key.ReadLastError(), 5);
    key.CloseKey();
    EXPECT_EQ(calls.flushes, 1);
}

// Root constants reach the platform sign-extended, and a closed root stays usable.
TEST(RegistryKey, RootHandleSurvivesCloseKey) {
    RegistryKey key;
    key.SetKeyHandle(vqLocalMachine);
    {
        FakeKeyCalls calls;
        key.CloseKey();
        EXPECT_EQ(calls.closed, Handle{-2147483646});
    }
    EXPECT_EQ(key.GetKeyHandle(), vqLocalMachine);
    EXPECT_GT(key.SubKeyCount(), 0);
    EXPECT_EQ(key.ReadLastError(), 0);
}

TEST(RegistryKey, CountsAndLastErrorTextOfARealKey) {
    testing::TestKey test;
    for (const char* name : {"a", "b", ""}) test.SetRaw(name, 1, "x");
    for (const char* name : {"a", "b"}) testing::SetRaw(test.path() + "\\" + name, name, 1, "x");
    RegistryKey key;
    test.Attach(key);
    EXPECT_EQ(key.ValueCount(), 3);
    EXPECT_EQ(key.SubKeyCount(), 2);
    EXPECT_EQ(key.LastErrorText(), L"OK");
    key.CloseKey();
    EXPECT_EQ(key.ReadLastError(), 0);
    EXPECT_EQ(key.ValueCount(), 0);  // reaches the platform with -1
    EXPECT_EQ(key.LastErrorText(), L"Invalid handle.\r\n");  // Wine's wording for 6
}

TEST(RegistryKey, LastErrorTextTakesTheLengthTheSystemGives) {
    struct Row { Long code; Dword written; const wchar_t* text; };
    for (const Row& row : {Row{0, 3, L"OK"}, Row{5, 0, L"Undefined Error."}, Row{vqNoAccess, 3, L"Acc"}}) {
        Replace<&Api::FormatMessageA> fake{[&](Dword, const void*, Dword, Dword, char* buffer, auto...) {
            std::memcpy(buffer, "Access denied.\r\n", 17);
            return row.written;
        }};
        RegistryKey key;
        {
            FakeKeyCalls flush;  // leaves the code as LastError
            flush.flushResult = row.code;
            key.SetKeyHandle(FakeHandle);
            key.Flush();
            key.SetKeyHandle(-1);
        }
        EXPECT_EQ(key.LastErrorText(), row.text) << row.code;
    }
}

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
