#include "system/SystemLib.h"

#include "FakeSystem.h"
#include "frame/RaisedError.h"

#include <gtest/gtest.h>

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

template <class... Arguments>
std::string Line(const char* name, Arguments... arguments) {
    std::string line = name, separator = "(";
    ((line += separator + std::to_string(static_cast<long long>(arguments)), separator = ","), ...);
    return sizeof...(arguments) ? line + ")" : line;
}

Log Join(Log first, const Log& second) { return first.insert(first.end(), second.begin(), second.end()), first; }

// A replacement that logs its call, as Line does, and gives the current value of `answer`.
template <class R>
auto Logging(Log& log, const char* name, const R& answer) {
    return [&log, name, &answer](auto... arguments) { return log.push_back(Line(name, arguments...)), answer; };
}

// Every platform function of the actions is replaced and logs its call: a real ExitWindowsEx
// would end the Wine session, and a real keybd_event would press keys. The answers are fields.
class SystemLibTest : public ::testing::Test {
protected:
    Log log;
    Bool exitResult = 1, open = 1, lookup = 1, adjust = 1;
    Handle process = -1;
    platform::Boolean suspendResult = 1, allowed = 1;
    Dword altScan = 56;
    std::vector<std::uint32_t> messages;  // waiting for the yields

private:
    Bool yes = 1;
    Replace<&Api::ExitWindowsEx> exit_{Logging(log, "ExitWindowsEx", exitResult)};
    Replace<&Api::SetSuspendState> suspend_{Logging(log, "SetSuspendState", suspendResult)};
    Replace<&Api::keybd_event> keys_{Logging(log, "keybd_event", yes)};
    Replace<&Api::MapVirtualKeyA> map_{Logging(log, "MapVirtualKeyA", altScan)};
    Replace<&Api::PeekMessageA> peek_{[this](platform::Msg* message, Handle, Dword, Dword, Dword remove) {
        if (messages.empty() || remove != 1) return log.push_back("yield"), Bool{0};
        *message = platform::Msg{};
        message->message = messages.front();
        return messages.erase(messages.begin()), Bool{1};
    }};
    Replace<&Api::TranslateMessage> translate_{[this](const platform::Msg* m) {
        return log.push_back(Line("TranslateMessage", m->message)), Bool{1};
    }};
    Replace<&Api::DispatchMessageA> dispatch_{[this](const platform::Msg* m) {
        return log.push_back(Line("DispatchMessageA", m->message)), std::intptr_t{0};
    }};
    Replace<&Api::GetCurrentProcess> current_{Logging(log, "GetCurrentProcess", process)};
    Replace<&Api::OpenProcessToken> openToken_{[this](Handle p, Dword access, Handle* token) {
        log.push_back(Line("OpenProcessToken", p, access));
        if (open) *token = 0x7070;
        return open;
    }};
    Replace<&Api::LookupPrivilegeValueA> lookup_{[this](const char* system, const char* name, platform::Luid* luid) {
        log.push_back(std::string("LookupPrivilegeValueA(") + (system ? system : "null") + "," + name + ")");
        if (lookup) *luid = {0x13, 0x7};
        return lookup;
    }};
    Replace<&Api::AdjustTokenPrivileges> adjust_{[this](Handle token, Bool disableAll, platform::TokenPrivileges* state,
                                                        Dword, platform::TokenPrivileges*, Dword*) {
        const auto& p = state->Privileges[0];
        log.push_back(Line("AdjustTokenPrivileges", token, disableAll, state->PrivilegeCount, p.Luid.LowPart,
                           p.Luid.HighPart, p.Attributes));
        return adjust;
    }};
    Replace<&Api::CloseHandle> close_{Logging(log, "CloseHandle", yes)};
    Replace<&Api::IsPwrHibernateAllowed> hibernate_{Logging(log, "IsPwrHibernateAllowed", allowed)};
    Replace<&Api::IsPwrShutdownAllowed> shutdown_{Logging(log, "IsPwrShutdownAllowed", allowed)};
    Replace<&Api::IsPwrSuspendAllowed> suspendAllowed_{Logging(log, "IsPwrSuspendAllowed", allowed)};
    Replace<&Api::IsSystemResumeAutomatic> resume_{Logging(log, "IsSystemResumeAutomatic", allowed)};
};

const Log OpenAndLookUp = {"GetCurrentProcess", "OpenProcessToken(-1,40)", "LookupPrivilegeValueA(null,SeShutdownPrivilege)"};
const Log PrivilegeGranted = Join(OpenAndLookUp, {"AdjustTokenPrivileges(28784,0,1,19,7,2)", "CloseHandle(28784)"});

// Only exactly vqEFForce or vqEFForceIfHung adds its bit: 20 has both, 1 and 2 are other words.
TEST_F(SystemLibTest, FlagWordsOfTheExitRequests) {
    FakeVersion version{testing::Win98};
    for (auto [call, none, force, forceIfHung] : {std::tuple{&SystemLib::LogOff, 0, 4, 16}, {&SystemLib::Shutdown, 1, 5, 17},
                                                  {&SystemLib::Reboot, 2, 6, 18}, {&SystemLib::PowerOff, 8, 12, 24}}) {
        for (auto [flag, word] : {std::pair{0, none}, {4, force}, {16, forceIfHung}, {20, none}, {1, none}, {2, none}, {-1, none}}) {
            log.clear();
            EXPECT_EQ((SystemLib().*call)(static_cast<vqExitFlag>(flag)), True);
            EXPECT_EQ(log, Log{Line("ExitWindowsEx", word, 0)}) << flag;
        }
    }
    exitResult = 0;
    EXPECT_EQ(SystemLib().Shutdown(), False);
}

// No token calls on the 9x family or before NT 4; a failed step stops every request but LogOff;
// an opened token is always closed.
TEST_F(SystemLibTest, ThePrivilegeStep) {
    const struct {
        const char* what;
        Version version;
        Handle process;
        Bool open, lookup, adjust;
        Log privilege;
        bool granted;
    } rows[] = {
        {"9x", testing::Win98, -1, 1, 1, 1, {}, true},
        {"9x with major 5", {1, 5, 0}, -1, 1, 1, 1, {}, true},
        {"NT 3.51", testing::Nt351, -1, 1, 1, 1, {}, true},
        {"Win32s", testing::Win32s, -1, 1, 1, 1, {}, true},
        {"NT 4", testing::Nt4, -1, 1, 1, 1, PrivilegeGranted, true},
        {"no process", testing::Win7, 0, 1, 1, 1, {"GetCurrentProcess"}, false},
        {"token refused", testing::Win7, -1, 0, 1, 1, {"GetCurrentProcess", "OpenProcessToken(-1,40)"}, false},
        {"unknown privilege", testing::Win2000, -1, 1, 0, 1, Join(OpenAndLookUp, {"CloseHandle(28784)"}), false},
        {"adjustment refused", testing::WinXP, -1, 1, 1, 0, PrivilegeGranted, false},
    };
    for (const auto& row : rows) {
        FakeVersion version{row.version};
        process = row.process, open = row.open, lookup = row.lookup, adjust = row.adjust;
        log.clear();
        EXPECT_EQ(SystemLib().Reboot(), toBoolean(row.granted)) << row.what;
        EXPECT_EQ(log, row.granted ? Join(row.privilege, {"ExitWindowsEx(2,0)"}) : row.privilege) << row.what;
        log.clear();
        EXPECT_EQ(SystemLib().LogOff(), True) << row.what;
        EXPECT_EQ(log, Join(row.privilege, {"ExitWindowsEx(0,0)"})) << row.what;
    }
}

// Windows 95, NT 3 and NT 4 are not asked; 98, ME, 2000 and every unknown system are.
TEST_F(SystemLibTest, PowerQueriesAreGuardedOnOldSystems) {
    const std::pair<Boolean (SystemLib::*)() const, const char*> queries[] = {
        {&SystemLib::IsHibernateAllowed, "IsPwrHibernateAllowed"}, {&SystemLib::IsShutdownAllowed, "IsPwrShutdownAllowed"},
        {&SystemLib::IsSuspendAllowed, "IsPwrSuspendAllowed"}, {&SystemLib::IsSystemResumeAutomatic, "IsSystemResumeAutomatic"}};
    for (auto [version, asked] : {std::pair{testing::Win95, false}, {Version{1, 4, 0, 0, 0, "B"}, false},
                                  {testing::Nt351, false}, {testing::Nt4, false}, {testing::Win98, true},
                                  {testing::WinME, true}, {testing::Win2000, true}, {testing::Win7, true}}) {
        FakeVersion fake{version};
        for (auto [query, function] : queries) {
            for (platform::Boolean answer : {0, 1, 2}) {
                allowed = answer;
                log.clear();
                EXPECT_EQ((SystemLib().*query)(), toBoolean(asked && answer != 0)) << function;
                EXPECT_EQ(log, asked ? Log{function} : Log{}) << version.platform << " " << version.major;
            }
        }
    }
}

// The triples SetSuspendState gets, and the checks that stop before it.
TEST_F(SystemLibTest, HibernateAndSuspend) {
    const auto hibernate = &SystemLib::Hibernate, suspend = &SystemLib::Suspend;
    const struct {
        const char* what;
        Version version;
        decltype(hibernate) call;
        Long flag;
        Boolean disableWake;
        platform::Boolean allowed, suspendResult;
        Bool adjust;
        Log expected;
    } rows[] = {
        {"forced, wake disabled", testing::Win98, hibernate, 1, True, 1, 1, 1, {"IsPwrHibernateAllowed", "SetSuspendState(1,1,-1)"}},
        {"defaults", testing::Win98, suspend, 0, False, 1, 1, 1, {"IsPwrSuspendAllowed", "SetSuspendState(0,0,0)"}},
        {"flags pass unchecked", testing::WinME, suspend, 7, 1, 1, 1, 1, {"IsPwrSuspendAllowed", "SetSuspendState(0,7,1)"}},
        {"refused", testing::WinME, suspend, 0, False, 1, 0, 1, {"IsPwrSuspendAllowed", "SetSuspendState(0,0,0)"}},
        {"not allowed", testing::Win98, hibernate, 0, False, 0, 1, 1, {"IsPwrHibernateAllowed"}},
        {"NT 4 is not asked", testing::Nt4, hibernate, 0, False, 1, 1, 1, {}},
        {"privilege on NT", testing::Win2000, hibernate, 0, False, 1, 1, 1,
         Join(Join({"IsPwrHibernateAllowed"}, PrivilegeGranted), {"SetSuspendState(1,0,0)"})},
        {"privilege refused", testing::Win7, suspend, 0, False, 1, 1, 0, Join({"IsPwrSuspendAllowed"}, PrivilegeGranted)},
    };
    for (const auto& row : rows) {
        FakeVersion version{row.version};
        allowed = row.allowed, suspendResult = row.suspendResult, adjust = row.adjust;
        log.clear();
        const bool accepted = !row.expected.empty() && row.expected.back().starts_with("SetSuspendState") && row.suspendResult;
        EXPECT_EQ((SystemLib().*row.call)(static_cast<vqSleepFlag>(row.flag), row.disableWake), toBoolean(accepted)) << row.what;
        EXPECT_EQ(log, row.expected) << row.what;
    }
}

// Alt down, Print Screen down, Alt up, with the caller's messages handled in between. A quit
// message ends a yield undispatched; the next yield handles what is left behind it.
TEST_F(SystemLibTest, CaptureScreenSequences) {
    const std::string alt = "MapVirtualKeyA(18,0)", altDown = "keybd_event(18,56,0,0)", altUp = "keybd_event(18,56,2,0)";
    const struct {
        const char* what;
        Version version;
        Boolean activeWindow;
        std::vector<std::uint32_t> messages;
        Log expected;
    } rows[] = {
        {"active window on NT", testing::Win7, True, {}, {alt, altDown, "yield", "keybd_event(44,0,0,0)", "yield", altUp}},
        {"active window on 9x", testing::Win98, True, {}, {alt, altDown, "yield", "keybd_event(44,1,0,0)", "yield", altUp}},
        {"True given as 1, Win32s", testing::Win32s, 1, {}, {alt, altDown, "yield", "keybd_event(44,1,0,0)", "yield", altUp}},
        {"whole screen on 9x", testing::Win98, False, {}, {alt, "yield", "keybd_event(44,0,0,0)", "yield"}},
        {"waiting messages", testing::Win7, False, {0x100, 0x12, 0x101},
         {alt, "TranslateMessage(256)", "DispatchMessageA(256)", "keybd_event(44,0,0,0)", "TranslateMessage(257)",
          "DispatchMessageA(257)", "yield"}},
    };
    for (const auto& row : rows) {
        FakeVersion version{row.version};
        messages = row.messages;
        log.clear();
        SystemLib().CaptureScreen(row.activeWindow);
        EXPECT_EQ(log, row.expected) << row.what;
    }
    altScan = 256;  // beyond a byte: fails before any key goes down
    log.clear();
    EXPECT_THROW(SystemLib().CaptureScreen(), RaisedError);
    EXPECT_EQ(log, Log{alt});
}

// The computer name ends at the first NUL; the user name where the size word says, and a size
// word of 0 asks for a negative length (error 5). A failed GUID gives the zero GUID's text.
TEST_F(SystemLibTest, NamesAndGuid) {
    for (auto [result, buffer, size, computer, user] :
         {std::tuple{1, std::string("BOB\0XYZ", 7), 4u, std::wstring(L"BOB"), std::wstring(L"BOB")},
          {1, "ALICE", 3u, L"ALICE", L"AL"}, {1, std::string("PC\0Z", 4), 4u, L"PC", std::wstring(L"PC\0", 3)},
          {0, "JUNK", 5u, L"", L""}, {1, "X", 0u, L"X", L"raises 5"}}) {
        auto fill = [&](char* out, Dword* inOut, Dword expectedSize) {
            EXPECT_EQ(*inOut, expectedSize);
            buffer.copy(out, buffer.size());
            return *inOut = size, Bool(result);
        };
        Replace<&Api::GetComputerNameA> c{[&](char* out, Dword* inOut) { return fill(out, inOut, 32); }};
        Replace<&Api::GetUserNameA> u{[&](char* out, Dword* inOut) { return fill(out, inOut, 255); }};
        EXPECT_EQ(SystemLib().ComputerName(), computer);
        try {
            EXPECT_EQ(SystemLib().UserName(), user);
        } catch (const RaisedError& error) {
            EXPECT_EQ(user + std::to_wstring(error.Number), L"raises 55");
        }
    }
    Replace<&Api::CoCreateGuid> create{[](platform::Guid*) { return platform::Hresult{-2147467259}; }};
    EXPECT_EQ(SystemLib().GetGUID(), L"{00000000-0000-0000-0000-000000000000}");
}

}  // namespace
}  // namespace orbex
