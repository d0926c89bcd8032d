// SPDX-License-Identifier: MIT
#include "images/read_report.h"

#include "images/messages.h"

namespace brevant::images {

void ReadReport::CountSkipped(long line, RecordFault reason) {
  if (skipped++ > 0) return;
  first_skipped_line = line;
  first_skipped_reason = reason;
}

void ReadReport::CountData(long line, std::size_t count, bool checksum_right) {
  ++records;
  bytes += static_cast<long>(count);
  if (!checksum_right && wrong_checksums++ == 0) first_wrong_checksum_line = line;
}

std::optional<base::Message> ReadReport::Refusal(const std::string& path) const {
  if (skipped > 0) {
    return ToMessage(messages::kDamaged, path, first_skipped_line,
                     std::string(Describe(first_skipped_reason)), skipped);
  }
  if (records == 0 && !entry) return ToMessage(messages::kNoRecords, path);
  return std::nullopt;
}

std::vector<base::Message> ReadReport::Remarks(const std::string& path) const {
  std::vector<base::Message> remarks;
  if (wrong_checksums > 0) {
    remarks.push_back(
        ToMessage(messages::kWrongChecksums, wrong_checksums, path, first_wrong_checksum_line));
  }
  if (no_record_line) remarks.push_back(ToMessage(messages::kRestNotRead, *no_record_line, path));
  if (no_end_record) remarks.push_back(ToMessage(messages::kNoEndRecord, path));
  return remarks;
}

}  // namespace brevant::images
