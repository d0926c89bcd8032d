// SPDX-License-Identifier: MIT
#include "simulator/board.h"

#include <algorithm>

namespace brevant::simulator {

namespace {

// The oscillator runs at twice the bus rate. A power-on reset holds the MCU for 4096 + 32 of its
// cycles, any other for 32; the monitor then needs 256 bus cycles before it samples the line.
constexpr Cycles kMonitorStart = 256;
constexpr Cycles kPowerOnHeld = (4096 + 32) / 2 + kMonitorStart;
constexpr Cycles kResetHeld = 32 / 2 + kMonitorStart;

// IRQ status and control: bit 2 written as 1 forgets a latched edge; bits 1 and 0 are settings.
constexpr base::Address kIrqControl = 0x001D;

}  // namespace

Board::Board(const Device& device, int cycles_per_bit) : mcu_(device), wire_(cycles_per_bit) {}

Mcu& Board::mcu() {
  if (effect_at_ && monitor_.reply_bytes() == 0) Execute();
  return mcu_;
}

void Board::Load(base::Address address, base::Bytes bytes) {
  for (const std::uint8_t byte : bytes) mcu_.Poke(base::Low16(address++), byte);
}

Cycles Board::NextWireEvent() const {
  return std::min(wire_.NextEvent(), effect_at_.value_or(Wire::kNever));
}

void Board::SetPower(bool on) {
  if (on == powered_) return;
  if (on) {
    PowerUp();
    return;
  }
  powered_ = running_ = heard_ = false;
  effect_at_.reset();
  wire_.SilenceMcu();
}

void Board::PowerUp() {
  powered_ = true;
  mcu_.PowerOnReset();
  EnterReset(kPowerOnHeld);
}

void Board::EnterReset(Cycles held_for) {
  running_ = heard_ = false;
  effect_at_.reset();
  wire_.SilenceMcu();
  monitor_.Reset(mcu_.reset_cause());
  listens_from_ = now_ + held_for;
}

bool Board::Listening() const {
  return powered_ && !running_ && now_ >= listens_from_ && host_baud_ == 9600;
}

void Board::Advance(Cycles until, bool until_arrival) {
  const std::uint64_t arrived = wire_.received_count();
  for (;;) {
    const Cycles due = NextWireEvent();
    const Cycles target = std::min(due, until);
    if (RunProgram(target)) continue;
    now_ = std::max(now_, target);
    if (due > until) return;
    if (effect_at_ && *effect_at_ <= due) {
      Execute();
    } else {
      React(wire_.Step());
    }
    if (until_arrival && (wire_.received_count() != arrived || wire_.cut())) return;
  }
}

bool Board::RunProgram(Cycles until) {
  if (mcu_.cycle() >= until) return false;
  if (!running_) {
    mcu_.AdvanceTo(until);
    return false;
  }
  const RunEnd end = mcu_.Run(until);
  if (end == RunEnd::CycleLimit) return false;
  now_ = std::max(now_, mcu_.cycle());
  if (end == RunEnd::Reset) {
    EnterReset(kResetHeld);
  } else {
    running_ = false;
    monitor_.Enter();
    wire_.SendFromMcu(McuByte::Break, 0, now_);
  }
  return true;
}

void Board::React(const WireEvent& event) {
  using Kind = WireEvent::Kind;
  switch (event.kind) {
    case Kind::HostByteStarts:
      if (effect_at_) Execute();
      heard_ = Listening();
      break;
    case Kind::HostByteEnds:
      if (!heard_) break;
      after_echo_ = monitor_.Take(mcu_, event.byte);
      wire_.SendFromMcu(McuByte::Echo, event.byte, now_ + wire_.Bits(kEchoGapBits));
      break;
    case Kind::McuByteEnds:
      if (event.what == McuByte::Echo) EchoEnded();
      break;
    case Kind::BreakStarts:
      BreakStarted();
      break;
    case Kind::BreakEnds:
      BreakEnded(event.long_enough);
      break;
    case Kind::PowerGlitch:
      if (powered_) PowerUp();
      break;
    case Kind::Other:
      break;
  }
}

void Board::EchoEnded() {
  switch (after_echo_) {
    case MonitorRom::Taken::More:
      break;
    case MonitorRom::Taken::Command:
      effect_at_ = now_ + wire_.Bits(kCancelWindowBits);
      wire_.HoldHost(monitor_.reply_bytes() > 0);
      break;
    case MonitorRom::Taken::SecurityDone:
      wire_.SendFromMcu(McuByte::Break, 0, now_ + wire_.Bits(kReplyGapBits));
      break;
  }
  after_echo_ = MonitorRom::Taken::More;
}

void Board::Execute() {
  effect_at_.reset();
  const MonitorRom::Reply reply = monitor_.Execute(mcu_);
  wire_.HoldHost(false);
  for (std::size_t i = 0; i < reply.count; ++i) {
    wire_.SendFromMcu(McuByte::Data, reply.bytes.at(i), now_ + wire_.Bits(kReplyGapBits));
  }
  running_ = !mcu_.in_monitor();
}

void Board::BreakStarted() {
  mcu_.SetIrqLow(true);
  heard_ = Listening();
  if (!heard_) return;
  effect_at_.reset();
  after_echo_ = MonitorRom::Taken::More;
  monitor_.Abandon();
  wire_.SilenceMcu();
}

void Board::BreakEnded(bool long_enough) {
  mcu_.SetIrqLow(false);
  if (!heard_) return;
  // The monitor has dealt with it: the next RUN must not take it for a new interrupt.
  const std::uint8_t settings = mcu_.Peek(kIrqControl) & 0x03u;
  mcu_.Write(kIrqControl, static_cast<std::uint8_t>(settings | 0x04u));
  if (long_enough) wire_.SendFromMcu(McuByte::Break, 0, now_ + wire_.Bits(kBreakGapBits));
}

}  // namespace brevant::simulator
