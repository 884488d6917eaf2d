// The ScreenInfo adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class ScreenInfoAdapter final : public DispatchObject<_ScreenInfo, IID__ScreenInfo> {
public:
    STDMETHODIMP get_HorizontalResolution(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_VerticalResolution(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ColorDepth(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_VerticalRefreshRate(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullScreenLeft(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullScreenTop(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullScreenRight(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullScreenBottom(short *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateScreenInfo(REFIID riid, void** object) { return CreateAdapter<ScreenInfoAdapter>(riid, object); }

}  // namespace orbex::com
