// The platform's published records in the library's own spelling, so that the classes never
// include windows.h. Field names follow the platform's; the real table checks every layout
// against windows.h at compile time.
#pragma once
#include "PlatformTypes.h"

namespace orbex::platform {

struct FileTime {
    Dword dwLowDateTime;
    Dword dwHighDateTime;
};

struct SystemTime {
    Word wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

struct OsVersionInfoEx {
    Dword dwOSVersionInfoSize;
    Dword dwMajorVersion;
    Dword dwMinorVersion;
    Dword dwBuildNumber;
    Dword dwPlatformId;
    char szCSDVersion[128];
    Word wServicePackMajor;
    Word wServicePackMinor;
    Word wSuiteMask;
    std::uint8_t wProductType;
    std::uint8_t wReserved;
};

struct Win32FindData {
    Dword dwFileAttributes;
    FileTime ftCreationTime;
    FileTime ftLastAccessTime;
    FileTime ftLastWriteTime;
    Dword nFileSizeHigh;
    Dword nFileSizeLow;
    Dword dwReserved0;
    Dword dwReserved1;
    char cFileName[260];
    char cAlternateFileName[14];
};

// The first, shorter form of the file dialog record (76 bytes on 32-bit Windows).
struct OpenFileName {
    Dword lStructSize;
    Handle hwndOwner;
    Handle hInstance;
    const char* lpstrFilter;
    char* lpstrCustomFilter;
    Dword nMaxCustFilter;
    Dword nFilterIndex;
    char* lpstrFile;
    Dword nMaxFile;
    char* lpstrFileTitle;
    Dword nMaxFileTitle;
    const char* lpstrInitialDir;
    const char* lpstrTitle;
    Dword Flags;
    Word nFileOffset;
    Word nFileExtension;
    const char* lpstrDefExt;
    std::intptr_t lCustData;
    void* lpfnHook;
    const char* lpTemplateName;
};

struct BrowseInfo {
    Handle hwndOwner;
    ItemIdList pidlRoot;
    char* pszDisplayName;
    const char* lpszTitle;
    std::uint32_t ulFlags;
    void* lpfn;
    std::intptr_t lParam;
    std::int32_t iImage;
};

struct SystemPowerStatus {
    std::uint8_t ACLineStatus;
    std::uint8_t BatteryFlag;
    std::uint8_t BatteryLifePercent;
    std::uint8_t Reserved1;
    Dword BatteryLifeTime;
    Dword BatteryFullLifeTime;
};

struct MemoryStatus {
    Dword dwLength;
    Dword dwMemoryLoad;
    std::size_t dwTotalPhys;
    std::size_t dwAvailPhys;
    std::size_t dwTotalPageFile;
    std::size_t dwAvailPageFile;
    std::size_t dwTotalVirtual;
    std::size_t dwAvailVirtual;
};

struct MemoryStatusEx {
    Dword dwLength;
    Dword dwMemoryLoad;
    std::uint64_t ullTotalPhys;
    std::uint64_t ullAvailPhys;
    std::uint64_t ullTotalPageFile;
    std::uint64_t ullAvailPageFile;
    std::uint64_t ullTotalVirtual;
    std::uint64_t ullAvailVirtual;
    std::uint64_t ullAvailExtendedVirtual;
};

struct Luid {
    Dword LowPart;
    std::int32_t HighPart;
};

struct LuidAndAttributes {
    Luid Luid;
    Dword Attributes;
};

// One privilege entry, the only form the library passes.
struct TokenPrivileges {
    Dword PrivilegeCount;
    LuidAndAttributes Privileges[1];
};

struct Rect {
    std::int32_t left, top, right, bottom;
};

struct Guid {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

struct SecurityAttributes {
    Dword nLength;
    void* lpSecurityDescriptor;
    Bool bInheritHandle;
};

struct Point {
    std::int32_t x, y;
};

struct Msg {
    Handle hwnd;
    std::uint32_t message;
    std::uintptr_t wParam;
    std::intptr_t lParam;
    Dword time;
    Point pt;
};

}  // namespace orbex::platform
