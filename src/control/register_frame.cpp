// SPDX-License-Identifier: MIT
#include "control/register_frame.h"

#include <algorithm>

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
constexpr Address kMonitorStack = 8;
// READSP answers one above the monitor's own stack pointer; five bytes of the frame lie above it.
constexpr Address kProgramSP = 5;
// When a break signal stops a program, its interrupt frame lies above the monitor's own frame.
constexpr Address kInterruptedSP = 10;

constexpr Address kBorrowedRam = 0x0080;
constexpr int kBorrowedBytes = 6;
constexpr Address kBorrowedStep = 0x10;
constexpr int kStackPointerPolls = 40;
constexpr std::uint32_t kErasedWord = 0xFFFF;
// Of which two in a row have to agree: one that the line has altered may be any.
constexpr int kMostAnswers = 4;

// While registers are written: where the line alters a byte on its way, another register or any
// other byte may have been written instead. Then all are read, and are in doubt.
class LookAfterDamage {
 public:
  LookAfterDamage(RegisterFrame& frame, memory::Memory& memory)
      : frame_(frame), memory_(memory), before_(memory.damage()) {}
  LookAfterDamage(const LookAfterDamage&) = delete;
  LookAfterDamage& operator=(const LookAfterDamage&) = delete;
  ~LookAfterDamage() {
    if (memory_.damage() == before_) return;
    memory_.Doubt(frame_.SP);
    if (frame_.ReadRegisters()) frame_.Confirm();
  }

 private:
  RegisterFrame& frame_;
  memory::Memory& memory_;
  long before_;
};

}  // namespace

bool RegisterFrame::ReadRegisters(StackRead what) {
  Address base = memory_.ReadStackPointer();
  // No echo tells of a bit that the line turns in the answer.
  if (!IsRam(base)) base = memory_.ReadStackPointer();
  std::array<std::uint8_t, kFrameBytes + kInterruptedBytes> stack{};
  const auto frame = std::span(stack).first(
      what == StackRead::WithInterrupted ? stack.size() : std::size_t{kFrameBytes});
  memory_.AskChecked(frame, base);
  if (memory_.LinkError()) return false;
  std::copy_n(stack.begin() + kFrameBytes, kInterruptedBytes, interrupted_.begin());
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

bool RegisterFrame::Confirm() {
  const auto all = [this] { return std::array{std::uint32_t{PC}, std::uint32_t{SP}, HX, A, CCR}; };
  for (int answers = 1; answers < kMostAnswers; ++answers) {
    const auto before = all();
    if (!ReadRegisters()) return false;
    if (all() == before) return true;
  }
  memory_.Doubt(SP);
  return false;
}

RegisterFrame::StackInUse RegisterFrame::StackAt(Address base) {
  return {base - std::min(base, kMonitorStack), base + kProgramSP};
}

Address RegisterFrame::BorrowedRam(Address new_base) const {
  // A stack meets two of the places at most, so that the fifth is free at the latest.
  Address place = kBorrowedRam;
  const auto taken = [&] {
    const Address last = place + kBorrowedBytes - 1;
    return StackAt(SP).Meets(place, last) || StackAt(new_base).Meets(place, last);
  };
  while (taken()) place += kBorrowedStep;
  return place;
}

bool RegisterFrame::IsRam(Address base) const {
  for (Address i = 0; i < kFrameBytes; ++i) {
    if (memory_.KindOf(base + i) != devices::MemoryKind::Ram) return false;
  }
  return true;
}

void RegisterFrame::SetPC(Address value) {
  const LookAfterDamage look(*this, memory_);
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
  const LookAfterDamage look(*this, memory_);
  HX = Low16(value);
  ++generation_;
  memory_.WriteByte(Low16(SP + kH), HighByte(HX));
  memory_.WriteByte(Low16(SP + kX), LowByte(HX));
}

void RegisterFrame::WriteA(std::uint32_t value) {
  const LookAfterDamage look(*this, memory_);
  A = LowByte(value);
  ++generation_;
  memory_.WriteByte(Low16(SP + kA), A);
}

void RegisterFrame::WriteXA(std::uint32_t value) {
  HX = (HX & 0xFF00u) | HighByte(value);
  memory_.WriteByte(Low16(SP + kX), HighByte(value));
  WriteA(value);
}

void RegisterFrame::WriteCCR(std::uint32_t value) {
  const LookAfterDamage look(*this, memory_);
  CCR = LowByte(value);
  ++generation_;
  memory_.WriteByte(Low16(SP + kCCR), CCR);
}

bool RegisterFrame::SetStackPointer(Address value) {
  const Address new_base = Low16(value - kProgramSP);
  // Where no register could be stacked, RUN leads anywhere.
  if (!IsRam(new_base) || !StackIsRam()) return false;
  const Address borrowed = BorrowedRam(new_base);
  std::array<std::uint8_t, kBorrowedBytes> saved{};
  // It is put back.
  if (!memory_.AskConfirmed(saved, borrowed)) return false;
  const Address operand = Low16(value + 1);
  // LDHX #value+1; TXS; SWI
  const std::array<std::uint8_t, 5> program{0x45, HighByte(operand), LowByte(operand), 0x94, 0x83};
  memory_.WriteBytes(borrowed, program);
  WriteProgramCounter(borrowed);
  // What the SWI stacks is all that the program writes.
  memory_.RunTarget(std::array{memory::Range{new_base, kFrameBytes}});
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

  memory_.WriteBytes(borrowed, saved);
  memory_.WriteWord(Low16(SP + kPC), PC);
  const Address base = memory_.ReadStackPointer();
  if (memory_.LinkError()) return false;
  SP = base;
  ++generation_;
  const std::array<std::uint8_t, kFrameBytes> registers{HighByte(HX), LowByte(CCR), LowByte(A),
                                                        LowByte(HX),  HighByte(PC), LowByte(PC)};
  memory_.WriteBytes(SP, registers);
  return !memory_.LinkError() && SP == new_base;
}

bool RegisterFrame::MoveStackClearOf(std::span<const memory::Range> ranges) {
  const auto is_clear = [&](const StackInUse& stack) {
    return std::ranges::none_of(ranges, [&](const memory::Range& range) {
      return range.count > 0 && stack.Meets(range.first, range.first + range.count - 1);
    });
  };
  if (!StackIsRam() || is_clear(stack_in_use())) return true;
  for (const memory::Range& ram : memory_.Ram()) {
    for (Address sp = ram.first + ram.count - 1; sp >= ram.first + kMonitorStack + kProgramSP;
         --sp) {
      if (is_clear(StackAt(sp - kProgramSP))) return SetStackPointer(sp);
    }
  }
  return false;
}

bool RegisterFrame::LoadResetPC() {
  // SP says where PC is written to.
  if (!ReadRegisters() || !Confirm()) return false;
  const auto vector = ReadResetVector();
  if (vector) SetPC(*vector);
  return vector.has_value();
}

std::optional<Address> RegisterFrame::ReadResetVector() {
  std::array<std::uint8_t, 2> bytes{};
  if (!memory_.AskConfirmed(bytes, devices::kResetVector)) return std::nullopt;
  const Address vector = base::Word(bytes[0], bytes[1]);
  return vector == kErasedWord ? std::nullopt : std::optional(vector);
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

bool RegisterFrame::IsStopRoutine() const {
  // No CPU stacks anything else: the routine runs with interrupts masked, was called while they
  // were not, and the two unused bits are ones. What was interrupted was code.
  const std::uint8_t ccr = interrupted_[0];
  if ((CCR & kCcrI) == 0 || (ccr & (kCcrUnused | kCcrI)) != kCcrUnused) return false;
  const devices::MemoryKind kind = memory_.KindOf(base::Word(interrupted_[3], interrupted_[4]));
  return kind != devices::MemoryKind::Nothing && kind != devices::MemoryKind::Registers;
}

bool RegisterFrame::TakeInterrupted() {
  CCR = interrupted_[0];
  A = interrupted_[1];
  // An interrupt does not stack H, and the routine leaves it alone.
  HX = base::Word(HighByte(HX), interrupted_[2]);
  PC = base::Word(interrupted_[3], interrupted_[4]);
  ++generation_;
  return SetStackPointer(Low16(SP + kInterruptedSP));
}

}  // namespace brevant::control
