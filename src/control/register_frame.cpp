// SPDX-License-Identifier: MIT
#include "control/register_frame.h"

#include <algorithm>
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
constexpr int kFrameBytes = 6;
constexpr Address kMonitorStack = 8;
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
  const Address base = memory_.ReadStackPointer();
  std::array<std::uint8_t, kFrameBytes> frame{};
  memory_.AskChecked(frame, base);
  if (memory_.LinkError()) return false;
  SP = base;
  if (!StackIsRam()) {
    ++generation_;
    return true;
  }
  CCR = frame[kCCR];
  HX = base::Word(frame[kH], frame[kX]);
  A = frame[kA];
  PC = base::Word(frame[kPC], frame[kPC + 1]);
  ++generation_;
  return true;
}

RegisterFrame::StackInUse RegisterFrame::stack_in_use() const {
  return {SP - std::min(SP, kMonitorStack), ProgramSP()};
}

bool RegisterFrame::IsRam(Address base) const {
  for (Address i = 0; i < kFrameBytes; ++i) {
    if (memory_.KindOf(base + i) != devices::MemoryKind::Ram) return false;
  }
  return true;
}

void RegisterFrame::SetPC(Address value) {
  PC = Low16(value);
  WriteProgramCounter(PC);
  ++generation_;
}

void RegisterFrame::WriteProgramCounter(Address value) {
  memory_.WriteByte(Low16(SP + kPC), HighByte(value));
  memory_.WriteByte(Low16(SP + kPC + 1), LowByte(value));
}

Address RegisterFrame::ReadFramePC() {
  std::array<std::uint8_t, 2> pc{};
  memory_.AskChecked(pc, SP + kPC);
  return base::Word(pc[0], pc[1]);
}

void RegisterFrame::WriteHX(std::uint32_t value) {
  HX = Low16(value);
  ++generation_;
  memory_.WriteByte(Low16(SP + kH), HighByte(HX));
  memory_.WriteByte(Low16(SP + kX), LowByte(HX));
}

void RegisterFrame::WriteA(std::uint32_t value) {
  A = LowByte(value);
  ++generation_;
  memory_.WriteByte(Low16(SP + kA), A);
}

void RegisterFrame::WriteCCR(std::uint32_t value) {
  CCR = LowByte(value);
  ++generation_;
  memory_.WriteByte(Low16(SP + kCCR), CCR);
}

bool RegisterFrame::SetStackPointer(Address value) {
  if (!IsRam(Low16(value - kProgramSP))) return false;
  std::array<std::uint8_t, kBorrowedBytes> saved{};
  memory_.AskChecked(saved, kBorrowedRam);
  const Address operand = Low16(value + 1);
  // LDHX #value+1; TXS; SWI
  const std::array<std::uint8_t, 5> program{0x45, HighByte(operand), LowByte(operand), 0x94, 0x83};
  memory_.WriteBytes(kBorrowedRam, program);
  WriteProgramCounter(kBorrowedRam);
  // What the SWI stacks is all that the program writes.
  memory_.RunTarget(std::array{memory::Range{Low16(value - kProgramSP), kFrameBytes}});
  if (memory_.LinkError()) return false;

  bool stopped = false;
  for (int i = 0; i < kStackPointerPolls && !stopped; ++i) {
    stopped = link_.PollBreak() == 0;
    if (!stopped) link_.WaitMs(1);
  }
  if (!stopped) {
    // The break byte alone may have been lost. A target that is not in its monitor does not answer
    // this; that is no failure of the link, and a reset must still get through.
    memory_.ReadStackPointer();
    if (memory_.LinkError()) {
      link_.LinkError = false;
      return false;
    }
  }

  memory_.WriteBytes(kBorrowedRam, saved);
  memory_.WriteWord(Low16(SP + kPC), PC);
  const Address base = memory_.ReadStackPointer();
  if (memory_.LinkError()) return false;
  SP = base;
  ++generation_;
  const std::array<std::uint8_t, kFrameBytes> registers{HighByte(HX), LowByte(CCR), LowByte(A),
                                                        LowByte(HX),  HighByte(PC), LowByte(PC)};
  memory_.WriteBytes(SP, registers);
  return !memory_.LinkError() && SP == Low16(value - kProgramSP);
}

void RegisterFrame::LoadResetPC() {
  const Address base = memory_.ReadStackPointer();
  const std::uint32_t vector = memory_.ReadWord(devices::kResetVector);
  if (memory_.LinkError()) return;
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
  const Address base = memory_.ReadStackPointer();
  const std::uint8_t h = memory_.AskByte(base);
  std::array<std::uint8_t, 5> stacked{};  // CCR, A, X, PC
  memory_.AskChecked(stacked, base + kInterrupted);
  if (memory_.LinkError()) return Recovery::Failed;
  const std::uint8_t ccr = stacked[0];
  // No CPU stacks anything else: the two unused bits are ones, and an interrupt is only taken while
  // I is clear.
  if ((ccr & (kCcrUnused | kCcrI)) != kCcrUnused) return Recovery::StoppedByItself;
  SP = base;
  CCR = ccr;
  A = stacked[1];
  HX = base::Word(h, stacked[2]);
  PC = base::Word(stacked[3], stacked[4]);
  ++generation_;
  return SetStackPointer(Low16(SP + kInterruptedSP)) ? Recovery::Interrupted : Recovery::Failed;
}

}  // namespace brevant::control
