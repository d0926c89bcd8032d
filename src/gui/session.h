// SPDX-License-Identifier: MIT
// Everything behind the windows: settings, ports, the engine, and the state of its views. What the
// engine asks of the windows is handed on to a Screen.
#pragma once

#include <QElapsedTimer>
#include <fstream>
#include <string>

#include "base/events.h"
#include "base/settings_file.h"
#include "debugger/debugger.h"
#include "frontend/connection.h"
#include "frontend/flight_recorder.h"
#include "frontend/holding_ui.h"
#include "frontend/target_ports.h"
#include "gui/gate.h"
#include "gui/options.h"
#include "gui/qt_user_interface.h"
#include "gui/status_text.h"
#include "views/data_view.h"
#include "views/open_views.h"
#include "views/program_views.h"
#include "views/prompts.h"
#include "views/register_cells.h"
#include "views/source_files.h"
#include "views/watch_table.h"
#include "workspace/recent_files.h"

namespace brevant::gui {

// The windows, as the engine sees them.
class Screen {
 public:
  virtual ~Screen() = default;
  // What is shown and what may be chosen may have changed.
  virtual void Refresh() = 0;
  // The engine is at work for longer than a person takes for "at once": what has become known
  // meanwhile is shown. Input is not to be taken.
  virtual void RepaintAtWork() = 0;
};

class Session final : private base::Events {
 public:
  explicit Session(const Options& options);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() override;

  // Borrowed; none at first.
  void SetScreen(Screen* screen) { screen_ = screen; }

  // Connects for the first time, as the settings say. False when the program cannot go on; the user
  // has been told. When the code of the settings does not fit, others that are known are tried.
  bool Connect();
  // Connects again; the user has been told when it failed. From within a command.
  void Reconnect();
  // The 10 ms tick. Nothing while a command is under way.
  void Tick();
  // Whose breakpoints are remembered from now on.
  void SetLoadedImage(const std::string& path) { loaded_image_ = path; }
  // Stores the breakpoints with the loaded image when they have changed. Nothing while a command is
  // under way.
  void RememberBreakpoints();
  // Those that were cleared last stay stored with the image, until one is set.
  void KeepRememberedBreakpoints() { remembered_breakpoints_ = debugger.breakpoints.generation(); }
  // Lets the open views follow the engine. The gate is held.
  void FollowEngine();
  // What a name of the program means at PC, in one line; empty while the target is not to be asked.
  std::string Describe(const std::string& name);
  // Shared by all data windows.
  const views::DataSettings& data_settings() const { return data_settings_; }
  void SetDataSettings(const views::DataSettings& wanted);

  ConnectionState Connection() const;
  // Empty, or why the report could not be written.
  std::string WriteReport(const std::string& path, link::Secrets secrets);
  // See FlightRecorder.
  std::string TakeRecordingProblem() { return recorder_.TakeProblem(); }
  // A text for the status bar, e.g. which security code fits; empty for none.
  const std::string& notice() const { return notice_; }
  // The simulated board; nullptr while none has been used.
  simulator::SimulatedTarget* simulated() const { return ports_.simulated(); }

  const Options options;
  Gate gate;
  base::SettingsFile settings;
  QtUserInterface ui;

 private:
  std::ofstream diagnostics_;  // how each attempt to connect went
  frontend::TargetPorts ports_;
  frontend::FlightRecorder recorder_;
  frontend::HoldingUi engine_ui_{ui};
  QElapsedTimer since_repaint_;
  Screen* screen_ = nullptr;
  std::string notice_;
  std::string loaded_image_;         // in this run; empty for none
  long remembered_breakpoints_ = 0;  // generation
  std::string target_;               // name of the device that was connected to

 public:
  debugger::Debugger debugger;
  views::OpenViews views;
  views::SourceFiles source_files;
  views::ProgramViews program_views;
  views::RegisterCells registers;
  views::WatchTable watch;
  views::AddressHistory addresses;
  workspace::RecentFiles recent_files;

 private:
  void Started() override { RefreshScreen(); }
  void Stopped(const base::Stop&) override { RefreshScreen(); }
  void ActivityChanged() override { RefreshScreen(); }
  void LinkChanged() override { RefreshScreen(); }

  void RefreshScreen();
  void RepaintNowAndThen();
  // Runs connect while the user sees that it is under way; what it says is shown afterwards. False
  // when it has failed.
  bool ShowConnecting(base::FunctionRef<frontend::Connection()> connect);

  views::DataSettings data_settings_;
  long data_settings_generation_ = 0;
};

}  // namespace brevant::gui
