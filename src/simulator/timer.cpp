// SPDX-License-Identifier: MIT
#include "simulator/timer.h"

#include <algorithm>

namespace brevant::simulator {
namespace {

constexpr std::uint8_t kTof = 0x80, kToie = 0x40, kTstop = 0x20, kTrst = 0x10, kPrescale = 0x07;
constexpr std::uint8_t kChf = 0x80, kChie = 0x40, kCompareModes = 0x30;
constexpr int kExternalClock = 7;

enum Register { kTsc, kCntHigh, kCntLow, kModHigh, kModLow, kFirstChannel };
enum ChannelRegister { kControl, kCompareHigh, kCompareLow, kChannelRegisters };

constexpr std::uint8_t High(std::uint16_t value) {
  return static_cast<std::uint8_t>(value >> 8);
}
constexpr std::uint8_t Low(std::uint16_t value) {
  return static_cast<std::uint8_t>(value);
}
constexpr std::uint16_t WithHigh(std::uint16_t word, std::uint8_t high) {
  return static_cast<std::uint16_t>(high << 8 | (word & 0xFF));
}
constexpr std::uint16_t WithLow(std::uint16_t word, std::uint8_t low) {
  return static_cast<std::uint16_t>((word & 0xFF00) | low);
}

}  // namespace

void Timer::Reset(std::uint64_t now) {
  *this = Timer{};
  control_ = kTstop;
  counted_at_ = now;
}

bool Timer::Counting() const {
  return (control_ & kTstop) == 0 && (control_ & kPrescale) != kExternalClock;
}

bool Timer::Compares(const Channel& channel) const {
  return (channel.control & kCompareModes) != 0 && !channel.held;
}

std::uint32_t Timer::TicksUntilWrap() const {
  // A counter already past its modulo runs on to the end of its 16 bits.
  const std::uint32_t top = counter_ <= modulo_ ? modulo_ : 0xFFFF;
  return top + 1 - counter_;
}

std::uint32_t Timer::TicksUntil(std::uint16_t value) const {
  const std::uint32_t wrap = TicksUntilWrap();
  if (value > counter_ && value < counter_ + wrap) return value - std::uint32_t{counter_};
  return value <= modulo_ ? wrap + value : 0;
}

void Timer::SetChannelFlags(std::uint64_t ticks) {
  for (Channel& channel : channels_) {
    if (!Compares(channel)) continue;
    const std::uint32_t distance = TicksUntil(channel.compare);
    if (distance == 0 || distance > ticks) continue;
    channel.control |= kChf;
    channel.flag_seen = false;
  }
}

void Timer::Advance(std::uint64_t now) {
  if (!Counting()) {
    counted_at_ = now;
    return;
  }
  const int shift = control_ & kPrescale;
  const std::uint64_t ticks = (now - counted_at_) >> shift;
  if (ticks == 0) return;
  counted_at_ += ticks << shift;
  SetChannelFlags(ticks);
  const std::uint32_t wrap = TicksUntilWrap();
  if (ticks < wrap) {
    counter_ = static_cast<std::uint16_t>(counter_ + ticks);
    return;
  }
  counter_ = static_cast<std::uint16_t>((ticks - wrap) % (modulo_ + 1u));
  control_ |= kTof;
  overflow_seen_ = false;
}

std::uint64_t Timer::NextInterrupt() const {
  if (!Counting()) return kNever;
  std::uint64_t ticks = kNever;
  if ((control_ & (kToie | kTof)) == kToie) ticks = TicksUntilWrap();
  for (const Channel& channel : channels_) {
    if ((channel.control & (kChie | kChf)) != kChie || !Compares(channel)) continue;
    if (const std::uint32_t distance = TicksUntil(channel.compare); distance != 0) {
      ticks = std::min<std::uint64_t>(ticks, distance);
    }
  }
  return ticks == kNever ? kNever : counted_at_ + (ticks << (control_ & kPrescale));
}

bool Timer::OverflowInterrupt() const {
  return (control_ & (kTof | kToie)) == (kTof | kToie);
}

bool Timer::ChannelInterrupt(int channel) const {
  const std::uint8_t control = channels_[static_cast<std::size_t>(channel)].control;
  return (control & (kChf | kChie)) == (kChf | kChie);
}

std::uint8_t Timer::Peek(int offset) const {
  switch (offset) {
    case kTsc:
      return control_;
    case kCntHigh:
      return High(counter_);
    case kCntLow:
      return counter_latched_ ? counter_low_ : Low(counter_);
    case kModHigh:
      return modulo_high_;
    case kModLow:
      return Low(modulo_);
    default:
      break;
  }
  const auto index = static_cast<std::size_t>(offset - kFirstChannel);
  const Channel& channel = channels_[index / kChannelRegisters];
  switch (index % kChannelRegisters) {
    case kControl:
      return channel.control;
    case kCompareHigh:
      return High(channel.compare);
    default:
      return Low(channel.compare);
  }
}

std::uint8_t Timer::Read(int offset, std::uint64_t now, bool clears_flags) {
  Advance(now);
  const std::uint8_t value = Peek(offset);
  if (offset == kCntHigh) {
    counter_low_ = Low(counter_);
    counter_latched_ = true;
  } else if (offset == kCntLow) {
    counter_latched_ = false;
  } else if (clears_flags && offset == kTsc) {
    overflow_seen_ = (value & kTof) != 0;
  } else if (clears_flags && offset >= kFirstChannel &&
             (offset - kFirstChannel) % kChannelRegisters == kControl) {
    channels_[static_cast<std::size_t>(offset - kFirstChannel) / kChannelRegisters].flag_seen =
        (value & kChf) != 0;
  }
  return value;
}

void Timer::WriteControl(std::uint8_t value, std::uint64_t now, bool clears_flags) {
  const bool clear = clears_flags && overflow_seen_ && (value & kTof) == 0;
  const std::uint8_t flag = clear ? 0 : control_ & kTof;
  if (clear) overflow_seen_ = false;
  // Another rate begins with an empty prescaler.
  if (((control_ ^ value) & kPrescale) != 0) counted_at_ = now;
  control_ = static_cast<std::uint8_t>(flag | (value & (kToie | kTstop | kPrescale)));
  if ((value & kTrst) != 0) {
    counter_ = 0;
    counted_at_ = now;
  }
}

void Timer::WriteChannelControl(Channel& channel, std::uint8_t value, bool clears_flags) {
  const bool clear = clears_flags && channel.flag_seen && (value & kChf) == 0;
  const std::uint8_t flag = clear ? 0 : channel.control & kChf;
  if (clear) channel.flag_seen = false;
  channel.control = static_cast<std::uint8_t>(flag | (value & ~kChf));
}

void Timer::Write(int offset, std::uint8_t value, std::uint64_t now, bool clears_flags) {
  Advance(now);
  switch (offset) {
    case kTsc:
      WriteControl(value, now, clears_flags);
      return;
    case kCntHigh:
    case kCntLow:
      return;
    case kModHigh:
      modulo_high_ = value;
      return;
    case kModLow:
      modulo_ = static_cast<std::uint16_t>(modulo_high_ << 8 | value);
      return;
    default:
      break;
  }
  const auto index = static_cast<std::size_t>(offset - kFirstChannel);
  Channel& channel = channels_[index / kChannelRegisters];
  switch (index % kChannelRegisters) {
    case kControl:
      WriteChannelControl(channel, value, clears_flags);
      return;
    case kCompareHigh:
      channel.compare = WithHigh(channel.compare, value);
      channel.held = true;
      return;
    default:
      channel.compare = WithLow(channel.compare, value);
      channel.held = false;
  }
}

}  // namespace brevant::simulator
