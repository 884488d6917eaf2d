// The system classes as a C++ client meets them: Wine's own version record, new objects from
// SystemLib, Currency sizes and GUID texts, through the vtable and through IDispatch.
#include "ClientSupport.h"

#include <cwctype>
#include <string>

namespace orbex::client {
namespace {

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

std::wstring Take(BSTR text) {
    std::wstring result = Text(text);
    SysFreeString(text);
    return result;
}

// A property read by name.
void Get(IDispatch* object, const wchar_t* name, Variant& result) {
    ASSERT_EQ(Call(object, name, DISPATCH_PROPERTYGET, {}, &result), S_OK) << Narrow(name);
}

// Wine answers as Windows 7 (6.1), a system the library has no name for: every name test is False.
TEST(SystemClient, OSInfoUnderWinesDefaultRecord) {
    OSVERSIONINFOEXA expected{};
    expected.dwOSVersionInfoSize = sizeof expected;
    ASSERT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&expected)));
    ASSERT_EQ(expected.dwMajorVersion * 10 + expected.dwMinorVersion, 61u);

    Ref<_OSInfo> os;
    ASSERT_EQ(CoCreateInstance(CLSID_OSInfo, nullptr, CLSCTX_INPROC_SERVER, IID__OSInfo, reinterpret_cast<void**>(os.put())), S_OK);
    BSTR text = nullptr;
    ASSERT_EQ(os->get_VersionName(&text), S_OK);
    EXPECT_EQ(Take(text), L"Unknown Operating System");
    ASSERT_EQ(os->get_VersionNo(&text), S_OK);
    EXPECT_EQ(Take(text), L"6.1");
    ASSERT_EQ(os->get_ServicePack(&text), S_OK);
    EXPECT_EQ(Take(text), L"Service Pack " + std::to_wstring(expected.wServicePackMajor) + L"." +
                              std::to_wstring(expected.wServicePackMinor));
    ASSERT_EQ(os->get_AdditionalInfo(&text), S_OK);
    EXPECT_EQ(Narrow(Take(text)), expected.szCSDVersion);
    LONG build = 0;
    ASSERT_EQ(os->get_BuildNo(&build), S_OK);
    EXPECT_EQ(build, static_cast<LONG>(expected.dwBuildNumber));
    vqOSPlatform platform = vqOSPWindows32s;
    ASSERT_EQ(os->get_PlatformID(&platform), S_OK);
    EXPECT_EQ(platform, vqOSPWindowsNT);

    Ref<IDispatch> late = CreateByProgId(L"Orbex.OSInfo");
    ASSERT_TRUE(late.get());
    for (const wchar_t* name :
         {L"IsWin32s", L"IsWin95", L"IsWin95OSR2", L"IsWin98", L"IsWin98SE", L"IsWinME", L"IsWin9x", L"IsWinNT3",
          L"IsWinNT4", L"IsWinNT4Workstation", L"IsWinNT4Server", L"IsSmallBusinessServer",
          L"IsSmallBusinessServer2000", L"IsWin2000", L"IsWin2000Professional", L"IsWin2000Server",
          L"IsWin2000AdvancedServer", L"IsWin2000DatacenterServer", L"IsWinXP", L"IsWinXPHomeEdition",
          L"IsWinXPProfessional", L"IsWinDotNET", L"IsWinDotNETServer", L"IsWinDotNETDatacenterServer",
          L"IsWinDotNETEnterpriseServer"}) {
        Variant value;
        Get(late.get(), name, value);
        EXPECT_EQ(V_VT(&value), VT_BOOL) << Narrow(name);
        EXPECT_EQ(V_BOOL(&value), VARIANT_FALSE) << Narrow(name);
    }
}

bool IsGuidText(const std::wstring& text) {
    if (text.size() != 38 || text.front() != L'{' || text.back() != L'}') return false;
    for (std::size_t i = 1; i < 37; ++i) {
        const bool hyphen = i == 9 || i == 14 || i == 19 || i == 24;
        if (hyphen ? text[i] != L'-' : !std::iswxdigit(text[i]) || std::iswlower(text[i])) return false;
    }
    return true;
}

TEST(SystemClient, GetGUIDTwiceGivesTwoTexts) {
    Ref<IDispatch> lib = CreateByProgId(L"Orbex.SystemLib");
    ASSERT_TRUE(lib.get());
    Variant first, second;
    ASSERT_EQ(Call(lib.get(), L"GetGUID", DISPATCH_METHOD, {}, &first), S_OK);
    ASSERT_EQ(Call(lib.get(), L"GetGUID", DISPATCH_METHOD, {}, &second), S_OK);
    ASSERT_EQ(V_VT(&first), VT_BSTR);
    EXPECT_TRUE(IsGuidText(Text(V_BSTR(&first)))) << Narrow(Text(V_BSTR(&first)));
    EXPECT_TRUE(IsGuidText(Text(V_BSTR(&second)))) << Narrow(Text(V_BSTR(&second)));
    EXPECT_NE(Text(V_BSTR(&first)), Text(V_BSTR(&second)));
}

// Two reads of an object property are two objects; two OSInfo objects agree.
TEST(SystemClient, EachReadOfAnObjectPropertyMakesANewObject) {
    Ref<IDispatch> lib = CreateByProgId(L"Orbex.SystemLib");
    ASSERT_TRUE(lib.get());
    for (const wchar_t* property : {L"OSInfo", L"PowerInfo", L"MemoryInfo", L"ScreenInfo"}) {
        Variant first, second;
        Get(lib.get(), property, first);
        Get(lib.get(), property, second);
        ASSERT_EQ(V_VT(&first), VT_DISPATCH);
        ASSERT_EQ(V_VT(&second), VT_DISPATCH);
        EXPECT_NE(V_DISPATCH(&first), V_DISPATCH(&second)) << Narrow(property);
        if (property == std::wstring(L"OSInfo")) {
            Variant firstName, secondName;
            Get(V_DISPATCH(&first), L"VersionName", firstName);
            Get(V_DISPATCH(&second), L"VersionName", secondName);
            EXPECT_EQ(Text(V_BSTR(&firstName)), Text(V_BSTR(&secondName)));
        }
    }
}

// Wine without a display answers a 1024x768 screen; the objects come from SystemLib's vtable and
// outlive it.
TEST(SystemClient, ScreenAndMemoryFigures) {
    Ref<_ScreenInfo> screen;
    Ref<_MemoryInfo> memory;
    {
        Ref<_SystemLib> lib;
        ASSERT_EQ(CoCreateInstance(CLSID_SystemLib, nullptr, CLSCTX_INPROC_SERVER, IID__SystemLib,
                                   reinterpret_cast<void**>(lib.put())), S_OK);
        ASSERT_EQ(lib->get_ScreenInfo(screen.put()), S_OK);
        ASSERT_EQ(lib->get_MemoryInfo(memory.put()), S_OK);
    }
    short width = 0, height = 0, right = 0;
    EXPECT_EQ(screen->get_HorizontalResolution(&width), S_OK);
    EXPECT_EQ(screen->get_VerticalResolution(&height), S_OK);
    EXPECT_EQ(screen->get_FullScreenRight(&right), S_OK);
    EXPECT_EQ(width, 1024);
    EXPECT_EQ(height, 768);
    EXPECT_GT(right, 0);
    EXPECT_LE(right, 1024);

    // Sizes are Currency holding whole byte counts: the platform's total, times 10000.
    MEMORYSTATUSEX expected{};
    expected.dwLength = sizeof expected;
    ASSERT_TRUE(GlobalMemoryStatusEx(&expected));
    CY total{}, available{};
    EXPECT_EQ(memory->get_TotalPhysical(&total), S_OK);
    EXPECT_EQ(memory->get_AvailableVirtual(&available), S_OK);
    EXPECT_EQ(total.int64, static_cast<LONGLONG>(expected.ullTotalPhys) * 10000);
    EXPECT_EQ(available.int64 % 10000, 0);
    EXPECT_GT(available.int64, 0);
}

// Wine allows shutting down and hibernating but not suspending: True comes as -1.
TEST(SystemClient, NamesAndPowerPolicy) {
    Ref<IDispatch> lib = CreateByProgId(L"Orbex.SystemLib");
    ASSERT_TRUE(lib.get());
    char computer[64] = {};
    DWORD size = sizeof computer;
    ASSERT_TRUE(GetComputerNameA(computer, &size));
    Variant name, user;
    Get(lib.get(), L"ComputerName", name);
    Get(lib.get(), L"UserName", user);
    EXPECT_EQ(Narrow(Text(V_BSTR(&name))), computer);
    EXPECT_FALSE(Text(V_BSTR(&user)).empty());
    Variant shutdown, suspend;
    Get(lib.get(), L"IsShutdownAllowed", shutdown);
    Get(lib.get(), L"IsSuspendAllowed", suspend);
    EXPECT_EQ(V_BOOL(&shutdown), VARIANT_TRUE);
    EXPECT_EQ(V_BOOL(&suspend), VARIANT_FALSE);
}

}  // namespace
}  // namespace orbex::client
