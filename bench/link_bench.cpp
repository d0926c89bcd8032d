// SPDX-License-Identifier: MIT
// How much time the host adds to what the wire needs: brevant-target at its wire pace behind a
// pseudo-terminal, the native port on this side. Each row shows the time taken, the protocol's own
// minimum for exactly the commands that were sent, and their ratio. A ratio of 1.05 is the aim.
//
// The minimum counts the bits of each command at 9600 baud plus the waits that the host must make;
// a step also waits for the break byte, which falls into such a wait.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "command_costs.h"
#include "control/run_control.h"
#include "images/image.h"
#include "link/monitor.h"
#include "link/native/native_serial_port.h"
#include "link/security_code.h"
#include "load/verify.h"
#include "scenario/target_process.h"

namespace {

using namespace brevant;
using SteadyClock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// Adds up what the commands that pass cost at least.
class CountingPort final : public base::SerialPort, public base::Clock {
 public:
  explicit CountingPort(link::PortBackend backend) : backend_(std::move(backend)) {}

  Seconds Minimum() const { return Seconds(costs_.seconds()) + waited_; }
  Seconds Taken() const { return SteadyClock::now() - start_; }
  // Takes what went before out of both.
  void Restart() {
    costs_.Clear();
    waited_ = {};
    start_ = SteadyClock::now();
  }

  bool Open(const std::string& device) override { return port().Open(device); }
  void Close() override { port().Close(); }
  bool Configure(const base::LineSettings& settings) override { return port().Configure(settings); }
  bool SetQueueSizes(int receive, int transmit) override {
    return port().SetQueueSizes(receive, transmit);
  }
  bool SetDtr(bool high) override { return port().SetDtr(high); }
  bool SetRts(bool high) override { return port().SetRts(high); }
  bool SetBreak(bool on) override { return port().SetBreak(on); }
  bool Write(base::Bytes bytes) override {
    for (const std::uint8_t byte : bytes) costs_.Count(byte);
    return port().Write(bytes);
  }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override {
    return port().Read(buffer, timeout);
  }
  std::string LastError() const override { return backend_.port->LastError(); }
  std::int64_t NowMs() override { return backend_.clock->NowMs(); }
  void SpinUntil(std::int64_t deadline_ms) override {
    const auto start = SteadyClock::now();
    backend_.clock->SpinUntil(deadline_ms);
    waited_ += SteadyClock::now() - start;
  }
  void Sleep(std::chrono::milliseconds time) override { backend_.clock->Sleep(time); }

 private:
  base::SerialPort& port() { return *backend_.port; }
  link::PortBackend backend_;
  CommandCosts costs_;
  Seconds waited_{};
  SteadyClock::time_point start_ = SteadyClock::now();
};

struct NoEvents final : base::Events {
  void Started() override {}
  void Stopped(const base::Stop&) override {}
  void ActivityChanged() override {}
  void LinkChanged() override {}
};

struct Bench {
  scenario::TargetProcess process{{"--pace", "wire"}};
  CountingPort port{link::MakeNativeBackend()};
  link::MonitorLink link{port, port};
  link::Monitor monitor{link};

  bool Connect() {
    return link.OpenPort(process.device()) &&
           monitor.SendSecurityCode(link::kBlankSecurityCode) == 0 && !link.LinkError;
  }
};

bool Load(Bench& bench) {
  constexpr int kBlock = 32;
  const std::vector<std::uint8_t> block(kBlock, 0x5A);
  for (int i = 0; i < 2048 / kBlock; ++i) {
    bench.monitor.WriteBlock(0x0100 + static_cast<base::Address>(i % 8) * kBlock, block);
  }
  return bench.monitor.ReadByte(0x01FF) == 0x5A;
}

bool Read(Bench& bench) {
  std::vector<std::uint16_t> words(256);
  bench.monitor.ReadBlockWords(words, 0x8000);
  return std::ranges::count(words, 0xFFFF) == 256;
}

bool Step(Bench& bench) {
  memory::Memory memory(bench.monitor);
  control::RegisterFrame frame(memory, bench.link);
  control::BreakpointTable breakpoints(memory);
  NoEvents events;
  control::Activity activity(events);
  const symbols::DebugInfo debug_info;
  control::RunControl run(bench.link, memory, frame, breakpoints, activity, debug_info, events,
                          [] { return std::nullopt; });
  bench.monitor.WriteBlock(0x0100, std::vector<std::uint8_t>{0x4C, 0x9D, 0x20, 0xFC});
  bench.monitor.WriteWord(0x00FE, 0x0100);
  frame.ReadRegisters();
  bench.port.Restart();
  for (int i = 0; i < 50; ++i) {
    run.StepCommand(control::Calls::Follow);
    if (activity.Busy()) return false;
  }
  return frame.A == 17;
}

bool Verify(Bench& bench) {
  memory::Memory memory(bench.monitor);
  images::Image image;
  image.Put(0x8000, std::vector<std::uint8_t>(512, 0xFF));
  const auto result = load::Verify(memory, image, [](long, long) { return true; });
  return result.outcome == load::VerifyOutcome::Equal && result.compared == 512;
}

struct Row {
  const char* what;
  bool (*run)(Bench& bench);
};
constexpr Row kRows[] = {{"load 2 KB in blocks of 32", &Load},
                         {"read 512 bytes by words", &Read},
                         {"50 steps, hardware break", &Step},
                         {"verify 512 bytes", &Verify}};

bool Measure(Bench& bench, const Row& row) {
  bench.port.Restart();
  const bool good = row.run(bench) && !bench.link.LinkError;
  const Seconds taken = bench.port.Taken();
  const Seconds minimum = bench.port.Minimum();
  std::printf("%-28s %8.3f s  minimum %8.3f s  ratio %.4f%s\n", row.what, taken.count(),
              minimum.count(), taken / minimum, good ? "" : "  FAILED");
  std::fflush(stdout);
  return good;
}

}  // namespace

int main() {
  Bench bench;
  if (!bench.Connect()) {
    std::fprintf(stderr, "link_bench: %s\n", bench.link.PortError().c_str());
    return 1;
  }
  bool good = true;
  for (const Row& row : kRows) good = Measure(bench, row) && good;
  return good ? 0 : 1;
}
