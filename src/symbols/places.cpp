// SPDX-License-Identifier: MIT
#include "symbols/places.h"

#include <algorithm>
#include <utility>

#include "base/file_names.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::size_t kAddressDigits = 4;

// Whether given is the file or its last parts: "drv/io.c" of "src/drv/io.c".
bool EndsAs(std::string_view file, std::string_view given) {
  std::string whole(file);
  std::string end(given);
  std::ranges::replace(whole, '\\', '/');
  std::ranges::replace(end, '\\', '/');
  if (end.starts_with("./")) end.erase(0, 2);
  if (end.size() > whole.size() || end.empty()) return false;
  const std::size_t rest = whole.size() - end.size();
  return base::EqualIgnoringCase(whole.substr(rest), end) && (rest == 0 || whole[rest - 1] == '/');
}

// The files that are meant: the one of that very name, else those that end so.
std::vector<std::uint32_t> FilesNamed(std::string_view given, const LineTable& table) {
  std::vector<std::uint32_t> files;
  for (std::uint32_t n = 0; n < table.files().size(); ++n) {
    if (base::EqualIgnoringCase(table.files()[n], given)) return {n};
    if (EndsAs(table.files()[n], given)) files.push_back(n);
  }
  return files;
}

bool IsOfFile(const Symbol& symbol, std::string_view file, const LineTable& table) {
  if (base::EqualIgnoringCase(symbol.module, ModuleOf(file))) return true;
  const auto line = table.LineForExactAddress(symbol.address);
  return line && line->file < table.files().size() && EndsAs(table.files()[line->file], file);
}

// How well a symbol's name answers to a word; the lowest is best. Nothing when it does not.
std::optional<int> Fit(std::string_view name, std::string_view word) {
  const auto same = [&](std::string_view a, std::string_view b) -> std::optional<int> {
    if (!base::EqualIgnoringCase(a, b)) return {};
    return a == b ? 0 : 1;
  };
  if (const auto exact = same(name, word)) return exact;
  if (name.starts_with('_')) {
    if (const auto compiled = same(name.substr(1), word)) return 2 + *compiled;
  }
  if (word.starts_with('_')) {
    if (const auto plain = same(name, word.substr(1))) return 4 + *plain;
  }
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  if (const auto local = same(name.substr(dot + 1), word)) return 6 + *local;
  return {};
}

// file is empty, or the one that they must be of.
std::vector<const Symbol*> BestFits(std::string_view word, std::string_view file,
                                    const DebugInfo& info) {
  std::vector<const Symbol*> best;
  int best_fit = 0;
  for (const Symbol& symbol : info.SymbolTable.symbols()) {
    const auto fit = Fit(symbol.name, word);
    if (!fit || (!best.empty() && *fit > best_fit)) continue;
    if (!file.empty() && !IsOfFile(symbol, file, info.LineTable)) continue;
    if (!best.empty() && *fit < best_fit) best.clear();
    best_fit = *fit;
    const bool known = std::ranges::any_of(
        best, [&](const Symbol* other) { return other->address == symbol.address; });
    if (!known) best.push_back(&symbol);
  }
  return best;
}

std::string Told(const Symbol& symbol) {
  const std::string module = symbol.module.empty() ? "" : " in " + symbol.module;
  return base::Format("%s %04x%s", symbol.name, base::Low16(symbol.address), module);
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

Place PlaceAt(base::Address address) {
  return {.address = base::Low16(address)};
}

// The word is as it should be.
Place Nowhere(std::string problem) {
  return {.address = {}, .problem = std::move(problem), .well_formed = true};
}

Place Malformed(std::string problem) {
  return {.address = {}, .problem = std::move(problem)};
}

Place PlaceOfSymbols(std::string_view word, const std::vector<const Symbol*>& named) {
  // Lists of names without modules may repeat one; there the first entry counts.
  const bool can_tell =
      std::ranges::none_of(named, [](const Symbol* s) { return s->module.empty(); });
  if (named.size() == 1 || !can_tell) return PlaceAt(named.front()->address);
  const auto is_global = [](const Symbol* symbol) { return symbol->scope == Scope::Global; };
  if (std::ranges::count_if(named, is_global) == 1) {
    return PlaceAt((*std::ranges::find_if(named, is_global))->address);
  }
  std::vector<std::string> told;
  told.reserve(named.size());
  for (const Symbol* symbol : named) told.push_back(Told(*symbol));
  return Nowhere(base::Format("%s can be %s: put FILE: or FUNCTION. before the name",
                              std::string(word), Joined(told)));
}

// The lowest line of the file above this one that has code.
std::optional<std::uint32_t> NextLine(std::uint32_t line, std::uint32_t file,
                                      const LineTable& table) {
  std::optional<std::uint32_t> next;
  for (const LineEntry& entry : table.entries()) {
    const bool later = entry.file == file && entry.line > line;
    if (later && (!next || entry.line < *next)) next = entry.line;
  }
  return next;
}

// Code of a header stands in each module that uses it: where else the line has some, in functions
// other than that of the address.
std::string CopiesOf(std::uint32_t line, std::uint32_t file, base::Address address,
                     const DebugInfo& info) {
  const auto function_at = [&info](base::Address at) {
    return std::ranges::find_if(info.functions, [at](const Function& function) {
      return function.first <= at && at <= function.last;
    });
  };
  std::vector<std::string> copies;
  std::vector<base::Address> functions{
      function_at(address) == info.functions.end() ? address : function_at(address)->first};
  for (const LineEntry& entry : info.LineTable.entries()) {
    if (entry.line != line || entry.file != file) continue;
    const auto function = function_at(entry.address);
    if (function == info.functions.end()) continue;
    if (std::ranges::find(functions, function->first) != functions.end()) continue;
    functions.push_back(function->first);
    copies.push_back(base::Format("%04x", base::Low16(entry.address)));
  }
  return Joined(copies);
}

Place PlaceOfLine(std::string_view word, std::string_view file, std::uint32_t line,
                  const DebugInfo& info) {
  const LineTable& table = info.LineTable;
  const std::string shown(word);
  const std::vector<std::uint32_t> files = FilesNamed(file, table);
  if (files.empty()) {
    return Nowhere(base::Format("no code is known for %s: there is no such source file", shown));
  }
  std::vector<std::string> told;
  std::optional<base::Address> found;
  std::string copies;
  for (const std::uint32_t n : files) {
    const auto address = table.AddressForLine(line, n);
    if (!address) continue;
    found = address;
    copies = CopiesOf(line, n, *address, info);
    told.push_back(base::Format("%s %04x", LineName({line, n}, table), base::Low16(*address)));
  }
  if (told.size() > 1) {
    return Nowhere(base::Format("%s can be %s: name more of the path", shown, Joined(told)));
  }
  if (found) {
    Place place = PlaceAt(*found);
    if (files.size() > 1) place.note = base::Format("%s is %s.", shown, told.front());
    if (!copies.empty()) {
      place.note = base::Format("%s is taken at %04x; the line also has code at %s.", shown,
                                base::Low16(*found), copies);
    }
    return place;
  }
  std::string problem = base::Format("no code is known for %s", shown);
  const auto next = files.size() == 1 ? NextLine(line, files.front(), table) : std::nullopt;
  if (next) problem += base::Format("; the next line with code is %u", *next);
  return Nowhere(problem);
}

// FILE:LINE or FILE:NAME; colon is that of the word.
Place PlaceInFile(std::string_view word, std::size_t colon, const DebugInfo& info) {
  const std::string_view file = word.substr(0, colon);
  const std::string_view rest = word.substr(colon + 1);
  const bool is_name = !rest.empty() && (IsLetter(rest.front()) || rest.front() == '_');
  if (is_name) {
    const auto named = BestFits(rest, file, info);
    if (!named.empty()) return PlaceOfSymbols(word, named);
    return Nowhere(
        base::Format("there is no symbol %s of %s", std::string(rest), std::string(file)));
  }
  const auto line = LeadingDecimal(rest);
  const bool is_line =
      rest.find_first_not_of("0123456789") == std::string_view::npos && line && *line > 0;
  if (is_line) return PlaceOfLine(word, file, *line, info);
  return Malformed(
      base::Format("\"%s\" is no line number: decimal digits, from 1 on", std::string(rest)));
}

Place PlaceOfDigits(std::string_view word, const DebugInfo& info) {
  const base::Address number = base::ParseHex(word);
  const std::size_t zeros = std::min(word.find_first_not_of('0'), word.size());
  const bool is_address = word.size() - zeros <= kAddressDigits;
  const auto named = IsLetter(word.front()) ? FindNamed(word, info) : std::vector<const Symbol*>();
  if (named.empty()) return is_address ? PlaceAt(number) : Place();
  if (!is_address) return PlaceOfSymbols(word, named);
  const std::string shown(word);
  if (info.SymbolTable.FindSymbolName(number)) {
    Place place = PlaceAt(number);
    place.note =
        base::Format("%s is the address %04x; the symbol is written _%s.", shown, number, shown);
    return place;
  }
  Place place = PlaceOfSymbols(word, named);
  if (place.address) {
    place.note = base::Format("%s is the symbol at %04x; the address is written 0%s.", shown,
                              *place.address, shown);
  }
  return place;
}

Place PlaceWithoutOffset(std::string_view word, const DebugInfo& info) {
  if (!word.empty() && base::IsHexField(word)) return PlaceOfDigits(word, info);
  const auto named = BestFits(word, {}, info);
  if (!named.empty()) return PlaceOfSymbols(word, named);
  const std::size_t colon = word.rfind(':');
  const bool in_file = colon != std::string_view::npos && colon > 0;
  return in_file ? PlaceInFile(word, colon, info) : Place();
}

}  // namespace

std::string ModuleOf(std::string_view file) {
  std::string module(base::LastPart(file));
  const std::string extension = base::ExtensionOf(module);
  if (!extension.empty()) module.resize(module.size() - extension.size() - 1);
  for (char& c : module) {
    if (!IsLetter(c) && !(c >= '0' && c <= '9')) c = '_';
  }
  return module;
}

std::string_view PlainName(std::string_view name) {
  if (name.starts_with('_')) name.remove_prefix(1);
  return name;
}

const Symbol* NearestBelow(base::Address address, const DebugInfo& info) {
  const Symbol* nearest = nullptr;
  for (const Symbol& symbol : info.SymbolTable.symbols()) {
    if (symbol.address > address) continue;
    if (nearest == nullptr || symbol.address > nearest->address) nearest = &symbol;
  }
  return nearest;
}

Place FindPlace(std::string_view word, const DebugInfo& info) {
  Place whole = PlaceWithoutOffset(word, info);
  const std::size_t sign = word.find_last_of("+-");
  if (whole.address || sign == std::string_view::npos || sign == 0) return whole;
  const std::string_view digits = word.substr(sign + 1);
  if (!IsHexNumber(digits) || digits.size() > 8) return whole;
  Place place = PlaceWithoutOffset(word.substr(0, sign), info);
  if (!place.address) return place;
  const std::uint32_t offset = base::ParseHex(digits);
  const bool forward = word[sign] == '+';
  const std::uint32_t room = forward ? base::kLastAddress - *place.address : *place.address;
  if (offset > room) {
    return Malformed(
        base::Format("%s is %s", std::string(word), forward ? "beyond FFFF" : "below 0"));
  }
  place.address = forward ? *place.address + offset : *place.address - offset;
  return place;
}

std::vector<const Symbol*> FindNamed(std::string_view word, const DebugInfo& info) {
  const auto named = BestFits(word, {}, info);
  const std::size_t colon = word.rfind(':');
  if (!named.empty() || colon == std::string_view::npos || colon == 0) return named;
  return BestFits(word.substr(colon + 1), word.substr(0, colon), info);
}

const Symbol* FindContaining(base::Address address, const DebugInfo& info) {
  base::Address start = address;
  for (const Function& function : info.functions) {
    if (function.first <= address && address <= function.last) start = function.first;
  }
  for (const Symbol& symbol : info.SymbolTable.symbols()) {
    const bool in_variable = symbol.address <= address &&
                             address - symbol.address < static_cast<base::Address>(symbol.size);
    if (symbol.address == start || in_variable) return &symbol;
  }
  return nullptr;
}

std::string NameWithOffset(base::Address address, const DebugInfo& info) {
  const Symbol* const symbol = FindContaining(address, info);
  if (symbol == nullptr) return {};
  const base::Address offset = address - symbol->address;
  return offset == 0 ? symbol->name : base::Format("%s+%x", symbol->name, offset);
}

std::string LineName(const SourceLine& line, const LineTable& table) {
  const std::vector<std::string>& files = table.files();
  return base::Format("%s:%u", line.file < files.size() ? files[line.file] : "?", line.line);
}

}  // namespace brevant::symbols
