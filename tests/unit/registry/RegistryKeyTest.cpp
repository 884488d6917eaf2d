#include "registry/RegistryKey.h"

#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::Handle;
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

void LeaveLastError(RegistryKey& key, Long code) {
    FakeKeyCalls calls;
    calls.flushResult = code;
    key.SetKeyHandle(FakeHandle);
    key.Flush();
    key.SetKeyHandle(-1);
}

TEST(RegistryKey, MachineNameGetsExactlyTwoLeadingBackslashes) {
    const std::pair<String, String> rows[] = {{L"", L""}, {L"srv", L"\\\\srv"},
        {L"  \\\\srv ", L"\\\\srv"}, {L"\\srv", L"\\\\\\srv"}, {L"   ", L"\\\\"}};
    for (const auto& [given, stored] : rows) {
        RegistryKey key;
        key.SetMachineName(given);
        EXPECT_EQ(key.MachineName(), stored) << given;
    }
}

TEST(RegistryKey, NameIsRootTextAndPathForTheSevenRootsOnly) {
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
    for (const Row& row : {Row{false, True, 0}, Row{true, False, 0}, Row{true, True, 1},
             Row{true, 0x100, 1}}) {
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
}

TEST(RegistryKey, FlushClearsModifiedOnlyWhenItReachesThePlatform) {
    FakeKeyCalls calls;
    calls.flushResult = 5;
    RegistryKey key;
    key.AutoFlush(True);
    key.MarkModified();
    key.Flush();  // no handle: Modified stays
    key.SetKeyHandle(FakeHandle);
    key.Flush();
    EXPECT_EQ(key.ReadLastError(), 5);
    key.CloseKey();  // the failed flush cleared Modified all the same
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

// A key with the class text "0", as the library creates them.
TEST(RegistryKey, CountsOfARealKey) {
    const auto& real = platform::realApi();
    const Handle user = vqCurrentUser;
    char className[] = "0";
    platform::SecurityAttributes security{};
    Handle handle = 0, child = 0;
    Dword disposition = 0;
    ASSERT_EQ(real.RegCreateKeyExA(user, "Software\\OrbexTest\\Counts", 0, className, 0,
                                   0x4001F, &security, &handle, &disposition), 0);
    for (const char* name : {"a", "b"}) {
        real.RegCreateKeyExA(handle, name, 0, className, 0, 0x4001F, &security, &child, nullptr);
        real.RegSetValueExA(handle, name, 0, 1, reinterpret_cast<const std::uint8_t*>("x"), 2);
        real.RegSetValueExA(child, name, 0, 1, reinterpret_cast<const std::uint8_t*>("x"), 2);
        real.RegCloseKey(child);
    }
    real.RegSetValueExA(handle, "", 0, 1, reinterpret_cast<const std::uint8_t*>("x"), 2);
    {
        RegistryKey key;
        key.SetKeyHandle(static_cast<Long>(handle));
        EXPECT_EQ(key.ValueCount(), 3);
        EXPECT_EQ(key.SubKeyCount(), 2);
        EXPECT_EQ(key.LastErrorText(), L"OK");
        key.MarkModified();
        key.AutoFlush(True);
        Recorder recorder;
        key.CloseKey();
        EXPECT_EQ(recorder.count("RegFlushKey") + recorder.count("RegCloseKey"), 2u);
        EXPECT_EQ(key.ReadLastError(), 0);
        EXPECT_EQ(key.ValueCount(), 0);  // reaches the platform with -1
        EXPECT_EQ(key.LastErrorText(), L"Invalid handle.\r\n");  // Wine's wording for 6
    }
    for (const char* name : {"Software\\OrbexTest\\Counts\\a", "Software\\OrbexTest\\Counts\\b",
                             "Software\\OrbexTest\\Counts"}) {
        EXPECT_EQ(real.RegDeleteKeyA(user, name), 0) << name;
    }
}

TEST(RegistryKey, LastErrorTextTakesTheLengthTheSystemGives) {
    struct Row { Long code; Dword written; const wchar_t* text; int calls; };
    for (const Row& row : {Row{0, 3, L"OK", 0}, Row{5, 0, L"Undefined Error.", 1},
             Row{vqNoAccess, 3, L"Acc", 1}}) {
        int calls = 0;
        Replace<&Api::FormatMessageA> fake{[&](Dword flags, const void*, Dword code, Dword language,
                                               char* buffer, Dword size, void*) {
            ++calls;
            EXPECT_EQ(flags, 0x1000u);
            EXPECT_EQ(code, static_cast<Dword>(row.code));
            EXPECT_EQ(language + size, 200u);
            std::memcpy(buffer, "Access denied.\r\n", 17);
            return row.written;
        }};
        RegistryKey key;
        LeaveLastError(key, row.code);
        EXPECT_EQ(key.LastErrorText(), row.text) << row.code;
        EXPECT_EQ(calls, row.calls);
    }
}

}  // namespace
}  // namespace orbex
