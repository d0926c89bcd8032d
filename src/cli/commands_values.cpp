// SPDX-License-Identifier: MIT
// Variables, expressions and the call stack of the stopped program.
#include <fmt/format.h>

#include <algorithm>

#include "cli/chip_registers.h"
#include "cli/command_table.h"
#include "cli/session.h"
#include "cli/variables.h"
#include "control/program_context.h"
#include "eval/evaluate.h"
#include "eval/format.h"
#include "eval/names.h"
#include "frames/call_stack.h"
#include "frames/function_at.h"
#include "frames/source_line.h"
#include "symbols/places.h"

namespace brevant::cli {
namespace {

constexpr int kMostFrames = 100;

eval::Context Here(Session& session) {
  debugger::Debugger& debugger = session.debugger();
  return control::ContextOf(debugger.memory, debugger.debug_info, debugger.frame,
                            eval::Reading::Everything);
}

// Of those in an expression whose value is none of a single place.
void WarnOfRegisters(Session& session, const eval::Tree& tree) {
  const devices::Register* const row =
      tree.op == eval::Op::Name
          ? devices::FindRegister(session.debugger().memory.device(), tree.text)
          : nullptr;
  if (row != nullptr && !row->read_effect.empty()) {
    session.ui().Warn(fmt::format("Reading {} {}.", row->name, row->read_effect));
  }
  for (const eval::Tree& child : tree.children) WarnOfRegisters(session, child);
}

Result Shown(Session& session, const std::string& text, eval::Notation notation) {
  const eval::Context context = Here(session);
  const eval::Result found = eval::Evaluate(text, context);
  if (!found.ok()) return Failure(ExitStatus::Failed, found.problem);
  const eval::Value value = eval::Loaded(found.value, context);
  if (session.debugger().memory.LinkError()) return LinkLost();
  if (!value.unavailable.empty()) {
    return Failure(ExitStatus::Failed, text + " is " + eval::UnavailableText(value));
  }
  // A number is shown as it was read: a register may hold another when it is read again.
  eval::Value as_read = value;
  if (eval::IsInteger(value.type)) as_read.place.reset();
  const std::string shown = eval::ValueText(as_read, context, notation);
  Result result;
  result.text = shown + '\n';
  result.fields = {
      {"expression", text}, {"value", shown}, {"type", eval::TypeText(value, context)}};
  if (eval::IsInteger(value.type)) result.fields["number"] = value.number;
  if (value.place) {
    TellOfReading(session, value.place->address);
  } else {
    WarnOfRegisters(session, eval::Parse(text).tree);
  }
  if (value.place) result.fields["address"] = fmt::format("{:04x}", value.place->address);
  return result;
}

Result Print(Session& session, const ParsedArguments& arguments) {
  return Shown(session, arguments.Text(0), eval::Notation::AsC);
}

Result PrintHexadecimal(Session& session, const ParsedArguments& arguments) {
  return Shown(session, arguments.Text(0), eval::Notation::Hexadecimal);
}

Result Locals(Session& session, const ParsedArguments&) {
  const eval::Context context = Here(session);
  if (context.function() == nullptr) {
    return Failure(ExitStatus::Failed,
                   fmt::format("no function with variables is known at {:04x}: load the program "
                               "with its debug file, and stop in code of yours",
                               context.registers().pc));
  }
  Result result;
  result.fields["locals"] = nlohmann::ordered_json::array();
  for (const symbols::Variable& local : context.function()->locals) {
    const eval::Value value = eval::ValueOf(local, context);
    const std::string shown = eval::ValueText(value, context);
    result.text += fmt::format("{} = {}\n", local.name, shown);
    nlohmann::ordered_json row = {{"name", local.name}, {"type", eval::TypeText(value, context)}};
    row[value.unavailable.empty() ? "value" : "unavailable"] = shown;
    result.fields["locals"].push_back(std::move(row));
  }
  if (result.text.empty()) result.note = "The function has no variables of its own.";
  return result;
}

Result Where(Session& session, const ParsedArguments&) {
  debugger::Debugger& debugger = session.debugger();
  const symbols::DebugInfo& info = debugger.debug_info;
  const frames::CallStack stack = frames::FindCallStack(debugger.memory, info, debugger.frame.PC,
                                                        debugger.frame.ProgramSP(), kMostFrames);
  if (debugger.memory.LinkError()) return LinkLost();
  Result result;
  result.fields["frames"] = nlohmann::ordered_json::array();
  for (std::size_t n = 0; n < stack.frames.size(); ++n) {
    const frames::Frame& frame = stack.frames[n];
    result.text += frames::FrameText(n, frame, info) + '\n';
    nlohmann::ordered_json row = {{"function", frames::FunctionName(frame, info)},
                                  {"pc", fmt::format("{:04x}", frame.call)},
                                  {"certain", frame.found != frames::Found::Perhaps}};
    if (const auto line = frames::LineAt(frame.call, info)) {
      row["line"] = symbols::LineName(*line, info.LineTable);
    }
    if (frame.interrupted) row["interrupted"] = true;
    result.fields["frames"].push_back(std::move(row));
  }
  if (!stack.end.empty()) {
    result.note = "The stack cannot be followed further: " + stack.end + ".";
    result.fields["end"] = stack.end;
  }
  return result;
}

constexpr Command kRows[] = {
    {"print",
     {Rest("EXPR")},
     kStopped,
     Print,
     "value of an expression as in C: table[3], p->next, count + 1; 10 is decimal, 0x10 is not"},
    {"print/x", {Rest("EXPR")}, kStopped, PrintHexadecimal, "the same in hexadecimal"},
    {"locals", {}, kStopped, Locals, "parameters and variables of the function at PC"},
    {"where", {}, kStopped, Where, "the functions that the program is in, the innermost first"},
};

}  // namespace

bool IsVariable(Session& session, const std::string& word) {
  const auto is_so = [&word](const symbols::Variable& variable) { return variable.name == word; };
  const symbols::Function* const function = Here(session).function();
  return std::ranges::any_of(session.debugger().debug_info.variables, is_so) ||
         (function != nullptr && std::ranges::any_of(function->locals, is_so));
}

Result SetVariable(Session& session, const std::string& what, const std::string& value) {
  // Blanks in what is set: as many words belong to it as make it whole.
  std::string left = what;
  std::string right = value;
  eval::Parsed parsed = eval::Parse(left);
  while (!parsed.ok() && right.find(' ') != std::string::npos) {
    const std::size_t blank = right.find(' ');
    left += " " + right.substr(0, blank);
    right.erase(0, blank + 1);
    parsed = eval::Parse(left);
  }
  if (!parsed.ok()) return UsageError(what + ": " + eval::Parse(what).problem);
  if (right.starts_with("= ")) right.erase(0, 2);
  const eval::Context context = Here(session);
  const bool is_name = parsed.tree.op == eval::Op::Name && parsed.tree.scope.empty();
  if (is_name && !eval::FindName(parsed.tree.text, {}, context).value) {
    return UsageError(
        fmt::format("\"{}\" is no register (PC, SP, HX, A or CCR, or one that chip lists) and no "
                    "variable of the "
                    "program",
                    left));
  }
  const eval::Result to = eval::Evaluate(parsed.tree, context);
  if (!to.ok()) return Failure(ExitStatus::Failed, to.problem);
  if (to.value.of_chip != nullptr) return SetChipRegister(session, left, to.value, right);
  const eval::Result from = eval::Evaluate(right, context);
  if (!from.ok()) return Failure(ExitStatus::Failed, from.problem);
  const std::string problem = eval::Assign(to.value, from.value, context);
  if (session.debugger().memory.LinkError()) return LinkLost();
  if (!problem.empty()) return Failure(ExitStatus::Failed, left + ": " + problem);
  Result result;
  const eval::Value wanted = eval::Loaded(from.value, context);
  const eval::Value now = eval::Loaded(to.value, context);
  if (eval::IsInteger(now.type) && eval::IsInteger(wanted.type) && now.number != wanted.number) {
    result.note = fmt::format("{} is {} now.", left, eval::ValueText(now, context));
  }
  return result;
}

std::string PlaceText(Session& session, base::Address address) {
  const symbols::DebugInfo& info = session.debugger().debug_info;
  const auto line = frames::LineAt(address, info);
  if (!line) return fmt::format("{:04x}", address);
  frames::Frame frame{.pc = address};
  frame.function = frames::FunctionAt(address, info);
  return fmt::format("{} at {}", frames::FunctionName(frame, info),
                     symbols::LineName(*line, info.LineTable));
}

std::span<const Command> ValueCommands() {
  return kRows;
}

}  // namespace brevant::cli
