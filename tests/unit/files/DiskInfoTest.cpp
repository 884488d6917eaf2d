#include "files/DiskInfo.h"

#include "FilesSupport.h"

#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::Dword;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Bytes;

// Every figure a client reads, the sizes in whole bytes.
struct Figures {
    String root, label, fileSystem, hex;
    Long maxLength, driveType;
    std::vector<std::int64_t> sizes;  // total, total free, used, user free
    std::vector<Boolean> flags;
    friend bool operator==(const Figures&, const Figures&) = default;
};

Figures Read(const DiskInfo& d) {
    return {d.RootName(), d.VolumeLabel(), d.FileSystem(), d.SerialNumberHex(), d.MaxFilenameLength(), d.DriveType(),
            {Bytes(d.TotalBytes()), Bytes(d.TotalBytesFree()), Bytes(d.TotalBytesUsed()), Bytes(d.UserBytesFree())},
            {d.SupportsCaseSensitiveFilenames(), d.CaseIsPreserved(), d.PersistentACLs(), d.SupportsUnicodeFilenames(),
             d.SupportsFileBasedCompression(), d.VolumeCompressed()}};
}

// A volume the platform describes as the test says; the last error is 21 throughout.
struct FakeVolume {
    const char* label = "FAKE";
    Dword serial = 0x12345678, flags = 0x6, driveType = 3;
    Bool volumeResult = 1;
    std::uint64_t callerFree = 100, total = 1000, totalFree = 400;
    Dword sectors = 8, bytesPerSector = 512, freeClusters = 10, totalClusters = 20;

    Replace<&Api::GetVolumeInformationA> volume{[this](const char*, char* name, Dword nameSize, Dword* s, Dword* m,
                                                       Dword* f, char* fs, Dword fsSize) {
        EXPECT_EQ(nameSize * 100 + fsSize, 3325u);
        if (volumeResult) std::strcpy(name, label), std::strcpy(fs, "FAT"), *s = serial, *m = 255, *f = flags;
        return volumeResult;
    }};
    Replace<&Api::GetLastError> lastError{[] { return Dword{21}; }};
    Replace<&Api::GetDriveTypeA> type{[this](const char*) { return driveType; }};
    Replace<&Api::GetDiskFreeSpaceExA> ex{[this](const char*, std::uint64_t* c, std::uint64_t* t, std::uint64_t* f) {
        return *c = callerFree, *t = total, *f = totalFree, Bool{1};
    }};
    Replace<&Api::GetDiskFreeSpaceA> plain{[this](const char*, Dword* s, Dword* b, Dword* f, Dword* t) {
        return *s = sectors, *b = bytesPerSector, *f = freeClusters, *t = totalClusters, Bool{1};
    }};
};

const Figures Nothing{L"", L"", L"", L"0000-0000", 0, vqDTUnknown, {0, 0, 0, 0}, std::vector<Boolean>(6, False)};

// A refused root, or none at all, keeps the last good volume's figures under the new root
// name, and raises nothing. Without a root the platform is not asked.
TEST(DiskInfo, RefusedRootsKeepTheFigures) {
    EXPECT_EQ(Read(DiskInfo()), Nothing);
    for (const auto& [text, root] : {std::pair<const wchar_t*, const wchar_t*>{L"Q:\\", L"Q:\\"}, {L"", L""},
                                     {L"relative\\name.txt", L""}, {L"\\\\server", L""}}) {
        DiskInfo info;
        info.RootName(L"C:");
        Figures expected = Read(info);
        expected.root = root;
        Recorder recorder;
        info.RootName(text);
        EXPECT_EQ(Read(info), expected) << text;
        EXPECT_EQ(recorder.count("GetVolumeInformationA"), *root ? 1u : 0u) << text;
        EXPECT_EQ(recorder.count("GetDriveTypeA"), 0u) << text;
    }
}

TEST(DiskInfo, FiguresFlagsSerialsAndDriveTypes) {
    FakeVolume volume;
    DiskInfo info;
    info.RootName(L"C:\\");
    const Figures good{L"C:\\", L"FAKE", L"FAT", L"1234-5678", 255, vqDTFixed, {1000, 400, 600, 100},
                       {False, True, False, True, False, False}};
    EXPECT_EQ(Read(info), good);
    volume.volumeResult = 0;  // fails after a good one: nothing else is read
    volume.total = 5000;
    info.RootName(L"D:\\");
    Figures expected = good;
    expected.root = L"D:\\";
    EXPECT_EQ(Read(info), expected);

    volume.volumeResult = 1;
    const Dword bits[] = {0x1, 0x2, 0x8, 0x4, 0x10, 0x8000};  // in the order of the properties
    for (std::size_t i = 0; i < 6; ++i) {
        volume.flags = bits[i];
        info.RootName(L"C:\\");
        std::vector<Boolean> one(6, False);
        one[i] = True;
        EXPECT_EQ(Read(info).flags, one) << bits[i];
    }
    for (const auto& [serial, hex] : {std::pair<Dword, const wchar_t*>{0xFFFFFFFF, L"FFFF-FFFF"}, {0xA0B0C0D, L"0A0B-0C0D"}}) {
        volume.serial = serial;
        info.RootName(L"C:\\");
        EXPECT_EQ(info.SerialNumberHex(), hex);
    }
    for (const auto& [reported, stored] : {std::pair<Dword, Long>{1, vqDTUnknown}, {5, vqDTCDROM}}) {
        volume.driveType = reported;
        info.RootName(L"C:\\");
        EXPECT_EQ(info.DriveType(), stored) << reported;
    }
}

// Windows 95 before OSR2 and NT 3 have no 64-bit query: sizes from clusters, the caller's free
// bytes equal to the volume's.
TEST(DiskInfo, SizeQueryFollowsTheSystem) {
    constexpr testing::Version Win95Osr2{1, 4, 0, 0, 0, " C"};
    for (const auto& [windows, large] : {std::pair{testing::Win95, false}, {Win95Osr2, true}, {testing::Nt351, false},
                                         {testing::Nt4, true}}) {
        testing::FakeVersion pretend{windows};
        FakeVolume volume;
        Recorder recorder;
        DiskInfo info;
        EXPECT_EQ(info.HasLargeDriveSupport(), toBoolean(large)) << windows.major << windows.csd;
        info.RootName(L"C:\\");
        EXPECT_EQ(recorder.count("GetDiskFreeSpaceExA"), large ? 1u : 0u);
        const std::vector<std::int64_t> expected =
            large ? std::vector<std::int64_t>{1000, 400, 600, 100} : std::vector<std::int64_t>{81920, 40960, 40960, 40960};
        EXPECT_EQ(Read(info).sizes, expected);
    }
}

// A count beyond the Currency range ends the reload quietly; what was stored before it stays.
// The 32-bit figures are read signed.
TEST(DiskInfo, CurrencyLimits) {
    FakeVolume volume;
    DiskInfo info;
    info.RootName(L"C:\\");
    volume.totalFree = 922337203685477;
    volume.total = 922337203685478;
    info.RootName(L"C:\\");
    EXPECT_EQ(Read(info).sizes, (std::vector<std::int64_t>{1000, 922337203685477, 1000 - 922337203685477, 100}));

    testing::FakeVersion pretend{testing::Win95};
    volume.label = "OLD";
    volume.sectors = 0x7FFFFFFF, volume.bytesPerSector = 0x7FFFFFFF;
    info.RootName(L"C:\\");
    EXPECT_EQ(info.VolumeLabel(), L"OLD");
    EXPECT_EQ(Bytes(info.TotalBytes()), 1000);

    volume.sectors = 1, volume.bytesPerSector = 0x80000000, volume.freeClusters = 1, volume.totalClusters = 2;
    info.RootName(L"C:\\");
    EXPECT_EQ(Read(info).sizes, (std::vector<std::int64_t>{-4294967296LL, -2147483648LL, -2147483648LL, -2147483648LL}));
}

TEST(DiskInfo, VolumeLabelWriteLeavesTheStoredLabel) {
    FakeVolume volume;
    DiskInfo info;
    info.RootName(L"C:\\");
    std::vector<std::string> calls;
    Bool result = 1;
    Replace<&Api::SetVolumeLabelA> set{[&](const char* root, const char* label) {
        return calls.push_back(std::string(root) + "|" + label), result;
    }};
    info.VolumeLabel(L"NEW");
    result = 0;
    const RaisedError raised = testing::Caught([&] { info.VolumeLabel(L"REFUSED"); });
    EXPECT_EQ(raised.Number, 21);
    EXPECT_EQ(raised.Source, L"Quillet:DiskInfo:VolumeLabel");
    EXPECT_EQ(raised.Description, L"Could not set volume label.");
    EXPECT_EQ(calls, (std::vector<std::string>{"C:\\|NEW", "C:\\|REFUSED"}));
    EXPECT_EQ(info.VolumeLabel(), L"FAKE");
}

}  // namespace
}  // namespace orbex
