// SPDX-License-Identifier: MIT
#include "debugger/debugger.h"

#include <utility>

#include "base/file_names.h"
#include "base/files.h"
#include "debugger/engine_settings.h"
#include "debugger/start_up_program.h"
#include "devices/device.h"
#include "devices/hc08.h"
#include "devices/reset_cause.h"
#include "link/messages.h"
#include "symbols/source_text.h"
#include "symbols/symbol_file.h"

namespace brevant::debugger {
Debugger::Debugger(const Surroundings& surroundings)
    : surroundings_(surroundings),
      clock(surroundings.clock),
      settings(surroundings.settings),
      monitor_link(surroundings.port, surroundings.clock, surroundings.secret),
      monitor(monitor_link),
      memory(monitor),
      security(settings),
      connector(monitor, settings, security, surroundings.ui, surroundings.log),
      operand_names(debug_info.SymbolTable, memory, settings),
      frame(memory, monitor_link),
      breakpoints(memory),
      activity(surroundings.events),
      crc(memory, monitor_link, frame),
      run_control(monitor_link, memory, frame, breakpoints, activity, debug_info,
                  surroundings.events, [this] { return EnterAfterSelfReset(); }),
      n_step(run_control, activity, frame, breakpoints, debug_info),
      trace(run_control, activity, frame, breakpoints, debug_info, operand_names, surroundings.ui,
            TraceFilesOfImage()),
      line_step(run_control, activity, memory, frame, breakpoints, debug_info),
      file_io(run_control, activity, memory, frame, breakpoints, surroundings.ui),
      macros(memory, frame, start_address, settings, surroundings.ui,
             surroundings.start_up_directory),
      loader(memory, frame, breakpoints, debug_info, start_address, macros, settings,
             surroundings.ui,
             {.flash_is_readable = [this] { return security.passed(); },
              .refresh_after_stop = [this] { RefreshAfterStop(); },
              .crc = &crc}),
      flash(FlashSurroundingsOfThis()),
      block(memory, crc, frame, activity, surroundings.ui) {}

link::ConnectResult Debugger::Start(OtherCodes other_codes) {
  link::ConnectResult result = connector.Connect();
  if (!IsConnected(result)) return result;
  if (result == link::ConnectResult::SecurityNotPassed && other_codes == OtherCodes::Try &&
      security.Verify()) {
    if (connector.TryKnownCodes()) {
      result = link::ConnectResult::Connected;
    } else if (monitor.LinkError()) {
      // The last try has left the target silent: back to where its RAM could be used.
      result = connector.Connect();
      if (!IsConnected(result)) return result;
    }
  }
  const EngineSettings wanted = ReadEngineSettings(settings);
  memory.UseDevice(wanted.device);
  if (security.passed()) frame.LoadResetPC();
  memory.WriteBytes(kStartUpProgramAddress, kStartUpProgram);
  breakpoints.Clear();
  debug_info.tool_chain = wanted.tool_chain;
  breakpoints.SetBreakMode(wanted.break_mode);
  n_step.settings = wanted.n_step;
  NoteLink();
  RefreshAfterStop();
  return result;
}

link::ConnectResult Debugger::Restart() {
  debug_info.DebugInfoLoaded = false;
  const link::ConnectResult result = connector.Connect();
  if (!IsConnected(result)) return result;
  FollowUpReset();
  return result;
}

bool Debugger::Reset() {
  const bool reset = connector.ResetTarget();
  if (reset || monitor_link.LinkError) {
    FollowUpReset();
  } else {
    surroundings_.ui.ShowMessage(ToMessage(link::kNotReset, monitor_link.SignalError()));
  }
  return reset;
}

void Debugger::Reconfigure() {
  breakpoints.Clear();
  Reset();
  // Not before: the reset takes back what a running program had planted.
  breakpoints.SetBreakMode(ReadEngineSettings(settings).break_mode);
}

std::string Debugger::LoadSymbols(const std::string& path) {
  if (auto program = symbols::ReadDebugFile(path)) {
    if (!program->problem.empty()) return path + ": " + program->problem;
    debug_info.DebugInfoLoaded = !program->lines.empty();
    debug_info.Assign(std::move(*program), base::DirectoryOf(path));
    return {};
  }
  const std::string start = ReadEngineSettings(settings).symbol_table_start;
  if (symbols::LoadSymbolFile(path, start, debug_info)) return {};
  if (const base::FileText file = base::ReadFile(path); !file.ok()) {
    return path + " cannot be read: " + file.error;
  }
  return path +
         " holds no symbols: lines of a name and a hexadecimal address are expected after the "
         "first "
         "line" +
         (start.empty() ? "." : " with \"" + start + "\".");
}

void Debugger::Tick() {
  run_control.CompleteOnTimer();
  NoteLink();
}

void Debugger::NoteLink() {
  const bool lost = monitor.LinkError();
  if (std::exchange(link_lost_, lost) != lost) surroundings_.events.LinkChanged();
}

base::Generations Debugger::generations() const {
  return {.memory = memory.generation(),
          .registers = frame.generation(),
          .marks = breakpoints.generation(),
          .stops = run_control.stops() + refreshes_,
          .settings = activity.file_io_changes(),
          .symbols = debug_info.SymbolTable.generation() + debug_info.LineTable.generation()};
}

std::string Debugger::ImageDirectory() const {
  const std::string& loaded = loader.image_directory();
  return loaded.empty() ? base::DirectoryOf(settings.String(base::keys::kRecentFile, 0)) : loaded;
}

symbols::SourceFolders Debugger::SourceFolders() const {
  return symbols::ReadSourceFolders(settings, ImageDirectory());
}

bool Debugger::RunMacro(const std::string& path) {
  if (!macros.RunOnDemand(path)) return false;
  if (frame.ReadRegisters()) frame.Confirm();
  ++refreshes_;
  return true;
}

void Debugger::RefreshAfterStop() {
  if (frame.ReadRegisters()) frame.Confirm();
  ++refreshes_;
  RunToMainIfWanted();
}

void Debugger::RunToMainIfWanted() {
  if (const auto symbol = ReadEngineSettings(settings).run_to_main) run_control.RunToMain(*symbol);
}

void Debugger::FollowUpReset() {
  // First, since the refresh at the end may leave a run to main of its own for the timer.
  memory.UseDevice(ReadEngineSettings(settings).device);
  run_control.AbandonRunForReset();
  file_io.PutBack();
  // SP says where PC is written to.
  if (frame.ReadRegisters() && frame.Confirm()) {
    macros.RunResetMacro();
    ChooseProgramCounter();
    image_gone = loader.ImageIsGone();
  }
  NoteLink();
  if (!frame.ReadRegisters()) return run_control.Report({base::StopReason::LinkLost, 0, {}});
  run_control.Report({base::StopReason::Reset, frame.PC, {}});
  RunToMainIfWanted();
}

std::optional<std::string> Debugger::EnterAfterSelfReset() {
  const auto status = connector.EnterAgain();
  if (!status) return std::nullopt;
  memory.DropAll();
  if (frame.ReadRegisters()) ChooseProgramCounter();
  return std::string(devices::ResetCause(*status));
}

void Debugger::ChooseProgramCounter() {
  auto start = start_address.AfterReset();
  // A locked part hands out no vector.
  if (!start && security.passed()) start = frame.ReadResetVector();
  if (start) frame.SetPC(*start);
}

flash::FlashSurroundings Debugger::FlashSurroundingsOfThis() {
  return {memory,   monitor_link,     frame,    activity,           debug_info,
          settings, surroundings_.ui, security, [this] { Reset(); }};
}

control::TraceFiles Debugger::TraceFilesOfImage() {
  return {.image_directory = [this] { return ImageDirectory(); },
          .source_text =
              [this](const symbols::SourceLine& line) {
                return symbols::SourceText(debug_info, line, SourceFolders());
              }};
}

}  // namespace brevant::debugger
