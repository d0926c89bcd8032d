// SPDX-License-Identifier: MIT
#include "images/s_record.h"

#include <numeric>
#include <optional>
#include <string_view>

#include "base/text_number.h"
#include "images/record_bytes.h"

namespace brevant::images {
namespace {

constexpr int kEntryType = 9;
constexpr int kLastDataType = 3;
constexpr std::size_t kCountColumn = 2;
constexpr std::size_t kAddressColumn = 4;

// All bytes behind the type add up to $FF.
bool ChecksumRight(std::string_view text) {
  const auto count = HexField(text, kCountColumn, 2);
  const auto bytes = HexBytes(text, kCountColumn, count.value_or(0) + 1);
  return bytes && (std::accumulate(bytes->begin(), bytes->end(), 0u) & 0xFFu) == 0xFF;
}

std::variant<SRecord, RecordFault> ParseEntry(std::string_view text, bool is_s) {
  // A word such as "x9" is no record at all, while a cut-off S9 is a malformed one.
  const auto entry = HexField(text, kAddressColumn, 4);
  if (entry) return SRecord{SRecordKind::Entry, *entry, {}, ChecksumRight(text)};
  if (!is_s) return SRecord{};
  return text.size() < kAddressColumn + 4 ? RecordFault::TooShort : RecordFault::BadField;
}

std::variant<SRecord, RecordFault> ParseData(std::string_view text, int type) {
  const auto count = HexField(text, kCountColumn, 2);
  if (!count) return text.size() < kAddressColumn ? RecordFault::TooShort : RecordFault::BadField;
  const auto address_bytes = static_cast<std::size_t>(type) + 1;
  if (*count < address_bytes + 1) return RecordFault::CountTooSmall;
  if (text.size() < kAddressColumn + 2 * std::size_t{*count}) return RecordFault::TooShort;
  const auto address = HexField(text, kAddressColumn, 2 * address_bytes);
  auto data = HexBytes(text, kAddressColumn + 2 * address_bytes, *count - address_bytes - 1);
  if (!address || !data) return RecordFault::BadField;
  return SRecord{SRecordKind::Data, *address, std::move(*data), ChecksumRight(text)};
}

}  // namespace

std::variant<SRecord, RecordFault> ParseSRecord(const RecordToken& token) {
  const std::string_view text = token.text;
  const bool is_s = text.front() == 's' || text.front() == 'S';
  if (token.too_long) {
    if (is_s) return RecordFault::TooLong;
    return SRecord{};
  }
  const int type = text.size() > 1 ? base::HexDigitValue(text[1]) : -1;
  if (type == kEntryType) return ParseEntry(text, is_s);
  if (!is_s) return SRecord{};
  if (type < 0) return text.size() > 1 ? RecordFault::BadField : RecordFault::TooShort;
  if (type > kLastDataType) return SRecord{SRecordKind::End, 0, {}, false};
  if (type == 0) return SRecord{SRecordKind::Header, 0, {}, false};
  return ParseData(text, type);
}

}  // namespace brevant::images
