// SPDX-License-Identifier: MIT
// The simulated board as port and clock, with an end to every wait: whoever keeps on asking beyond
// the deadline does not come back.
#pragma once

#include <exception>

#include "simulator/simulated_target.h"

namespace brevant::campaign {

struct Hang : std::exception {
  const char* what() const noexcept override { return "no end within its time"; }
};

class WatchedTarget final : public base::SerialPort, public base::Clock {
 public:
  explicit WatchedTarget(const simulator::Device& device) : target(device) {}

  // From now on.
  void Allow(std::chrono::milliseconds time) {
    deadline_ = target.NowMs() + time.count();
    calls_ = 0;
  }

  bool Open(const std::string& device) override { return target.Open(device); }
  void Close() override { target.Close(); }
  bool Configure(const base::LineSettings& settings) override { return target.Configure(settings); }
  bool SetQueueSizes(int in, int out) override { return target.SetQueueSizes(in, out); }
  bool SetDtr(bool high) override { return target.SetDtr(high); }
  bool SetRts(bool high) override { return target.SetRts(high); }
  bool SetBreak(bool on) override { return target.SetBreak(on); }
  bool Write(base::Bytes bytes) override {
    Look();
    return target.Write(bytes);
  }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds time) override {
    Look();
    return target.Read(buffer, time);
  }
  std::string LastError() const override { return target.LastError(); }
  std::int64_t NowMs() override { return target.NowMs(); }
  void SpinUntil(std::int64_t deadline) override {
    Look();
    target.SpinUntil(deadline);
  }
  void Sleep(std::chrono::milliseconds time) override {
    Look();
    target.Sleep(time);
  }

  simulator::SimulatedTarget target;

 private:
  static constexpr long kMostCalls = 5'000'000;
  void Look() {
    if (++calls_ > kMostCalls || target.NowMs() > deadline_) throw Hang();
  }

  std::int64_t deadline_ = 0;
  long calls_ = 0;
};

}  // namespace brevant::campaign
