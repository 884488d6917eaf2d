// Wraps the information objects that SystemLib hands out into new COM objects, one reference
// each; nullptr stays the empty reference.
#pragma once
#include "Orbex_h.h"
#include "system/MemoryInfo.h"
#include "system/OSInfo.h"
#include "system/PowerInfo.h"
#include "system/ScreenInfo.h"

#include <memory>

namespace orbex::com {

_OSInfo* WrapOSInfo(std::unique_ptr<OSInfo> info);
_PowerInfo* WrapPowerInfo(std::unique_ptr<PowerInfo> info);
_MemoryInfo* WrapMemoryInfo(std::unique_ptr<MemoryInfo> info);
_ScreenInfo* WrapScreenInfo(std::unique_ptr<ScreenInfo> info);

}  // namespace orbex::com
