// SPDX-License-Identifier: MIT
#include "views/breakpoint_list.h"

#include "base/files.h"
#include "base/text_format.h"
#include "views/code_lines.h"

namespace brevant::views {
namespace {

constexpr std::size_t kMaxSourceCharacters = 199;

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(std::move(line));
    begin = end + 1;
  }
  return lines;
}

class SourceFiles {
 public:
  std::optional<std::string> Line(const std::string& file, std::uint32_t line) {
    if (file != file_) {
      file_ = file;
      lines_ = SplitLines(base::ReadFile(file).text);
    }
    if (line < 1 || line > lines_.size()) return std::nullopt;
    return lines_[line - 1];
  }

 private:
  std::string file_;
  std::vector<std::string> lines_;
};

std::optional<std::string> SourceLineText(const symbols::DebugInfo& debug_info,
                                          base::Address address, const SourceText& source_text) {
  if (!debug_info.DebugInfoLoaded) return std::nullopt;
  const auto line = debug_info.LineTable.LineForExactAddress(address);
  const auto& files = debug_info.LineTable.files();
  if (!line || line->file >= files.size()) return std::nullopt;
  auto text = source_text(files[line->file], line->line);
  if (!text) return std::nullopt;
  text->resize(std::min(text->size(), kMaxSourceCharacters));
  text->erase(0, std::min(text->find_first_not_of(" \t"), text->size()));
  return base::Format("%06lx: %s", address, *text);
}

}  // namespace

SourceText ReadSourceFiles() {
  return [files = SourceFiles()](const std::string& file, std::uint32_t line) mutable {
    return files.Line(file, line);
  };
}

BreakpointList::BreakpointList(link::Monitor& monitor, control::BreakpointTable& breakpoints,
                               const symbols::DebugInfo& debug_info, base::UserInterface& ui,
                               const SourceText& source_text)
    : breakpoints_(breakpoints), ui_(ui) {
  for (const control::Breakpoint& entry : breakpoints.entries()) {
    if (!entry.in_use) continue;
    if (auto source = SourceLineText(debug_info, entry.address, source_text)) {
      lines_.push_back(std::move(*source));
      continue;
    }
    base::Address address = entry.address;
    lines_.push_back(ReadCodeLine(monitor, debug_info.SymbolTable, address).text);
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
