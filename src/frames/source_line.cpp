// SPDX-License-Identifier: MIT
#include "frames/source_line.h"

#include <algorithm>

#include "frames/function_at.h"

namespace brevant::frames {
namespace {

using base::Address;
using symbols::LineEntry;
using symbols::SourceLine;

bool Same(const SourceLine& a, const SourceLine& b) {
  return a.line == b.line && a.file == b.file;
}

bool SymbolBetween(Address from, Address to, const symbols::DebugInfo& info) {
  return std::ranges::any_of(info.SymbolTable.symbols(), [&](const symbols::Symbol& symbol) {
    return from < symbol.address && symbol.address <= to;
  });
}

}  // namespace

std::optional<SourceLine> LineAt(Address address, const symbols::DebugInfo& info) {
  const symbols::LineTable& table = info.LineTable;
  if (table.HasLineAt(address)) return table.LineForAddress(address);
  const LineEntry* const below = table.EntryBelow(address);
  if (below == nullptr) return std::nullopt;
  if (const symbols::Function* const function = FunctionAt(address, info)) {
    if (below->address < function->first) return std::nullopt;
    return table.LineForAddress(below->address);
  }
  if (!info.functions.empty() || table.EntryAbove(address) == nullptr ||
      SymbolBetween(below->address, address, info)) {
    return std::nullopt;
  }
  return table.LineForAddress(below->address);
}

memory::Range CodeOfLineAt(Address address, const symbols::DebugInfo& info) {
  const symbols::LineTable& table = info.LineTable;
  const auto line = LineAt(address, info);
  const symbols::Function* const function = FunctionAt(address, info);
  const auto is_same = [&](Address at) {
    const auto other = LineAt(at, info);
    return line && other && Same(*line, *other) && FunctionAt(at, info) == function;
  };
  Address first = address;
  if (const LineEntry* entry = table.EntryBelow(address)) first = entry->address;
  while (first > 0) {
    const LineEntry* const before = table.EntryBelow(first - 1);
    if (before == nullptr || !is_same(before->address)) break;
    first = before->address;
  }
  Address end = address + 1;
  while (true) {
    const LineEntry* const next = table.EntryAbove(end - 1);
    if (function != nullptr && (next == nullptr || next->address > function->last)) {
      end = function->last + 1;
      break;
    }
    if (next == nullptr) break;
    end = next->address;
    if (!is_same(end)) break;
    ++end;
  }
  return {first, end - first};
}

Address FirstStatement(const symbols::Function& function, const symbols::DebugInfo& info) {
  const symbols::LineTable& table = info.LineTable;
  const auto opening = table.LineForExactAddress(function.first);
  if (!opening) return function.first;
  // Two lines at the first byte: nothing is done on entry.
  if (const auto shown = table.LineForAddress(function.first); shown && !Same(*opening, *shown)) {
    return function.first;
  }
  const LineEntry* next = table.EntryAbove(function.first);
  while (next != nullptr && next->address <= function.last) {
    if (!Same(*opening, {next->line, next->file})) return next->address;
    next = table.EntryAbove(next->address);
  }
  return function.first;
}

}  // namespace brevant::frames
