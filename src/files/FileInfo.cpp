#include "FileInfo.h"

namespace orbex {

void FileInfo::Filename(const String& filename) {
    filename_ = filename;
    LoadFileData();
}

void FileInfo::ResetFileData() {
    fileType_ = 0;
    size_ = Currency{};
    fileAttributes_ = -1;
}

void FileInfo::LoadFileData() { ResetFileData(); }

void FileInfo::Write(Long bit, Boolean value) {
    if (fileAttributes_ == -1) return;
    fileAttributes_ = isTrue(value) ? (fileAttributes_ | bit) : (fileAttributes_ & ~bit);
}

String FileInfo::GetVersionValue(const wchar_t*) const { return String(); }
Integer FileInfo::VersionComponent(std::size_t) const { return 0; }

String FileInfo::Version() const { return GetVersionValue(L"FileVersion"); }
Integer FileInfo::MajorVersion() const { return VersionComponent(0); }
Integer FileInfo::MinorVersion() const { return VersionComponent(1); }
Integer FileInfo::RevisionVersion() const { return VersionComponent(2); }
Integer FileInfo::BuildVersion() const { return VersionComponent(3); }
String FileInfo::Description() const { return GetVersionValue(L"FileDescription"); }
String FileInfo::Comments() const { return GetVersionValue(L"Comments"); }
String FileInfo::CompanyName() const { return GetVersionValue(L"CompanyName"); }
String FileInfo::InternalName() const { return GetVersionValue(L"InternalName"); }
String FileInfo::LegalCopyright() const { return GetVersionValue(L"LegalCopyright"); }
String FileInfo::LegalTrademarks() const { return GetVersionValue(L"LegalTrademarks"); }
String FileInfo::OriginalFilename() const { return GetVersionValue(L"OriginalFilename"); }
String FileInfo::ProductName() const { return GetVersionValue(L"ProductName"); }

}  // namespace orbex
