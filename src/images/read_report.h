// SPDX-License-Identifier: MIT
// What reading an image file came to.
#pragma once

#include <optional>
#include <string>
#include <vector>

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
  // Malformed records.
  long skipped = 0;
  long first_skipped_line = 0;
  RecordFault first_skipped_reason = RecordFault::None;
  // Bytes of Intel HEX data above $FFFF, which wrapped into the target's 64 KB.
  long beyond_16_bits = 0;
  // Line of the word that is no record at all and so ended the reading.
  std::optional<long> no_record_line;
  // An Intel HEX file, which has to have an end record, ended without.
  bool no_end_record = false;
  // Of data records; they are taken all the same.
  long wrong_checksums = 0;
  long first_wrong_checksum_line = 0;

  bool ok() const { return file_error.empty(); }
  void CountSkipped(long line, RecordFault reason);
  void CountData(long line, std::size_t count, bool checksum_right);
  // Why nothing of the file may go to the target: a malformed record, or none at all.
  std::optional<base::Message> Refusal(const std::string& path) const;
  // What the user should know of a file that is taken.
  std::vector<base::Message> Remarks(const std::string& path) const;
};

}  // namespace brevant::images
