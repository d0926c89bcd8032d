// SPDX-License-Identifier: MIT
// The single wire between the host and the MCU's monitor pin: what is on it at which bus cycle,
// what the host receives of it, and what goes wrong on it. Knows nothing of the MCU: the board
// steps the wire from event to event and says what the MCU does about each. A plain value.
//
// Every host byte comes back to the host as its own copy. A host byte that is sent early waits, as
// in a UART, until the line is free: one bit time after an echo, at once after data.
#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "simulator/fault_injector.h"

namespace brevant::simulator {

// Bus cycles since the board was made.
using Cycles = std::uint64_t;

inline constexpr int kCyclesPerBit = 256;

// Times of the line, in bits.
inline constexpr int kByteBits = 10;          // start bit, eight data bits, stop bit
inline constexpr int kEchoGapBits = 2;        // from a byte's end to its echo
inline constexpr int kNextByteBits = 1;       // from an echo's end to the next host byte
inline constexpr int kCancelWindowBits = 11;  // from a command's last echo to its effect
inline constexpr int kReplyGapBits = 2;       // from a command's effect to its data
inline constexpr int kBreakGapBits = 2;       // from a break's end to its echo

enum class McuByte { Echo, Data, Break };

struct WireEvent {
  enum class Kind {
    HostByteStarts,  // byte
    HostByteEnds,    // byte as the MCU sees it
    McuByteEnds,     // what
    BreakStarts,
    BreakEnds,    // long_enough
    PowerGlitch,  // the MCU sees a power-on reset
    Other,
  };
  Kind kind = Kind::Other;
  std::uint8_t byte = 0;
  McuByte what = McuByte::Echo;
  bool long_enough = false;  // the break lasted at least as long as a byte
};

class Wire {
 public:
  static constexpr Cycles kNever = std::numeric_limits<Cycles>::max();

  // cycles_per_bit 0 makes a line on which everything is instant.
  explicit Wire(int cycles_per_bit) : cycles_per_bit_(cycles_per_bit) {}
  Cycles Bits(int bits) const {
    return static_cast<Cycles>(bits) * static_cast<Cycles>(cycles_per_bit_);
  }

  // The host's end.
  void SendFromHost(std::uint8_t byte, Cycles now);
  void SetHostBreak(bool on, Cycles now);
  std::size_t TakeReceived(std::span<std::uint8_t> buffer);
  std::size_t received() const { return received_.size(); }
  // Bytes that have reached the host so far, counted since the board was made.
  std::uint64_t received_count() const { return received_count_; }
  // Every byte the host has sent.
  const std::vector<std::uint8_t>& host_log() const { return host_log_; }
  void ClearHostLog() { host_log_.clear(); }

  // The MCU's end. Sends when the line is free, not before earliest.
  void SendFromMcu(McuByte what, std::uint8_t byte, Cycles earliest);
  // The MCU has lost power or was reset: what it was sending stops.
  void SilenceMcu();
  // While held, the next host byte waits: the monitor owes the host data.
  void HoldHost(bool hold) { host_held_ = hold; }

  // When something happens next on the wire; kNever when nothing is under way.
  Cycles NextEvent() const;
  // Carries out what is due at NextEvent.
  WireEvent Step();

  void Install(FaultPlan plan);
  bool cut() const { return cut_; }

 private:
  struct Sending {
    std::uint8_t byte = 0;
    Cycles ends = 0;
    McuByte what = McuByte::Echo;
  };
  struct Waiting {
    std::uint8_t byte = 0;
    Cycles earliest = 0;
    McuByte what = McuByte::Echo;
  };
  struct Due {
    Cycles at = kNever;
    WireEvent (Wire::*step)(Cycles at) = nullptr;
  };
  Due NextDue() const;
  bool LineTaken() const { return host_sending_ || mcu_sending_ || break_since_; }
  void Receive(std::uint8_t byte);

  WireEvent EndHostByte(Cycles at);
  WireEvent EndMcuByte(Cycles at);
  WireEvent LoopBreakBack(Cycles at);
  WireEvent EndBreak(Cycles at);
  WireEvent StartBreak(Cycles at);
  WireEvent StartMcuByte(Cycles at);
  WireEvent StartHostByte(Cycles at);

  int cycles_per_bit_;
  std::deque<Waiting> host_queue_;
  std::deque<Waiting> mcu_queue_;
  std::optional<Sending> host_sending_;
  std::optional<Sending> mcu_sending_;
  Cycles line_free_ = 0;  // since when nothing is on the line
  Cycles host_free_ = 0;  // when the host may send its next byte
  bool host_held_ = false;

  std::optional<Cycles> break_wanted_;    // asked for, not yet on the line
  std::optional<Cycles> break_since_;     // on the line
  std::optional<Cycles> break_released_;  // let go of, not yet told
  bool break_looped_back_ = false;

  std::deque<std::uint8_t> received_;
  std::uint64_t received_count_ = 0;
  std::vector<std::uint8_t> host_log_;

  FaultInjector injector_;
  HostByteFaults faults_;  // of the host byte on the line, or of the last one
  bool cut_ = false;
};

}  // namespace brevant::simulator
