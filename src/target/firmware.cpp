// SPDX-License-Identifier: MIT
#include "target/firmware.h"

#include <string_view>

namespace brevant::target {
namespace {

std::string InLine(long line, std::string_view what) {
  return "line " + std::to_string(line) + ": " + std::string(what);
}

}  // namespace

std::string WhatIsWrong(const images::ImageFile& file) {
  const images::ReadReport& report = file.report;
  if (!report.ok()) return report.file_error;
  if (report.skipped > 0) {
    return InLine(report.first_skipped_line, Describe(report.first_skipped_reason));
  }
  for (const images::ImageRecord& record : file.records) {
    if (!record.checksum_right) return InLine(record.line, "wrong checksum");
    if (record.address + record.bytes.size() > base::kAddressSpace) {
      return InLine(record.line, "address above FFFF");
    }
  }
  if (report.no_record_line) return InLine(*report.no_record_line, "no S-record");
  return report.records == 0 ? "no data records" : "";
}

}  // namespace brevant::target
