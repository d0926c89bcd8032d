// SPDX-License-Identifier: MIT
#include "images/flash_records.h"

#include <utility>
#include <variant>

#include "base/text_number.h"
#include "images/s_record.h"

namespace brevant::images {
namespace {

constexpr int kLastDataType = 3;

bool EndsFile(std::string_view token) {
  return token.front() != 'S' ||
         (token.size() > 1 && base::HexDigitValue(token[1]) > kLastDataType);
}

}  // namespace

std::optional<FlashRecord> FlashRecords::Next() {
  while (!ended_) {
    const auto token = tokens_.Next();
    ended_ = !token || EndsFile(token->text);
    if (ended_) break;
    auto parsed = ParseSRecord(*token);
    if (const auto* fault = std::get_if<RecordFault>(&parsed)) {
      report_.CountSkipped(*token, *fault);
      continue;
    }
    auto& record = std::get<SRecord>(parsed);
    if (record.kind != SRecordKind::Data) continue;
    ++report_.records;
    report_.bytes += static_cast<long>(record.data.size());
    return FlashRecord{base::Low16(record.address), std::move(record.data)};
  }
  return std::nullopt;
}

long CountFlashBytes(std::string_view text) {
  FlashRecords records(text);
  while (records.Next()) {
  }
  return records.report().bytes;
}

}  // namespace brevant::images
