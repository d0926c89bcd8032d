// SPDX-License-Identifier: MIT
// The whole engine on a simulated board at the instant pace, with settings in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/event_log.h"
#include "base/test_user.h"
#include "debugger/debugger.h"
#include "images/image_file.h"
#include "simulator/simulated_target.h"

namespace brevant::debugger {

class Bench {
 public:
  explicit Bench(const simulator::Device& device = simulator::Gp32())
      : folder_(std::filesystem::temp_directory_path() /
                ("brevant_debugger_" + std::to_string(getpid()))),
        target(device),
        settings(folder_ / "brevant.ini"),
        debugger({.port = target,
                  .clock = target,
                  .settings = settings,
                  .ui = user,
                  .events = events,
                  .start_up_directory = folder_.string()}) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    debugger.security.GiveForSession(link::kBlankSecurityCode);
  }
  ~Bench() { std::filesystem::remove_all(folder_); }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  // Ticks until nothing is under way; false when that takes more than a minute of the target's
  // time.
  bool Settle() {
    for (int ticks = 0; ticks < 6000; ++ticks) {
      if (!debugger.Busy()) return true;
      debugger.clock.Sleep(std::chrono::milliseconds(10));
      debugger.Tick();
    }
    return false;
  }
  void PutFlash(const std::string& path) {
    for (const images::Block& block : images::ReadImageFile(path).ToImage().Blocks()) {
      target.board().Load(block.address, block.bytes);
    }
  }

 private:
  std::filesystem::path folder_;

 public:
  simulator::SimulatedTarget target;
  base::SettingsFile settings;
  base::TestUser user;
  base::EventLog events;
  Debugger debugger;
};

}  // namespace brevant::debugger
