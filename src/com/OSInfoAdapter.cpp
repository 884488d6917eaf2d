// The OSInfo adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class OSInfoAdapter final : public DispatchObject<_OSInfo, IID__OSInfo> {
public:
    STDMETHODIMP get_IsWin32s(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin95(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin95OSR2(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin98(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin98SE(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinME(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin9x(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinNT3(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinNT4(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinNT4Workstation(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinNT4Server(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsSmallBusinessServer(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsSmallBusinessServer2000(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin2000(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin2000Professional(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin2000Server(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin2000AdvancedServer(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWin2000DatacenterServer(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinXP(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinXPHomeEdition(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinXPProfessional(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinDotNET(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinDotNETServer(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinDotNETDatacenterServer(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsWinDotNETEnterpriseServer(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_VersionName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_VersionNo(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_MajorVersion(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_MinorVersion(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BuildNo(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ServicePack(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AdditionalInfo(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ServicePackMajor(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ServicePackMinor(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_SuiteMask(vqSuiteMask *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ProductType(unsigned char *) override { return E_NOTIMPL; }
    STDMETHODIMP get_PlatformID(vqOSPlatform *) override { return E_NOTIMPL; }
    STDMETHODIMP get_StartupMode(vqOSStartupMode *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateOSInfo(REFIID riid, void** object) { return CreateAdapter<OSInfoAdapter>(riid, object); }

}  // namespace orbex::com
