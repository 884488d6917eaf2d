// The DiskInfo adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class DiskInfoAdapter final : public DispatchObject<_DiskInfo, IID__DiskInfo> {
public:
    STDMETHODIMP put_RootName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_RootName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_VolumeLabel(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP put_VolumeLabel(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_FileSystem(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_SerialNumber(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_SerialNumberHex(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_MaxFilenameLength(LONG *) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalBytes(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalBytesFree(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalBytesUsed(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_UserBytesFree(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_SupportsCaseSensitiveFilenames(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_CaseIsPreserved(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_PersistentACLs(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_SupportsUnicodeFilenames(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_SupportsFileBasedCompression(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_VolumeCompressed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_HasLargeDriveSupport(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_DriveType(vqDriveType *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateDiskInfo(REFIID riid, void** object) { return CreateAdapter<DiskInfoAdapter>(riid, object); }

}  // namespace orbex::com
