// Arguments and DISPPARAMS a broken client passes to Invoke: refused with a dispatch code that
// names the argument, before anything reads through them, and no stale error info left behind.
#include "ClientSupport.h"

#include <climits>
#include <vector>

namespace orbex::client {
namespace {

DISPID IdOf(IDispatch* object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

void PlantErrorInfo() {
    Ref<ICreateErrorInfo> create;
    ASSERT_EQ(CreateErrorInfo(create.put()), S_OK);
    create->SetDescription(const_cast<LPOLESTR>(L"an earlier call's"));
    Ref<IErrorInfo> info;
    create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.put()));
    SetErrorInfo(0, info.get());
}

bool ErrorInfoLeft() {
    Ref<IErrorInfo> info;
    return GetErrorInfo(0, info.put()) == S_OK && info.get();
}

TEST(HostileInvoke, UnreadableArgumentsAreRefusedByPosition) {
    Ref<IDispatch> files = CreateByProgId(L"Orbex.FileLib");
    ASSERT_NE(files.get(), nullptr);
    // FormatSize(Bytes, DecimalPlaces): the broken argument goes second, position 0 in rgvarg.
    VARIANT fourI4 = Long(4);
    SAFEARRAYBOUND bound{2, 0};
    SAFEARRAY* numbers = SafeArrayCreate(VT_I4, 1, &bound);
    DECIMAL wild{};
    wild.scale = 255;
    struct Row {
        const char* what;
        VARTYPE type;
        void* reference;
        HRESULT expected;
    };
    const Row rows[] = {
        {"null VT_BYREF|VT_I2", VT_BYREF | VT_I2, nullptr, DISP_E_TYPEMISMATCH},
        {"null VT_BYREF|VT_VARIANT", VT_BYREF | VT_VARIANT, nullptr, DISP_E_TYPEMISMATCH},
        {"a decimal of scale 255", VT_BYREF | VT_DECIMAL, &wild, DISP_E_TYPEMISMATCH},
        {"an array of Long tagged String", VT_BYREF | VT_ARRAY | VT_BSTR, &numbers, DISP_E_TYPEMISMATCH},
        {"VT_RECORD", VT_RECORD, nullptr, DISP_E_BADVARTYPE},
        {"0x7FFF", 0x7FFF, nullptr, DISP_E_BADVARTYPE},
        {"VT_VECTOR|VT_I4", VT_VECTOR | VT_I4, nullptr, DISP_E_BADVARTYPE},
    };
    for (const Row& row : rows) {
        VARIANT arguments[2];
        V_VT(&arguments[0]) = row.type;
        V_BYREF(&arguments[0]) = row.reference;
        arguments[1] = fourI4;
        DISPPARAMS parameters{arguments, nullptr, 2, 0};
        Variant result;
        EXCEPINFO exception{};
        UINT argumentError = 99;
        PlantErrorInfo();
        EXPECT_EQ(files->Invoke(IdOf(files.get(), L"FormatSize"), IID_NULL, 0, DISPATCH_METHOD, &parameters, &result,
                                &exception, &argumentError),
                  row.expected)
            << row.what;
        EXPECT_EQ(argumentError, 0u) << row.what;
        EXPECT_FALSE(ErrorInfoLeft()) << row.what;
    }
    SafeArrayDestroy(numbers);
}

TEST(HostileInvoke, CountsThatPromiseMoreThanThePointersHold) {
    Ref<IDispatch> files = CreateByProgId(L"Orbex.FileLib");
    ASSERT_NE(files.get(), nullptr);
    VARIANT one = Long(1);
    DISPID named[] = {0};
    const struct {
        const char* what;
        DISPPARAMS parameters;
    } rows[] = {
        {"arguments counted, none given", {nullptr, nullptr, 2, 0}},
        {"more named than arguments", {&one, named, 1, 2}},
        {"named counted, none given", {&one, nullptr, 1, 1}},
    };
    for (const auto& row : rows) {
        DISPPARAMS parameters = row.parameters;
        Variant result;
        PlantErrorInfo();
        EXPECT_EQ(files->Invoke(IdOf(files.get(), L"FormatSize"), IID_NULL, 0, DISPATCH_METHOD, &parameters, &result,
                                nullptr, nullptr),
                  E_INVALIDARG)
            << row.what;
        EXPECT_FALSE(ErrorInfoLeft()) << row.what;
    }
}

// An array's count comes from its descriptor: with a lower bound at the end of the LONG range,
// upper - lower + 1 does not fit, and an empty array was read as four billion elements.
TEST(HostileInvoke, ArraysAtTheEndsOfTheLongRange) {
    SAFEARRAYBOUND bound{0, LONG_MIN};
    Variant texts, values;
    V_VT(&texts) = VT_ARRAY | VT_BSTR;
    V_ARRAY(&texts) = SafeArrayCreate(VT_BSTR, 1, &bound);
    V_VT(&values) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&values) = SafeArrayCreate(VT_VARIANT, 1, &bound);
    ASSERT_TRUE(V_ARRAY(&texts) && V_ARRAY(&values));

    // The default of a value that is not there comes back as given.
    Ref<IDispatch> registry = CreateByProgId(L"Orbex.RegLib");
    ASSERT_NE(registry.get(), nullptr);
    Variant user, value;
    ASSERT_EQ(Call(registry.get(), L"CurrentUser", DISPATCH_PROPERTYGET, {}, &user), S_OK);
    ASSERT_EQ(Call(V_DISPATCH(&user), L"GetValue", DISPATCH_METHOD, {Bstr(L"no value of this name"), ByRef(&texts)},
                   &value),
              S_OK);
    ASSERT_EQ(V_VT(&value), VT_ARRAY | VT_BSTR);
    LONG lower = 0;
    SafeArrayGetLBound(V_ARRAY(&value), 1, &lower);
    EXPECT_EQ(lower, LONG_MIN);
    EXPECT_EQ(V_ARRAY(&value)->rgsabound[0].cElements, 0u);

    // A Variant() array converted for a String() parameter: WriteSection refuses its bound (6).
    Ref<IDispatch> ini = CreateByProgId(L"Orbex.INILib");
    ASSERT_NE(ini.get(), nullptr);
    Variant ignored;
    EXCEPINFO exception{};
    EXPECT_EQ(Call(ini.get(), L"WriteSection", DISPATCH_METHOD,
                   {Bstr(L"Section"), ByRef(&values), Bstr(L"C:\\orbex-bounds.ini")}, &ignored, &exception),
              DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, static_cast<SCODE>(0x800A0006));
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
}

// A failure that is not the member's own still arrives with Source and Description.
TEST(HostileInvoke, OutOfMemoryCarriesItsDescription) {
    if (sizeof(void*) != 4) GTEST_SKIP() << "a 64-bit process may well have the memory";
    Ref<IDispatch> ini = CreateByProgId(L"Orbex.INILib");
    ASSERT_NE(ini.get(), nullptr);
    Variant size;
    V_VT(&size) = VT_I4;
    V_I4(&size) = 0x7FFFFFFF;
    Variant ignored;
    ASSERT_EQ(Call(ini.get(), L"BufferSize", DISPATCH_PROPERTYPUT, {ByRef(&size)}, &ignored), S_OK);
    Variant names;
    EXCEPINFO exception{};
    PlantErrorInfo();
    EXPECT_EQ(Call(ini.get(), L"GetSectionNames", DISPATCH_METHOD, {Bstr(L"C:\\none.ini")}, &names, &exception),
              DISP_E_EXCEPTION);
    EXPECT_TRUE(exception.scode == E_OUTOFMEMORY || exception.scode == E_UNEXPECTED);
    EXPECT_EQ(Text(exception.bstrSource), L"Orbex");
    EXPECT_NE(Text(exception.bstrDescription), L"an earlier call's");
    EXPECT_FALSE(Text(exception.bstrDescription).empty());
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
}

}  // namespace
}  // namespace orbex::client
