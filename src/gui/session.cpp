// SPDX-License-Identifier: MIT
#include "gui/session.h"

#include <filesystem>

#include "base/files.h"
#include "control/program_context.h"
#include "devices/device.h"
#include "frontend/first_settings.h"
#include "frontend/report.h"
#include "views/name_value.h"
#include "workspace/image_breakpoints.h"

namespace brevant::gui {
namespace {

namespace keys = base::keys;

// In the start-up folder; users who report trouble with connecting are asked for it by this name.
constexpr const char* kDiagnosticFile = "vell";
// Often enough for the eye; the rest of the time is the wire's.
constexpr std::chrono::milliseconds kRepaintEvery{50};
constexpr std::string_view kWholeAddressSpace = "FFFF";

void BeginSettings(base::SettingsFile& settings) {
  if (settings.Apply(frontend::FirstSettings())) return;
  settings.Override(keys::kProgramRange, kWholeAddressSpace);
}

}  // namespace

Session::Session(const Options& given)
    : options(given),
      settings(given.settings),
      diagnostics_(kDiagnosticFile),
      ports_(settings, {.pace = given.pace, .demo = true}, [this] { RepaintNowAndThen(); }),
      recorder_(ports_.router(), ports_.router()),
      debugger({.port = recorder_.port(),
                .clock = ports_.router(),
                .settings = settings,
                .ui = engine_ui_,
                .events = *this,
                .start_up_directory = base::WorkingDirectory(),
                .log = [this](const std::string& line) { diagnostics_ << line << std::flush; },
                .secret = [this](bool on) { recorder_.Secret(on); }}),
      source_files(debugger.debug_info, [this] { return debugger.SourceFolders(); }),
      program_views(views, {debugger.memory, debugger.debug_info, debugger.frame,
                            debugger.breakpoints, debugger.activity, settings, ui, &source_files}),
      registers(views, debugger.frame, ui) {
  frontend::UseForThisRun({.port = options.port}, settings);
  if (!options.record.file.empty()) {
    recorder_.RecordTo(options.record,
                       [this] { return frontend::DescribeTarget(settings, options.version); });
  }
  if (!std::filesystem::exists(settings.path())) BeginSettings(settings);
  program_views.ReadRange(settings);
  program_views.ShowSource(settings.Integer(keys::kShowSource) != 0);
  SetDataSettings(views::ReadDataSettings(settings));
  recent_files.Read(settings);
  for (const control::FileSide side : control::kFileSides) {
    debugger.file_io.OfferName(side, settings.String(control::RowOf(side).key));
  }
}

Session::~Session() {
  // Nobody would put back what stands in its slots.
  if (debugger.file_io.active()) debugger.run_control.Stop();
  base::SettingsFile::Change names;
  for (const control::FileSide side : control::kFileSides) {
    names.Store(control::RowOf(side).key, debugger.file_io.binding(side).file_name);
  }
  settings.Apply(names);
  debugger.monitor_link.ClosePort();
}

void Session::RepaintNowAndThen() {
  if (screen_ == nullptr || !gate.busy() || gate.held() < kRepaintEvery) return;
  if (since_repaint_.isValid() && !since_repaint_.hasExpired(kRepaintEvery.count())) return;
  screen_->RepaintAtWork();
  since_repaint_.start();
}

bool Session::ShowConnecting(base::FunctionRef<frontend::Connection()> connect) {
  target_ = devices::BySettingsNumber(settings.Integer(keys::kDevice)).name;
  ui.ShowWaiting("Look for hardware", "Connecting to the target...");
  const frontend::Connection connection = connect();
  ui.EndProgress();
  for (const base::Message& message : connection.said) ui.ShowMessage(message);
  if (connection.found) notice_ = frontend::FitText(*connection.found);
  return connection.ok();
}

bool Session::Connect() {
  bool connected = false;
  gate.Run([&] {
    connected = ShowConnecting([this] {
      return frontend::Connect(debugger, engine_ui_, frontend::KnownCodes::TryAndRemember);
    });
    FollowEngine();
  });
  return connected;
}

void Session::Reconnect() {
  ShowConnecting([this] { return frontend::ConnectAgain(debugger, engine_ui_); });
}

void Session::Tick() {
  gate.Run([this] { debugger.Tick(); });
}

void Session::RememberBreakpoints() {
  const long now = debugger.breakpoints.generation();
  if (gate.busy() || loaded_image_.empty() || remembered_breakpoints_ == now) return;
  remembered_breakpoints_ = now;
  std::vector<base::Address> set;
  for (const control::Breakpoint& entry : debugger.breakpoints.entries()) {
    if (entry.in_use) set.push_back(entry.address);
  }
  workspace::RememberBreakpoints(settings, loaded_image_, set);
}

ConnectionState Session::Connection() const {
  return {.port = debugger.monitor_link.PortName,
          .device = ports_.device(),
          .simulated = ports_.is_simulated(),
          .target = target_,
          .running = debugger.activity.Busy() && !debugger.block.running(),
          .file_io = debugger.file_io.active() ? debugger.file_io.CountsText() : "",
          .written = debugger.block.running(),
          .breakpoint_waits = debugger.run_control.BreakpointChangeWaits(),
          .link_lost = debugger.monitor_link.LinkError,
          .security_passed = debugger.security.passed(),
          .damage = debugger.memory.damage(),
          .stop = debugger.run_control.last_stop()};
}

std::string Session::WriteReport(const std::string& path, link::Secrets secrets) {
  const frontend::ReportParts parts{std::string("brevant, Qt ") + qVersion(), options.version,
                                    base::ReadFile(kDiagnosticFile).text};
  return base::ReplaceFile(path, frontend::ReportText(parts, debugger, recorder_, secrets));
}

void Session::RefreshScreen() {
  if (screen_ != nullptr) screen_->Refresh();
}

void Session::FollowEngine() {
  base::Generations now = debugger.generations();
  now.settings += program_views.generation() + data_settings_generation_ + watch.generation() +
                  source_files.generation();
  views.Follow(now, debugger.MonitorListens());
}

std::string Session::Describe(const std::string& name) {
  std::string text;
  gate.Run([&] {
    if (!debugger.MonitorListens() || debugger.Busy()) return;
    text = views::NameValueText(name, control::ContextOf(debugger.memory, debugger.debug_info,
                                                         debugger.frame, eval::Reading::Sparing));
  });
  return text;
}

void Session::SetDataSettings(const views::DataSettings& wanted) {
  data_settings_ = wanted;
  ++data_settings_generation_;
}

}  // namespace brevant::gui
