// SPDX-License-Identifier: MIT
// Stepping and running.
#include <fmt/format.h>

#include "base/files.h"
#include "cli/command_table.h"
#include "cli/interrupt.h"
#include "cli/register_line.h"
#include "cli/session.h"
#include "cli/stop_results.h"
#include "cli/variables.h"
#include "control/trace_rows.h"

namespace brevant::cli {
namespace {

constexpr int kMostSteps = 1000000;
constexpr double kBarWidth = 24;

Result StepTimes(Session& session, const ParsedArguments& arguments, control::Calls calls) {
  const std::uint32_t steps = arguments.Number(0, 1);
  Result result;
  for (std::uint32_t step = 0; step < steps && result.ok(); ++step) {
    if (Interrupted()) {
      return Interruption(fmt::format(" after {} of {} steps, at {:04x}", step, steps,
                                      session.debugger().frame.PC));
    }
    session.debugger().run_control.StepCommand(calls);
    result = AwaitStop(session);
  }
  return result;
}

Result Run(Session& session, const ParsedArguments& arguments) {
  debugger::Debugger& debugger = session.debugger();
  if (arguments.Has(0)) {
    debugger.frame.SetPC(arguments.Number(0));
  }
  debugger.run_control.Go();
  return {};
}

Result Step(Session& session, const ParsedArguments& arguments) {
  return StepTimes(session, arguments, control::Calls::Follow);
}

Result Over(Session& session, const ParsedArguments& arguments) {
  return StepTimes(session, arguments, control::Calls::StepOver);
}

Result Go(Session& session, const ParsedArguments& arguments) {
  Run(session, arguments);
  return AwaitStop(session);
}

Result Until(Session& session, const ParsedArguments& arguments) {
  control::RunControl& run = session.debugger().run_control;
  if (const auto suspended = run.SuspendedBy(arguments.Number(0))) {
    session.ui().Notice(fmt::format(
        "The breakpoint at {:04x} does not count on the way: there is one hardware breakpoint.",
        *suspended));
  }
  run.RunToAddress(arguments.Number(0));
  return AwaitStop(session);
}

Result Stop(Session& session, const ParsedArguments&) {
  if (!session.debugger().Busy()) return StopResult(session);
  return StopNow(session);
}

Result Wait(Session& session, const ParsedArguments&) {
  return AwaitStop(session);
}

Result NStep(Session& session, const ParsedArguments& arguments) {
  control::NStep& n_step = session.debugger().n_step;
  n_step.settings.count = arguments.Number(0);
  n_step.settings.condition = control::NStepCondition::AfterCount;
  n_step.Start();
  return AwaitStop(session);
}

void AddProfile(Result& result, const control::TraceProfile& profile) {
  result.text = control::ProfileTotal(profile) + '\n';
  result.fields["cycles"] = profile.cycles;
  const auto add = [&](const char* heading, const char* name,
                       const std::vector<control::ProfileRow>& rows) {
    result.text += '\n' + control::ProfileHeading(heading) + '\n';
    result.fields[name] = nlohmann::ordered_json::array();
    for (const control::ProfileRow& row : rows) {
      const auto bar = static_cast<std::size_t>(control::ShareOf(row, profile) * kBarWidth + 0.5);
      result.text += control::ProfileRowText(row, profile) + "  " + std::string(bar, '#') + '\n';
      result.fields[name].push_back(
          {{"name", row.name}, {"cycles", row.cycles}, {"steps", row.steps}});
    }
  };
  add("Functions", "functions", profile.functions);
  add("Lines", "lines", profile.lines);
}

// What the trace has come to, as the user wants to see it; also where it has ended badly, as the
// result tells already.
Result TraceResult(Session& session, const ParsedArguments& arguments, Result result) {
  debugger::Debugger& debugger = session.debugger();
  const control::Trace& trace = debugger.trace;
  result.fields.update({{"steps", trace.steps()}, {"log", trace.LogPath()}});
  if (!arguments.Has(1)) {
    result.text = trace.LogText();
    result.fields["text"] = result.text;
  } else if (arguments.Has(2)) {
    const std::string& path = arguments.Text(2);
    const std::string error = base::ReplaceFile(
        path, control::FormatTraceCsv(trace.ring(), trace.steps(), debugger.debug_info,
                                      debugger.operand_names));
    if (!error.empty()) {
      return Failure(ExitStatus::File, fmt::format("cannot write {}: {}", path, error));
    }
    result.text = fmt::format("wrote {} records to {}\n", trace.ring().size(), path);
    if (trace.steps() > trace.ring().size()) {
      result.note = fmt::format("Only the last {} of the {} steps are kept.", trace.ring().size(),
                                trace.steps());
    }
    result.fields.update({{"records", trace.ring().size()}, {"file", path}});
  } else {
    AddProfile(result, control::ProfileOf(trace.ring(), debugger.debug_info));
  }
  return result;
}

Result Trace(Session& session, const ParsedArguments& arguments) {
  if (arguments.Has(1) && (arguments.Text(1) == "csv") != arguments.Has(2)) {
    return UsageError("usage: trace N [csv FILE|profile]");
  }
  control::Trace& trace = session.debugger().trace;
  trace.Start(arguments.Number(0));
  const frontend::WaitEnd end = session.WaitForStop([&trace] { return trace.steps(); });
  if (end == frontend::WaitEnd::LinkLost) return LinkLost();
  if (end != frontend::WaitEnd::Stopped) {
    const bool interrupted = end == frontend::WaitEnd::Interrupted;
    const std::string why = interrupted ? "interrupted" : "no step ended";
    const ExitStatus status = interrupted ? ExitStatus::Interrupted : ExitStatus::NoAnswer;
    trace.Stop();
    Result failure = session.debugger().Busy()
                         ? GiveUpWaiting(session, why, status)
                         : Failure(status, fmt::format("{} after {} steps", why, trace.steps()));
    return TraceResult(session, arguments, std::move(failure));
  }
  return TraceResult(session, arguments, FailedStop(session).value_or(Result{}));
}

// The registers, and behind them the function and line.
Result StepLine(Session& session, control::LineStepKind kind) {
  control::LineStep& line_step = session.debugger().line_step;
  const std::string problem = line_step.Start(kind);
  if (!problem.empty()) return Failure(ExitStatus::Failed, problem);
  const frontend::WaitEnd end = session.WaitForStop();
  Result result =
      end == frontend::WaitEnd::Stopped ? StopResult(session) : NotStopped(session, end);
  if (!result.ok()) return result;
  const base::Address pc = session.debugger().frame.PC;
  const std::string place = PlaceText(session, pc);
  result.text += place + '\n';
  result.fields["place"] = place;
  if (const auto suspended = line_step.suspended()) {
    session.ui().Notice(fmt::format(
        "The breakpoint at {:04x} did not count on the way: there is one hardware breakpoint.",
        *suspended));
  }
  return result;
}

// A breakpoint or anything else that nobody asked for ends the repetition.
Result RepeatedLines(Session& session, const ParsedArguments& arguments,
                     control::LineStepKind kind) {
  const std::uint32_t steps = arguments.Number(0, 1);
  Result result;
  for (std::uint32_t step = 0; step < steps && result.ok(); ++step) {
    if (Interrupted()) {
      return Interruption(fmt::format(" after {} of {} lines, at {:04x}", step, steps,
                                      session.debugger().frame.PC));
    }
    result = StepLine(session, kind);
    const auto& stop = session.debugger().run_control.last_stop();
    if (!stop || stop->reason != base::StopReason::StepDone) break;
  }
  return result;
}

Result LineStep(Session& session, const ParsedArguments& arguments) {
  return RepeatedLines(session, arguments, control::LineStepKind::Into);
}

Result LineOver(Session& session, const ParsedArguments& arguments) {
  return RepeatedLines(session, arguments, control::LineStepKind::Over);
}

Result Out(Session& session, const ParsedArguments&) {
  return StepLine(session, control::LineStepKind::Out);
}

constexpr Command kRows[] = {
    {"step",
     {Optional(Count("N", kMostSteps))},
     kStopped,
     Step,
     "run N instructions (decimal, default 1)"},
    {"over",
     {Optional(Count("N", kMostSteps))},
     kStopped,
     Over,
     "the same, but calls count as one instruction"},
    {"line-step",
     {Optional(Count("N", kMostSteps))},
     kStopped,
     LineStep,
     "to the next line of source, into calls that have lines"},
    {"line-over",
     {Optional(Count("N", kMostSteps))},
     kStopped,
     LineOver,
     "the same, over all calls"},
    {"out", {}, kStopped, Out, "run until the function at PC has returned"},
    {"go", {Optional(Address("ADDR"))}, kStopped, Go, "run (from ADDR) and wait for the stop"},
    {"until", {Address("ADDR")}, kStopped, Until, "run to ADDR and wait for the stop"},
    {"run", {Optional(Address("ADDR"))}, kStopped, Run, "run (from ADDR) without waiting"},
    {"stop", {}, kAlways, Stop, "stop the running target with a break signal"},
    {"wait", {}, kAlways, Wait, "wait for a stop"},
    {"nstep",
     {Count("N", control::kMaxNStepCount)},
     kStopped,
     NStep,
     "N-step until N steps are exceeded, or a breakpoint"},
    {"trace",
     {Count("N", kMostSteps), Optional(Word("csv|profile")), Optional(File("FILE"))},
     kStopped,
     Trace,
     "run N instructions, show the last 128 and write trace.txt; or all, or where cycles went"},
};

}  // namespace

std::span<const Command> RunCommands() {
  return kRows;
}

}  // namespace brevant::cli
