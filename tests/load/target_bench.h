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
#include "base/test_user.h"
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
  memory::Memory memory{monitor};
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  base::TestUser user;
  symbols::DebugInfo debug_info;
  control::RegisterFrame frame{memory, link};
  control::BreakpointTable breakpoints{memory};
  StartAddress start;
};

}  // namespace brevant::load
