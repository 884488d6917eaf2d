// The system classes' version decisions on the real platform: ctest runs this program in the main
// prefix (Windows 7) and in prefixes where Wine pretends to be an older Windows, named by
// ORBEX_WINE_VERSION. Only the session and keyboard functions are replaced.
#include "system/SystemLib.h"

#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::testing::Replace;
// What Wine reports for each version it can pretend to be, and what the library makes of it.
struct Expected {
    std::string wine;
    Long platform, major, minor, build;
    const wchar_t *name, *additionalInfo, *servicePack;
};

const Expected& InForce() {
    static const Expected versions[] = {
        {"win98", 1, 4, 10, 2222, L"Windows 98 SE", L" A ", L""},
        {"nt40", 2, 4, 0, 1381, L"Windows NT 4.0 Workstation", L"Service Pack 6a", L"Service Pack 6.0"},
        {"winxp", 2, 5, 1, 2600, L"Windows XP Professional", L"Service Pack 3", L"Service Pack 3.0"},
        {"default", 2, 6, 1, 7601, L"Unknown Operating System", L"Service Pack 1", L"Service Pack 1.0"},
    };
    const char* name = std::getenv("ORBEX_WINE_VERSION");
    for (const Expected& e : versions) {
        if (e.wine == (name && *name ? name : "default")) return e;
    }
    return ADD_FAILURE() << "no expectations for " << name, versions[std::size(versions) - 1];
}

// Wine accepts the extended record in every mode, so the plain one is never asked for. NT 3 and
// NT 4 have no power status or power management; before 2000 the older memory query is used.
TEST(WineVersion, InfoObjectsFollowThePlatform) {
    const Expected& e = InForce();
    const bool nt4 = e.platform == 2 && e.major == 4;
    platform::testing::Recorder recorder;
    const OSInfo os;
    EXPECT_EQ(recorder.count("GetVersionExA"), 1u);
    EXPECT_EQ(std::vector<Long>({os.PlatformID(), os.MajorVersion(), os.MinorVersion(), os.BuildNo()}),
              std::vector<Long>({e.platform, e.major, e.minor, e.build}));
    EXPECT_EQ(os.VersionName(), e.name);
    EXPECT_EQ(os.AdditionalInfo(), e.additionalInfo);
    EXPECT_EQ(os.ServicePack(), e.servicePack);

    const Long percent = PowerInfo().BatteryLifePercent();
    const Boolean hibernate = SystemLib().IsHibernateAllowed();
    EXPECT_EQ(recorder.count("GetSystemPowerStatus"), nt4 ? 0u : 1u);
    EXPECT_EQ(recorder.count("IsPwrHibernateAllowed"), nt4 ? 0u : 1u);
    if (nt4) {
        EXPECT_EQ(std::pair(percent, hibernate), std::pair(-1, False));
    }

    const MemoryInfo memory;
    EXPECT_EQ(recorder.count("GlobalMemoryStatusEx"), e.major >= 5 ? 1u : 0u);
    EXPECT_EQ(recorder.count("GlobalMemoryStatus"), e.major >= 5 ? 0u : 1u);
    EXPECT_GT(memory.TotalPhysical().scaled, 0);
}

// The 9x family takes no privilege step; NT from version 4 on does, with Wine's own token, and
// Wine grants it. Print Screen carries scan code 1 for the active window everywhere but on NT.
// A real ExitWindowsEx or keybd_event would act on the Wine session: both are replaced.
TEST(WineVersion, ActionsFollowThePlatform) {
    const Expected& e = InForce();
    std::vector<std::string> log;
    Replace<&Api::ExitWindowsEx> exit{[&](platform::Dword flags, platform::Dword) {
        return log.push_back("exit " + std::to_string(flags)), platform::Bool{1};
    }};
    Replace<&Api::SetSuspendState> suspend{[&](std::int32_t, std::int32_t, std::int32_t) {
        return log.push_back("suspend"), platform::Boolean{1};
    }};
    Replace<&Api::keybd_event> keys{[&](std::uint8_t key, std::uint8_t scan, platform::Dword, std::uintptr_t) {
        log.push_back("key " + std::to_string(key) + " " + std::to_string(scan));
    }};
    platform::testing::Recorder recorder;
    EXPECT_EQ(SystemLib().Reboot(vqEFForce), True);
    const std::size_t privileged = e.platform == 2 && e.major >= 4 ? 1 : 0;
    EXPECT_EQ(std::vector<std::size_t>({recorder.count("OpenProcessToken"), recorder.count("AdjustTokenPrivileges"),
                                        recorder.count("CloseHandle")}),
              std::vector<std::size_t>(3, privileged));
    SystemLib().CaptureScreen(True);
    EXPECT_EQ(log, (std::vector<std::string>{"exit 6", "key 18 56", e.platform == 2 ? "key 44 0" : "key 44 1", "key 18 56"}));
}

}  // namespace
}  // namespace orbex
