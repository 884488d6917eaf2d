// MemoryInfo, PowerInfo and ScreenInfo on replaced platform answers.
#include "system/MemoryInfo.h"
#include "system/PowerInfo.h"
#include "system/ScreenInfo.h"

#include "FakeSystem.h"
#include "frame/RaisedError.h"

#include <gtest/gtest.h>

#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Handle;
using platform::MemoryStatus;
using platform::MemoryStatusEx;
using platform::testing::Replace;
using testing::FakeVersion;
using testing::Version;
using F = std::vector<std::int64_t>;

// The load and the seven sizes in whole bytes, checking that each Currency holds a whole number.
F Figures(const MemoryInfo& info) {
    F figures{info.MemoryLoad()};
    for (Currency size : {info.TotalPhysical(), info.AvailablePhysical(), info.TotalPageFile(), info.AvailablePageFile(),
                          info.TotalVirtual(), info.AvailableVirtual(), info.AvailableExtendedVirtual()}) {
        EXPECT_EQ(size.scaled % 10000, 0);
        figures.push_back(size.scaled / 10000);
    }
    return figures;
}

// The major version alone chooses the query, whatever the family; the object is a snapshot.
// Sizes above 2 GiB read whole. A count too large for a Currency ends the load quietly and what
// was stored before it stays; a refused query leaves its cleared record. The older record's words
// are signed on the 32-bit product.
TEST(MemoryInfo, QuerySizesAndOverflow) {
    constexpr std::uint64_t Largest = 922337203685477;
    const std::int64_t largest = Largest, big = sizeof(std::size_t) == 4 ? -2147483648LL : 0x80000000;
    const MemoryStatusEx usual{0, 42, 1, 2, 3, 4, 5, 6, 7};
    const F extended{42, 1, 2, 3, 4, 5, 6, 7}, plain{17, big, big, 30, 40, 50, 60, 0};
    for (auto [version, status, result, figures] :
         {std::tuple{testing::Win98, usual, 1, plain}, {testing::Nt4, usual, 1, plain}, {testing::Nt351, usual, 1, plain},
          {Version{1, 5, 0}, usual, 1, extended}, {testing::Win2000, usual, 1, extended}, {testing::Win7, usual, 1, extended},
          {Version{2, 0x80000000, 0}, usual, 1, plain},
          {testing::WinXP, MemoryStatusEx{0, 99, 1, 0x180000000, Largest, 0xFFFFFFFF, 0x7FFFFFFE0000, 0, 12}, 1,
           F{99, 1, 0x180000000, largest, 0xFFFFFFFF, 0x7FFFFFFE0000, 0, 12}},
          {testing::WinXP, MemoryStatusEx{0, 33, 5, 6, Largest + 1, 8, 9, 10, 11}, 1, F{33, 5, 6, 0, 0, 0, 0, 0}},
          {testing::WinXP, MemoryStatusEx{0, 33, 5, 6, 7, 8, 9, 10, 0x8000000000000000}, 1, F{33, 5, 6, 7, 8, 9, 10, 0}},
          {testing::WinXP, usual, 0, F{0, 0, 0, 0, 0, 0, 0, 0}}}) {
        FakeVersion fake{version};
        int calls = 0;
        Replace<&Api::GlobalMemoryStatusEx> ex{[&](MemoryStatusEx* out) {
            EXPECT_EQ(out->dwLength, 64u);
            return ++calls, result ? *out = status : *out, result;
        }};
        Replace<&Api::GlobalMemoryStatus> old{[&](MemoryStatus* out) {
            EXPECT_EQ(out->dwLength, sizeof(MemoryStatus));
            ++calls, *out = {0, 17, 0x80000000u, 0x80000000u, 30, 40, 50, 60};
        }};
        const MemoryInfo info;
        EXPECT_EQ(Figures(info), figures) << version.major;
        EXPECT_EQ(calls, 1);
    }
}

// The status is read at every read. Critical comes first whatever the size of its bit; bits
// outside the table add nothing. NT 3 and NT 4 are not asked, and a refused query reads the same:
// unknown. 95, 2000 and Win32s are asked.
TEST(PowerInfo, FiguresAndNames) {
    using S = platform::SystemPowerStatus;
    const wchar_t *acUnknown = L"AC Status Unknown", *unknown = L"Battery Status Unknown";
    const struct {
        Version version;
        S status;
        platform::Bool result;
        int calls;
        const wchar_t *ac, *battery;
        std::vector<Long> figures;  // AC, battery, percent, life time, full life time
    } rows[] = {
        {testing::Win98, {0, 9, 57, 0, 3600, 7200}, 1, 7, L"AC Offline", L"Battery High Battery Charging", {0, 9, 57, 3600, 7200}},
        {testing::Win95, {1, 0, 254, 0, 0, 0}, 1, 7, L"AC Online", L"", {1, 0, 254, 0, 0}},
        {testing::Win2000, {255, 0x70, 255, 0, 0, 0}, 1, 7, acUnknown, L"", {255, 0x70, -1, 0, 0}},
        {testing::Win32s, {2, 5, 0, 0, 0, 0}, 1, 7, L"", L"Battery Critical Battery High", {2, 5, 0, 0, 0}},
        {testing::Win7, {0, 0xFE, 0, 0, 0, 0}, 1, 7, L"AC Offline",
         L"Battery Critical Battery Low Battery Charging No System Battery", {0, 0xFE, 0, 0, 0}},
        {testing::Win7, {0, 0xFF, 0, 0, 0, 0}, 1, 7, L"AC Offline", unknown, {0, 0xFF, 0, 0, 0}},
        {testing::Win7, {1, 8, 50, 0, 10, 20}, 0, 7, acUnknown, unknown, {255, 255, -1, -1, -1}},
        {testing::Nt351, {1, 8, 50, 0, 10, 20}, 1, 0, acUnknown, unknown, {255, 255, -1, -1, -1}},
        {{2, 4, 9, 3}, {1, 8, 50, 0, 10, 20}, 1, 0, acUnknown, unknown, {255, 255, -1, -1, -1}},
    };
    for (const auto& row : rows) {
        FakeVersion fake{row.version};
        int calls = 0;
        Replace<&Api::GetSystemPowerStatus> replace{[&](S* out) { return ++calls, *out = row.status, row.result; }};
        PowerInfo info;
        EXPECT_EQ((std::vector<Long>{info.ACLineStatus(), info.BatteryStatus(), info.BatteryLifePercent(),
                                     info.BatteryLifeTime(), info.BatteryFullLifeTime()}),
                  row.figures);
        EXPECT_EQ(info.ACLineStatusName(), row.ac);
        EXPECT_EQ(info.BatteryStatusName(), row.battery);
        EXPECT_EQ(calls, row.calls) << row.version.major;
    }
}

// Each device figure takes the screen's context, asks for its index (answered here as the index
// plus an offset) and gives the context back, also when the figure is too large for an Integer.
TEST(ScreenInfo, Figures) {
    constexpr Handle ScreenDc = 0x5C5C;
    std::int32_t offset = 0;
    int taken = 0, released = 0;
    Replace<&Api::GetDC> getDc{[&](Handle window) { return ++taken, window == 0 ? ScreenDc : 0; }};
    Replace<&Api::GetDeviceCaps> caps{[&](Handle dc, std::int32_t index) { return dc == ScreenDc ? index + offset : 0; }};
    Replace<&Api::ReleaseDC> releaseDc{[&](Handle window, Handle dc) { return released += window == 0 && dc == ScreenDc; }};
    const ScreenInfo screen;
    for (std::int32_t value : {1000, 32767 - 116, -32768 - 8}) {
        offset = value;
        EXPECT_EQ((std::vector<Long>{screen.HorizontalResolution(), screen.VerticalResolution(), screen.ColorDepth(),
                                     screen.VerticalRefreshRate()}),
                  (std::vector<Long>{8 + value, 10 + value, 12 + value, 116 + value}));
    }
    offset = 32768 - 12;
    EXPECT_THROW(screen.ColorDepth(), RaisedError);
    EXPECT_EQ(taken, 13);
    EXPECT_EQ(released, 13);

    // Each work-area edge is its own call on a cleared record; a refused call leaves it cleared.
    for (auto [result, area, expected] : {std::tuple{1, platform::Rect{100, 20, 1124, -788}, std::vector<Long>{100, 20, 1124, -788}},
                                          {0, platform::Rect{100, 20, 1124, 788}, std::vector<Long>{0, 0, 0, 0}}}) {
        int calls = 0;
        Replace<&Api::SystemParametersInfoA> spi{[&](platform::Dword action, platform::Dword, void* data, platform::Dword) {
            auto* rect = static_cast<platform::Rect*>(data);
            EXPECT_EQ(rect->left | rect->top | rect->right | rect->bottom, 0) << "not cleared";
            if (result && action == 48) *rect = area;
            return ++calls, result;
        }};
        EXPECT_EQ((std::vector<Long>{screen.FullScreenLeft(), screen.FullScreenTop(), screen.FullScreenRight(),
                                     screen.FullScreenBottom()}),
                  expected);
        EXPECT_EQ(calls, 4);
    }
}

}  // namespace
}  // namespace orbex
