// SPDX-License-Identifier: MIT
#include "simulator/monitor_rom.h"

namespace brevant::simulator {

using base::Address;
using base::HighByte;
using base::Low16;
using base::LowByte;

namespace {

// Where the pointer stands after anything but READ, WRITE, IREAD and IWRITE. The ROM's is left over
// from other work; a host that relied on it would be wrong, so this one points at nothing useful.
constexpr Address kLostPointer = 0xFE0E;

}  // namespace

struct MonitorRom::Command {
  std::uint8_t code;
  std::size_t length;  // bytes from the host, code included
  std::size_t replies;
  Reply (MonitorRom::*execute)(Mcu& mcu);
};

std::span<const MonitorRom::Command> MonitorRom::Commands() {
  static constexpr Command kCommands[] = {
      {0x4A, 3, 1, &MonitorRom::ReadByte},         {0x49, 4, 0, &MonitorRom::WriteByte},
      {0x1A, 1, 2, &MonitorRom::ReadNext},         {0x19, 2, 0, &MonitorRom::WriteNext},
      {0x0C, 1, 2, &MonitorRom::ReadStackPointer}, {0x28, 1, 0, &MonitorRom::Run},
  };
  return kCommands;
}

const MonitorRom::Command* MonitorRom::Find(std::uint8_t code) {
  for (const Command& command : Commands()) {
    if (command.code == code) return &command;
  }
  return nullptr;
}

void MonitorRom::Reset(ResetCause cause) {
  compare_ = cause == ResetCause::PowerOn;
  Enter();
  security_left_ = kSecurityBytes;
  match_ = true;
}

void MonitorRom::Enter() {
  security_left_ = 0;
  frame_size_ = 0;
  pointer_ = kLostPointer;
}

void MonitorRom::Abandon() {
  frame_size_ = 0;
  if (security_left_ > 0) {
    security_left_ = kSecurityBytes;
    match_ = true;
  }
}

MonitorRom::Taken MonitorRom::Take(Mcu& mcu, std::uint8_t byte) {
  if (security_left_ > 0) return TakeSecurityByte(mcu, byte);
  if (frame_size_ == 0) {
    UseStack(mcu);
    if (Find(byte) == nullptr) return Taken::More;
  }
  frame_[frame_size_++] = byte;
  return frame_size_ == Find(frame_[0])->length ? Taken::Command : Taken::More;
}

MonitorRom::Taken MonitorRom::TakeSecurityByte(Mcu& mcu, std::uint8_t byte) {
  const auto index = static_cast<Address>(kSecurityBytes - security_left_);
  if (byte != mcu.Peek(kSecurityAddress + index)) match_ = false;
  if (--security_left_ > 0) return Taken::More;
  FinishSecurity(mcu);
  return Taken::SecurityDone;
}

void MonitorRom::FinishSecurity(Mcu& mcu) {
  if (compare_) mcu.SetSecurityPassed(match_);
  for (const Address flag : mcu.device().security_flags) {
    mcu.Poke(flag, mcu.security_passed() ? 0x40 : 0x00);
  }
  mcu.EnterMonitor();
}

// Only RAM is overwritten: a stack pointer that points elsewhere must not set registers by
// accident.
void MonitorRom::UseStack(Mcu& mcu) {
  for (Address below = 0; below < kStackUsed; ++below) {
    const Address address = Low16(mcu.cpu().sp - below);
    garbage_ = static_cast<std::uint8_t>(garbage_ * 5u + 0x3Bu);
    if (mcu.device().ram.Contains(address)) mcu.Poke(address, garbage_);
  }
}

std::size_t MonitorRom::reply_bytes() const {
  const Command* command = frame_size_ > 0 ? Find(frame_[0]) : nullptr;
  return command != nullptr ? command->replies : 0;
}

MonitorRom::Reply MonitorRom::Execute(Mcu& mcu) {
  const Command* command = Find(frame_[0]);
  frame_size_ = 0;
  return command != nullptr ? (this->*command->execute)(mcu) : Reply{};
}

MonitorRom::Reply MonitorRom::ReadByte(Mcu& mcu) {
  pointer_ = NamedAddress();
  return {{mcu.Read(pointer_)}, 1};
}

MonitorRom::Reply MonitorRom::WriteByte(Mcu& mcu) {
  pointer_ = NamedAddress();
  mcu.Write(pointer_, frame_[3]);
  return {};
}

MonitorRom::Reply MonitorRom::ReadNext(Mcu& mcu) {
  const std::uint8_t first = mcu.Read(Low16(pointer_ + 1));
  pointer_ = Low16(pointer_ + 2);
  return {{first, mcu.Read(pointer_)}, 2};
}

MonitorRom::Reply MonitorRom::WriteNext(Mcu& mcu) {
  pointer_ = Low16(pointer_ + 1);
  mcu.Write(pointer_, frame_[1]);
  return {};
}

MonitorRom::Reply MonitorRom::ReadStackPointer(Mcu& mcu) {
  pointer_ = kLostPointer;
  const Address base = Low16(mcu.cpu().sp + 1u);
  return {{HighByte(base), LowByte(base)}, 2};
}

MonitorRom::Reply MonitorRom::Run(Mcu& mcu) {
  pointer_ = kLostPointer;
  mcu.ResumeFromMonitor();
  return {};
}

}  // namespace brevant::simulator
