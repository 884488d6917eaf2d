// The machine's power source and battery. Nothing is kept between reads: every property asks
// the platform again, so a long-lived object always shows the present state.
#pragma once
#include "frame/Types.h"
#include "platform/Records.h"

namespace orbex {

enum vqACLineStatus : Long {
    vqACLSOffLine = 0,
    vqACLSOnLine = 1,
    vqACLSUnknown = 255,
};

// The first five are bits that combine.
enum vqBatteryStatus : Long {
    vqBSHigh = 1,
    vqBSLow = 2,
    vqBSCritical = 4,
    vqBSCharging = 8,
    vqBSNoSystemBattery = 128,
    vqBSUnknownStatus = 255,
};

class PowerInfo {
public:
    vqACLineStatus ACLineStatus();
    String ACLineStatusName();
    vqBatteryStatus BatteryStatus();
    String BatteryStatusName();
    Long BatteryLifePercent();  // -1 when unknown
    Long BatteryLifeTime();     // seconds; -1 when unknown
    Long BatteryFullLifeTime(); // seconds; -1 when unknown

private:
    void RefreshPowerStatus();

    platform::SystemPowerStatus status_{};
};

}  // namespace orbex
