// SPDX-License-Identifier: MIT
// Run control on a simulated board.
#pragma once

#include <gmock/gmock.h>
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
#include "control/register_frame.h"
#include "control/run_control.h"
#include "link/connected_target.h"
#include "symbols/debug_info.h"

namespace brevant::control {

using ByteList = std::vector<std::uint8_t>;

struct Recorder final : Operation {
  void Advance() override { ++advanced; }
  void Abandon() override { ++abandoned; }
  int advanced = 0, abandoned = 0;
};

class Bench : public ::testing::Test, protected link::ConnectedTarget {
 protected:
  Bench() { EXPECT_TRUE(frame.ReadRegisters()); }

  void Connect() { ASSERT_TRUE(ConnectedTarget::Connect() && frame.ReadRegisters()); }

  // Past the door, which must not answer from what it has kept.
  void Load(base::Address address, base::Bytes bytes) {
    target.board().Load(address, bytes);
    memory.DropAll();
  }
  // Puts the program there and the PC to its start.
  void Program(base::Address address, const ByteList& bytes) {
    Load(address, bytes);
    SetPC(address);
  }
  void SetPC(base::Address address) { frame.SetPC(address); }
  void UseHardware(bool hardware) {
    breakpoints.SetBreakMode(hardware ? BreakMode::Hardware : BreakMode::Software);
  }
  // So that a break signal stops a program that has interrupts enabled.
  void PointIrqVectorToMonitor() { Load(0xFFFA, ByteList{0xFE, 0x27}); }

  // The timer wakes a WAIT after 213 ms; its handler at $0170 returns behind it.
  void WakeAfterALongTime() {
    Load(0xFFF2, ByteList{0x01, 0x70});
    Load(0x0170, ByteList{0xB6, 0x20, 0x1F, 0x20, 0x80});
    monitor.WriteByte(0x23, 0x1F);  // T1MOD $1FFF, bus clock / 64
    monitor.WriteByte(0x24, 0xFF);
    monitor.WriteByte(0x20, 0x46);
  }

  void Tick(int count = 1) {
    for (int i = 0; i < count; ++i) {
      target.Sleep(std::chrono::milliseconds(10));
      run.CompleteOnTimer();
    }
  }
  void TickUntilIdle() {
    for (int i = 0; i < 1000 && activity.Busy(); ++i) Tick();
    ASSERT_FALSE(activity.Busy());
  }
  memory::Memory memory{monitor};
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  symbols::DebugInfo debug_info;
  RegisterFrame frame{memory, link};
  BreakpointTable breakpoints{memory};
  base::EventLog events;
  base::TestUser user;
  Activity activity{events};
  RunControl run{link,     memory,     frame,  breakpoints,
                 activity, debug_info, events, [] { return std::nullopt; }};
};

}  // namespace brevant::control
