// SPDX-License-Identifier: MIT
// The host's copy of the stopped program's registers, which the monitor keeps on the target's
// stack: H, CCR, A, X, PC high, PC low from the frame base up. Valid only while the target is
// stopped.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "base/address.h"
#include "link/monitor_link.h"
#include "memory/memory.h"

namespace brevant::control {

// Bits of CCR. Bits 6 and 5 always read 1.
inline constexpr std::uint32_t kCcrV = 0x80, kCcrH = 0x10, kCcrI = 0x08, kCcrN = 0x04, kCcrZ = 0x02,
                               kCcrC = 0x01, kCcrUnused = 0x60;

enum class Register { PC, SP, HX, A, CcrHigh, CcrLow };

// How much of the stack to read after a stop.
enum class StackRead {
  Frame,            // what the monitor has stacked
  WithInterrupted,  // and what an interrupt that came before may have stacked above it
};

class RegisterFrame {
 public:
  RegisterFrame(memory::Memory& memory, link::MonitorLink& link) : memory_(memory), link_(link) {}

  // 16 bits each, except A and CCR (8). SP is the frame base that READSP answers; the program's own
  // stack pointer is SP + 5.
  base::Address PC = 0;
  base::Address SP = 0;
  std::uint32_t HX = 0;
  std::uint32_t A = 0;
  std::uint32_t CCR = 0;

  // Moves whenever the registers have been read or changed.
  long generation() const { return generation_; }

  // The stacked registers and what the monitor uses of the stack below them: who writes there loses
  // the link.
  struct StackInUse {
    base::Address first = 0, last = 0;
    bool Meets(base::Address from, base::Address to) const { return first <= to && last >= from; }
  };
  StackInUse stack_in_use() const { return StackAt(SP); }

  base::Address ProgramSP() const { return base::Low16(SP + 5); }

  // False when the link failed on the way; the registers known before are then kept. Where the
  // stack is no RAM, as with SDCC's own start-up code, only SP is taken.
  bool ReadRegisters(StackRead what = StackRead::Frame);
  // Asks once more for the registers that were read last, for who hands them on: no echo tells of a
  // bit that the line turns in an answer. Where they differ they are read anew. False when no two
  // answers agree, which is then in doubt, or the link failed.
  bool Confirm();
  // Whether the registers could be stacked at the SP that was read last. If not, PC, H:X, A and CCR
  // are those of the stop before.
  bool StackIsRam() const { return IsRam(SP); }
  // PC, here and in the frame.
  void SetPC(base::Address value);
  // Into the frame alone: where the next RUN goes, while PC keeps the program's place.
  void WriteProgramCounter(base::Address value);
  base::Address ReadFramePC();
  void WriteHX(std::uint32_t value);
  void WriteA(std::uint32_t value);
  // As a function returns an int: the high byte in X.
  void WriteXA(std::uint32_t value);
  void WriteCCR(std::uint32_t value);
  // Gives the stopped program a new stack pointer by running LDHX #value+1; TXS; SWI from RAM that
  // is borrowed at $0080-$0085, or further up where one of the two stacks lies there. False when a
  // frame there, or the present one, would not lie in RAM, and then nothing is done; or when that
  // program did not come back within 40 polls, and then the borrowed RAM and the frame are restored
  // provided that the monitor still answers.
  bool SetStackPointer(base::Address value);
  // Moves the stack to where it uses none of these bytes, unless it uses none anyway. False when
  // RAM has no such place, or SetStackPointer fails.
  bool MoveStackClearOf(std::span<const memory::Range> ranges);
  // Reads the frame base and sets PC from the reset vector. False when PC stays as it was, since
  // there is no vector or the link is lost.
  bool LoadResetPC();
  // Nothing where flash is erased, or no two answers agree.
  std::optional<base::Address> ReadResetVector();
  // One cell of the registers window as the user typed it. False when the text is not of the
  // register's form (hexadecimal, or binary for the two halves of CCR) and nothing was done, or
  // when the stack pointer could not be set.
  bool Edit(Register which, std::string_view text);
  // Whether the frame that was read last, WithInterrupted, can be that of a routine which a break
  // signal has called, with the interrupted program's registers above it.
  bool IsStopRoutine() const;
  // Takes those registers and discards the routine's frame. False as SetStackPointer.
  bool TakeInterrupted();

 private:
  static constexpr int kFrameBytes = 6;
  static constexpr int kInterruptedBytes = 5;  // CCR, A, X, PC
  // Where SetStackPointer's program can run.
  base::Address BorrowedRam(base::Address new_base) const;
  static StackInUse StackAt(base::Address base);
  // All bytes of a frame at this base.
  bool IsRam(base::Address base) const;

  memory::Memory& memory_;
  link::MonitorLink& link_;
  long generation_ = 0;
  std::array<std::uint8_t, kInterruptedBytes> interrupted_{};
};

}  // namespace brevant::control
