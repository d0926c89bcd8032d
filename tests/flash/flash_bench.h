// SPDX-License-Identifier: MIT
// The flash operations on a connected board, with a timer, and a reset that follows up as the
// debugger does.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "control/run_control.h"
#include "flash/file_programmer.h"
#include "flash/flash_operations.h"
#include "images/image.h"
#include "link/connector.h"
#include "load/target_bench.h"

namespace brevant::flash {

using load::ByteList;
using load::Texts;
using load::User;

struct Bench : load::TargetBench, base::Workspace {
  explicit Bench(const simulator::Device& device = simulator::Gp32()) : TargetBench(device) {
    security.Know(CodeInFlash());
    FollowUpReset();
  }

  bool Connect() {
    const link::SecurityCode code = CodeInFlash();
    if (!TargetBench::Connect()) return false;
    security.Know(code);
    FollowUpReset();
    return !link.LinkError;
  }
  void FollowUpReset() {
    run.AbandonRunForReset();
    frame.ReadRegisters();
    state.WaitingForBreak = false;
    state.RunMode = control::Mode::Idle;
    link.BreakPollState = 0;
  }
  bool Passed() { return connector.SecurityPassed(); }

  void Tick() {
    target.Sleep(std::chrono::milliseconds(10));
    run.CompleteOnTimer();
    flash.Tick();
    programmer.Tick();
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
  // Every address of the array, whether or not it is blank.
  images::Image FlashContent() {
    images::Image image;
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

  void RefreshViews() override {}
  void ShowRunning(bool) override {}
  void SendCommand(int id) override {
    EXPECT_EQ(id, kResetCommand);
    ++resets;
    if (const auto code = security.Code()) connector.SetSessionCode(code);
    connector.ResetTarget();
    FollowUpReset();
  }

  link::Connector connector{monitor, settings, user, [](const std::string&) {}};
  control::RunState state;
  control::RunControl run{monitor, frame, breakpoints, state, debug_info, settings, *this};
  SecurityBytes security;
  FlashSurroundings surroundings{monitor,  frame, state, debug_info,
                                 settings, user,  *this, security};
  FlashOperations flash{surroundings};
  FileProgrammer programmer{surroundings};
  int resets = 0;

  // The members above are made by now.
  struct Wiring {
    explicit Wiring(Bench& b) {
      using control::Mode;
      for (const Mode mode : {Mode::FlashShort, Mode::MassErase, Mode::EraseRange}) {
        b.run.SetBackgroundOperation(mode, &b.flash);
      }
      b.run.SetBackgroundOperation(Mode::FileProgramming, &b.programmer);
    }
  } wiring{*this};
};

inline constexpr simulator::FaultKind kAllFaults[] = {
    simulator::FaultKind::LoseHostByte,    simulator::FaultKind::DropLocalEcho,
    simulator::FaultKind::DropMonitorEcho, simulator::FaultKind::FlipEcho,
    simulator::FaultKind::FlipHostByte,    simulator::FaultKind::FlipReply,
    simulator::FaultKind::LoseReply,       simulator::FaultKind::ExtraByte,
    simulator::FaultKind::DelayByte,       simulator::FaultKind::CutLine,
    simulator::FaultKind::ResetMcu};

}  // namespace brevant::flash
