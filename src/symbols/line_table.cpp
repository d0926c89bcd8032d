// SPDX-License-Identifier: MIT
#include "symbols/line_table.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace brevant::symbols {
namespace {

std::uint64_t LineKey(std::uint32_t line, std::uint32_t file) {
  return (std::uint64_t{file} << 32) | line;
}

SourceLine LineOf(const LineEntry& entry) {
  return {entry.line, entry.file};
}

}  // namespace

void LineTable::Clear() {
  Assign({}, {});
}

void LineTable::Assign(std::vector<LineEntry> entries, std::vector<std::string> files) {
  ++generation_;
  entries_ = std::move(entries);
  files_ = std::move(files);
  ascending_.resize(entries_.size());
  std::iota(ascending_.begin(), ascending_.end(), std::size_t{0});
  std::ranges::stable_sort(ascending_, {}, [&](std::size_t i) { return entries_[i].address; });
  by_line_.clear();
  by_line_.reserve(entries_.size());
  for (const LineEntry& entry : entries_) {
    by_line_.try_emplace(LineKey(entry.line, entry.file), entry.address);
  }
}

std::size_t LineTable::FirstNotBelow(base::Address address) const {
  const auto found = std::ranges::lower_bound(ascending_, address, {},
                                              [&](std::size_t i) { return entries_[i].address; });
  return static_cast<std::size_t>(found - ascending_.begin());
}

bool LineTable::HasLineAt(base::Address address) const {
  return LineForExactAddress(address).has_value();
}

std::optional<SourceLine> LineTable::LineForAddress(base::Address address) const {
  std::size_t place = FirstNotBelow(address);
  if (place == ascending_.size()) return {};
  const auto entry = [&](std::size_t i) -> const LineEntry& { return entries_[ascending_[i]]; };
  if (entry(place).address > address && place > 0) {
    --place;
  } else if (place + 1 < ascending_.size() && entry(place + 1).address == address) {
    ++place;
  }
  return LineOf(entry(place));
}

std::optional<SourceLine> LineTable::LineForExactAddress(base::Address address) const {
  const std::size_t place = FirstNotBelow(address);
  if (place == ascending_.size()) return {};
  const LineEntry& entry = entries_[ascending_[place]];
  if (entry.address != address) return {};
  return LineOf(entry);
}

std::optional<base::Address> LineTable::AddressForLine(std::uint32_t line,
                                                       std::uint32_t file) const {
  const auto found = by_line_.find(LineKey(line, file));
  if (found == by_line_.end()) return {};
  return found->second;
}

}  // namespace brevant::symbols
