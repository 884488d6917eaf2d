// The version resource of the file named by Filename, looked up afresh at every read: the
// first translation of the block names the one string table that is searched.
#include "FileInfo.h"

#include "frame/Ansi.h"
#include "frame/Convert.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"
#include "platform/Api.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orbex {
namespace {

constexpr platform::Dword TranslationLength = 4;  // a 16-bit language and a 16-bit code page

// A NUL-ended ANSI text inside the block, copied by its own length.
String PointerToString(const char* text) {
    const auto& api = platform::api();
    const int length = api.lstrlenA(text);
    std::string copy(static_cast<std::size_t>(length), '\0');
    api.lstrcpyA(copy.data(), text);
    return FromAnsi(copy);
}

// Eight upper-case hex digits: the language, then the code page, each read little-endian.
std::string TableName(const std::uint8_t* entry) {
    static constexpr char Digits[] = "0123456789ABCDEF";
    std::string name;
    for (const int index : {1, 0, 3, 2}) {
        name += Digits[entry[index] >> 4];
        name += Digits[entry[index] & 0xF];
    }
    return name;
}

}  // namespace

String FileInfo::GetVersionValue(const wchar_t* key) const {
    if (filename_.empty()) return String();
    const auto& api = platform::api();
    const std::string name = ToAnsi(filename_);

    platform::Dword ignored = 0;
    const auto size = static_cast<Long>(api.GetFileVersionInfoSizeA(name.c_str(), &ignored));
    if (size <= 0) return String();
    std::vector<std::uint8_t> block(static_cast<std::size_t>(size) + 1);
    api.GetFileVersionInfoA(name.c_str(), 0, static_cast<platform::Dword>(size), block.data());

    void* value = nullptr;
    platform::Dword length = 0;
    if (!api.VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &value, &length) || length < 1) {
        return String();
    }
    if (length < TranslationLength) RaiseRunTime(RunTime::InvalidArgument);

    const std::string path = "\\StringFileInfo\\" + TableName(static_cast<const std::uint8_t*>(value)) + "\\" +
                             ToAnsi(key);
    value = nullptr;
    length = 0;
    if (!api.VerQueryValueA(block.data(), path.c_str(), &value, &length) || length < 1) return String();
    return PointerToString(static_cast<const char*>(value));
}

// Component K of the version text; 0 when the text has fewer. Components past the fourth are
// never read, and one that is no Integer raises the conversion's number.
Integer FileInfo::VersionComponent(std::size_t index) const {
    const StringArray parts = SplitText(Version(), L'.');
    if (index >= parts.items.size()) return 0;
    return TextToInteger(parts.items[index]);
}

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
