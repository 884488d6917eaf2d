// The OSInfo adapter: every member reads the snapshot the object took when it was made.
#include "Adapters.h"
#include "DispatchObject.h"
#include "SystemAdapters.h"
#include "Values.h"

namespace orbex::com {
namespace {

class OSInfoAdapter final : public DispatchObject<_OSInfo, IID__OSInfo> {
public:
    OSInfoAdapter() : OSInfoAdapter(std::make_unique<OSInfo>()) {}
    explicit OSInfoAdapter(std::unique_ptr<OSInfo> info) : info_(std::move(info)) {}

    STDMETHODIMP get_IsWin32s(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin32s, result); }
    STDMETHODIMP get_IsWin95(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin95, result); }
    STDMETHODIMP get_IsWin95OSR2(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin95OSR2, result); }
    STDMETHODIMP get_IsWin98(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin98, result); }
    STDMETHODIMP get_IsWin98SE(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin98SE, result); }
    STDMETHODIMP get_IsWinME(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWinME, result); }
    STDMETHODIMP get_IsWin9x(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin9x, result); }
    STDMETHODIMP get_IsWinNT3(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWinNT3, result); }
    STDMETHODIMP get_IsWinNT4(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWinNT4, result); }
    STDMETHODIMP get_IsWinNT4Workstation(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWinNT4Workstation, result);
    }
    STDMETHODIMP get_IsWinNT4Server(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWinNT4Server, result); }
    STDMETHODIMP get_IsSmallBusinessServer(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsSmallBusinessServer, result);
    }
    STDMETHODIMP get_IsSmallBusinessServer2000(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsSmallBusinessServer2000, result);
    }
    STDMETHODIMP get_IsWin2000(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin2000, result); }
    STDMETHODIMP get_IsWin2000Professional(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWin2000Professional, result);
    }
    STDMETHODIMP get_IsWin2000Server(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWin2000Server, result); }
    STDMETHODIMP get_IsWin2000AdvancedServer(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWin2000AdvancedServer, result);
    }
    STDMETHODIMP get_IsWin2000DatacenterServer(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWin2000DatacenterServer, result);
    }
    STDMETHODIMP get_IsWinXP(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWinXP, result); }
    STDMETHODIMP get_IsWinXPHomeEdition(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWinXPHomeEdition, result);
    }
    STDMETHODIMP get_IsWinXPProfessional(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWinXPProfessional, result);
    }
    STDMETHODIMP get_IsWinDotNET(VARIANT_BOOL* result) override { return Test(&OSInfo::IsWinDotNET, result); }
    STDMETHODIMP get_IsWinDotNETServer(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWinDotNETServer, result);
    }
    STDMETHODIMP get_IsWinDotNETDatacenterServer(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWinDotNETDatacenterServer, result);
    }
    STDMETHODIMP get_IsWinDotNETEnterpriseServer(VARIANT_BOOL* result) override {
        return Test(&OSInfo::IsWinDotNETEnterpriseServer, result);
    }
    STDMETHODIMP get_VersionName(BSTR* result) override {
        return Out(result, [&] { return ToBstr(info_->VersionName()); });
    }
    STDMETHODIMP get_VersionNo(BSTR* result) override {
        return Out(result, [&] { return ToBstr(info_->VersionNo()); });
    }
    STDMETHODIMP get_MajorVersion(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->MajorVersion()); });
    }
    STDMETHODIMP get_MinorVersion(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->MinorVersion()); });
    }
    STDMETHODIMP get_BuildNo(LONG* result) override {
        return Out(result, [&] { return static_cast<LONG>(info_->BuildNo()); });
    }
    STDMETHODIMP get_ServicePack(BSTR* result) override {
        return Out(result, [&] { return ToBstr(info_->ServicePack()); });
    }
    STDMETHODIMP get_AdditionalInfo(BSTR* result) override {
        return Out(result, [&] { return ToBstr(info_->AdditionalInfo()); });
    }
    STDMETHODIMP get_ServicePackMajor(short* result) override {
        return Out(result, [&] { return static_cast<short>(info_->ServicePackMajor()); });
    }
    STDMETHODIMP get_ServicePackMinor(short* result) override {
        return Out(result, [&] { return static_cast<short>(info_->ServicePackMinor()); });
    }
    STDMETHODIMP get_SuiteMask(::vqSuiteMask* result) override {
        return Out(result, [&] { return static_cast<::vqSuiteMask>(info_->SuiteMask()); });
    }
    STDMETHODIMP get_ProductType(unsigned char* result) override {
        return Out(result, [&] { return static_cast<unsigned char>(info_->ProductType()); });
    }
    STDMETHODIMP get_PlatformID(::vqOSPlatform* result) override {
        return Out(result, [&] { return static_cast<::vqOSPlatform>(info_->PlatformID()); });
    }
    STDMETHODIMP get_StartupMode(::vqOSStartupMode* result) override {
        return Out(result, [&] { return static_cast<::vqOSStartupMode>(info_->StartupMode()); });
    }

private:
    HRESULT Test(Boolean (OSInfo::*test)() const, VARIANT_BOOL* result) {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(((*info_).*test)()); });
    }

    std::unique_ptr<OSInfo> info_;
};

}  // namespace

HRESULT CreateOSInfo(REFIID riid, void** object) { return CreateAdapter<OSInfoAdapter>(riid, object); }

_OSInfo* WrapOSInfo(std::unique_ptr<OSInfo> info) {
    if (!info) return nullptr;
    return new OSInfoAdapter(std::move(info));
}

}  // namespace orbex::com
