// FileLib: taking a path apart, and asking whether a file, folder or drive is there.
#include "FileLib.h"
#include "FileLibPlatform.h"

#include "frame/Checked.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"

#include <cwctype>
#include <new>

namespace orbex {
namespace {

// Positions count from 1 and live in an Integer: one beyond 32767 overflows.
Integer Position(std::size_t index) {
    if (index == StringView::npos) return 0;
    return ToInteger(ToLong(static_cast<std::int64_t>(index) + 1));
}

String Lower(const String& text) {
    String out;
    out.reserve(text.size());
    for (wchar_t c : text) out.push_back(static_cast<wchar_t>(std::towlower(c)));
    return out;
}

}  // namespace

String FileLib::ParseFilenameRoot(StringView filename) const {
    const StringView t = TrimBlanks(filename);
    if (t.size() < 2) return String{};
    // A colon in second place makes a drive root whatever stands before it.
    if (t[1] == L':') return String{t.substr(0, 2)} + L"\\";
    if (t.size() < 5) return String{};
    if (t.compare(0, 2, L"\\\\") != 0) return String{};

    const Integer p1 = Position(t.find(L'\\', 2));
    if (p1 <= 3) return String{};  // a bare server name, or a third backslash
    const StringView server = t.substr(0, static_cast<std::size_t>(p1));

    const Integer afterServer = CheckedAdd(p1, Integer{1});
    Integer p2 = Position(t.find(L'\\', static_cast<std::size_t>(afterServer) - 1));
    if (p2 == 0) p2 = ToInteger(CheckedAdd(ToLong(static_cast<std::int64_t>(t.size())), Long{1}));
    const StringView share = t.substr(static_cast<std::size_t>(p1), static_cast<std::size_t>(p2 - p1 - 1));
    return String{server}.append(share) + L"\\";
}

String FileLib::ParseFilenamePath(StringView filename) const {
    const StringView t = TrimBlanks(filename);
    const Integer p = Position(t.rfind(L'\\'));
    return String{p >= 1 ? t.substr(0, static_cast<std::size_t>(p)) : t};
}

String FileLib::ParseFilename(StringView filename) const {
    const StringView t = TrimBlanks(filename);
    const Integer p = Position(t.rfind(L'\\'));
    if (p < 1) return String{t};
    return String{t.substr(static_cast<std::size_t>(CheckedAdd(p, Integer{1})) - 1)};
}

String FileLib::ParseFilenameExt(StringView filename) const {
    const StringView t = TrimBlanks(filename);
    const Integer p = Position(t.rfind(L'.'));
    if (p < 1) return String{};
    return String{t.substr(static_cast<std::size_t>(CheckedAdd(p, Integer{1})) - 1)};
}

Boolean FileLib::FileExists(const String& filename) const {
    Boolean result = False;
    try {
        platform::Win32FindData data{};
        const filelib::Search search(filename, data);
        result = toBoolean(search.found());
    } catch (const RaisedError&) {
        // Whatever fails inside the search leaves the answer as it stood.
    } catch (const std::bad_alloc&) {
    }
    return result;
}

Boolean FileLib::FolderExists(const String& folder) const {
    constexpr platform::Dword DirectoryBit = 0x10;
    Boolean result = False;
    try {
        platform::Win32FindData data{};
        const filelib::Search search(StripTrailingBackslash(folder), data);
        result = toBoolean(search.found() && (data.dwFileAttributes & DirectoryBit) != 0);
    } catch (const RaisedError&) {
        // As in FileExists.
    } catch (const std::bad_alloc&) {
    }
    return result;
}

Boolean FileLib::DriveExists(const String& drive) const {
    const auto& api = platform::api();
    const platform::Dword needed = api.GetLogicalDriveStringsA(0, nullptr);
    std::string buffer = filelib::NulBuffer(needed);
    const platform::Dword written = api.GetLogicalDriveStringsA(needed, buffer.data());
    if (written == 0) return False;
    // A substring search over the whole NUL-separated list, not a match against its entries.
    const String list = Lower(filelib::FromBuffer(buffer));
    if (list.empty()) return False;
    return toBoolean(list.find(Lower(drive)) != String::npos);
}

Boolean FileLib::DriveReady(const String& drive) const {
    std::string volumeName = filelib::NulBuffer(32);
    platform::Dword serial = 0, maxComponent = 0, flags = 0;
    return toBoolean(platform::api().GetVolumeInformationA(ToAnsi(drive).c_str(), volumeName.data(), 32,
                                                           &serial, &maxComponent, &flags, nullptr, 0) != 0);
}

}  // namespace orbex
