// The INILib adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class INILibAdapter final : public DispatchObject<_INILib, IID__INILib> {
public:
    STDMETHODIMP put_Filename(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Filename(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP put_BufferSize(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BufferSize(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP GetNumericValue(BSTR, BSTR, LONG *, BSTR, LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP GetStringValue(BSTR, BSTR, BSTR *, BSTR, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP WriteValue(BSTR, BSTR, VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteKey(BSTR, BSTR, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP GetSectionNames(BSTR, SAFEARRAY **) override { return E_NOTIMPL; }
    STDMETHODIMP GetSectionKeys(BSTR, BSTR, SAFEARRAY **) override { return E_NOTIMPL; }
    STDMETHODIMP GetSection(BSTR, BSTR, SAFEARRAY **) override { return E_NOTIMPL; }
    STDMETHODIMP WriteSection(BSTR, SAFEARRAY **, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteSection(BSTR, BSTR) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateINILib(REFIID riid, void** object) { return CreateAdapter<INILibAdapter>(riid, object); }

}  // namespace orbex::com
