#include "files/FileLib.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::BrowseInfo;
using platform::ItemIdList;
using platform::OpenFileName;
using platform::testing::Replace;

std::string Text(const char* text) { return text == nullptr ? "(null)" : text; }

// The platform's filter list up to and including its double NUL.
std::string FilterList(const char* list) {
    if (list == nullptr) return "(null)";
    std::size_t length = 0;
    while (list[length] != '\0' || list[length + 1] != '\0') ++length;
    return std::string(list, length + 2);
}

// While alive, both file dialogs record which was shown and what it was given, and the user
// chooses `choice` (written into lpstrFile with its NULs) or, when `chooses` is false, cancels.
class FakeFileDialogs {
public:
    explicit FakeFileDialogs(std::string choice = "", bool chooses = false)
        : choice_(std::move(choice)), chooses_(chooses),
          open_{[this](OpenFileName* record) { return Show("open", record); }},
          save_{[this](OpenFileName* record) { return Show("save", record); }} {}

    OpenFileName record{};
    std::string shown, filter, title, initialDir, defExt, file, fileTitle;

private:
    platform::Bool Show(const char* which, OpenFileName* given) {
        shown = which;
        record = *given;
        filter = FilterList(given->lpstrFilter);
        title = Text(given->lpstrTitle);
        initialDir = Text(given->lpstrInitialDir);
        defExt = Text(given->lpstrDefExt);
        file = std::string(given->lpstrFile, given->nMaxFile - 1);
        fileTitle = std::string(given->lpstrFileTitle, given->nMaxFileTitle - 1);
        if (!chooses_) return 0;
        std::memcpy(given->lpstrFile, choice_.data(), choice_.size());
        return 1;
    }

    std::string choice_;
    bool chooses_;
    Replace<&Api::GetOpenFileNameA> open_;
    Replace<&Api::GetSaveFileNameA> save_;
};

TEST(FileLibDialogs, FileDialogRecords) {
    FakeFileDialogs fake;
    EXPECT_EQ(FileLib().FileOpenDialog(), L"");
    EXPECT_EQ(fake.shown, "open");
    EXPECT_EQ(fake.record.lStructSize, sizeof(void*) == 4 ? 76u : sizeof(OpenFileName));
    EXPECT_EQ(fake.record.hInstance, 0);
    EXPECT_EQ(fake.record.Flags, 4100u);
    EXPECT_EQ(fake.record.nMaxFile, 255u);
    EXPECT_EQ(fake.record.nMaxFileTitle, 255u);
    EXPECT_EQ(fake.file, std::string(254, ' '));
    EXPECT_EQ(fake.fileTitle, std::string(254, ' '));
    EXPECT_EQ(fake.title + fake.initialDir + fake.defExt, "(null)(null)(null)");
    EXPECT_EQ(fake.filter, std::string("All Files (*.*)\0*.*\0\0", 21));

    FileLib().FileSaveDialog();
    EXPECT_EQ(fake.shown, "save");
    EXPECT_EQ(fake.record.Flags, 8198u);
    EXPECT_EQ(fake.defExt, "(null)");

    FileLib().FileSaveDialog(-2, L"Save it", L"C:\\Data", L"Text|*.txt|All|*.*", L".txt",
                             static_cast<vqFileDialogFlags>(vqFDNoReadOnlyReturn | vqFDHideReadOnly));
    EXPECT_EQ(fake.record.hwndOwner, -2);
    EXPECT_EQ(fake.title, "Save it");
    EXPECT_EQ(fake.initialDir, "C:\\Data");
    EXPECT_EQ(fake.defExt, ".txt");  // the dot is not stripped
    EXPECT_EQ(fake.record.Flags, 0xFFFF8004u);
    EXPECT_EQ(fake.filter, std::string("Text\0*.txt\0All\0*.*\0\0", 20));  // "|" pairs to NUL-separated ones
}

// Blanks around the choice go; the NULs that end it go too, and a multiple selection keeps
// the NULs between the folder and the names.
TEST(FileLibDialogs, FileDialogResults) {
    const struct { std::string written; bool chooses; String result; } rows[] = {
        {std::string("C:\\Data\\a.txt\0", 14), true, L"C:\\Data\\a.txt"},
        {std::string("C:\\Data\0a.txt\0b.txt\0\0", 21), true, String(L"C:\\Data\0a.txt\0b.txt", 19)},
        {std::string("  C:\\b.txt\0", 11), true, L"C:\\b.txt"},
        {std::string(254, 'x'), true, String(254, L'x')},
        {std::string("C:\\x\0", 5), false, L""},
    };
    for (const auto& row : rows) {
        FakeFileDialogs fake(row.written, row.chooses);
        EXPECT_EQ(FileLib().FileOpenDialog(), row.result) << row.written;
        EXPECT_EQ(FileLib().FileSaveDialog(), row.result) << row.written;
    }
}

// The folder dialog with its root list and chosen list both handed back to the allocator.
class FakeShell {
public:
    static inline const ItemIdList Root = reinterpret_cast<ItemIdList>(0x1000);
    static inline const ItemIdList WithPath = reinterpret_cast<ItemIdList>(0x2000);
    static inline const ItemIdList WithoutPath = reinterpret_cast<ItemIdList>(0x3000);

    FakeShell(bool rootKnown, ItemIdList choice)
        : location_{[this, rootKnown](platform::Handle owner, std::int32_t folder, ItemIdList* list) {
              askedOwner = owner;
              askedFolder = folder;
              *list = rootKnown ? Root : nullptr;
              return rootKnown ? 0 : -2147024809;  // E_INVALIDARG
          }},
          browse_{[this, choice](BrowseInfo* info) {
              seen = *info;
              title = Text(info->lpszTitle);
              displayName = std::string(info->pszDisplayName, 260);
              return choice;
          }},
          path_{[](ItemIdList list, char* path) -> platform::Bool {
              if (list != WithPath) return 0;
              std::strcpy(path, "C:\\Chosen Folder");
              return 1;
          }},
          free_{[this](void* memory) { freed.push_back(memory); }} {}

    platform::Handle askedOwner = -1;
    std::int32_t askedFolder = -1;
    BrowseInfo seen{};
    std::string title, displayName;
    std::vector<void*> freed;

private:
    Replace<&Api::SHGetSpecialFolderLocation> location_;
    Replace<&Api::SHBrowseForFolderA> browse_;
    Replace<&Api::SHGetPathFromIDListA> path_;
    Replace<&Api::CoTaskMemFree> free_;
};

TEST(FileLibDialogs, FolderDialogWithDefaults) {
    FakeShell shell(true, FakeShell::WithPath);
    EXPECT_EQ(FileLib().FolderDialog(), L"C:\\Chosen Folder");
    EXPECT_EQ(shell.askedFolder, vqSFProgramFiles);
    EXPECT_EQ(shell.seen.pidlRoot, FakeShell::Root);
    EXPECT_EQ(shell.title, "Select a Folder:");
    EXPECT_EQ(shell.seen.ulFlags, 0u);
    EXPECT_EQ(shell.displayName, std::string(260, '\0'));
    EXPECT_EQ(shell.freed, (std::vector<void*>{FakeShell::WithPath, FakeShell::Root}));
}

// A title of blanks is shown as given; an unknown root starts at the top; every list the shell
// hands out goes back to the allocator, also after a cancel or a choice without a path.
TEST(FileLibDialogs, FolderDialogCasesAndReleases) {
    using Freed = std::vector<void*>;
    const struct { const char* what; bool rootKnown; ItemIdList choice; String result; Freed freed; } rows[] = {
        {"chosen", true, FakeShell::WithPath, L"C:\\Chosen Folder", {FakeShell::WithPath, FakeShell::Root}},
        {"unknown root", false, FakeShell::WithPath, L"C:\\Chosen Folder", {FakeShell::WithPath}},
        {"cancel", true, nullptr, L"", {FakeShell::Root}},
        {"no path", true, FakeShell::WithoutPath, L"", {FakeShell::WithoutPath, FakeShell::Root}},
    };
    for (const auto& row : rows) {
        FakeShell shell(row.rootKnown, row.choice);
        EXPECT_EQ(FileLib().FolderDialog(77, L"   ", vqSFTemp, vqFDUseNewUI), row.result) << row.what;
        EXPECT_EQ(shell.askedOwner, 77) << row.what;
        EXPECT_EQ(shell.askedFolder, -1) << row.what;
        EXPECT_EQ(shell.seen.hwndOwner, 77) << row.what;
        EXPECT_EQ(shell.seen.pidlRoot, row.rootKnown ? FakeShell::Root : nullptr) << row.what;
        EXPECT_EQ(shell.seen.ulFlags, 80u) << row.what;
        EXPECT_EQ(shell.title, "   ") << row.what;
        EXPECT_EQ(shell.freed, row.freed) << row.what;
    }
}

}  // namespace
}  // namespace orbex
