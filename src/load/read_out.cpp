// SPDX-License-Identifier: MIT
#include "load/read_out.h"

#include <cstdint>
#include <vector>

#include "base/files.h"
#include "images/image_writer.h"
#include "load/confirmed_read.h"

namespace brevant::load {
namespace {

// Nothing when all was read.
std::optional<ReadOutResult> Failure(base::Address first, const ConfirmedRead& read) {
  const auto reached = first + static_cast<base::Address>(read.bytes);
  if (read.range == RangeResult::LinkLost) {
    return ReadOutResult{ReadOutOutcome::LinkLost, 0, reached, {}};
  }
  if (read.damaged) return ReadOutResult{ReadOutOutcome::Damaged, 0, *read.damaged, {}};
  if (read.range == RangeResult::Stopped) return ReadOutResult{ReadOutOutcome::Cancelled, 0, 0, {}};
  return std::nullopt;
}

ReadOutResult Save(const std::string& path, std::string_view text, std::size_t bytes) {
  const std::string error = base::ReplaceFile(path, text);
  if (!error.empty()) return {ReadOutOutcome::NotWritten, 0, 0, error};
  return {ReadOutOutcome::Saved, static_cast<long>(bytes), 0, {}};
}

}  // namespace

ReadOutResult ReadOut(memory::Memory& memory, control::TargetCrc& crc, base::Address first,
                      base::Address last, const std::string& path, Progress progress) {
  const auto format = images::FormatOfPath(path);
  if (!format) return {ReadOutOutcome::UnknownFormat, 0, 0, {}};
  if (last > base::kLastAddress || last < first) return {ReadOutOutcome::BadRange, 0, 0, {}};
  std::vector<std::uint8_t> bytes(last - first + 1);
  if (const auto failure = Failure(first, ReadConfirmed(memory, crc, first, bytes, progress))) {
    return *failure;
  }
  return Save(path, images::ImageText(*format, first, bytes), bytes.size());
}

ReadOutResult ReadOut(memory::Memory& memory, control::TargetCrc& crc,
                      std::span<const devices::MemoryRange> ranges, images::Image known,
                      const std::string& path, Progress progress) {
  long total = 0, done = 0;
  for (const devices::MemoryRange& range : ranges) total += range.last - range.first + 1;
  for (const devices::MemoryRange& range : ranges) {
    std::vector<std::uint8_t> bytes(range.last - range.first + 1);
    const auto of_all = [&](long of_range, long) { return progress(done + of_range, total); };
    if (const auto failure =
            Failure(range.first, ReadConfirmed(memory, crc, range.first, bytes, of_all))) {
      return *failure;
    }
    known.Put(range.first, bytes);
    done += static_cast<long>(bytes.size());
  }
  return Save(path, images::SRecordText(known), static_cast<std::size_t>(known.size()));
}

}  // namespace brevant::load
