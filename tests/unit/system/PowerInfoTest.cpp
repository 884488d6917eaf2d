#include "system/PowerInfo.h"

#include "FakeSystem.h"

#include <gtest/gtest.h>

namespace orbex {
namespace {

using platform::SystemPowerStatus;
using testing::FakeVersion;
using testing::Version;

// GetSystemPowerStatus answers `status` (or fails) and counts its calls.
struct FakePower {
    SystemPowerStatus status{};
    platform::Bool result = 1;
    int calls = 0;
    platform::testing::Replace<&platform::Api::GetSystemPowerStatus> replace{[this](SystemPowerStatus* out) {
        ++calls;
        *out = status;
        return result;
    }};
};

TEST(PowerInfo, ReadsTheStatusAtEveryRead) {
    struct Row {
        SystemPowerStatus status;
        const wchar_t* acName;
        const wchar_t* batteryName;
        Long percent;
    };
    FakeVersion version{testing::Win98};
    FakePower power;
    // Critical comes first whatever the size of its bit; bits outside the table add nothing.
    for (const Row& row : {Row{{0, 9, 57, 0, 3600, 7200}, L"AC Offline", L"Battery High Battery Charging", 57},
                           Row{{1, 0, 254, 0, 0, 0}, L"AC Online", L"", 254},
                           Row{{255, 0x70, 255, 0, 0, 0}, L"AC Status Unknown", L"", -1},
                           Row{{2, 5, 0, 0, 0, 0}, L"", L"Battery Critical Battery High", 0},
                           Row{{0, 0xFE, 0, 0, 0, 0}, L"AC Offline",
                               L"Battery Critical Battery Low Battery Charging No System Battery", 0},
                           Row{{0, 0xFF, 0, 0, 0, 0}, L"AC Offline", L"Battery Status Unknown", 0}}) {
        power.status = row.status;
        power.calls = 0;
        PowerInfo info;
        EXPECT_EQ(info.ACLineStatus(), row.status.ACLineStatus);
        EXPECT_EQ(info.ACLineStatusName(), row.acName);
        EXPECT_EQ(info.BatteryStatus(), row.status.BatteryFlag);
        EXPECT_EQ(info.BatteryStatusName(), row.batteryName);
        EXPECT_EQ(info.BatteryLifePercent(), row.percent);
        EXPECT_EQ(info.BatteryLifeTime(), static_cast<Long>(row.status.BatteryLifeTime));
        EXPECT_EQ(info.BatteryFullLifeTime(), static_cast<Long>(row.status.BatteryFullLifeTime));
        EXPECT_EQ(power.calls, 7);
    }
}

// NT 3 and NT 4 are not asked; a refused query reads the same, whatever it wrote. Windows 95,
// 98, 2000 and the unknown systems are asked.
TEST(PowerInfo, UnknownOnNt3AndNt4AndWhenRefused) {
    struct Row {
        Version version;
        platform::Bool result;
        bool asked, known;
    };
    for (const Row& row : {Row{testing::Nt351, 1, false, false}, Row{{2, 4, 9, 3}, 1, false, false},
                           Row{testing::Win7, 0, true, false}, Row{testing::Win95, 1, true, true},
                           Row{testing::Win2000, 1, true, true}, Row{testing::Win32s, 1, true, true}}) {
        FakeVersion version{row.version};
        FakePower power{{1, 8, 50, 0, 10, 20}, row.result};
        PowerInfo info;
        EXPECT_EQ(info.ACLineStatus(), row.known ? vqACLSOnLine : vqACLSUnknown) << row.version.major;
        EXPECT_EQ(power.calls, row.asked ? 1 : 0) << row.version.major;
        if (row.known) continue;
        EXPECT_EQ(info.ACLineStatusName(), L"AC Status Unknown");
        EXPECT_EQ(info.BatteryStatus(), vqBSUnknownStatus);
        EXPECT_EQ(info.BatteryStatusName(), L"Battery Status Unknown");
        EXPECT_EQ(info.BatteryLifePercent(), -1);
        EXPECT_EQ(info.BatteryLifeTime(), -1);
        EXPECT_EQ(info.BatteryFullLifeTime(), -1);
    }
}

}  // namespace
}  // namespace orbex
