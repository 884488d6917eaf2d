// The DiskInfo adapter: the volume's figures as of the last assignment of RootName, and the
// rename of the volume.
#include "Adapters.h"
#include "DispatchObject.h"
#include "FilesAdapters.h"
#include "Values.h"

namespace orbex::com {
namespace {

class DiskInfoAdapter final : public DispatchObject<_DiskInfo, IID__DiskInfo> {
public:
    DiskInfoAdapter() : DiskInfoAdapter(std::make_unique<DiskInfo>()) {}
    explicit DiskInfoAdapter(std::unique_ptr<DiskInfo> info) : info_(std::move(info)) {}

    // Passed by reference, but the caller's text stays as it was.
    STDMETHODIMP put_RootName(BSTR* rootName) override {
        return Guard([&] { info_->RootName(rootName ? ToString(*rootName) : String()); });
    }
    STDMETHODIMP get_RootName(BSTR* result) override { return Text(&DiskInfo::RootName, result); }
    STDMETHODIMP get_VolumeLabel(BSTR* result) override { return Text(&DiskInfo::VolumeLabel, result); }
    STDMETHODIMP put_VolumeLabel(BSTR label) override {
        return Guard([&] { info_->VolumeLabel(ToString(label)); });
    }
    STDMETHODIMP get_FileSystem(BSTR* result) override { return Text(&DiskInfo::FileSystem, result); }
    STDMETHODIMP get_SerialNumber(LONG* result) override { return Number(&DiskInfo::SerialNumber, result); }
    STDMETHODIMP get_SerialNumberHex(BSTR* result) override { return Text(&DiskInfo::SerialNumberHex, result); }
    STDMETHODIMP get_MaxFilenameLength(LONG* result) override { return Number(&DiskInfo::MaxFilenameLength, result); }
    STDMETHODIMP get_TotalBytes(CURRENCY* result) override { return Size(&DiskInfo::TotalBytes, result); }
    STDMETHODIMP get_TotalBytesFree(CURRENCY* result) override { return Size(&DiskInfo::TotalBytesFree, result); }
    STDMETHODIMP get_TotalBytesUsed(CURRENCY* result) override { return Size(&DiskInfo::TotalBytesUsed, result); }
    STDMETHODIMP get_UserBytesFree(CURRENCY* result) override { return Size(&DiskInfo::UserBytesFree, result); }
    STDMETHODIMP get_SupportsCaseSensitiveFilenames(VARIANT_BOOL* r) override {
        return Flag(&DiskInfo::SupportsCaseSensitiveFilenames, r);
    }
    STDMETHODIMP get_CaseIsPreserved(VARIANT_BOOL* r) override { return Flag(&DiskInfo::CaseIsPreserved, r); }
    STDMETHODIMP get_PersistentACLs(VARIANT_BOOL* r) override { return Flag(&DiskInfo::PersistentACLs, r); }
    STDMETHODIMP get_SupportsUnicodeFilenames(VARIANT_BOOL* r) override {
        return Flag(&DiskInfo::SupportsUnicodeFilenames, r);
    }
    STDMETHODIMP get_SupportsFileBasedCompression(VARIANT_BOOL* r) override {
        return Flag(&DiskInfo::SupportsFileBasedCompression, r);
    }
    STDMETHODIMP get_VolumeCompressed(VARIANT_BOOL* r) override { return Flag(&DiskInfo::VolumeCompressed, r); }
    STDMETHODIMP get_HasLargeDriveSupport(VARIANT_BOOL* r) override { return Flag(&DiskInfo::HasLargeDriveSupport, r); }
    STDMETHODIMP get_DriveType(::vqDriveType* result) override {
        return Out(result, [&] { return static_cast<::vqDriveType>(info_->DriveType()); });
    }

private:
    HRESULT Text(String (DiskInfo::*member)() const, BSTR* result) {
        return Out(result, [&] { return ToBstr(((*info_).*member)()); });
    }
    HRESULT Number(Long (DiskInfo::*member)() const, LONG* result) {
        return Out(result, [&] { return static_cast<LONG>(((*info_).*member)()); });
    }
    HRESULT Size(Currency (DiskInfo::*member)() const, CURRENCY* result) {
        return Out(result, [&] { return ToCy(((*info_).*member)()); });
    }
    HRESULT Flag(Boolean (DiskInfo::*member)() const, VARIANT_BOOL* result) {
        return Out(result, [&] { return static_cast<VARIANT_BOOL>(((*info_).*member)()); });
    }

    std::unique_ptr<DiskInfo> info_;
};

}  // namespace

HRESULT CreateDiskInfo(REFIID riid, void** object) { return CreateAdapter<DiskInfoAdapter>(riid, object); }

_DiskInfo* WrapDiskInfo(std::unique_ptr<DiskInfo> info) {
    if (!info) return nullptr;
    return new DiskInfoAdapter(std::move(info));
}

}  // namespace orbex::com
