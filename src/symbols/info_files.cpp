// SPDX-License-Identifier: MIT
#include "symbols/info_files.h"

#include <algorithm>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

struct InfoFile {
  const char* name;
  std::string InfoFiles::*content;
};
constexpr InfoFile kInfoFiles[] = {
    {kInfoSource, &InfoFiles::source},
    {kInfoSymbols, &InfoFiles::symbols},
    {kInfoAddresses, &InfoFiles::addresses},
};

}  // namespace

void InfoFilesBuilder::AddSourceLine(std::string_view text) {
  files_.source.append(text).push_back('\n');
  ++lines_;
}

void InfoFilesBuilder::AddSymbol(std::string_view name, std::string_view value) {
  if (name.empty()) return;
  files_.symbols.append(name).append("\t").append(value).push_back('\n');
}

void InfoFilesBuilder::AddSymbol(std::string_view name, base::Address value) {
  AddSymbol(name, base::Format("%x", value));
}

void InfoFilesBuilder::AddAddress(std::string_view address) {
  files_.addresses.append(address).append(base::Format("\t%04x\n", lines_));
}

void InfoFilesBuilder::AddAddress(base::Address address) {
  files_.addresses.append(base::Format("%x\t%x\n", address, lines_));
}

std::string WriteInfoFiles(const std::string& directory, const InfoFiles& files) {
  for (const InfoFile& file : kInfoFiles) {
    const std::string path = base::JoinPath(directory, file.name);
    const std::string error = base::ReplaceFile(path, files.*file.content);
    if (!error.empty()) return base::Format("%s: %s", path, error);
  }
  return {};
}

ParsedProgram ParseInfoFiles(const InfoFiles& files) {
  ParsedProgram program;
  program.files = {kInfoSource};
  LineReader symbols(files.symbols);
  while (const auto line = symbols.Next()) {
    const auto name_end = std::ranges::find_if(*line, IsSpace);
    if (name_end == line->begin() || name_end == line->end()) continue;
    const auto length = static_cast<std::size_t>(name_end - line->begin());
    program.symbols.push_back(
        {std::string(line->substr(0, length)), base::ParseHex(line->substr(length)), 0, {}});
  }
  LineReader addresses(files.addresses);
  while (const auto line = addresses.Next()) {
    const std::size_t tab = line->find('\t');
    if (tab == std::string_view::npos) continue;
    const auto address = LeadingHex(line->substr(0, tab));
    const auto number = LeadingHex(line->substr(tab + 1));
    if (address && number) program.lines.push_back({*address, *number, 0});
  }
  if (!program.HasContent()) program.problem = "no symbols and no addresses";
  return program;
}

ParsedProgram ReadInfoFiles(const std::string& directory) {
  InfoFiles files;
  for (const InfoFile& file : kInfoFiles) {
    const std::string path = base::JoinPath(directory, file.name);
    base::FileText read = base::ReadFile(path);
    if (!read.ok()) return NothingParsed(path + ": " + read.error);
    files.*file.content = std::move(read.text);
  }
  return ParseInfoFiles(files);
}

}  // namespace brevant::symbols
