// SPDX-License-Identifier: MIT
#include "debugger/debugger.h"

#include "base/file_names.h"
#include "base/files.h"
#include "debugger/start_up_program.h"
#include "devices/hc08.h"
#include "link/security_code.h"
#include "symbols/source_text.h"
#include "symbols/symbol_file.h"

namespace brevant::debugger {
namespace {

constexpr base::Address kErasedVector = 0xFFFF;

}  // namespace

Debugger::Debugger(const Surroundings& surroundings)
    : surroundings_(surroundings),
      clock(surroundings.clock),
      settings(surroundings.settings),
      monitor_link(surroundings.port, surroundings.clock),
      monitor(monitor_link),
      connector(monitor, settings, surroundings.ui, surroundings.log),
      frame(monitor),
      breakpoints(monitor),
      run_control(monitor, frame, breakpoints, run_state, debug_info, settings,
                  surroundings.workspace),
      n_step(run_control, frame, breakpoints, debug_info, surroundings.indication),
      trace(run_control, frame, breakpoints, debug_info, surroundings.workspace, surroundings.ui,
            surroundings.indication, TraceFilesOfImage()),
      macros(monitor, frame, start_address, settings, surroundings.ui,
             surroundings.start_up_directory),
      loader(monitor, frame, breakpoints, debug_info, start_address, macros, settings,
             surroundings.ui, {.refresh_after_stop = [this] { RefreshAfterStop(); }}),
      flash(FlashSurroundingsOfThis()),
      file_programmer(FlashSurroundingsOfThis()) {
  for (const control::Mode mode :
       {control::Mode::FlashShort, control::Mode::MassErase, control::Mode::EraseRange}) {
    run_control.SetBackgroundOperation(mode, &flash);
  }
  run_control.SetBackgroundOperation(control::Mode::FileProgramming, &file_programmer);
}

link::ConnectResult Debugger::Start(OtherCodes other_codes) {
  link::ConnectResult result = connector.Connect();
  if (!IsConnected(result)) return result;
  const bool verify = settings.Integer(base::keys::kSecurityCheck) != 0;
  if (result == link::ConnectResult::SecurityNotPassed && other_codes == OtherCodes::Try &&
      verify) {
    if (connector.TryKnownCodes()) {
      result = link::ConnectResult::Connected;
    } else if (monitor.LinkError()) {
      // The last try has left the target silent: back to where its RAM could be used.
      result = connector.Connect();
      if (!IsConnected(result)) return result;
    }
  }
  NoteSecurity(result == link::ConnectResult::Connected);
  frame.LoadResetPC();
  monitor.WriteBlock(kStartUpProgramAddress, kStartUpProgram);
  breakpoints.Clear();
  debug_info.tool_chain = static_cast<symbols::ToolChain>(settings.Integer(base::keys::kCompiler));
  run_state.HardwareBreakMode = settings.Integer(base::keys::kHardwareBreak) != 0;
  n_step.settings = control::LoadNStepSettings(settings);
  RefreshAfterStop();
  return result;
}

link::ConnectResult Debugger::Restart() {
  debug_info.DebugInfoLoaded = false;
  // It may be another board, whose code is the one that connecting sends.
  connector.SetSessionCode(std::nullopt);
  const link::ConnectResult result = connector.Connect();
  if (!IsConnected(result)) return result;
  NoteSecurity(result == link::ConnectResult::Connected);
  FollowUpReset();
  return result;
}

void Debugger::Reset() {
  if (const auto code = security_bytes.Code()) connector.SetSessionCode(code);
  connector.ResetTarget();
  // Looked at now: the program that runs next may use the byte for itself.
  security_passed = connector.SecurityPassed();
  FollowUpReset();
}

void Debugger::Step(bool over) {
  run_state.StepOver = over;
  run_control.StepCommand(true);
}

std::string Debugger::LoadSymbols(const std::string& path) {
  const std::string start = settings.String(base::keys::kSymbolTableStart);
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
  flash.Tick();
  file_programmer.Tick();
}

bool Debugger::Busy() const {
  return run_state.RunMode != control::Mode::Idle || run_state.StepPending;
}

std::string Debugger::ImageDirectory() const {
  const std::string& loaded = loader.image_directory();
  return loaded.empty() ? base::DirectoryOf(settings.String(base::keys::kRecentFile, 0)) : loaded;
}

bool Debugger::RunMacro(const std::string& path) {
  if (!macros.RunOnDemand(path)) return false;
  Refresh();
  return true;
}

void Debugger::Refresh() {
  frame.ReadRegisters();
  surroundings_.workspace.RefreshViews();
}

void Debugger::RefreshAfterStop() {
  Refresh();
  run_control.RunToMainIfConfigured();
}

void Debugger::NoteSecurity(bool passed) {
  security_passed = passed;
  security_bytes.Forget();
  if (passed && settings.Integer(base::keys::kSecurityCheck) != 0) {
    security_bytes.Know(connector.session_code().value_or(link::RecentSecurityCode(settings, 0)));
  }
}

void Debugger::FollowUpReset() {
  // First, since the refresh at the end may leave a run to main of its own for the timer.
  run_control.AbandonRunForReset();
  frame.SP = monitor.ReadStackPointer();
  macros.RunResetMacro();
  ChooseProgramCounter();
  image_gone = loader.ImageIsGone();
  RefreshAfterStop();
}

void Debugger::ChooseProgramCounter() {
  base::Address start = kErasedVector;
  if (const auto known = start_address.AfterReset()) {
    start = *known;
  } else {
    start = monitor.ReadWord(devices::kResetVector);
    if (start == kErasedVector) return;
  }
  frame.PC = start;
  frame.WriteProgramCounter(start);
}

flash::FlashSurroundings Debugger::FlashSurroundingsOfThis() {
  return {monitor,
          frame,
          run_state,
          debug_info,
          settings,
          surroundings_.ui,
          surroundings_.workspace,
          security_bytes};
}

control::TraceFiles Debugger::TraceFilesOfImage() {
  return {.image_directory = [this] { return ImageDirectory(); },
          .source_text =
              [this](const symbols::SourceLine& line) {
                return symbols::SourceText(debug_info, line, ImageDirectory());
              }};
}

}  // namespace brevant::debugger
