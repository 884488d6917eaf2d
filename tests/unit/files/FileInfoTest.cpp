#include "files/FileInfo.h"

#include "InfoSupport.h"
#include "frame/Ansi.h"

#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::Dword;
using platform::FileTime;
using platform::Handle;
using platform::SystemTime;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Bytes;
using testing::ScratchFolder;

std::vector<Boolean> Attributes(const FileInfo& f) {
    return {f.AttributeArchive(), f.AttributeCompressed(), f.AttributeDirectory(), f.AttributeEncrypted(),
            f.AttributeHidden(), f.AttributeNormal(), f.AttributeNotContentIndexed(), f.AttributeOffline(),
            f.AttributeReadOnly(), f.AttributeReparsePoint(), f.AttributeSparseFile(), f.AttributeSystem(),
            f.AttributeTemporary()};
}
std::vector<double> Stamps(const FileInfo& f) {
    return {f.CreationDate().days, f.LastAccessDate().days, f.LastWriteDate().days};
}

// A local wall-clock time as days since 1899-12-30, worked out without the platform.
double Days(const SystemTime& t) {
    const int y = t.wYear - (t.wMonth <= 2), era = y / 400, yoe = y - era * 400;
    const int doy = (153 * (t.wMonth + (t.wMonth > 2 ? -3 : 9)) + 2) / 5 + t.wDay - 1;
    return era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468 + 25569 +
           (t.wHour * 3600 + t.wMinute * 60 + t.wSecond) / 86400.0;
}

// The three stamps the directory entry holds, made local, the milliseconds dropped.
std::vector<double> PlatformStamps(const std::string& path) {
    const auto& api = platform::realApi();
    platform::Win32FindData data{};
    api.FindClose(api.FindFirstFileA(path.c_str(), &data));
    std::vector<double> days;
    for (const FileTime& utc : {data.ftCreationTime, data.ftLastAccessTime, data.ftLastWriteTime}) {
        FileTime local{};
        SystemTime system{};
        api.FileTimeToLocalFileTime(&utc, &local);
        api.FileTimeToSystemTime(&local, &system);
        days.push_back(Days(system));
    }
    return days;
}

void ExpectNear(const std::vector<double>& actual, const std::vector<double>& expected) {
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(actual.at(i), expected[i], 1e-7) << "stamp " << i;
}

TEST(FileInfo, FilesFoldersAndNamesThatDoNotOpen) {
    ScratchFolder folder;
    FileInfo info;
    EXPECT_EQ(Attributes(info), std::vector<Boolean>(13, False));
    EXPECT_EQ(Stamps(info), std::vector<double>(3, 0));

    info.Filename(folder.Write("five.txt", "hello"));
    EXPECT_EQ(info.FileType(), vqFTDisk);
    EXPECT_EQ(Bytes(info.Size()), 5);
    EXPECT_EQ(info.AttributeDirectory(), False);
    ExpectNear(Stamps(info), PlatformStamps(folder.Path("five.txt")));

    info.Filename(testing::Wide(folder.path));
    EXPECT_EQ(info.AttributeDirectory(), True);
    ExpectNear(Stamps(info), PlatformStamps(folder.path));

    // Type and size cleared, every attribute True, the dates of the folder kept.
    const std::vector<double> kept = Stamps(info);
    for (const String& name : {testing::Wide(folder.Path("missing.txt")), String(), String(L"no\\such\\place"),
                               String(L"\u0142\u4E2D.txt")}) {
        info.Filename(name);
        EXPECT_EQ(info.Filename(), AnsiRoundTrip(name));  // as the platform received it
        EXPECT_EQ(info.FileType(), vqFTUnknown);
        EXPECT_EQ(info.Size(), Currency{});
        EXPECT_EQ(Attributes(info), std::vector<Boolean>(13, True));
        EXPECT_EQ(Stamps(info), kept);
    }
}

// Each writable property changes its own bit of the word the load found and sends the whole
// word, refused or not. A Not loaded object (word -1) sends nothing and keeps its word.
TEST(FileInfo, AttributeWrites) {
    ScratchFolder folder;
    const String name = folder.Write("word.txt", "x");
    constexpr Dword Loaded = 0x4A80;
    Replace<&Api::GetFileAttributesA> attributes{[](const char*) { return Loaded; }};
    std::vector<Dword> sent;
    Replace<&Api::SetFileAttributesA> set{[&](const char*, Dword word) { return sent.push_back(word), Bool{0}; }};
    using Write = void (FileInfo::*)(Boolean);
    using Read = Boolean (FileInfo::*)() const;
    const std::tuple<Write, Read, Dword> rows[] = {
        {&FileInfo::AttributeArchive, &FileInfo::AttributeArchive, 0x20},
        {&FileInfo::AttributeHidden, &FileInfo::AttributeHidden, 0x2},
        {&FileInfo::AttributeNotContentIndexed, &FileInfo::AttributeNotContentIndexed, 0x2000},
        {&FileInfo::AttributeOffline, &FileInfo::AttributeOffline, 0x1000},
        {&FileInfo::AttributeReadOnly, &FileInfo::AttributeReadOnly, 0x1},
        {&FileInfo::AttributeSystem, &FileInfo::AttributeSystem, 0x4},
        {&FileInfo::AttributeTemporary, &FileInfo::AttributeTemporary, 0x100}};
    for (const auto& [write, read, bit] : rows) {
        FileInfo info;
        info.Filename(name);
        sent.clear();
        (info.*write)(1);
        EXPECT_EQ((info.*read)(), True) << bit;
        (info.*write)(False);
        EXPECT_EQ((info.*read)(), False) << bit;
        EXPECT_EQ(sent, (std::vector<Dword>{Loaded | bit, Loaded & ~bit})) << bit;

        info.Filename(L"missing");
        sent.clear();
        (info.*write)(False);
        EXPECT_TRUE(sent.empty()) << bit;
        EXPECT_EQ((info.*read)(), True) << bit;
    }
}

TEST(FileInfo, ReadOnlyWriteReachesTheFile) {
    ScratchFolder folder;
    const std::string path = folder.Path("locked.txt");
    FileInfo info;
    info.Filename(folder.Write("locked.txt", "x"));
    const Dword before = platform::realApi().GetFileAttributesA(path.c_str());
    info.AttributeReadOnly(True);
    EXPECT_EQ(platform::realApi().GetFileAttributesA(path.c_str()), before | 0x1);
    info.AttributeReadOnly(False);
    EXPECT_EQ(platform::realApi().GetFileAttributesA(path.c_str()), before);
}

// Open flags and size query by family and version; the length by name is a signed 32-bit count,
// the 64-bit size is exact to the Currency limit, and beyond it the load stops, handle closed.
TEST(FileInfo, OpenAndSizeByPlatform) {
    ScratchFolder folder;
    const String name = folder.Write("seven.txt", "1234567");
    struct Row {
        testing::Windows windows;
        Dword flags;
        bool sizeEx;
    };
    for (const Row& row : {Row{testing::Win95, 0, false}, Row{testing::Nt351, 0x2000000, false},
                           Row{testing::Nt4, 0x2000000, false}, Row{testing::Win2000, 0x2000000, true}}) {
        testing::PretendWindows pretend{row.windows};
        std::vector<Dword> flags;
        Replace<&Api::CreateFileA> open{[&](const char* n, Dword a, Dword s, platform::SecurityAttributes* sa, Dword d,
                                            Dword f, Handle t) {
            return flags.push_back(f), platform::realApi().CreateFileA(n, a, s, sa, d, f, t);
        }};
        Recorder recorder;
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(flags, std::vector<Dword>{row.flags}) << row.windows.major;
        EXPECT_EQ(recorder.count("GetFileSizeEx"), row.sizeEx ? 1u : 0u) << row.windows.major;
        EXPECT_EQ(recorder.count("FindClose"), row.sizeEx ? 0u : 1u) << row.windows.major;
        EXPECT_EQ(Bytes(info.Size()), 7) << row.windows.major;
    }
    {
        testing::PretendWindows pretend{testing::Nt4};
        Replace<&Api::FindFirstFileA> find{[](const char*, platform::Win32FindData* data) {
            return *data = {}, data->nFileSizeHigh = 1, data->nFileSizeLow = 0x80000000, Handle{77};
        }};
        Replace<&Api::FindClose> close{[](Handle search) { return Bool{search == 77}; }};
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(Bytes(info.Size()), -2147483648LL);
    }
    for (const std::int64_t reported : {5000000000LL, 922337203685477LL, 922337203685478LL}) {
        Replace<&Api::GetFileSizeEx> size{[&](Handle, std::int64_t* out) { return *out = reported, Bool{1}; }};
        Recorder recorder;
        FileInfo info;
        info.Filename(name);
        const bool fits = reported <= 922337203685477LL;
        EXPECT_EQ(Bytes(info.Size()), fits ? reported : 0);
        EXPECT_EQ(info.LastWriteDate().days != 0, fits) << reported;
        EXPECT_EQ(recorder.count("CloseHandle"), 1u) << reported;
    }
}

// Whole seconds through the date and time texts; a refused conversion leaves its field alone;
// text the date conversion does not accept gives 0.
TEST(FileInfo, StampConversions) {
    ScratchFolder folder;
    const String name = folder.Write("stamp.txt", "x");
    const SystemTime late{2002, 1, 6, 5, 13, 4, 5, 999};
    Replace<&Api::FileTimeToSystemTime> system{[&](const FileTime*, SystemTime* out) { return *out = late, Bool{1}; }};
    int call = 0;
    Replace<&Api::FileTimeToLocalFileTime> local{[&](const FileTime* in, FileTime* out) {
        return *out = *in, Bool{++call != 2};
    }};
    FileInfo info;
    info.Filename(name);
    const double expected = Days({2002, 1, 0, 5, 13, 4, 5, 0});
    ExpectNear(Stamps(info), {expected, 0, expected});

    Replace<&Api::GetDateFormatA> format{[](platform::Lcid, Dword, const SystemTime*, const char*, char* buffer,
                                            std::int32_t) { return std::strcpy(buffer, "no date"), 8; }};
    info.Filename(name);
    EXPECT_EQ(Stamps(info), std::vector<double>(3, 0));
}

}  // namespace
}  // namespace orbex
