#include "system/ScreenInfo.h"

#include "frame/RaisedError.h"
#include "platform/TestHook.h"

#include <gtest/gtest.h>

#include <vector>

namespace orbex {
namespace {

using platform::Api;
using platform::Handle;
using platform::Rect;
using Figure = Integer (ScreenInfo::*)() const;

constexpr Handle ScreenDc = 0x5C5C;

// A device context of our own: which figures were asked for, and that each context went back.
struct FakeDevice {
    std::int32_t figure = 0;
    std::vector<std::int32_t> indexes;
    int taken = 0, released = 0;

    platform::testing::Replace<&Api::GetDC> getDc{[this](Handle window) {
        EXPECT_EQ(window, 0);
        ++taken;
        return ScreenDc;
    }};
    platform::testing::Replace<&Api::GetDeviceCaps> caps{[this](Handle dc, std::int32_t index) {
        EXPECT_EQ(dc, ScreenDc);
        indexes.push_back(index);
        return figure;
    }};
    platform::testing::Replace<&Api::ReleaseDC> releaseDc{[this](Handle window, Handle dc) {
        EXPECT_EQ(window, 0);
        EXPECT_EQ(dc, ScreenDc);
        ++released;
        return 1;
    }};
};

TEST(ScreenInfo, DeviceFiguresGiveTheContextBack) {
    struct Row {
        Figure figure;
        std::int32_t index;
    };
    FakeDevice device;
    device.figure = 32767;
    for (const Row& row : {Row{&ScreenInfo::HorizontalResolution, 8}, Row{&ScreenInfo::VerticalResolution, 10},
                           Row{&ScreenInfo::ColorDepth, 12}, Row{&ScreenInfo::VerticalRefreshRate, 116}}) {
        device.indexes.clear();
        EXPECT_EQ((ScreenInfo().*row.figure)(), 32767);
        EXPECT_EQ(device.indexes, std::vector<std::int32_t>{row.index});
    }
    EXPECT_EQ(device.taken, 4);
    EXPECT_EQ(device.released, 4);
}

TEST(ScreenInfo, FigureBeyondAnIntegerOverflowsAfterTheContextWentBack) {
    FakeDevice device;
    device.figure = 32768;
    try {
        ScreenInfo().HorizontalResolution();
        ADD_FAILURE() << "no overflow";
    } catch (const RaisedError& error) {
        EXPECT_EQ(error.Number, RunTime::Overflow);
    }
    EXPECT_EQ(device.released, 1);
}

TEST(ScreenInfo, NoValueIsRemembered) {
    FakeDevice device;
    const ScreenInfo screen;
    device.figure = 800;
    EXPECT_EQ(screen.HorizontalResolution(), 800);
    device.figure = 1280;
    EXPECT_EQ(screen.HorizontalResolution(), 1280);
}

// Each edge is its own call; a refused call leaves the cleared record.
TEST(ScreenInfo, WorkAreaEdges) {
    struct Row {
        const char* what;
        platform::Bool result;
        Rect area, expected;
    };
    for (const Row& row : {Row{"offset work area", 1, {100, 20, 1124, -788}, {100, 20, 1124, -788}},
                           Row{"refused", 0, {100, 20, 1124, 788}, {0, 0, 0, 0}}}) {
        int calls = 0;
        platform::testing::Replace<&Api::SystemParametersInfoA> spi{
            [&](platform::Dword action, platform::Dword param, void* data, platform::Dword winIni) {
                ++calls;
                EXPECT_EQ(action, 48u);
                EXPECT_EQ(param, 0u);
                EXPECT_EQ(winIni, 0u);
                auto* rect = static_cast<Rect*>(data);
                EXPECT_EQ(rect->left | rect->top | rect->right | rect->bottom, 0) << "not cleared";
                if (row.result) *rect = row.area;
                return row.result;
            }};
        const ScreenInfo screen;
        EXPECT_EQ(screen.FullScreenLeft(), row.expected.left) << row.what;
        EXPECT_EQ(screen.FullScreenTop(), row.expected.top) << row.what;
        EXPECT_EQ(screen.FullScreenRight(), row.expected.right) << row.what;
        EXPECT_EQ(screen.FullScreenBottom(), row.expected.bottom) << row.what;
        EXPECT_EQ(calls, 4) << row.what;
    }
}

TEST(ScreenInfo, WineHeadlessScreen) {
    const ScreenInfo screen;
    EXPECT_EQ(screen.HorizontalResolution(), 1024);
    EXPECT_EQ(screen.VerticalResolution(), 768);
    EXPECT_GT(screen.ColorDepth(), 0);
    EXPECT_EQ(screen.FullScreenLeft(), 0);
    EXPECT_EQ(screen.FullScreenTop(), 0);
    EXPECT_GT(screen.FullScreenRight(), 0);
    EXPECT_LE(screen.FullScreenRight(), 1024);
    EXPECT_GT(screen.FullScreenBottom(), 0);
    EXPECT_LE(screen.FullScreenBottom(), 768);
}

}  // namespace
}  // namespace orbex
