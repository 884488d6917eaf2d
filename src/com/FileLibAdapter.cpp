// The FileLib adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class FileLibAdapter final : public DispatchObject<_FileLib, IID__FileLib> {
public:
    STDMETHODIMP get_FileInfo(BSTR, _FileInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP get_DiskInfo(BSTR, _DiskInfo **) override { return E_NOTIMPL; }
    STDMETHODIMP get_DriveList(SAFEARRAY **) override { return E_NOTIMPL; }
    STDMETHODIMP get_CDROMList(SAFEARRAY **) override { return E_NOTIMPL; }
    STDMETHODIMP get_CurrentFolder(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP put_CurrentFolder(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP CreateFolder(BSTR, BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteFolder(BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP ParseFilenameRoot(BSTR, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP ParseFilenamePath(BSTR, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP ParseFilename(BSTR, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP ParseFilenameExt(BSTR, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP FileExists(BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP FolderExists(BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP DriveExists(BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP DriveReady(BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP FormatSize(CURRENCY, short, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP GetSpecialFolder(vqSpecialFolder, VARIANT_BOOL, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP GetFolderSize(BSTR, VARIANT_BOOL, CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP FileOpenDialog(LONG, BSTR, BSTR, BSTR, vqFileDialogFlags, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP FileSaveDialog(LONG, BSTR, BSTR, BSTR, BSTR, vqFileDialogFlags, BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP FolderDialog(LONG, BSTR, vqSpecialFolder, vqFolderDialogFlags, BSTR *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateFileLib(REFIID riid, void** object) { return CreateAdapter<FileLibAdapter>(riid, object); }

}  // namespace orbex::com
