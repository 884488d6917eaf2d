#include "system/MemoryInfo.h"

#include "FakeSystem.h"

#include <gtest/gtest.h>

namespace orbex {
namespace {

using platform::MemoryStatus;
using platform::MemoryStatusEx;
using testing::FakeVersion;
using testing::Version;

constexpr std::int64_t Scale = 10000;
constexpr std::uint64_t LargestCount = 922337203685477;

struct Figures {
    Long load;
    std::int64_t totalPhysical, availablePhysical, totalPageFile, availablePageFile, totalVirtual,
        availableVirtual, availableExtendedVirtual;  // whole bytes
    friend bool operator==(const Figures&, const Figures&) = default;
};

std::ostream& operator<<(std::ostream& out, const Figures& f) {
    return out << f.load << " " << f.totalPhysical << " " << f.availablePhysical << " " << f.totalPageFile << " "
               << f.availablePageFile << " " << f.totalVirtual << " " << f.availableVirtual << " "
               << f.availableExtendedVirtual;
}

// The figures as stored, checking that each Currency holds a whole number.
Figures Read(const MemoryInfo& info) {
    auto bytes = [](Currency value) {
        EXPECT_EQ(value.scaled % Scale, 0);
        return value.scaled / Scale;
    };
    return {info.MemoryLoad(),
            bytes(info.TotalPhysical()),
            bytes(info.AvailablePhysical()),
            bytes(info.TotalPageFile()),
            bytes(info.AvailablePageFile()),
            bytes(info.TotalVirtual()),
            bytes(info.AvailableVirtual()),
            bytes(info.AvailableExtendedVirtual())};
}

// Both queries replaced; each records whether it was asked.
struct FakeMemory {
    MemoryStatusEx extended{0, 42, 1, 2, 3, 4, 5, 6, 7};
    MemoryStatus plain{0, 17, 10, 20, 30, 40, 50, 60};
    platform::Bool extendedResult = 1;
    int extendedCalls = 0, plainCalls = 0;

    platform::testing::Replace<&platform::Api::GlobalMemoryStatusEx> ex{[this](MemoryStatusEx* out) {
        ++extendedCalls;
        EXPECT_EQ(out->dwLength, 64u);
        if (extendedResult) *out = extended;
        return extendedResult;
    }};
    platform::testing::Replace<&platform::Api::GlobalMemoryStatus> old{[this](MemoryStatus* out) {
        ++plainCalls;
        EXPECT_EQ(out->dwLength, sizeof(MemoryStatus));
        *out = plain;
    }};
};

// The major version alone chooses the query, whatever the platform family.
TEST(MemoryInfo, MajorVersionChoosesTheQuery) {
    struct Row {
        Version version;
        bool extended;
    };
    for (const Row& row : {Row{testing::Win95, false}, Row{testing::Win98, false}, Row{testing::Nt351, false},
                           Row{testing::Nt4Workstation, false}, Row{{1, 5, 0}, true},
                           Row{testing::Win2000Professional, true}, Row{testing::Win7, true},
                           Row{{2, 0x80000000, 0}, false}}) {
        FakeVersion version{row.version};
        FakeMemory memory;
        const Figures figures = Read(MemoryInfo());
        EXPECT_EQ(memory.extendedCalls, row.extended ? 1 : 0) << row.version.major;
        EXPECT_EQ(memory.plainCalls, row.extended ? 0 : 1) << row.version.major;
        EXPECT_EQ(figures, (row.extended ? Figures{42, 1, 2, 3, 4, 5, 6, 7} : Figures{17, 10, 20, 30, 40, 50, 60, 0}));
    }
}

TEST(MemoryInfo, ExtendedQueryReadsLargeSizesWhole) {
    FakeVersion version{testing::WinXPProfessional};
    FakeMemory memory;
    memory.extended = {0, 99, 1, 0x180000000, LargestCount, 0xFFFFFFFF, 0x7FFFFFFE0000, 0, 12};
    const MemoryInfo info;
    EXPECT_EQ(info.TotalPhysical().scaled, 10000);
    EXPECT_EQ(Read(info), (Figures{99, 1, 0x180000000, std::int64_t(LargestCount), 0xFFFFFFFF, 0x7FFFFFFE0000, 0, 12}));
}

// A count too large for a Currency ends the load quietly; what was stored before it stays.
TEST(MemoryInfo, OverflowKeepsTheFiguresBefore) {
    FakeVersion version{testing::Win7};
    FakeMemory memory;
    memory.extended = {0, 33, 5, 6, LargestCount + 1, 8, 9, 10, 11};
    EXPECT_EQ(Read(MemoryInfo()), (Figures{33, 5, 6, 0, 0, 0, 0, 0}));
    memory.extended.ullTotalPageFile = 7;
    memory.extended.ullAvailExtendedVirtual = 0x8000000000000000;  // a negative word, out of range
    EXPECT_EQ(Read(MemoryInfo()), (Figures{33, 5, 6, 7, 8, 9, 10, 0}));
}

TEST(MemoryInfo, RefusedExtendedQueryLeavesZeros) {
    FakeVersion version{testing::Win7};
    FakeMemory memory;
    memory.extendedResult = 0;
    EXPECT_EQ(Read(MemoryInfo()), (Figures{0, 0, 0, 0, 0, 0, 0, 0}));
}

// The older record's words are signed: on the 32-bit product 2 GiB and more read negative.
TEST(MemoryInfo, OldQueryAbove2GiB) {
    FakeVersion version{testing::Nt4Workstation};
    FakeMemory memory;
    memory.plain.dwTotalPhys = 0x80000000u;
    memory.plain.dwAvailPhys = 0xFFFFFFFFu;
    memory.plain.dwTotalVirtual = 0x7FFFFFFFu;
    const Figures figures = Read(MemoryInfo());
    if constexpr (sizeof(std::size_t) == 4) {
        EXPECT_EQ(figures, (Figures{17, -2147483648LL, -1, 30, 40, 0x7FFFFFFF, 60, 0}));
    } else {
        EXPECT_EQ(figures, (Figures{17, 0x80000000, 0xFFFFFFFF, 30, 40, 0x7FFFFFFF, 60, 0}));
    }
}

TEST(MemoryInfo, KeepsTheSnapshotOfItsCreation) {
    FakeVersion version{testing::Win7};
    FakeMemory memory;
    const MemoryInfo info;
    memory.extended = {0, 1, 1, 1, 1, 1, 1, 1, 1};
    EXPECT_EQ(Read(info), (Figures{42, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(memory.extendedCalls, 1);
}

TEST(MemoryInfo, WineReportsItsMemory) {
    const Figures f = Read(MemoryInfo());
    EXPECT_GT(f.totalPhysical, 0);
    EXPECT_LE(f.availablePhysical, f.totalPhysical);
    EXPECT_GT(f.totalVirtual, 0);
    EXPECT_GE(f.load, 0);
    EXPECT_LE(f.load, 100);
}

}  // namespace
}  // namespace orbex
