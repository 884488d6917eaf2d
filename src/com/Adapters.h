// The creators of the creatable classes, one per adapter file.
#pragma once
#include <windows.h>

namespace orbex::com {

HRESULT CreateDiskInfo(REFIID riid, void** object);
HRESULT CreateFileInfo(REFIID riid, void** object);
HRESULT CreateFileLib(REFIID riid, void** object);
HRESULT CreateINILib(REFIID riid, void** object);
HRESULT CreateMemoryInfo(REFIID riid, void** object);
HRESULT CreateOSInfo(REFIID riid, void** object);
HRESULT CreatePowerInfo(REFIID riid, void** object);
HRESULT CreateRegLib(REFIID riid, void** object);
HRESULT CreateScreenInfo(REFIID riid, void** object);
HRESULT CreateSystemLib(REFIID riid, void** object);

}  // namespace orbex::com
