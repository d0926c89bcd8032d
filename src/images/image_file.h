// SPDX-License-Identifier: MIT
// An image file as a value: its records in file order, and what reading it came to. Malformed
// records are left out and counted, see ReadReport::Refusal; a word that is no record ends the
// file. Pure but for ReadImageFile.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include "base/address.h"
#include "images/image.h"
#include "images/read_report.h"

namespace brevant::images {

struct ImageRecord {
  enum class Kind {
    Data,
    Entry,  // of an end record: the program's entry address
  };
  Kind kind = Kind::Data;
  // As wide as the file gives it; only the low 16 bits exist in the target.
  base::Address address = 0;
  std::vector<std::uint8_t> bytes;
  long line = 0;  // counted from 1
  // Loading and programming do not ask for it.
  bool checksum_right = true;
};

struct ImageFile {
  std::vector<ImageRecord> records;
  ReadReport report;

  // What memory holds when all data records have been written in order.
  Image ToImage() const;
};

using ImageParser = ImageFile (*)(std::string_view text);

// Marks in either case; S0 passed over; every S9 gives an entry address and does not end the file,
// while the other types above S3 do.
ImageFile ParseSRecords(std::string_view text);
// The same for one who knows other ends: the word for which ends_file says yes, and all behind it,
// is not looked at.
ImageFile ParseSRecords(std::string_view text, bool (*ends_file)(std::string_view word));
// Up to the end-of-file record. Base address records are added to what follows them.
ImageFile ParseIntelHex(std::string_view text);
// Either, told apart by the first character.
ImageFile ParseImage(std::string_view text);

// Nothing but the report's file_error when the file cannot be read.
ImageFile ReadImageFile(const std::filesystem::path& path, ImageParser parse = ParseImage);

}  // namespace brevant::images
