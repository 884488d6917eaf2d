// FileLib: the platform's open, save and folder dialogs, shown modally; each gives back the
// chosen path, or "" when the user cancels or the dialog fails.
#include "FileLib.h"
#include "FileLibPlatform.h"

#include "frame/FunctionLib.h"

#include <algorithm>

namespace orbex {
namespace {

constexpr std::size_t FileBuffer = 254;  // blanks; the platform is told 255 with the terminator

// "Label|pattern|Label|pattern" to the platform's NUL-separated list; the string's own
// terminator makes the double NUL at its end.
std::string FilterList(const String& filter) {
    String list = filter.empty() ? String(L"All Files (*.*)|*.*") : filter;
    if (list.back() != L'|') list += L'|';
    std::replace(list.begin(), list.end(), L'|', L'\0');
    return ToAnsi(list);
}

// An empty text goes to the platform as no text, so that its own default shows.
const char* TextOrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

using DialogCall = platform::Bool (*)(platform::OpenFileName*);

String ShowFileDialog(DialogCall show, Long hWnd, const String& title, const String& initDir,
                      const String& filter, const String* defaultExt, vqFileDialogFlags flags) {
    const std::string filterList = FilterList(filter);
    const std::string titleText = ToAnsi(title);
    const std::string initDirText = ToAnsi(initDir);
    const std::string defaultExtText = defaultExt != nullptr ? ToAnsi(*defaultExt) : std::string{};
    std::string file(FileBuffer, ' ');
    std::string fileTitle(FileBuffer, ' ');

    platform::OpenFileName record{};
    record.lStructSize = sizeof record;
    record.hwndOwner = static_cast<platform::Handle>(hWnd);
    record.hInstance = 0;  // no dialog template is ever given, so the module is not needed
    record.lpstrFilter = filterList.c_str();
    record.lpstrFile = file.data();
    record.nMaxFile = FileBuffer + 1;
    record.lpstrFileTitle = fileTitle.data();
    record.nMaxFileTitle = FileBuffer + 1;
    record.lpstrInitialDir = TextOrNull(initDirText);
    record.lpstrTitle = TextOrNull(titleText);
    record.Flags = static_cast<platform::Dword>(flags);
    if (defaultExt != nullptr) record.lpstrDefExt = TextOrNull(defaultExtText);

    if (show(&record) == 0) return String{};
    // The buffer holds the path, or with a multiple selection the folder and the names, each
    // ended by a NUL, then the blanks that were there before. The blanks go, and so do the
    // NULs that end the text: the inner NULs stay as the separators of the list.
    String chosen{TrimBlanks(filelib::FromBuffer(file))};
    while (!chosen.empty() && chosen.back() == L'\0') chosen.pop_back();
    return chosen;
}

}  // namespace

String FileLib::FileOpenDialog(Long hWnd, const String& title, const String& initDir, const String& filter,
                               vqFileDialogFlags flags) const {
    return ShowFileDialog(platform::api().GetOpenFileNameA, hWnd, title, initDir, filter, nullptr, flags);
}

String FileLib::FileSaveDialog(Long hWnd, const String& title, const String& initDir, const String& filter,
                               const String& defaultExt, vqFileDialogFlags flags) const {
    return ShowFileDialog(platform::api().GetSaveFileNameA, hWnd, title, initDir, filter, &defaultExt, flags);
}

String FileLib::FolderDialog(Long hWnd, const String& title, vqSpecialFolder rootFolder,
                             vqFolderDialogFlags flags) const {
    const auto& api = platform::api();
    const auto owner = static_cast<platform::Handle>(hWnd);

    // A folder number the platform doesn't know is no failure: the dialog starts at the top.
    platform::ItemIdList rootList = nullptr;
    const bool haveRoot = api.SHGetSpecialFolderLocation(owner, rootFolder, &rootList) == 0;
    const filelib::ItemList root(haveRoot ? rootList : nullptr);

    std::string displayName = filelib::NulBuffer(260);
    const std::string titleText = ToAnsi(title.empty() ? String(L"Select a Folder:") : title);

    platform::BrowseInfo info{};
    info.hwndOwner = owner;
    info.pidlRoot = root.get();
    info.pszDisplayName = displayName.data();
    info.lpszTitle = titleText.c_str();
    info.ulFlags = static_cast<std::uint32_t>(flags);

    const filelib::ItemList chosen(api.SHBrowseForFolderA(&info));
    if (!chosen) return String{};
    return filelib::PathOfItemList(chosen.get());
}

}  // namespace orbex
