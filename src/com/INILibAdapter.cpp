// The INILib adapter: converts arguments and results of the class's members.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"
#include "Values.h"
#include "ini/INILib.h"

namespace orbex::com {
namespace {

class INILibAdapter final : public DispatchObject<_INILib, IID__INILib> {
public:
    STDMETHODIMP put_Filename(BSTR filename) override {
        return Guard([&] { lib_.Filename(ToString(filename)); });
    }
    STDMETHODIMP get_Filename(BSTR* result) override {
        return Out(result, [&] { return ToBstr(lib_.Filename()); });
    }
    // By reference in the interface, but only read.
    STDMETHODIMP put_BufferSize(LONG* size) override {
        if (!size) return E_POINTER;
        return Guard([&] { lib_.BufferSize(*size); });
    }
    STDMETHODIMP get_BufferSize(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(lib_.BufferSize()); });
    }
    // A missing Default pointer counts as the default 0.
    STDMETHODIMP GetNumericValue(BSTR section, BSTR key, LONG* defaultValue, BSTR iniFile,
                                 LONG* result) override {
        return Out(result, [&] {
            return static_cast<LONG>(lib_.GetNumericValue(ToString(section), ToString(key),
                                                          defaultValue ? *defaultValue : 0, ToString(iniFile)));
        });
    }
    // The caller's Default gets back its text after the round trip through the code page, also
    // when the member fails after its platform call. A missing Default pointer counts as "".
    STDMETHODIMP GetStringValue(BSTR section, BSTR key, BSTR* defaultValue, BSTR iniFile,
                                BSTR* result) override {
        String text = defaultValue ? ToString(*defaultValue) : String();
        const String before = text;
        const HRESULT hr = Out(result, [&] {
            return ToBstr(lib_.GetStringValue(ToString(section), ToString(key), text, ToString(iniFile)));
        });
        if (defaultValue && text != before) {
            if (BSTR returned = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
                SysFreeString(*defaultValue);
                *defaultValue = returned;
            }
        }
        return hr;
    }
    STDMETHODIMP WriteValue(BSTR section, BSTR key, VARIANT value, BSTR iniFile) override {
        return Guard([&] { lib_.WriteValue(ToString(section), ToString(key), ToValue(value), ToString(iniFile)); });
    }
    STDMETHODIMP DeleteKey(BSTR section, BSTR key, BSTR iniFile) override {
        return Guard([&] { lib_.DeleteKey(ToString(section), ToString(key), ToString(iniFile)); });
    }
    STDMETHODIMP GetSectionNames(BSTR iniFile, SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(lib_.GetSectionNames(ToString(iniFile))); });
    }
    STDMETHODIMP GetSectionKeys(BSTR section, BSTR iniFile, SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(lib_.GetSectionKeys(ToString(section), ToString(iniFile))); });
    }
    STDMETHODIMP GetSection(BSTR section, BSTR iniFile, SAFEARRAY** result) override {
        return Out(result, [&] { return ToSafeArray(lib_.GetSection(ToString(section), ToString(iniFile))); });
    }
    // KeyValuePairs is by reference but only read. An array variable without storage (a NULL
    // SAFEARRAY) and one of more than one dimension can't be walked by one subscript: 9.
    STDMETHODIMP WriteSection(BSTR section, SAFEARRAY** keyValuePairs, BSTR iniFile) override {
        if (!keyValuePairs) return E_POINTER;
        return Guard([&] {
            SAFEARRAY* array = *keyValuePairs;
            if (!array || SafeArrayGetDim(array) != 1) RaiseRunTime(RunTime::SubscriptOutOfRange);
            lib_.WriteSection(ToString(section), ToStringArray(array), ToString(iniFile));
        });
    }
    STDMETHODIMP DeleteSection(BSTR section, BSTR iniFile) override {
        return Guard([&] { lib_.DeleteSection(ToString(section), ToString(iniFile)); });
    }

private:
    INILib lib_;
};

}  // namespace

HRESULT CreateINILib(REFIID riid, void** object) { return CreateAdapter<INILibAdapter>(riid, object); }

}  // namespace orbex::com
