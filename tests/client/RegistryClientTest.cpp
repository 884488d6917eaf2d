// The registry as a C++ client meets it: array bounds, Variant subtypes, failures with their
// three fields, through the vtable and through IDispatch.
#include "ClientSupport.h"

#include <string>

namespace orbex::client {
namespace {

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80040067);

struct ErrorFields {
    std::wstring source, description;
};

ErrorFields ThreadError() {
    ErrorFields fields;
    Ref<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK && info.get()) {
        BSTR text = nullptr;
        info->GetSource(&text);
        fields.source = Text(text);
        SysFreeString(text);
        info->GetDescription(&text);
        fields.description = Text(text);
        SysFreeString(text);
    }
    return fields;
}

struct Bounds {
    LONG lower, upper;
};

Bounds BoundsOf(SAFEARRAY* array) {
    Bounds bounds{0, 0};
    SafeArrayGetLBound(array, 1, &bounds.lower);
    SafeArrayGetUBound(array, 1, &bounds.upper);
    return bounds;
}

class RegistryClient : public ::testing::Test {
protected:
    void SetUp() override {
        Ref<_RegLib> reg;
        ASSERT_EQ(CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib,
                                   reinterpret_cast<void**>(reg.put())), S_OK);
        BSTR none = SysAllocString(L"");
        ASSERT_EQ(reg->get_CurrentUser(none, root_.put()), S_OK);
        SysFreeString(none);
        BSTR path = SysAllocString(kPath);
        ASSERT_EQ(root_->CreateSubKey(path, key_.put()), S_OK);
        SysFreeString(path);
        ASSERT_NE(key_.get(), nullptr);
    }
    void TearDown() override {
        key_.put();
        BSTR path = SysAllocString(kPath);
        root_->DeleteSubKeyTree(path, VARIANT_FALSE);
        SysFreeString(path);
    }

    void Set(const wchar_t* name, VARIANT value, vqRegValueType type) {
        BSTR text = SysAllocString(name);
        ASSERT_EQ(key_->SetValue(text, value, type), S_OK);
        SysFreeString(text);
    }

    static constexpr const wchar_t* kPath = L"Software\\OrbexClientTest";
    Ref<_RegistryKey> root_, key_;
};

TEST_F(RegistryClient, NameListsHaveTheirBounds) {
    SAFEARRAY* names = nullptr;
    ASSERT_EQ(key_->GetSubKeyNames(&names), S_OK);
    VARTYPE type = VT_EMPTY;
    SafeArrayGetVartype(names, &type);
    EXPECT_EQ(type, VT_BSTR);
    EXPECT_EQ(BoundsOf(names).lower, -1);
    EXPECT_EQ(BoundsOf(names).upper, -1);
    SafeArrayDestroy(names);

    for (const wchar_t* child : {L"a", L"b"}) {
        Ref<_RegistryKey> created;
        BSTR text = SysAllocString(child);
        ASSERT_EQ(key_->CreateSubKey(text, created.put()), S_OK);
        SysFreeString(text);
    }
    ASSERT_EQ(key_->GetSubKeyNames(&names), S_OK);
    EXPECT_EQ(BoundsOf(names).lower, 0);
    EXPECT_EQ(BoundsOf(names).upper, 1);
    SafeArrayDestroy(names);
}

TEST_F(RegistryClient, ValuesComeBackWithTheirSubtypes) {
    SAFEARRAYBOUND bound{3, 3};
    SAFEARRAY* bytes = SafeArrayCreate(VT_UI1, 1, &bound);
    Variant binary;
    V_VT(&binary) = VT_ARRAY | VT_UI1;
    V_ARRAY(&binary) = bytes;
    Set(L"bin", binary, vqBinary);
    Variant number;
    V_VT(&number) = VT_I4, V_I4(&number) = -1;
    Set(L"dword", number, vqDWORD);
    Set(L"qword", number, vqQWORD);
    Variant text = {};
    V_VT(&text) = VT_BSTR, V_BSTR(&text) = SysAllocString(L"x");
    Set(L"none", text, static_cast<vqRegValueType>(5));
    SAFEARRAYBOUND two{2, 0};
    Variant lines;
    V_VT(&lines) = VT_ARRAY | VT_BSTR;
    V_ARRAY(&lines) = SafeArrayCreate(VT_BSTR, 1, &two);
    Set(L"multi", lines, vqMultiString);

    const struct {
        const wchar_t* name;
        VARTYPE type;
        LONG dataType;
    } rows[] = {
        {L"bin", VT_ARRAY | VT_UI1, 3}, {L"dword", VT_I4, 4}, {L"qword", VT_CY, 11},
        {L"none", VT_EMPTY, 5},         {L"missing", VT_BSTR, 0},   {L"multi", VT_ARRAY | VT_BSTR, 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << std::string(row.name, row.name + wcslen(row.name)));
        BSTR name = SysAllocString(row.name);
        Variant missing;
        V_VT(&missing) = VT_ERROR, V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
        Variant value;
        LONG dataType = 99;
        ASSERT_EQ(key_->GetValueEx(name, &dataType, missing, VARIANT_FALSE, &value), S_OK);
        SysFreeString(name);
        EXPECT_EQ(V_VT(&value), row.type);
        EXPECT_EQ(dataType, row.dataType);
        if (row.type == (VT_ARRAY | VT_BSTR)) {
            EXPECT_EQ(BoundsOf(V_ARRAY(&value)).lower, 0);
            EXPECT_EQ(BoundsOf(V_ARRAY(&value)).upper, 1) << "two empty strings";
        }
        if (row.type == (VT_ARRAY | VT_UI1)) {
            EXPECT_EQ(BoundsOf(V_ARRAY(&value)).lower, 0);
            EXPECT_EQ(BoundsOf(V_ARRAY(&value)).upper, 2);
        }
        if (row.type == VT_CY) {
            EXPECT_EQ(V_CY(&value).int64, -10000);
        }
    }
}

TEST_F(RegistryClient, FailureArrivesWithItsThreeFieldsThroughTheVtable) {
    BSTR tooLong = SysAllocString(std::wstring(256, L'k').c_str());
    Ref<_RegistryKey> opened;
    EXPECT_EQ(key_->OpenSubKey(tooLong, VARIANT_FALSE, opened.put()), kInvalidArgument);
    SysFreeString(tooLong);
    EXPECT_EQ(opened.get(), nullptr);
    Ref<ISupportErrorInfo> support;
    ASSERT_EQ(key_->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(support.put())), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__RegistryKey), S_OK);
    const ErrorFields fields = ThreadError();
    EXPECT_EQ(fields.source, L"OpenSubKey");
    EXPECT_EQ(fields.description, L"The length of the specified subkey is greater than 255 characters.");
}

TEST_F(RegistryClient, FailuresArriveInExcepInfoThroughIDispatch) {
    const struct {
        const wchar_t* member;
        HRESULT scode;
        const wchar_t* source;
        const wchar_t* description;
    } rows[] = {
        {L"OpenSubKey", kInvalidArgument, L"OpenSubKey",
         L"The length of the specified subkey is greater than 255 characters."},
        {L"SetValue", static_cast<HRESULT>(0x800A005E), L"Orbex", L"Invalid use of Null"},
    };
    for (const auto& row : rows) {
        Variant name, value, result;
        V_VT(&name) = VT_BSTR;
        V_BSTR(&name) = SysAllocString(std::wstring(row.member[0] == L'O' ? 256 : 3, L'k').c_str());
        V_VT(&value) = VT_NULL;
        EXCEPINFO exception{};
        const HRESULT hr = row.member[0] == L'O'
                               ? Call(key_.get(), row.member, DISPATCH_METHOD, {name}, &result, &exception)
                               : Call(key_.get(), row.member, DISPATCH_METHOD, {name, value}, &result, &exception);
        EXPECT_EQ(hr, DISP_E_EXCEPTION);
        EXPECT_EQ(exception.scode, row.scode);
        EXPECT_EQ(Text(exception.bstrSource), row.source);
        EXPECT_EQ(Text(exception.bstrDescription), row.description);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
    }
}

TEST_F(RegistryClient, DispatchAppliesDefaultsAndWritesBackByReference) {
    Variant opened;
    ASSERT_EQ(Call(key_.get(), L"OpenSubKey", DISPATCH_METHOD, {}, &opened), S_OK);
    ASSERT_EQ(V_VT(&opened), VT_DISPATCH);
    Variant name;
    ASSERT_EQ(Call(V_DISPATCH(&opened), L"Name", DISPATCH_PROPERTYGET, {}, &name), S_OK);
    EXPECT_EQ(Text(V_BSTR(&name)), std::wstring(L"HKEY_CURRENT_USER\\") + kPath + L"\\");

    Variant valueName, data, ignored;
    V_VT(&valueName) = VT_BSTR, V_BSTR(&valueName) = SysAllocString(L"v");
    V_VT(&data) = VT_BSTR, V_BSTR(&data) = SysAllocString(L"%PATH%");
    Variant expanded;
    V_VT(&expanded) = VT_I4, V_I4(&expanded) = 2;
    ASSERT_EQ(Call(key_.get(), L"SetValue", DISPATCH_METHOD, {valueName, data, expanded}, &ignored), S_OK);

    // A script's variable arrives by reference and receives the type; the omitted default
    // and ExpandVariables (True) are filled in from the type library.
    Variant dataType, read;
    ASSERT_EQ(Call(key_.get(), L"GetValueEx", DISPATCH_METHOD, {valueName, ByRef(&dataType)}, &read), S_OK);
    EXPECT_EQ(V_VT(&dataType), VT_I4);
    EXPECT_EQ(V_I4(&dataType), 2);
    ASSERT_EQ(V_VT(&read), VT_BSTR);
    EXPECT_NE(Text(V_BSTR(&read)), L"%PATH%");

    Variant missing, fallback;
    V_VT(&missing) = VT_BSTR, V_BSTR(&missing) = SysAllocString(L"nothing here");
    ASSERT_EQ(Call(key_.get(), L"GetValue", DISPATCH_METHOD, {missing}, &fallback), S_OK);
    ASSERT_EQ(V_VT(&fallback), VT_BSTR);
    EXPECT_EQ(Text(V_BSTR(&fallback)), L"");
}

TEST_F(RegistryClient, DispatchRefusesWhatCannotBeConverted) {
    Variant array, result;
    SAFEARRAYBOUND bound{1, 0};
    V_VT(&array) = VT_ARRAY | VT_I4;
    V_ARRAY(&array) = SafeArrayCreate(VT_I4, 1, &bound);
    EXPECT_EQ(Call(key_.get(), L"OpenSubKey", DISPATCH_METHOD, {array}, &result), DISP_E_TYPEMISMATCH);
    Variant a, b, c;
    V_VT(&a) = V_VT(&b) = V_VT(&c) = VT_I4;
    EXPECT_EQ(Call(key_.get(), L"OpenSubKey", DISPATCH_METHOD, {a, b, c}, &result), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(key_.get(), L"NoSuchMember", DISPATCH_METHOD, {}, &result), DISP_E_UNKNOWNNAME);
}

}  // namespace
}  // namespace orbex::client
