// SPDX-License-Identifier: MIT
// A port for what no board does on its own: refused calls, single bytes that fail to come, and the
// exact order and time-outs of the calls.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/serial_port.h"

namespace brevant::link {

class ScriptedPort final : public base::SerialPort, public base::Clock {
 public:
  std::vector<std::string> calls;
  std::string refuse;                          // the call that fails
  std::deque<std::uint8_t> arriving;           // what reads will find
  std::deque<std::uint8_t> answer_each_write;  // moved to arriving at each write, two bytes a write
  bool gone = false;
  std::int64_t now_ms = 0;
  std::vector<std::uint8_t> written;
  std::vector<int> timeouts_ms;

  bool Open(const std::string& device) override { return Call("open " + device); }
  void Close() override {
    Call("close");
    error_.clear();
  }
  bool Configure(const base::LineSettings& settings) override {
    return Call("configure " + std::to_string(settings.baud));
  }
  bool SetQueueSizes(int receive_bytes, int transmit_bytes) override {
    return Call("queues " + std::to_string(receive_bytes) + " " + std::to_string(transmit_bytes));
  }
  bool SetDtr(bool high) override { return Call(high ? "DTR high" : "DTR low"); }
  bool SetRts(bool high) override { return Call(high ? "RTS high" : "RTS low"); }
  bool SetBreak(bool on) override { return Call(on ? "break on" : "break off"); }
  bool Write(base::Bytes bytes) override {
    for (const std::uint8_t byte : bytes) {
      written.push_back(byte);
      for (int copy = 0; copy < 2 && !answer_each_write.empty(); ++copy) {
        arriving.push_back(answer_each_write.front());
        answer_each_write.pop_front();
      }
    }
    return !gone;
  }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override {
    timeouts_ms.push_back(static_cast<int>(timeout.count()));
    if (gone) return std::nullopt;
    std::size_t count = 0;
    for (; count < buffer.size() && !arriving.empty(); ++count) {
      buffer[count] = arriving.front();
      arriving.pop_front();
    }
    return count;
  }
  std::string LastError() const override { return error_; }

  std::int64_t NowMs() override { return now_ms; }
  void SpinUntil(std::int64_t deadline_ms) override {
    Call("spin " + std::to_string(deadline_ms - now_ms));
    now_ms = deadline_ms;
  }
  void Sleep(std::chrono::milliseconds time) override {
    Call("sleep " + std::to_string(time.count()));
    now_ms += time.count();
  }

 private:
  bool Call(std::string call) {
    calls.push_back(std::move(call));
    if (refuse.empty() || calls.back() != refuse) return true;
    error_ = "refused";
    return false;
  }
  std::string error_;
};

}  // namespace brevant::link
