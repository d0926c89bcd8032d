// SPDX-License-Identifier: MIT
// The one fixed-pitch font of all text views, as setting "Font" keeps it: the face in bits 4-7, the
// size in bits 0-3.
#pragma once

#include <string_view>

namespace brevant::workspace {

struct ViewFont {
  std::string_view face;  // "fixedsys", "courier" or "courier new"
  int points = 12;        // 8, 10 or 12
  bool operator==(const ViewFont&) const = default;
};

// A face that is not known is "fixedsys", a size that is not known 12 points.
ViewFont DecodeViewFont(int setting);
// The setting of a font that DecodeViewFont can answer.
int EncodeViewFont(const ViewFont& font);

}  // namespace brevant::workspace
