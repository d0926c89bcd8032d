// SPDX-License-Identifier: MIT
#include "load/read_out.h"

#include <cstdint>
#include <vector>

#include "base/files.h"
#include "images/image_writer.h"
#include "load/confirmed_read.h"

namespace brevant::load {

ReadOutResult ReadOut(memory::Memory& memory, control::TargetCrc& crc, base::Address first,
                      base::Address last, const std::string& path, Progress progress) {
  const auto format = images::FormatOfPath(path);
  if (!format) return {ReadOutOutcome::UnknownFormat, 0, 0, {}};
  if (last > base::kLastAddress || last < first) return {ReadOutOutcome::BadRange, 0, 0, {}};
  const std::size_t count = last - first + 1;
  std::vector<std::uint8_t> bytes(count);
  const ConfirmedRead read = ReadConfirmed(memory, crc, first, bytes, progress);
  if (read.range == RangeResult::LinkLost) return {ReadOutOutcome::LinkLost, 0, 0, {}};
  if (read.damaged) return {ReadOutOutcome::Damaged, 0, *read.damaged, {}};
  if (read.range == RangeResult::Stopped) return {ReadOutOutcome::Cancelled, 0, 0, {}};
  const std::string error = base::ReplaceFile(path, images::ImageText(*format, first, bytes));
  if (!error.empty()) return {ReadOutOutcome::NotWritten, 0, 0, error};
  return {ReadOutOutcome::Saved, static_cast<long>(count), 0, {}};
}

}  // namespace brevant::load
