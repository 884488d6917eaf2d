#include "system/OSInfo.h"

#include "FakeSystem.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

namespace orbex {
namespace {

using platform::Api;
using platform::Dword;
using platform::OsVersionInfoEx;
using testing::FakeVersion;
using testing::Version;

using Test = Boolean (OSInfo::*)() const;
struct NamedTest {
    const char* name;
    Test test;
};

constexpr NamedTest Tests[] = {
    {"IsWin32s", &OSInfo::IsWin32s},
    {"IsWin95", &OSInfo::IsWin95},
    {"IsWin95OSR2", &OSInfo::IsWin95OSR2},
    {"IsWin98", &OSInfo::IsWin98},
    {"IsWin98SE", &OSInfo::IsWin98SE},
    {"IsWinME", &OSInfo::IsWinME},
    {"IsWin9x", &OSInfo::IsWin9x},
    {"IsWinNT3", &OSInfo::IsWinNT3},
    {"IsWinNT4", &OSInfo::IsWinNT4},
    {"IsWinNT4Workstation", &OSInfo::IsWinNT4Workstation},
    {"IsWinNT4Server", &OSInfo::IsWinNT4Server},
    {"IsSmallBusinessServer", &OSInfo::IsSmallBusinessServer},
    {"IsSmallBusinessServer2000", &OSInfo::IsSmallBusinessServer2000},
    {"IsWin2000", &OSInfo::IsWin2000},
    {"IsWin2000Professional", &OSInfo::IsWin2000Professional},
    {"IsWin2000Server", &OSInfo::IsWin2000Server},
    {"IsWin2000AdvancedServer", &OSInfo::IsWin2000AdvancedServer},
    {"IsWin2000DatacenterServer", &OSInfo::IsWin2000DatacenterServer},
    {"IsWinXP", &OSInfo::IsWinXP},
    {"IsWinXPHomeEdition", &OSInfo::IsWinXPHomeEdition},
    {"IsWinXPProfessional", &OSInfo::IsWinXPProfessional},
    {"IsWinDotNET", &OSInfo::IsWinDotNET},
    {"IsWinDotNETServer", &OSInfo::IsWinDotNETServer},
    {"IsWinDotNETDatacenterServer", &OSInfo::IsWinDotNETDatacenterServer},
    {"IsWinDotNETEnterpriseServer", &OSInfo::IsWinDotNETEnterpriseServer},
};

// The names of the tests that answer True; each must be exactly -1, the others exactly 0.
std::set<std::string> TrueTests(const OSInfo& os) {
    std::set<std::string> names;
    for (const NamedTest& t : Tests) {
        const Boolean value = (os.*t.test)();
        EXPECT_TRUE(value == True || value == False) << t.name;
        if (value == True) names.insert(t.name);
    }
    return names;
}

std::set<std::string> Words(const char* text) {
    std::set<std::string> words;
    std::istringstream in(text);
    for (std::string word; in >> word;) words.insert(word);
    return words;
}

std::string Describe(const Version& v) {
    std::ostringstream out;
    out << "platform " << v.platform << ", " << v.major << "." << v.minor << ", type " << int(v.type)
        << ", suite 0x" << std::hex << v.suite << ", csd '" << v.csd << "'";
    return out.str();
}

constexpr const wchar_t* Unknown = L"Unknown Operating System";

TEST(OSInfo, ClassifiesEveryRecord) {
    struct Row {
        Version version;
        const wchar_t* name;
        const char* trueTests;
    };
    const Row rows[] = {
        // Win32s, whatever else the record says.
        {{0, 0, 0}, L"Win32s", "IsWin32s"},
        {{0, 5, 1, 3, 0x80, "C"}, L"Win32s", "IsWin32s"},
        // The 9x family: the minor version and the CSD letter; the major is not looked at.
        {{1, 4, 0, 0, 0, "C"}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "B"}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "   B "}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "c"}, L"Windows 95", "IsWin95 IsWin9x"},
        {{1, 4, 0, 0, 0, "A"}, L"Windows 95", "IsWin95 IsWin9x"},
        {{1, 4, 0, 0, 0, ""}, L"Windows 95", "IsWin95 IsWin9x"},
        {{1, 4, 90, 0, 0, "A"}, L"Windows ME", "IsWinME IsWin9x"},
        {{1, 4, 10, 0, 0, " A "}, L"Windows 98 SE", "IsWin98 IsWin98SE IsWin9x"},
        {{1, 4, 10, 0, 0, "a"}, L"Windows 98", "IsWin98 IsWin9x"},
        {{1, 4, 10, 0, 0, "C"}, L"Windows 98", "IsWin98 IsWin9x"},
        {{1, 9, 3}, L"Windows 98", "IsWin98 IsWin9x"},
        {{1, 0, 0xFFFFFFFF, 0, 0, "A"}, L"Windows 98 SE", "IsWin98 IsWin98SE IsWin9x"},
        // NT 3: four known minors.
        {{2, 3, 0}, L"Windows NT 3.0", "IsWinNT3"},
        {{2, 3, 1}, L"Windows NT 3.1", "IsWinNT3"},
        {{2, 3, 5}, L"Windows NT 3.5", "IsWinNT3"},
        {{2, 3, 51, 1}, L"Windows NT 3.51", "IsWinNT3"},
        // NT 4: the product type; the minor is not looked at.
        {{2, 4, 0, 1}, L"Windows NT 4.0 Workstation", "IsWinNT4 IsWinNT4Workstation"},
        {{2, 4, 7, 1}, L"Windows NT 4.0 Workstation", "IsWinNT4 IsWinNT4Workstation"},
        {{2, 4, 0, 3, 0x80}, L"Windows NT 4.0 Server", "IsWinNT4 IsWinNT4Server"},
        {{2, 4, 0, 2}, L"Windows NT 4.0", "IsWinNT4"},
        {{2, 4, 0, 0}, L"Windows NT 4.0", "IsWinNT4"},
        // 2000: the product type first, the Personal bit only for a workstation.
        {{2, 5, 0, 1, 0x200}, L"Windows 2000 Personal", "IsWin2000"},
        {{2, 5, 0, 1, 0x83}, L"Windows 2000 Professional", "IsWin2000 IsWin2000Professional"},
        {{2, 5, 0, 3, 0x83}, L"Windows 2000 Datacenter Server", "IsWin2000 IsWin2000DatacenterServer"},
        {{2, 5, 0, 3, 0x3}, L"Windows 2000 Advanced Server", "IsWin2000 IsWin2000AdvancedServer"},
        {{2, 5, 0, 3, 0x1}, L"Small Business Server 2000", "IsSmallBusinessServer IsSmallBusinessServer2000"},
        {{2, 5, 0, 3, 0x200}, L"Windows 2000 Server", "IsWin2000 IsWin2000Server"},
        {{2, 5, 0, 3, 0x10}, L"Windows 2000 Server", "IsWin2000 IsWin2000Server"},
        {{2, 5, 0, 2, 0x200}, L"Windows 2000", "IsWin2000"},
        {{2, 5, 0, 0, 0x80}, L"Windows 2000", "IsWin2000"},
        // XP and .NET: the Personal bit first, whatever the product type.
        {{2, 5, 1, 3, 0x280}, L"Windows XP Home Edition", "IsWinXP IsWinXPHomeEdition"},
        {{2, 5, 1, 0, 0x200}, L"Windows XP Home Edition", "IsWinXP IsWinXPHomeEdition"},
        {{2, 5, 1, 1, 0x80}, L"Windows XP Professional", "IsWinXP IsWinXPProfessional"},
        {{2, 5, 1, 3, 0x82}, L"Windows.NET Datacenter Server", "IsWinDotNET IsWinDotNETDatacenterServer"},
        {{2, 5, 1, 3, 0x3}, L"Windows.NET Enterprise Server", "IsWinDotNET IsWinDotNETEnterpriseServer"},
        {{2, 5, 1, 3, 0x1}, L"Windows.NET Server", "IsWinDotNET IsWinDotNETServer"},
        {{2, 5, 1, 2}, L"Windows XP", "IsWinXP"},
        {{2, 5, 1, 0, 0x83}, L"Windows XP", "IsWinXP"},
        // Everything else.
        {{2, 3, 2}, Unknown, ""},
        {{2, 3, 50}, Unknown, ""},
        {{2, 5, 2, 3}, Unknown, ""},
        {{2, 5, 0xFFFFFFFF, 1}, Unknown, ""},
        {{2, 6, 1, 1, 0x100, "Service Pack 1"}, Unknown, ""},
        {{2, 2, 0, 1}, Unknown, ""},
        {{2, 0, 0}, Unknown, ""},
        {{3, 4, 10, 0, 0, "A"}, Unknown, ""},
        {{0xFFFFFFFF, 5, 1, 1}, Unknown, ""},
    };
    for (const Row& row : rows) {
        FakeVersion fake{row.version};
        const OSInfo os;
        EXPECT_EQ(os.VersionName(), row.name) << Describe(row.version);
        EXPECT_EQ(ClassifyVersion(row.version.Record()), row.name) << Describe(row.version);
        EXPECT_EQ(os.VersionNo(), std::to_wstring(Long(row.version.major)) + L"." +
                                      std::to_wstring(Long(row.version.minor)))
            << Describe(row.version);
        EXPECT_EQ(TrueTests(os), Words(row.trueTests)) << Describe(row.version);
    }
}

// Only the plain record came back: nothing behind the CSD text is filled.
TEST(OSInfo, PlainRecordLeavesTheExtendedFieldsZero) {
    OsVersionInfoEx record = Version{2, 4, 0, 1, 0x10, "Service Pack 6"}.Record();
    record.wServicePackMajor = 6;
    record.wServicePackMinor = 1;
    FakeVersion fake{record, 0, 1};
    const OSInfo os;
    EXPECT_EQ(fake.sizes, (std::vector<Dword>{156, 148}));
    EXPECT_EQ(os.VersionName(), L"Windows NT 4.0");
    EXPECT_EQ(TrueTests(os), Words("IsWinNT4"));
    EXPECT_EQ(os.ServicePack(), L"Service Pack 0.0");
    EXPECT_EQ(os.AdditionalInfo(), L"Service Pack 6");
    EXPECT_EQ(os.ServicePackMajor(), 0);
    EXPECT_EQ(os.ServicePackMinor(), 0);
    EXPECT_EQ(os.SuiteMask(), 0);
    EXPECT_EQ(os.ProductType(), 0);
}

// Anything but exactly 1 is no answer; only a 0 asks again with the plain size.
TEST(OSInfo, FailedVersionCallsLeaveEverythingEmpty) {
    struct Row {
        platform::Bool extended, plain;
        std::vector<Dword> sizes;
    };
    for (const Row& row : {Row{0, 0, {156, 148}}, Row{2, 1, {156}}, Row{0, -1, {156, 148}}}) {
        FakeVersion fake{Version{2, 5, 1, 1, 0, "x"}.Record(), row.extended, row.plain};
        platform::testing::Replace<&Api::GetSystemMetrics> metrics{[](std::int32_t index) {
            EXPECT_EQ(index, 67);
            return 1;
        }};
        const OSInfo os;
        EXPECT_EQ(fake.sizes, row.sizes) << row.extended << "," << row.plain;
        EXPECT_EQ(os.VersionName(), L"");
        EXPECT_EQ(os.VersionNo(), L"");
        EXPECT_EQ(os.StartupMode(), vqOSSMFailSafe);
        EXPECT_TRUE(TrueTests(os).empty());
        if (row.plain == 0) {  // nothing was written at all
            EXPECT_EQ(os.ServicePack(), L"");
            EXPECT_EQ(os.AdditionalInfo(), L"");
            EXPECT_EQ(os.MajorVersion(), 0);
            EXPECT_EQ(os.PlatformID(), vqOSPWindows32s);
        }
    }
}

TEST(OSInfo, NumbersAndTextsOfTheRecord) {
    struct Row {
        const char* what;
        Dword platform, build;
        const char* csd;
        platform::Word spMajor, spMinor, suite;
        Long buildNo;
        const wchar_t* servicePack;
        const wchar_t* additionalInfo;
        Long suiteMask;
    };
    const Row rows[] = {
        {"9x keeps the low word, signed", 1, 0x0A0A8000, " A ", 0, 0, 0, -32768, L"", L" A ", 0},
        {"9x drops the high word", 1, 0x040A08AE, "", 0, 0, 0, 2222, L"", L"", 0},
        {"NT passes the build whole", 2, 0x80000001, "Service Pack 6a", 6, 0, 0x0110, -2147483647,
         L"Service Pack 6.0", L"Service Pack 6a", 0x110},
        {"NT service pack numbers", 2, 2600, "", 2, 1, 0x8000, 2600, L"Service Pack 2.1", L"", -32768},
        {"Win32s has no service pack", 0, 0x8001, "x", 3, 0, 0xFFFF, 0x8001, L"", L"x", -1},
    };
    for (const Row& row : rows) {
        OsVersionInfoEx record = Version{row.platform, 4, 10, 3, row.suite, row.csd}.Record();
        record.dwBuildNumber = row.build;
        record.wServicePackMajor = row.spMajor;
        record.wServicePackMinor = row.spMinor;
        FakeVersion fake{record};
        const OSInfo os;
        EXPECT_EQ(os.BuildNo(), row.buildNo) << row.what;
        EXPECT_EQ(os.ServicePack(), row.servicePack) << row.what;
        EXPECT_EQ(os.AdditionalInfo(), row.additionalInfo) << row.what;
        EXPECT_EQ(os.SuiteMask(), row.suiteMask) << row.what;
        EXPECT_EQ(os.ServicePackMajor(), row.spMajor) << row.what;
        EXPECT_EQ(os.ProductType(), 3) << row.what;
        EXPECT_EQ(os.MajorVersion(), 4) << row.what;
        EXPECT_EQ(os.MinorVersion(), 10) << row.what;
        EXPECT_EQ(os.PlatformID(), static_cast<Long>(row.platform)) << row.what;
    }
}

TEST(OSInfo, StartupModeAboveTwoIsUnknown) {
    struct Row {
        std::int32_t metric;
        vqOSStartupMode mode;
    };
    for (const Row& row : {Row{0, vqOSSMNormal}, Row{1, vqOSSMFailSafe}, Row{2, vqOSSMFailSafeWithNetwork},
                           Row{3, vqOSSMUnknown}, Row{1000, vqOSSMUnknown},
                           Row{-5, static_cast<vqOSStartupMode>(-5)}}) {
        platform::testing::Replace<&Api::GetSystemMetrics> metrics{[&](std::int32_t) { return row.metric; }};
        EXPECT_EQ(OSInfo().StartupMode(), row.mode) << row.metric;
    }
}

// The object keeps what it read at creation and never asks again.
TEST(OSInfo, ReadsThePlatformOnlyWhenMade) {
    std::unique_ptr<OSInfo> os;
    {
        platform::testing::Recorder recorder;
        os = std::make_unique<OSInfo>();
        EXPECT_EQ(recorder.count("GetVersionExA"), 1u);
        EXPECT_EQ(recorder.count("GetSystemMetrics"), 1u);
    }
    FakeVersion other{testing::Win95};
    platform::testing::Recorder recorder;
    EXPECT_EQ(os->PlatformID(), vqOSPWindowsNT);
    EXPECT_FALSE(isTrue(os->IsWin95()));
    (void)os->AdditionalInfo();
    (void)os->ServicePack();
    (void)os->BuildNo();
    (void)TrueTests(*os);
    EXPECT_TRUE(recorder.calls().empty());
}

}  // namespace
}  // namespace orbex
