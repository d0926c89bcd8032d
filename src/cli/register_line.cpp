// SPDX-License-Identifier: MIT
#include "cli/register_line.h"

#include <fmt/format.h>

#include "base/text_number.h"

namespace brevant::cli {

Result RegisterResult(const control::RegisterFrame& frame) {
  Result result;
  const std::string high = base::FormatBinary(frame.CCR >> 4, 4);
  const std::string low = base::FormatBinary(frame.CCR, 4);
  result.text = fmt::format("PC={:04x} SP={:04x} HX={:04x} A={:02x} CCR={:02x} V11H={} INZC={}\n",
                            frame.PC, frame.ProgramSP(), frame.HX, frame.A, frame.CCR, high, low);
  result.fields = {{"PC", fmt::format("{:04x}", frame.PC)},
                   {"SP", fmt::format("{:04x}", frame.ProgramSP())},
                   {"HX", fmt::format("{:04x}", frame.HX)},
                   {"A", fmt::format("{:02x}", frame.A)},
                   {"CCR", fmt::format("{:02x}", frame.CCR)}};
  return result;
}

}  // namespace brevant::cli
