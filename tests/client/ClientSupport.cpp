#include "ClientSupport.h"

#include <vector>

namespace orbex::client {

Ref<IDispatch> CreateByProgId(const wchar_t* progId) {
    Ref<IDispatch> object;
    CLSID clsid;
    if (SUCCEEDED(CLSIDFromProgID(progId, &clsid)))
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(object.put()));
    return object;
}

HRESULT Call(IDispatch* object, const wchar_t* name, WORD flags, std::initializer_list<VARIANT> arguments,
             VARIANT* result, EXCEPINFO* exception) {
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) return hr;
    std::vector<VARIANT> reversed(arguments.begin(), arguments.end());
    std::reverse(reversed.begin(), reversed.end());
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        parameters.rgdispidNamedArgs = &putId;
        parameters.cNamedArgs = 1;
    }
    EXCEPINFO ignored{};
    UINT argumentError = 0;
    hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                        exception ? exception : &ignored, &argumentError);
    if (!exception) {
        SysFreeString(ignored.bstrSource);
        SysFreeString(ignored.bstrDescription);
        SysFreeString(ignored.bstrHelpFile);
    }
    return hr;
}

VARIANT Bstr(const wchar_t* text) {
    VARIANT v;
    V_VT(&v) = VT_BSTR;
    V_BSTR(&v) = SysAllocString(text);
    return v;
}

VARIANT Long(LONG value) {
    VARIANT v;
    V_VT(&v) = VT_I4;
    V_I4(&v) = value;
    return v;
}

VARIANT Bool(bool value) {
    VARIANT v;
    V_VT(&v) = VT_BOOL;
    V_BOOL(&v) = value ? VARIANT_TRUE : VARIANT_FALSE;
    return v;
}

VARIANT ByRef(VARIANT* variable) {
    VARIANT v;
    V_VT(&v) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&v) = variable;
    return v;
}

}  // namespace orbex::client

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    CoInitialize(nullptr);
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
