// Small owners for what an Orbex client receives from COM, so that nothing leaks on any path:
// the apartment, BSTRs, VARIANTs and SAFEARRAYs. Interface pointers are held by WRL's ComPtr.
#pragma once
#include <windows.h>
#include <oleauto.h>
#include <wrl/client.h>

#include "Orbex_h.h"  // generated from the type library: interfaces, CLSIDs, IIDs, enumerations

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

using Microsoft::WRL::ComPtr;

// COM for the life of main: Orbex is apartment-threaded.
struct Apartment {
    HRESULT hr = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ~Apartment() { if (SUCCEEDED(hr)) CoUninitialize(); }
};

// An owned BSTR; converts to BSTR for [in] arguments, and out() receives a result.
class Bstr {
public:
    Bstr() = default;
    explicit Bstr(const wchar_t* text) : text_(SysAllocString(text)) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text_); }
    operator BSTR() const { return text_; }
    BSTR* out() { SysFreeString(text_); text_ = nullptr; return &text_; }
    std::wstring str() const { return text_ ? std::wstring(text_, SysStringLen(text_)) : std::wstring(); }
private:
    BSTR text_ = nullptr;
};

// An owned VARIANT.
struct Variant : VARIANT {
    Variant() { VariantInit(this); }
    explicit Variant(const wchar_t* text) { V_VT(this) = VT_BSTR; V_BSTR(this) = SysAllocString(text); }
    explicit Variant(LONG number) { V_VT(this) = VT_I4; V_I4(this) = number; }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(this); }
    VARIANT* out() { VariantClear(this); return this; }
};

// An optional VARIANT argument left out, as a script host leaves it out.
inline VARIANT Missing() {
    VARIANT v;
    V_VT(&v) = VT_ERROR;
    V_ERROR(&v) = DISP_E_PARAMNOTFOUND;
    return v;
}

// An owned SAFEARRAY, as Orbex returns them: String() and Byte() results.
class SafeArray {
public:
    SafeArray() = default;
    SafeArray(const SafeArray&) = delete;
    SafeArray& operator=(const SafeArray&) = delete;
    ~SafeArray() { if (array_) SafeArrayDestroy(array_); }
    SAFEARRAY** out() { if (array_) SafeArrayDestroy(array_); array_ = nullptr; return &array_; }
    SAFEARRAY* get() const { return array_; }
    SAFEARRAY* release() { SAFEARRAY* a = array_; array_ = nullptr; return a; }
private:
    SAFEARRAY* array_ = nullptr;
};

// The elements of a String() array. The registry's empty list is one "" at index -1: a lower
// bound below 0 means no names.
inline std::vector<std::wstring> Strings(SAFEARRAY* array) {
    std::vector<std::wstring> result;
    LONG lower = 0, upper = -1;
    if (!array || FAILED(SafeArrayGetLBound(array, 1, &lower)) || FAILED(SafeArrayGetUBound(array, 1, &upper)) ||
        lower < 0)
        return result;
    for (LONG i = lower; i <= upper; ++i) {
        Bstr item;
        if (SUCCEEDED(SafeArrayGetElement(array, &i, item.out()))) result.push_back(item.str());
    }
    return result;
}

// The elements of a Byte() array.
inline std::vector<unsigned char> Bytes(SAFEARRAY* array) {
    std::vector<unsigned char> result;
    void* data = nullptr;
    if (!array || FAILED(SafeArrayAccessData(array, &data))) return result;
    const auto* bytes = static_cast<const unsigned char*>(data);
    result.assign(bytes, bytes + array->rgsabound[0].cElements);
    SafeArrayUnaccessData(array);
    return result;
}

// The Number a script sees in Err.Number: the library's run-time numbers and platform codes
// travel in the low word of an HRESULT of the control facility (0x800A), INILib's 0 among them;
// the registry's numbers are HRESULTs themselves.
inline LONG ErrorNumber(HRESULT hr) {
    return HRESULT_FACILITY(hr) == 0x0A ? HRESULT_CODE(hr) : static_cast<LONG>(hr);
}

// Prints a failed call of the function table: the HRESULT, and Source and Description from the
// error object that the object left for this thread.
inline void PrintError(const char* call, HRESULT hr, IUnknown* object, REFIID iid) {
    std::printf("%s failed: Number %ld (HRESULT 0x%08lX)", call, ErrorNumber(hr), static_cast<unsigned long>(hr));
    ComPtr<ISupportErrorInfo> support;
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(&support))) &&
        support->InterfaceSupportsErrorInfo(iid) == S_OK && GetErrorInfo(0, &info) == S_OK) {
        Bstr source, description;
        info->GetSource(source.out());
        info->GetDescription(description.out());
        std::printf(", Source \"%ls\", Description \"%ls\"", source.str().c_str(), description.str().c_str());
    }
    std::printf("\n");
}
