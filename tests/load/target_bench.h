// SPDX-License-Identifier: MIT
// A connected simulated board of either device, and a user who answers and may cancel.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "base/settings_file.h"
#include "base/temporary_folder.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "link/monitor.h"
#include "link/sent_commands.h"
#include "load/start_address.h"
#include "simulator/simulated_target.h"
#include "symbols/debug_info.h"

namespace brevant::load {

using ByteList = std::vector<std::uint8_t>;
using Texts = std::vector<std::string>;

class User final : public base::UserInterface {
 public:
  bool agrees = true;
  // Cancels once progress has been shown this often; never when negative.
  int cancels_after = -1;
  Texts texts;
  std::string title;
  std::string progress_text;
  int beeps = 0;
  int progress_windows = 0;
  int busy_cursors = 0;

  base::Answer ShowMessage(const base::Message& message) override {
    texts.push_back(message.text);
    switch (message.buttons) {
      case base::Buttons::Ok:
        return base::Answer::Ok;
      case base::Buttons::OkCancel:
        return agrees ? base::Answer::Ok : base::Answer::Cancel;
      case base::Buttons::YesNo:
        return agrees ? base::Answer::Yes : base::Answer::No;
    }
    return base::Answer::Cancel;
  }
  void Beep() override { ++beeps; }
  void SetTitle(std::string_view text) override { title = text; }
  void BeginProgress(std::string_view, std::string_view, bool) override { ++progress_windows; }
  bool UpdateProgress(std::string_view text, long, long) override {
    progress_text = text;
    return cancels_after < 0 || cancels_after-- > 0;
  }
  void EndProgress() override { --progress_windows; }
  void SetBusyCursor(bool busy) override { busy_cursors += busy ? 1 : -1; }

  Texts TakeTexts() { return std::exchange(texts, {}); }
};

struct TargetBench {
  explicit TargetBench(const simulator::Device& device = simulator::Gp32()) : target(device) {
    // Written past the settings file, which would wait for the disk each time.
    Write("brevant.ini", "[config]\nHC08Devices=" + std::to_string(&device == &simulator::Ql()) +
                             "\nFEEPfilename=" + (folder.path() / "image.s19").string() + "\n");
    EXPECT_TRUE(Connect());
  }

  // As the user would: opens the port anew and enters the code that fits.
  bool Connect() {
    target.SetFaultPlan({});
    link.LinkError = false;
    if (!link.OpenPort("COM1") || monitor.SendSecurityCode(CodeInFlash()) != 0) return false;
    frame.ReadRegisters();
    link.BreakPollState = 0;
    return !link.LinkError;
  }
  link::SecurityCode CodeInFlash() {
    link::SecurityCode code{};
    for (base::Address i = 0; i < code.size(); ++i) code[i] = Peek(0xFFF6 + i);
    return code;
  }
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = (folder.path() / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  simulator::Mcu& mcu() { return target.board().mcu(); }
  std::uint8_t Peek(base::Address address) { return mcu().Peek(address); }
  std::string Commands() {
    const std::string text = link::DecodeCommands(target.board().host_log());
    target.board().ClearHostLog();
    return text;
  }

  simulator::SimulatedTarget target;
  link::MonitorLink link{target, target};
  link::Monitor monitor{link};
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  User user;
  symbols::DebugInfo debug_info;
  control::RegisterFrame frame{monitor};
  control::BreakpointTable breakpoints{monitor};
  StartAddress start;
};

}  // namespace brevant::load
