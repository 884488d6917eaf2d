// The version decisions of the system classes on the real platform. ctest runs this program in
// the main prefix (Wine's default, Windows 7) and again in prefixes where Wine pretends to be an
// older Windows; ORBEX_WINE_VERSION names the one in force. Only the session and keyboard
// functions are replaced: everything else is Wine's own answer.
#include "system/SystemLib.h"

#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::testing::Recorder;
using platform::testing::Replace;

// What Wine reports for each version it can pretend to be, and what the library makes of it.
struct Expected {
    const char* wine;
    Long platform, major, minor, build;
    const wchar_t* name;
    const wchar_t* additionalInfo;
    const wchar_t* servicePack;
};

const Expected Versions[] = {
    {"win98", 1, 4, 10, 2222, L"Windows 98 SE", L" A ", L""},
    {"nt40", 2, 4, 0, 1381, L"Windows NT 4.0 Workstation", L"Service Pack 6a", L"Service Pack 6.0"},
    {"win2k", 2, 5, 0, 2195, L"Windows 2000 Professional", L"Service Pack 4", L"Service Pack 4.0"},
    {"winxp", 2, 5, 1, 2600, L"Windows XP Professional", L"Service Pack 3", L"Service Pack 3.0"},
    {"default", 2, 6, 1, 7601, L"Unknown Operating System", L"Service Pack 1", L"Service Pack 1.0"},
};

const Expected& InForce() {
    const char* name = std::getenv("ORBEX_WINE_VERSION");
    const std::string wanted = name && *name ? name : "default";
    for (const Expected& e : Versions) {
        if (wanted == e.wine) return e;
    }
    ADD_FAILURE() << "no expectations for " << wanted;
    return Versions[std::size(Versions) - 1];
}

bool IsNt3Or4(const Expected& e) { return e.platform == 2 && (e.major == 3 || e.major == 4); }

// Wine accepts the extended record in every mode, so the plain one is never asked for.
TEST(WineVersion, OSInfoNamesTheSystem) {
    const Expected& e = InForce();
    Recorder recorder;
    const OSInfo os;
    EXPECT_EQ(recorder.count("GetVersionExA"), 1u) << e.wine;
    EXPECT_EQ(os.PlatformID(), e.platform) << e.wine;
    EXPECT_EQ(os.MajorVersion(), e.major) << e.wine;
    EXPECT_EQ(os.MinorVersion(), e.minor) << e.wine;
    EXPECT_EQ(os.BuildNo(), e.build) << e.wine;
    EXPECT_EQ(os.VersionName(), e.name) << e.wine;
    EXPECT_EQ(os.VersionNo(), std::to_wstring(e.major) + L"." + std::to_wstring(e.minor)) << e.wine;
    EXPECT_EQ(os.AdditionalInfo(), e.additionalInfo) << e.wine;
    EXPECT_EQ(os.ServicePack(), e.servicePack) << e.wine;
    EXPECT_EQ(isTrue(os.IsWin9x()), e.platform == 1) << e.wine;
}

// NT 3 and NT 4 have no power status: the query is not made and everything reads unknown.
TEST(WineVersion, PowerInfoAsksOnlyWhereThereIsPowerStatus) {
    const Expected& e = InForce();
    Recorder recorder;
    PowerInfo power;
    const Long line = power.ACLineStatus();
    const Long percent = power.BatteryLifePercent();
    if (IsNt3Or4(e)) {
        EXPECT_EQ(recorder.count("GetSystemPowerStatus"), 0u) << e.wine;
        EXPECT_EQ(line, vqACLSUnknown) << e.wine;
        EXPECT_EQ(percent, -1) << e.wine;
        EXPECT_EQ(power.BatteryStatusName(), L"Battery Status Unknown") << e.wine;
    } else {
        EXPECT_EQ(recorder.count("GetSystemPowerStatus"), 2u) << e.wine;
    }
}

// Before Windows 2000 the older 32-bit query is used.
TEST(WineVersion, MemoryInfoChoosesItsQueryByTheMajorVersion) {
    const Expected& e = InForce();
    Recorder recorder;
    const MemoryInfo memory;
    const bool extended = e.major >= 5;
    EXPECT_EQ(recorder.count("GlobalMemoryStatusEx"), extended ? 1u : 0u) << e.wine;
    EXPECT_EQ(recorder.count("GlobalMemoryStatus"), extended ? 0u : 1u) << e.wine;
    EXPECT_GT(memory.TotalPhysical().scaled, 0) << e.wine;
    EXPECT_EQ(memory.TotalPhysical().scaled % 10000, 0) << e.wine;
    if (!extended) {
        EXPECT_EQ(memory.AvailableExtendedVirtual().scaled, 0) << e.wine;
        platform::MemoryStatus status{};
        status.dwLength = sizeof status;
        platform::realApi().GlobalMemoryStatus(&status);
        EXPECT_EQ(memory.TotalPhysical().scaled, static_cast<std::int64_t>(static_cast<std::intptr_t>(status.dwTotalPhys)) * 10000)
            << e.wine;
    }
}

// Windows 95, NT 3 and NT 4 are not asked about power management.
TEST(WineVersion, PowerQueriesAreGuarded) {
    const Expected& e = InForce();
    Recorder recorder;
    const SystemLib lib;
    const Boolean hibernate = lib.IsHibernateAllowed();
    const Boolean suspend = lib.IsSuspendAllowed();
    const std::size_t asked = recorder.count("IsPwrHibernateAllowed") + recorder.count("IsPwrSuspendAllowed");
    if (IsNt3Or4(e)) {
        EXPECT_EQ(asked, 0u) << e.wine;
        EXPECT_EQ(hibernate, False) << e.wine;
        EXPECT_EQ(suspend, False) << e.wine;
    } else {
        EXPECT_EQ(asked, 2u) << e.wine;
    }
}

// Every test that reaches an action replaces the platform's: a real ExitWindowsEx, SetSuspendState
// or keybd_event would act on the Wine session.
class WineVersionActions : public ::testing::Test {
protected:
    std::vector<std::string> log;

private:
    Replace<&Api::ExitWindowsEx> exit_{[this](platform::Dword flags, platform::Dword) {
        log.push_back("ExitWindowsEx " + std::to_string(flags));
        return platform::Bool{1};
    }};
    Replace<&Api::SetSuspendState> suspend_{[this](std::int32_t hibernate, std::int32_t, std::int32_t) {
        log.push_back("SetSuspendState " + std::to_string(hibernate));
        return platform::Boolean{1};
    }};
    Replace<&Api::keybd_event> keys_{[this](std::uint8_t key, std::uint8_t scan, platform::Dword flags, std::uintptr_t) {
        log.push_back("key " + std::to_string(key) + " " + std::to_string(scan) + " " + std::to_string(flags));
    }};
};

// The 9x family takes no privilege step; NT from version 4 on does, with Wine's own token.
TEST_F(WineVersionActions, PrivilegeStepFollowsThePlatform) {
    const Expected& e = InForce();
    Recorder recorder;
    EXPECT_EQ(SystemLib().Reboot(vqEFForce), True) << e.wine;
    const bool privileged = e.platform == 2 && e.major >= 4;
    EXPECT_EQ(recorder.count("OpenProcessToken"), privileged ? 1u : 0u) << e.wine;
    EXPECT_EQ(recorder.count("AdjustTokenPrivileges"), privileged ? 1u : 0u) << e.wine;
    EXPECT_EQ(recorder.count("CloseHandle"), privileged ? 1u : 0u) << e.wine;
    EXPECT_EQ(log, std::vector<std::string>{"ExitWindowsEx 6"}) << e.wine;
}

// Print Screen carries scan code 1 for the active window everywhere but on NT.
TEST_F(WineVersionActions, CaptureScreenScanCodeFollowsThePlatform) {
    const Expected& e = InForce();
    SystemLib().CaptureScreen(True);
    ASSERT_EQ(log.size(), 3u) << e.wine;
    EXPECT_EQ(log[1], e.platform == 2 ? "key 44 0 0" : "key 44 1 0") << e.wine;
    EXPECT_EQ(log[0].substr(0, 7), "key 18 ") << e.wine;
    EXPECT_EQ(log[2].substr(log[2].size() - 2), " 2") << e.wine;
}

}  // namespace
}  // namespace orbex
