// SPDX-License-Identifier: MIT
// Instructions and breakpoints.
#include <fmt/format.h>

#include <array>
#include <vector>

#include "cli/commands.h"
#include "cli/session.h"
#include "control/messages.h"
#include "isa/assembler.h"
#include "isa/disassembler.h"

namespace brevant::cli {
namespace {

constexpr int kDefaultLines = 10;
constexpr int kMostLines = 65536;
constexpr base::Address kLastAddress = 0xFFFF;

// The longest instruction has four bytes.
isa::Instruction Fetch(link::Monitor& monitor, base::Address address) {
  std::array<std::uint8_t, 4> bytes{};
  monitor.ReadBlockBytes(bytes, address);
  return isa::InstructionAt(address, bytes);
}

Result ListBreakpoints(Session& session) {
  Result result;
  result.fields["breakpoints"] = nlohmann::ordered_json::array();
  const control::BreakpointTable& table = session.debugger().breakpoints;
  for (int n = 0; n < table.count(); ++n) {
    const base::Address address =
        table.entries().at(static_cast<std::size_t>(table.NthBreakpoint(n))).address;
    result.text += session.Described(address) + '\n';
    result.fields["breakpoints"].push_back(fmt::format("{:04x}", address));
  }
  return result;
}

// A software breakpoint in memory that does not take the SWI would be silently missed.
bool TakesSwi(link::Monitor& monitor, base::Address address) {
  const std::uint8_t saved = monitor.ReadByte(address);
  if (saved == control::kSwiOpcode) return true;
  monitor.WriteByte(address, control::kSwiOpcode);
  const bool taken = monitor.ReadByte(address) == control::kSwiOpcode;
  monitor.WriteByte(address, saved);
  return taken;
}

}  // namespace

Result Disasm(Session& session, Arguments arguments) {
  debugger::Debugger& debugger = session.debugger();
  base::Address address = debugger.frame.PC;
  int lines = kDefaultLines;
  if (!arguments.empty()) {
    const auto given = session.ResolveAddress(arguments[0]);
    if (!given.ok()) return UsageError(given.error);
    address = given.value;
  }
  if (arguments.size() > 1) {
    const auto given = ParseCount(arguments[1], kMostLines);
    if (!given.ok()) return UsageError(given.error);
    lines = given.value;
  }
  Result result;
  result.fields["lines"] = nlohmann::ordered_json::array();
  for (; lines > 0 && address <= kLastAddress && !debugger.monitor.LinkError(); --lines) {
    const isa::Instruction instruction = Fetch(debugger.monitor, address);
    const std::string line = isa::Disassemble(instruction, debugger.debug_info.SymbolTable);
    result.text += line + '\n';
    result.fields["lines"].push_back(line);
    address = instruction.end();
  }
  return result;
}

Result Asm(Session& session, Arguments arguments) {
  debugger::Debugger& debugger = session.debugger();
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  std::string text;
  for (const std::string& word : arguments.subspan(1)) text += (text.empty() ? "" : " ") + word;
  const auto assembled = isa::AssembleLine(text, address.value, debugger.debug_info.SymbolTable);
  if (!assembled) {
    return UsageError(fmt::format(
        "\"{}\" is no instruction here: one mnemonic with hexadecimal operands or symbols", text));
  }
  const base::Bytes bytes = assembled->code();
  debugger.monitor.WriteBlock(address.value, bytes);
  std::vector<std::uint8_t> taken(bytes.size());
  debugger.monitor.ReadBlockBytes(taken, address.value);
  Result result =
      Disasm(session, std::vector<std::string>{fmt::format("{:04x}", address.value), "1"});
  if (result.ok() && !std::ranges::equal(taken, bytes)) {
    result.status = ExitStatus::Failed;
    result.error = fmt::format(
        "the memory at {:04x} did not take the instruction: RAM can be "
        "edited, flash takes program-bytes",
        address.value);
  }
  return result;
}

Result Break(Session& session, Arguments arguments) {
  if (arguments.empty()) return ListBreakpoints(session);
  debugger::Debugger& debugger = session.debugger();
  if (debugger.Busy()) return Failure(ExitStatus::Failed, "the target is running: stop it first");
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  const bool hardware = debugger.breakpoints.HardwareBreakMode();
  if (!debugger.breakpoints.Has(address.value)) {
    if (const auto refusal = control::BreakpointLimit(debugger.breakpoints)) {
      session.ui().ShowMessage(*refusal);
      return Failure(ExitStatus::Failed,
                     hardware ? "delete the other one, or use mode software for code in RAM"
                              : "delete one first");
    }
    if (!hardware && !TakesSwi(debugger.monitor, address.value)) {
      return Failure(
          ExitStatus::Failed,
          fmt::format("{:04x} is not RAM and cannot hold a software breakpoint: use mode hardware",
                      address.value));
    }
    debugger.breakpoints.AddBreakpoint(address.value);
  }
  Result result;
  result.text = session.Described(address.value) + '\n';
  result.fields = {{"address", fmt::format("{:04x}", address.value)}};
  return result;
}

Result Delete(Session& session, Arguments arguments) {
  control::BreakpointTable& table = session.debugger().breakpoints;
  if (arguments[0] == "all") {
    table.Clear();
    return {};
  }
  const auto address = session.ResolveAddress(arguments[0]);
  if (!address.ok()) return UsageError(address.error);
  if (!table.Has(address.value)) {
    return Failure(ExitStatus::Failed,
                   fmt::format("there is no breakpoint at {:04x}", address.value));
  }
  table.RemoveBreakpoint(address.value);
  return {};
}

Result Mode(Session& session, Arguments arguments) {
  control::BreakpointTable& breakpoints = session.debugger().breakpoints;
  if (!arguments.empty()) {
    if (arguments[0] != "hardware" && arguments[0] != "software") {
      return UsageError("usage: mode hardware, or mode software");
    }
    const bool hardware = arguments[0] == "hardware";
    breakpoints.SetBreakMode(hardware ? control::BreakMode::Hardware
                                      : control::BreakMode::Software);
    if (hardware && breakpoints.count() > 1) {
      session.ui().Notice("Only the first breakpoint is armed in hardware mode.");
    }
  }
  Result result;
  const std::string name = breakpoints.HardwareBreakMode() ? "hardware" : "software";
  result.text = arguments.empty() ? name + '\n' : "";
  result.fields = {{"mode", name}};
  return result;
}

}  // namespace brevant::cli
