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
using testing::FakeVersion;
using testing::Version;

struct NamedTest {
    const char* name;
    Boolean (OSInfo::*test)() const;
};
#define NAME_TEST(name) {#name, &OSInfo::name}
constexpr NamedTest Tests[] = {
    NAME_TEST(IsWin32s), NAME_TEST(IsWin95), NAME_TEST(IsWin95OSR2), NAME_TEST(IsWin98), NAME_TEST(IsWin98SE),
    NAME_TEST(IsWinME), NAME_TEST(IsWin9x), NAME_TEST(IsWinNT3), NAME_TEST(IsWinNT4), NAME_TEST(IsWinNT4Workstation),
    NAME_TEST(IsWinNT4Server), NAME_TEST(IsSmallBusinessServer), NAME_TEST(IsSmallBusinessServer2000),
    NAME_TEST(IsWin2000), NAME_TEST(IsWin2000Professional), NAME_TEST(IsWin2000Server),
    NAME_TEST(IsWin2000AdvancedServer), NAME_TEST(IsWin2000DatacenterServer), NAME_TEST(IsWinXP),
    NAME_TEST(IsWinXPHomeEdition), NAME_TEST(IsWinXPProfessional), NAME_TEST(IsWinDotNET),
    NAME_TEST(IsWinDotNETServer), NAME_TEST(IsWinDotNETDatacenterServer), NAME_TEST(IsWinDotNETEnterpriseServer)};
#undef NAME_TEST

// The tests that answer True, separated by blanks; every answer must be exactly -1 or 0.
std::string TrueTests(const OSInfo& os) {
    std::string names;
    for (const NamedTest& t : Tests) {
        const Boolean value = (os.*t.test)();
        EXPECT_TRUE(value == True || value == False) << t.name;
        if (value == True) names += (names.empty() ? "" : " ") + std::string(t.name);
    }
    return names;
}

constexpr const wchar_t* Unknown = L"Unknown Operating System";

// Every row of the classification and every case that falls outside it; the true tests are
// listed in the order of the interface.
TEST(OSInfo, ClassifiesEveryRecord) {
    struct Row {
        Version version;
        const wchar_t* name;
        const char* trueTests;
    };
    const Row rows[] = {
        {{0, 0, 0}, L"Win32s", "IsWin32s"},
        {{0, 5, 1, 3, 0x80, "C"}, L"Win32s", "IsWin32s"},
        // 9x: the minor version and the CSD letter (upper case, blanks trimmed); no major.
        {{1, 4, 0, 0, 0, "C"}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "   B "}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "c"}, L"Windows 95", "IsWin95 IsWin9x"},
        {{1, 4, 0, 0, 0, "A"}, L"Windows 95", "IsWin95 IsWin9x"},
        {{1, 4, 90, 0, 0, "A"}, L"Windows ME", "IsWinME IsWin9x"},
        {{1, 4, 10, 0, 0, " A "}, L"Windows 98 SE", "IsWin98 IsWin98SE IsWin9x"},
        {{1, 4, 10, 0, 0, "a"}, L"Windows 98", "IsWin98 IsWin9x"},
        {{1, 9, 3, 0, 0, "C"}, L"Windows 98", "IsWin98 IsWin9x"},
        {{2, 3, 0}, L"Windows NT 3.0", "IsWinNT3"},
        {{2, 3, 1}, L"Windows NT 3.1", "IsWinNT3"},
        {{2, 3, 5}, L"Windows NT 3.5", "IsWinNT3"},
        {{2, 3, 51, 1}, L"Windows NT 3.51", "IsWinNT3"},
        // NT 4: the product type; no minor.
        {{2, 4, 7, 1}, L"Windows NT 4.0 Workstation", "IsWinNT4 IsWinNT4Workstation"},
        {{2, 4, 0, 3, 0x80}, L"Windows NT 4.0 Server", "IsWinNT4 IsWinNT4Server"},
        {{2, 4, 0, 2}, L"Windows NT 4.0", "IsWinNT4"},
        // 2000: the product type first, the Personal bit only for a workstation.
        {{2, 5, 0, 1, 0x200}, L"Windows 2000 Personal", "IsWin2000"},
        {{2, 5, 0, 1, 0x83}, L"Windows 2000 Professional", "IsWin2000 IsWin2000Professional"},
        {{2, 5, 0, 3, 0x83}, L"Windows 2000 Datacenter Server", "IsWin2000 IsWin2000DatacenterServer"},
        {{2, 5, 0, 3, 0x3}, L"Windows 2000 Advanced Server", "IsWin2000 IsWin2000AdvancedServer"},
        {{2, 5, 0, 3, 0x1}, L"Small Business Server 2000", "IsSmallBusinessServer IsSmallBusinessServer2000"},
        {{2, 5, 0, 3, 0x200}, L"Windows 2000 Server", "IsWin2000 IsWin2000Server"},
        {{2, 5, 0, 0, 0x200}, L"Windows 2000", "IsWin2000"},
        // XP and .NET: the Personal bit first, whatever the product type.
        {{2, 5, 1, 3, 0x280}, L"Windows XP Home Edition", "IsWinXP IsWinXPHomeEdition"},
        {{2, 5, 1, 1, 0x80}, L"Windows XP Professional", "IsWinXP IsWinXPProfessional"},
        {{2, 5, 1, 3, 0x82}, L"Windows.NET Datacenter Server", "IsWinDotNET IsWinDotNETDatacenterServer"},
        {{2, 5, 1, 3, 0x3}, L"Windows.NET Enterprise Server", "IsWinDotNET IsWinDotNETEnterpriseServer"},
        {{2, 5, 1, 3, 0x1}, L"Windows.NET Server", "IsWinDotNET IsWinDotNETServer"},
        {{2, 5, 1, 2, 0x83}, L"Windows XP", "IsWinXP"},
        // Everything else.
        {{2, 3, 2}, Unknown, ""},
        {{2, 5, 2, 3}, Unknown, ""},
        {{2, 5, 0xFFFFFFFF, 1}, Unknown, ""},
        {{2, 6, 1, 1, 0x100, "Service Pack 1"}, Unknown, ""},
        {{2, 2, 0, 1}, Unknown, ""},
        {{3, 4, 10, 0, 0, "A"}, Unknown, ""},
    };
    for (const Row& row : rows) {
        const Version& v = row.version;
        std::ostringstream what;
        what << v.platform << " " << v.major << "." << v.minor << " type " << int(v.type) << " suite " << v.suite
             << " '" << v.csd << "'";
        FakeVersion fake{v};
        const OSInfo os;
        EXPECT_EQ(os.VersionName(), row.name) << what.str();
        EXPECT_EQ(os.VersionNo(), std::to_wstring(Long(v.major)) + L"." + std::to_wstring(Long(v.minor))) << what.str();
        EXPECT_EQ(TrueTests(os), row.trueTests) << what.str();
    }
}

// Only the plain record came back, so nothing behind the CSD text is filled. Anything but exactly
// 1 is no answer, and only a 0 asks again.
TEST(OSInfo, VersionCallResults) {
    struct Row {
        platform::Bool extended, plain;
        std::vector<Dword> sizes;
        const wchar_t* name;
        const wchar_t* servicePack;
    };
    for (const Row& row : {Row{0, 1, {156, 148}, L"Windows NT 4.0", L"Service Pack 0.0"},
                           Row{0, 0, {156, 148}, L"", L""}, Row{2, 1, {156}, L"", L"Service Pack 6.1"},
                           Row{0, -1, {156, 148}, L"", L"Service Pack 0.0"}}) {
        auto record = Version{2, 4, 0, 1, 0x10, "Service Pack 6"}.Record();
        record.wServicePackMajor = 6;
        record.wServicePackMinor = 1;
        FakeVersion fake{record, row.extended, row.plain};
        platform::testing::Replace<&Api::GetSystemMetrics> metrics{[](std::int32_t index) { return index == 67 ? 1 : 99; }};
        const OSInfo os;
        EXPECT_EQ(fake.sizes, row.sizes);
        EXPECT_EQ(os.VersionName(), row.name);
        EXPECT_EQ(os.ServicePack(), row.servicePack);
        EXPECT_EQ(os.StartupMode(), vqOSSMFailSafe);  // read whatever the version calls gave
        if (row.extended == 0) {
            EXPECT_EQ(os.SuiteMask() | os.ProductType() | os.ServicePackMajor() | os.ServicePackMinor(), 0);
        }
    }
}

TEST(OSInfo, NumbersAndTextsOfTheRecord) {
    struct Row {
        Dword platform, build;
        const char* csd;
        platform::Word spMajor, spMinor, suite;
        Long buildNo;
        const wchar_t* servicePack;
        Long suiteMask;
    };
    for (const Row& row : {Row{1, 0x0A0A8000, " A ", 0, 0, 0, -32768, L"", 0},  // 9x: the low word, signed
                           Row{1, 0x040A08AE, "", 0, 0, 0, 2222, L"", 0},
                           Row{2, 0x80000001, "Service Pack 6a", 6, 0, 0x110, -2147483647, L"Service Pack 6.0", 0x110},
                           Row{2, 2600, "", 2, 1, 0x8000, 2600, L"Service Pack 2.1", -32768},
                           Row{0, 0x8001, "x", 3, 0, 0xFFFF, 0x8001, L"", -1}}) {
        auto record = Version{row.platform, 4, 10, 3, row.suite, row.csd}.Record();
        record.dwBuildNumber = row.build;
        record.wServicePackMajor = row.spMajor;
        record.wServicePackMinor = row.spMinor;
        FakeVersion fake{record};
        const OSInfo os;
        EXPECT_EQ(os.BuildNo(), row.buildNo) << row.build;
        EXPECT_EQ(os.ServicePack(), row.servicePack) << row.build;
        EXPECT_EQ(os.AdditionalInfo(), std::wstring(row.csd, row.csd + std::strlen(row.csd))) << row.build;
        EXPECT_EQ(os.SuiteMask(), row.suiteMask) << row.build;
        EXPECT_EQ(os.PlatformID(), static_cast<Long>(row.platform)) << row.build;
    }
}

TEST(OSInfo, StartupModeAboveTwoIsUnknown) {
    for (auto [metric, mode] : {std::pair{0, 0}, {2, 2}, {3, -1}, {1000, -1}, {-5, -5}}) {
        platform::testing::Replace<&Api::GetSystemMetrics> metrics{[&](std::int32_t) { return metric; }};
        EXPECT_EQ(OSInfo().StartupMode(), mode) << metric;
    }
}

// The object keeps what it read at creation and never asks again.
TEST(OSInfo, ReadsThePlatformOnlyWhenMade) {
    const OSInfo os;
    FakeVersion other{testing::Win95};
    platform::testing::Recorder recorder;
    EXPECT_EQ(os.PlatformID(), vqOSPWindowsNT);
    EXPECT_EQ(TrueTests(os), "");
    (void)os.AdditionalInfo();
    EXPECT_TRUE(recorder.calls().empty());
}

}  // namespace
}  // namespace orbex
