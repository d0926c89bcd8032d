// SPDX-License-Identifier: MIT
#include "simulator/sci.h"

namespace brevant::simulator {
namespace {

enum Register { kScc1, kScc2, kScc3, kScs1, kScs2, kScdr, kScbr };

constexpr std::uint8_t kEnable = 0x40, kNineBits = 0x10;                    // SCC1
constexpr std::uint8_t kBufferInterrupt = 0x80, kCompleteInterrupt = 0x40;  // SCC2
constexpr std::uint8_t kTransmitterOn = 0x08;                               // SCC2
constexpr std::uint8_t kBufferEmpty = 0x80, kComplete = 0x40;               // SCS1
constexpr std::array<std::uint8_t, 4> kPrescalers{1, 3, 4, 13};

}  // namespace

void Sci::Reset() {
  std::vector<std::uint8_t> log = std::move(log_);
  *this = Sci{};
  log_ = std::move(log);
}

bool Sci::Enabled() const {
  return (control_[kScc1] & kEnable) != 0 && (control_[kScc2] & kTransmitterOn) != 0;
}

std::uint8_t Sci::Status() const {
  return static_cast<std::uint8_t>((buffer_full_ ? 0 : kBufferEmpty) |
                                   (buffer_full_ || shifting_ ? 0 : kComplete));
}

void Sci::StartFrame(std::uint64_t now) {
  // A bit is 64 * PD * BD periods of the SCI clock; the crystal runs at twice the bus clock.
  const std::uint64_t divisor = std::uint64_t{kPrescalers[(baud_ >> 4) & 3]} << (baud_ & 7);
  const std::uint64_t bit = (from_bus_clock_ ? 64 : 32) * divisor;
  frame_end_ = now + bit * ((control_[kScc1] & kNineBits) != 0 ? 11 : 10);
  shifter_ = buffer_;
  shifting_ = true;
  buffer_full_ = false;
}

void Sci::Advance(std::uint64_t now) {
  while (shifting_ && now >= frame_end_) {
    log_.push_back(shifter_);
    shifting_ = false;
    if (buffer_full_) StartFrame(frame_end_);
  }
}

std::uint64_t Sci::NextInterrupt() const {
  const bool wanted = (control_[kScc2] & (kBufferInterrupt | kCompleteInterrupt)) != 0;
  return wanted && shifting_ ? frame_end_ : kNever;
}

bool Sci::TransmitInterrupt() const {
  return Enabled() && (control_[kScc2] & Status() & (kBufferEmpty | kComplete)) != 0;
}

std::uint8_t Sci::Peek(int offset) const {
  switch (offset) {
    case kScs1:
      return Status();
    case kScs2:
    case kScdr:
      return 0;
    case kScbr:
      return baud_;
    default:
      return control_[static_cast<std::size_t>(offset)];
  }
}

std::uint8_t Sci::Read(int offset, std::uint64_t now) {
  Advance(now);
  return Peek(offset);
}

void Sci::Write(int offset, std::uint8_t value, std::uint64_t now, bool from_bus_clock) {
  Advance(now);
  from_bus_clock_ = from_bus_clock;
  switch (offset) {
    case kScs1:
    case kScs2:
      return;
    case kScdr:
      if (!Enabled()) return;
      buffer_ = value;
      buffer_full_ = true;
      if (!shifting_) StartFrame(now);
      return;
    case kScbr:
      baud_ = value & 0x37;
      return;
    default:
      control_[static_cast<std::size_t>(offset)] = value;
  }
}

}  // namespace brevant::simulator
