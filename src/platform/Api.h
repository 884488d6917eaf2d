// The one door to Windows: every platform function the library calls, as one table of
// function pointers. The classes call `platform::api().Name(...)`; the real table forwards to
// Win32 (Win32Api.cpp) and a test can replace or record any single entry (TestHook.h).
//
// Each entry is X(result, name, (parameters)), named as the platform names the function and
// typed with the ABI-identical types of PlatformTypes.h and Records.h.
#pragma once
#include "PlatformTypes.h"
#include "Records.h"

#define ORBEX_PLATFORM_FUNCTIONS(X)                                                                   \
    /* kernel32: errors, text, versions */                                                           \
    X(Dword, GetLastError, ())                                                                        \
    X(std::int32_t, MultiByteToWideChar,                                                              \
      (Dword codePage, Dword flags, const char* text, std::int32_t length, wchar_t* wide,             \
       std::int32_t wideLength))                                                                      \
    X(std::int32_t, WideCharToMultiByte,                                                              \
      (Dword codePage, Dword flags, const wchar_t* wide, std::int32_t wideLength, char* text,         \
       std::int32_t length, const char* defaultChar, Bool* usedDefaultChar))                          \
    X(Dword, FormatMessageA,                                                                          \
      (Dword flags, const void* source, Dword messageId, Dword languageId, char* buffer, Dword size,   \
       void* arguments))                                                                              \
    X(Bool, GetVersionExA, (OsVersionInfoEx * info))                                                  \
    X(Dword, ExpandEnvironmentStringsA, (const char* source, char* destination, Dword size))         \
    X(std::int32_t, GetLocaleInfoA, (Lcid locale, Dword type, char* data, std::int32_t size))         \
    X(std::int32_t, lstrlenA, (const char* text))                                                     \
    X(char*, lstrcpyA, (char* destination, const char* source))                                       \
    /* advapi32: the registry */                                                                      \
    X(Status, RegConnectRegistryA, (const char* machineName, Handle key, Handle* result))             \
    X(Status, RegOpenKeyExA,                                                                          \
      (Handle key, const char* subKey, Dword options, Dword mask, Handle* result))                    \
    X(Status, RegCreateKeyExA,                                                                        \
      (Handle key, const char* subKey, Dword reserved, char* className, Dword options, Dword mask,    \
       SecurityAttributes* security, Handle* result, Dword* disposition))                             \
    X(Status, RegCloseKey, (Handle key))                                                              \
    X(Status, RegFlushKey, (Handle key))                                                              \
    X(Status, RegQueryInfoKeyA,                                                                       \
      (Handle key, char* className, Dword* classLength, Dword* reserved, Dword* subKeys,              \
       Dword* maxSubKeyLength, Dword* maxClassLength, Dword* values, Dword* maxValueNameLength,       \
       Dword* maxValueLength, Dword* securityDescriptorSize, FileTime* lastWriteTime))               \
    X(Status, RegEnumKeyExA,                                                                          \
      (Handle key, Dword index, char* name, Dword* nameLength, Dword* reserved, char* className,     \
       Dword* classLength, FileTime* lastWriteTime))                                                  \
    X(Status, RegEnumValueA,                                                                          \
      (Handle key, Dword index, char* name, Dword* nameLength, Dword* reserved, Dword* type,         \
       std::uint8_t* data, Dword* dataSize))                                                          \
    X(Status, RegDeleteKeyA, (Handle key, const char* subKey))                                        \
    X(Status, RegQueryValueExA,                                                                       \
      (Handle key, const char* name, Dword* reserved, Dword* type, std::uint8_t* data,                \
       Dword* dataSize))                                                                              \
    X(Status, RegSetValueExA,                                                                         \
      (Handle key, const char* name, Dword reserved, Dword type, const std::uint8_t* data,            \
       Dword dataSize))                                                                               \
    X(Status, RegDeleteValueA, (Handle key, const char* name))                                        \
    /* kernel32: INI files */                                                                         \
    X(Dword, GetPrivateProfileIntA,                                                                   \
      (const char* section, const char* key, std::int32_t defaultValue, const char* file))            \
    X(Dword, GetPrivateProfileStringA,                                                                \
      (const char* section, const char* key, const char* defaultText, char* buffer, Dword size,      \
       const char* file))                                                                             \
    X(Bool, WritePrivateProfileStringA,                                                               \
      (const char* section, const char* key, const char* value, const char* file))                   \
    X(Dword, GetPrivateProfileSectionA,                                                               \
      (const char* section, char* buffer, Dword size, const char* file))                              \
    X(Bool, WritePrivateProfileSectionA, (const char* section, const char* data, const char* file))   \
    /* kernel32: files, folders, drives, volumes */                                                   \
    X(Handle, FindFirstFileA, (const char* pattern, Win32FindData* data))                             \
    X(Bool, FindNextFileA, (Handle search, Win32FindData * data))                                     \
    X(Bool, FindClose, (Handle search))                                                               \
    X(Dword, GetLogicalDriveStringsA, (Dword length, char* buffer))                                   \
    X(Dword, GetDriveTypeA, (const char* root))                                                       \
    X(Bool, GetVolumeInformationA,                                                                    \
      (const char* root, char* volumeName, Dword volumeNameSize, Dword* serialNumber,                 \
       Dword* maxComponentLength, Dword* fileSystemFlags, char* fileSystemName,                       \
       Dword fileSystemNameSize))                                                                     \
    X(Bool, SetVolumeLabelA, (const char* root, const char* label))                                   \
    X(Bool, GetDiskFreeSpaceExA,                                                                      \
      (const char* root, std::uint64_t* freeBytesForCaller, std::uint64_t* totalBytes,               \
       std::uint64_t* totalFreeBytes))                                                                \
    X(Bool, GetDiskFreeSpaceA,                                                                        \
      (const char* root, Dword* sectorsPerCluster, Dword* bytesPerSector, Dword* freeClusters,        \
       Dword* totalClusters))                                                                         \
    X(Dword, GetCurrentDirectoryA, (Dword length, char* buffer))                                      \
    X(Bool, SetCurrentDirectoryA, (const char* folder))                                               \
    X(Bool, CreateDirectoryA, (const char* path, SecurityAttributes* security))                       \
    X(Bool, CreateDirectoryExA,                                                                       \
      (const char* templateFolder, const char* path, SecurityAttributes* security))                   \
    X(Bool, RemoveDirectoryA, (const char* folder))                                                   \
    X(Dword, GetTempPathA, (Dword length, char* buffer))                                              \
    X(Dword, GetWindowsDirectoryA, (char* buffer, Dword length))                                      \
    X(Dword, GetSystemDirectoryA, (char* buffer, Dword length))                                       \
    X(Handle, CreateFileA,                                                                            \
      (const char* name, Dword access, Dword shareMode, SecurityAttributes* security,                \
       Dword disposition, Dword flags, Handle templateFile))                                          \
    X(Bool, CloseHandle, (Handle handle))                                                             \
    X(Dword, GetFileType, (Handle file))                                                              \
    X(Dword, GetFileAttributesA, (const char* name))                                                  \
    X(Bool, SetFileAttributesA, (const char* name, Dword attributes))                                 \
    X(Bool, GetFileSizeEx, (Handle file, std::int64_t* size))                                         \
    X(Bool, GetFileTime,                                                                              \
      (Handle file, FileTime* creation, FileTime* lastAccess, FileTime* lastWrite))                  \
    X(Bool, FileTimeToLocalFileTime, (const FileTime* utc, FileTime* local))                          \
    X(Bool, FileTimeToSystemTime, (const FileTime* time, SystemTime* system))                         \
    X(std::int32_t, GetDateFormatA,                                                                   \
      (Lcid locale, Dword flags, const SystemTime* time, const char* format, char* buffer,            \
       std::int32_t length))                                                                          \
    X(std::int32_t, GetTimeFormatA,                                                                   \
      (Lcid locale, Dword flags, const SystemTime* time, const char* format, char* buffer,            \
       std::int32_t length))                                                                          \
    /* version.dll */                                                                                 \
    X(Dword, GetFileVersionInfoSizeA, (const char* name, Dword* handle))                              \
    X(Bool, GetFileVersionInfoA, (const char* name, Dword handle, Dword size, void* data))            \
    X(Bool, VerQueryValueA, (const void* block, const char* path, void** value, Dword* length))       \
    /* shell32, comdlg32, ole32 */                                                                    \
    X(Hresult, SHGetSpecialFolderLocation, (Handle owner, std::int32_t folder, ItemIdList * list))    \
    X(Bool, SHGetPathFromIDListA, (ItemIdList list, char* path))                                      \
    X(ItemIdList, SHBrowseForFolderA, (BrowseInfo * info))                                            \
    X(Bool, GetOpenFileNameA, (OpenFileName * info))                                                  \
    X(Bool, GetSaveFileNameA, (OpenFileName * info))                                                  \
    X(void, CoTaskMemFree, (void* memory))                                                            \
    X(Hresult, CoCreateGuid, (Guid * guid))                                                           \
    X(std::int32_t, StringFromGUID2, (const Guid* guid, wchar_t* text, std::int32_t length))          \
    /* oleaut32: the Automation conversions between text and numbers */                              \
    X(Hresult, VarBstrFromR8, (double value, Lcid locale, Dword flags, Bstr* text))                   \
    X(Hresult, VarBstrFromR4, (float value, Lcid locale, Dword flags, Bstr* text))                    \
    X(Hresult, VarBstrFromCy, (CurrencyWord value, Lcid locale, Dword flags, Bstr* text))             \
    X(Hresult, VarBstrFromDate, (DateValue value, Lcid locale, Dword flags, Bstr* text))              \
    X(Hresult, VarR8FromStr, (const wchar_t* text, Lcid locale, Dword flags, double* value))         \
    X(Hresult, VarCyFromStr, (const wchar_t* text, Lcid locale, Dword flags, CurrencyWord* value))   \
    X(Hresult, VarDateFromStr, (const wchar_t* text, Lcid locale, Dword flags, DateValue* value))    \
    X(Hresult, VarI2FromStr, (const wchar_t* text, Lcid locale, Dword flags, std::int16_t* value))   \
    X(Hresult, VarI4FromStr, (const wchar_t* text, Lcid locale, Dword flags, std::int32_t* value))   \
    X(void, SysFreeString, (Bstr text))                                                               \
    /* power, memory, session */                                                                      \
    X(Bool, GetSystemPowerStatus, (SystemPowerStatus * status))                                       \
    X(void, GlobalMemoryStatus, (MemoryStatus * status))                                              \
    X(Bool, GlobalMemoryStatusEx, (MemoryStatusEx * status))                                          \
    X(Bool, ExitWindowsEx, (Dword flags, Dword reason))                                               \
    X(Boolean, SetSuspendState,                                                                       \
      (std::int32_t hibernate, std::int32_t force, std::int32_t wakeupEventsDisabled))               \
    X(Boolean, IsPwrHibernateAllowed, ())                                                             \
    X(Boolean, IsPwrShutdownAllowed, ())                                                              \
    X(Boolean, IsPwrSuspendAllowed, ())                                                               \
    X(Bool, IsSystemResumeAutomatic, ())                                                              \
    X(Handle, GetCurrentProcess, ())                                                                  \
    X(Bool, OpenProcessToken, (Handle process, Dword access, Handle* token))                          \
    X(Bool, LookupPrivilegeValueA, (const char* systemName, const char* name, Luid* luid))           \
    X(Bool, AdjustTokenPrivileges,                                                                    \
      (Handle token, Bool disableAll, TokenPrivileges* state, Dword length,                          \
       TokenPrivileges* previous, Dword* returnLength))                                               \
    X(Bool, GetComputerNameA, (char* buffer, Dword* size))                                            \
    X(Bool, GetUserNameA, (char* buffer, Dword* size))                                                \
    /* user32, gdi32: screen, keyboard, messages */                                                   \
    X(std::int32_t, GetSystemMetrics, (std::int32_t index))                                           \
    X(Handle, GetDC, (Handle window))                                                                 \
    X(std::int32_t, ReleaseDC, (Handle window, Handle dc))                                            \
    X(std::int32_t, GetDeviceCaps, (Handle dc, std::int32_t index))                                   \
    X(Bool, SystemParametersInfoA, (Dword action, Dword param, void* data, Dword winIni))              \
    X(Dword, MapVirtualKeyA, (Dword code, Dword mapType))                                             \
    X(void, keybd_event, (std::uint8_t key, std::uint8_t scanCode, Dword flags, std::uintptr_t extra)) \
    X(Bool, PeekMessageA, (Msg * message, Handle window, Dword first, Dword last, Dword remove))      \
    X(Bool, TranslateMessage, (const Msg* message))                                                   \
    X(std::intptr_t, DispatchMessageA, (const Msg* message))

namespace orbex::platform {

struct Api {
#define ORBEX_API_ENTRY(result, name, parameters) result(*name) parameters;
    ORBEX_PLATFORM_FUNCTIONS(ORBEX_API_ENTRY)
#undef ORBEX_API_ENTRY
};

// The table in force. Tests swap single entries; everything else only calls through it.
Api& api();

// The table that forwards to Win32, for tests that need to restore or call the real thing.
const Api& realApi();

}  // namespace orbex::platform
