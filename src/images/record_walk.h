// SPDX-License-Identifier: MIT
// Walks the records of an image file's text from start to end and hands over what they say. Pure:
// who receives the data decides what becomes of them. Malformed records are skipped and counted; a
// word that is no record ends the walk.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/address.h"
#include "images/record_fault.h"
#include "images/record_tokens.h"

namespace brevant::images {

class RecordSink {
 public:
  virtual ~RecordSink() = default;
  // One data record. Only the low 16 bits of an address exist in the target. False ends the walk.
  virtual bool Data(base::Address address, base::Bytes bytes) = 0;
  // The entry address of an end record.
  virtual void Entry(base::Address address) = 0;
};

// What became of the records of one file.
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
  // Line of the word that ended the walk before the end of the text: an end record, or no record.
  std::optional<long> stopped_at_line;
  bool cancelled = false;  // the receiver ended the walk

  bool ok() const { return file_error.empty(); }
  void CountSkipped(const RecordToken& token, RecordFault reason);
};

// Marks in either case; S0 passed over; every S9 gives an entry address and does not end the walk,
// while the types above S3 do.
ReadReport WalkSRecords(std::string_view text, RecordSink& sink);
// Up to the end-of-file record. Base address records are added to what follows them.
ReadReport WalkIntelHex(std::string_view text, RecordSink& sink);

}  // namespace brevant::images
