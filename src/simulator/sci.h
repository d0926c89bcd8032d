// SPDX-License-Identifier: MIT
// The transmitter of the serial communications interface (SCI): what a program prints, byte by byte
// at its baud rate, into a log. Nothing ever arrives at the receiver.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "simulator/timer.h"

namespace brevant::simulator {

class Sci {
 public:
  static constexpr int kRegisters = 7;  // SCC1-3, SCS1-2, SCDR, SCBR

  void Reset();
  std::uint8_t Read(int offset, std::uint64_t now);
  std::uint8_t Peek(int offset) const;
  // from_bus_clock: CONFIG2's SCIBDSRC; otherwise the baud rate comes from the crystal.
  void Write(int offset, std::uint8_t value, std::uint64_t now, bool from_bus_clock);

  void Advance(std::uint64_t now);
  std::uint64_t NextInterrupt() const;
  bool TransmitInterrupt() const;

  // Bytes whose stop bit is out; grows until ClearLog, over resets too.
  const std::vector<std::uint8_t>& log() const { return log_; }
  void ClearLog() { log_.clear(); }

  bool operator==(const Sci&) const = default;

 private:
  bool Enabled() const;
  std::uint8_t Status() const;
  void StartFrame(std::uint64_t now);

  std::array<std::uint8_t, 3> control_{};
  std::uint8_t baud_ = 0;
  bool from_bus_clock_ = false;
  bool buffer_full_ = false;
  bool shifting_ = false;
  std::uint8_t buffer_ = 0;
  std::uint8_t shifter_ = 0;
  std::uint64_t frame_end_ = 0;
  std::vector<std::uint8_t> log_;
};

}  // namespace brevant::simulator
