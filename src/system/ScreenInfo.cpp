#include "ScreenInfo.h"

#include "frame/Checked.h"
#include "platform/Api.h"

namespace orbex {
namespace {

constexpr std::int32_t HorizontalResolutionIndex = 8;  // HORZRES
constexpr std::int32_t VerticalResolutionIndex = 10;   // VERTRES
constexpr std::int32_t BitsPerPixelIndex = 12;         // BITSPIXEL
constexpr std::int32_t RefreshRateIndex = 116;         // VREFRESH
constexpr platform::Dword GetWorkArea = 48;            // SPI_GETWORKAREA

// One figure of the screen's device context. The context is given back before the figure is
// narrowed, so an overflow cannot leak it.
Integer DeviceFigure(std::int32_t index) {
    const auto& api = platform::api();
    const platform::Handle dc = api.GetDC(0);
    const std::int32_t figure = api.GetDeviceCaps(dc, index);
    if (dc != 0) api.ReleaseDC(0, dc);
    return ToInteger(figure);
}

// The work area, read anew for each edge; a refused call leaves the cleared record.
platform::Rect WorkArea() {
    platform::Rect area{};
    platform::api().SystemParametersInfoA(GetWorkArea, 0, &area, 0);
    return area;
}

}  // namespace

Integer ScreenInfo::HorizontalResolution() const { return DeviceFigure(HorizontalResolutionIndex); }
Integer ScreenInfo::VerticalResolution() const { return DeviceFigure(VerticalResolutionIndex); }
Integer ScreenInfo::ColorDepth() const { return DeviceFigure(BitsPerPixelIndex); }
Integer ScreenInfo::VerticalRefreshRate() const { return DeviceFigure(RefreshRateIndex); }

Integer ScreenInfo::FullScreenLeft() const { return ToInteger(WorkArea().left); }
Integer ScreenInfo::FullScreenTop() const { return ToInteger(WorkArea().top); }
Integer ScreenInfo::FullScreenRight() const { return ToInteger(WorkArea().right); }
Integer ScreenInfo::FullScreenBottom() const { return ToInteger(WorkArea().bottom); }

}  // namespace orbex
