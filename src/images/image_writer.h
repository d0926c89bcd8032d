// SPDX-License-Identifier: MIT
// Image files from bytes: S-records, Intel HEX or the bytes themselves. Pure text building.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/address.h"
#include "images/image.h"

namespace brevant::images {

enum class FileFormat { SRecord, IntelHex, Binary };

// By extension, ignoring case: s19 and sx, hex, bin; nothing for any other.
std::optional<FileFormat> FormatOfPath(std::string_view path);

// An S0 header, S1 records of at most 16 bytes, their number as S5, and S9. Bytes read from a
// target have no entry address: the loader stops at S5, so it does not take one from S9. Addresses
// wrap at 16 bits; a record never crosses the end of the address space.
std::string SRecordText(base::Address first, base::Bytes bytes);
// The same for all blocks of an image.
std::string SRecordText(const Image& image);
// Type 00 records of at most 16 bytes and the end-of-file record, likewise.
std::string IntelHexText(base::Address first, base::Bytes bytes);
std::string BinaryText(base::Bytes bytes);

std::string ImageText(FileFormat format, base::Address first, base::Bytes bytes);

}  // namespace brevant::images
