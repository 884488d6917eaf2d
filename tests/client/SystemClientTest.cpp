// The system classes as a C++ client meets them: Wine's own version record, new objects from
// SystemLib, Currency sizes and GUID texts, through the vtable and through IDispatch.
#include "ClientSupport.h"

#include <cwctype>
#include <string>

namespace orbex::client {
namespace {

template <class T>
Ref<T> Create(const CLSID& clsid, const IID& iid) {
    Ref<T> object;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, reinterpret_cast<void**>(object.put())), S_OK);
    return object;
}

std::wstring Take(BSTR text) {
    std::wstring result = Text(text);
    SysFreeString(text);
    return result;
}

// A property read by name; the result's type is checked by the caller.
void Get(IDispatch* object, const wchar_t* name, Variant& result) {
    ASSERT_EQ(Call(object, name, DISPATCH_PROPERTYGET, {}, &result), S_OK) << std::string(name, name + wcslen(name));
}

const wchar_t* const kNameTests[] = {
    L"IsWin32s", L"IsWin95", L"IsWin95OSR2", L"IsWin98", L"IsWin98SE", L"IsWinME", L"IsWin9x", L"IsWinNT3",
    L"IsWinNT4", L"IsWinNT4Workstation", L"IsWinNT4Server", L"IsSmallBusinessServer", L"IsSmallBusinessServer2000",
    L"IsWin2000", L"IsWin2000Professional", L"IsWin2000Server", L"IsWin2000AdvancedServer",
    L"IsWin2000DatacenterServer", L"IsWinXP", L"IsWinXPHomeEdition", L"IsWinXPProfessional", L"IsWinDotNET",
    L"IsWinDotNETServer", L"IsWinDotNETDatacenterServer", L"IsWinDotNETEnterpriseServer"};

// Wine answers as Windows 7 (6.1), a system the library has no name for.
TEST(SystemClient, OSInfoUnderWinesDefaultRecord) {
    OSVERSIONINFOEXA expected{};
    expected.dwOSVersionInfoSize = sizeof expected;
    ASSERT_TRUE(GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&expected)));
    ASSERT_EQ(expected.dwMajorVersion, 6u);
    ASSERT_EQ(expected.dwMinorVersion, 1u);

    Ref<_OSInfo> os = Create<_OSInfo>(CLSID_OSInfo, IID__OSInfo);
    BSTR text = nullptr;
    ASSERT_EQ(os->get_VersionName(&text), S_OK);
    EXPECT_EQ(Take(text), L"Unknown Operating System");
    ASSERT_EQ(os->get_VersionNo(&text), S_OK);
    EXPECT_EQ(Take(text), L"6.1");
    ASSERT_EQ(os->get_ServicePack(&text), S_OK);
    EXPECT_EQ(Take(text), L"Service Pack " + std::to_wstring(expected.wServicePackMajor) + L"." +
                              std::to_wstring(expected.wServicePackMinor));
    ASSERT_EQ(os->get_AdditionalInfo(&text), S_OK);
    const std::string csd = expected.szCSDVersion;
    EXPECT_EQ(Take(text), std::wstring(csd.begin(), csd.end()));
    LONG number = 0;
    ASSERT_EQ(os->get_BuildNo(&number), S_OK);
    EXPECT_EQ(number, static_cast<LONG>(expected.dwBuildNumber));
    vqOSPlatform platform = vqOSPWindows32s;
    ASSERT_EQ(os->get_PlatformID(&platform), S_OK);
    EXPECT_EQ(platform, vqOSPWindowsNT);
    unsigned char type = 0;
    ASSERT_EQ(os->get_ProductType(&type), S_OK);
    EXPECT_EQ(type, expected.wProductType);

    Ref<IDispatch> late = CreateByProgId(L"Orbex.OSInfo");
    ASSERT_TRUE(late.get());
    for (const wchar_t* name : kNameTests) {
        Variant value;
        Get(late.get(), name, value);
        EXPECT_EQ(V_VT(&value), VT_BOOL);
        EXPECT_EQ(V_BOOL(&value), VARIANT_FALSE) << std::string(name, name + wcslen(name));
    }
}

bool IsGuidText(const std::wstring& text) {
    if (text.size() != 38 || text.front() != L'{' || text.back() != L'}') return false;
    for (std::size_t i = 1; i < 37; ++i) {
        const bool hyphen = i == 9 || i == 14 || i == 19 || i == 24;
        if (hyphen != (text[i] == L'-')) return false;
        if (!hyphen && !std::iswxdigit(text[i])) return false;
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
    ASSERT_EQ(V_VT(&second), VT_BSTR);
    const std::wstring a = Text(V_BSTR(&first)), b = Text(V_BSTR(&second));
    EXPECT_TRUE(IsGuidText(a)) << std::string(a.begin(), a.end());
    EXPECT_TRUE(IsGuidText(b)) << std::string(b.begin(), b.end());
    EXPECT_NE(a, b);
}

Ref<IUnknown> Identity(IUnknown* object) {
    Ref<IUnknown> identity;
    object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.put()));
    return identity;
}

TEST(SystemClient, EachReadOfAnObjectPropertyMakesANewObject) {
    Ref<IDispatch> lib = CreateByProgId(L"Orbex.SystemLib");
    ASSERT_TRUE(lib.get());
    for (const wchar_t* property : {L"OSInfo", L"PowerInfo", L"MemoryInfo", L"ScreenInfo"}) {
        Variant first, second;
        Get(lib.get(), property, first);
        Get(lib.get(), property, second);
        ASSERT_EQ(V_VT(&first), VT_DISPATCH);
        ASSERT_EQ(V_VT(&second), VT_DISPATCH);
        ASSERT_TRUE(V_DISPATCH(&first) && V_DISPATCH(&second));
        EXPECT_NE(Identity(V_DISPATCH(&first)).get(), Identity(V_DISPATCH(&second)).get());
    }
    Variant first, second, firstName, secondName;
    Get(lib.get(), L"OSInfo", first);
    Get(lib.get(), L"OSInfo", second);
    Get(V_DISPATCH(&first), L"VersionName", firstName);
    Get(V_DISPATCH(&second), L"VersionName", secondName);
    EXPECT_EQ(Text(V_BSTR(&firstName)), Text(V_BSTR(&secondName)));

    // Through the vtable too; the object outlives the SystemLib that made it.
    Ref<_ScreenInfo> screen;
    {
        Ref<_SystemLib> vtable = Create<_SystemLib>(CLSID_SystemLib, IID__SystemLib);
        ASSERT_EQ(vtable->get_ScreenInfo(screen.put()), S_OK);
    }
    ASSERT_TRUE(screen.get());
    short width = 0;
    EXPECT_EQ(screen->get_HorizontalResolution(&width), S_OK);
    EXPECT_EQ(width, 1024);
}

// Wine without a display answers a 1024x768 screen.
TEST(SystemClient, ScreenFigures) {
    Ref<IDispatch> screen = CreateByProgId(L"Orbex.ScreenInfo");
    ASSERT_TRUE(screen.get());
    struct Row {
        const wchar_t* name;
        short low, high;
    };
    for (const Row& row : {Row{L"HorizontalResolution", 1024, 1024}, Row{L"VerticalResolution", 768, 768},
                           Row{L"ColorDepth", 1, 32}, Row{L"FullScreenLeft", 0, 0}, Row{L"FullScreenTop", 0, 0},
                           Row{L"FullScreenRight", 1, 1024}, Row{L"FullScreenBottom", 1, 768}}) {
        Variant value;
        Get(screen.get(), row.name, value);
        ASSERT_EQ(V_VT(&value), VT_I2);
        EXPECT_GE(V_I2(&value), row.low) << std::string(row.name, row.name + wcslen(row.name));
        EXPECT_LE(V_I2(&value), row.high) << std::string(row.name, row.name + wcslen(row.name));
    }
}

// Sizes come as Currency holding whole byte counts: the platform's total, times 10000.
TEST(SystemClient, MemorySizesAreWholeCurrencyCounts) {
    MEMORYSTATUSEX expected{};
    expected.dwLength = sizeof expected;
    ASSERT_TRUE(GlobalMemoryStatusEx(&expected));
    Ref<IDispatch> memory = CreateByProgId(L"Orbex.MemoryInfo");
    ASSERT_TRUE(memory.get());
    Variant total;
    Get(memory.get(), L"TotalPhysical", total);
    ASSERT_EQ(V_VT(&total), VT_CY);
    EXPECT_EQ(V_CY(&total).int64, static_cast<LONGLONG>(expected.ullTotalPhys) * 10000);
    for (const wchar_t* name : {L"AvailablePhysical", L"TotalPageFile", L"AvailablePageFile", L"TotalVirtual",
                                L"AvailableVirtual", L"AvailableExtendedVirtual"}) {
        Variant value;
        Get(memory.get(), name, value);
        ASSERT_EQ(V_VT(&value), VT_CY);
        EXPECT_EQ(V_CY(&value).int64 % 10000, 0) << std::string(name, name + wcslen(name));
        EXPECT_GE(V_CY(&value).int64, 0) << std::string(name, name + wcslen(name));
    }
    Ref<_MemoryInfo> vtable = Create<_MemoryInfo>(CLSID_MemoryInfo, IID__MemoryInfo);
    LONG load = -1;
    EXPECT_EQ(vtable->get_MemoryLoad(&load), S_OK);
    EXPECT_GE(load, 0);
    EXPECT_LE(load, 100);
}

TEST(SystemClient, NamesAndPower) {
    Ref<_SystemLib> lib = Create<_SystemLib>(CLSID_SystemLib, IID__SystemLib);
    char computer[64] = {};
    DWORD size = sizeof computer;
    ASSERT_TRUE(GetComputerNameA(computer, &size));
    BSTR text = nullptr;
    ASSERT_EQ(lib->get_ComputerName(&text), S_OK);
    EXPECT_EQ(Take(text), std::wstring(computer, computer + size));
    ASSERT_EQ(lib->get_UserName(&text), S_OK);
    EXPECT_FALSE(Take(text).empty());

    // Every Boolean is exactly True or False.
    VARIANT_BOOL allowed = 1;
    ASSERT_EQ(lib->get_IsShutdownAllowed(&allowed), S_OK);
    EXPECT_TRUE(allowed == VARIANT_TRUE || allowed == VARIANT_FALSE) << allowed;

    Ref<_PowerInfo> power = Create<_PowerInfo>(CLSID_PowerInfo, IID__PowerInfo);
    vqACLineStatus line = vqACLSOffLine;
    ASSERT_EQ(power->get_ACLineStatus(&line), S_OK);
    ASSERT_EQ(power->get_ACLineStatusName(&text), S_OK);
    const std::wstring name = Take(text);
    EXPECT_EQ(name, line == vqACLSOnLine ? L"AC Online" : line == vqACLSOffLine ? L"AC Offline" : L"AC Status Unknown");
}

}  // namespace
}  // namespace orbex::client
