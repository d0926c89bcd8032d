// SPDX-License-Identifier: MIT
// Compares the target's memory with an image.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/address.h"
#include "control/target_crc.h"
#include "images/image.h"
#include "load/progress.h"
#include "memory/memory.h"

namespace brevant::load {

using memory::Difference;

enum class VerifyOutcome { Equal, Different, Cancelled, LinkLost };

struct VerifyResult {
  VerifyOutcome outcome = VerifyOutcome::Equal;
  long compared = 0;
  long different = 0;
  std::optional<Difference> first;    // in ascending addresses
  std::vector<Difference> listed;     // the first kMostListed of them
  std::optional<base::Address> last;  // that was compared

  static constexpr std::size_t kMostListed = 1000;
};

// Looks at everything that the image holds and nothing else; at what differs twice, since a bit
// that the line turns shows in no echo. What was read when the link failed is not compared. With
// crc, stretches of flash are compared by their CRC, and only pieces that differ are read.
VerifyResult Verify(memory::Memory& memory, const images::Image& image, Progress progress,
                    control::TargetCrc* crc = nullptr);

}  // namespace brevant::load
