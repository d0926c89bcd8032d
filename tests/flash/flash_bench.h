// SPDX-License-Identifier: MIT
// A flash job on a connected board, with a timer, and a reset that follows up as the debugger does.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "base/event_log.h"
#include "base/text_format.h"
#include "control/run_control.h"
#include "flash/flash_commands.h"
#include "images/image.h"
#include "link/connector.h"
#include "load/target_bench.h"

namespace brevant::flash {

using load::ByteList;
using load::Texts;

struct Bench : load::TargetBench {
  explicit Bench(const simulator::Device& device = simulator::Gp32()) : TargetBench(device) {
    memory.UseDevice(devices::BySettingsNumber(settings.Integer(base::keys::kDevice)));
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
    for (int i = 0; i < 200 && flash.running(); ++i) Tick();
  }
  bool ProgramText(const std::string& text) {
    const std::string path = Write("image.s19", text);
    return EndsWell(ProgramFlashFile(flash, path));
  }
  // What was started comes to its end and says that it is done.
  bool EndsWell(bool started) {
    TickToEnd();
    return started && flash.status().outcome == FlashOutcome::Done;
  }
  // Every byte from the address on.
  bool Holds(base::Address address, const ByteList& bytes) {
    for (const std::uint8_t byte : bytes) {
      if (Peek(address++) != byte) return false;
    }
    return true;
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
  control::RunControl run{link,     memory,     frame,  breakpoints,
                          activity, debug_info, events, [] { return std::nullopt; }};
  FlashSurroundings surroundings{memory,   link,       frame,
                                 activity, debug_info, settings,
                                 user,     security,   [this] { ResetTarget(); }};
  FlashJob flash{surroundings};
  int resets = 0;
};

// An S1 record of a file.
inline std::string Record(base::Address address, const ByteList& data) {
  std::string text = base::Format("S1%02X%04X", data.size() + 3, address);
  std::size_t sum = data.size() + 3 + base::HighByte(address) + base::LowByte(address);
  for (const std::uint8_t byte : data) {
    text += base::Format("%02X", byte);
    sum += byte;
  }
  return text + base::Format("%02X\n", ~sum & 0xFFu);
}

inline const simulator::Device* const kDevices[] = {&simulator::Gp32(), &simulator::Ql()};

}  // namespace brevant::flash
