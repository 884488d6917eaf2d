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
using platform::testing::Replace;

constexpr Handle ScreenDc = 0x5C5C;

// Each device figure takes the screen's context, asks for its index and gives the context back,
// also when the figure is too large for an Integer.
TEST(ScreenInfo, DeviceFiguresGiveTheContextBack) {
    std::int32_t figure = 0;
    std::vector<std::int32_t> indexes;
    int taken = 0, released = 0;
    Replace<&Api::GetDC> getDc{[&](Handle window) { return ++taken, window == 0 ? ScreenDc : 0; }};
    Replace<&Api::GetDeviceCaps> caps{[&](Handle dc, std::int32_t index) {
        EXPECT_EQ(dc, ScreenDc);
        indexes.push_back(index);
        return figure;
    }};
    Replace<&Api::ReleaseDC> releaseDc{[&](Handle window, Handle dc) { return released += window == 0 && dc == ScreenDc; }};
    const ScreenInfo screen;
    for (std::int32_t value : {1024, 32767, 0, -32768}) {
        figure = value;
        EXPECT_EQ((std::vector<Long>{screen.HorizontalResolution(), screen.VerticalResolution(), screen.ColorDepth(),
                                     screen.VerticalRefreshRate()}),
                  (std::vector<Long>{value, value, value, value}));
    }
    EXPECT_EQ(indexes, (std::vector<std::int32_t>{8, 10, 12, 116, 8, 10, 12, 116, 8, 10, 12, 116, 8, 10, 12, 116}));
    figure = 32768;
    EXPECT_THROW(screen.ColorDepth(), RaisedError);
    EXPECT_EQ(taken, 17);
    EXPECT_EQ(released, 17);
}

// Each edge is its own call on a cleared record; a refused call leaves it cleared.
TEST(ScreenInfo, WorkAreaEdges) {
    for (auto [result, area, expected] : {std::tuple{1, Rect{100, 20, 1124, -788}, Rect{100, 20, 1124, -788}},
                                          std::tuple{0, Rect{100, 20, 1124, 788}, Rect{0, 0, 0, 0}}}) {
        int calls = 0;
        Replace<&Api::SystemParametersInfoA> spi{[&](platform::Dword action, platform::Dword param, void* data,
                                                     platform::Dword winIni) {
            ++calls;
            EXPECT_EQ(std::vector<platform::Dword>({action, param, winIni}), std::vector<platform::Dword>({48, 0, 0}));
            auto* rect = static_cast<Rect*>(data);
            EXPECT_EQ(rect->left | rect->top | rect->right | rect->bottom, 0) << "not cleared";
            if (result) *rect = area;
            return result;
        }};
        const ScreenInfo screen;
        EXPECT_EQ((std::vector<Long>{screen.FullScreenLeft(), screen.FullScreenTop(), screen.FullScreenRight(),
                                     screen.FullScreenBottom()}),
                  (std::vector<Long>{expected.left, expected.top, expected.right, expected.bottom}));
        EXPECT_EQ(calls, 4);
    }
}

}  // namespace
}  // namespace orbex
