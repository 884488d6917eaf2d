// The door to the registry: each property hands out a new RegistryKey on one of the seven
// roots, with the root constant serving as the key's open handle.
#pragma once
#include "RegistryKey.h"
#include "frame/Types.h"

#include <memory>

namespace orbex {

class RegLib {
public:
    // An empty result is the empty reference. MachineName only takes effect when a sub-key is
    // opened from the key; the root object itself always acts on the local root.
    std::unique_ptr<RegistryKey> ClassesRoot(const String& machineName = L"");
    std::unique_ptr<RegistryKey> CurrentConfig(const String& machineName = L"");
    std::unique_ptr<RegistryKey> CurrentUser(const String& machineName = L"");
    // Windows 9x only.
    std::unique_ptr<RegistryKey> DynData(const String& machineName = L"");
    std::unique_ptr<RegistryKey> LocalMachine(const String& machineName = L"");
    // Windows NT only.
    std::unique_ptr<RegistryKey> PerformanceData(const String& machineName = L"");
    std::unique_ptr<RegistryKey> Users(const String& machineName = L"");
};

}  // namespace orbex
