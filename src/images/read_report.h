// SPDX-License-Identifier: MIT
// What reading an image file came to.
#pragma once

#include <optional>
#include <string>

#include "base/address.h"
#include "base/user_interface.h"
#include "images/record_fault.h"

namespace brevant::images {

struct ReadReport {
  // Why the file could not be read, in the system's words; empty when it was.
  std::string file_error;
  long records = 0;  // data records
  long bytes = 0;
  std::optional<base::Address> entry;
  // Malformed records, which are passed over.
  long skipped = 0;
  long first_skipped_line = 0;
  RecordFault first_skipped_reason = RecordFault::None;
  // Bytes of Intel HEX data above $FFFF, which wrapped into the target's 64 KB.
  long beyond_16_bits = 0;
  // Line of the word that is no record at all and so ended the reading.
  std::optional<long> no_record_line;

  bool ok() const { return file_error.empty(); }
  void CountSkipped(long line, RecordFault reason);
  // What to tell the user about malformed records; nothing when there are none.
  std::optional<base::Message> SkippedMessage(const std::string& path) const;
};

}  // namespace brevant::images
