// SPDX-License-Identifier: MIT
// The ports as a front end has them: behind each stands a serial device of the computer or the
// simulated board, or a recording that is played back. Rests on the port map of the settings, the
// native port and the simulator.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/settings_file.h"
#include "link/port_router.h"
#include "link/replay_target.h"
#include "simulator/simulated_target.h"

namespace brevant::frontend {

struct SimulatedBoard {
  simulator::Pace pace = simulator::Pace::Instant;
  bool demo = false;  // its flash holds the demo program, which is one for the first device
  simulator::FaultPlan faults = {};  // of its line, counted from its first byte on
};

class TargetPorts {
 public:
  // Borrows the settings. between_transfers: see PortRouter.
  TargetPorts(const base::SettingsFile& settings, SimulatedBoard board,
              std::function<void()> between_transfers = {});

  // The port and clock of the engine.
  link::PortRouter& router() { return router_; }
  // The device behind the open port; empty when none is open.
  const std::string& device() const { return router_.device(); }
  bool is_simulated() const;
  // nullptr until it has been used. It lives as long as this object, so that connecting again finds
  // the same flash, and is a new one only when another device has been chosen.
  simulator::SimulatedTarget* simulated() const { return simulated_.get(); }

 private:
  link::PortBackend Backend(const std::string& device);
  link::PortBackend Replay(const std::string& device);
  void MakeBoard(int device);

  const base::SettingsFile& settings_;
  const SimulatedBoard board_;
  std::shared_ptr<simulator::SimulatedTarget> simulated_;
  int simulated_device_ = 0;
  // Goes on where it was when the port is opened again.
  std::shared_ptr<link::ReplayTarget> replay_;
  std::string replay_device_;
  link::PortRouter router_;
};

}  // namespace brevant::frontend
