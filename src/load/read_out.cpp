// SPDX-License-Identifier: MIT
#include "load/read_out.h"

#include <cstdint>
#include <vector>

#include "base/files.h"
#include "images/image_writer.h"
#include "load/target_range.h"

namespace brevant::load {

ReadOutResult ReadOut(memory::Memory& memory, base::Address first, base::Address last,
                      const std::string& path, Progress progress) {
  const auto format = images::FormatOfPath(path);
  if (!format) return {ReadOutOutcome::UnknownFormat, 0, {}};
  if (last > base::kLastAddress || last < first) return {ReadOutOutcome::BadRange, 0, {}};
  const std::size_t count = last - first + 1;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(count);
  const auto collect = [&](base::Address, base::Bytes portion) {
    bytes.insert(bytes.end(), portion.begin(), portion.end());
    return progress(static_cast<long>(bytes.size()), static_cast<long>(count));
  };
  const RangeResult range = ReadRange(memory, first, count, collect);
  if (range == RangeResult::LinkLost) return {ReadOutOutcome::LinkLost, 0, {}};
  if (range == RangeResult::Stopped) return {ReadOutOutcome::Cancelled, 0, {}};
  const std::string error = base::ReplaceFile(path, images::ImageText(*format, first, bytes));
  if (!error.empty()) return {ReadOutOutcome::NotWritten, 0, error};
  return {ReadOutOutcome::Saved, static_cast<long>(count), {}};
}

}  // namespace brevant::load
