// Writes and removes the registration entries of the library: for each creatable class its
// ProgID and CLSID keys with the in-process server, and the type library with its interfaces.
#pragma once
#include <windows.h>

namespace orbex::com {

HRESULT RegisterServer();
HRESULT UnregisterServer();

}  // namespace orbex::com
