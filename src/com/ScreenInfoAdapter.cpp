// The ScreenInfo adapter: every read asks the platform again.
#include "Adapters.h"
#include "DispatchObject.h"
#include "SystemAdapters.h"
#include "Values.h"

namespace orbex::com {
namespace {

class ScreenInfoAdapter final : public DispatchObject<_ScreenInfo, IID__ScreenInfo> {
public:
    ScreenInfoAdapter() : ScreenInfoAdapter(std::make_unique<ScreenInfo>()) {}
    explicit ScreenInfoAdapter(std::unique_ptr<ScreenInfo> info) : info_(std::move(info)) {}

    STDMETHODIMP get_HorizontalResolution(short* result) override { return Figure(&ScreenInfo::HorizontalResolution, result); }
    STDMETHODIMP get_VerticalResolution(short* result) override { return Figure(&ScreenInfo::VerticalResolution, result); }
    STDMETHODIMP get_ColorDepth(short* result) override { return Figure(&ScreenInfo::ColorDepth, result); }
    STDMETHODIMP get_VerticalRefreshRate(short* result) override { return Figure(&ScreenInfo::VerticalRefreshRate, result); }
    STDMETHODIMP get_FullScreenLeft(short* result) override { return Figure(&ScreenInfo::FullScreenLeft, result); }
    STDMETHODIMP get_FullScreenTop(short* result) override { return Figure(&ScreenInfo::FullScreenTop, result); }
    STDMETHODIMP get_FullScreenRight(short* result) override { return Figure(&ScreenInfo::FullScreenRight, result); }
    STDMETHODIMP get_FullScreenBottom(short* result) override { return Figure(&ScreenInfo::FullScreenBottom, result); }

private:
    HRESULT Figure(Integer (ScreenInfo::*figure)() const, short* result) {
        return Out(result, [&] { return static_cast<short>(((*info_).*figure)()); });
    }

    std::unique_ptr<ScreenInfo> info_;
};

}  // namespace

HRESULT CreateScreenInfo(REFIID riid, void** object) { return CreateAdapter<ScreenInfoAdapter>(riid, object); }

_ScreenInfo* WrapScreenInfo(std::unique_ptr<ScreenInfo> info) {
    if (!info) return nullptr;
    return new ScreenInfoAdapter(std::move(info));
}

}  // namespace orbex::com
