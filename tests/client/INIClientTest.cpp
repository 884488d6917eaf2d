// INI files as a C++ client meets them: String() lists with their bounds, arrays and defaults
// passed by reference, and a failure with Number 0, through the vtable and through IDispatch.
#include "ClientSupport.h"

#include <string>

namespace orbex::client {
namespace {

constexpr HRESULT kNumberZero = static_cast<HRESULT>(0x800A0000);
constexpr HRESULT kSubscriptOutOfRange = static_cast<HRESULT>(0x800A0009);

// A String() array's bounds and elements as one text, "lower to upper: a, b"; the array is destroyed.
std::wstring Take(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    LONG lower = 0, upper = 0;
    SafeArrayGetVartype(array, &type);
    EXPECT_EQ(type, VT_BSTR);
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    std::wstring text = std::to_wstring(lower) + L" to " + std::to_wstring(upper) + L":";
    BSTR* data = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
    for (LONG i = 0; i <= upper - lower; ++i) text += (i ? L", " : L" ") + Text(data[i]);
    SafeArrayUnaccessData(array);
    SafeArrayDestroy(array);
    return text;
}

class INIClient : public ::testing::Test {
protected:
    void SetUp() override {
        wchar_t temp[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, temp);
        file_ = SysAllocString((std::wstring(temp) + L"OrbexClient" + std::to_wstring(GetCurrentProcessId()) + L".ini").c_str());
        ASSERT_EQ(CoCreateInstance(CLSID_INILib, nullptr, CLSCTX_INPROC_SERVER, IID__INILib,
                                   reinterpret_cast<void**>(ini_.put())), S_OK);
        ASSERT_EQ(ini_->put_Filename(file_), S_OK);
    }
    void TearDown() override {
        DeleteFileW(file_);
        for (BSTR text : {file_, none_, section_}) SysFreeString(text);
    }

    // GetSectionNames, GetSectionKeys and GetSection of section s, in that order.
    std::wstring Lists() {
        SAFEARRAY *names = nullptr, *keys = nullptr, *lines = nullptr;
        EXPECT_EQ(ini_->GetSectionNames(none_, &names), S_OK);
        EXPECT_EQ(ini_->GetSectionKeys(section_, none_, &keys), S_OK);
        EXPECT_EQ(ini_->GetSection(section_, none_, &lines), S_OK);
        return Take(names) + L" / " + Take(keys) + L" / " + Take(lines);
    }

    BSTR file_ = nullptr;
    Ref<_INILib> ini_;
    BSTR none_ = SysAllocString(L"");
    BSTR section_ = SysAllocString(L"s");
};

// Empty lists are String() arrays of 0 to -1. WriteSection takes an array of any lower bound by
// reference and leaves it as it was; an array variable without storage is out of range.
TEST_F(INIClient, ListsAndWriteSectionThroughTheVtable) {
    EXPECT_EQ(Lists(), L"0 to -1: / 0 to -1: / 0 to -1:");

    SAFEARRAYBOUND bound{2, 2};
    SAFEARRAY* lines = SafeArrayCreate(VT_BSTR, 1, &bound);
    BSTR* data = nullptr;
    SafeArrayAccessData(lines, reinterpret_cast<void**>(&data));
    data[0] = SysAllocString(L"a=1");
    data[1] = SysAllocString(L"b=two");
    SafeArrayUnaccessData(lines);
    SAFEARRAY* passed = lines;
    ASSERT_EQ(ini_->WriteSection(section_, &passed, none_), S_OK);
    EXPECT_EQ(passed, lines);
    EXPECT_EQ(Take(lines), L"2 to 3: a=1, b=two");
    const std::wstring written = L"0 to 0: s / 0 to 1: a, b / 0 to 1: a=1, b=two";
    EXPECT_EQ(Lists(), written);

    SAFEARRAY* nothing = nullptr;
    EXPECT_EQ(ini_->WriteSection(section_, &nothing, none_), kSubscriptOutOfRange);
    EXPECT_EQ(Lists(), written);

    // Cut by the buffer, the lines keep an empty last item.
    LONG size = 7;
    ASSERT_EQ(ini_->put_BufferSize(&size), S_OK);
    EXPECT_EQ(Lists(), L"0 to 0: s / 0 to 1: a, b / 0 to 1: a=1, ");
}

// A script's Array(...) passed by reference is taken as a String() array and left in the
// variable as it was; Default comes back into the caller's variable as it crossed the code page.
TEST_F(INIClient, ScriptVariablesThroughIDispatch) {
    Variant lines, ignored, section, read, key, fallback, value;
    SAFEARRAYBOUND bound{2, 0};
    V_VT(&lines) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&lines) = SafeArrayCreate(VT_VARIANT, 1, &bound);
    VARIANT* data = nullptr;
    SafeArrayAccessData(V_ARRAY(&lines), reinterpret_cast<void**>(&data));
    data[0] = Bstr(L"k=v");
    data[1] = Bstr(L"n=7");
    SafeArrayUnaccessData(V_ARRAY(&lines));
    static_cast<VARIANT&>(section) = Bstr(L"script");
    ASSERT_EQ(Call(ini_.get(), L"WriteSection", DISPATCH_METHOD, {section, ByRef(&lines)}, &ignored), S_OK);
    EXPECT_EQ(V_VT(&lines), VT_ARRAY | VT_VARIANT);
    ASSERT_EQ(Call(ini_.get(), L"GetSection", DISPATCH_METHOD, {section}, &read), S_OK);
    ASSERT_EQ(V_VT(&read), VT_ARRAY | VT_BSTR);
    EXPECT_EQ(Take(V_ARRAY(&read)), L"0 to 1: k=v, n=7");
    V_VT(&read) = VT_EMPTY;

    static_cast<VARIANT&>(key) = Bstr(L"missing");
    static_cast<VARIANT&>(fallback) = Bstr(L"x\u4E2D");
    ASSERT_EQ(Call(ini_.get(), L"GetStringValue", DISPATCH_METHOD, {section, key, ByRef(&fallback)}, &value), S_OK);
    ASSERT_EQ(V_VT(&fallback), VT_BSTR);
    EXPECT_EQ(Text(V_BSTR(&fallback)), L"x?");
    EXPECT_EQ(Text(V_BSTR(&value)), L"x?");
}

// A failure reaches the vtable as 0x800A0000 and IDispatch's caller with Source and Description.
TEST_F(INIClient, FailureCarriesNumberZeroWithSourceAndDescription) {
    Variant minusOne, key, value;
    static_cast<VARIANT&>(minusOne) = Long(-1);
    static_cast<VARIANT&>(key) = Bstr(L"k");
    ASSERT_EQ(ini_->WriteValue(section_, V_BSTR(&key), minusOne, none_), S_OK);
    LONG defaultValue = 0, result = 5;
    EXPECT_EQ(ini_->GetNumericValue(section_, V_BSTR(&key), &defaultValue, none_, &result), kNumberZero);
    EXPECT_EQ(result, 0);

    EXCEPINFO exception{};
    VARIANT section{};
    V_VT(&section) = VT_BSTR, V_BSTR(&section) = section_;
    EXPECT_EQ(Call(ini_.get(), L"GetNumericValue", DISPATCH_METHOD, {section, key}, &value, &exception),
              DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, kNumberZero);
    EXPECT_EQ(Text(exception.bstrSource), L"INILib:GetNumericValue");
    EXPECT_EQ(Text(exception.bstrDescription), L"Error retrieving INI value.");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
}

}  // namespace
}  // namespace orbex::client
