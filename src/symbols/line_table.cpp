// SPDX-License-Identifier: MIT
#include "symbols/line_table.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "base/file_names.h"

namespace brevant::symbols {
namespace {

std::uint64_t LineKey(std::uint32_t line, std::uint32_t file) {
  return (std::uint64_t{file} << 32) | line;
}

SourceLine LineOf(const LineEntry& entry) {
  return {entry.line, entry.file};
}

// Of assembler sources and of the listings' text.
constexpr std::array<std::string_view, 4> kAssemblerExtensions{"asm", "s", "src", "inc"};

}  // namespace

void LineTable::Clear() {
  Assign({}, {});
}

void LineTable::Assign(std::vector<LineEntry> entries, std::vector<std::string> files) {
  ++generation_;
  entries_ = std::move(entries);
  files_ = std::move(files);
  has_c_ = std::ranges::any_of(entries_, [&](const LineEntry& entry) { return IsC(entry); });
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

bool LineTable::IsC(const LineEntry& entry) const {
  if (entry.file >= files_.size()) return true;
  const std::string extension = base::ExtensionOf(files_[entry.file]);
  return std::ranges::none_of(kAssemblerExtensions, [&](std::string_view assembler) {
    return base::EqualIgnoringCase(extension, assembler);
  });
}

bool LineTable::HasStatementAt(base::Address address) const {
  for (std::size_t i = FirstNotBelow(address); i < ascending_.size(); ++i) {
    const LineEntry& entry = entries_[ascending_[i]];
    if (entry.address != address) break;
    if (!has_c_ || IsC(entry)) return true;
  }
  return false;
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

const LineEntry* LineTable::EntryBelow(base::Address address) const {
  const std::size_t place = FirstNotBelow(address + 1);
  return place == 0 ? nullptr : &entries_[ascending_[place - 1]];
}

const LineEntry* LineTable::EntryAbove(base::Address address) const {
  const std::size_t place = FirstNotBelow(address + 1);
  return place == ascending_.size() ? nullptr : &entries_[ascending_[place]];
}

std::vector<SourceLine> LineTable::LinesAt(base::Address address) const {
  std::vector<SourceLine> lines;
  for (std::size_t i = FirstNotBelow(address); i < ascending_.size(); ++i) {
    const LineEntry& entry = entries_[ascending_[i]];
    if (entry.address != address) break;
    if (std::ranges::find(lines, LineOf(entry)) == lines.end()) lines.push_back(LineOf(entry));
  }
  return lines;
}

std::optional<base::Address> LineTable::AddressForLine(std::uint32_t line,
                                                       std::uint32_t file) const {
  const auto found = by_line_.find(LineKey(line, file));
  if (found == by_line_.end()) return {};
  return found->second;
}

}  // namespace brevant::symbols
