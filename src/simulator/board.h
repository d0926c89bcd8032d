// SPDX-License-Identifier: MIT
// The whole board: MCU, monitor program and the single wire to the host, driven by a count of bus
// cycles. RTS switches its power; a break held by the host pulls the IRQ pin low. A value: a copy
// is a snapshot that goes on by itself.
//
// Time passes only in RunUntil and RunUntilArrival. What the host does takes effect at now().
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/address.h"
#include "simulator/fault_plan.h"
#include "simulator/mcu.h"
#include "simulator/monitor_rom.h"
#include "simulator/wire.h"

namespace brevant::simulator {

class Board {
 public:
  // Without power at first. cycles_per_bit 0 makes the wire instant.
  explicit Board(const Device& device, int cycles_per_bit = kCyclesPerBit);

  // Looking inside ends the cancel window of a WRITE, IWRITE or RUN, as the host's next byte does:
  // its effect is there to see.
  Mcu& mcu();
  const Mcu& mcu() const { return mcu_; }
  const Device& device() const { return mcu_.device(); }
  // Puts bytes into flash, ROM or RAM, past every protection. RAM is lost at the next power-up.
  void Load(base::Address address, base::Bytes bytes);

  Cycles now() const { return now_; }
  void RunUntil(Cycles until) { Advance(until, false); }
  // Stops early when a byte has reached the host or the line has been cut.
  void RunUntilArrival(Cycles deadline) { Advance(deadline, true); }
  // When something is next due on the wire. A running program may bring it forward.
  Cycles NextWireEvent() const;
  // The CPU executes a program: the monitor does not listen.
  bool running() const { return running_; }

  // Switching on is a power-on reset.
  void SetPower(bool on);
  bool powered() const { return powered_; }
  void SetHostBreak(bool on) { wire_.SetHostBreak(on, now_); }
  // At any other rate than 9600 the MCU understands nothing.
  void SetHostBaud(int baud) { host_baud_ = baud; }
  void SendFromHost(std::uint8_t byte) { wire_.SendFromHost(byte, now_); }
  // Takes what has reached the host.
  std::size_t TakeReceived(std::span<std::uint8_t> buffer) { return wire_.TakeReceived(buffer); }
  std::size_t received() const { return wire_.received(); }

  void SetFaultPlan(FaultPlan plan) { wire_.Install(std::move(plan)); }
  bool line_cut() const { return wire_.cut(); }

  // Every byte the host has sent since it was last cleared.
  const std::vector<std::uint8_t>& host_log() const { return wire_.host_log(); }
  void ClearHostLog() { wire_.ClearHostLog(); }

 private:
  void Advance(Cycles until, bool until_arrival);
  // True when the program ended in the monitor or a reset, at now().
  bool RunProgram(Cycles until);
  void React(const WireEvent& event);
  void PowerUp();
  void EnterReset(Cycles held_for);
  bool Listening() const;
  void EchoEnded();
  void BreakStarted();
  void BreakEnded(bool long_enough);
  // Carries out the command whose cancel window has ended.
  void Execute();

  Mcu mcu_;
  MonitorRom monitor_;
  Wire wire_;
  Cycles now_ = 0;
  Cycles listens_from_ = 0;  // the reset sequence lasts until then
  bool powered_ = false;
  bool running_ = false;
  bool heard_ = false;  // the monitor listened when the present host byte or break began
  int host_baud_ = 9600;
  MonitorRom::Taken after_echo_ = MonitorRom::Taken::More;
  std::optional<Cycles> effect_at_;
};

}  // namespace brevant::simulator
