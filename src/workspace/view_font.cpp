// SPDX-License-Identifier: MIT
#include "workspace/view_font.h"

#include <algorithm>
#include <array>

namespace brevant::workspace {
namespace {

struct Face {
  int code;
  std::string_view name;
};
// The first is what unknown codes mean.
constexpr std::array<Face, 3> kFaces{{{0, "fixedsys"}, {16, "courier"}, {32, "courier new"}}};
constexpr int kFaceBits = 0xF0;
constexpr int kSizeBits = 0x0F;
constexpr int kOtherPoints = 12;

}  // namespace

ViewFont DecodeViewFont(int setting) {
  const int size = setting & kSizeBits;
  const auto face = std::find_if(kFaces.begin(), kFaces.end(), [setting](const Face& known) {
    return known.code == (setting & kFaceBits);
  });
  return {face == kFaces.end() ? kFaces.front().name : face->name,
          size == 8 || size == 10 ? size : kOtherPoints};
}

int EncodeViewFont(const ViewFont& font) {
  const auto face = std::find_if(kFaces.begin(), kFaces.end(),
                                 [&font](const Face& known) { return known.name == font.face; });
  return (face == kFaces.end() ? kFaces.front().code : face->code) + font.points;
}

}  // namespace brevant::workspace
