// The SystemLib adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class SystemLibAdapter final : public DispatchObject<_SystemLib, IID__SystemLib> {
public:
    STDMETHODIMP get_OSInfo(_OSInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP get_PowerInfo(_PowerInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP get_MemoryInfo(_MemoryInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP get_ScreenInfo(_ScreenInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsHibernateAllowed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsShutdownAllowed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsSuspendAllowed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsSystemResumeAutomatic(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ComputerName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_UserName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP LogOff(vqExitFlag, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP Shutdown(vqExitFlag, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP PowerOff(vqExitFlag, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP Reboot(vqExitFlag, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP Hibernate(vqSleepFlag, VARIANT_BOOL, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP Suspend(vqSleepFlag, VARIANT_BOOL, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP CaptureScreen(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetGUID(BSTR *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateSystemLib(REFIID riid, void** object) { return CreateAdapter<SystemLibAdapter>(riid, object); }

}  // namespace orbex::com
