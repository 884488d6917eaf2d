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

// What a file dialog was given, and what the user chooses: a text written into lpstrFile
// (with its NULs), or nothing for a cancel.
struct FileDialogSeen {
    OpenFileName record{};
    std::string filter, title, initialDir, defExt, file, fileTitle;
};

template <auto Entry>
class FakeFileDialog {
public:
    explicit FakeFileDialog(std::string choice, bool chooses = true)
        : replace_{[this, choice, chooses](OpenFileName* record) -> platform::Bool {
              seen.record = *record;
              seen.filter = FilterList(record->lpstrFilter);
              seen.title = Text(record->lpstrTitle);
              seen.initialDir = Text(record->lpstrInitialDir);
              seen.defExt = Text(record->lpstrDefExt);
              seen.file = std::string(record->lpstrFile, record->nMaxFile - 1);
              seen.fileTitle = std::string(record->lpstrFileTitle, record->nMaxFileTitle - 1);
              if (!chooses) return 0;
              std::memcpy(record->lpstrFile, choice.data(), choice.size());
              return 1;
          }} {}
    FileDialogSeen seen;

private:
    Replace<Entry> replace_;
};

using FakeOpen = FakeFileDialog<&Api::GetOpenFileNameA>;
using FakeSave = FakeFileDialog<&Api::GetSaveFileNameA>;

TEST(FileLibDialogs, FilterListsAreMadeFromBarSeparatedPairs) {
    const struct {
        const wchar_t* filter;
        std::string list;
    } rows[] = {
        {L"", std::string("All Files (*.*)\0*.*\0\0", 21)},
        {L"Text|*.txt", std::string("Text\0*.txt\0\0", 12)},
        {L"Text|*.txt|", std::string("Text\0*.txt\0\0", 12)},
        {L"Text|*.txt|All|*.*", std::string("Text\0*.txt\0All\0*.*\0\0", 20)},
        {L"Only", std::string("Only\0\0", 6)},
    };
    for (const auto& row : rows) {
        FakeOpen fake("", false);
        FileLib().FileOpenDialog(0, L"", L"", row.filter);
        EXPECT_EQ(fake.seen.filter, row.list) << row.filter;
    }
}

TEST(FileLibDialogs, FileOpenDialogRecordWithDefaults) {
    FakeOpen fake("", false);
    EXPECT_EQ(FileLib().FileOpenDialog(), L"");
    const OpenFileName& record = fake.seen.record;
    EXPECT_EQ(record.lStructSize, sizeof(OpenFileName));
    if constexpr (sizeof(void*) == 4) {
        EXPECT_EQ(record.lStructSize, 76u);
    }
    EXPECT_EQ(record.hwndOwner, 0);
    EXPECT_EQ(record.hInstance, 0);
    EXPECT_EQ(record.Flags, 4100u);
    EXPECT_EQ(record.nMaxFile, 255u);
    EXPECT_EQ(record.nMaxFileTitle, 255u);
    EXPECT_EQ(fake.seen.file, std::string(254, ' '));
    EXPECT_EQ(fake.seen.fileTitle, std::string(254, ' '));
    EXPECT_EQ(fake.seen.title, "(null)");
    EXPECT_EQ(fake.seen.initialDir, "(null)");
    EXPECT_EQ(fake.seen.defExt, "(null)");
    EXPECT_EQ(record.lpstrCustomFilter, nullptr);
    EXPECT_EQ(record.nFilterIndex, 0u);
    EXPECT_EQ(record.lCustData, 0);
    EXPECT_EQ(record.lpfnHook, nullptr);
    EXPECT_EQ(record.lpTemplateName, nullptr);
}

TEST(FileLibDialogs, FileSaveDialogPassesItsArgumentsThrough) {
    {
        FakeSave fake("", false);
        FileLib().FileSaveDialog();
        EXPECT_EQ(fake.seen.record.Flags, 8198u);
    }
    FakeSave fake("", false);
    FileLib().FileSaveDialog(-2, L"Save it", L"C:\\Data", L"", L".txt",
                             static_cast<vqFileDialogFlags>(vqFDNoReadOnlyReturn | vqFDHideReadOnly));
    EXPECT_EQ(fake.seen.record.hwndOwner, -2);
    EXPECT_EQ(fake.seen.title, "Save it");
    EXPECT_EQ(fake.seen.initialDir, "C:\\Data");
    EXPECT_EQ(fake.seen.defExt, ".txt");  // the dot is not stripped
    EXPECT_EQ(fake.seen.record.Flags, 0xFFFF8004u);
}

// Blanks around the choice go; the NULs that end it go too, and a multiple selection keeps
// the NULs between the folder and the names.
TEST(FileLibDialogs, FileDialogResults) {
    const struct {
        std::string written;
        bool chooses;
        String result;
    } rows[] = {
        {std::string("C:\\Data\\a.txt\0", 14), true, L"C:\\Data\\a.txt"},
        {std::string("C:\\Data\0a.txt\0b.txt\0\0", 21), true, String(L"C:\\Data\0a.txt\0b.txt", 19)},
        {std::string("  C:\\b.txt\0", 11), true, L"C:\\b.txt"},
        {std::string(254, 'x'), true, String(254, L'x')},
        {std::string("C:\\x\0", 5), false, L""},
    };
    for (const auto& row : rows) {
        {
            FakeOpen open(row.written, row.chooses);
            EXPECT_EQ(FileLib().FileOpenDialog(), row.result) << row.written;
        }
        FakeSave save(row.written, row.chooses);
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
    EXPECT_EQ(shell.askedOwner, 0);
    EXPECT_EQ(shell.askedFolder, vqSFProgramFiles);
    EXPECT_EQ(shell.seen.hwndOwner, 0);
    EXPECT_EQ(shell.seen.pidlRoot, FakeShell::Root);
    EXPECT_EQ(shell.title, "Select a Folder:");
    EXPECT_EQ(shell.seen.ulFlags, 0u);
    EXPECT_EQ(shell.displayName, std::string(260, '\0'));
    EXPECT_EQ(shell.seen.lpfn, nullptr);
    EXPECT_EQ(shell.seen.lParam, 0);
    EXPECT_EQ(shell.seen.iImage, 0);
    EXPECT_EQ(shell.freed, (std::vector<void*>{FakeShell::WithPath, FakeShell::Root}));
}

TEST(FileLibDialogs, FolderDialogCasesAndReleases) {
    const struct {
        const char* what;
        bool rootKnown;
        ItemIdList choice;
        const wchar_t* title;
        String result;
        std::string shownTitle;
        std::vector<void*> freed;
    } rows[] = {
        {"blank title", true, FakeShell::WithPath, L"   ", L"C:\\Chosen Folder", "   ", {FakeShell::WithPath, FakeShell::Root}},
        {"own title", true, FakeShell::WithPath, L"Pick", L"C:\\Chosen Folder", "Pick", {FakeShell::WithPath, FakeShell::Root}},
        {"unknown root", false, FakeShell::WithPath, L"", L"C:\\Chosen Folder", "Select a Folder:", {FakeShell::WithPath}},
        {"cancel", true, nullptr, L"", L"", "Select a Folder:", {FakeShell::Root}},
        {"no path", true, FakeShell::WithoutPath, L"", L"", "Select a Folder:", {FakeShell::WithoutPath, FakeShell::Root}},
    };
    for (const auto& row : rows) {
        FakeShell shell(row.rootKnown, row.choice);
        EXPECT_EQ(FileLib().FolderDialog(77, row.title, vqSFTemp, vqFDUseNewUI), row.result) << row.what;
        EXPECT_EQ(shell.askedOwner, 77) << row.what;
        EXPECT_EQ(shell.askedFolder, -1) << row.what;
        EXPECT_EQ(shell.seen.hwndOwner, 77) << row.what;
        EXPECT_EQ(shell.seen.pidlRoot, row.rootKnown ? FakeShell::Root : nullptr) << row.what;
        EXPECT_EQ(shell.seen.ulFlags, 80u) << row.what;
        EXPECT_EQ(shell.title, row.shownTitle) << row.what;
        EXPECT_EQ(shell.freed, row.freed) << row.what;
    }
}

}  // namespace
}  // namespace orbex
