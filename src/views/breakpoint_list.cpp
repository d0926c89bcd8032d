// SPDX-License-Identifier: MIT
#include "views/breakpoint_list.h"

#include <algorithm>

#include "base/text_format.h"
#include "symbols/source_text.h"
#include "views/code_lines.h"

namespace brevant::views {
namespace {

constexpr std::size_t kMaxSourceCharacters = 199;

std::optional<std::string> SourceLineText(const symbols::DebugInfo& debug_info,
                                          base::Address address,
                                          const symbols::SourceFolders& sources) {
  if (!debug_info.DebugInfoLoaded) return std::nullopt;
  const auto line = debug_info.LineTable.LineForExactAddress(address);
  if (!line) return std::nullopt;
  auto text = symbols::SourceText(debug_info, *line, sources);
  if (!text) return std::nullopt;
  text->resize(std::min(text->size(), kMaxSourceCharacters));
  text->erase(0, std::min(text->find_first_not_of(" \t"), text->size()));
  return base::Format("%06lx: %s", address, *text);
}

}  // namespace

BreakpointList::BreakpointList(memory::Memory& memory, control::BreakpointTable& breakpoints,
                               const symbols::DebugInfo& debug_info, const isa::SymbolNames& names,
                               const symbols::SourceFolders& sources, base::UserInterface& ui)
    : breakpoints_(breakpoints), ui_(ui) {
  for (const control::Breakpoint& entry : breakpoints.entries()) {
    if (!entry.in_use) continue;
    if (auto source = SourceLineText(debug_info, entry.address, sources)) {
      lines_.push_back(std::move(*source));
      continue;
    }
    base::Address address = entry.address;
    lines_.push_back(ReadCodeLine(memory, names, address).text);
  }
}

std::optional<base::Address> BreakpointList::Selected(std::optional<int> selection) const {
  const int index = selection && *selection >= 0 ? breakpoints_.NthBreakpoint(*selection)
                                                 : control::kNoBreakpoint;
  if (index == control::kNoBreakpoint) {
    ui_.Beep();
    return std::nullopt;
  }
  return breakpoints_.entries().at(static_cast<std::size_t>(index)).address;
}

std::optional<base::Address> BreakpointList::GoTo(std::optional<int> selection) {
  const auto address = Selected(selection);
  if (address) result_ = Result::GoTo;
  return address;
}

bool BreakpointList::Delete(std::optional<int> selection) {
  const auto address = Selected(selection);
  if (!address) return false;
  breakpoints_.RemoveBreakpoint(*address);
  lines_.erase(lines_.begin() + *selection);
  result_ = Result::Deleted;
  return true;
}

}  // namespace brevant::views
