// SPDX-License-Identifier: MIT
// S-record files by the flash programmer's rules: marks are upper case, and every type above S3
// ends the file. So there is no entry address.
#pragma once

#include <string_view>

#include "images/image_file.h"

namespace brevant::flash {

images::ImageFile ParseFlashRecords(std::string_view text);

}  // namespace brevant::flash
