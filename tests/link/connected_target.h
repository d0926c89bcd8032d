// SPDX-License-Identifier: MIT
// The link and the monitor's operations on a simulated board.
#pragma once

#include <vector>

#include "link/monitor.h"
#include "link/security_code.h"
#include "simulator/simulated_target.h"

namespace brevant::link {

using ByteList = std::vector<std::uint8_t>;

struct ConnectedTarget {
  ConnectedTarget() { Connect(); }

  // The board is erased, so the blank code fits.
  bool Connect() {
    link.LinkError = false;
    return link.OpenPort("COM1") && monitor.SendSecurityCode(kBlankSecurityCode) == 0 &&
           !link.LinkError;
  }
  void Load(base::Address address, const ByteList& bytes) { target.board().Load(address, bytes); }
  std::uint8_t Peek(base::Address address) { return target.board().mcu().Peek(address); }
  // Runs the program from RAM: its address goes into the frame at $00FA.
  void Start(base::Address address) {
    Load(0x00FE, {base::HighByte(address), base::LowByte(address)});
    monitor.RunTarget();
  }
  // Everything the host has sent since the last call.
  ByteList TakeSent() {
    ByteList sent = target.board().host_log();
    target.board().ClearHostLog();
    return sent;
  }

  simulator::SimulatedTarget target{simulator::Gp32()};
  MonitorLink link{target, target};
  Monitor monitor{link};
};

}  // namespace brevant::link
