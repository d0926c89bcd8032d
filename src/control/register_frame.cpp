// SPDX-License-Identifier: MIT
#include "control/register_frame.h"

#include <array>

#include "base/text_number.h"
#include "devices/hc08.h"

namespace brevant::control {

namespace {

using base::Address;
using base::HighByte;
using base::Low16;
using base::LowByte;

// Offsets of the stacked bytes from the frame base.
constexpr Address kH = 0, kCCR = 1, kA = 2, kX = 3, kPC = 4;
// READSP answers one above the monitor's own stack pointer; five bytes of the frame lie above it.
constexpr Address kProgramSP = 5;
// When a break signal stops a program, its interrupt frame lies above the monitor's own frame.
constexpr Address kInterrupted = 6, kInterruptedSP = 10;

constexpr Address kBorrowedRam = 0x0080;
constexpr int kBorrowedBytes = 6;
constexpr int kStackPointerPolls = 40;
constexpr std::uint32_t kErasedWord = 0xFFFF;

}  // namespace

bool RegisterFrame::ReadRegisters() {
  const Address base = monitor_.ReadStackPointer();
  monitor_.ReadByte(Low16(base - 1));
  const std::uint32_t h_ccr = monitor_.ReadNext();
  const std::uint32_t a_x = monitor_.ReadNext();
  const std::uint32_t pc = monitor_.ReadNext();
  if (monitor_.LinkError()) return false;
  SP = base;
  CCR = LowByte(h_ccr);
  HX = base::Word(HighByte(h_ccr), LowByte(a_x));
  A = HighByte(a_x);
  PC = pc;
  ++generation_;
  return true;
}

void RegisterFrame::SetPC(Address value) {
  PC = Low16(value);
  WriteProgramCounter(PC);
  ++generation_;
}

void RegisterFrame::WriteProgramCounter(Address value) {
  monitor_.WriteByte(Low16(SP + kPC), HighByte(value));
  monitor_.WriteByte(Low16(SP + kPC + 1), LowByte(value));
}

Address RegisterFrame::ReadFramePC() {
  monitor_.ReadByte(Low16(SP + kPC - 1));
  return monitor_.ReadNext();
}

void RegisterFrame::WriteHX(std::uint32_t value) {
  HX = Low16(value);
  ++generation_;
  monitor_.WriteByte(Low16(SP + kH), HighByte(HX));
  monitor_.WriteByte(Low16(SP + kX), LowByte(HX));
}

void RegisterFrame::WriteA(std::uint32_t value) {
  A = LowByte(value);
  ++generation_;
  monitor_.WriteByte(Low16(SP + kA), A);
}

void RegisterFrame::WriteCCR(std::uint32_t value) {
  CCR = LowByte(value);
  ++generation_;
  monitor_.WriteByte(Low16(SP + kCCR), CCR);
}

bool RegisterFrame::SetStackPointer(Address value) {
  std::array<std::uint8_t, kBorrowedBytes> saved{};
  monitor_.ReadByte(kBorrowedRam - 1);
  for (int i = 0; i < kBorrowedBytes; i += 2) {
    const std::uint32_t word = monitor_.ReadNext();
    saved[i] = HighByte(word);
    saved[i + 1] = LowByte(word);
  }
  const Address operand = Low16(value + 1);
  // LDHX #value+1; TXS; SWI
  const std::array<std::uint8_t, 5> program{0x45, HighByte(operand), LowByte(operand), 0x94, 0x83};
  monitor_.WriteBlock(kBorrowedRam, program);
  WriteProgramCounter(kBorrowedRam);
  monitor_.RunTarget();
  if (monitor_.LinkError()) return false;

  bool stopped = false;
  for (int i = 0; i < kStackPointerPolls && !stopped; ++i) {
    stopped = monitor_.link().PollBreak() == 0;
    if (!stopped) monitor_.link().WaitMs(1);
  }
  if (!stopped) {
    // The break byte alone may have been lost. A target that is not in its monitor does not answer
    // this; that is no failure of the link, and a reset must still get through.
    monitor_.ReadStackPointer();
    if (monitor_.LinkError()) {
      monitor_.link().LinkError = false;
      return false;
    }
  }

  monitor_.WriteBlock(kBorrowedRam, saved);
  monitor_.WriteWord(Low16(SP + kPC), PC);
  const Address base = monitor_.ReadStackPointer();
  if (monitor_.LinkError()) return false;
  SP = base;
  ++generation_;
  const std::array<std::uint8_t, 6> registers{HighByte(HX), LowByte(CCR), LowByte(A),
                                              LowByte(HX),  HighByte(PC), LowByte(PC)};
  monitor_.WriteBlock(SP, registers);
  return !monitor_.LinkError() && SP == Low16(value - kProgramSP);
}

void RegisterFrame::LoadResetPC() {
  const Address base = monitor_.ReadStackPointer();
  const std::uint32_t vector = monitor_.ReadWord(devices::kResetVector);
  if (monitor_.LinkError()) return;
  SP = base;
  if (vector == kErasedWord) return;
  SetPC(vector);
}

bool RegisterFrame::Edit(Register which, std::string_view text) {
  const bool binary = which == Register::CcrHigh || which == Register::CcrLow;
  if (binary ? !base::IsBinaryField(text) : !base::IsHexField(text)) return false;
  const std::uint32_t value = binary ? base::ParseBinary(text) : base::ParseHex(text);
  switch (which) {
    case Register::PC:
      SetPC(value);
      return true;
    case Register::SP:
      return SetStackPointer(Low16(value));
    case Register::HX:
      WriteHX(value);
      return true;
    case Register::A:
      WriteA(value);
      return true;
    case Register::CcrHigh:
      WriteCCR((value << 4) + (CCR & 0x0F));
      return true;
    case Register::CcrLow:
      WriteCCR((value & 0x0F) + (CCR & 0xF0));
      return true;
  }
  return false;
}

Recovery RegisterFrame::RecoverInterrupted() {
  const Address base = monitor_.ReadStackPointer();
  const std::uint8_t h = monitor_.ReadByte(Low16(base));
  const std::uint8_t ccr = monitor_.ReadByte(Low16(base + kInterrupted));
  const std::uint32_t a_x = monitor_.ReadNext();
  const std::uint32_t pc = monitor_.ReadNext();
  if (monitor_.LinkError()) return Recovery::Failed;
  // No CPU stacks anything else: the two unused bits are ones, and an interrupt is only taken while
  // I is clear.
  if ((ccr & (kCcrUnused | kCcrI)) != kCcrUnused) return Recovery::StoppedByItself;
  SP = base;
  CCR = ccr;
  HX = base::Word(h, LowByte(a_x));
  A = HighByte(a_x);
  PC = pc;
  ++generation_;
  return SetStackPointer(Low16(SP + kInterruptedSP)) ? Recovery::Interrupted : Recovery::Failed;
}

}  // namespace brevant::control
