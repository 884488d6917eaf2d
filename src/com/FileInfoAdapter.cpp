// The FileInfo adapter. Its members answer E_NOTIMPL until the class behind them is built.
#include "Adapters.h"
#include "DispatchObject.h"
#include "Orbex_h.h"

namespace orbex::com {
namespace {

class FileInfoAdapter final : public DispatchObject<_FileInfo, IID__FileInfo> {
public:
    STDMETHODIMP put_Filename(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Filename(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_FileType(vqFileType *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Size(CURRENCY *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeArchive(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeArchive(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeCompressed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeDirectory(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeEncrypted(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeHidden(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeHidden(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeNormal(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeNotContentIndexed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeNotContentIndexed(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeOffline(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeOffline(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeReadOnly(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeReadOnly(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeReparsePoint(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeSparseFile(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeSystem(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeSystem(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AttributeTemporary(VARIANT_BOOL *) override { return E_NOTIMPL; }
    STDMETHODIMP put_AttributeTemporary(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_CreationDate(DATE *) override { return E_NOTIMPL; }
    STDMETHODIMP get_LastAccessDate(DATE *) override { return E_NOTIMPL; }
    STDMETHODIMP get_LastWriteDate(DATE *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Version(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_MajorVersion(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_MinorVersion(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_RevisionVersion(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_BuildVersion(short *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Description(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_Comments(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_CompanyName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_InternalName(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_LegalCopyright(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_LegalTrademarks(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_OriginalFilename(BSTR *) override { return E_NOTIMPL; }
    STDMETHODIMP get_ProductName(BSTR *) override { return E_NOTIMPL; }
};

}  // namespace

HRESULT CreateFileInfo(REFIID riid, void** object) { return CreateAdapter<FileInfoAdapter>(riid, object); }

}  // namespace orbex::com
