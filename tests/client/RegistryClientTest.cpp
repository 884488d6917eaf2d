// The registry as a C++ client meets it: array bounds, Variant subtypes, failures with their
// three fields, through the vtable and through IDispatch.
#include "ClientSupport.h"

#include <string>

namespace orbex::client {
namespace {

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80040067);
const std::wstring kTooLongText = L"The length of the specified subkey is greater than 255 characters.";

struct Name {
    BSTR text;
    explicit Name(const std::wstring& value) : text(SysAllocStringLen(value.data(), static_cast<UINT>(value.size()))) {}
    ~Name() { SysFreeString(text); }
    operator BSTR() const { return text; }
};

std::pair<LONG, LONG> BoundsOf(SAFEARRAY* array) {
    std::pair<LONG, LONG> bounds{0, 0};
    SafeArrayGetLBound(array, 1, &bounds.first);
    SafeArrayGetUBound(array, 1, &bounds.second);
    return bounds;
}

class RegistryClient : public ::testing::Test {
protected:
    void SetUp() override {
        Ref<_RegLib> reg;
        ASSERT_EQ(CoCreateInstance(CLSID_RegLib, nullptr, CLSCTX_INPROC_SERVER, IID__RegLib,
                                   reinterpret_cast<void**>(reg.put())), S_OK);
        ASSERT_EQ(reg->get_CurrentUser(Name(L""), root_.put()), S_OK);
        ASSERT_EQ(root_->CreateSubKey(Name(kPath), key_.put()), S_OK);
        ASSERT_NE(key_.get(), nullptr);
    }
    void TearDown() override {
        key_.put();
        root_->DeleteSubKeyTree(Name(kPath), VARIANT_FALSE);
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
    EXPECT_EQ(BoundsOf(names), std::make_pair(-1L, -1L));
    SafeArrayDestroy(names);
    for (const wchar_t* child : {L"a", L"b"}) {
        Ref<_RegistryKey> created;
        ASSERT_EQ(key_->CreateSubKey(Name(child), created.put()), S_OK);
    }
    ASSERT_EQ(key_->GetSubKeyNames(&names), S_OK);
    EXPECT_EQ(BoundsOf(names), std::make_pair(0L, 1L));
    SafeArrayDestroy(names);
}

TEST_F(RegistryClient, ValuesComeBackWithTheirSubtypes) {
    SAFEARRAYBOUND three{3, 3}, two{2, 0};
    Variant binary, number, text, lines;
    V_VT(&binary) = VT_ARRAY | VT_UI1, V_ARRAY(&binary) = SafeArrayCreate(VT_UI1, 1, &three);
    V_VT(&number) = VT_I4, V_I4(&number) = -1;
    V_VT(&text) = VT_BSTR, V_BSTR(&text) = SysAllocString(L"x");
    V_VT(&lines) = VT_ARRAY | VT_BSTR, V_ARRAY(&lines) = SafeArrayCreate(VT_BSTR, 1, &two);
    const struct {
        const wchar_t* name;
        const VARIANT* value;
        LONG dataType;
        VARTYPE type;
        std::pair<LONG, LONG> bounds;  // for arrays
    } rows[] = {
        {L"bin", &binary, 3, VT_ARRAY | VT_UI1, {0, 2}},
        {L"dword", &number, 4, VT_I4, {}},
        {L"qword", &number, 11, VT_CY, {}},
        {L"none", &text, 5, VT_EMPTY, {}},
        {L"multi", &lines, 7, VT_ARRAY | VT_BSTR, {0, 1}},  // two empty strings
        {L"missing", nullptr, 0, VT_BSTR, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.dataType);
        if (row.value) {
            ASSERT_EQ(key_->SetValue(Name(row.name), *row.value, static_cast<vqRegValueType>(row.dataType)), S_OK);
        }
        Variant missing, value;
        V_VT(&missing) = VT_ERROR, V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
        LONG dataType = 99;
        ASSERT_EQ(key_->GetValueEx(Name(row.name), &dataType, missing, VARIANT_FALSE, &value), S_OK);
        EXPECT_EQ(V_VT(&value), row.type);
        EXPECT_EQ(dataType, row.dataType);
        if (row.type & VT_ARRAY) {
            EXPECT_EQ(BoundsOf(V_ARRAY(&value)), row.bounds);
        }
        if (row.type == VT_CY) {
            EXPECT_EQ(V_CY(&value).int64, -10000);
        }
    }
}

TEST_F(RegistryClient, FailuresArriveWithTheirThreeFields) {
    Ref<_RegistryKey> opened;
    EXPECT_EQ(key_->OpenSubKey(Name(std::wstring(256, L'k')), VARIANT_FALSE, opened.put()), kInvalidArgument);
    EXPECT_EQ(opened.get(), nullptr);
    Ref<ISupportErrorInfo> support;
    ASSERT_EQ(key_->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(support.put())), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__RegistryKey), S_OK);
    Ref<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.put()), S_OK);
    BSTR source = nullptr, description = nullptr;
    info->GetSource(&source);
    info->GetDescription(&description);
    EXPECT_EQ(Text(source), L"OpenSubKey");
    EXPECT_EQ(Text(description), kTooLongText);
    SysFreeString(source);
    SysFreeString(description);

    const struct {
        const wchar_t* member;
        HRESULT scode;
        const wchar_t* source;
        std::wstring description;
    } rows[] = {
        {L"OpenSubKey", kInvalidArgument, L"OpenSubKey", kTooLongText},
        {L"SetValue", static_cast<HRESULT>(0x800A005E), L"Orbex", L"Invalid use of Null"},
    };
    for (const auto& row : rows) {
        Variant name, value, result;
        name.vt = VT_BSTR;
        V_BSTR(&name) = SysAllocString(std::wstring(row.scode == kInvalidArgument ? 256 : 3, L'k').c_str());
        V_VT(&value) = VT_NULL;
        EXCEPINFO exception{};
        const HRESULT hr = row.scode == kInvalidArgument
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
    Variant opened, name;
    ASSERT_EQ(Call(key_.get(), L"OpenSubKey", DISPATCH_METHOD, {}, &opened), S_OK);
    ASSERT_EQ(V_VT(&opened), VT_DISPATCH);
    ASSERT_EQ(Call(V_DISPATCH(&opened), L"Name", DISPATCH_PROPERTYGET, {}, &name), S_OK);
    EXPECT_EQ(Text(V_BSTR(&name)), std::wstring(L"HKEY_CURRENT_USER\\") + kPath + L"\\");

    Variant valueName, data, expanded, ignored;
    valueName.vt = data.vt = VT_BSTR;
    V_BSTR(&valueName) = SysAllocString(L"v");
    V_BSTR(&data) = SysAllocString(L"%PATH%");
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

}  // namespace
}  // namespace orbex::client
