// SPDX-License-Identifier: MIT
// Images and flash on a simulated board of either device, with a user who answers and may cancel,
// and a reset that follows up as the debugger does.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "base/event_log.h"
#include "base/settings_file.h"
#include "base/temporary_folder.h"
#include "base/test_user.h"
#include "base/text_format.h"
#include "control/breakpoint_table.h"
#include "control/run_control.h"
#include "images/file_programmer.h"
#include "images/flash_operations.h"
#include "images/image.h"
#include "images/start_address.h"
#include "link/connector.h"
#include "link/sent_commands.h"
#include "simulator/simulated_target.h"

namespace brevant::images {

using ByteList = std::vector<std::uint8_t>;

using link::DecodeCommands;

struct Bench {
  explicit Bench(const simulator::Device& device = simulator::Gp32()) : target(device) {
    // Written past the settings file, which would wait for the disk each time.
    Write("brevant.ini", "[config]\nHC08Devices=" + std::to_string(&device == &simulator::Ql()) +
                             "\nFEEPfilename=" + (folder.path() / "image.s19").string() + "\n");
    EXPECT_TRUE(Connect());
  }

  // As the user would: opens the port anew and enters the code that fits.
  bool Connect() {
    target.SetFaultPlan({});
    link.LinkError = false;
    link::SecurityCode code{};
    for (base::Address i = 0; i < code.size(); ++i) code[i] = Peek(0xFFF6 + i);
    if (!link.OpenPort("COM1") || monitor.SendSecurityCode(code) != 0) return false;
    security.NoteConnected(code, true);
    FollowUpReset();
    return !link.LinkError;
  }
  void FollowUpReset() {
    run.AbandonRunForReset();
    frame.ReadRegisters();
  }
  bool Passed() { return connector.SecurityPassed(); }

  void Tick() {
    target.Sleep(std::chrono::milliseconds(10));
    run.CompleteOnTimer();
  }
  // No operation takes longer than this, unless the end of its routine got lost.
  void TickToEnd() {
    for (int i = 0; i < 200 && (flash.running() || programmer.running()); ++i) Tick();
  }
  bool ProgramText(const std::string& text) {
    const std::string path = Write("image.s19", text);
    const bool started = programmer.ProgramFlashFile(path);
    TickToEnd();
    return started;
  }
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = (folder.path() / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  simulator::Mcu& mcu() { return target.board().mcu(); }
  std::uint8_t Peek(base::Address address) { return mcu().Peek(address); }
  std::string Commands() {
    const std::string text = DecodeCommands(target.board().host_log());
    target.board().ClearHostLog();
    return text;
  }
  // Every address of the array, whether or not it is blank.
  Image FlashContent() {
    Image image;
    for (const simulator::Range& range : mcu().device().flash) {
      for (base::Address at = range.first; at <= range.last; ++at) {
        image.Put(at, std::vector{Peek(at)});
      }
    }
    return image;
  }
  void FillFlash(std::uint8_t value) {
    for (const simulator::Range& range : mcu().device().flash) {
      for (base::Address at = range.first; at <= range.last; ++at) mcu().Poke(at, value);
    }
    // Block protection would hold without the board's high voltage.
    mcu().Poke(mcu().device().flbpr, 0xFF);
  }

  void ResetTarget() {
    ++resets;
    connector.ResetTarget();
    FollowUpReset();
  }

  simulator::SimulatedTarget target;
  link::MonitorLink link{target, target};
  link::Monitor monitor{link};
  memory::Memory memory{monitor};
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  base::TestUser user;
  base::EventLog events;
  link::SecurityKeeper security{settings};
  link::Connector connector{monitor, settings, security, user, [](const std::string&) {}};
  symbols::DebugInfo debug_info;
  control::RegisterFrame frame{memory, link};
  control::BreakpointTable breakpoints{memory};
  control::Activity activity{events};
  control::RunControl run{link, memory, frame, breakpoints, activity, debug_info, settings, events};
  StartAddress start;
  FlashSurroundings surroundings{monitor,  frame, activity, debug_info,
                                 settings, user,  security, [this] { ResetTarget(); }};
  FlashOperations flash{surroundings};
  FileProgrammer programmer{surroundings};
  int resets = 0;
};

inline constexpr simulator::FaultKind kAllFaults[] = {
    simulator::FaultKind::LoseHostByte,    simulator::FaultKind::DropLocalEcho,
    simulator::FaultKind::DropMonitorEcho, simulator::FaultKind::FlipEcho,
    simulator::FaultKind::FlipHostByte,    simulator::FaultKind::FlipReply,
    simulator::FaultKind::LoseReply,       simulator::FaultKind::ExtraByte,
    simulator::FaultKind::DelayByte,       simulator::FaultKind::CutLine,
    simulator::FaultKind::ResetMcu};

}  // namespace brevant::images
