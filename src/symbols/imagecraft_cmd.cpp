// SPDX-License-Identifier: MIT
#include "symbols/imagecraft_cmd.h"

#include <string>

#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

void AddRecord(const std::vector<std::string_view>& words, ParsedProgram& program) {
  const std::string_view keyword = words[0];
  const std::string_view argument = words[1];
  if (keyword.starts_with("FILE")) {
    program.files.emplace_back(argument);
    return;
  }
  const auto value = words.size() > 2 ? LeadingHex(words[2]) : std::nullopt;
  if (!value) return;
  if (keyword.starts_with("DEF")) {
    program.symbols.push_back({std::string(argument), *value, 0, {}});
  } else if (keyword.starts_with("LINE")) {
    const auto file = program.files.empty() ? kNoSourceFile
                                            : static_cast<std::uint32_t>(program.files.size() - 1);
    if (const auto line = LeadingDecimal(argument)) program.lines.push_back({*value, *line, file});
  } else if (keyword.starts_with("REG") && argument.starts_with("PC")) {
    program.reset_vectors.push_back(static_cast<std::uint16_t>(*value));
  }
}

}  // namespace

ParsedProgram ParseImagecraftCmd(std::string_view commands) {
  ParsedProgram program;
  LineReader reader(commands);
  while (const auto line = reader.Next()) {
    const auto words = Words(*line);
    if (words.size() > 1) AddRecord(words, program);
  }
  if (!program.HasContent()) program.problem = "no symbols and no lines";
  return program;
}

}  // namespace brevant::symbols
