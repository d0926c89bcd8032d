// SPDX-License-Identifier: MIT
#include "devices/reset_cause.h"

namespace brevant::devices {
namespace {

struct Row {
  std::uint8_t bit;
  std::string_view text;
};
// Power-on clears the others, so that one which stands beside it came later.
constexpr Row kRows[] = {
    {0x20, "COP time-out"}, {0x10, "illegal opcode"}, {0x08, "illegal address"},
    {0x02, "low voltage"},  {0x40, "reset pin"},      {0x80, "its power was lost"},
};

}  // namespace

std::string_view ResetCause(std::uint8_t status) {
  for (const Row& row : kRows) {
    if ((status & row.bit) != 0) return row.text;
  }
  return "unknown cause";
}

}  // namespace brevant::devices
