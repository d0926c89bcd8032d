// SPDX-License-Identifier: MIT
// The data records of an S-record file, one at a time, by the flash programmer's rules: marks are
// upper case, and every type above S3 ends the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "images/record_tokens.h"
#include "images/record_walk.h"

namespace brevant::images {

struct FlashRecord {
  base::Address address = 0;  // 16 bits
  std::vector<std::uint8_t> data;
};

class FlashRecords {
 public:
  // The text outlives the records.
  explicit FlashRecords(std::string_view text) : tokens_(text) {}
  // Nothing at the end of the file and from then on.
  std::optional<FlashRecord> Next();
  // So far.
  const ReadReport& report() const { return report_; }

 private:
  RecordTokens tokens_;
  ReadReport report_;
  bool ended_ = false;
};

// Data bytes in all records.
long CountFlashBytes(std::string_view text);

}  // namespace brevant::images
