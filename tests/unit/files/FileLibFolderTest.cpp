#include "FilesSupport.h"

#include "files/FileLib.h"
#include "frame/Raises.h"

#include <string>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::SecurityAttributes;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Bytes;
using testing::FakeFolders;
using testing::RaisedNumber;
using testing::TempTree;

constexpr platform::Dword Directory = 0x10, Normal = 0x80;

TEST(FileLibFolders, CreateFolderWithoutARootRaisesBeforeMakingAnything) {
    const FileLib lib;
    Recorder recorder;
    for (const wchar_t* relative : {L"", L"Dir\\New", L"\\Dir\\New", L"\\\\Server"}) {
        EXPECT_EQ(RaisedNumber([&] { lib.CreateFolder(relative); }), RunTime::InvalidArgument) << relative;
    }
    EXPECT_EQ(recorder.count("CreateDirectoryA"), 0u);
    EXPECT_EQ(lib.CreateFolder(L"C:\\"), False);  // a bare root has no level to make
}

// Every missing level is made, and the answer is that of the last level made, so a path that
// is already there answers False. A network root stays whole at the start of the path; a
// failing level ends the walk; a template makes every level through the call that copies the
// template's attributes.
TEST(FileLibFolders, CreateFolderLevelByLevel) {
    const FileLib lib;
    TempTree tree;
    tree.Folder("A");
    EXPECT_EQ(lib.CreateFolder(L"  " + tree["A\\B\\C\\  "]), True);
    EXPECT_TRUE(tree.Exists("A\\B\\C"));
    EXPECT_EQ(lib.CreateFolder(tree["A\\B"]), False);
    {
        Recorder recorder;
        EXPECT_EQ(lib.CreateFolder(tree["X\\Y"], tree["A"]), True);
        EXPECT_EQ(recorder.count("CreateDirectoryExA"), 2u);
        EXPECT_TRUE(tree.Exists("X\\Y"));
    }
    std::vector<std::string> tried;
    Replace<&Api::CreateDirectoryA> create{[&](const char* path, SecurityAttributes*) -> Bool {
        tried.emplace_back(path);
        return !std::string(path).ends_with("Two");
    }};
    EXPECT_EQ(lib.CreateFolder(L"\\\\Server\\Share\\New"), True);
    EXPECT_EQ(tried, std::vector<std::string>{"\\\\Server\\Share\\New"});
    tried.clear();
    EXPECT_EQ(lib.CreateFolder(L"Q:\\One\\Two\\Three"), False);
    EXPECT_EQ(tried, (std::vector<std::string>{"Q:\\One", "Q:\\One\\Two"}));
}

// The three direct routes give the platform's text; everything else, and all three with the
// create flag, goes through the shell with the flag subtracted from the number.
TEST(FileLibFolders, GetSpecialFolderRoutes) {
    const FileLib lib;
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
        EXPECT_EQ(lib.GetSpecialFolder(folder, True), L"") << folder;
    }
    EXPECT_EQ(lib.GetSpecialFolder(vqSFAppData), L"");
    EXPECT_EQ(asked, (std::vector<std::int32_t>{-32769, -32732, -32731, -32742, 26}));
    EXPECT_EQ(recorder.count("CoTaskMemFree"), 0u);
    EXPECT_EQ(lib.GetSpecialFolder(vqSFTemp).back(), L'\\');  // straight from the platform
}

// Only the low size word counts, as a signed number; names beginning with a dot are passed
// over; a sub-folder that can't be read adds nothing and the scan goes on; every search opened
// is closed.
TEST(FileLibFolders, GetFolderSizeTakesTheLowWordSigned) {
    FakeFolders fake({
        {"X:\\Big\\*.*", {{".", Directory, 0}, {"..", Directory, 0}, {".hidden", Normal, 100}, {".dotted", Directory, 0},
                          {"three.gib", Normal, 0xC0000000u}, {"four.gib.and.five", Normal, 5, 1},
                          {"locked", Directory, 0}, {"inner", Directory, 0}}},
        {"X:\\Big\\inner\\*.*", {{"small", Normal, 10}}},
        {"X:\\Big\\.dotted\\*.*", {{"unseen", Normal, 1000}}},
    });
    const FileLib lib;
    EXPECT_EQ(Bytes(lib.GetFolderSize(L"X:\\Big")), -1073741824LL + 5 + 10);
    EXPECT_EQ(fake.patterns,
              (std::vector<std::string>{"X:\\Big\\*.*", "X:\\Big\\locked\\*.*", "X:\\Big\\inner\\*.*"}));
    EXPECT_EQ(fake.closed, 2);
    EXPECT_EQ(Bytes(lib.GetFolderSize(L"X:\\Big\\", False)), -1073741824LL + 5);
    EXPECT_EQ(fake.patterns.back(), "X:\\Big\\*.*");
    EXPECT_EQ(Bytes(lib.GetFolderSize(L"X:\\Missing")), 0);
    // The platform reads a path up to a NUL; the scan must not go on below what follows it.
    EXPECT_EQ(Bytes(lib.GetFolderSize(String(L"X:\\Big\0tail", 11), False)), -1073741824LL + 5);
    EXPECT_EQ(fake.patterns.back(), "X:\\Big\\*.*");
}

TEST(FileLibFolders, GetFolderSizeBeyondCurrencyOverflows) {
    std::vector<testing::Entry> many(429497, testing::Entry{"f", Normal, 0x7FFFFFFF});
    FakeFolders fake({{"X:\\*.*", many}});
    EXPECT_EQ(RaisedNumber([] { FileLib().GetFolderSize(L"X:\\"); }), RunTime::Overflow);
    EXPECT_EQ(fake.closed, 1);  // the search is closed on the way out
}

// Existence tests on real files: FileExists takes the text as it is and finds folders too;
// FolderExists trims, drops one trailing backslash and wants the directory bit.
TEST(FileLibFolders, FileAndFolderExist) {
    TempTree tree;
    tree.File("f.txt", "x");
    tree.Folder("d");
    const FileLib lib;
    const struct { String text; Boolean file, folder; } rows[] = {
        {tree["f.txt"], True, False},
        {tree["d"], True, True},
        {L"  " + tree["d"] + L"\\  ", False, True},
        {tree["*.txt"], True, False},
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
