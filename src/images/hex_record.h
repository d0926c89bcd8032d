// SPDX-License-Identifier: MIT
// One Intel HEX record: ":", count, 16-bit address, record type, data, checksum. A record is
// valid whatever its checksum.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "base/address.h"
#include "images/record_fault.h"
#include "images/record_tokens.h"

namespace brevant::images {

enum class HexRecordKind {
  Data,       // 00
  EndOfFile,  // 01: reading ends here
  NoRecord,   // and here too
  Base,       // 02 and 04: what the addresses after it are counted from
  Other,      // 03, 05 and unknown types, which are passed over
};

struct HexRecord {
  HexRecordKind kind = HexRecordKind::NoRecord;
  base::Address address = 0;  // of Data 16 bits; of Base the whole base address
  std::vector<std::uint8_t> data;
  bool checksum_right = false;  // of Data
};

std::variant<HexRecord, RecordFault> ParseHexRecord(const RecordToken& token);

}  // namespace brevant::images
