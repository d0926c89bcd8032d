// SPDX-License-Identifier: MIT
#include "symbols/sdcc_cdb.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "symbols/sdcc_lines.h"
#include "symbols/sdcc_map.h"
#include "symbols/sdcc_types.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::string_view kStringName = "__str_";

// A name as the records spell it: "G$total$0_0$0", "Fmain$hidden$0_0$0", "Lmain.f$i$1_0$5".
struct ScopedName {
  char scope = 0;             // G, F or L
  std::string_view module;    // of F and L
  std::string_view function;  // of L
  std::string_view name;
  std::string_view without_level;  // scope and name
};

std::optional<ScopedName> ParseScopedName(std::string_view text) {
  const std::size_t first = text.find('$');
  if (first == std::string_view::npos || first == 0) return {};
  const std::size_t second = text.find('$', first + 1);
  if (second == std::string_view::npos || second == first + 1) return {};
  ScopedName scoped{text[0], text.substr(1, first - 1), {}, {}, text.substr(0, second)};
  scoped.name = text.substr(first + 1, second - first - 1);
  if (scoped.scope == 'L') {
    const std::size_t dot = scoped.module.rfind('.');
    if (dot == std::string_view::npos) return {};
    scoped.function = scoped.module.substr(dot + 1);
    scoped.module = scoped.module.substr(0, dot);
  }
  const bool known = scoped.scope == 'G' || scoped.scope == 'F' || scoped.scope == 'L';
  if (!known) return {};
  return scoped;
}

std::string LinkerName(const ScopedName& scoped) {
  std::string name = "_";
  if (scoped.scope == 'L') name.append(scoped.function).append(".");
  return name.append(scoped.name);
}

Scope ScopeOf(const ScopedName& scoped) {
  if (scoped.scope == 'G') return Scope::Global;
  return scoped.scope == 'F' ? Scope::Module : Scope::Function;
}

class CdbReader {
 public:
  void Read(std::string_view cdb);
  ParsedProgram Take(std::string_view map, SdccSources& sources);

 private:
  struct Type {
    int size = 0;
    std::string text;
  };

  void ReadType(std::string_view record);
  void ReadSymbol(std::string_view record);
  void ReadAddress(std::string_view record);
  void ReadLine(std::string_view record, base::Address address);
  void AddSymbol(const ScopedName& scoped, std::string_view full, base::Address address);
  void AddStrings(SdccSources& sources);
  void AddQualifiedStatics();
  void AddMapNames(std::string_view map);

  std::string_view module_;                    // of the section being read
  std::set<std::string, std::less<>> unions_;  // "module$tag"
  // By the whole name, and by the name without its level: the linker writes a function's otherwise.
  std::unordered_map<std::string_view, Type> types_;
  std::unordered_map<std::string_view, base::Address> functions_;  // starts, by name without level
  std::map<std::string, std::map<std::string_view, Symbol>> statics_;  // name -> module -> symbol
  std::vector<std::string_view> strings_;                              // their whole names
  SdccLineRecords records_;
  ParsedProgram program_;
};

void CdbReader::Read(std::string_view cdb) {
  LineReader reader(cdb);
  while (const auto line = reader.Next()) {
    const std::string_view record = Columns(*line, 2);
    if (At(*line, 1) != ':') continue;
    switch ((*line)[0]) {
      case 'M':
        module_ = record;
        break;
      case 'T':
        ReadType(record);
        break;
      case 'S':
      case 'F':
        ReadSymbol(record);
        break;
      case 'L':
        ReadAddress(record);
        break;
      default:
        break;
    }
  }
}

// Fmain$pt[({0}S:S$x$0_0$0({1}SC:U),Z,0,0)...]
void CdbReader::ReadType(std::string_view record) {
  const std::size_t bracket = record.find('[');
  if (bracket == std::string_view::npos || !record.starts_with('F')) return;
  if (IsUnionRecord(record.substr(bracket))) unions_.emplace(record.substr(1, bracket - 1));
}

// G$total$0_0$0({4}SL:S),F,0,0
void CdbReader::ReadSymbol(std::string_view record) {
  const std::size_t open = record.find("({");
  const std::size_t brace = record.find('}', open == std::string_view::npos ? open : open + 2);
  const std::size_t close = record.find(')', brace);
  if (brace == std::string_view::npos || close == std::string_view::npos) return;
  const auto scoped = ParseScopedName(record.substr(0, open));
  if (!scoped) return;
  const std::string_view chain = record.substr(brace + 1, close - brace - 1);
  const auto size = LeadingDecimal(record.substr(open + 2, brace - open - 2));
  const auto is_union = [&](std::string_view tag) {
    return unions_.contains(std::string(module_).append("$").append(tag));
  };
  Type type;
  // A function's size is that of a pointer to it; no address space is larger than 64 K.
  if (!chain.starts_with("DF") && size && *size <= base::kAddressSpace) {
    type.size = static_cast<int>(*size);
  }
  type.text = SdccTypeText(chain, type.size, is_union);
  types_.try_emplace(scoped->without_level, type);
  types_.try_emplace(record.substr(0, open), std::move(type));
}

// <name>:<address>
void CdbReader::ReadAddress(std::string_view record) {
  const std::size_t colon = record.rfind(':');
  if (colon == std::string_view::npos || !IsHexNumber(record.substr(colon + 1))) return;
  const base::Address address = *LeadingHex(record.substr(colon + 1));
  const std::string_view name = record.substr(0, colon);
  if (name.starts_with("C$") || name.starts_with("A$")) {
    ReadLine(name, address);
  } else if (name.starts_with('X')) {
    const auto scoped = ParseScopedName(name.substr(1));
    if (!scoped) return;
    const auto start = functions_.find(scoped->without_level);
    if (start == functions_.end()) return;
    records_.functions.push_back(
        {LinkerName(*scoped), std::string(scoped->module), start->second, address});
  } else if (const auto scoped = ParseScopedName(name)) {
    if (scoped->name.starts_with(kStringName)) {
      strings_.push_back(name);
    } else {
      AddSymbol(*scoped, name, address);
    }
  }
}

// C$main.c$24$1_0$44 or A$main$463
void CdbReader::ReadLine(std::string_view record, base::Address address) {
  const std::size_t end = record.find('$', 2);
  if (end == std::string_view::npos || end == 2) return;
  const auto line = LeadingDecimal(record.substr(end + 1));
  if (!line || *line == 0) return;
  auto& lines = record[0] == 'C' ? records_.c_lines : records_.assembler_lines;
  lines.push_back({address, *line, std::string(record.substr(2, end - 2))});
}

void CdbReader::AddSymbol(const ScopedName& scoped, std::string_view full, base::Address address) {
  auto type = types_.find(full);
  if (type == types_.end()) type = types_.find(scoped.without_level);
  Symbol symbol{.name = LinkerName(scoped),
                .address = address,
                .type = {},
                .scope = ScopeOf(scoped),
                .module = std::string(scoped.module)};
  if (type != types_.end()) {
    symbol.size = type->second.size;
    symbol.type = type->second.text;
  }
  if (scoped.scope != 'L') functions_.try_emplace(scoped.without_level, address);
  if (scoped.scope == 'F') statics_[symbol.name].try_emplace(scoped.module, symbol);
  program_.symbols.push_back(std::move(symbol));
}

void CdbReader::AddStrings(SdccSources& sources) {
  std::map<std::string_view, const SdccListing*> listings;
  for (const std::string_view name : strings_) {
    const auto scoped = ParseScopedName(name);
    const auto [listing, is_new] = listings.try_emplace(scoped->module);
    if (is_new) listing->second = ListingOfBuild(scoped->module, records_, sources);
    if (listing->second == nullptr) continue;
    const auto label = listing->second->labels.find(LinkerName(*scoped));
    if (label != listing->second->labels.end()) AddSymbol(*scoped, name, label->second);
  }
}

void CdbReader::AddQualifiedStatics() {
  for (auto& [name, modules] : statics_) {
    if (modules.size() < 2) continue;
    for (auto& [module, symbol] : modules) {
      symbol.name = "_" + std::string(module).append(".").append(name.substr(1));
      program_.symbols.push_back(symbol);
    }
  }
}

void CdbReader::AddMapNames(std::string_view map) {
  std::unordered_map<std::string_view, Symbol*> by_name;
  std::unordered_map<base::Address, Symbol*> by_address;
  for (Symbol& symbol : program_.symbols) {
    by_name.try_emplace(symbol.name, &symbol);
    by_address.try_emplace(symbol.address, &symbol);
  }
  std::vector<Symbol> added;
  for (Symbol& symbol : ParseSdccMap(map)) {
    auto known = by_name.find(symbol.name);
    Symbol* same = known == by_name.end() ? nullptr : known->second;
    const auto there = by_address.find(symbol.address);
    const bool cut = symbol.name.size() >= kSdccMapNameLength;
    if (same == nullptr && cut && there != by_address.end()) same = there->second;
    if (same == nullptr) {
      added.push_back(std::move(symbol));
    } else if (same->module.empty()) {
      same->module = std::move(symbol.module);
    }
  }
  std::ranges::move(added, std::back_inserter(program_.symbols));
}

ParsedProgram CdbReader::Take(std::string_view map, SdccSources& sources) {
  if (program_.symbols.empty() && records_.c_lines.empty() && records_.assembler_lines.empty()) {
    return NothingParsed("no addresses of symbols or lines");
  }
  AddStrings(sources);
  AddQualifiedStatics();
  AddMapNames(map);
  BuildSdccLines(std::move(records_), sources, program_);
  return std::move(program_);
}

}  // namespace

ParsedProgram ParseSdccCdb(std::string_view cdb, std::string_view map, SdccSources& sources) {
  CdbReader reader;
  reader.Read(cdb);
  return reader.Take(map, sources);
}

}  // namespace brevant::symbols
