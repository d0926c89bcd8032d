// SPDX-License-Identifier: MIT
// What each operation of the windows costs on the wire, in bytes that the host sends. The serial
// line is the bottleneck of everything: at 9600 baud a byte and its echo take 2 ms.
//
// The engine, the registers and a program view of 20 lines on the simulated board with its demo
// program in flash; then the same with a data view beside it. At the end the time that flash takes
// on a wire without a host's delays, and which part of it the commands themselves need.
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "command_costs.h"
#include "debugger/debugger.h"
#include "flash/flash_commands.h"
#include "flash/flash_image.h"
#include "flash/flash_records.h"
#include "images/image_file.h"
#include "images/image_writer.h"
#include "load/verify.h"
#include "simulator/demo_firmware.h"
#include "simulator/simulated_target.h"
#include "views/data_view.h"
#include "views/open_views.h"
#include "views/program_views.h"
#include "views/register_cells.h"
#include "views/stack_view.h"
#include "views/watch_view.h"

namespace brevant {
namespace {

constexpr base::Address kWatches = 10;
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

  void Flash() {
    engine_.Start(debugger::OtherCodes::Try);
    std::vector<std::uint8_t> code(0x7E00);
    for (std::size_t i = 0; i < code.size(); ++i)
      code[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    images::Image whole, rebuilt;
    target_.board().Load(0x8000, code);
    whole.Put(0x8000, code);
    Time("verify 32 KB", [&] {
      load::Verify(
          engine_.memory, whole, [](long, long) { return true; }, &engine_.crc);
    });
    Time("flash 32 KB that stand there", [&] { FlashImage(whole); });
    code[0x1234] ^= 0x10;
    rebuilt.Put(0x8000, code);
    Time("flash them with one byte changed", [&] { FlashImage(rebuilt); });
    target_.board().Load(0x9000, std::vector<std::uint8_t>(0x400, 0xFF));
    const images::ImageFile file = flash::ParseFlashRecords(
        images::SRecordText(0x9000, std::vector<std::uint8_t>(0x400, 0x5A)));
    Time("program 1 KB", [&] {
      flash::ProgramFlashFile(engine_.flash, "image.s19", file);
      while (engine_.flash.running()) Tick();
    });
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
    Do("data: refresh", [&] { data.Refresh(); });
    Do("data: the I/O page", [&] { data.GoToDataAddress(0); });
    views::StackView stack(open_,
                           {engine_.memory, engine_.debug_info, engine_.frame, engine_.activity});
    Do("stack window of 20 lines", [&] { stack.Resize(kLines * kLineHeight, kLineHeight); });
    Do("step beside both", [&] { engine_.run_control.StepCommand(control::Calls::Follow); });
    std::unique_ptr<views::DataView> other;
    Do("second data window there", [&] {
      data.GoToDataAddress(0x0100);
      Follow();
      target_.board().ClearHostLog();
      other = std::make_unique<views::DataView>(open_, engine_.memory, engine_.activity,
                                                data_settings_, 0x10);
      other->Resize(kLines * kLineHeight, kLineHeight);
    });
  }

  // What a step costs that is followed by a data window and ten watches, five of them bytes, two of
  // them longs, somewhere else than what the window shows.
  void Watch() {
    engine_.Start(debugger::OtherCodes::Try);
    views::DataView data(open_, engine_.memory, engine_.activity, data_settings_, 0x10);
    data.Resize(kLines * kLineHeight, kLineHeight);
    views::WatchTable table;
    views::WatchView watch(open_, table,
                           {engine_.memory, engine_.debug_info, engine_.frame, engine_.activity});
    for (base::Address n = 0; n < kWatches; ++n) {
      using namespace views::watch_codes;
      table.Insert({.address = 0x00C0 + 8 * n,
                    .name = "value",
                    .width = n < 5 ? kByte : (n < 8 ? kWord : kLong)});
    }
    Follow();
    Print("10 watches, data window");
    Do("step with 10 watches, data",
       [&] { engine_.run_control.StepCommand(control::Calls::Follow); });
    Do("the same with nothing kept", [&] {
      engine_.run_control.StepCommand(control::Calls::Follow);
      engine_.memory.DropAll();
    });
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
  void FlashImage(const images::Image& image) {
    flash::FlashImage(engine_.flash.surroundings(), engine_.crc).Run(image);
  }
  void Time(const char* what, const std::function<void()>& act) {
    target_.board().ClearHostLog();
    const std::int64_t before = target_.NowMs();
    act();
    const double taken = static_cast<double>(target_.NowMs() - before) / 1000;
    CommandCosts costs;
    for (const std::uint8_t byte : target_.board().host_log()) costs.Count(byte);
    std::printf("%-34s %8.3f s  its commands %8.3f s  %.3f\n", what, taken, costs.seconds(),
                costs.seconds() / taken);
    target_.board().ClearHostLog();
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
  brevant::Bench().Watch();
  brevant::Bench().Flash();
}
