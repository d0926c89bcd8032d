// SPDX-License-Identifier: MIT
#include "images/hex_record.h"

#include <numeric>
#include <optional>
#include <string_view>

#include "images/record_bytes.h"

namespace brevant::images {
namespace {

constexpr std::size_t kDataColumn = 9;

// An 8086 segment is counted in units of 16 bytes; a linear base is the upper half of 32 bits.
std::optional<int> BaseShift(std::uint32_t type) {
  if (type == 2) return 4;
  if (type == 4) return 16;
  return std::nullopt;
}

// All bytes behind the colon, of which only the data's number varies, add up to 0.
bool ChecksumRight(std::string_view text, std::size_t count) {
  const auto bytes = HexBytes(text, 1, 4 + count + 1);
  return bytes && (std::accumulate(bytes->begin(), bytes->end(), 0u) & 0xFFu) == 0;
}

}  // namespace

std::variant<HexRecord, RecordFault> ParseHexRecord(const RecordToken& token) {
  const std::string_view text = token.text;
  if (text.front() != ':') return HexRecord{};
  if (token.too_long) return RecordFault::TooLong;
  if (text.size() < kDataColumn) return RecordFault::TooShort;
  const auto count = HexField(text, 1, 2);
  const auto address = HexField(text, 3, 4);
  const auto type = HexField(text, 7, 2);
  if (!count || !address || !type) return RecordFault::BadField;
  if (*type == 1) return HexRecord{HexRecordKind::EndOfFile, 0, {}, false};
  // The data and the byte of the checksum.
  if (text.size() < kDataColumn + 2 * (std::size_t{*count} + 1)) return RecordFault::TooShort;
  auto data = HexBytes(text, kDataColumn, *count);
  if (!data) return RecordFault::BadField;
  if (const auto shift = BaseShift(*type)) {
    if (data->size() < 2) return RecordFault::CountTooSmall;
    return HexRecord{HexRecordKind::Base, base::Word((*data)[0], (*data)[1]) << *shift, {}, false};
  }
  if (*type != 0) return HexRecord{HexRecordKind::Other, 0, {}, false};
  return HexRecord{HexRecordKind::Data, *address, std::move(*data), ChecksumRight(text, *count)};
}

}  // namespace brevant::images
