// The FileInfo adapter: the file's data as of the last assignment of Filename, attribute writes,
// and the version resource looked up at each read.
#include "Adapters.h"
#include "DispatchObject.h"
#include "FilesAdapters.h"
#include "Values.h"

namespace orbex::com {
namespace {

class FileInfoAdapter final : public DispatchObject<_FileInfo, IID__FileInfo> {
public:
    FileInfoAdapter() : FileInfoAdapter(std::make_unique<FileInfo>()) {}
    explicit FileInfoAdapter(std::unique_ptr<FileInfo> info) : info_(std::move(info)) {}

    STDMETHODIMP put_Filename(BSTR filename) override {
        return Guard([&] { info_->Filename(ToString(filename)); });
    }
    STDMETHODIMP get_Filename(BSTR* result) override { return Text(&FileInfo::Filename, result); }
    STDMETHODIMP get_FileType(::vqFileType* result) override {
        return Out(result, [&] { return static_cast<::vqFileType>(info_->FileType()); });
    }
    STDMETHODIMP get_Size(CURRENCY* result) override {
        return Out(result, [&] { return ToCy(info_->Size()); });
    }

    STDMETHODIMP get_AttributeArchive(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeArchive, r); }
    STDMETHODIMP put_AttributeArchive(VARIANT_BOOL v) override { return Put(&FileInfo::AttributeArchive, v); }
    STDMETHODIMP get_AttributeCompressed(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeCompressed, r); }
    STDMETHODIMP get_AttributeDirectory(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeDirectory, r); }
    STDMETHODIMP get_AttributeEncrypted(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeEncrypted, r); }
    STDMETHODIMP get_AttributeHidden(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeHidden, r); }
    STDMETHODIMP put_AttributeHidden(VARIANT_BOOL v) override { return Put(&FileInfo::AttributeHidden, v); }
    STDMETHODIMP get_AttributeNormal(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeNormal, r); }
    STDMETHODIMP get_AttributeNotContentIndexed(VARIANT_BOOL* r) override {
        return Get(&FileInfo::AttributeNotContentIndexed, r);
    }
    STDMETHODIMP put_AttributeNotContentIndexed(VARIANT_BOOL v) override {
        return Put(&FileInfo::AttributeNotContentIndexed, v);
    }
    STDMETHODIMP get_AttributeOffline(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeOffline, r); }
    STDMETHODIMP put_AttributeOffline(VARIANT_BOOL v) override { return Put(&FileInfo::AttributeOffline, v); }
    STDMETHODIMP get_AttributeReadOnly(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeReadOnly, r); }
    STDMETHODIMP put_AttributeReadOnly(VARIANT_BOOL v) override { return Put(&FileInfo::AttributeReadOnly, v); }
    STDMETHODIMP get_AttributeReparsePoint(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeReparsePoint, r); }
    STDMETHODIMP get_AttributeSparseFile(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeSparseFile, r); }
    STDMETHODIMP get_AttributeSystem(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeSystem, r); }
    STDMETHODIMP put_AttributeSystem(VARIANT_BOOL v) override { return Put(&FileInfo::AttributeSystem, v); }
    STDMETHODIMP get_AttributeTemporary(VARIANT_BOOL* r) override { return Get(&FileInfo::AttributeTemporary, r); }
    STDMETHODIMP put_AttributeTemporary(VARIANT_BOOL v) override { return Put(&FileInfo::AttributeTemporary, v); }

    STDMETHODIMP get_CreationDate(DATE* result) override { return When(&FileInfo::CreationDate, result); }
    STDMETHODIMP get_LastAccessDate(DATE* result) override { return When(&FileInfo::LastAccessDate, result); }
    STDMETHODIMP get_LastWriteDate(DATE* result) override { return When(&FileInfo::LastWriteDate, result); }

    STDMETHODIMP get_Version(BSTR* result) override { return Text(&FileInfo::Version, result); }
    STDMETHODIMP get_MajorVersion(short* result) override { return Number(&FileInfo::MajorVersion, result); }
    STDMETHODIMP get_MinorVersion(short* result) override { return Number(&FileInfo::MinorVersion, result); }
    STDMETHODIMP get_RevisionVersion(short* result) override { return Number(&FileInfo::RevisionVersion, result); }
    STDMETHODIMP get_BuildVersion(short* result) override { return Number(&FileInfo::BuildVersion, result); }
    STDMETHODIMP get_Description(BSTR* result) override { return Text(&FileInfo::Description, result); }
    STDMETHODIMP get_Comments(BSTR* result) override { return Text(&FileInfo::Comments, result); }
    STDMETHODIMP get_CompanyName(BSTR* result) override { return Text(&FileInfo::CompanyName, result); }
    STDMETHODIMP get_InternalName(BSTR* result) override { return Text(&FileInfo::InternalName, result); }
    STDMETHODIMP get_LegalCopyright(BSTR* result) override { return Text(&FileInfo::LegalCopyright, result); }
    STDMETHODIMP get_LegalTrademarks(BSTR* result) override { return Text(&FileInfo::LegalTrademarks, result); }
    STDMETHODIMP get_OriginalFilename(BSTR* result) override { return Text(&FileInfo::OriginalFilename, result); }
    STDMETHODIMP get_ProductName(BSTR* result) override { return Text(&FileInfo::ProductName, result); }

private:
    HRESULT Text(String (FileInfo::*member)() const, BSTR* result) {
        return Out(result, [&] { return ToBstr(((*info_).*member)()); });
    }
    HRESULT Number(Integer (FileInfo::*member)() const, short* result) {
        return Out(result, [&] { return static_cast<short>(((*info_).*member)()); });
    }
    HRESULT When(Date (FileInfo::*member)() const, DATE* result) {
        return Out(result, [&] { return static_cast<DATE>(((*info_).*member)().days); });
    }
    HRESULT Get(Boolean (FileInfo::*member)() const, VARIANT_BOOL* result) {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(((*info_).*member)()); });
    }
    HRESULT Put(void (FileInfo::*member)(Boolean), VARIANT_BOOL value) {
        return Guard([&] { ((*info_).*member)(static_cast<Boolean>(value)); });
    }

    std::unique_ptr<FileInfo> info_;
};

}  // namespace

HRESULT CreateFileInfo(REFIID riid, void** object) { return CreateAdapter<FileInfoAdapter>(riid, object); }

_FileInfo* WrapFileInfo(std::unique_ptr<FileInfo> info) {
    if (!info) return nullptr;
    return new FileInfoAdapter(std::move(info));
}

}  // namespace orbex::com
