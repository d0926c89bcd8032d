// SPDX-License-Identifier: MIT
// A connected simulated board of either device, and a user who answers and may cancel.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "base/settings_file.h"
#include "base/temporary_folder.h"
#include "base/test_user.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "control/target_crc.h"
#include "link/connected_target.h"
#include "load/start_address.h"
#include "symbols/debug_info.h"

namespace brevant::load {

using ByteList = std::vector<std::uint8_t>;
using Texts = std::vector<std::string>;

struct TargetBench : link::ConnectedTarget {
  explicit TargetBench(const simulator::Device& device = simulator::Gp32())
      : ConnectedTarget(device) {
    // Written past the settings file, which would wait for the disk each time.
    Write("brevant.ini", "[config]\nHC08Devices=" + std::to_string(&device == &simulator::Ql()) +
                             "\nFEEPfilename=" + (folder.path() / "image.s19").string() + "\n");
    EXPECT_TRUE(frame.ReadRegisters());
  }

  bool Connect() { return ConnectedTarget::Connect() && frame.ReadRegisters(); }
  std::string Write(const std::string& name, const std::string& text) {
    const std::string path = (folder.path() / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  memory::Memory memory{monitor};
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
  base::TestUser user;
  symbols::DebugInfo debug_info;
  control::RegisterFrame frame{memory, link};
  control::TargetCrc crc{memory, link, frame};
  control::BreakpointTable breakpoints{memory};
  StartAddress start;
};

}  // namespace brevant::load
