#include "system/MemoryInfo.h"

#include "FakeSystem.h"

#include <gtest/gtest.h>

#include <vector>

namespace orbex {
namespace {

using platform::MemoryStatus;
using platform::MemoryStatusEx;
using testing::FakeVersion;
using testing::Version;

constexpr std::uint64_t LargestCount = 922337203685477;

// The load and the seven sizes in whole bytes, checking that each Currency holds a whole number.
std::vector<std::int64_t> Figures(const MemoryInfo& info) {
    std::vector<std::int64_t> figures{info.MemoryLoad()};
    for (Currency size : {info.TotalPhysical(), info.AvailablePhysical(), info.TotalPageFile(), info.AvailablePageFile(),
                          info.TotalVirtual(), info.AvailableVirtual(), info.AvailableExtendedVirtual()}) {
        EXPECT_EQ(size.scaled % 10000, 0);
        figures.push_back(size.scaled / 10000);
    }
    return figures;
}
using F = std::vector<std::int64_t>;

// Both queries replaced; each counts its calls.
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
    for (auto [version, extended] : {std::pair{testing::Win98, false}, {testing::Nt4, false}, {testing::Nt351, false},
                                     {Version{1, 5, 0}, true}, {testing::Win2000, true}, {testing::Win7, true},
                                     {Version{2, 0x80000000, 0}, false}}) {
        FakeVersion fake{version};
        FakeMemory memory;
        const MemoryInfo info;
        memory.extended = {};  // a snapshot: later answers do not show
        memory.plain = {};
        EXPECT_EQ(memory.extendedCalls + memory.plainCalls, 1);
        EXPECT_EQ(Figures(info), (extended ? F{42, 1, 2, 3, 4, 5, 6, 7} : F{17, 10, 20, 30, 40, 50, 60, 0})) << version.major;
    }
}

// Sizes far above 2 GiB read whole. A count too large for a Currency ends the load quietly and
// what was stored before it stays; a refused query leaves its cleared record.
TEST(MemoryInfo, ExtendedQuerySizes) {
    struct Row {
        MemoryStatusEx status;
        platform::Bool result;
        F figures;
    };
    const std::int64_t largest = LargestCount;
    for (const Row& row : {Row{{0, 99, 1, 0x180000000, LargestCount, 0xFFFFFFFF, 0x7FFFFFFE0000, 0, 12}, 1,
                                {99, 1, 0x180000000, largest, 0xFFFFFFFF, 0x7FFFFFFE0000, 0, 12}},
                           Row{{0, 33, 5, 6, LargestCount + 1, 8, 9, 10, 11}, 1, {33, 5, 6, 0, 0, 0, 0, 0}},
                           Row{{0, 33, 5, 6, 7, 8, 9, 10, 0x8000000000000000}, 1, {33, 5, 6, 7, 8, 9, 10, 0}},
                           Row{{0, 33, 5, 6, 7, 8, 9, 10, 11}, 0, {0, 0, 0, 0, 0, 0, 0, 0}}}) {
        FakeVersion version{testing::WinXP};
        FakeMemory memory;
        memory.extended = row.status;
        memory.extendedResult = row.result;
        EXPECT_EQ(Figures(MemoryInfo()), row.figures);
    }
}

// The older record's words are signed: on the 32-bit product 2 GiB and more read negative.
TEST(MemoryInfo, OldQueryAbove2GiB) {
    FakeVersion version{testing::Nt4};
    FakeMemory memory;
    memory.plain.dwTotalPhys = 0x80000000u;
    memory.plain.dwAvailPhys = 0xFFFFFFFFu;
    if constexpr (sizeof(std::size_t) == 4) {
        EXPECT_EQ(Figures(MemoryInfo()), (F{17, -2147483648LL, -1, 30, 40, 50, 60, 0}));
    } else {
        EXPECT_EQ(Figures(MemoryInfo()), (F{17, 0x80000000, 0xFFFFFFFF, 30, 40, 50, 60, 0}));
    }
}

}  // namespace
}  // namespace orbex
