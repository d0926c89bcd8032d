// SPDX-License-Identifier: MIT
// Symbols, source lines, tool chains and macros.
#include <fmt/format.h>

#include "base/text_number.h"
#include "cli/command_table.h"
#include "cli/session.h"
#include "symbols/importers.h"
#include "symbols/source_text.h"

namespace brevant::cli {
namespace {

std::string FileAndLine(const symbols::DebugInfo& info, const symbols::SourceLine& line) {
  const std::vector<std::string>& files = info.LineTable.files();
  return fmt::format("{}:{}", line.file < files.size() ? files[line.file] : "?", line.line);
}

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
  const std::size_t count = session.debugger().debug_info.SymbolTable.symbols().size();
  Result result;
  result.text = fmt::format("{} symbols\n", count);
  result.fields = {{"symbols", count}};
  return result;
}

Result Lookup(Session& session, const ParsedArguments& arguments) {
  const symbols::SymbolTable& table = session.debugger().debug_info.SymbolTable;
  const std::string& word = arguments.Text(0);
  std::optional<base::Address> address = table.FindSymbolAddress(word);
  if (!address && base::IsHexField(word)) {
    const auto number = frontend::ParseAddress(word);
    if (!number.ok()) return UsageError(number.error);
    address = number.value;
  }
  if (!address) address = table.FindCName(word);
  if (!address || !table.FindSymbolName(*address)) {
    return Failure(ExitStatus::Failed, fmt::format("there is no symbol {}", word));
  }
  const std::string name(*table.FindSymbolName(*address));
  Result result;
  result.text = fmt::format("{:04x} {}", *address, name);
  result.fields = {{"address", fmt::format("{:04x}", *address)}, {"name", name}};
  for (const symbols::Symbol& symbol : table.symbols()) {
    if (symbol.address != *address || symbol.name != name) continue;
    if (!symbol.type.empty()) {
      result.text += ' ' + symbol.type;
      if (symbol.size > 0) result.text += fmt::format(" ({} bytes)", symbol.size);
      result.fields.update({{"type", symbol.type}, {"size", symbol.size}});
    }
    break;
  }
  result.text += '\n';
  return result;
}

Result Line(Session& session, const ParsedArguments& arguments) {
  const base::Address address = arguments.Number(0);
  const debugger::Debugger& debugger = session.debugger();
  const auto line = debugger.debug_info.LineTable.LineForAddress(address);
  if (!line) {
    return Failure(ExitStatus::Failed, fmt::format("no source line is known for {:04x}", address));
  }
  const std::string place = FileAndLine(debugger.debug_info, *line);
  const std::string text =
      symbols::SourceText(debugger.debug_info, *line, debugger.loader.image_directory())
          .value_or("");
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
    {"symbols", {File("FILE")}, kStopped, Symbols, "read a symbol file"},
    {"lookup", {Text("NAME|ADDR")}, kAlways, Lookup, "a symbol by name or address"},
    {"line", {Address("ADDR")}, kAlways, Line, "the source line of an address"},
    {"macro", {File("FILE")}, kStopped, Macro, "run a macro file"},
};

}  // namespace

std::span<const Command> SymbolCommands() {
  return kRows;
}

}  // namespace brevant::cli
