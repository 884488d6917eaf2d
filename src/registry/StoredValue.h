// A value as the platform stores it, turned into what GetValueEx gives a client: shared by the
// reads, which fetch one value, and by the copy, which takes every value from one listing.
#pragma once
#include "frame/Variant.h"
#include "platform/PlatformTypes.h"

#include <cstdint>

namespace orbex {

// `bytes` holds the `size` stored bytes; a number stored with fewer bytes than its width reads
// as if the missing high bytes were 0.
Variant StoredValue(platform::Dword type, const std::uint8_t* bytes, platform::Dword size, Boolean expandVariables);

}  // namespace orbex
