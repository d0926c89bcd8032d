// SPDX-License-Identifier: MIT
// The flash operations on a connected board, with a timer, and a reset that follows up as the
// debugger does.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "base/event_log.h"
#include "control/run_control.h"
#include "flash/file_programmer.h"
#include "flash/flash_operations.h"
#include "images/image.h"
#include "link/connector.h"
#include "load/target_bench.h"

namespace brevant::flash {

using load::ByteList;
using load::Texts;

struct Bench : load::TargetBench {
  explicit Bench(const simulator::Device& device = simulator::Gp32()) : TargetBench(device) {
    security.NoteConnected(CodeInFlash(), true);
    FollowUpReset();
  }

  bool Connect() {
    const link::SecurityCode code = CodeInFlash();
    if (!TargetBench::Connect()) return false;
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

  void ResetTarget() {
    ++resets;
    connector.ResetTarget();
    FollowUpReset();
  }

  base::EventLog events;
  link::SecurityKeeper security{settings};
  link::Connector connector{monitor, settings, security, user, [](const std::string&) {}};
  control::Activity activity{events};
  control::RunControl run{link, memory, frame, breakpoints, activity, debug_info, settings, events};
  FlashSurroundings surroundings{memory,   link,       frame,
                                 activity, debug_info, settings,
                                 user,     security,   [this] { ResetTarget(); }};
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

}  // namespace brevant::flash
