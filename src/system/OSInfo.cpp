#include "OSInfo.h"

#include "frame/Ansi.h"
#include "frame/FunctionLib.h"
#include "platform/Api.h"

#include <string>

namespace orbex {
namespace {

constexpr platform::Dword ExtendedRecordSize = 156;  // OSVERSIONINFOEXA
constexpr platform::Dword PlainRecordSize = 148;     // OSVERSIONINFOA: nothing behind the CSD text
constexpr std::int32_t CleanBootMetric = 67;         // SM_CLEANBOOT

constexpr platform::Word PersonalSuite = 0x200;
constexpr platform::Word DatacenterSuite = 0x80;
constexpr platform::Word EnterpriseSuite = 0x2;
constexpr platform::Word SmallBusinessSuite = 0x1;
constexpr std::uint8_t Workstation = 1;
constexpr std::uint8_t Server = 3;

constexpr const wchar_t* UnknownSystem = L"Unknown Operating System";

static_assert(sizeof(platform::OsVersionInfoEx) == ExtendedRecordSize);

// The CSD text as a String: the fixed platform field, cut at its terminator.
String CsdText(const platform::OsVersionInfoEx& record) {
    return CutAtFirstNul(FromAnsi(record.szCSDVersion, sizeof record.szCSDVersion), 1);
}

// The first character of the CSD text once blanks are trimmed; 0 when nothing remains.
wchar_t CsdLetter(const platform::OsVersionInfoEx& record) {
    const String csd = CsdText(record);
    const StringView trimmed = TrimBlanks(csd);
    return trimmed.empty() ? L'\0' : trimmed.front();
}

const wchar_t* Windows9xName(const platform::OsVersionInfoEx& record) {
    const wchar_t letter = CsdLetter(record);
    switch (record.dwMinorVersion) {
    case 0: return letter == L'C' || letter == L'B' ? L"Windows 95 OSR2" : L"Windows 95";
    case 90: return L"Windows ME";
    default: return letter == L'A' ? L"Windows 98 SE" : L"Windows 98";
    }
}

const wchar_t* WindowsNt3Name(platform::Dword minor) {
    switch (minor) {
    case 0: return L"Windows NT 3.0";
    case 1: return L"Windows NT 3.1";
    case 5: return L"Windows NT 3.5";
    case 51: return L"Windows NT 3.51";
    default: return UnknownSystem;
    }
}

const wchar_t* WindowsNt4Name(std::uint8_t type) {
    if (type == Workstation) return L"Windows NT 4.0 Workstation";
    if (type == Server) return L"Windows NT 4.0 Server";
    return L"Windows NT 4.0";
}

// Minor 0 tests the product type first and the Personal bit only for a workstation.
const wchar_t* Windows2000Name(std::uint8_t type, platform::Word suite) {
    if (type == Workstation) {
        return suite & PersonalSuite ? L"Windows 2000 Personal" : L"Windows 2000 Professional";
    }
    if (type == Server) {
        if (suite & DatacenterSuite) return L"Windows 2000 Datacenter Server";
        if (suite & EnterpriseSuite) return L"Windows 2000 Advanced Server";
        if (suite & SmallBusinessSuite) return L"Small Business Server 2000";
        return L"Windows 2000 Server";
    }
    return L"Windows 2000";
}

// Minor 1 tests the Personal bit first, whatever the product type.
const wchar_t* WindowsXpName(std::uint8_t type, platform::Word suite) {
    if (suite & PersonalSuite) return L"Windows XP Home Edition";
    if (type == Workstation) return L"Windows XP Professional";
    if (type == Server) {
        if (suite & DatacenterSuite) return L"Windows.NET Datacenter Server";
        if (suite & EnterpriseSuite) return L"Windows.NET Enterprise Server";
        return L"Windows.NET Server";
    }
    return L"Windows XP";
}

const wchar_t* WindowsNtName(const platform::OsVersionInfoEx& record) {
    switch (record.dwMajorVersion) {
    case 3: return WindowsNt3Name(record.dwMinorVersion);
    case 4: return WindowsNt4Name(record.wProductType);
    case 5:
        if (record.dwMinorVersion == 0) return Windows2000Name(record.wProductType, record.wSuiteMask);
        if (record.dwMinorVersion == 1) return WindowsXpName(record.wProductType, record.wSuiteMask);
        return UnknownSystem;
    default: return UnknownSystem;
    }
}

}  // namespace

String ClassifyVersion(const platform::OsVersionInfoEx& record) {
    switch (record.dwPlatformId) {
    case vqOSPWindows32s: return L"Win32s";
    case vqOSPWindows9x: return Windows9xName(record);
    case vqOSPWindowsNT: return WindowsNtName(record);
    default: return UnknownSystem;
    }
}

OSInfo::OSInfo() { LoadVersionData(); }

// Older systems refuse the extended record and answer the plain one; only a result of exactly 1
// counts as an answer. The startup mode is read whatever the version calls gave.
void OSInfo::LoadVersionData() {
    const auto& api = platform::api();
    record_.dwOSVersionInfoSize = ExtendedRecordSize;
    platform::Bool result = api.GetVersionExA(&record_);
    if (result == 0) {
        record_.dwOSVersionInfoSize = PlainRecordSize;
        result = api.GetVersionExA(&record_);
    }
    csd_ = CsdText(record_);
    if (result == 1) {
        name_ = ClassifyVersion(record_);
        number_ = std::to_wstring(MajorVersion()) + L"." + std::to_wstring(MinorVersion());
    }
    const std::int32_t mode = api.GetSystemMetrics(CleanBootMetric);
    startupMode_ = mode > 2 ? vqOSSMUnknown : static_cast<vqOSStartupMode>(mode);
}

Boolean OSInfo::NameIs(const wchar_t* name) const { return toBoolean(name_ == name); }

Boolean OSInfo::NameStartsWith(const wchar_t* prefix) const {
    return toBoolean(name_.starts_with(prefix));
}

Boolean OSInfo::IsWin32s() const { return NameIs(L"Win32s"); }
Boolean OSInfo::IsWin95() const { return NameStartsWith(L"Windows 95"); }
Boolean OSInfo::IsWin95OSR2() const { return NameIs(L"Windows 95 OSR2"); }
Boolean OSInfo::IsWin98() const { return NameStartsWith(L"Windows 98"); }
Boolean OSInfo::IsWin98SE() const { return NameIs(L"Windows 98 SE"); }
Boolean OSInfo::IsWinME() const { return NameIs(L"Windows ME"); }
Boolean OSInfo::IsWin9x() const { return toBoolean(PlatformID() == vqOSPWindows9x); }
Boolean OSInfo::IsWinNT3() const { return NameStartsWith(L"Windows NT 3"); }
Boolean OSInfo::IsWinNT4() const { return NameStartsWith(L"Windows NT 4"); }
Boolean OSInfo::IsWinNT4Workstation() const { return NameIs(L"Windows NT 4.0 Workstation"); }
Boolean OSInfo::IsWinNT4Server() const { return NameIs(L"Windows NT 4.0 Server"); }
Boolean OSInfo::IsSmallBusinessServer() const { return NameStartsWith(L"Small Business Server"); }
Boolean OSInfo::IsSmallBusinessServer2000() const { return NameIs(L"Small Business Server 2000"); }
Boolean OSInfo::IsWin2000() const { return NameStartsWith(L"Windows 2000"); }
Boolean OSInfo::IsWin2000Professional() const { return NameIs(L"Windows 2000 Professional"); }
Boolean OSInfo::IsWin2000Server() const { return NameIs(L"Windows 2000 Server"); }
Boolean OSInfo::IsWin2000AdvancedServer() const { return NameIs(L"Windows 2000 Advanced Server"); }
Boolean OSInfo::IsWin2000DatacenterServer() const { return NameIs(L"Windows 2000 Datacenter Server"); }
Boolean OSInfo::IsWinXP() const { return NameStartsWith(L"Windows XP"); }
Boolean OSInfo::IsWinXPHomeEdition() const { return NameIs(L"Windows XP Home Edition"); }
Boolean OSInfo::IsWinXPProfessional() const { return NameIs(L"Windows XP Professional"); }
Boolean OSInfo::IsWinDotNET() const { return NameStartsWith(L"Windows.NET"); }
Boolean OSInfo::IsWinDotNETServer() const { return NameIs(L"Windows.NET Server"); }
Boolean OSInfo::IsWinDotNETDatacenterServer() const { return NameIs(L"Windows.NET Datacenter Server"); }
Boolean OSInfo::IsWinDotNETEnterpriseServer() const { return NameIs(L"Windows.NET Enterprise Server"); }

// The platform's 32-bit numbers are held by their bits.
Long OSInfo::MajorVersion() const { return static_cast<Long>(record_.dwMajorVersion); }
Long OSInfo::MinorVersion() const { return static_cast<Long>(record_.dwMinorVersion); }

// The 9x family keeps other data in the high word of the build number.
Long OSInfo::BuildNo() const {
    const Long build = static_cast<Long>(record_.dwBuildNumber);
    return isTrue(IsWin9x()) ? LowWordToInteger(build) : build;
}

String OSInfo::ServicePack() const {
    if (PlatformID() != vqOSPWindowsNT) return String{};
    return L"Service Pack " + std::to_wstring(ServicePackMajor()) + L"." +
           std::to_wstring(ServicePackMinor());
}

Integer OSInfo::ServicePackMajor() const { return static_cast<Integer>(record_.wServicePackMajor); }
Integer OSInfo::ServicePackMinor() const { return static_cast<Integer>(record_.wServicePackMinor); }

vqSuiteMask OSInfo::SuiteMask() const {
    return static_cast<vqSuiteMask>(static_cast<Integer>(record_.wSuiteMask));
}

Byte OSInfo::ProductType() const { return record_.wProductType; }

vqOSPlatform OSInfo::PlatformID() const { return static_cast<vqOSPlatform>(record_.dwPlatformId); }

}  // namespace orbex
