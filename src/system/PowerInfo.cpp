#include "PowerInfo.h"

#include "OSInfo.h"
#include "frame/FunctionLib.h"
#include "platform/Api.h"

namespace orbex {
namespace {

constexpr std::uint8_t UnknownByte = 255;
constexpr platform::Dword UnknownTime = 0xFFFFFFFF;  // -1 seconds

void MarkUnknown(platform::SystemPowerStatus& status) {
    status.ACLineStatus = UnknownByte;
    status.BatteryFlag = UnknownByte;
    status.BatteryLifePercent = UnknownByte;
    status.Reserved1 = UnknownByte;
    status.BatteryLifeTime = UnknownTime;
    status.BatteryFullLifeTime = UnknownTime;
}

}  // namespace

// NT 3 and NT 4 have no power status; a refused query reads as unknown too. Each version test
// asks its own new OSInfo.
void PowerInfo::RefreshPowerStatus() {
    const bool isNt3 = isTrue(OSInfo().IsWinNT3());
    const bool isNt4 = isTrue(OSInfo().IsWinNT4());
    if (isNt3 || isNt4 || platform::api().GetSystemPowerStatus(&status_) == 0) {
        MarkUnknown(status_);
    }
}

vqACLineStatus PowerInfo::ACLineStatus() {
    RefreshPowerStatus();
    return static_cast<vqACLineStatus>(status_.ACLineStatus);
}

String PowerInfo::ACLineStatusName() {
    switch (ACLineStatus()) {
    case vqACLSOffLine: return L"AC Offline";
    case vqACLSOnLine: return L"AC Online";
    case vqACLSUnknown: return L"AC Status Unknown";
    default: return String{};
    }
}

vqBatteryStatus PowerInfo::BatteryStatus() {
    RefreshPowerStatus();
    return static_cast<vqBatteryStatus>(status_.BatteryFlag);
}

// Critical comes first whatever the size of its bit; bits outside the table add nothing.
String PowerInfo::BatteryStatusName() {
    const Long flags = BatteryStatus();
    String text;
    if (flags == vqBSUnknownStatus) {
        text = L"Battery Status Unknown ";
    } else {
        if (flags & vqBSCritical) text += L"Battery Critical ";
        if (flags & vqBSHigh) text += L"Battery High ";
        if (flags & vqBSLow) text += L"Battery Low ";
        if (flags & vqBSCharging) text += L"Battery Charging ";
        if (flags & vqBSNoSystemBattery) text += L"No System Battery ";
    }
    return String{TrimBlanks(text)};
}

Long PowerInfo::BatteryLifePercent() {
    RefreshPowerStatus();
    return status_.BatteryLifePercent == UnknownByte ? -1 : Long{status_.BatteryLifePercent};
}

Long PowerInfo::BatteryLifeTime() {
    RefreshPowerStatus();
    return static_cast<Long>(status_.BatteryLifeTime);
}

Long PowerInfo::BatteryFullLifeTime() {
    RefreshPowerStatus();
    return static_cast<Long>(status_.BatteryFullLifeTime);
}

}  // namespace orbex
