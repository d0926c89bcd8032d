// SPDX-License-Identifier: MIT
// The whole engine on a simulated board at the instant pace, with settings in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "debugger/command_ids.h"
#include "debugger/debugger.h"
#include "images/image_file.h"
#include "simulator/simulated_target.h"

namespace brevant::debugger {

class Bench : public base::UserInterface, public base::Workspace, public control::RunIndication {
 public:
  explicit Bench(const simulator::Device& device = simulator::Gp32())
      : folder_(std::filesystem::temp_directory_path() /
                ("brevant_debugger_" + std::to_string(getpid()))),
        target(device),
        settings(folder_ / "brevant.ini"),
        debugger({.port = target,
                  .clock = target,
                  .settings = settings,
                  .ui = *this,
                  .workspace = *this,
                  .indication = *this,
                  .start_up_directory = folder_.string()}) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    const std::string blank(16, 'F');
    settings.Override(base::keys::kRecentSecurity, blank, 0);
    debugger.connector.SetSessionCode(link::kBlankSecurityCode);
  }
  ~Bench() override { std::filesystem::remove_all(folder_); }
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
  std::vector<std::string> said;
  Debugger debugger;

  base::Answer ShowMessage(const base::Message& message) override {
    said.push_back(message.text);
    return message.buttons == base::Buttons::YesNo ? base::Answer::Yes : base::Answer::Ok;
  }
  void Beep() override {}
  void SetTitle(std::string_view) override {}
  void BeginProgress(std::string_view, std::string_view, bool) override {}
  bool UpdateProgress(std::string_view, long, long) override { return true; }
  void EndProgress() override {}
  void SetBusyCursor(bool) override {}
  void RefreshViews() override {}
  void ShowRunning(bool) override {}
  void SendCommand(int id) override {
    if (id == kCommandReset) debugger.Reset();
    if (id == kCommandTrace) debugger.trace.Command();
  }
  void ShowNStepping(bool) override {}
  void ShowTracing(bool) override {}
  void OpenTraceWindow() override {}
  void ShowTraceLog(const std::string&, int) override {}
};

}  // namespace brevant::debugger
