// SPDX-License-Identifier: MIT
// One Motorola S-record: S, a type digit, the count of bytes that follow, an address of 2 to 4
// bytes, data, checksum. A record is valid whatever its checksum.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "base/address.h"
#include "images/record_fault.h"
#include "images/record_tokens.h"

namespace brevant::images {

enum class SRecordKind {
  Header,    // S0
  Data,      // S1, S2, S3
  Entry,     // S9, whatever its mark
  End,       // any other type: reading ends here
  NoRecord,  // and here too
};

struct SRecord {
  SRecordKind kind = SRecordKind::NoRecord;
  base::Address address = 0;  // as wide as the record gives it; of Entry 16 bits
  std::vector<std::uint8_t> data;
  bool checksum_right = false;  // of Data and Entry
};

std::variant<SRecord, RecordFault> ParseSRecord(const RecordToken& token);

}  // namespace brevant::images
