#include "system/OSInfo.h"

#include "FakeSystem.h"

#include <gtest/gtest.h>

#include <string>

namespace orbex {
namespace {

using platform::Api;
using testing::FakeVersion;
using testing::Version;

#define T(name) std::pair{#name, &OSInfo::name}
constexpr std::pair<const char*, Boolean (OSInfo::*)() const> Tests[] = {
    T(IsWin32s), T(IsWin95), T(IsWin95OSR2), T(IsWin98), T(IsWin98SE), T(IsWinME), T(IsWin9x), T(IsWinNT3),
    T(IsWinNT4), T(IsWinNT4Workstation), T(IsWinNT4Server), T(IsSmallBusinessServer), T(IsSmallBusinessServer2000),
    T(IsWin2000), T(IsWin2000Professional), T(IsWin2000Server), T(IsWin2000AdvancedServer),
    T(IsWin2000DatacenterServer), T(IsWinXP), T(IsWinXPHomeEdition), T(IsWinXPProfessional), T(IsWinDotNET),
    T(IsWinDotNETServer), T(IsWinDotNETDatacenterServer), T(IsWinDotNETEnterpriseServer)};
#undef T

// The tests that answer True, separated by blanks; every answer must be exactly -1 or 0.
std::string TrueTests(const OSInfo& os) {
    std::string names;
    for (auto [name, test] : Tests) {
        const Boolean value = (os.*test)();
        EXPECT_TRUE(value == True || value == False) << name;
        if (value == True) names += (names.empty() ? "" : " ") + std::string(name);
    }
    return names;
}

constexpr const wchar_t* Unknown = L"Unknown Operating System";

// Every row of the classification and every case that falls outside it.
TEST(OSInfo, ClassifiesEveryRecord) {
    const struct {
        Version v;
        const wchar_t* name;
        const char* trueTests;
    } rows[] = {
        {{0, 0, 0}, L"Win32s", "IsWin32s"}, {{0, 5, 1, 3, 0x80, "C"}, L"Win32s", "IsWin32s"},
        // 9x: the minor version and the CSD letter (upper case, blanks trimmed); no major.
        {{1, 4, 0, 0, 0, "C"}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "   B "}, L"Windows 95 OSR2", "IsWin95 IsWin95OSR2 IsWin9x"},
        {{1, 4, 0, 0, 0, "c"}, L"Windows 95", "IsWin95 IsWin9x"}, {{1, 4, 0, 0, 0, "A"}, L"Windows 95", "IsWin95 IsWin9x"},
        {{1, 4, 90, 0, 0, "A"}, L"Windows ME", "IsWinME IsWin9x"},
        {{1, 4, 10, 0, 0, " A "}, L"Windows 98 SE", "IsWin98 IsWin98SE IsWin9x"},
        {{1, 4, 10, 0, 0, "a"}, L"Windows 98", "IsWin98 IsWin9x"}, {{1, 9, 3, 0, 0, "C"}, L"Windows 98", "IsWin98 IsWin9x"},
        {{2, 3, 0}, L"Windows NT 3.0", "IsWinNT3"}, {{2, 3, 1}, L"Windows NT 3.1", "IsWinNT3"},
        {{2, 3, 5}, L"Windows NT 3.5", "IsWinNT3"}, {{2, 3, 51, 1}, L"Windows NT 3.51", "IsWinNT3"},
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
        {{2, 3, 2}, Unknown, ""}, {{2, 5, 2, 3}, Unknown, ""}, {{2, 5, 0xFFFFFFFF, 1}, Unknown, ""},
        {{2, 6, 1, 1, 0x100, "Service Pack 1"}, Unknown, ""}, {{2, 2, 0, 1}, Unknown, ""},
        {{3, 4, 10, 0, 0, "A"}, Unknown, ""},
    };
    for (const auto& [v, name, trueTests] : rows) {
        SCOPED_TRACE(::testing::Message() << v.platform << " " << v.major << "." << v.minor << " type " << int(v.type)
                                          << " suite " << v.suite << " '" << v.csd << "'");
        FakeVersion fake{v};
        const OSInfo os;
        EXPECT_EQ(os.VersionName(), name);
        EXPECT_EQ(os.VersionNo(), std::to_wstring(Long(v.major)) + L"." + std::to_wstring(Long(v.minor)));
        EXPECT_EQ(TrueTests(os), trueTests);
    }
}

// Only the plain record came back, so nothing behind the CSD text is filled. Anything but exactly
// 1 is no answer, and only a 0 asks again. StartupMode is read whatever the version calls gave.
TEST(OSInfo, VersionCallResults) {
    for (auto [extended, plain, sizes, name, servicePack] :
         {std::tuple{0, 1, std::vector<platform::Dword>{156, 148}, L"Windows NT 4.0", L"Service Pack 0.0"},
          {0, 0, {156, 148}, L"", L""}, {2, 1, {156}, L"", L"Service Pack 6.1"}, {0, -1, {156, 148}, L"", L"Service Pack 0.0"}}) {
        auto record = Version{2, 4, 0, 1, 0x10, "Service Pack 6"}.Record();
        record.wServicePackMajor = 6, record.wServicePackMinor = 1;
        FakeVersion fake{record, extended, plain};
        platform::testing::Replace<&Api::GetSystemMetrics> metrics{[](std::int32_t index) { return index == 67 ? 1 : 99; }};
        const OSInfo os;
        EXPECT_EQ(fake.sizes, sizes);
        EXPECT_EQ(os.VersionName(), name);
        EXPECT_EQ(os.ServicePack(), servicePack);
        EXPECT_EQ(os.StartupMode(), vqOSSMFailSafe);
        if (extended == 0) {
            EXPECT_EQ(os.SuiteMask() | os.ProductType() | os.ServicePackMajor() | os.ServicePackMinor(), 0);
        }
    }
}

// 9x builds are the low word, signed; the service pack text only on NT; the suite mask signed.
TEST(OSInfo, NumbersAndTextsOfTheRecord) {
    for (auto [platformId, build, csd, spMajor, spMinor, suite, buildNo, servicePack, suiteMask] :
         {std::tuple{1u, 0x0A0A8000u, " A ", 0, 0, 0, -32768, L"", 0}, {1u, 0x040A08AEu, "", 0, 0, 0, 2222, L"", 0},
          {2u, 0x80000001u, "Service Pack 6a", 6, 0, 0x110, -2147483647, L"Service Pack 6.0", 0x110},
          {2u, 2600u, "", 2, 1, 0x8000, 2600, L"Service Pack 2.1", -32768}, {0u, 0x8001u, "x", 3, 0, 0xFFFF, 0x8001, L"", -1}}) {
        auto record = Version{platformId, 4, 10, 3, static_cast<platform::Word>(suite), csd}.Record();
        record.dwBuildNumber = build;
        record.wServicePackMajor = spMajor, record.wServicePackMinor = spMinor;
        FakeVersion fake{record};
        const OSInfo os;
        EXPECT_EQ(os.BuildNo(), buildNo) << build;
        EXPECT_EQ(os.ServicePack(), servicePack) << build;
        EXPECT_EQ(os.AdditionalInfo(), std::wstring(csd, csd + std::strlen(csd))) << build;
        EXPECT_EQ(os.SuiteMask(), suiteMask) << build;
        EXPECT_EQ(os.PlatformID(), static_cast<Long>(platformId)) << build;
    }
    for (auto [metric, mode] : {std::pair{0, 0}, {2, 2}, {3, -1}, {1000, -1}, {-5, -5}}) {  // above 2 is unknown
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
