// SPDX-License-Identifier: MIT
// What of an image flash holds already, page by page. The target computes CRCs of stretches, which
// are divided where they differ: an image that stands in flash, or flash that is blank, is known by
// one of them, and a few pages that differ among many by a dozen.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"
#include "base/function_ref.h"
#include "control/target_crc.h"
#include "devices/device.h"
#include "images/image.h"

namespace brevant::flash {

enum class Holds {
  TheImage,
  Nothing,  // blank, and the image is not
  Other,
};

// A run of the image's bytes that lies in one page.
struct PagePart {
  base::Address first = 0;
  std::size_t count = 0;
  Holds holds = Holds::Other;

  base::Address last() const { return first + static_cast<base::Address>(count) - 1; }
};

struct Comparison {
  enum class End {
    Complete,
    Cancelled,
    NotSeen,  // the link is lost, or the routine found no room or did not come back
  };
  End end = End::Complete;
  std::vector<PagePart> parts{};  // ascending; what they hold is known when it is complete
};

// Of a stopped target that lets its flash be read. All of the image lies in flash. Progress gets
// the bytes that are known and all of them.
Comparison CompareWithFlash(control::TargetCrc& crc, const devices::FlashGeometry& flash,
                            const images::Image& image,
                            base::FunctionRef<bool(long done, long total)> progress);

}  // namespace brevant::flash
