// Orbex from C++ through IDispatch, late bound by ProgID and member name, the way script hosts
// and other dynamic clients call it. Optional arguments may be left out here: Invoke fills in
// the type library's defaults.
#include "OrbexClient.h"

#include <algorithm>
#include <initializer_list>

namespace {

// Calls a member by name. The arguments come in the caller's order; Invoke wants them reversed.
// A failure of the member returns DISP_E_EXCEPTION and fills *exception when the caller asks
// for it; otherwise its strings are freed here.
HRESULT Call(IDispatch* object, const wchar_t* member, WORD flags, std::initializer_list<VARIANT> arguments,
             VARIANT* result, EXCEPINFO* exception = nullptr) {
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(member)};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) return hr;
    std::vector<VARIANT> reversed(arguments.begin(), arguments.end());
    std::reverse(reversed.begin(), reversed.end());
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (flags & DISPATCH_PROPERTYPUT) {  // a property write names its value argument
        parameters.rgdispidNamedArgs = &putId;
        parameters.cNamedArgs = 1;
    }
    UINT argumentError = 0;
    EXCEPINFO failure{};
    hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, &failure, &argumentError);
    if (exception) {
        *exception = failure;
    } else {
        SysFreeString(failure.bstrSource);
        SysFreeString(failure.bstrDescription);
        SysFreeString(failure.bstrHelpFile);
    }
    return hr;
}

// What a member's failure carries, from EXCEPINFO; the strings are freed here.
void PrintException(const char* member, HRESULT hr, EXCEPINFO& exception) {
    if (hr == DISP_E_EXCEPTION)
        std::printf("%s failed: Number %ld, Source \"%ls\", Description \"%ls\"\n", member,
                    ErrorNumber(exception.scode), exception.bstrSource ? exception.bstrSource : L"",
                    exception.bstrDescription ? exception.bstrDescription : L"");
    else
        std::printf("%s failed: 0x%08lX\n", member, static_cast<unsigned long>(hr));
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    exception = EXCEPINFO{};
}

ComPtr<IDispatch> Create(const wchar_t* progId) {
    ComPtr<IDispatch> object;
    CLSID clsid;
    if (SUCCEEDED(CLSIDFromProgID(progId, &clsid)))
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object));
    return object;
}

// An object result, taken over from the VARIANT that carried it.
ComPtr<IDispatch> Object(Variant& result) {
    ComPtr<IDispatch> object;
    if (V_VT(&result) == VT_DISPATCH) object = V_DISPATCH(&result);
    return object;
}

constexpr WORD kGet = DISPATCH_PROPERTYGET | DISPATCH_METHOD;  // what script hosts pass

}  // namespace

int main() {
    Apartment com;
    if (FAILED(com.hr)) return 1;
    ComPtr<IDispatch> reg = Create(L"Orbex.RegLib");
    if (!reg) {
        std::printf("Orbex.RegLib is not registered for this bitness\n");
        return 1;
    }

    // CurrentUser's MachineName is optional: no arguments at all.
    Variant result;
    Call(reg.Get(), L"CurrentUser", kGet, {}, result.out());
    ComPtr<IDispatch> user = Object(result);
    Variant path(L"Software\\OrbexExamples\\Dispatch");
    Call(user.Get(), L"CreateSubKey", DISPATCH_METHOD, {path}, result.out());
    ComPtr<IDispatch> settings = Object(result);
    if (!user || !settings) return 1;

    Variant greeting(L"Greeting"), hello(L"Hello"), count(L"Count"), number(42L), dword(static_cast<LONG>(vqDWORD));
    Call(settings.Get(), L"SetValue", DISPATCH_METHOD, {greeting, hello}, nullptr);
    Call(settings.Get(), L"SetValue", DISPATCH_METHOD, {count, number, dword}, nullptr);
    Call(settings.Get(), L"GetValue", kGet, {greeting}, result.out());
    std::printf("Greeting: %ls (VARIANT type %u)\n", V_VT(&result) == VT_BSTR ? V_BSTR(&result) : L"?",
                static_cast<unsigned>(V_VT(&result)));
    Call(settings.Get(), L"ValueCount", kGet, {}, result.out());
    std::printf("ValueCount: %ld\n", V_VT(&result) == VT_I4 ? V_I4(&result) : -1L);

    // A String() result arrives as VT_ARRAY | VT_BSTR in the result VARIANT.
    Call(settings.Get(), L"GetValueNames", DISPATCH_METHOD, {}, result.out());
    if (V_VT(&result) == (VT_ARRAY | VT_BSTR)) {
        std::printf("Value names:");
        for (const std::wstring& n : Strings(V_ARRAY(&result))) std::printf(" %ls", n.c_str());
        std::printf("\n");
    }

    // A failure: DISP_E_EXCEPTION, with Number (in scode), Source and Description in EXCEPINFO.
    Variant missing(L"Software\\OrbexExamples\\NoSuchKey");
    Variant yes;
    V_VT(&yes) = VT_BOOL;
    V_BOOL(&yes) = VARIANT_TRUE;
    EXCEPINFO exception{};
    HRESULT hr = Call(user.Get(), L"DeleteSubKey", DISPATCH_METHOD, {missing, yes}, nullptr, &exception);
    if (FAILED(hr)) PrintException("DeleteSubKey", hr, exception);

    // A property write, and a failure with a platform code.
    ComPtr<IDispatch> files = Create(L"Orbex.FileLib");
    if (!files) return 1;
    Variant folder(L"C:\\No\\Such\\Folder");
    hr = Call(files.Get(), L"CurrentFolder", DISPATCH_PROPERTYPUT, {folder}, nullptr, &exception);
    if (FAILED(hr)) PrintException("CurrentFolder", hr, exception);

    // Members that take an argument hand out objects too: a DiskInfo for a root.
    Variant root(L"C:\\");
    Call(files.Get(), L"DiskInfo", kGet, {root}, result.out());
    ComPtr<IDispatch> disk = Object(result);
    if (disk && SUCCEEDED(Call(disk.Get(), L"RootName", kGet, {}, result.out())) && V_VT(&result) == VT_BSTR)
        std::printf("DiskInfo: %ls\n", V_BSTR(&result));

    settings.Reset();
    Call(user.Get(), L"DeleteSubKeyTree", DISPATCH_METHOD, {path}, nullptr);
    Variant examples(L"Software\\OrbexExamples");
    Call(user.Get(), L"OpenSubKey", DISPATCH_METHOD, {examples}, result.out());
    ComPtr<IDispatch> parent = Object(result);
    LONG left = -1;
    if (parent && SUCCEEDED(Call(parent.Get(), L"SubKeyCount", kGet, {}, result.out())) &&
        V_VT(&result) == VT_I4)
        left = V_I4(&result);
    parent.Reset();
    if (left == 0) Call(user.Get(), L"DeleteSubKey", DISPATCH_METHOD, {examples}, nullptr);
    std::printf("Done.\n");
    return 0;
}
