// SPDX-License-Identifier: MIT
#include "symbols/mcuez_assembler.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/file_names.h"
#include "base/text_number.h"
#include "symbols/info_files.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kLineLimit = 198;
constexpr std::size_t kOffset = 13;
constexpr std::size_t kOffsetDigits = 6;
constexpr std::size_t kSource = 32;

struct Section {
  std::string name;
  base::Address base = 0;
};

std::vector<Section> ParseSections(std::string_view parameters) {
  std::vector<Section> sections;
  LineReader reader(parameters, kLineLimit);
  while (const auto line = reader.Next()) {
    const auto words = Words(*line);
    if (words.size() < 4 || !words[1].starts_with('=') || words[3].size() < 2) continue;
    const auto address = LeadingHex(words[3].substr(2));
    if (address) sections.push_back({std::string(words[0]), *address});
  }
  return sections;
}

class Importer {
 public:
  explicit Importer(std::vector<Section> sections) : sections_(std::move(sections)) {
    sections_.push_back({{}, 0});
    current_ = sections_.size() - 1;
  }
  void Line(std::string_view line);
  InfoFiles Take() { return info_.Take(); }

 private:
  void Label(std::string_view line);
  void EnterSection(std::string_view name);
  void SymbolHere(std::string_view name) {
    if (current_) info_.AddSymbol(name, sections_[*current_].base + offset_);
  }

  std::vector<Section> sections_;  // the last one stands for the lines before any SECTION
  std::optional<std::size_t> current_;
  base::Address offset_ = 0;
  std::vector<std::string_view> pending_;  // labels alone on their lines
  InfoFilesBuilder info_;
};

void Importer::Line(std::string_view line) {
  std::string_view number = Columns(line, 0, 5);
  number.remove_prefix(std::min(number.find_first_not_of(' '), number.size()));
  const bool numbered =
      !number.empty() && std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; });
  if (line.size() + 1 < kSource || !numbered) return;
  info_.AddSourceLine(Columns(line, kSource));
  if (At(line, kSource) == ';') return;
  if (base::IsHexDigit(At(line, kOffset)) && base::IsHexDigit(At(line, 20)) &&
      base::IsHexDigit(At(line, 21))) {
    offset_ = LeadingHex(Columns(line, kOffset, kOffsetDigits)).value_or(0);
    if (current_) info_.AddAddress(sections_[*current_].base + offset_);
    for (const std::string_view label : pending_) SymbolHere(label);
    pending_.clear();
  }
  if (IsLetter(At(line, kSource))) Label(line);
}

void Importer::Label(std::string_view line) {
  const auto words = Words(Columns(line, kSource), ':');
  if (words.size() == 1) {
    pending_.push_back(words[0]);
    return;
  }
  const std::string keyword = base::UpperCase(words[1]);
  if (keyword == "SECTION") {
    EnterSection(words[0]);
  } else if (keyword == "EQU") {
    info_.AddSymbol(words[0], std::string(Columns(line, 20, 4)).append(Columns(line, 25, 4)));
  } else {
    if (keyword == "DS.B" || keyword == "DS.W") {
      offset_ = LeadingHex(Columns(line, kOffset, kOffsetDigits)).value_or(offset_);
    }
    SymbolHere(words[0]);
  }
}

void Importer::EnterSection(std::string_view name) {
  // A section that is continued later starts past what it holds so far.
  if (current_) sections_[*current_].base += offset_;
  offset_ = 0;
  const auto found = std::ranges::find_if(sections_, [&](const Section& section) {
    return !section.name.empty() && base::EqualIgnoringCase(section.name, name);
  });
  current_.reset();
  if (found != sections_.end()) current_ = static_cast<std::size_t>(found - sections_.begin());
}

}  // namespace

ParsedProgram ParseMcuezListing(std::string_view listing, std::string_view parameters) {
  std::vector<Section> sections = ParseSections(parameters);
  if (sections.empty()) return NothingParsed("the linker parameter file names no section");
  Importer importer(std::move(sections));
  LineReader reader(listing, kLineLimit);
  while (const auto line = reader.Next()) importer.Line(*line);
  ParsedProgram program;
  program.info_files = importer.Take();
  return program;
}

}  // namespace brevant::symbols
