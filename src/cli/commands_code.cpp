// SPDX-License-Identifier: MIT
// Instructions and breakpoints.
#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "cli/command_table.h"
#include "cli/interrupt.h"
#include "cli/memory_writes.h"
#include "cli/session.h"
#include "control/messages.h"
#include "frontend/address_names.h"
#include "isa/assembler.h"
#include "views/code_lines.h"

namespace brevant::cli {
namespace {

constexpr int kDefaultLines = 10;
constexpr int kMostLines = 65536;
constexpr int kBatch = 32;  // lines, between which Ctrl-C is seen

Result ListBreakpoints(Session& session) {
  Result result;
  result.fields["breakpoints"] = nlohmann::ordered_json::array();
  const control::BreakpointTable& table = session.debugger().breakpoints;
  for (int n = 0; n < table.count(); ++n) {
    const base::Address address =
        table.entries().at(static_cast<std::size_t>(table.NthBreakpoint(n))).address;
    result.text += frontend::Described(address, session.debugger().debug_info) + '\n';
    result.fields["breakpoints"].push_back(fmt::format("{:04x}", address));
  }
  return result;
}

Result Disassembled(Session& session, base::Address address, int count) {
  debugger::Debugger& debugger = session.debugger();
  Result result;
  result.fields["lines"] = nlohmann::ordered_json::array();
  for (int to_come = count; to_come > 0 && address <= base::kLastAddress; to_come -= kBatch) {
    const auto lines = views::ReadCodeLines(debugger.memory, debugger.operand_names, address,
                                            std::min(to_come, kBatch));
    for (const views::CodeLine& line : lines) {
      result.text += line.text + '\n';
      result.fields["lines"].push_back(line.text);
      address = line.address + isa::InstructionAt(line.address, line.bytes).length();
    }
    if (lines.empty()) break;
    if (Interrupted()) {
      result.status = ExitStatus::Interrupted;
      result.error = fmt::format("interrupted before {:04x}", address);
      break;
    }
  }
  return result;
}

Result Disasm(Session& session, const ParsedArguments& arguments) {
  return Disassembled(session, arguments.Number(0, session.debugger().frame.PC),
                      arguments.Number(1, kDefaultLines));
}

Result Asm(Session& session, const ParsedArguments& arguments) {
  debugger::Debugger& debugger = session.debugger();
  const base::Address address = arguments.Number(0);
  const std::string& text = arguments.Text(1);
  std::string why;
  const auto assembled = isa::AssembleLine(text, address, debugger.operand_names, &why);
  if (!assembled) return UsageError(fmt::format("\"{}\": {}", text, why));
  const base::Bytes code = assembled->code();
  Result refused =
      CheckWritable(session, address, address + static_cast<base::Address>(code.size()) - 1);
  if (refused.ok()) refused = WriteAndTell(session, address, code);
  return refused.ok() ? Disassembled(session, address, 1) : refused;
}

Result Break(Session& session, const ParsedArguments& arguments) {
  if (!arguments.Has(0)) return ListBreakpoints(session);
  debugger::Debugger& debugger = session.debugger();
  if (debugger.Busy()) return Failure(ExitStatus::Failed, "the target is running: stop it first");
  const base::Address address = arguments.Number(0);
  const bool hardware = debugger.breakpoints.HardwareBreakMode();
  if (!debugger.breakpoints.Has(address)) {
    if (const auto refusal = control::BreakpointLimit(debugger.breakpoints)) {
      session.ui().ShowMessage(*refusal);
      return Failure(ExitStatus::Failed,
                     hardware ? "delete the other one, or use mode software for code in RAM"
                              : "delete one first");
    }
    if (!hardware && !debugger.breakpoints.TakesSwi(address)) {
      return Failure(
          ExitStatus::Failed,
          fmt::format("{:04x} is not RAM and cannot hold a software breakpoint: use mode hardware",
                      address));
    }
    debugger.breakpoints.AddBreakpoint(address);
  }
  Result result;
  result.text = frontend::Described(address, debugger.debug_info) + '\n';
  result.fields = {{"address", fmt::format("{:04x}", address)}};
  return result;
}

Result Delete(Session& session, const ParsedArguments& arguments) {
  control::BreakpointTable& table = session.debugger().breakpoints;
  if (arguments.IsWord(0)) {
    table.Clear();
    return {};
  }
  const base::Address address = arguments.Number(0);
  if (!table.Has(address)) {
    return Failure(ExitStatus::Failed, fmt::format("there is no breakpoint at {:04x}", address));
  }
  table.RemoveBreakpoint(address);
  return {};
}

Result Mode(Session& session, const ParsedArguments& arguments) {
  control::BreakpointTable& breakpoints = session.debugger().breakpoints;
  if (arguments.Has(0)) {
    const bool hardware = arguments.Text(0) == "hardware";
    breakpoints.SetBreakMode(hardware ? control::BreakMode::Hardware
                                      : control::BreakMode::Software);
    if (hardware && breakpoints.count() > 1) {
      session.ui().Notice("Only the first breakpoint is armed in hardware mode.");
    }
  }
  Result result;
  const std::string name = breakpoints.HardwareBreakMode() ? "hardware" : "software";
  result.text = !arguments.Has(0) ? name + '\n' : "";
  result.fields = {{"mode", name}};
  return result;
}

constexpr Command kRows[] = {
    {"disasm",
     {Optional(Address("ADDR")), Optional(Count("LINES", kMostLines))},
     kStopped,
     Disasm,
     "disassemble (default: 10 lines from PC)"},
    {"asm", {Address("ADDR"), Rest("TEXT")}, kStopped, Asm, "assemble one instruction into memory"},
    {"break", {Optional(Address("ADDR"))}, kAlways, Break, "set a breakpoint, or list them"},
    {"delete", {Address("ADDR|all")}, kStopped, Delete, "delete breakpoints"},
    {"mode", {Optional(Word("hardware|software"))}, kStopped, Mode, "kind of breakpoints"},
};

}  // namespace

std::span<const Command> CodeCommands() {
  return kRows;
}

}  // namespace brevant::cli
