// How the key handles a RegistryKey holds as Longs meet the platform. Windows handles and the
// root constants are sign-extendable, so a 32-bit Long carries them on 64-bit Windows too.
#pragma once
#include "RegistryKey.h"
#include "platform/PlatformTypes.h"

namespace orbex {

inline platform::Handle ToPlatform(Long handle) { return static_cast<platform::Handle>(handle); }
inline Long FromPlatform(platform::Handle handle) { return static_cast<Long>(handle); }

inline bool IsRootConstant(Long handle) { return handle >= vqClassesRoot && handle <= vqDynData; }

}  // namespace orbex
