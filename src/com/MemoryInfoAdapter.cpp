// The MemoryInfo adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class MemoryInfoAdapter final : public DispatchObject<_MemoryInfo, IID__MemoryInfo> {
public:
    STDMETHODIMP get_MemoryLoad(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AvailablePhysical(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalPhysical(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalPageFile(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AvailablePageFile(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalVirtual(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AvailableVirtual(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AvailableExtendedVirtual(CURRENCY *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateMemoryInfo(REFIID riid, void** object) { return CreateAdapter<MemoryInfoAdapter>(riid, object); }

}  // namespace orbex::com
