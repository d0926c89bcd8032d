// SPDX-License-Identifier: MIT
// What a scroll bar or a key asks of a view.
#pragma once

namespace brevant::views {

// Requests of a scroll bar, and two of the view's own. Other values ask for nothing.
enum class ScrollCode {
  LineUp = 0,
  LineDown = 1,
  PageUp = 2,
  PageDown = 3,
  ThumbTrack = 5,
  RedrawFromTop = 32,  // read every line anew
  RepaintOnly = 33,    // the lines held are good
};

}  // namespace brevant::views
