// Which operating system the library runs on: name, version numbers, service pack, suite and
// product codes, and 25 name tests. The version record is read once, when the object is made;
// the library's other classes take their version decisions from a freshly made OSInfo.
#pragma once
#include "frame/Types.h"
#include "platform/Records.h"

namespace orbex {

enum vqOSPlatform : Long {
    vqOSPWindows32s = 0,
    vqOSPWindows9x = 1,
    vqOSPWindowsNT = 2,
};

enum vqOSStartupMode : Long {
    vqOSSMNormal = 0,
    vqOSSMFailSafe = 1,
    vqOSSMFailSafeWithNetwork = 2,
    vqOSSMUnknown = -1,
};

enum vqSuiteMask : Long {
    vqSMBackOffice = 4,
    vqSMBlade = 1024,
    vqSMDatacenter = 128,
    vqSMEnterprise = 2,
    vqSMPersonal = 512,
    vqSMSmallBusiness = 1,
    vqSMSmallBusinessRestricted = 32,
    vqSMTerminalServices = 16,
};

enum vqProductType : Long {
    vqPTWorkstation = 1,
    vqPTDomainController = 2,
    vqPTServer = 3,
};

// The system's name as a filled version record gives it; "Unknown Operating System" for a
// record that no known family fits. Looks at nothing but the record.
String ClassifyVersion(const platform::OsVersionInfoEx& record);

class OSInfo {
public:
    OSInfo();

    Boolean IsWin32s() const;
    Boolean IsWin95() const;
    Boolean IsWin95OSR2() const;
    Boolean IsWin98() const;
    Boolean IsWin98SE() const;
    Boolean IsWinME() const;
    Boolean IsWin9x() const;  // by the platform id, not by the name
    Boolean IsWinNT3() const;
    Boolean IsWinNT4() const;
    Boolean IsWinNT4Workstation() const;
    Boolean IsWinNT4Server() const;
    Boolean IsSmallBusinessServer() const;
    Boolean IsSmallBusinessServer2000() const;
    Boolean IsWin2000() const;
    Boolean IsWin2000Professional() const;
    Boolean IsWin2000Server() const;
    Boolean IsWin2000AdvancedServer() const;
    Boolean IsWin2000DatacenterServer() const;
    Boolean IsWinXP() const;
    Boolean IsWinXPHomeEdition() const;
    Boolean IsWinXPProfessional() const;
    Boolean IsWinDotNET() const;
    Boolean IsWinDotNETServer() const;
    Boolean IsWinDotNETDatacenterServer() const;
    Boolean IsWinDotNETEnterpriseServer() const;

    const String& VersionName() const { return name_; }
    const String& VersionNo() const { return number_; }
    const String& AdditionalInfo() const { return csd_; }
    Long MajorVersion() const;
    Long MinorVersion() const;
    Long BuildNo() const;
    String ServicePack() const;
    Integer ServicePackMajor() const;
    Integer ServicePackMinor() const;
    vqSuiteMask SuiteMask() const;
    Byte ProductType() const;
    vqOSPlatform PlatformID() const;
    vqOSStartupMode StartupMode() const { return startupMode_; }

private:
    void LoadVersionData();
    Boolean NameIs(const wchar_t* name) const;
    Boolean NameStartsWith(const wchar_t* prefix) const;

    platform::OsVersionInfoEx record_{};
    String csd_;
    String name_;
    String number_;
    vqOSStartupMode startupMode_ = vqOSSMNormal;
};

}  // namespace orbex
