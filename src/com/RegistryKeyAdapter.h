// Wraps a RegistryKey that a member produced into its COM object, and finds the RegistryKey
// behind an interface pointer a client passes back in.
#pragma once
#include "Orbex_h.h"
#include "registry/RegistryKey.h"

#include <memory>

namespace orbex::com {

// A new COM object owning `key`, with one reference; nullptr for the empty reference.
_RegistryKey* WrapRegistryKey(std::unique_ptr<RegistryKey> key);

// The key behind one of our own objects; nullptr for nullptr or a foreign object.
RegistryKey* UnwrapRegistryKey(_RegistryKey* object);

}  // namespace orbex::com
