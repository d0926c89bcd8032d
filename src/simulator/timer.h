// SPDX-License-Identifier: MIT
// A timer interface module (TIM): a 16-bit counter with prescaler and modulo, and two output
// compare channels. It rests on nothing but a count of bus cycles that the owner passes in, so that
// the owner decides when its time stands still.
// Not modelled: input capture, the external clock (PS = 7 stops the counter), pins, and the
// buffering of PWM values (both channels compare on their own).
#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace brevant::simulator {

inline constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

class Timer {
 public:
  static constexpr int kRegisters = 11;  // TSC, CNT, MOD, then SC and CH of each channel

  void Reset(std::uint64_t now);
  // Registers by their offset from TSC. clears_flags: false in the break state, where looking at
  // registers must not disturb the flags.
  std::uint8_t Read(int offset, std::uint64_t now, bool clears_flags);
  std::uint8_t Peek(int offset) const;
  void Write(int offset, std::uint8_t value, std::uint64_t now, bool clears_flags);

  // Brings counter and flags up to now.
  void Advance(std::uint64_t now);
  // When the next flag with its interrupt enabled will be set; kNever if none will.
  std::uint64_t NextInterrupt() const;
  bool OverflowInterrupt() const;
  bool ChannelInterrupt(int channel) const;

  bool operator==(const Timer&) const = default;

 private:
  struct Channel {
    std::uint8_t control = 0;  // SC, CHF in bit 7
    std::uint16_t compare = 0;
    bool flag_seen = false;  // read while set: a write of 0 will clear it
    bool held = false;       // the high byte was written; compares wait for the low byte
    bool operator==(const Channel&) const = default;
  };
  bool Counting() const;
  bool Compares(const Channel& channel) const;
  // Ticks until the counter, having left its present value, equals value; 0 when it never will.
  std::uint32_t TicksUntil(std::uint16_t value) const;
  std::uint32_t TicksUntilWrap() const;
  void SetChannelFlags(std::uint64_t ticks);
  void WriteControl(std::uint8_t value, std::uint64_t now, bool clears_flags);
  void WriteChannelControl(Channel& channel, std::uint8_t value, bool clears_flags);

  std::uint8_t control_ = 0;  // TSC, TOF in bit 7; TRST reads 0
  bool overflow_seen_ = false;
  std::uint16_t counter_ = 0;
  std::uint16_t modulo_ = 0xFFFF;
  std::uint8_t modulo_high_ = 0xFF;  // as written; takes effect with the low byte
  std::uint8_t counter_low_ = 0;     // latched by a read of the high byte
  bool counter_latched_ = false;
  std::uint64_t counted_at_ = 0;  // when counter_ took its value
  std::array<Channel, 2> channels_{};
};

}  // namespace brevant::simulator
