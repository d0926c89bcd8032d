// SPDX-License-Identifier: MIT
// The whole engine: one of everything, made in the order in which one thing builds on another. A
// front end makes it, connects, calls Tick every 10 ms, and uses the members to do its work.
#pragma once

#include <functional>
#include <string>

#include "base/clock.h"
#include "base/events.h"
#include "base/generations.h"
#include "base/serial_port.h"
#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/file_io.h"
#include "control/line_step.h"
#include "control/n_step.h"
#include "control/register_frame.h"
#include "control/run_control.h"
#include "control/target_crc.h"
#include "control/trace.h"
#include "flash/flash_job.h"
#include "link/connector.h"
#include "link/monitor.h"
#include "link/monitor_link.h"
#include "link/security_keeper.h"
#include "load/loader.h"
#include "load/macro_runner.h"
#include "load/start_address.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "symbols/operand_names.h"
#include "symbols/source_folders.h"
#include "views/block_job.h"

namespace brevant::debugger {

// What surrounds the engine. Everything is borrowed and outlives the Debugger.
struct Surroundings {
  base::SerialPort& port;
  base::Clock& clock;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  base::Events& events;
  // Where the program was started: settings, macros and the diagnostic file live there.
  std::string start_up_directory;
  // Receives what belongs in the diagnostic file.
  std::function<void(const std::string&)> log = [](const std::string&) {};
  // Told when a security code begins (true) and ends (false) to pass the port.
  std::function<void(bool)> secret = [](bool) {};
};

// What to do when the code of the settings does not fit: a wrong code does no harm, so others that
// are known may be tried, each after a reset of its own.
enum class OtherCodes { Leave, Try };

class Debugger {
 public:
  explicit Debugger(const Surroundings& surroundings);
  Debugger(const Debugger&) = delete;
  Debugger& operator=(const Debugger&) = delete;

 private:
  // The members below are made from these.
  Surroundings surroundings_;

 public:
  base::Clock& clock;
  base::SettingsFile& settings;
  link::MonitorLink monitor_link;
  link::Monitor monitor;
  memory::Memory memory;
  link::SecurityKeeper security;
  link::Connector connector;
  symbols::DebugInfo debug_info;
  symbols::OperandNames operand_names;
  control::RegisterFrame frame;
  control::BreakpointTable breakpoints;
  control::Activity activity;
  control::TargetCrc crc;
  control::RunControl run_control;
  control::NStep n_step;
  control::Trace trace;
  control::LineStep line_step;
  control::FileIo file_io;
  load::StartAddress start_address;
  load::MacroRunner macros;
  load::Loader loader;
  flash::FlashJob flash;
  views::BlockJob block;
  // Found at the last reset or new connection: the image loaded last is no longer in memory.
  bool image_gone = false;
  static constexpr const char* kImageGone =
      "The target's RAM has lost the image that was loaded: load it again.";

  // Connects and prepares the target: the steps of start-up after the connect form is stored.
  // Unless the result is Connected or SecurityNotPassed nothing else has been done.
  link::ConnectResult Start(OtherCodes other_codes = OtherCodes::Leave);
  // Connects again, then follows up as after a reset. The program's debug information is dropped.
  link::ConnectResult Restart();
  // Resets the target and follows up. Sends the code that is known to stand in its flash now.
  // False when the port did not reset it: either the user has been told and what runs runs on, or
  // the link is lost, which is told as a stop.
  bool Reset();

  // The configuration may have changed: every breakpoint is forgotten, the target reset, and the
  // kind of breakpoints is what the settings say now.
  void Reconfigure();

  // The symbols of a text file take the place of all debug information, also when there are none.
  // Empty, or what was wrong with the file.
  std::string LoadSymbols(const std::string& path);

  // Runs a macro file and remembers it. False when it could not be read; the user has been told.
  bool RunMacro(const std::string& path);
  // The folder of the image loaded last, in this run or the one before; may be empty.
  std::string ImageDirectory() const;
  // Where its sources may lie, as the settings say now.
  symbols::SourceFolders SourceFolders() const;

  // What views compare with; settings are the front end's to count.
  base::Generations generations() const;
  // The target is stopped, at a place that is to be shown, and the link stands: views may read.
  bool MonitorListens() const {
    return !activity.WaitingForBreak() && !activity.Passing() && !memory.LinkError();
  }

  // To be called every 10 ms while no command is under way.
  void Tick();
  // Something is under way that Tick will complete.
  bool Busy() const { return activity.Busy(); }
  // Registers read, and on to main when the settings ask for it.
  void RefreshAfterStop();

 private:
  flash::FlashSurroundings FlashSurroundingsOfThis();
  void NoteLink();
  void FollowUpReset();
  // After start-up, reset and load.
  void RunToMainIfWanted();
  void ChooseProgramCounter();
  std::optional<std::string> EnterAfterSelfReset();
  control::TraceFiles TraceFilesOfImage();
  bool link_lost_ = false;  // as told last
  long refreshes_ = 0;      // that were no stop of a program
};

inline bool IsConnected(link::ConnectResult result) {
  return result == link::ConnectResult::Connected ||
         result == link::ConnectResult::SecurityNotPassed;
}

}  // namespace brevant::debugger
