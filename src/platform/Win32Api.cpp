// The real table: each entry forwards to the Win32 function of its name. The bridge converts
// the library's ABI-identical types to Win32's; the layout checks below keep them identical.
#include "Api.h"

#include <windows.h>
#include <commdlg.h>
#include <oleauto.h>
#include <powrprof.h>
#include <shlobj.h>
#include <winver.h>

#include <bit>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <utility>
#include <type_traits>

namespace orbex::platform {
namespace {

#define ORBEX_SAME_LAYOUT(Ours, Theirs) \
    static_assert(sizeof(Ours) == sizeof(Theirs) && alignof(Ours) == alignof(Theirs), #Ours)
#define ORBEX_SAME_FIELD(Ours, Theirs, field) \
    static_assert(offsetof(Ours, field) == offsetof(Theirs, field), #Ours "." #field)

ORBEX_SAME_LAYOUT(FileTime, FILETIME);
ORBEX_SAME_LAYOUT(SystemTime, SYSTEMTIME);
ORBEX_SAME_LAYOUT(OsVersionInfoEx, OSVERSIONINFOEXA);
ORBEX_SAME_FIELD(OsVersionInfoEx, OSVERSIONINFOEXA, szCSDVersion);
ORBEX_SAME_FIELD(OsVersionInfoEx, OSVERSIONINFOEXA, wProductType);
ORBEX_SAME_LAYOUT(Win32FindData, WIN32_FIND_DATAA);
ORBEX_SAME_FIELD(Win32FindData, WIN32_FIND_DATAA, nFileSizeLow);
ORBEX_SAME_FIELD(Win32FindData, WIN32_FIND_DATAA, cFileName);
static_assert(sizeof(OpenFileName) == offsetof(OPENFILENAMEA, lpTemplateName) + sizeof(LPCSTR));
ORBEX_SAME_FIELD(OpenFileName, OPENFILENAMEA, Flags);
ORBEX_SAME_FIELD(OpenFileName, OPENFILENAMEA, lpTemplateName);
ORBEX_SAME_LAYOUT(BrowseInfo, BROWSEINFOA);
ORBEX_SAME_FIELD(BrowseInfo, BROWSEINFOA, ulFlags);
ORBEX_SAME_FIELD(BrowseInfo, BROWSEINFOA, iImage);
ORBEX_SAME_LAYOUT(SystemPowerStatus, SYSTEM_POWER_STATUS);
ORBEX_SAME_FIELD(SystemPowerStatus, SYSTEM_POWER_STATUS, BatteryFullLifeTime);
ORBEX_SAME_LAYOUT(MemoryStatus, MEMORYSTATUS);
ORBEX_SAME_FIELD(MemoryStatus, MEMORYSTATUS, dwAvailVirtual);
ORBEX_SAME_LAYOUT(MemoryStatusEx, MEMORYSTATUSEX);
ORBEX_SAME_FIELD(MemoryStatusEx, MEMORYSTATUSEX, ullAvailExtendedVirtual);
ORBEX_SAME_LAYOUT(Luid, LUID);
ORBEX_SAME_LAYOUT(TokenPrivileges, TOKEN_PRIVILEGES);
ORBEX_SAME_LAYOUT(Rect, RECT);
ORBEX_SAME_LAYOUT(Guid, GUID);
ORBEX_SAME_LAYOUT(SecurityAttributes, SECURITY_ATTRIBUTES);
ORBEX_SAME_LAYOUT(Msg, MSG);
ORBEX_SAME_FIELD(Msg, MSG, pt);

// One argument or result from the library's type to Win32's, or back.
template <class To, class From>
To bridge(From value) {
    if constexpr (std::is_same_v<To, From>) {
        return value;
    } else if constexpr (std::is_reference_v<To>) {  // REFGUID from a record pointer
        return *reinterpret_cast<std::remove_reference_t<To>*>(value);
    } else if constexpr (std::is_pointer_v<To> && std::is_pointer_v<From>) {
        return (To)value;  // same layout, checked above; may drop a const Win32 forgot
    } else if constexpr (std::is_pointer_v<To>) {
        return reinterpret_cast<To>(static_cast<std::intptr_t>(value));
    } else if constexpr (std::is_pointer_v<From>) {
        return static_cast<To>(reinterpret_cast<std::intptr_t>(value));
    } else if constexpr (std::is_class_v<To> || std::is_class_v<From>) {
        return std::bit_cast<To>(value);  // CY and friends, passed by value
    } else {
        return static_cast<To>(value);
    }
}

template <class Ours>
struct Forward;

template <class R, class... P>
struct Forward<R (*)(P...)> {
    template <auto Win32Function, class WR, class... WP>
    static R call(WR (WINAPI*)(WP...), P... arguments) {
        if constexpr (std::is_void_v<R>) {
            Win32Function(bridge<WP>(arguments)...);
        } else {
            return bridge<R>(Win32Function(bridge<WP>(arguments)...));
        }
    }

    template <auto Win32Function>
    static R entry(P... arguments) {
        return call<Win32Function>(Win32Function, arguments...);
    }
};

// The plain forwarding entry for `Entry`, for a guard that passes its call on.
template <auto Entry, auto Win32Function, class... P>
auto forward(P... arguments) {
    return Forward<std::remove_reference_t<decltype(std::declval<Api>().*Entry)>>::template entry<Win32Function>(
        arguments...);
}

// Wine's narrow functions that carry a text as a counted wide string of at most 32,766
// characters (the profile functions, RegConnectRegistryA) crash on a longer one instead of
// failing; here such a call fails as the function does when it finds nothing, cannot write, or
// cannot reach the machine.
bool TooLongForWine(std::initializer_list<const char*> texts) {
    constexpr std::size_t Longest = 32766;
    for (const char* text : texts)
        if (text && strnlen(text, Longest + 1) > Longest) return true;
    return false;
}

Dword GetPrivateProfileIntGuarded(const char* section, const char* key, std::int32_t defaultValue,
                                  const char* file) {
    if (TooLongForWine({section, key, file})) return static_cast<Dword>(defaultValue);
    return forward<&Api::GetPrivateProfileIntA, &::GetPrivateProfileIntA>(section, key, defaultValue, file);
}

Dword GetPrivateProfileStringGuarded(const char* section, const char* key, const char* defaultText, char* buffer,
                                     Dword size, const char* file) {
    if (TooLongForWine({section, key, defaultText, file})) {
        if (buffer && size) buffer[0] = '\0';
        return 0;
    }
    return forward<&Api::GetPrivateProfileStringA, &::GetPrivateProfileStringA>(section, key, defaultText, buffer,
                                                                               size, file);
}

Bool WritePrivateProfileStringGuarded(const char* section, const char* key, const char* value, const char* file) {
    if (TooLongForWine({section, key, value, file})) return 0;
    return forward<&Api::WritePrivateProfileStringA, &::WritePrivateProfileStringA>(section, key, value, file);
}

Dword GetPrivateProfileSectionGuarded(const char* section, char* buffer, Dword size, const char* file) {
    if (TooLongForWine({section, file})) {
        for (Dword i = 0; i < size && i < 2; ++i) buffer[i] = '\0';
        return 0;
    }
    return forward<&Api::GetPrivateProfileSectionA, &::GetPrivateProfileSectionA>(section, buffer, size, file);
}

// The section's text is a list of NUL-terminated lines; each line is one profile text.
Bool WritePrivateProfileSectionGuarded(const char* section, const char* data, const char* file) {
    if (TooLongForWine({section, file})) return 0;
    for (const char* line = data; line && *line; line += std::strlen(line) + 1)
        if (TooLongForWine({line})) return 0;
    return forward<&Api::WritePrivateProfileSectionA, &::WritePrivateProfileSectionA>(section, data, file);
}

Status RegConnectRegistryGuarded(const char* machine, Handle key, Handle* result) {
    constexpr Status BadNetworkPath = 53;
    if (TooLongForWine({machine})) return BadNetworkPath;
    return forward<&Api::RegConnectRegistryA, &::RegConnectRegistryA>(machine, key, result);
}

Api MakeReal() {
    Api real = {
#define ORBEX_REAL_ENTRY(result, name, parameters) \
    .name = &Forward<decltype(Api::name)>::template entry<&::name>,
        ORBEX_PLATFORM_FUNCTIONS(ORBEX_REAL_ENTRY)
#undef ORBEX_REAL_ENTRY
    };
    real.RegConnectRegistryA = &RegConnectRegistryGuarded;
    real.GetPrivateProfileIntA = &GetPrivateProfileIntGuarded;
    real.GetPrivateProfileStringA = &GetPrivateProfileStringGuarded;
    real.WritePrivateProfileStringA = &WritePrivateProfileStringGuarded;
    real.GetPrivateProfileSectionA = &GetPrivateProfileSectionGuarded;
    real.WritePrivateProfileSectionA = &WritePrivateProfileSectionGuarded;
    return real;
}

const Api kReal = MakeReal();

Api gCurrent = kReal;

}  // namespace

Api& api() { return gCurrent; }
const Api& realApi() { return kReal; }

}  // namespace orbex::platform
