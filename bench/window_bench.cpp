// SPDX-License-Identifier: MIT
// How long the windows keep a person waiting: the 10 ms tick while an endless loop runs in the
// target, the way from nothing to a painted window, and a page of code read at 9600 baud.
//
// The port is the simulated target inside the program, or brevant-target at its wire pace behind a
// pseudo-terminal. For the tick the longest time counts, not the mean: aim for less than 5 ms.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "gui/application.h"
#include "gui/program_window.h"
#include "scenario/target_process.h"

namespace {

using namespace brevant;
using SteadyClock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kLines = 60;

std::filesystem::path Folder() {
  return std::filesystem::temp_directory_path() / "brevant_window_bench";
}

struct Desktop {
  explicit Desktop(const std::string& port, simulator::Pace pace = simulator::Pace::Bus)
      : application({.port = port,
                     .connect = true,
                     .settings = (Folder() / "brevant.ini").string(),
                     .version = "bench",
                     .pace = pace}) {
    started = application.Start();
    QApplication::processEvents();
  }
  gui::MainWindow& window() { return application.window(); }
  gui::ProgramWindow& program() {
    return *static_cast<gui::ProgramWindow*>(
        window().Children(gui::kProgramKind).front()->widget());
  }
  // So high that the window shows that many lines.
  void ShowLines(int lines) {
    QMdiSubWindow& child = *window().Children(gui::kProgramKind).front();
    const int frame = child.height() - program().viewport()->height();
    child.resize(child.width(), frame + lines * program().cell().height);
    QTest::qWait(2000);
  }

  gui::Application application;
  bool started = false;
};

template <typename Work>
Milliseconds Timed(const Work& work) {
  const auto start = SteadyClock::now();
  work();
  return SteadyClock::now() - start;
}

// The debugger's own start-up program in RAM, which never ends.
constexpr base::Address kEndlessLoop = 0x0100;

// Ticks and repaints as the event loop has them come, with a program in an endless loop.
void TickWhileRunning(benchmark::State& state, const std::string& port) {
  Desktop desktop(port);
  if (!desktop.started) return state.SkipWithError("not connected");
  desktop.application.session().debugger.frame.WriteProgramCounter(kEndlessLoop);
  desktop.window().Send(workspace::commands::kGo);
  if (!desktop.application.session().debugger.Busy()) return state.SkipWithError("not running");
  Milliseconds longest_tick{0};
  Milliseconds longest_repaint{0};
  for ([[maybe_unused]] const auto round : state) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const Milliseconds tick = Timed([&] { desktop.window().Tick(); });
    longest_tick = std::max(longest_tick, tick);
    longest_repaint = std::max(longest_repaint, Timed([] { QApplication::processEvents(); }));
    state.SetIterationTime(tick.count() / 1000);
  }
  state.counters["longest_tick_ms"] = longest_tick.count();
  state.counters["longest_repaint_ms"] = longest_repaint.count();
  if (!desktop.application.session().debugger.Busy()) state.SkipWithError("stopped meanwhile");
}

void TickOfTheSimulatedTarget(benchmark::State& state) {
  TickWhileRunning(state, "sim");
}
BENCHMARK(TickOfTheSimulatedTarget)->Iterations(500)->UseManualTime();

void TickOfASerialPort(benchmark::State& state) {
  const scenario::TargetProcess process({"--pace", "wire"});
  TickWhileRunning(state, process.device());
}
BENCHMARK(TickOfASerialPort)->Iterations(500)->UseManualTime();

void FirstPaint(benchmark::State& state) {
  for ([[maybe_unused]] const auto round : state) {
    std::unique_ptr<Desktop> desktop;
    const Milliseconds time = Timed([&] { desktop = std::make_unique<Desktop>("sim"); });
    state.SetIterationTime(time.count() / 1000);
  }
}
BENCHMARK(FirstPaint)->UseManualTime()->Unit(benchmark::kMillisecond);

// One request of the scroll bar over sixty lines on the wire; Arg is its code.
void ScrollAtTheWirePace(benchmark::State& state) {
  const scenario::TargetProcess process({"--pace", "wire"});
  Desktop desktop(process.device());
  if (!desktop.started) return state.SkipWithError("not connected");
  desktop.ShowLines(kLines);
  const auto code = static_cast<views::ScrollCode>(state.range(0));
  views::ProgramView& view = desktop.program().view();
  for ([[maybe_unused]] const auto round : state) {
    view.GoToAddress(0x9000);
    desktop.window().Tick();
    view.Scroll(code);
    const Milliseconds time = Timed([&] { desktop.window().Tick(); });
    state.SetIterationTime(time.count() / 1000);
  }
  state.counters["lines"] = view.state().lineCount;
}
BENCHMARK(ScrollAtTheWirePace)
    ->ArgName("code")
    ->DenseRange(0, 3)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication desktop(argc, argv);
  std::filesystem::create_directories(Folder());
  std::filesystem::current_path(Folder());
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::current_path("/");
  std::filesystem::remove_all(Folder());
  return 0;
}
