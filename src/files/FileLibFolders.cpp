// FileLib: the current folder, making and removing folders, the special folders and the size
// of a folder's files.
#include "FileLib.h"
#include "FileLibPlatform.h"

#include "frame/Checked.h"
#include "frame/FunctionLib.h"
#include "frame/RaisedError.h"

namespace orbex {
namespace {

constexpr std::size_t MaxPath = 260;
constexpr platform::Dword DirectoryBit = 0x10;
constexpr Long CreateFlagOffset = 32768;

// A path buffer filled by a function that reports the count it wrote; 0 gives "".
template <class Fill>
String FilledPath(Fill fill) {
    std::string buffer = filelib::NulBuffer(MaxPath);
    const platform::Dword written = fill(buffer.data(), static_cast<platform::Dword>(MaxPath));
    if (written == 0) return String{};
    return filelib::Left(filelib::FromBuffer(buffer), written);
}

// What one size scan carries through its recursion.
struct SizeScan {
    bool includeSubfolders;
    Currency size;
};

// One level: files add their low size word, sub-folders are entered when asked for, and every
// name that begins with a dot is passed over, the folder's own two entries among them.
void ScanFolder(const String& folder, SizeScan& scan) {
    platform::Win32FindData data{};
    const filelib::Search search(folder + L"*.*", data);
    if (!search.found()) return;
    do {
        const String name = CutAtFirstNul(FromAnsi(data.cFileName, sizeof data.cFileName), 1);
        if (!name.empty() && name.front() == L'.') continue;
        if ((data.dwFileAttributes & DirectoryBit) != 0) {
            if (scan.includeSubfolders) ScanFolder(folder + name + L"\\", scan);
        } else {
            scan.size = CheckedAdd(scan.size, CurrencyFromCount32(static_cast<Long>(data.nFileSizeLow)));
        }
    } while (search.next(data));
}

}  // namespace

String FileLib::CurrentFolder() const {
    return FilledPath([](char* buffer, platform::Dword length) {
        return platform::api().GetCurrentDirectoryA(length, buffer);
    });
}

void FileLib::CurrentFolder(const String& folder) {
    const auto& api = platform::api();
    const std::string text = ToAnsi(folder);
    if (api.SetCurrentDirectoryA(text.c_str()) == 0) {
        const Long code = static_cast<Long>(api.GetLastError());
        Raise(code, L"Quillet:FileLib:CurrentFolder", L"Could not set current folder.");
    }
}

Boolean FileLib::CreateFolder(const String& newFolder, const String& templateFolder) const {
    const String root = ParseFilenameRoot(newFolder);
    if (root.empty()) RaiseRunTime(RunTime::InvalidArgument);  // a relative path has no start

    const StringView trimmed = TrimBlanks(newFolder);
    const String rest{root.size() < trimmed.size() ? trimmed.substr(root.size()) : StringView{}};
    String path = root.substr(0, root.size() - 1);  // C:\ gives C:, \\Server\Share\ gives \\Server\Share

    Boolean result = False;
    for (const String& part : SplitText(rest, L'\\').items) {
        path += L"\\" + part;
        if (isTrue(FolderExists(path))) continue;
        result = MakeFolder(path, templateFolder);
        if (!isTrue(result)) break;  // the levels made so far stay
    }
    return result;
}

Boolean FileLib::MakeFolder(const String& path, const String& templateFolder) const {
    const auto& api = platform::api();
    if (templateFolder.empty()) return toBoolean(api.CreateDirectoryA(ToAnsi(path).c_str(), nullptr) != 0);
    return toBoolean(api.CreateDirectoryExA(ToAnsi(templateFolder).c_str(), ToAnsi(path).c_str(), nullptr) != 0);
}

Boolean FileLib::DeleteFolder(const String& folder) const {
    return toBoolean(platform::api().RemoveDirectoryA(ToAnsi(folder).c_str()) != 0);
}

String FileLib::GetSpecialFolder(vqSpecialFolder specialFolder, Boolean createIfNotExists) const {
    Long number = specialFolder;
    // A subtraction, not a bit-or: the number turns negative with the create flag in its low word.
    if (isTrue(createIfNotExists)) number = CheckedSub(number, CreateFlagOffset);

    const auto& api = platform::api();
    switch (number) {
    case vqSFTemp:
        return FilledPath([&](char* buffer, platform::Dword length) { return api.GetTempPathA(length, buffer); });
    case vqSFWindows:
        return FilledPath([&](char* buffer, platform::Dword length) { return api.GetWindowsDirectoryA(buffer, length); });
    case vqSFSystem:
        return FilledPath([&](char* buffer, platform::Dword length) { return api.GetSystemDirectoryA(buffer, length); });
    default:
        break;
    }

    filelib::ItemList list;
    if (api.SHGetSpecialFolderLocation(0, number, list.out()) != 0) return String{};
    return filelib::PathOfItemList(list.get());
}

Currency FileLib::GetFolderSize(const String& folder, Boolean includeSubfolders) const {
    // The folder as the platform reads it, up to any NUL: the sub-folders' paths are built from
    // it, and a text going on after a NUL would have each of them name this folder again.
    String start = folder.substr(0, folder.find(L'\0'));
    if (start.empty() || start.back() != L'\\') start += L'\\';
    SizeScan scan{isTrue(includeSubfolders), Currency{}};
    ScanFolder(start, scan);
    return scan.size;
}

}  // namespace orbex
