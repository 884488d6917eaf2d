#include "files/FileInfo.h"

#include "InfoSupport.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::FileTime;
using platform::Handle;
using platform::SystemTime;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Bytes;
using testing::PretendWindows;
using testing::ScratchFolder;

// The thirteen attribute properties, in the order of the interface.
std::vector<Boolean> Attributes(const FileInfo& info) {
    return {info.AttributeArchive(),    info.AttributeCompressed(),        info.AttributeDirectory(),
            info.AttributeEncrypted(),  info.AttributeHidden(),            info.AttributeNormal(),
            info.AttributeNotContentIndexed(), info.AttributeOffline(),    info.AttributeReadOnly(),
            info.AttributeReparsePoint(), info.AttributeSparseFile(),      info.AttributeSystem(),
            info.AttributeTemporary()};
}
const std::vector<Boolean> AllTrue(13, True);
const std::vector<Boolean> AllFalse(13, False);

// Days since 1899-12-30 of a calendar day, worked out without the platform.
double DayNumber(int year, int month, int day) {
    year -= month <= 2;
    const int era = year / 400;
    const int yearOfEra = year - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468 + 25569;  // 1970-01-01 is day 25569
}

double Expected(const SystemTime& t) {
    return DayNumber(t.wYear, t.wMonth, t.wDay) + (t.wHour * 3600 + t.wMinute * 60 + t.wSecond) / 86400.0;
}

// What the platform itself reports for a file's three stamps, as local wall-clock Dates.
std::vector<double> PlatformStamps(const std::string& path) {
    const auto& api = platform::realApi();
    platform::Win32FindData data{};
    const Handle search = api.FindFirstFileA(path.c_str(), &data);
    EXPECT_NE(search, platform::InvalidHandle);
    api.FindClose(search);
    std::vector<double> dates;
    for (const FileTime& utc : {data.ftCreationTime, data.ftLastAccessTime, data.ftLastWriteTime}) {
        FileTime local{};
        SystemTime system{};
        api.FileTimeToLocalFileTime(&utc, &local);
        api.FileTimeToSystemTime(&local, &system);
        dates.push_back(Expected(system));
    }
    return dates;
}

std::vector<double> Stamps(const FileInfo& info) {
    return {info.CreationDate().days, info.LastAccessDate().days, info.LastWriteDate().days};
}

void ExpectDates(const std::vector<double>& actual, const std::vector<double>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-7) << "stamp " << i;
}

TEST(FileInfo, NewObjectShowsNothing) {
    const FileInfo info;
    EXPECT_EQ(info.Filename(), L"");
    EXPECT_EQ(info.FileType(), vqFTUnknown);
    EXPECT_EQ(info.Size(), Currency{});
    EXPECT_EQ(Attributes(info), AllFalse);
    EXPECT_EQ(Stamps(info), (std::vector<double>{0, 0, 0}));
}

TEST(FileInfo, RealFileGivesItsValuesAndStamps) {
    ScratchFolder folder;
    const String name = folder.Write("five.txt", "hello");
    FileInfo info;
    info.Filename(name);
    EXPECT_EQ(info.Filename(), name);
    EXPECT_EQ(info.FileType(), vqFTDisk);
    EXPECT_EQ(Bytes(info.Size()), 5);
    EXPECT_EQ(info.AttributeDirectory(), False);
    EXPECT_EQ(info.AttributeReadOnly(), False);
    EXPECT_EQ(info.AttributeArchive(), toBoolean(platform::realApi().GetFileAttributesA(folder.Path("five.txt").c_str()) & 0x20));
    ExpectDates(Stamps(info), PlatformStamps(folder.Path("five.txt")));

    const String empty = folder.Write("empty.txt", "");
    info.Filename(empty);
    EXPECT_EQ(info.FileType(), vqFTDisk);
    EXPECT_EQ(Bytes(info.Size()), 0);
    EXPECT_EQ(info.AttributeDirectory(), False);
}

TEST(FileInfo, FolderIsDescribedOnTheNtFamily) {
    ScratchFolder folder;
    FileInfo info;
    info.Filename(folder.Folder());
    EXPECT_EQ(info.AttributeDirectory(), True);
    ExpectDates(Stamps(info), PlatformStamps(folder.FolderPath()));
}

TEST(FileInfo, NamesThatDoNotOpenLeaveTheResetAndKeepTheDates) {
    ScratchFolder folder;
    const String real = folder.Write("real.txt", "some bytes");
    for (const String& missing : {folder.Name("missing.txt"), String(), folder.Name("no\\such\\place.txt")}) {
        FileInfo info;
        info.Filename(real);
        const std::vector<double> before = Stamps(info);
        ASSERT_NE(before[2], 0);
        info.Filename(missing);
        EXPECT_EQ(info.Filename(), missing);
        EXPECT_EQ(info.FileType(), vqFTUnknown);
        EXPECT_EQ(info.Size(), Currency{});
        EXPECT_EQ(Attributes(info), AllTrue);
        EXPECT_EQ(Stamps(info), before);
    }
}

// Each writable property sets and clears its own bit and sends the whole word, the other bits
// as the load found them.
TEST(FileInfo, AttributeWritesSendTheLoadedWordWithOneBitChanged) {
    ScratchFolder folder;
    const String name = folder.Write("word.txt", "x");
    struct Row {
        const char* property;
        void (FileInfo::*write)(Boolean);
        Boolean (FileInfo::*read)() const;
        Long bit;
    };
    const Row rows[] = {
        {"Archive", &FileInfo::AttributeArchive, &FileInfo::AttributeArchive, 0x20},
        {"Hidden", &FileInfo::AttributeHidden, &FileInfo::AttributeHidden, 0x2},
        {"NotContentIndexed", &FileInfo::AttributeNotContentIndexed, &FileInfo::AttributeNotContentIndexed, 0x2000},
        {"Offline", &FileInfo::AttributeOffline, &FileInfo::AttributeOffline, 0x1000},
        {"ReadOnly", &FileInfo::AttributeReadOnly, &FileInfo::AttributeReadOnly, 0x1},
        {"System", &FileInfo::AttributeSystem, &FileInfo::AttributeSystem, 0x4},
        {"Temporary", &FileInfo::AttributeTemporary, &FileInfo::AttributeTemporary, 0x100},
    };
    constexpr platform::Dword Loaded = 0x4A80;  // bits only the platform sets, among others
    Replace<&Api::GetFileAttributesA> attributes{[](const char*) { return Loaded; }};
    std::vector<platform::Dword> sent;
    Replace<&Api::SetFileAttributesA> set{[&](const char*, platform::Dword word) {
        sent.push_back(word);
        return platform::Bool{0};  // refused: the cached word shows the write all the same
    }};
    for (const Row& row : rows) {
        FileInfo info;
        info.Filename(name);
        sent.clear();
        (info.*row.write)(1);  // any set bit counts as True
        EXPECT_EQ((info.*row.read)(), True) << row.property;
        (info.*row.write)(False);
        EXPECT_EQ((info.*row.read)(), False) << row.property;
        EXPECT_EQ(sent, (std::vector<platform::Dword>{Loaded | row.bit, Loaded & ~static_cast<platform::Dword>(row.bit)}))
            << row.property;
    }
}

TEST(FileInfo, ReadOnlyWriteReachesTheFileAndKeepsTheOtherBits) {
    ScratchFolder folder;
    const String name = folder.Write("locked.txt", "x");
    const std::string path = folder.Path("locked.txt");
    const platform::Dword before = platform::realApi().GetFileAttributesA(path.c_str());
    FileInfo info;
    info.Filename(name);
    info.AttributeReadOnly(True);
    EXPECT_EQ(platform::realApi().GetFileAttributesA(path.c_str()), before | 0x1);
    info.Filename(name);
    EXPECT_EQ(info.AttributeReadOnly(), True);
    info.AttributeReadOnly(False);
    EXPECT_EQ(platform::realApi().GetFileAttributesA(path.c_str()), before);
}

// A Not loaded object holds -1, which is no set of attributes: a write is dropped whole.
TEST(FileInfo, AttributeWriteOnNotLoadedObjectDoesNothing) {
    ScratchFolder folder;
    FileInfo info;
    info.Filename(folder.Name("missing.txt"));
    int calls = 0;
    Replace<&Api::SetFileAttributesA> set{[&](const char*, platform::Dword) { return ++calls, platform::Bool{1}; }};
    info.AttributeReadOnly(False);
    info.AttributeHidden(True);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(Attributes(info), AllTrue);
}

// The open flags and the size query follow the platform family and version.
TEST(FileInfo, OlderPlatformsOpenWithoutBackupSemanticsAndReadTheLengthByName) {
    ScratchFolder folder;
    const String name = folder.Write("seven.txt", "1234567");
    struct Row {
        const char* system;
        testing::Windows windows;
        platform::Dword flags;
        bool sizeEx;
    };
    for (const Row& row : {Row{"Windows 95", testing::Win95, 0, false}, Row{"Windows 98", testing::Win98, 0, false},
                           Row{"NT 3.51", testing::Nt351, 0x2000000, false}, Row{"NT 4", testing::Nt4, 0x2000000, false},
                           Row{"2000", testing::Win2000, 0x2000000, true}, Row{"XP", testing::WinXP, 0x2000000, true}}) {
        PretendWindows pretend{row.windows};
        std::vector<platform::Dword> flags;
        Replace<&Api::CreateFileA> open{[&](const char* n, platform::Dword a, platform::Dword s,
                                            platform::SecurityAttributes* sa, platform::Dword d, platform::Dword f,
                                            Handle t) {
            flags.push_back(f);
            return platform::realApi().CreateFileA(n, a, s, sa, d, f, t);
        }};
        Recorder recorder;
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(flags, std::vector<platform::Dword>{row.flags}) << row.system;
        EXPECT_EQ(recorder.count("GetFileSizeEx"), row.sizeEx ? 1u : 0u) << row.system;
        EXPECT_EQ(recorder.count("FindFirstFileA"), row.sizeEx ? 0u : 1u) << row.system;
        EXPECT_EQ(recorder.count("FindClose"), recorder.count("FindFirstFileA")) << row.system;
        EXPECT_EQ(recorder.count("CloseHandle"), 1u) << row.system;
        EXPECT_EQ(Bytes(info.Size()), 7) << row.system;
    }
}

// The length by name is a signed 32-bit number; the 64-bit size is exact up to the Currency
// limit, and beyond it the load ends there, the handle closed.
TEST(FileInfo, SizeForms) {
    ScratchFolder folder;
    const String name = folder.Write("size.txt", "x");
    {
        PretendWindows pretend{testing::Nt4};
        Replace<&Api::FindFirstFileA> find{[](const char*, platform::Win32FindData* data) {
            *data = {};
            data->nFileSizeHigh = 1;
            data->nFileSizeLow = 0x80000000;
            return Handle{1234};
        }};
        Replace<&Api::FindClose> close{[](Handle search) { return platform::Bool{search == 1234}; }};
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(Bytes(info.Size()), -2147483648LL);
    }
    struct Row {
        std::int64_t reported;
        std::int64_t size;
        bool stamped;
    };
    for (const Row& row : {Row{5000000000LL, 5000000000LL, true}, Row{922337203685477LL, 922337203685477LL, true},
                           Row{922337203685478LL, 0, false}}) {
        Replace<&Api::GetFileSizeEx> size{[&](Handle, std::int64_t* out) { return *out = row.reported, platform::Bool{1}; }};
        Recorder recorder;
        FileInfo info;
        info.Filename(name);
        EXPECT_EQ(Bytes(info.Size()), row.size) << row.reported;
        EXPECT_EQ(info.LastWriteDate().days != 0, row.stamped) << row.reported;
        EXPECT_EQ(info.AttributeDirectory(), False) << row.reported;
        EXPECT_EQ(recorder.count("CloseHandle"), 1u) << row.reported;
    }
}

// The stamp goes through its date and time texts: whole seconds, the milliseconds dropped.
TEST(FileInfo, StampsKeepWholeSecondsAndSurviveOneFailedConversion) {
    ScratchFolder folder;
    const String name = folder.Write("stamp.txt", "x");
    const SystemTime late{2002, 1, 6, 5, 13, 4, 5, 999};
    Replace<&Api::FileTimeToSystemTime> system{[&](const FileTime*, SystemTime* out) { return *out = late, platform::Bool{1}; }};
    int call = 0;
    Replace<&Api::FileTimeToLocalFileTime> local{[&](const FileTime* in, FileTime* out) {
        *out = *in;
        return platform::Bool{++call != 2};  // the last access stamp is refused
    }};
    FileInfo info;
    info.Filename(name);
    const double expected = DayNumber(2002, 1, 5) + (13 * 3600 + 4 * 60 + 5) / 86400.0;
    EXPECT_NEAR(info.CreationDate().days, expected, 1e-7);
    EXPECT_EQ(info.LastAccessDate().days, 0);
    EXPECT_NEAR(info.LastWriteDate().days, expected, 1e-7);
}

TEST(FileInfo, DateTextTheConversionRefusesGivesZero) {
    ScratchFolder folder;
    const String name = folder.Write("text.txt", "x");
    FileInfo info;
    info.Filename(name);
    ASSERT_NE(info.LastWriteDate().days, 0);
    Replace<&Api::GetDateFormatA> format{[](platform::Lcid, platform::Dword, const SystemTime*, const char*, char* buffer,
                                            std::int32_t) { return std::strcpy(buffer, "no date"), 8; }};
    info.Filename(name);
    EXPECT_EQ(Stamps(info), (std::vector<double>{0, 0, 0}));
}

TEST(FileInfo, FailedTimeQueryLeavesTheDates) {
    ScratchFolder folder;
    const String name = folder.Write("time.txt", "x");
    FileInfo info;
    info.Filename(name);
    const std::vector<double> before = Stamps(info);
    Replace<&Api::GetFileTime> time{[](Handle, FileTime*, FileTime*, FileTime*) { return platform::Bool{0}; }};
    Replace<&Api::GetFileSizeEx> size{[](Handle, std::int64_t* out) { return *out = 3, platform::Bool{1}; }};
    info.Filename(name);
    EXPECT_EQ(Bytes(info.Size()), 3);
    EXPECT_EQ(Stamps(info), before);
}

}  // namespace
}  // namespace orbex
