// SPDX-License-Identifier: MIT
// brevant-target as a child process.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace brevant::scenario {

// Ended and reaped when the object goes.
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

}  // namespace brevant::scenario
