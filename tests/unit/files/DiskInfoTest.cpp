#include "files/DiskInfo.h"

#include "InfoSupport.h"
#include "frame/RaisedError.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Bool;
using platform::Dword;
using platform::testing::Recorder;
using platform::testing::Replace;
using testing::Bytes;
using testing::PretendWindows;

// Every figure a client reads, the size figures in whole bytes.
struct Figures {
    String root, label, fileSystem, hex;
    Long serial, maxLength, driveType;
    std::int64_t total, totalFree, used, userFree;
    std::vector<Boolean> flags;
    friend bool operator==(const Figures&, const Figures&) = default;
};

Figures Read(const DiskInfo& info) {
    return {info.RootName(), info.VolumeLabel(), info.FileSystem(), info.SerialNumberHex(), info.SerialNumber(),
            info.MaxFilenameLength(), info.DriveType(), Bytes(info.TotalBytes()), Bytes(info.TotalBytesFree()),
            Bytes(info.TotalBytesUsed()), Bytes(info.UserBytesFree()),
            {info.SupportsCaseSensitiveFilenames(), info.CaseIsPreserved(), info.PersistentACLs(),
             info.SupportsUnicodeFilenames(), info.SupportsFileBasedCompression(), info.VolumeCompressed()}};
}

// A volume the platform describes as the test says.
struct FakeVolume {
    const char* label = "FAKE";
    const char* fileSystem = "FAT";
    Dword serial = 0x12345678, maxLength = 255, flags = 0x6;
    Bool volumeResult = 1;
    Dword driveType = 3;
    std::uint64_t callerFree = 100, total = 1000, totalFree = 400;
    Dword sectors = 8, bytesPerSector = 512, freeClusters = 10, totalClusters = 20;
    std::vector<std::string> roots;

    Replace<&Api::GetVolumeInformationA> volume{[this](const char* root, char* name, Dword nameSize, Dword* s, Dword* m,
                                                       Dword* f, char* fs, Dword fsSize) {
        roots.push_back(root);
        EXPECT_EQ(nameSize, 33u);
        EXPECT_EQ(fsSize, 25u);
        if (!volumeResult) return Bool{0};
        std::strcpy(name, label);
        std::strcpy(fs, fileSystem);
        *s = serial, *m = maxLength, *f = flags;
        return Bool{1};
    }};
    Replace<&Api::GetLastError> lastError{[] { return Dword{21}; }};
    Replace<&Api::GetDriveTypeA> type{[this](const char*) { return driveType; }};
    Replace<&Api::GetDiskFreeSpaceExA> ex{[this](const char*, std::uint64_t* c, std::uint64_t* t, std::uint64_t* f) {
        *c = callerFree, *t = total, *f = totalFree;
        return Bool{1};
    }};
    Replace<&Api::GetDiskFreeSpaceA> plain{[this](const char*, Dword* s, Dword* b, Dword* f, Dword* t) {
        *s = sectors, *b = bytesPerSector, *f = freeClusters, *t = totalClusters;
        return Bool{1};
    }};
};

TEST(DiskInfo, NewObjectHoldsTheStartValues) {
    const DiskInfo info;
    EXPECT_EQ(Read(info), (Figures{L"", L"", L"", L"0000-0000", 0, 0, vqDTUnknown, 0, 0, 0, 0, std::vector<Boolean>(6, False)}));
}

TEST(DiskInfo, DriveCAsThePlatformReportsIt) {
    DiskInfo info;
    info.RootName(L"  c:\\windows\\system32 ");
    EXPECT_EQ(info.RootName(), L"c:\\");
    const auto& api = platform::realApi();
    char label[33] = {}, fileSystem[25] = {};
    Dword serial = 0, maxLength = 0, flags = 0;
    ASSERT_TRUE(api.GetVolumeInformationA("c:\\", label, 33, &serial, &maxLength, &flags, fileSystem, 25));
    std::uint64_t callerFree = 0, total = 0, totalFree = 0;
    ASSERT_TRUE(api.GetDiskFreeSpaceExA("c:\\", &callerFree, &total, &totalFree));
    EXPECT_EQ(info.VolumeLabel(), testing::ScratchFolder::Wide(label));
    EXPECT_EQ(info.FileSystem(), testing::ScratchFolder::Wide(fileSystem));
    EXPECT_EQ(info.SerialNumber(), static_cast<Long>(serial));
    EXPECT_EQ(info.MaxFilenameLength(), static_cast<Long>(maxLength));
    EXPECT_EQ(info.CaseIsPreserved(), toBoolean(flags & 0x2));
    EXPECT_EQ(info.DriveType(), vqDTFixed);
    EXPECT_EQ(Bytes(info.TotalBytes()), static_cast<std::int64_t>(total));
    EXPECT_GT(Bytes(info.TotalBytesFree()), 0);
    EXPECT_EQ(Bytes(info.TotalBytesUsed()), Bytes(info.TotalBytes()) - Bytes(info.TotalBytesFree()));
    EXPECT_EQ(info.HasLargeDriveSupport(), True);
}

// A root that the platform refuses, or no root at all, leaves every figure of the last good
// volume under the new root name; no error is raised. Without a root the platform is not asked.
TEST(DiskInfo, RefusedRootsKeepTheFiguresOfTheLastGoodOne) {
    DiskInfo fresh;
    fresh.RootName(L"Q:\\");
    EXPECT_EQ(Read(fresh), (Figures{L"Q:\\", L"", L"", L"0000-0000", 0, 0, vqDTUnknown, 0, 0, 0, 0, std::vector<Boolean>(6, False)}));

    struct Row {
        const wchar_t* text;
        const wchar_t* root;
        std::size_t volumeCalls;
    };
    for (const Row& row : {Row{L"Q:\\", L"Q:\\", 1}, Row{L"", L"", 0}, Row{L"relative\\name.txt", L"", 0},
                           Row{L"\\\\server", L"", 0}}) {
        DiskInfo info;
        info.RootName(L"C:");
        Figures expected = Read(info);
        ASSERT_EQ(expected.driveType, vqDTFixed);
        Recorder recorder;
        info.RootName(row.text);
        expected.root = row.root;
        EXPECT_EQ(Read(info), expected) << row.text;
        EXPECT_EQ(recorder.count("GetVolumeInformationA"), row.volumeCalls) << row.text;
        EXPECT_EQ(recorder.count("GetDriveTypeA"), 0u) << row.text;
    }
}

TEST(DiskInfo, FailedVolumeQueryAfterAGoodOneStopsTheReload) {
    FakeVolume volume;
    DiskInfo info;
    info.RootName(L"C:\\");
    const Figures before = Read(info);
    EXPECT_EQ(before, (Figures{L"C:\\", L"FAKE", L"FAT", L"1234-5678", 0x12345678, 255, vqDTFixed, 1000, 400, 600, 100,
                               {False, True, False, True, False, False}}));
    volume.volumeResult = 0;
    volume.total = 5000;
    info.RootName(L"D:\\");
    Figures expected = before;
    expected.root = L"D:\\";
    EXPECT_EQ(Read(info), expected);
}

TEST(DiskInfo, FlagsSerialNumbersAndDriveTypes) {
    FakeVolume volume;
    DiskInfo info;
    const Dword bits[] = {0x1, 0x2, 0x8, 0x4, 0x10, 0x8000};  // in the order of the properties
    for (std::size_t i = 0; i < 6; ++i) {
        volume.flags = bits[i];
        info.RootName(L"C:\\");
        std::vector<Boolean> expected(6, False);
        expected[i] = True;
        EXPECT_EQ(Read(info).flags, expected) << bits[i];
    }
    struct Serial {
        Dword serial;
        const wchar_t* hex;
    };
    for (const Serial& row : {Serial{0xFFFFFFFF, L"FFFF-FFFF"}, Serial{255, L"0000-00FF"}, Serial{0, L"0000-0000"},
                              Serial{0xA0B0C0D, L"0A0B-0C0D"}}) {
        volume.serial = row.serial;
        info.RootName(L"C:\\");
        EXPECT_EQ(info.SerialNumberHex(), row.hex);
    }
    EXPECT_EQ(info.SerialNumber(), 0xA0B0C0D);
    for (const auto& [reported, stored] : {std::pair<Dword, Long>{1, vqDTUnknown}, {0, vqDTUnknown}, {2, vqDTRemovable},
                                           {5, vqDTCDROM}, {6, vqDTRAMDisk}}) {
        volume.driveType = reported;
        info.RootName(L"C:\\");
        EXPECT_EQ(info.DriveType(), stored) << reported;
    }
}

// The systems without GetDiskFreeSpaceExA get their sizes from clusters, the caller's free
// bytes equal to the volume's.
TEST(DiskInfo, SizeQueryFollowsTheSystem) {
    struct Row {
        const char* system;
        testing::Windows windows;
        bool large;
    };
    for (const Row& row : {Row{"Windows 95", testing::Win95, false}, Row{"Windows 95 OSR2", testing::Win95Osr2, true},
                           Row{"Windows 98", testing::Win98, true}, Row{"NT 3.51", testing::Nt351, false},
                           Row{"NT 4", testing::Nt4, true}, Row{"Win32s", testing::Win32s, true},
                           Row{"XP", testing::WinXP, true}}) {
        PretendWindows pretend{row.windows};
        FakeVolume volume;
        Recorder recorder;
        DiskInfo info;
        EXPECT_EQ(info.HasLargeDriveSupport(), toBoolean(row.large)) << row.system;
        info.RootName(L"C:\\");
        EXPECT_EQ(recorder.count("GetDiskFreeSpaceExA"), row.large ? 1u : 0u) << row.system;
        EXPECT_EQ(recorder.count("GetDiskFreeSpaceA"), row.large ? 0u : 1u) << row.system;
        const Figures figures = Read(info);
        if (row.large) {
            EXPECT_EQ((std::vector<std::int64_t>{figures.total, figures.totalFree, figures.userFree}),
                      (std::vector<std::int64_t>{1000, 400, 100})) << row.system;
        } else {
            EXPECT_EQ((std::vector<std::int64_t>{figures.total, figures.totalFree, figures.userFree}),
                      (std::vector<std::int64_t>{81920, 40960, 40960})) << row.system;
        }
    }
}

// A count beyond the Currency range ends the reload quietly; what was stored before it stays.
TEST(DiskInfo, CurrencyOverflowKeepsWhatWasStored) {
    FakeVolume volume;
    DiskInfo info;
    info.RootName(L"C:\\");
    volume.totalFree = 922337203685477;
    volume.total = 922337203685478;
    volume.callerFree = 7;
    EXPECT_NO_THROW(info.RootName(L"C:\\"));
    EXPECT_EQ(Bytes(info.TotalBytesFree()), 922337203685477);
    EXPECT_EQ(Bytes(info.TotalBytes()), 1000);
    EXPECT_EQ(Bytes(info.UserBytesFree()), 100);

    PretendWindows pretend{testing::Win95};
    volume.label = "OLD";
    volume.sectors = 0x7FFFFFFF, volume.bytesPerSector = 0x7FFFFFFF, volume.freeClusters = 2;
    info.RootName(L"C:\\");
    EXPECT_EQ(info.VolumeLabel(), L"OLD");
    EXPECT_EQ(Bytes(info.TotalBytesFree()), 922337203685477);

    volume.bytesPerSector = 0x80000000;  // read signed: a negative count
    volume.sectors = 1, volume.freeClusters = 1, volume.totalClusters = 2;
    info.RootName(L"C:\\");
    EXPECT_EQ(Bytes(info.TotalBytesFree()), -2147483648LL);
    EXPECT_EQ(Bytes(info.TotalBytes()), -4294967296LL);
}

TEST(DiskInfo, VolumeLabelWriteLeavesTheStoredLabel) {
    FakeVolume volume;
    DiskInfo info;
    info.RootName(L"C:\\");
    std::vector<std::string> calls;
    Bool result = 1;
    Replace<&Api::SetVolumeLabelA> set{[&](const char* root, const char* label) {
        calls.push_back(std::string(root) + "|" + label);
        return result;
    }};
    info.VolumeLabel(L"NEW");
    EXPECT_EQ(info.VolumeLabel(), L"FAKE");
    result = 0;
    try {
        info.VolumeLabel(L"REFUSED");
        ADD_FAILURE() << "no error raised";
    } catch (const RaisedError& error) {
        EXPECT_EQ(error.Number, 21);
        EXPECT_EQ(error.Source, L"Quillet:DiskInfo:VolumeLabel");
        EXPECT_EQ(error.Description, L"Could not set volume label.");
    }
    EXPECT_EQ(calls, (std::vector<std::string>{"C:\\|NEW", "C:\\|REFUSED"}));
    EXPECT_EQ(info.VolumeLabel(), L"FAKE");
}

}  // namespace
}  // namespace orbex
