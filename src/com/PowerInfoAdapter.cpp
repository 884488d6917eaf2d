// The PowerInfo adapter: every read asks the platform again.
#include "Adapters.h"
#include "DispatchObject.h"
#include "SystemAdapters.h"
#include "Values.h"

namespace orbex::com {
namespace {

class PowerInfoAdapter final : public DispatchObject<_PowerInfo, IID__PowerInfo> {
public:
    PowerInfoAdapter() : PowerInfoAdapter(std::make_unique<PowerInfo>()) {}
    explicit PowerInfoAdapter(std::unique_ptr<PowerInfo> info) : info_(std::move(info)) {}

    STDMETHODIMP get_ACLineStatus(::vqACLineStatus* result) override {
        return Out(result, [&] { return static_cast<::vqACLineStatus>(info_->ACLineStatus()); });
    }
    STDMETHODIMP get_ACLineStatusName(BSTR* result) override {
        return Out(result, [&] { return ToBstr(info_->ACLineStatusName()); });
    }
    STDMETHODIMP get_BatteryStatus(::vqBatteryStatus* result) override {
        return Out(result, [&] { return static_cast<::vqBatteryStatus>(info_->BatteryStatus()); });
    }
    STDMETHODIMP get_BatteryStatusName(BSTR* result) override {
        return Out(result, [&] { return ToBstr(info_->BatteryStatusName()); });
    }
    STDMETHODIMP get_BatteryLifePercent(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->BatteryLifePercent()); });
    }
    STDMETHODIMP get_BatteryLifeTime(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->BatteryLifeTime()); });
    }
    STDMETHODIMP get_BatteryFullLifeTime(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->BatteryFullLifeTime()); });
    }

private:
    std::unique_ptr<PowerInfo> info_;
};

}  // namespace

HRESULT CreatePowerInfo(REFIID riid, void** object) { return CreateAdapter<PowerInfoAdapter>(riid, object); }

_PowerInfo* WrapPowerInfo(std::unique_ptr<PowerInfo> info) {
    if (!info) return nullptr;
    return new PowerInfoAdapter(std::move(info));
}

}  // namespace orbex::com
