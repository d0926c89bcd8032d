// SPDX-License-Identifier: MIT
// The link and the monitor's operations on a simulated board.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/monitor.h"
#include "link/security_code.h"
#include "link/sent_commands.h"
#include "simulator/simulated_target.h"

namespace brevant::link {

using ByteList = std::vector<std::uint8_t>;

struct ConnectedTarget {
  explicit ConnectedTarget(const simulator::Device& device = simulator::Gp32()) : target(device) {
    link.PortName = "COM1";
    EXPECT_TRUE(Connect());
  }

  // As the user would: opens the port anew and enters the code that fits.
  bool Connect() {
    target.SetFaultPlan({});
    link.LinkError = false;
    return link.OpenPort(link.PortName) && monitor.SendSecurityCode(CodeInFlash()) == 0 &&
           !link.LinkError;
  }
  SecurityCode CodeInFlash() {
    SecurityCode code{};
    for (base::Address i = 0; i < code.size(); ++i) code[i] = Peek(0xFFF6 + i);
    return code;
  }
  simulator::Mcu& mcu() { return target.board().mcu(); }
  std::uint8_t Peek(base::Address address) { return mcu().Peek(address); }
  void Load(base::Address address, const ByteList& bytes) { target.board().Load(address, bytes); }
  // Runs the program from RAM: its address goes into the frame at $00FA.
  void Start(base::Address address) {
    Load(0x00FE, {base::HighByte(address), base::LowByte(address)});
    monitor.RunTarget();
  }
  // Everything the host has sent since the last call, as bytes or as text.
  ByteList TakeSent() {
    ByteList sent = target.board().host_log();
    target.board().ClearHostLog();
    return sent;
  }
  std::string Commands() { return DecodeCommands(TakeSent()); }

  simulator::SimulatedTarget target;
  MonitorLink link{target, target};
  Monitor monitor{link};
};

}  // namespace brevant::link
