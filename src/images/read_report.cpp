// SPDX-License-Identifier: MIT
#include "images/read_report.h"

#include "images/messages.h"

namespace brevant::images {

void ReadReport::CountSkipped(long line, RecordFault reason) {
  if (skipped++ > 0) return;
  first_skipped_line = line;
  first_skipped_reason = reason;
}

std::optional<base::Message> ReadReport::SkippedMessage(const std::string& path) const {
  if (skipped == 0) return std::nullopt;
  return ToMessage(messages::kRecordsSkipped, skipped, path, first_skipped_line,
                   std::string(Describe(first_skipped_reason)));
}

}  // namespace brevant::images
