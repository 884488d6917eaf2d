// The cost of one call from C++: Orbex's vtable and its IDispatch::Invoke, beside a bare pair of
// vtable calls into the same object and beside Wine's own Automation objects doing as little.
// The objects are made once here and held by the contenders, so that Main releases them with
// the cases, before CoUninitialize.
#include "Bench.h"
#include "Orbex_h.h"

#include <memory>

namespace bench {
namespace {

constexpr int kCalls = 1000000;

template <class T>
std::shared_ptr<T> Share(T* object) {
    return std::shared_ptr<T>(object, [](T* p) { if (p) p->Release(); });
}

template <class T>
std::shared_ptr<T> CreateOrbex(const CLSID& clsid, const IID& iid) {
    T* object = nullptr;
    CheckHr(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, reinterpret_cast<void**>(&object)),
            "creating an Orbex object");
    return Share(object);
}

std::wstring Text(BSTR text) { return text ? std::wstring(text, SysStringLen(text)) : std::wstring(); }

// Inside the timed loops: a message is built only when the call failed.
inline void Must(HRESULT hr, const char* what) {
    if (FAILED(hr)) CheckHr(hr, what);
}

// The least a call into the object can cost: two vtable calls that do almost nothing.
Contender AddRefRelease(std::shared_ptr<IUnknown> object) {
    return {"floor: IUnknown AddRef+Release pair", [object] {
                ULONG left = 0;
                for (int i = 0; i < kCalls; ++i) {
                    object->AddRef();
                    left = object->Release();
                }
                Check(left >= 1, "AddRef+Release: the object lost its reference");
            }};
}

// A member returning a BSTR, called through the vtable; every result is freed.
template <class Call>
Contender VtableCalls(Call call, std::wstring expected) {
    return {"Orbex vtable", [call, expected] {
                BSTR text = nullptr;
                for (int i = 0; i < kCalls; ++i) {
                    SysFreeString(text);
                    text = nullptr;
                    Must(call(&text), "Orbex vtable");
                }
                const bool right = Text(text) == expected;
                SysFreeString(text);
                Check(right, "Orbex vtable: a wrong result");
            }};
}

// A late-bound call by a dispid looked up once, as a client that caches it; `argument` may be null.
Contender InvokeCalls(std::string name, std::shared_ptr<IDispatch> object, const wchar_t* member, WORD flags,
                      std::shared_ptr<OLECHAR> argument, std::wstring expected) {
    const DISPID id = DispatchId(object.get(), member);
    return {name, [name, object, id, flags, argument, expected] {
                VARIANT value;
                V_VT(&value) = VT_BSTR;
                V_BSTR(&value) = argument.get();
                DISPPARAMS parameters{argument ? &value : nullptr, nullptr, argument ? 1u : 0u, 0};
                Variant result;
                for (int i = 0; i < kCalls; ++i) {
                    VariantClear(&result);
                    Must(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, &result, nullptr,
                                        nullptr),
                         name.c_str());
                }
                Check(V_VT(&result) == VT_BSTR && Text(V_BSTR(&result)) == expected, name + ": a wrong result");
            }};
}

}  // namespace

void AddCallCases(Suite& suite) {
    const std::shared_ptr<OLECHAR> path(SysAllocString(L"C:\\dir\\name.txt"), SysFreeString);
    Check(path != nullptr, "SysAllocString");

    auto fileLib = CreateOrbex<_FileLib>(CLSID_FileLib, IID__FileLib);
    auto fso = Share(CreateByProgId(L"Scripting.FileSystemObject"));
    suite.cases.push_back(
        {"1,000,000 vtable calls from C++: path extension",
         {AddRefRelease(fileLib),
          VtableCalls([fileLib, path](BSTR* r) { return fileLib->ParseFilenameExt(path.get(), r); }, L"txt"),
          InvokeCalls("Orbex IDispatch::Invoke", fileLib, L"ParseFilenameExt", DISPATCH_METHOD, path, L"txt"),
          InvokeCalls("Scripting.FileSystemObject IDispatch::Invoke", fso, L"GetExtensionName", DISPATCH_METHOD,
                      path, L"txt")}});

    auto osInfo = CreateOrbex<_OSInfo>(CLSID_OSInfo, IID__OSInfo);
    BSTR version = nullptr;
    CheckHr(osInfo->get_VersionName(&version), "VersionName");
    const std::wstring versionName = Text(version);
    SysFreeString(version);
    Case property{"1,000,000 vtable calls from C++: a cheap property",
                  {AddRefRelease(osInfo),
                   VtableCalls([osInfo](BSTR* r) { return osInfo->get_VersionName(r); }, versionName),
                   InvokeCalls("Orbex IDispatch::Invoke", osInfo, L"VersionName", DISPATCH_PROPERTYGET, nullptr,
                               versionName)}};
    CLSID networkId;
    IDispatch* network = nullptr;
    if (SUCCEEDED(CLSIDFromProgID(L"WScript.Network", &networkId)) &&
        SUCCEEDED(CoCreateInstance(networkId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                   reinterpret_cast<void**>(&network)))) {
        auto shared = Share(network);
        Variant user;
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        CheckHr(network->Invoke(DispatchId(network, L"UserName"), IID_NULL, LOCALE_USER_DEFAULT,
                                DISPATCH_PROPERTYGET, &none, &user, nullptr, nullptr),
                "WScript.Network.UserName");
        Check(V_VT(&user) == VT_BSTR, "WScript.Network.UserName: not a string");
        property.contenders.push_back(InvokeCalls("WScript.Network IDispatch::Invoke", shared, L"UserName",
                                                  DISPATCH_PROPERTYGET, nullptr, Text(V_BSTR(&user))));
    } else {
        property.note = "Wine has no WScript.Network";
    }
    suite.cases.push_back(std::move(property));
}

}  // namespace bench
