// SPDX-License-Identifier: MIT
#include "views/source_files.h"

namespace brevant::views {
namespace {

// More of a line is shown nowhere but in the source window.
constexpr int kMostPathCharacters = 200;

}  // namespace

const SourceFiles::File& SourceFiles::Get(std::uint32_t file) {
  if (of_lines_ != info_.LineTable.generation()) {
    Forget();
    of_lines_ = info_.LineTable.generation();
  }
  const auto [known, is_new] = files_.try_emplace(file);
  File& entry = known->second;
  if (is_new || (entry.place.found && !entry.index.Current())) {
    // It may lie elsewhere now, or nowhere.
    entry.place = symbols::FindSource(info_, file, folders_());
    entry.index = entry.place.found ? SourceIndex(entry.place.path) : SourceIndex();
    ++generation_;
  }
  return entry;
}

std::optional<std::string> SourceFiles::Text(const symbols::SourceLine& line) {
  if (line.line == 0) return std::nullopt;
  const auto lines =
      Get(line.file).index.Read(static_cast<int>(line.line) - 1, 1, kMostPathCharacters);
  if (!lines || lines->empty()) return std::nullopt;
  return lines->front().text;
}

}  // namespace brevant::views
