// How the key handles a RegistryKey holds as Longs meet the platform. Windows handles and the
// root constants are sign-extendable, so a 32-bit Long carries them on 64-bit Windows too.
#pragma once
#include "RegistryKey.h"
#include "platform/PlatformTypes.h"

namespace orbex {

inline platform::Handle ToPlatform(Long handle) { return static_cast<platform::Handle>(handle); }
inline Long FromPlatform(platform::Handle handle) { return static_cast<Long>(handle); }

// What the platform tells of a key in one query: counts and longest lengths (without terminator).
struct KeyFigures {
    platform::Dword subKeys = 0, maxSubKeyLength = 0, maxClassLength = 0, values = 0;
    platform::Dword maxValueNameLength = 0, maxValueLength = 0, securityDescriptorSize = 0;
};

// One query of the key's figures; the platform's result code.
Long QueryFigures(Long handle, KeyFigures& figures);

inline bool IsRootConstant(Long handle) { return handle >= vqClassesRoot && handle <= vqDynData; }

}  // namespace orbex
