// The system classes as a C++ client meets them: the VARIANT subtypes of their figures and new
// objects from SystemLib that outlive it.
#include "ClientSupport.h"

#include <string>

namespace orbex::client {
namespace {

std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// Each figure arrives as its declared type; True as -1. Wine answers as Windows 7, which the
// library has no name for, without a display (1024x768), and allows shutting down.
TEST(SystemClient, SubtypesThroughIDispatch) {
    Ref<IDispatch> lib = CreateByProgId(L"Orbex.SystemLib");
    ASSERT_TRUE(lib.get());
    const struct {
        const wchar_t *object, *member;
        VARTYPE type;
        LONGLONG value;  // -1: any; texts: 0 when not empty; Currency: 0 when whole
    } rows[] = {
        {L"OSInfo", L"IsWin9x", VT_BOOL, VARIANT_FALSE},    {L"OSInfo", L"IsWinXP", VT_BOOL, VARIANT_FALSE},
        {L"OSInfo", L"ProductType", VT_UI1, 1},             {L"OSInfo", L"PlatformID", VT_I4, 2},
        {L"OSInfo", L"ServicePackMajor", VT_I2, 1},         {L"OSInfo", L"VersionNo", VT_BSTR, 0},
        {L"MemoryInfo", L"TotalPhysical", VT_CY, 0},        {L"MemoryInfo", L"MemoryLoad", VT_I4, -1},
        {L"ScreenInfo", L"HorizontalResolution", VT_I2, 1024}, {L"ScreenInfo", L"VerticalResolution", VT_I2, 768},
        {L"PowerInfo", L"BatteryLifePercent", VT_I4, -1},   {nullptr, L"IsShutdownAllowed", VT_BOOL, VARIANT_TRUE},
        {nullptr, L"ComputerName", VT_BSTR, 0},              {nullptr, L"GetGUID", VT_BSTR, 0},
    };
    for (const auto& row : rows) {
        Variant object, value;
        IDispatch* target = lib.get();
        if (row.object) {
            ASSERT_EQ(Call(lib.get(), row.object, DISPATCH_PROPERTYGET, {}, &object), S_OK);
            ASSERT_EQ(V_VT(&object), VT_DISPATCH);
            target = V_DISPATCH(&object);
        }
        ASSERT_EQ(Call(target, row.member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, &value), S_OK) << Narrow(row.member);
        EXPECT_EQ(V_VT(&value), row.type) << Narrow(row.member);
        if (row.value == -1) continue;  // any figure
        const VARTYPE type = V_VT(&value);
        const LONGLONG got = type == VT_BOOL || type == VT_I2 ? V_I2(&value)
                             : type == VT_UI1                ? V_UI1(&value)
                             : type == VT_I4                 ? V_I4(&value)
                             : type == VT_CY                 ? V_CY(&value).int64 % 10000  // whole bytes
                                                             : Text(V_BSTR(&value)).empty();
        EXPECT_EQ(got, row.value) << Narrow(row.member);
    }
}

// Two reads of an object property are two objects, which outlive the SystemLib that made them.
TEST(SystemClient, NewObjectsOutliveTheirMaker) {
    Ref<_OSInfo> first, second;
    {
        Ref<_SystemLib> lib;
        ASSERT_EQ(CoCreateInstance(CLSID_SystemLib, nullptr, CLSCTX_INPROC_SERVER, IID__SystemLib,
                                   reinterpret_cast<void**>(lib.put())), S_OK);
        ASSERT_EQ(lib->get_OSInfo(first.put()), S_OK);
        ASSERT_EQ(lib->get_OSInfo(second.put()), S_OK);
    }
    EXPECT_NE(first.get(), second.get());
    BSTR name = nullptr;
    ASSERT_EQ(second->get_VersionName(&name), S_OK);
    EXPECT_EQ(Text(name), L"Unknown Operating System");
    SysFreeString(name);
}

}  // namespace
}  // namespace orbex::client
