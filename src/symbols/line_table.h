// SPDX-License-Identifier: MIT
// Which source line each target address comes from. Entries are kept in file order; the indexes
// beside them make lookups fast, and among equal addresses or lines the file order still decides.
// Tool chains write ascending addresses; entries that are not are looked up as if they were sorted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/address.h"

namespace brevant::symbols {

struct LineEntry {
  base::Address address = 0;
  std::uint32_t line = 0;  // counted from 1
  std::uint32_t file = 0;  // index into the source files; may name none
};

struct SourceLine {
  std::uint32_t line = 0;
  std::uint32_t file = 0;
  bool operator==(const SourceLine&) const = default;
};

class LineTable {
 public:
  const std::vector<LineEntry>& entries() const { return entries_; }
  const std::vector<std::string>& files() const { return files_; }
  bool empty() const { return entries_.empty(); }
  void Clear();
  void Assign(std::vector<LineEntry> entries, std::vector<std::string> files);
  // Moves whenever the lines are replaced.
  long generation() const { return generation_; }

  bool HasLineAt(base::Address address) const;
  // A line of C begins at exactly this address; in a program that has none, any line.
  bool HasStatementAt(base::Address address) const;
  // The line shown for a PC: the entry at the address or the nearest below it; of two entries at
  // one address the second; below the first entry the first; above the last nothing.
  std::optional<SourceLine> LineForAddress(base::Address address) const;
  // The first entry with exactly this address.
  std::optional<SourceLine> LineForExactAddress(base::Address address) const;
  // The nearest entry at or below the address, and the nearest above it; null when there is none.
  const LineEntry* EntryBelow(base::Address address) const;
  const LineEntry* EntryAbove(base::Address address) const;
  // Of all entries with exactly this address, in file order, each once.
  std::vector<SourceLine> LinesAt(base::Address address) const;
  // The first entry with this line in this file.
  std::optional<base::Address> AddressForLine(std::uint32_t line, std::uint32_t file) const;

 private:
  long generation_ = 0;
  std::vector<LineEntry> entries_;
  std::vector<std::string> files_;
  bool has_c_ = false;
  std::vector<std::size_t> ascending_;  // entries by address, equal ones in file order
  std::unordered_map<std::uint64_t, base::Address> by_line_;  // first entry of each file and line

  bool IsC(const LineEntry& entry) const;
  std::size_t FirstNotBelow(base::Address address) const;  // a place in ascending_
};

}  // namespace brevant::symbols
