// SPDX-License-Identifier: MIT
// One Intel HEX record: ":", count, 16-bit address, record type, data, checksum. Checksums are
// neither required to be right nor looked at.
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
  EndOfFile,  // 01, or no Intel HEX record at all: reading ends here
  Base,       // 02 and 04: what the addresses after it are counted from
  Other,      // 03, 05 and unknown types, which are passed over
};

struct HexRecord {
  HexRecordKind kind = HexRecordKind::EndOfFile;
  base::Address address = 0;  // of Data 16 bits; of Base the whole base address
  std::vector<std::uint8_t> data;
};

std::variant<HexRecord, RecordFault> ParseHexRecord(const RecordToken& token);

}  // namespace brevant::images
