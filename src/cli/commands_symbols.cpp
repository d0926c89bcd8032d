// SPDX-License-Identifier: MIT
// Symbols, source lines, tool chains and macros.
#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/file_names.h"
#include "base/text_number.h"
#include "cli/command_table.h"
#include "cli/interrupt.h"
#include "cli/session.h"
#include "devices/registers.h"
#include "frontend/address_names.h"
#include "symbols/importers.h"
#include "symbols/places.h"
#include "symbols/source_text.h"

namespace brevant::cli {
namespace {

Result Toolchain(Session& session, const ParsedArguments& arguments) {
  symbols::ToolChain& in_force = session.debugger().debug_info.tool_chain;
  if (arguments.Has(0)) {
    const symbols::ToolChainRow* row = symbols::FindToolChainByName(arguments.Text(0));
    if (row == nullptr) {
      std::string names;
      for (const symbols::ToolChainRow& known : symbols::ToolChains()) {
        names += (names.empty() ? "" : ", ") + std::string(known.short_name);
      }
      return UsageError(fmt::format("\"{}\" is no tool chain: {}", arguments.Text(0), names));
    }
    in_force = row->tool_chain;
    if (!session.settings().Store(base::keys::kCompiler, static_cast<long>(in_force))) {
      session.ui().Notice(fmt::format("{} could not be written; the choice holds for this run.",
                                      session.settings().path().string()));
    }
  }
  const symbols::ToolChainRow* row = symbols::FindToolChain(in_force);
  Result result;
  const std::string name = row == nullptr ? "none" : std::string(row->short_name);
  result.text = name + '\n';
  result.fields = {{"toolchain", name}};
  return result;
}

Result Symbols(Session& session, const ParsedArguments& arguments) {
  const std::string problem = session.debugger().LoadSymbols(arguments.Text(0));
  if (!problem.empty()) return Failure(ExitStatus::File, problem);
  session.debugger().RefreshAfterStop();
  const symbols::DebugInfo& info = session.debugger().debug_info;
  const std::size_t count = info.SymbolTable.symbols().size();
  const std::size_t lines = info.LineTable.entries().size();
  Result result;
  result.text =
      fmt::format("{} symbols{}\n", count, lines == 0 ? "" : fmt::format(", {} lines", lines));
  result.fields = {{"symbols", count}, {"lines", lines}};
  result.note = "Nothing was transferred; whether the target holds this program was not looked at.";
  return result;
}

nlohmann::ordered_json Fields(const symbols::Symbol& symbol, const symbols::DebugInfo& info) {
  nlohmann::ordered_json fields = {{"address", fmt::format("{:04x}", symbol.address)},
                                   {"name", symbol.name}};
  if (!symbol.type.empty()) fields.update({{"type", symbol.type}, {"size", symbol.size}});
  if (!symbol.module.empty()) fields["module"] = symbol.module;
  if (const auto line = info.LineTable.LineForExactAddress(symbol.address)) {
    fields["line"] = symbols::LineName(*line, info.LineTable);
  }
  return fields;
}

// "0126 _count void () in demo at demo.c:27"
std::string Told(const symbols::Symbol& symbol, const symbols::DebugInfo& info) {
  std::string text = fmt::format("{:04x} {}", symbol.address, symbol.name);
  if (!symbol.type.empty()) text += ' ' + symbol.type;
  if (symbol.size > 0)
    text += fmt::format(" ({} byte{})", symbol.size, symbol.size == 1 ? "" : "s");
  if (!symbol.module.empty()) text += " in " + symbol.module;
  if (const auto line = info.LineTable.LineForExactAddress(symbol.address)) {
    text += " at " + symbols::LineName(*line, info.LineTable);
  }
  return text + '\n';
}

// A place that has no name of its own, as so many bytes behind the start of what it lies in.
Result ToldWithin(base::Address address, const symbols::Symbol& symbol) {
  const std::string name = fmt::format("{}+{:x}", symbol.name, address - symbol.address);
  Result result;
  result.text = fmt::format("{:04x} {}\n", address, name);
  result.fields = {{"address", fmt::format("{:04x}", address)}, {"name", name}};
  return result;
}

// A place where no symbol lies.
Result ToldRegister(const devices::Register& row) {
  const std::string what = fmt::format("{}: {}", row.group, row.what);
  Result result;
  result.text = fmt::format("{:04x} {} {}\n", row.address, row.name, what);
  result.fields = {
      {"address", fmt::format("{:04x}", row.address)}, {"name", row.name}, {"register", what}};
  return result;
}

Result Lookup(Session& session, const ParsedArguments& arguments) {
  const symbols::DebugInfo& info = session.debugger().debug_info;
  const devices::Device& device = session.debugger().memory.device();
  const std::string& word = arguments.Text(0);
  const bool is_number = base::IsHexField(word);
  std::vector<const symbols::Symbol*> shown = symbols::FindNamed(word, info);
  if (shown.empty() || is_number) {
    const auto place =
        is_number ? frontend::ParseAddress(word) : frontend::ResolveAddress(word, info, device);
    if (!place.ok() && shown.empty() && is_number) return UsageError(place.error);
    if (place.well_formed) return Failure(ExitStatus::Failed, place.error);
    for (const symbols::Symbol& symbol : info.SymbolTable.symbols()) {
      if (place.ok() && symbol.address == place.value) shown.push_back(&symbol);
    }
    const symbols::Symbol* around =
        place.ok() ? symbols::FindContaining(place.value, info) : nullptr;
    if (shown.empty() && around != nullptr) return ToldWithin(place.value, *around);
    const devices::Register* const row =
        place.ok() ? devices::FindRegister(device, place.value) : nullptr;
    if (shown.empty() && row != nullptr) return ToldRegister(*row);
  }
  if (shown.empty()) return Failure(ExitStatus::Failed, fmt::format("there is no symbol {}", word));
  Result result;
  for (const symbols::Symbol* symbol : shown) result.text += Told(*symbol, info);
  result.fields = Fields(*shown.front(), info);
  if (shown.size() > 1) {
    for (const symbols::Symbol* symbol : shown) {
      result.fields["symbols"].push_back(Fields(*symbol, info));
    }
  }
  return result;
}

// Lines of one kind, and the same for programs.
struct Listed {
  std::string text;
  nlohmann::ordered_json fields = nlohmann::ordered_json::array();
};

bool IsWanted(std::string_view name, const std::string& part) {
  return base::UpperCase(name).find(base::UpperCase(part)) != std::string::npos;
}

Listed ListedFiles(const symbols::DebugInfo& info, const std::string& part) {
  Listed listed;
  for (const std::string& file : info.LineTable.files()) {
    if (!IsWanted(file, part)) continue;
    listed.text += fmt::format("file {}\n", file);
    listed.fields.push_back(file);
  }
  return listed;
}

bool IsFunction(const symbols::Symbol& symbol, const symbols::DebugInfo& info) {
  return std::ranges::any_of(info.functions, [&](const symbols::Function& function) {
    return function.first == symbol.address && function.name == symbol.name;
  });
}

Listed ListedSymbols(const symbols::DebugInfo& info, const std::string& part, bool functions) {
  Listed listed;
  for (const symbols::Symbol& symbol : info.SymbolTable.symbols()) {
    if (!IsWanted(symbol.name, part) || IsFunction(symbol, info) != functions) continue;
    listed.text += (functions ? "function " : "symbol ") + Told(symbol, info);
    listed.fields.push_back(Fields(symbol, info));
  }
  return listed;
}

Result List(Session& session, const ParsedArguments& arguments) {
  const symbols::DebugInfo& info = session.debugger().debug_info;
  const std::string kind = arguments.Has(0) ? arguments.Text(0) : "";
  const std::string part = arguments.Has(1) ? arguments.Text(1) : "";
  Result result;
  const auto add = [&](const char* name, const Listed& listed) {
    if (!kind.empty() && kind != name) return;
    result.text += listed.text;
    result.fields[name] = listed.fields;
  };
  add("files", ListedFiles(info, part));
  add("functions", ListedSymbols(info, part, true));
  add("symbols", ListedSymbols(info, part, false));
  if (!result.text.empty()) return result;
  return Failure(
      ExitStatus::Failed,
      fmt::format("no {} are known{}: load a program whose debug information lies beside "
                  "it, or read it with symbols FILE",
                  kind.empty() ? "files, functions or symbols" : kind,
                  part.empty() ? "" : fmt::format(" with \"{}\"", part)));
}

Result Line(Session& session, const ParsedArguments& arguments) {
  const base::Address address = arguments.Number(0);
  const debugger::Debugger& debugger = session.debugger();
  const auto line = debugger.debug_info.LineTable.LineForAddress(address);
  if (!line) {
    return Failure(ExitStatus::Failed, fmt::format("no source line is known for {:04x}", address));
  }
  const std::string place = symbols::LineName(*line, debugger.debug_info.LineTable);
  const std::string text =
      symbols::SourceText(debugger.debug_info, *line, debugger.SourceFolders()).value_or("");
  Result result;
  result.text = fmt::format("{:04x} {}{}{}\n", address, place, text.empty() ? "" : ": ", text);
  result.fields = {{"address", fmt::format("{:04x}", address)}, {"line", place}, {"text", text}};
  return result;
}

Result Macro(Session& session, const ParsedArguments& arguments) {
  const std::string& name = arguments.Text(0);
  if (!session.debugger().RunMacro(name)) {
    return Failure(ExitStatus::File, fmt::format("cannot read {}", name));
  }
  if (Interrupted()) return Interruption(" while the macro ran");
  Result result;
  result.text = fmt::format("ran {}\n", name);
  result.fields = {{"file", name}};
  return result;
}

constexpr Command kRows[] = {
    {"toolchain",
     {Optional(Text("NAME"))},
     kAlways,
     Toolchain,
     "whose debug information a load reads (stored)"},
    {"symbols",
     {File("FILE")},
     kStopped,
     Symbols,
     "read a symbol file, or a .cdb or .map, without a transfer"},
    {"lookup", {Text("NAME|ADDR")}, kAlways, Lookup, "all symbols of a name or at an address"},
    {"list",
     {Optional(Word("files|functions|symbols")), Optional(Text("PART"))},
     kAlways,
     List,
     "what is known, or what of it has PART in its name"},
    {"line", {Address("ADDR")}, kAlways, Line, "the source line of an address"},
    {"macro", {File("FILE")}, kStopped, Macro, "run a macro file"},
};

}  // namespace

std::span<const Command> SymbolCommands() {
  return kRows;
}

}  // namespace brevant::cli
