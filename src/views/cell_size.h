// SPDX-License-Identifier: MIT
// The extent of a character in a window with a fixed-pitch font.
#pragma once

namespace brevant::views {

struct CellSize {
  int width = 1;  // in pixels
  int height = 1;
};

}  // namespace brevant::views
