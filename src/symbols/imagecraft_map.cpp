// SPDX-License-Identifier: MIT
#include "symbols/imagecraft_map.h"

#include <algorithm>
#include <string>

#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kLineLimit = 254;
constexpr std::size_t kAddress = 7;
constexpr std::size_t kEntry = 13;

// The first file whose name begins with the text; the number of files when there is none.
std::uint32_t FileIndex(const std::vector<std::string>& files, std::string_view start) {
  const auto found =
      std::ranges::find_if(files, [&](const std::string& file) { return file.starts_with(start); });
  return static_cast<std::uint32_t>(found - files.begin());
}

void AddEntry(std::string_view line, ParsedProgram& program) {
  const auto address = LeadingHex(Columns(line, kAddress, 4));
  const std::string_view entry = Columns(line, kEntry);
  if (!address || entry.empty()) return;
  const std::size_t dot = entry.find('.');
  if (dot != std::string_view::npos) {
    // The file name may come with its own extension: the number is what follows the last dot.
    const auto number = LeadingDecimal(entry.substr(entry.rfind('.') + 1));
    if (number) {
      program.lines.push_back({*address, *number, FileIndex(program.files, entry.substr(0, dot))});
    }
  } else if (!entry.starts_with("__bss_star") && !entry.starts_with("__bss_en")) {
    program.symbols.push_back({std::string(entry), *address, 0, {}});
  }
}

}  // namespace

ParsedProgram ParseImagecraftMap(std::string_view map, std::string_view source_list) {
  LineReader head(map, kLineLimit);
  head.Skip(1);
  if (!head.Next().value_or("").starts_with("Area")) {
    return NothingParsed("line 2 does not begin with \"Area\"");
  }
  ParsedProgram program;
  LineReader sources(source_list, kLineLimit);
  while (const auto name = sources.Next()) program.files.emplace_back(*name);

  LineReader reader(map, kLineLimit);
  bool in_area = false;
  while (auto line = reader.Next()) {
    if (line->starts_with("Area")) {
      while (line && Columns(*line, kAddress, 4) != "Addr") line = reader.Next();
      reader.Skip(1);
      in_area = true;
    } else if (line->empty()) {
      in_area = false;
    } else if (in_area) {
      AddEntry(*line, program);
    }
  }
  if (!program.HasContent()) program.problem = "no symbols and no lines";
  return program;
}

}  // namespace brevant::symbols
