#include "system/SystemLib.h"

#include "FakeSystem.h"
#include "frame/RaisedError.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwctype>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::Dword;
using platform::Handle;
using platform::testing::Replace;
using testing::FakeVersion;
using testing::Version;

using Log = std::vector<std::string>;

std::string Line(const char* name, std::initializer_list<long long> arguments = {}) {
    std::string line = name;
    if (arguments.size() == 0) return line;
    const char* separator = "(";
    for (long long argument : arguments) {
        line += separator + std::to_string(argument);
        separator = ",";
    }
    return line + ")";
}

// Every test here runs with the session, sleep and keyboard functions replaced: a real
// ExitWindowsEx would end the Wine session. The calls they receive are logged in order.
class SystemLibTest : public ::testing::Test {
protected:
    Log log;
    Bool exitResult = 1;
    platform::Boolean suspendResult = 1;

private:
    Replace<&Api::ExitWindowsEx> exit_{[this](Dword flags, Dword reserved) {
        log.push_back(Line("ExitWindowsEx", {flags, reserved}));
        return exitResult;
    }};
    Replace<&Api::SetSuspendState> suspend_{[this](std::int32_t hibernate, std::int32_t force, std::int32_t wake) {
        log.push_back(Line("SetSuspendState", {hibernate, force, wake}));
        return suspendResult;
    }};
    Replace<&Api::keybd_event> keys_{[this](std::uint8_t key, std::uint8_t scan, Dword flags, std::uintptr_t extra) {
        log.push_back(Line("keybd_event", {key, scan, flags, static_cast<long long>(extra)}));
    }};
};

constexpr Handle Process = -1;
constexpr Handle Token = 0x7070;

// The token functions, each answering as told and logging its call.
struct FakeToken {
    explicit FakeToken(Log& log) : log(log) {}
    Log& log;
    Handle process = Process;
    Bool open = 1, lookup = 1, adjust = 1;

    Replace<&Api::GetCurrentProcess> current{[this] {
        log.push_back("GetCurrentProcess");
        return process;
    }};
    Replace<&Api::OpenProcessToken> openToken{[this](Handle p, Dword access, Handle* token) {
        log.push_back(Line("OpenProcessToken", {access}));
        EXPECT_EQ(p, process);
        if (open) *token = Token;
        return open;
    }};
    Replace<&Api::LookupPrivilegeValueA> lookupPrivilege{[this](const char* system, const char* name, platform::Luid* luid) {
        log.push_back("LookupPrivilegeValueA");
        EXPECT_EQ(system, nullptr);
        EXPECT_STREQ(name, "SeShutdownPrivilege");
        if (lookup) *luid = {0x13, 0x7};
        return lookup;
    }};
    Replace<&Api::AdjustTokenPrivileges> adjustPrivileges{
        [this](Handle token, Bool disableAll, platform::TokenPrivileges* state, Dword length,
               platform::TokenPrivileges* previous, Dword* returnLength) {
            log.push_back("AdjustTokenPrivileges");
            EXPECT_EQ(token, Token);
            EXPECT_EQ(disableAll, 0);
            EXPECT_EQ(state->PrivilegeCount, 1u);
            EXPECT_EQ(state->Privileges[0].Luid.LowPart, 0x13u);
            EXPECT_EQ(state->Privileges[0].Luid.HighPart, 0x7);
            EXPECT_EQ(state->Privileges[0].Attributes, 2u);
            EXPECT_EQ(length, 0u);
            EXPECT_EQ(previous, nullptr);
            EXPECT_EQ(returnLength, nullptr);
            return adjust;
        }};
    Replace<&Api::CloseHandle> close{[this](Handle handle) {
        log.push_back(Line("CloseHandle", {handle}));
        return 1;
    }};
};

const Log PrivilegeGranted = {"GetCurrentProcess", "OpenProcessToken(40)", "LookupPrivilegeValueA",
                              "AdjustTokenPrivileges", "CloseHandle(28784)"};

using ExitAction = Boolean (SystemLib::*)(vqExitFlag) const;

TEST_F(SystemLibTest, FlagWordsOfTheExitRequests) {
    struct Row {
        const char* action;
        ExitAction call;
        Dword none, force, forceIfHung;
    };
    FakeVersion version{testing::Win7};
    FakeToken token{log};
    for (const Row& row : {Row{"LogOff", &SystemLib::LogOff, 0, 4, 16}, Row{"Shutdown", &SystemLib::Shutdown, 1, 5, 17},
                           Row{"Reboot", &SystemLib::Reboot, 2, 6, 18}, Row{"PowerOff", &SystemLib::PowerOff, 8, 12, 24}}) {
        struct Flag {
            Long value;
            Dword word;
        };
        // Only exactly 4 or 16 adds a bit: 20 has both, 1 and 2 are other actions' words.
        for (const Flag& flag : {Flag{vqEFNone, row.none}, Flag{vqEFForce, row.force}, Flag{vqEFForceIfHung, row.forceIfHung},
                                 Flag{20, row.none}, Flag{1, row.none}, Flag{2, row.none}, Flag{-1, row.none}}) {
            log.clear();
            EXPECT_EQ((SystemLib().*row.call)(static_cast<vqExitFlag>(flag.value)), True) << row.action;
            Log expected = PrivilegeGranted;
            expected.push_back(Line("ExitWindowsEx", {flag.word, 0}));
            EXPECT_EQ(log, expected) << row.action << " " << flag.value;
        }
    }
    exitResult = 0;
    EXPECT_EQ(SystemLib().Shutdown(), False);
}

// No token calls on the 9x family or before NT 4; a failed step stops every request but LogOff;
// the token, once opened, is always closed.
TEST_F(SystemLibTest, ThePrivilegeStep) {
    struct Row {
        const char* what;
        Version version;
        Handle process;
        Bool open, lookup, adjust;
        Log privilege;
        bool granted;
    };
    const Log none;
    const Row rows[] = {
        {"9x", testing::Win98, Process, 1, 1, 1, none, true},
        {"NT 3.51", testing::Nt351, Process, 1, 1, 1, none, true},
        {"Win32s", testing::Win32s, Process, 1, 1, 1, none, true},
        {"9x with major 5", {1, 5, 0}, Process, 1, 1, 1, none, true},
        {"NT 4", testing::Nt4Workstation, Process, 1, 1, 1, PrivilegeGranted, true},
        {"no process", testing::Win7, 0, 1, 1, 1, {"GetCurrentProcess"}, false},
        {"token refused", testing::Win7, Process, 0, 1, 1, {"GetCurrentProcess", "OpenProcessToken(40)"}, false},
        {"unknown privilege", testing::Win2000Professional, Process, 1, 0, 1,
         {"GetCurrentProcess", "OpenProcessToken(40)", "LookupPrivilegeValueA", "CloseHandle(28784)"}, false},
        {"adjustment refused", testing::WinXPProfessional, Process, 1, 1, 0, PrivilegeGranted, false},
    };
    for (const Row& row : rows) {
        FakeVersion version{row.version};
        FakeToken token{log};
        token.process = row.process;
        token.open = row.open;
        token.lookup = row.lookup;
        token.adjust = row.adjust;

        log.clear();
        EXPECT_EQ(SystemLib().Reboot(), toBoolean(row.granted)) << row.what;
        Log expected = row.privilege;
        if (row.granted) expected.push_back("ExitWindowsEx(2,0)");
        EXPECT_EQ(log, expected) << row.what << ": Reboot";

        log.clear();
        EXPECT_EQ(SystemLib().LogOff(), True) << row.what;
        expected = row.privilege;
        expected.push_back("ExitWindowsEx(0,0)");
        EXPECT_EQ(log, expected) << row.what << ": LogOff";
    }
}

// Wine's own token functions: the privilege is granted and the token closed again.
TEST_F(SystemLibTest, PrivilegeStepOnWine) {
    platform::testing::Recorder recorder;
    EXPECT_EQ(SystemLib().PowerOff(vqEFForce), True);
    EXPECT_EQ(log, Log{"ExitWindowsEx(12,0)"});
    EXPECT_EQ(recorder.count("OpenProcessToken"), 1u);
    EXPECT_EQ(recorder.count("AdjustTokenPrivileges"), 1u);
    EXPECT_EQ(recorder.count("CloseHandle"), 1u);
}

struct FakePowerPolicy {
    explicit FakePowerPolicy(Log& log) : log(log) {}
    Log& log;
    platform::Boolean answer = 1;
    Replace<&Api::IsPwrHibernateAllowed> hibernate{[this] { return Answer("IsPwrHibernateAllowed"); }};
    Replace<&Api::IsPwrShutdownAllowed> shutdown{[this] { return Answer("IsPwrShutdownAllowed"); }};
    Replace<&Api::IsPwrSuspendAllowed> suspend{[this] { return Answer("IsPwrSuspendAllowed"); }};
    Replace<&Api::IsSystemResumeAutomatic> resume{[this] { return Bool{Answer("IsSystemResumeAutomatic")}; }};

private:
    platform::Boolean Answer(const char* name) {
        log.push_back(name);
        return answer;
    }
};

TEST_F(SystemLibTest, PowerQueriesAreGuardedOnOldSystems) {
    using Query = Boolean (SystemLib::*)() const;
    struct QueryRow {
        Query query;
        const char* platformFunction;
    };
    const QueryRow queries[] = {{&SystemLib::IsHibernateAllowed, "IsPwrHibernateAllowed"},
                                {&SystemLib::IsShutdownAllowed, "IsPwrShutdownAllowed"},
                                {&SystemLib::IsSuspendAllowed, "IsPwrSuspendAllowed"},
                                {&SystemLib::IsSystemResumeAutomatic, "IsSystemResumeAutomatic"}};
    struct Row {
        const char* what;
        Version version;
        bool asked;
    };
    for (const Row& row : {Row{"95", testing::Win95, false}, Row{"95 OSR2", {1, 4, 0, 0, 0, "B"}, false},
                           Row{"NT 3.51", testing::Nt351, false}, Row{"NT 4", testing::Nt4Workstation, false},
                           Row{"98", testing::Win98, true}, Row{"ME", testing::WinME, true},
                           Row{"2000", testing::Win2000Professional, true}, Row{"unknown", testing::Win7, true},
                           Row{"Win32s", testing::Win32s, true}}) {
        FakeVersion version{row.version};
        FakePowerPolicy policy{log};
        for (const QueryRow& q : queries) {
            for (platform::Boolean answer : {0, 1, 2}) {
                policy.answer = answer;
                log.clear();
                EXPECT_EQ((SystemLib().*q.query)(), toBoolean(row.asked && answer != 0)) << row.what;
                EXPECT_EQ(log, row.asked ? Log{q.platformFunction} : Log{}) << row.what;
            }
        }
    }
}

TEST_F(SystemLibTest, HibernateAndSuspend) {
    using Sleep = Boolean (SystemLib::*)(vqSleepFlag, Boolean) const;
    struct Row {
        const char* what;
        Version version;
        Sleep call;
        Long flag;
        Boolean disableWake;
        platform::Boolean allowed;
        Bool adjust;
        Log expected;
        Boolean result;
    };
    const Sleep hibernate = &SystemLib::Hibernate, suspend = &SystemLib::Suspend;
    const Row rows[] = {
        {"hibernate forced, wake disabled", testing::Win98, hibernate, vqSFForce, True, 1, 1,
         {"IsPwrHibernateAllowed", "SetSuspendState(1,1,-1)"}, True},
        {"suspend with defaults", testing::Win98, suspend, vqSFNone, False, 1, 1,
         {"IsPwrSuspendAllowed", "SetSuspendState(0,0,0)"}, True},
        {"flags pass unchecked", testing::WinME, suspend, 7, 1, 1, 1,
         {"IsPwrSuspendAllowed", "SetSuspendState(0,7,1)"}, True},
        {"not allowed", testing::Win98, hibernate, vqSFNone, False, 0, 1, {"IsPwrHibernateAllowed"}, False},
        {"NT 4 is not asked", testing::Nt4Workstation, hibernate, vqSFNone, False, 1, 1, {}, False},
        {"Windows 95 is not asked", testing::Win95, suspend, vqSFNone, False, 1, 1, {}, False},
        {"privilege granted on NT", testing::Win2000Professional, hibernate, vqSFNone, False, 1, 1,
         {"IsPwrHibernateAllowed", "GetCurrentProcess", "OpenProcessToken(40)", "LookupPrivilegeValueA",
          "AdjustTokenPrivileges", "CloseHandle(28784)", "SetSuspendState(1,0,0)"},
         True},
        {"privilege refused", testing::Win7, suspend, vqSFNone, False, 1, 0,
         {"IsPwrSuspendAllowed", "GetCurrentProcess", "OpenProcessToken(40)", "LookupPrivilegeValueA",
          "AdjustTokenPrivileges", "CloseHandle(28784)"},
         False},
    };
    for (const Row& row : rows) {
        FakeVersion version{row.version};
        FakePowerPolicy policy{log};
        policy.answer = row.allowed;
        FakeToken token{log};
        token.adjust = row.adjust;
        log.clear();
        EXPECT_EQ((SystemLib().*row.call)(static_cast<vqSleepFlag>(row.flag), row.disableWake), row.result) << row.what;
        EXPECT_EQ(log, row.expected) << row.what;
    }
    FakeVersion version{testing::Win98};
    FakePowerPolicy policy{log};
    suspendResult = 0;
    EXPECT_EQ(SystemLib().Hibernate(), False);
}

// The yields are logged as "yield": each one peeks once when no message waits.
struct FakeKeyboard {
    explicit FakeKeyboard(Log& log) : log(log) {}
    Log& log;
    Dword altScan = 56;
    Replace<&Api::MapVirtualKeyA> map{[this](Dword code, Dword type) {
        EXPECT_EQ(code, 18u);
        EXPECT_EQ(type, 0u);
        return altScan;
    }};
    Replace<&Api::PeekMessageA> peek{[this](platform::Msg*, Handle, Dword, Dword, Dword) {
        log.push_back("yield");
        return Bool{0};
    }};
};

TEST_F(SystemLibTest, CaptureScreenKeySequences) {
    struct Row {
        const char* what;
        Version version;
        Boolean activeWindow;
        Log expected;
    };
    const Row rows[] = {
        {"active window on NT", testing::Win7, True,
         {"keybd_event(18,56,0,0)", "yield", "keybd_event(44,0,0,0)", "yield", "keybd_event(18,56,2,0)"}},
        {"active window on 9x", testing::Win98, True,
         {"keybd_event(18,56,0,0)", "yield", "keybd_event(44,1,0,0)", "yield", "keybd_event(18,56,2,0)"}},
        {"active window on Win32s, given as 1", testing::Win32s, 1,
         {"keybd_event(18,56,0,0)", "yield", "keybd_event(44,1,0,0)", "yield", "keybd_event(18,56,2,0)"}},
        {"whole screen on NT", testing::Win7, False, {"yield", "keybd_event(44,0,0,0)", "yield"}},
        {"whole screen on 9x", testing::Win98, False, {"yield", "keybd_event(44,0,0,0)", "yield"}},
    };
    for (const Row& row : rows) {
        FakeVersion version{row.version};
        FakeKeyboard keyboard{log};
        log.clear();
        SystemLib().CaptureScreen(row.activeWindow);
        EXPECT_EQ(log, row.expected) << row.what;
    }
}

// A scan code beyond a byte fails before any key goes down.
TEST_F(SystemLibTest, CaptureScreenScanCodeOverflow) {
    FakeKeyboard keyboard{log};
    keyboard.altScan = 256;
    try {
        SystemLib().CaptureScreen();
        ADD_FAILURE() << "no overflow";
    } catch (const RaisedError& error) {
        EXPECT_EQ(error.Number, RunTime::Overflow);
    }
    EXPECT_TRUE(log.empty());
}

// The yield handles every waiting message and stops at a quit message, which it leaves undispatched.
TEST_F(SystemLibTest, YieldHandlesWaitingMessages) {
    struct Row {
        const char* what;
        std::vector<std::uint32_t> queue;
        int handled;
    };
    // A quit message ends the first yield; the second one takes what is left behind it.
    for (const Row& row : {Row{"two messages", {0x100, 0x101}, 2}, Row{"quit first", {0x12, 0x100}, 1},
                           Row{"quit between", {0x100, 0x12, 0x101, 0x102}, 3}}) {
        std::vector<std::uint32_t> queue;
        int translated = 0, dispatched = 0;
        Replace<&Api::PeekMessageA> peek{[&](platform::Msg* message, Handle window, Dword first, Dword last, Dword remove) {
            EXPECT_EQ(window, 0);
            EXPECT_EQ(first, 0u);
            EXPECT_EQ(last, 0u);
            EXPECT_EQ(remove, 1u);
            if (queue.empty()) return Bool{0};
            *message = platform::Msg{};
            message->message = queue.front();
            queue.erase(queue.begin());
            return Bool{1};
        }};
        Replace<&Api::TranslateMessage> translate{[&](const platform::Msg*) {
            ++translated;
            return Bool{1};
        }};
        Replace<&Api::DispatchMessageA> dispatch{[&](const platform::Msg* message) {
            EXPECT_NE(message->message, 0x12u);
            ++dispatched;
            return std::intptr_t{0};
        }};
        queue = row.queue;
        SystemLib().CaptureScreen(False);
        EXPECT_EQ(translated, row.handled) << row.what;
        EXPECT_EQ(dispatched, row.handled) << row.what;
    }
}

TEST_F(SystemLibTest, NamesFromTheirBuffers) {
    struct Row {
        const char* what;
        Bool result;
        const char* buffer;  // what the platform leaves, NULs included
        std::size_t bufferLength;
        Dword size;
        std::wstring computer, user;
    };
    const Row rows[] = {
        // The computer name ends at the first NUL; the user name where the size word says.
        {"name and leftovers", 1, "BOB\0XYZ", 7, 4, L"BOB", L"BOB"},
        {"size word shorter than the text", 1, "ALICE", 5, 3, L"ALICE", L"AL"},
        {"size word beyond the NUL", 1, "PC\0Z", 4, 4, L"PC", std::wstring(L"PC\0", 3)},
        {"refused", 0, "JUNK", 4, 5, L"", L""},
    };
    for (const Row& row : rows) {
        auto fill = [&](char* buffer, Dword* size, Dword expectedSize) {
            EXPECT_EQ(*size, expectedSize);
            EXPECT_EQ(std::memchr(buffer, 1, expectedSize), nullptr);
            std::memcpy(buffer, row.buffer, row.bufferLength);
            *size = row.size;
            return row.result;
        };
        Replace<&Api::GetComputerNameA> computer{[&](char* buffer, Dword* size) { return fill(buffer, size, 32); }};
        Replace<&Api::GetUserNameA> user{[&](char* buffer, Dword* size) { return fill(buffer, size, 255); }};
        EXPECT_EQ(SystemLib().ComputerName(), row.computer) << row.what;
        EXPECT_EQ(SystemLib().UserName(), row.user) << row.what;
    }
}

// A size word of 0 asks for a negative length of text.
TEST_F(SystemLibTest, UserNameWithAnEmptySizeWord) {
    Replace<&Api::GetUserNameA> user{[](char*, Dword* size) {
        *size = 0;
        return Bool{1};
    }};
    try {
        SystemLib().UserName();
        ADD_FAILURE() << "nothing raised";
    } catch (const RaisedError& error) {
        EXPECT_EQ(error.Number, RunTime::InvalidArgument);
    }
}

TEST_F(SystemLibTest, NamesOnWine) {
    EXPECT_FALSE(SystemLib().ComputerName().empty());
    const String user = SystemLib().UserName();
    EXPECT_FALSE(user.empty());
    EXPECT_EQ(user.find(L'\0'), String::npos);
}

bool IsGuidText(const String& text) {
    if (text.size() != 38 || text.front() != L'{' || text.back() != L'}') return false;
    for (std::size_t i = 1; i < 37; ++i) {
        const bool hyphen = i == 9 || i == 14 || i == 19 || i == 24;
        if (hyphen ? text[i] != L'-' : !(std::iswdigit(text[i]) || (text[i] >= L'A' && text[i] <= L'F'))) return false;
    }
    return true;
}

TEST_F(SystemLibTest, GuidsAreNewEachTime) {
    const String first = SystemLib().GetGUID();
    const String second = SystemLib().GetGUID();
    EXPECT_TRUE(IsGuidText(first)) << first;
    EXPECT_TRUE(IsGuidText(second)) << second;
    EXPECT_NE(first, second);
}

TEST_F(SystemLibTest, FailedGuidGivesTheZeroGuid) {
    Replace<&Api::CoCreateGuid> create{[](platform::Guid*) { return platform::Hresult{-2147467259}; }};
    EXPECT_EQ(SystemLib().GetGUID(), L"{00000000-0000-0000-0000-000000000000}");
}

TEST_F(SystemLibTest, ObjectPropertiesAreNewEachTime) {
    const SystemLib lib;
    const auto first = lib.OSInfo();
    const auto second = lib.OSInfo();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(first->VersionName(), second->VersionName());
    EXPECT_NE(lib.MemoryInfo(), nullptr);
    EXPECT_NE(lib.PowerInfo(), nullptr);
    EXPECT_NE(lib.ScreenInfo(), nullptr);
}

}  // namespace
}  // namespace orbex
