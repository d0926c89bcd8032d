// SPDX-License-Identifier: MIT
// A target that answers as it likes. Most bytes are echoed as a monitor would, so that the engine
// gets far; the input says which are not, and what the target sends of its own. Whatever comes, the
// engine comes to an end in a bounded time of the clock.
#include <algorithm>
#include <cstdlib>
#include <deque>
#include <span>

#include "flash/flash_commands.h"
#include "fuzz/engine.h"

using namespace brevant;
using namespace std::chrono_literals;

namespace {

constexpr std::int64_t kMostMs = 3'600'000;
constexpr std::uint8_t kEchoUpTo = 0xE0;

class HostileTarget final : public base::SerialPort, public base::Clock {
 public:
  explicit HostileTarget(base::Bytes input) : input_(input) {}

  bool Open(const std::string&) override { return true; }
  void Close() override {}
  bool Configure(const base::LineSettings&) override { return true; }
  bool SetQueueSizes(int, int) override { return true; }
  bool SetDtr(bool) override { return true; }
  bool SetRts(bool) override { return true; }
  bool SetBreak(bool) override { return true; }
  std::string LastError() const override { return {}; }

  bool Write(base::Bytes bytes) override {
    for (const std::uint8_t byte : bytes) {
      now_ms_ += 1;
      for (int copy = 0; copy < 2; ++copy) Echo(byte);
    }
    return true;
  }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override {
    std::size_t count = 0;
    for (; count < buffer.size(); ++count) {
      if (arriving_.empty() && timeout > 0ms) SendOwn();
      if (arriving_.empty()) break;
      buffer[count] = arriving_.front();
      arriving_.pop_front();
    }
    Pass(count < buffer.size() ? timeout.count() : 1);
    return count;
  }
  std::int64_t NowMs() override { return now_ms_; }
  void SpinUntil(std::int64_t deadline_ms) override {
    Pass(std::max<std::int64_t>(deadline_ms - now_ms_, 0));
  }
  void Sleep(std::chrono::milliseconds time) override {
    if (time > 0ms) SendOwn();
    Pass(time.count());
  }
  // The next byte of the input; 0 once it is at its end.
  std::uint8_t Next() { return next_ < input_.size() ? input_[next_++] : std::uint8_t{0}; }
  bool at_end() const { return next_ >= input_.size(); }

 private:
  void Echo(std::uint8_t byte) {
    const std::uint8_t how = Next();
    if (how <= kEchoUpTo) {
      arriving_.push_back(byte);
    } else if (how % 2 == 0) {
      arriving_.push_back(how);
    }
  }
  void SendOwn() {
    if (!at_end()) arriving_.push_back(Next());
  }
  void Pass(std::int64_t ms) {
    now_ms_ += ms;
    if (now_ms_ > kMostMs) std::abort();
  }

  base::Bytes input_;
  std::size_t next_ = 0;
  std::deque<std::uint8_t> arriving_;
  std::int64_t now_ms_ = 0;
};

void Settle(debugger::Debugger& debugger) {
  for (int ticks = 0; ticks < 200 && debugger.Busy(); ++ticks) {
    debugger.clock.Sleep(10ms);
    debugger.Tick();
  }
  if (debugger.Busy()) debugger.run_control.Stop();
}

void Fill(debugger::Debugger& debugger) {
  std::vector<std::uint8_t> bytes(40);
  debugger.memory.AskChecked(bytes, 0x80);
  debugger.memory.WriteAndLook(0x100, bytes);
}

constexpr void (*kActs[])(debugger::Debugger&) = {
    [](debugger::Debugger& d) { d.run_control.StepCommand(control::Calls::Follow); },
    [](debugger::Debugger& d) { d.run_control.StepCommand(control::Calls::StepOver); },
    [](debugger::Debugger& d) { d.run_control.GoCommand(); },
    [](debugger::Debugger& d) { d.run_control.RunToAddress(0x110); },
    [](debugger::Debugger& d) { d.breakpoints.AddBreakpoint(0x108); },
    [](debugger::Debugger& d) { d.n_step.Start(); },
    [](debugger::Debugger& d) { d.trace.Start(20); },
    [](debugger::Debugger& d) { d.line_step.Start(control::LineStepKind::Over); },
    [](debugger::Debugger& d) { d.Reset(); },
    [](debugger::Debugger& d) { d.Restart(); },
    [](debugger::Debugger& d) { flash::EraseFlashRange(d.flash, 0x8000, 0x80FF); },
    [](debugger::Debugger& d) {
      flash::ProgramFlashLocations(d.flash, 0x8000, std::vector<std::uint8_t>{1, 2, 3});
    },
    [](debugger::Debugger& d) { d.frame.WriteA(0x5A); },
    Fill,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  HostileTarget target(base::Bytes(data, size));
  Engine engine(target, target);
  if (!debugger::IsConnected(engine.debugger.Start())) return 0;
  for (int acts = 0; acts < 12 && !target.at_end(); ++acts) {
    kActs[target.Next() % std::size(kActs)](engine.debugger);
    Settle(engine.debugger);
  }
  return 0;
}
