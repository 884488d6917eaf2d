#include "Catalogue.h"

#include "Adapters.h"
#include "Orbex_h.h"

#include <array>

namespace orbex::com {
namespace {

const LibraryEntry kLibrary{L"Orbex", L"Orbex - Class library for the developer.", LIBID_Orbex, 0, 7, 0};

const std::array<ClassEntry, 11> kClasses{{
    {L"SystemLib", 10, CLSID_SystemLib, IID__SystemLib, &CreateSystemLib},
    {L"ScreenInfo", 9, CLSID_ScreenInfo, IID__ScreenInfo, &CreateScreenInfo},
    {L"RegLib", 8, CLSID_RegLib, IID__RegLib, &CreateRegLib},
    {L"RegistryKey", 7, CLSID_RegistryKey, IID__RegistryKey, nullptr},
    {L"PowerInfo", 6, CLSID_PowerInfo, IID__PowerInfo, &CreatePowerInfo},
    {L"OSInfo", 5, CLSID_OSInfo, IID__OSInfo, &CreateOSInfo},
    {L"MemoryInfo", 4, CLSID_MemoryInfo, IID__MemoryInfo, &CreateMemoryInfo},
    {L"INILib", 3, CLSID_INILib, IID__INILib, &CreateINILib},
    {L"FileLib", 2, CLSID_FileLib, IID__FileLib, &CreateFileLib},
    {L"FileInfo", 1, CLSID_FileInfo, IID__FileInfo, &CreateFileInfo},
    {L"DiskInfo", 0, CLSID_DiskInfo, IID__DiskInfo, &CreateDiskInfo},
}};

}  // namespace

const LibraryEntry& Library() { return kLibrary; }
std::span<const ClassEntry> Classes() { return kClasses; }

}  // namespace orbex::com
