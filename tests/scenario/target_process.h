// SPDX-License-Identifier: MIT
// brevant-target as a child process, and a bare client of its terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brevant::scenario {

using ByteList = std::vector<std::uint8_t>;

// The process; ended and reaped when the object goes.
class TargetProcess {
 public:
  explicit TargetProcess(const std::vector<std::string>& options);
  ~TargetProcess();
  TargetProcess(const TargetProcess&) = delete;
  TargetProcess& operator=(const TargetProcess&) = delete;

  // The first line on standard output; empty when it ended without one.
  const std::string& device() const { return device_; }
  // Sends the signal, if any, and returns the exit status.
  std::optional<int> End(int signal);
  // Processor time used so far.
  std::chrono::milliseconds ProcessorTime() const;

 private:
  int pid_ = -1;
  std::string device_;
};

// One opening of the terminal, as a raw serial client makes it.
class TerminalClient {
 public:
  explicit TerminalClient(const std::string& device);
  ~TerminalClient();
  TerminalClient(const TerminalClient&) = delete;
  TerminalClient& operator=(const TerminalClient&) = delete;

  bool IsOpen() const { return descriptor_ >= 0; }
  void SetRts(bool high) const;
  void SetBreak(bool held) const;
  void Send(const ByteList& bytes) const;
  ByteList Read(std::size_t count, std::chrono::milliseconds timeout) const;
  // Sends each byte after the copies of the one before; everything that came back.
  ByteList Exchange(const ByteList& bytes, std::size_t replies) const;
  // RTS high, then low; then the security bytes. What followed them.
  ByteList PowerUp(const ByteList& code) const;

 private:
  int descriptor_;
};

}  // namespace brevant::scenario
