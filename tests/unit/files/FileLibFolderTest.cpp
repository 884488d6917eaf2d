#include "FileLibSupport.h"

#include "files/FileLib.h"
#include "frame/Raises.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::SecurityAttributes;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Entry;
using testing::FakeFolders;
using testing::NothingRaised;
using testing::RaisedNumber;
using testing::TempTree;

constexpr platform::Dword Directory = 0x10, Normal = 0x80;

std::int64_t Bytes(Currency value) { return value.scaled / 10000; }

// Every missing level is made; the answer is that of the last level made, so a path that is
// already there answers False. Folders are named relative to the scratch tree.
TEST(FileLibFolders, CreateFolderMakesEveryMissingLevel) {
    const struct {
        const char* present;
        const char* create;
        Boolean result;
        std::vector<const char*> existAfter;
    } rows[] = {
        {"A", "A\\B\\C", True, {"A\\B", "A\\B\\C"}},
        {"A", "A", False, {"A"}},
        {"", "A\\B\\", True, {"A", "A\\B"}},
        {"", "  A\\B  ", True, {"A\\B"}},
        {"A\\B", "A\\B\\", False, {"A\\B"}},
    };
    const FileLib lib;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.create);
        TempTree tree;
        if (*row.present) tree.Folder(row.present);
        // Blanks around the whole path, not inside the tree's name.
        const std::string create = row.create;
        const std::size_t first = create.find_first_not_of(' ');
        const String request = TempTree::Wide(create.substr(0, first)) + tree[create.substr(first)];
        EXPECT_EQ(lib.CreateFolder(request), row.result);
        for (const char* name : row.existAfter) EXPECT_TRUE(tree.Exists(name)) << name;
    }
}

TEST(FileLibFolders, CreateFolderWithoutARootRaisesBeforeMakingAnything) {
    const FileLib lib;
    Recorder recorder;
    for (const wchar_t* relative : {L"", L"New", L"Dir\\New", L"\\Dir\\New", L"\\\\Server"}) {
        EXPECT_EQ(RaisedNumber([&] { lib.CreateFolder(relative); }), RunTime::InvalidArgument) << relative;
    }
    EXPECT_EQ(recorder.count("CreateDirectoryA"), 0u);
    EXPECT_EQ(lib.CreateFolder(L"C:\\"), False);  // a bare root has no level to make
}

// A failing level ends the walk: the levels before it stay, those after it are not tried.
TEST(FileLibFolders, CreateFolderStopsAtTheFirstLevelThatFails) {
    TempTree tree;
    const FileLib lib;
    std::vector<std::string> tried;
    Replace<&Api::CreateDirectoryA> create{[&](const char* path, SecurityAttributes* security) -> Bool {
        tried.emplace_back(path);
        if (std::string(path).ends_with("Two")) return 0;
        return platform::realApi().CreateDirectoryA(path, security);
    }};
    EXPECT_EQ(lib.CreateFolder(tree["One\\Two\\Three"]), False);
    EXPECT_EQ(tried, (std::vector<std::string>{tree.Path("One"), tree.Path("One\\Two")}));
    EXPECT_TRUE(tree.Exists("One"));
}

// A network root stays whole at the start of the path; a template makes every level through
// the call that copies the template's attributes.
TEST(FileLibFolders, CreateFolderOnANetworkRootAndWithATemplate) {
    const FileLib lib;
    {
        std::vector<std::string> made;
        Replace<&Api::CreateDirectoryA> create{[&](const char* path, SecurityAttributes*) -> Bool {
            made.emplace_back(path);
            return 1;
        }};
        EXPECT_EQ(lib.CreateFolder(L"\\\\Server\\Share\\New"), True);
        EXPECT_EQ(made, std::vector<std::string>{"\\\\Server\\Share\\New"});
    }
    TempTree tree;
    tree.Folder("Template");
    Recorder recorder;
    EXPECT_EQ(lib.CreateFolder(tree["X\\Y"], tree["Template"]), True);
    EXPECT_EQ(recorder.count("CreateDirectoryExA"), 2u);
    EXPECT_EQ(recorder.count("CreateDirectoryA"), 0u);
    EXPECT_TRUE(tree.Exists("X\\Y"));
}

TEST(FileLibFolders, DeleteFolderRemovesOnlyAnEmptyFolder) {
    TempTree tree;
    tree.Folder("Empty");
    tree.Folder("Full");
    tree.File("Full\\f.txt", 1);
    const FileLib lib;
    EXPECT_EQ(lib.DeleteFolder(tree["Empty"]), True);
    EXPECT_FALSE(tree.Exists("Empty"));
    EXPECT_EQ(lib.DeleteFolder(tree["Full"]), False);
    EXPECT_TRUE(tree.Exists("Full\\f.txt"));
    EXPECT_EQ(lib.DeleteFolder(tree["Missing"]), False);
}

TEST(FileLibFolders, CurrentFolderReadAndWritten) {
    TempTree tree;
    FileLib lib;
    const String before = lib.CurrentFolder();
    EXPECT_FALSE(before.empty());
    lib.CurrentFolder(tree[""]);
    EXPECT_EQ(lib.CurrentFolder(), tree[""]);

    RaisedError raised;
    try {
        lib.CurrentFolder(tree["Missing"]);
    } catch (const RaisedError& error) {
        raised = error;
    }
    EXPECT_EQ(raised.Number, 2);  // the platform's file-not-found, as Wine reports it
    EXPECT_EQ(raised.Source, L"Quillet:FileLib:CurrentFolder");
    EXPECT_EQ(raised.Description, L"Could not set current folder.");
    EXPECT_EQ(lib.CurrentFolder(), tree[""]);
    lib.CurrentFolder(before);
}

TEST(FileLibFolders, CurrentFolderReadFailureIsEmpty) {
    Replace<&Api::GetCurrentDirectoryA> fails{[](platform::Dword, char*) -> platform::Dword { return 0; }};
    EXPECT_EQ(FileLib().CurrentFolder(), L"");
}

// The three direct routes give the platform's text unchanged; everything else, and all three
// with the create flag, goes through the shell with the flag subtracted from the number.
TEST(FileLibFolders, GetSpecialFolderRoutes) {
    const FileLib lib;
    char temp[261] = {};
    const auto length = platform::realApi().GetTempPathA(sizeof temp, temp);
    EXPECT_EQ(lib.GetSpecialFolder(vqSFTemp), TempTree::Wide(std::string(temp, length)));
    EXPECT_EQ(lib.GetSpecialFolder(vqSFTemp).back(), L'\\');
    const String windows = lib.GetSpecialFolder(vqSFWindows);
    EXPECT_FALSE(windows.empty());
    EXPECT_NE(windows.back(), L'\\');
    EXPECT_EQ(lib.GetSpecialFolder(vqSFSystem).substr(0, windows.size()), windows);
    EXPECT_EQ(lib.GetSpecialFolder(vqSFControlPanel), L"");  // no path in the file system
    EXPECT_FALSE(lib.GetSpecialFolder(vqSFAppData).empty());

    std::vector<std::int32_t> asked;
    Replace<&Api::SHGetSpecialFolderLocation> shell{
        [&](platform::Handle owner, std::int32_t folder, platform::ItemIdList* list) -> platform::Hresult {
            EXPECT_EQ(owner, 0);
            asked.push_back(folder);
            *list = nullptr;
            return -2147467259;  // E_FAIL
        }};
    Recorder recorder;
    for (vqSpecialFolder folder : {vqSFTemp, vqSFWindows, vqSFSystem, vqSFAppData}) {
        EXPECT_EQ(lib.GetSpecialFolder(folder, True), L"");
    }
    EXPECT_EQ(lib.GetSpecialFolder(vqSFAppData), L"");
    EXPECT_EQ(asked, (std::vector<std::int32_t>{-32769, -32732, -32731, -32742, 26}));
    EXPECT_EQ(recorder.count("GetTempPathA") + recorder.count("GetWindowsDirectoryA"), 0u);
    EXPECT_EQ(recorder.count("CoTaskMemFree"), 0u);
}

TEST(FileLibFolders, GetFolderSizeOfARealTree) {
    TempTree tree;
    tree.File(".hidden", 100);
    tree.File("a.txt", 200);
    tree.Folder("sub\\deeper");
    tree.File("sub\\b.txt", 30);
    tree.File("sub\\deeper\\c.txt", 4);
    tree.Folder(".dotted");
    tree.File(".dotted\\d.txt", 5000);
    tree.Folder("empty");
    const FileLib lib;
    const struct {
        String folder;
        Boolean includeSubfolders;
        std::int64_t bytes;
    } rows[] = {
        {tree[""], True, 234},
        {tree[""] + L"\\", True, 234},
        {tree[""], False, 200},
        {tree["sub"], True, 34},
        {tree["empty"], True, 0},
        {tree["missing"], True, 0},
        {tree["a.txt"], True, 0},
        // The platform reads a path up to a NUL; the scan must not go on below what follows it.
        {tree["sub"] + String(L"\0tail", 5), True, 34},
        {tree[""] + String(L"\0", 1), True, 234},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Bytes(lib.GetFolderSize(row.folder, row.includeSubfolders)), row.bytes)
            << ::testing::PrintToString(row.folder) << " " << row.includeSubfolders;
    }
    Recorder recorder;
    lib.GetFolderSize(tree[""], False);
    EXPECT_EQ(recorder.count("FindFirstFileA"), 1u);  // sub-folders are not opened
    EXPECT_EQ(recorder.count("FindClose"), 1u);
}

// Only the low size word counts, as a signed number; a sub-folder that can't be read adds
// nothing and the scan goes on; every search opened is closed.
TEST(FileLibFolders, GetFolderSizeTakesTheLowWordSigned) {
    FakeFolders fake({
        {"X:\\Big\\*.*",
         {{".", Directory, 0},
          {"..", Directory, 0},
          {"three.gib", Normal, 0xC0000000u},
          {"four.gib.and.five", Normal, 5, 1},
          {"locked", Directory, 0},
          {"inner", Directory, 0}}},
        {"X:\\Big\\inner\\*.*", {{"small", Normal, 10}}},
    });
    EXPECT_EQ(Bytes(FileLib().GetFolderSize(L"X:\\Big")), -1073741824LL + 5 + 10);
    EXPECT_EQ(fake.patterns,
              (std::vector<std::string>{"X:\\Big\\*.*", "X:\\Big\\locked\\*.*", "X:\\Big\\inner\\*.*"}));
    EXPECT_EQ(fake.closed, 2);
}

TEST(FileLibFolders, GetFolderSizeBeyondCurrencyOverflows) {
    std::vector<Entry> many(429497, Entry{"f", Normal, 0x7FFFFFFF});
    FakeFolders fake({{"X:\\*.*", many}});
    EXPECT_EQ(RaisedNumber([] { FileLib().GetFolderSize(L"X:\\"); }), RunTime::Overflow);
    EXPECT_EQ(fake.closed, 1);  // the search is closed on the way out
}

// Existence tests on real files: FileExists takes the text as it is and finds folders too;
// FolderExists trims, drops one trailing backslash and wants the directory bit.
TEST(FileLibFolders, FileAndFolderExist) {
    TempTree tree;
    tree.File("f.txt", 1);
    tree.Folder("d");
    const FileLib lib;
    const struct {
        String text;
        Boolean file, folder;
    } rows[] = {
        {tree["f.txt"], True, False},
        {tree["d"], True, True},
        {tree["d"] + L"\\", False, True},
        {L"  " + tree["d"] + L"\\  ", False, True},
        {tree["*.txt"], True, False},
        {tree["d*"], True, True},
        {tree["missing"], False, False},
        {L"", False, False},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(lib.FileExists(row.text), row.file) << ::testing::PrintToString(row.text);
        EXPECT_EQ(lib.FolderExists(row.text), row.folder) << ::testing::PrintToString(row.text);
    }
}

}  // namespace
}  // namespace orbex
