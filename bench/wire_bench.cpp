// SPDX-License-Identifier: MIT
// What each operation of the windows costs on the wire, in bytes that the host sends. The serial
// line is the bottleneck of everything: at 9600 baud a byte and its echo take 2 ms.
//
// The engine, the registers and a program view of 20 lines on the simulated board with its demo
// program in flash; then the same with a data view beside it.
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "debugger/debugger.h"
#include "images/image_file.h"
#include "simulator/demo_firmware.h"
#include "simulator/simulated_target.h"
#include "views/data_view.h"
#include "views/open_views.h"
#include "views/program_views.h"
#include "views/register_cells.h"

namespace brevant {
namespace {

constexpr int kLines = 20, kLineHeight = 10;

class Quiet final : public base::UserInterface, public base::Events {
 public:
  base::Answer ShowMessage(const base::Message&) override { return base::Answer::Ok; }
  void Beep() override {}
  void SetTitle(std::string_view) override {}
  void BeginProgress(std::string_view, std::string_view, bool) override {}
  bool UpdateProgress(std::string_view, long, long) override { return true; }
  void EndProgress() override {}
  void SetBusyCursor(bool) override {}
  void Started() override {}
  void Stopped(const base::Stop&) override {}
  void ActivityChanged() override {}
  void LinkChanged() override {}
};

class Bench {
 public:
  Bench() {
    const images::ImageFile demo = images::ParseImage(simulator::DemoFirmware());
    for (const images::Block& block : demo.ToImage().Blocks()) {
      target_.board().Load(block.address, block.bytes);
    }
    program_views_.SetRange(views::ProgramScrollRange("FFFF"));
    program_ = program_views_.Open();
    program_->Resize(kLines * kLineHeight, kLineHeight);
  }

  void Run() {
    engine_.Start(debugger::OtherCodes::Try);
    Follow();
    Print("connect and show");
    Do("step", [&] { engine_.run_control.StepCommand(control::Calls::Follow); });
    Do("step again", [&] { engine_.run_control.StepCommand(control::Calls::Follow); });
    Do("step over", [&] { engine_.run_control.StepCommand(control::Calls::StepOver); });
    Do("run to cursor", [&] { engine_.run_control.RunToCursor(0x8021); });
    engine_.breakpoints.AddBreakpoint(0x8031);
    Do("go, stop at a breakpoint", [&] { engine_.run_control.Go(); });
    engine_.breakpoints.Clear();
    // Where the program stops is in sight already, or the bench would measure the code there.
    Do("go to the loop", [&] { program_->GoToAddress(0x80A0); });
    Do("go, stop by the user", [&] {
      engine_.run_control.Go();
      Tick();
      Tick();
      engine_.run_control.Stop();
    });
    Do("go to an address", [&] { program_->GoToAddress(0x8000); });
    Do("scroll a line", [&] { program_->Scroll(views::ScrollCode::LineDown); });
    Do("scroll back", [&] { program_->Scroll(views::ScrollCode::LineUp); });
    Do("page", [&] { program_->Scroll(views::ScrollCode::PageDown); });
    Do("page back", [&] { program_->Scroll(views::ScrollCode::PageUp); });
    std::unique_ptr<views::ProgramView> second;
    Do("second window", [&] {
      second = program_views_.Open(program_->state().top);
      second->Resize(kLines * kLineHeight, kLineHeight);
    });
    engine_.frame.SetPC(0x8000);
    Print("set PC");
    Do("step with two windows", [&] { engine_.run_control.StepCommand(control::Calls::Follow); });
    Do("refresh both", [&] {
      program_->Refresh();
      second->Refresh();
    });
    views::DataView data(open_, engine_.memory, engine_.activity, data_settings_, 0x10);
    Do("data window of 20 lines", [&] { data.Resize(kLines * kLineHeight, kLineHeight); });
    Do("step beside it", [&] { engine_.run_control.StepCommand(control::Calls::Follow); });
    Do("data: scroll a line", [&] {
      data.MoveCursor(0, kLines - 1);
      data.Scroll(views::ScrollCode::LineDown);
    });
    Do("data: page", [&] { data.Scroll(views::ScrollCode::PageDown); });
    Do("data: page back", [&] { data.Scroll(views::ScrollCode::PageUp); });
  }

 private:
  void Follow() {
    base::Generations now = engine_.generations();
    now.settings += program_views_.generation();
    open_.Follow(now, engine_.MonitorListens());
  }
  void Tick() {
    target_.Sleep(std::chrono::milliseconds(10));
    engine_.Tick();
    Follow();
  }
  void Do(const char* what, const std::function<void()>& act) {
    act();
    Follow();
    for (int i = 0; i < 100 && engine_.Busy(); ++i) Tick();
    Print(what);
  }
  void Print(const char* what) {
    std::printf("%-28s %6zu\n", what, target_.board().host_log().size());
    target_.board().ClearHostLog();
  }

  simulator::SimulatedTarget target_{simulator::Gp32()};
  base::SettingsFile settings_{std::filesystem::path{}};
  Quiet quiet_;
  debugger::Debugger engine_{{.port = target_,
                              .clock = target_,
                              .settings = settings_,
                              .ui = quiet_,
                              .events = quiet_,
                              .start_up_directory = ""}};
  views::DataSettings data_settings_;
  views::OpenViews open_;
  views::ProgramViews program_views_{open_,
                                     {engine_.memory, engine_.debug_info, engine_.frame,
                                      engine_.breakpoints, engine_.activity, settings_, quiet_}};
  views::RegisterCells registers_{open_, engine_.frame, quiet_};
  std::unique_ptr<views::ProgramView> program_;
};

}  // namespace
}  // namespace brevant

int main() {
  brevant::Bench bench;
  bench.Run();
}
