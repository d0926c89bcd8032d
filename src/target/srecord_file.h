// SPDX-License-Identifier: MIT
// Reading an S-record file into the memory of a board that is not powered yet.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"

namespace brevant::target {

struct Segment {
  base::Address address = 0;
  std::vector<std::uint8_t> bytes;
  bool operator==(const Segment&) const = default;
};

struct SRecords {
  std::vector<Segment> segments;  // one a data record, in file order
  std::string error;              // empty, or what is wrong and in which line
};

// Data records S1 to S3; the other kinds are passed over. Lengths, checksums and addresses above
// $FFFF are errors.
SRecords ParseSRecords(std::string_view text);

}  // namespace brevant::target
