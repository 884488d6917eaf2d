// The MemoryInfo adapter: the figures of the snapshot taken when the object was made.
#include "Adapters.h"
#include "DispatchObject.h"
#include "SystemAdapters.h"
#include "Values.h"

namespace orbex::com {
namespace {

class MemoryInfoAdapter final : public DispatchObject<_MemoryInfo, IID__MemoryInfo> {
public:
    MemoryInfoAdapter() : MemoryInfoAdapter(std::make_unique<MemoryInfo>()) {}
    explicit MemoryInfoAdapter(std::unique_ptr<MemoryInfo> info) : info_(std::move(info)) {}

    STDMETHODIMP get_MemoryLoad(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->MemoryLoad()); });
    }
    STDMETHODIMP get_AvailablePhysical(CURRENCY* result) override { return Size(&MemoryInfo::AvailablePhysical, result); }
    STDMETHODIMP get_TotalPhysical(CURRENCY* result) override { return Size(&MemoryInfo::TotalPhysical, result); }
    STDMETHODIMP get_TotalPageFile(CURRENCY* result) override { return Size(&MemoryInfo::TotalPageFile, result); }
    STDMETHODIMP get_AvailablePageFile(CURRENCY* result) override { return Size(&MemoryInfo::AvailablePageFile, result); }
    STDMETHODIMP get_TotalVirtual(CURRENCY* result) override { return Size(&MemoryInfo::TotalVirtual, result); }
    STDMETHODIMP get_AvailableVirtual(CURRENCY* result) override { return Size(&MemoryInfo::AvailableVirtual, result); }
    STDMETHODIMP get_AvailableExtendedVirtual(CURRENCY* result) override {
        return Size(&MemoryInfo::AvailableExtendedVirtual, result);
    }

private:
    HRESULT Size(Currency (MemoryInfo::*figure)() const, CURRENCY* result) {
        return Out(result, [&] { return ToCy(((*info_).*figure)()); });
    }

    std::unique_ptr<MemoryInfo> info_;
};

}  // namespace

HRESULT CreateMemoryInfo(REFIID riid, void** object) { return CreateAdapter<MemoryInfoAdapter>(riid, object); }

_MemoryInfo* WrapMemoryInfo(std::unique_ptr<MemoryInfo> info) {
    if (!info) return nullptr;
    return new MemoryInfoAdapter(std::move(info));
}

}  // namespace orbex::com
