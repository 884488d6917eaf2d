#include "system/PowerInfo.h"

#include "FakeSystem.h"

#include <gtest/gtest.h>

namespace orbex {
namespace {

using platform::SystemPowerStatus;
using testing::FakeVersion;
using testing::Version;

// GetSystemPowerStatus answers `status` (or fails) and counts its calls.
class FakePower {
public:
    explicit FakePower(SystemPowerStatus status, platform::Bool result = 1)
        : replace_{[this, status, result](SystemPowerStatus* out) {
              ++calls;
              *out = status;
              return result;
          }} {}
    int calls = 0;

private:
    platform::testing::Replace<&platform::Api::GetSystemPowerStatus> replace_;
};

TEST(PowerInfo, ReadsABattery) {
    FakeVersion version{testing::WinXPProfessional};
    FakePower power{{0, 9, 57, 0, 3600, 7200}};
    PowerInfo info;
    EXPECT_EQ(info.ACLineStatus(), vqACLSOffLine);
    EXPECT_EQ(info.ACLineStatusName(), L"AC Offline");
    EXPECT_EQ(info.BatteryStatus(), vqBSHigh | vqBSCharging);
    EXPECT_EQ(info.BatteryStatusName(), L"Battery High Battery Charging");
    EXPECT_EQ(info.BatteryLifePercent(), 57);
    EXPECT_EQ(info.BatteryLifeTime(), 3600);
    EXPECT_EQ(info.BatteryFullLifeTime(), 7200);
    EXPECT_EQ(power.calls, 7);  // every read asks again, the names included
}

TEST(PowerInfo, NamesOfTheFlags) {
    struct Row {
        std::uint8_t ac, battery;
        const wchar_t* acName;
        const wchar_t* batteryName;
    };
    FakeVersion version{testing::Win98};
    for (const Row& row : {
             Row{1, 0, L"AC Online", L""},
             Row{255, 0x70, L"AC Status Unknown", L""},
             Row{2, 5, L"", L"Battery Critical Battery High"},
             Row{254, 6, L"", L"Battery Critical Battery Low"},
             Row{0, 128, L"AC Offline", L"No System Battery"},
             Row{0, 0xFF, L"AC Offline", L"Battery Status Unknown"},
             Row{0, 0xFE, L"AC Offline",
                 L"Battery Critical Battery Low Battery Charging No System Battery"},
             Row{0, 0x8F, L"AC Offline",
                 L"Battery Critical Battery High Battery Low Battery Charging No System Battery"},
         }) {
        FakePower power{{row.ac, row.battery, 0, 0, 0, 0}};
        PowerInfo info;
        EXPECT_EQ(info.ACLineStatusName(), row.acName) << int(row.ac);
        EXPECT_EQ(info.BatteryStatusName(), row.batteryName) << int(row.battery);
    }
}

TEST(PowerInfo, PercentPasses254AndMarks255Unknown) {
    FakeVersion version{testing::Win7};
    for (std::uint8_t percent : {std::uint8_t{0}, std::uint8_t{100}, std::uint8_t{254}}) {
        FakePower power{{1, 1, percent, 0, 0, 0}};
        EXPECT_EQ(PowerInfo().BatteryLifePercent(), percent);
    }
    FakePower power{{1, 1, 255, 0, 0, 0}};
    EXPECT_EQ(PowerInfo().BatteryLifePercent(), -1);
}

// NT 3 and NT 4 are not asked; a refused query reads the same, whatever it wrote.
TEST(PowerInfo, UnknownOnNt3AndNt4AndWhenRefused) {
    struct Row {
        const char* what;
        Version version;
        platform::Bool result;
        int calls;
    };
    for (const Row& row : {Row{"NT 3.51", testing::Nt351, 1, 0}, Row{"NT 4.0", testing::Nt4Workstation, 1, 0},
                           Row{"NT 4.0, minor 9", {2, 4, 9, 3}, 1, 0}, Row{"refused", testing::Win7, 0, 1}}) {
        FakeVersion version{row.version};
        FakePower power{{1, 8, 50, 0, 10, 20}, row.result};
        PowerInfo info;
        EXPECT_EQ(info.ACLineStatus(), vqACLSUnknown) << row.what;
        EXPECT_EQ(power.calls, row.calls) << row.what;
        EXPECT_EQ(info.ACLineStatusName(), L"AC Status Unknown") << row.what;
        EXPECT_EQ(info.BatteryStatus(), vqBSUnknownStatus) << row.what;
        EXPECT_EQ(info.BatteryStatusName(), L"Battery Status Unknown") << row.what;
        EXPECT_EQ(info.BatteryLifePercent(), -1) << row.what;
        EXPECT_EQ(info.BatteryLifeTime(), -1) << row.what;
        EXPECT_EQ(info.BatteryFullLifeTime(), -1) << row.what;
    }
}

// Windows 95, 98 and the unknown systems do have the query.
TEST(PowerInfo, OtherSystemsAreAsked) {
    for (const Version& v : {testing::Win95, testing::Win98, testing::WinME, testing::Win2000Professional,
                             testing::Win7, testing::Win32s}) {
        FakeVersion version{v};
        FakePower power{{1, 2, 3, 0, 4, 5}};
        EXPECT_EQ(PowerInfo().BatteryStatus(), vqBSLow) << v.platform << " " << v.major << "." << v.minor;
        EXPECT_EQ(power.calls, 1);
    }
}

TEST(PowerInfo, TwoReadsOfOneObjectCanDiffer) {
    PowerInfo info;
    {
        FakePower power{{1, 1, 80, 0, 0, 0}};
        EXPECT_EQ(info.BatteryLifePercent(), 80);
    }
    FakePower power{{0, 2, 10, 0, 0, 0}};
    EXPECT_EQ(info.BatteryLifePercent(), 10);
}

TEST(PowerInfo, WineAnswersTheQuery) {
    platform::testing::Recorder recorder;
    PowerInfo info;
    const Long ac = info.ACLineStatus();
    EXPECT_EQ(recorder.count("GetSystemPowerStatus"), 1u);
    EXPECT_TRUE(ac == vqACLSOffLine || ac == vqACLSOnLine || ac == vqACLSUnknown) << ac;
}

}  // namespace
}  // namespace orbex
