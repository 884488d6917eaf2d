// The primary display: resolution, colour depth, refresh rate and the desktop's work area.
// Holds nothing; every read asks the platform afresh.
#pragma once
#include "frame/Types.h"

namespace orbex {

class ScreenInfo {
public:
    Integer HorizontalResolution() const;
    Integer VerticalResolution() const;
    Integer ColorDepth() const;
    Integer VerticalRefreshRate() const;
    // The work area's edges, not the whole screen's; Right and Bottom are edges, not sizes.
    Integer FullScreenLeft() const;
    Integer FullScreenTop() const;
    Integer FullScreenRight() const;
    Integer FullScreenBottom() const;
};

}  // namespace orbex
