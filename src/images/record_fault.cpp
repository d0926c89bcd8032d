// SPDX-License-Identifier: MIT
#include "images/record_fault.h"

#include <array>

namespace brevant::images {
namespace {

constexpr std::array<std::string_view, 5> kDescriptions{
    "nothing wrong",
    "longer than 255 characters",
    "a field is not hexadecimal",
    "the count is too small for the address and the checksum",
    "fewer characters than the count says",
};

}  // namespace

std::string_view Describe(RecordFault fault) {
  return kDescriptions.at(static_cast<std::size_t>(fault));
}

}  // namespace brevant::images
