#include "SystemLib.h"

#include "frame/Ansi.h"
#include "frame/Checked.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <string>

namespace orbex {
namespace {

using platform::Dword;
using platform::Handle;

// The request words of ExitWindowsEx.
constexpr Dword LogOffRequest = 0;    // EWX_LOGOFF
constexpr Dword ShutdownRequest = 1;  // EWX_SHUTDOWN
constexpr Dword RebootRequest = 2;    // EWX_REBOOT
constexpr Dword PowerOffRequest = 8;  // EWX_POWEROFF
constexpr Dword ForceBit = 0x4;       // EWX_FORCE
constexpr Dword ForceIfHungBit = 0x10;  // EWX_FORCEIFHUNG

constexpr Dword TokenAccess = 0x28;  // TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY
constexpr Dword PrivilegeEnabled = 2;  // SE_PRIVILEGE_ENABLED

constexpr std::uint8_t AltKey = 18;          // VK_MENU
constexpr std::uint8_t PrintScreenKey = 44;  // VK_SNAPSHOT
constexpr Dword KeyDown = 0;
constexpr Dword KeyUp = 2;  // KEYEVENTF_KEYUP
constexpr Dword VirtualKeyToScanCode = 0;  // MAPVK_VK_TO_VSC

constexpr Dword RemoveMessage = 1;  // PM_REMOVE
constexpr std::uint32_t QuitMessage = 0x12;  // WM_QUIT

constexpr Dword ComputerNameBuffer = 32;
constexpr Dword UserNameBuffer = 255;
constexpr std::int32_t GuidTextBuffer = 40;

// Windows 95, NT 3 and NT 4 know no power management; each test asks its own new OSInfo.
bool LacksPowerManagement() {
    const bool win95 = isTrue(OSInfo().IsWin95());
    const bool nt3 = isTrue(OSInfo().IsWinNT3());
    const bool nt4 = isTrue(OSInfo().IsWinNT4());
    return win95 || nt3 || nt4;
}

template <class Query>
Boolean GuardedQuery(Query query) {
    if (LacksPowerManagement()) return False;
    return toBoolean(query() != 0);
}

// The process token, closed when the privilege step ends.
class TokenHandle {
public:
    TokenHandle() = default;
    TokenHandle(const TokenHandle&) = delete;
    TokenHandle& operator=(const TokenHandle&) = delete;
    ~TokenHandle() {
        if (handle_ != 0) platform::api().CloseHandle(handle_);
    }
    Handle* put() { return &handle_; }
    Handle get() const { return handle_; }

private:
    Handle handle_ = 0;
};

// Enables the shutdown privilege on the NT family from version 4 on; older and 9x systems
// need none. Whether the token really holds the privilege is not asked: an accepted call
// counts as success.
bool EnableShutdownPrivilege() {
    {
        const OSInfo os;
        if (os.MajorVersion() < 4 || os.PlatformID() != vqOSPWindowsNT) return true;
    }
    const auto& api = platform::api();
    const Handle process = api.GetCurrentProcess();
    if (process == 0) return false;
    TokenHandle token;
    if (api.OpenProcessToken(process, TokenAccess, token.put()) == 0) return false;
    platform::Luid luid{};
    if (api.LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &luid) == 0) return false;
    platform::TokenPrivileges state{};
    state.PrivilegeCount = 1;
    state.Privileges[0].Luid = luid;
    state.Privileges[0].Attributes = PrivilegeEnabled;
    return api.AdjustTokenPrivileges(token.get(), 0, &state, 0, nullptr, nullptr) != 0;
}

// Only a flag of exactly vqEFForce or vqEFForceIfHung adds its bit. A failed privilege step
// stops every request but the log-off, which needs no privilege.
Boolean RequestExit(Dword request, Long exitFlag) {
    Dword flags = request;
    if (exitFlag == vqEFForce) {
        flags |= ForceBit;
    } else if (exitFlag == vqEFForceIfHung) {
        flags |= ForceIfHungBit;
    }
    const bool privileged = EnableShutdownPrivilege();
    if (!privileged && request != LogOffRequest) return False;
    return toBoolean(platform::api().ExitWindowsEx(flags, 0) != 0);
}

Boolean EnterSleep(std::int32_t hibernate, Long sleepFlag, Boolean disableWakeEvent) {
    if (!EnableShutdownPrivilege()) return False;
    return toBoolean(platform::api().SetSuspendState(hibernate, sleepFlag, disableWakeEvent) != 0);
}

// Lets the calling thread's pending window messages run, as a message loop would, and returns
// when none is left. A quit message ends the yield undispatched.
void YieldToMessages() {
    const auto& api = platform::api();
    platform::Msg message{};
    while (api.PeekMessageA(&message, 0, 0, 0, RemoveMessage) != 0) {
        if (message.message == QuitMessage) break;
        api.TranslateMessage(&message);
        api.DispatchMessageA(&message);
    }
}

}  // namespace

std::unique_ptr<OSInfo> SystemLib::OSInfo() const { return std::make_unique<orbex::OSInfo>(); }
std::unique_ptr<PowerInfo> SystemLib::PowerInfo() const { return std::make_unique<orbex::PowerInfo>(); }
std::unique_ptr<MemoryInfo> SystemLib::MemoryInfo() const { return std::make_unique<orbex::MemoryInfo>(); }
std::unique_ptr<ScreenInfo> SystemLib::ScreenInfo() const { return std::make_unique<orbex::ScreenInfo>(); }

Boolean SystemLib::IsHibernateAllowed() const {
    return GuardedQuery([] { return platform::api().IsPwrHibernateAllowed(); });
}
Boolean SystemLib::IsShutdownAllowed() const {
    return GuardedQuery([] { return platform::api().IsPwrShutdownAllowed(); });
}
Boolean SystemLib::IsSuspendAllowed() const {
    return GuardedQuery([] { return platform::api().IsPwrSuspendAllowed(); });
}
Boolean SystemLib::IsSystemResumeAutomatic() const {
    return GuardedQuery([] { return platform::api().IsSystemResumeAutomatic(); });
}

// The platform ends the name with a NUL; its size word is not read.
String SystemLib::ComputerName() const {
    std::string buffer(ComputerNameBuffer, '\0');
    Dword size = ComputerNameBuffer;
    if (platform::api().GetComputerNameA(buffer.data(), &size) == 0) return String{};
    return CutAtFirstNul(FromAnsi(buffer), 1);
}

// The size word counts the name and its NUL; the name ends there, whatever else the buffer holds.
String SystemLib::UserName() const {
    std::string buffer(UserNameBuffer, '\0');
    Dword size = UserNameBuffer;
    if (platform::api().GetUserNameA(buffer.data(), &size) == 0) return String{};
    const Long length = CheckedSub(static_cast<Long>(size), 1);
    if (length < 0) RaiseRunTime(RunTime::InvalidArgument);
    return FromAnsi(buffer).substr(0, static_cast<std::size_t>(length));
}

Boolean SystemLib::LogOff(vqExitFlag exitFlag) const { return RequestExit(LogOffRequest, exitFlag); }
Boolean SystemLib::Shutdown(vqExitFlag exitFlag) const { return RequestExit(ShutdownRequest, exitFlag); }
Boolean SystemLib::PowerOff(vqExitFlag exitFlag) const { return RequestExit(PowerOffRequest, exitFlag); }
Boolean SystemLib::Reboot(vqExitFlag exitFlag) const { return RequestExit(RebootRequest, exitFlag); }

Boolean SystemLib::Hibernate(vqSleepFlag sleepFlag, Boolean disableWakeEvent) const {
    if (!isTrue(IsHibernateAllowed())) return False;
    return EnterSleep(1, sleepFlag, disableWakeEvent);
}

Boolean SystemLib::Suspend(vqSleepFlag sleepFlag, Boolean disableWakeEvent) const {
    if (!isTrue(IsSuspendAllowed())) return False;
    return EnterSleep(0, sleepFlag, disableWakeEvent);
}

// Print Screen gets no release event. On the 9x family the scan code 1 with Print Screen asks
// for the active window only.
void SystemLib::CaptureScreen(Boolean activeWindow) const {
    const auto& api = platform::api();
    const bool active = isTrue(activeWindow);
    const Byte altScan = ToByte(static_cast<Long>(api.MapVirtualKeyA(AltKey, VirtualKeyToScanCode)));
    if (active) api.keybd_event(AltKey, altScan, KeyDown, 0);
    const bool notNt = orbex::OSInfo().PlatformID() != vqOSPWindowsNT;
    const std::uint8_t printScan = active && notNt ? 1 : 0;
    YieldToMessages();
    api.keybd_event(PrintScreenKey, printScan, KeyDown, 0);
    YieldToMessages();
    if (active) api.keybd_event(AltKey, altScan, KeyUp, 0);
}

// A failed CoCreateGuid leaves the record at zero, which still has its text.
String SystemLib::GetGUID() const {
    const auto& api = platform::api();
    platform::Guid guid{};
    wchar_t buffer[GuidTextBuffer] = {};
    api.CoCreateGuid(&guid);
    api.StringFromGUID2(&guid, buffer, GuidTextBuffer);
    return CutAtFirstNul(String(buffer, GuidTextBuffer), 1);
}

}  // namespace orbex
