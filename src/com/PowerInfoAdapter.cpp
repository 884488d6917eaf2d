// The PowerInfo adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class PowerInfoAdapter final : public DispatchObject<_PowerInfo, IID__PowerInfo> {
public:
    STDMETHODIMP get_ACLineStatus(vqACLineStatus *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ACLineStatusName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BatteryStatus(vqBatteryStatus *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BatteryStatusName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BatteryLifePercent(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BatteryLifeTime(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BatteryFullLifeTime(LONG *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreatePowerInfo(REFIID riid, void** object) { return CreateAdapter<PowerInfoAdapter>(riid, object); }

}  // namespace orbex::com
