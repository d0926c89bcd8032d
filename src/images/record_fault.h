// SPDX-License-Identifier: MIT
// Why a record of an image file is malformed.
#pragma once

#include <string_view>

namespace brevant::images {

enum class RecordFault {
  None,
  TooLong,        // more characters than a record may have
  BadField,       // a field does not hold hexadecimal digits
  CountTooSmall,  // the count leaves no room for the address and the checksum
  TooShort,       // fewer characters than the count says
};

// "fewer characters than its count says": to follow "line 12: ".
std::string_view Describe(RecordFault fault);

}  // namespace brevant::images
