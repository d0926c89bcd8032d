// SPDX-License-Identifier: MIT
// The simulated board as a serial port and a clock: host bytes go in, echoes and answers come out,
// and every effect happens in its own CPU, memory and flash.
//
// At the instant pace time is virtual: it passes only while the host waits (Read with a time-out,
// SpinUntil, Sleep), and costs what the CPU's work costs. At the wire pace it is the wall clock's.
// At the bus pace it is the wall clock's while a program runs; while the monitor has the CPU, what
// the host waits for is there at once.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/clock.h"
#include "base/serial_port.h"
#include "simulator/board.h"
#include "simulator/device.h"
#include "simulator/fault_plan.h"
#include "simulator/real_time.h"

namespace brevant::simulator {

enum class Pace {
  Instant,  // virtual time only; nothing ever sleeps
  Bus,      // programs run at bus speed against the wall clock, wire and monitor are instant
  Wire,     // the CPU and every byte take their real time
};

class SimulatedTarget final : public base::SerialPort, public base::Clock {
 public:
  explicit SimulatedTarget(const Device& device, Pace pace = Pace::Instant);

  // The board itself: a test or a loader may look at and change anything in it.
  Board& board() { return board_; }
  const Board& board() const { return board_; }
  // Counts from here; mends a cut line.
  void SetFaultPlan(FaultPlan plan) { board_.SetFaultPlan(std::move(plan)); }

  // Any name is this board. Opening raises RTS, so the board is without power until RTS falls.
  bool Open(const std::string& device) override;
  void Close() override;
  bool Configure(const base::LineSettings& settings) override;
  bool SetQueueSizes(int receive_bytes, int transmit_bytes) override;
  bool SetDtr(bool high) override;
  bool SetRts(bool high) override;
  bool SetBreak(bool on) override;
  bool Write(base::Bytes bytes) override;
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override;
  std::string LastError() const override { return error_; }

  std::int64_t NowMs() override;
  void SpinUntil(std::int64_t deadline_ms) override;
  void Sleep(std::chrono::milliseconds time) override;

 private:
  // Brings the board up to the wall clock before the host acts on it.
  void CatchUp();
  // Lets the wall clock come up to the board after the host has waited.
  void Settle(bool program_ran);
  Nanoseconds Now() const;
  void Pass(Nanoseconds time);
  // Whether the port can be used; says why not.
  bool Usable();

  Board board_;
  Pace pace_;
  RealTime real_time_;
  bool open_ = false;
  std::string error_;
};

}  // namespace brevant::simulator
