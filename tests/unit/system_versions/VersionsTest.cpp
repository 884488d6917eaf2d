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
    std::string wine;
    Long platform, major, minor, build;
    const wchar_t* name;
    const wchar_t* additionalInfo;
    const wchar_t* servicePack;

    bool nt3or4() const { return platform == 2 && (major == 3 || major == 4); }
};

const Expected& InForce() {
    static const Expected versions[] = {
        {"win98", 1, 4, 10, 2222, L"Windows 98 SE", L" A ", L""},
        {"nt40", 2, 4, 0, 1381, L"Windows NT 4.0 Workstation", L"Service Pack 6a", L"Service Pack 6.0"},
        {"win2k", 2, 5, 0, 2195, L"Windows 2000 Professional", L"Service Pack 4", L"Service Pack 4.0"},
        {"winxp", 2, 5, 1, 2600, L"Windows XP Professional", L"Service Pack 3", L"Service Pack 3.0"},
        {"default", 2, 6, 1, 7601, L"Unknown Operating System", L"Service Pack 1", L"Service Pack 1.0"},
    };
    const char* name = std::getenv("ORBEX_WINE_VERSION");
    for (const Expected& e : versions) {
        if (e.wine == (name && *name ? name : "default")) return e;
    }
    ADD_FAILURE() << "no expectations for " << name;
    return versions[std::size(versions) - 1];
}

// Wine accepts the extended record in every mode, so the plain one is never asked for.
TEST(WineVersion, OSInfoNamesTheSystem) {
    const Expected& e = InForce();
    Recorder recorder;
    const OSInfo os;
    EXPECT_EQ(recorder.count("GetVersionExA"), 1u);
    EXPECT_EQ(std::vector<Long>({os.PlatformID(), os.MajorVersion(), os.MinorVersion(), os.BuildNo()}),
              std::vector<Long>({e.platform, e.major, e.minor, e.build}));
    EXPECT_EQ(os.VersionName(), e.name);
    EXPECT_EQ(os.AdditionalInfo(), e.additionalInfo);
    EXPECT_EQ(os.ServicePack(), e.servicePack);
}

// NT 3 and NT 4 have neither power status nor power management: nothing is asked there.
TEST(WineVersion, PowerIsAskedOnlyWhereItExists) {
    const Expected& e = InForce();
    Recorder recorder;
    PowerInfo power;
    const Long percent = power.BatteryLifePercent();
    const Boolean hibernate = SystemLib().IsHibernateAllowed();
    const std::size_t asked = e.nt3or4() ? 0 : 1;
    EXPECT_EQ(recorder.count("GetSystemPowerStatus"), asked);
    EXPECT_EQ(recorder.count("IsPwrHibernateAllowed"), asked);
    if (e.nt3or4()) {
        EXPECT_EQ(percent, -1);
        EXPECT_EQ(power.BatteryStatusName(), L"Battery Status Unknown");
        EXPECT_EQ(hibernate, False);
    }
}

// Before Windows 2000 the older 32-bit query is used.
TEST(WineVersion, MemoryInfoChoosesItsQueryByTheMajorVersion) {
    const Expected& e = InForce();
    Recorder recorder;
    const MemoryInfo memory;
    EXPECT_EQ(recorder.count("GlobalMemoryStatusEx"), e.major >= 5 ? 1u : 0u);
    EXPECT_EQ(recorder.count("GlobalMemoryStatus"), e.major >= 5 ? 0u : 1u);
    EXPECT_GT(memory.TotalPhysical().scaled, 0);
}

// Every test that reaches an action replaces the platform's: a real ExitWindowsEx or
// keybd_event would act on the Wine session.
class WineVersionActions : public ::testing::Test {
protected:
    std::vector<std::string> log;

private:
    Replace<&Api::ExitWindowsEx> exit_{[this](platform::Dword flags, platform::Dword) {
        return log.push_back("ExitWindowsEx " + std::to_string(flags)), platform::Bool{1};
    }};
    Replace<&Api::SetSuspendState> suspend_{[this](std::int32_t, std::int32_t, std::int32_t) {
        return log.push_back("SetSuspendState"), platform::Boolean{1};
    }};
    Replace<&Api::keybd_event> keys_{[this](std::uint8_t key, std::uint8_t scan, platform::Dword flags, std::uintptr_t) {
        log.push_back("key " + std::to_string(key) + " " + std::to_string(scan) + " " + std::to_string(flags));
    }};
};

// The 9x family takes no privilege step; NT from version 4 on does, with Wine's own token, and
// Wine grants it.
TEST_F(WineVersionActions, PrivilegeStepFollowsThePlatform) {
    const Expected& e = InForce();
    Recorder recorder;
    EXPECT_EQ(SystemLib().Reboot(vqEFForce), True);
    const std::size_t privileged = e.platform == 2 && e.major >= 4 ? 1 : 0;
    EXPECT_EQ(recorder.count("OpenProcessToken"), privileged);
    EXPECT_EQ(recorder.count("AdjustTokenPrivileges"), privileged);
    EXPECT_EQ(recorder.count("CloseHandle"), privileged);
    EXPECT_EQ(log, std::vector<std::string>{"ExitWindowsEx 6"});
}

// Print Screen carries scan code 1 for the active window everywhere but on NT.
TEST_F(WineVersionActions, CaptureScreenScanCodeFollowsThePlatform) {
    const Expected& e = InForce();
    SystemLib().CaptureScreen(True);
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[1], e.platform == 2 ? "key 44 0 0" : "key 44 1 0");
}

}  // namespace
}  // namespace orbex
