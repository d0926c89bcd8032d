// SPDX-License-Identifier: MIT
// What may be in the flash of a board when it is powered up.
#pragma once

#include <string>

#include "images/image_file.h"

namespace brevant::target {

// Empty, or what is wrong and in which line. A board is stricter than a debugger: malformed
// records, wrong checksums, addresses above $FFFF and words that are no record are errors.
std::string WhatIsWrong(const images::ImageFile& file);

}  // namespace brevant::target
