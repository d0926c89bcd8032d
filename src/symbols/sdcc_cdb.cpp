// SPDX-License-Identifier: MIT
#include "symbols/sdcc_cdb.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/text_number.h"
#include "symbols/sdcc_lines.h"
#include "symbols/sdcc_map.h"
#include "symbols/sdcc_types.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

constexpr std::string_view kStringName = "__str_";
constexpr std::string_view kInventedName = "sloc";

// Of what follows a record's type.
constexpr std::size_t kSpaceField = 0;
constexpr std::size_t kOffsetField = 2;
constexpr std::size_t kRegistersField = 3;
constexpr std::size_t kInterruptField = 3;

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
  // What an S or F record says.
  struct Declaration {
    ScopedName scoped;
    std::string_view full;  // the whole name
    TypeId type = kUnknownType;
    int size = 0;
    // Address space, on the stack, offset; of variables in registers their names, of functions
    // whether they handle an interrupt.
    std::vector<std::string_view> fields = {};
  };

  void ReadRecord(char kind, std::string_view record);
  void ReadSymbol(char kind, std::string_view record);
  void ReadAddress(std::string_view record);
  void ReadLine(std::string_view record, base::Address address);
  void AddSymbol(const ScopedName& scoped, std::string_view full, base::Address address);
  void AddStrings(SdccSources& sources);
  Variable ToVariable(const Declaration& declaration) const;
  void AddVariables();
  void AddQualifiedStatics();
  void AddMapNames(std::string_view map);

  std::string_view module_;  // of the section being read
  // By the whole name, and by the name without its level: the linker writes a function's otherwise.
  std::unordered_map<std::string_view, Declaration> declarations_;
  std::unordered_map<std::string_view, base::Address> addresses_;  // by whole name
  std::unordered_map<std::string_view, base::Address> functions_;  // starts, by name without level
  std::map<std::string, std::map<std::string_view, Symbol>> statics_;  // name -> module -> symbol
  std::vector<std::string_view> strings_;                              // their whole names
  SdccLineRecords records_;
  ParsedProgram program_;
  SdccTypes types_{program_.types};
};

// Structures first: a variable's record may stand before that of its type.
void CdbReader::Read(std::string_view cdb) {
  for (const bool structures : {true, false}) {
    LineReader reader(cdb);
    while (const auto line = reader.Next()) {
      if (At(*line, 1) != ':') continue;
      const char kind = line->front();
      if (structures && kind == 'T') types_.AddRecord(Columns(*line, 2));
      if (!structures) ReadRecord(kind, Columns(*line, 2));
    }
  }
}

void CdbReader::ReadRecord(char kind, std::string_view record) {
  switch (kind) {
    case 'M':
      module_ = record;
      break;
    case 'S':
    case 'F':
      ReadSymbol(kind, record);
      break;
    case 'L':
      ReadAddress(record);
      break;
    default:
      break;
  }
}

// G$total$0_0$0({4}SL:S),F,0,0
void CdbReader::ReadSymbol(char kind, std::string_view record) {
  const std::size_t open = record.find("({");
  const std::size_t brace = record.find('}', open == std::string_view::npos ? open : open + 2);
  const std::size_t close = record.find(')', brace);
  if (brace == std::string_view::npos || close == std::string_view::npos) return;
  const auto scoped = ParseScopedName(record.substr(0, open));
  if (!scoped) return;
  Declaration declaration{*scoped, record.substr(0, open)};
  const std::string_view chain = record.substr(brace + 1, close - brace - 1);
  const auto size = LeadingDecimal(record.substr(open + 2, brace - open - 2));
  // A function's size is that of a pointer to it; no address space is larger than 64 K.
  if (!chain.starts_with("DF") && size && *size <= base::kAddressSpace) {
    declaration.size = static_cast<int>(*size);
  }
  declaration.type = types_.Find(chain, declaration.size, module_);
  declaration.fields = Words(Columns(record, close + 1), ',');
  // A function's own record says more than one of a module that only calls it.
  for (const std::string_view name : {scoped->without_level, declaration.full}) {
    const bool is_new = declarations_.try_emplace(name, declaration).second;
    if (!is_new && kind == 'F') declarations_.insert_or_assign(name, declaration);
  }
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
    Function function{LinkerName(*scoped), std::string(scoped->module), start->second, address};
    const auto declared = declarations_.find(scoped->without_level);
    if (declared != declarations_.end()) {
      const Declaration& declaration = declared->second;
      function.result = program_.types[declaration.type].target;
      function.is_interrupt =
          declaration.fields.size() > kInterruptField && declaration.fields[kInterruptField] == "1";
    }
    records_.functions.push_back(std::move(function));
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
  addresses_.try_emplace(full, address);
  auto declared = declarations_.find(full);
  if (declared == declarations_.end()) declared = declarations_.find(scoped.without_level);
  Symbol symbol{.name = LinkerName(scoped),
                .address = address,
                .type = {},
                .scope = ScopeOf(scoped),
                .module = std::string(scoped.module)};
  if (declared != declarations_.end()) {
    symbol.size = declared->second.size;
    symbol.type = program_.types.Text(declared->second.type);
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

Variable CdbReader::ToVariable(const Declaration& declaration) const {
  Variable variable{.name = std::string(declaration.scoped.name),
                    .module = std::string(declaration.scoped.module),
                    .type = declaration.type,
                    .size = declaration.size};
  const std::string_view block = declaration.full.substr(declaration.full.rfind('$') + 1);
  variable.block = static_cast<int>(LeadingDecimal(block).value_or(0) & 0xFFFF);
  const auto address = addresses_.find(declaration.full);
  const std::vector<std::string_view>& fields = declaration.fields;
  if (address != addresses_.end()) {
    variable.storage = Storage::Memory;
    variable.address = address->second;
  } else if (fields.size() > kOffsetField && fields[kSpaceField] == "B") {
    variable.storage = Storage::Stack;
    variable.offset = base::ParseLeadingDecimal(fields[kOffsetField]);
  } else if (fields.size() > kRegistersField && fields[kSpaceField] == "R") {
    // "[a" and "x]", or "[]"
    for (std::string_view name : std::span(fields).subspan(kRegistersField)) {
      if (name.starts_with('[')) name.remove_prefix(1);
      if (name.ends_with(']')) name.remove_suffix(1);
      if (!name.empty()) variable.registers.emplace_back(name);
    }
    if (!variable.registers.empty()) variable.storage = Storage::Registers;
  }
  return variable;
}

void CdbReader::AddVariables() {
  std::map<std::string_view, const Declaration*> in_order;  // as the records are named
  for (const auto& [name, declaration] : declarations_) {
    if (name == declaration.full) in_order.emplace(name, &declaration);
  }
  for (const auto& [name, declaration] : in_order) {
    const ScopedName& scoped = declaration->scoped;
    const bool invented = scoped.name.starts_with(kInventedName);
    const bool is_function = program_.types[declaration->type].kind == Type::Kind::Function;
    if (invented || is_function || scoped.name.starts_with("__")) continue;
    if (scoped.scope != 'L') {
      program_.variables.push_back(ToVariable(*declaration));
      continue;
    }
    for (Function& function : records_.functions) {
      const bool own = function.name.substr(1) == scoped.function &&
                       (function.module.empty() || function.module == scoped.module);
      if (own) function.locals.push_back(ToVariable(*declaration));
    }
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
  AddVariables();
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
