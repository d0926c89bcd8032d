// SPDX-License-Identifier: MIT
#include "simulator/cpu.h"

#include <initializer_list>
#include <string_view>

#include "isa/instruction_table.h"
#include "simulator/always_inline.h"

namespace brevant::simulator {
namespace {

using alu::Byte;
using alu::Low;
using alu::Word;
using isa::Mode;

// The CPU while the loop runs: Cpu's registers plus the cycle count, never seen by anyone else.
struct Core {
  Bus& bus;
  std::uint64_t cycle;
  base::Address pc;     // of the next instruction once an operation runs
  base::Address start;  // of the present one
  Byte a, x, h;
  Word sp;
  Flags f;
  bool deferred;

  BREVANT_ALWAYS_INLINE Byte Code(unsigned offset) const { return bus.CodeByte(start + offset); }
  BREVANT_ALWAYS_INLINE Word CodeWord(unsigned offset) const {
    return static_cast<Word>(Code(offset) << 8 | Code(offset + 1));
  }
  BREVANT_ALWAYS_INLINE Word hx() const { return static_cast<Word>(h << 8 | x); }
  BREVANT_ALWAYS_INLINE void SetHx(unsigned value) {
    h = Low(value >> 8);
    x = Low(value);
  }
  BREVANT_ALWAYS_INLINE Byte Read(base::Address address) {
    bus.cycle = cycle;
    return bus.Read(address);
  }
  BREVANT_ALWAYS_INLINE void Write(base::Address address, Byte value) {
    bus.cycle = cycle;
    bus.Write(address, value);
  }
  BREVANT_ALWAYS_INLINE void Push(Byte value) { Write(sp--, value); }
  BREVANT_ALWAYS_INLINE Byte Pull() { return Read(++sp); }
  BREVANT_ALWAYS_INLINE void PushReturnAddress() {
    Push(Low(pc));
    Push(Low(pc >> 8));
  }
  BREVANT_ALWAYS_INLINE void PullReturnAddress() {
    const unsigned high = Pull();
    pc = high << 8 | Pull();
  }
  BREVANT_ALWAYS_INLINE void BranchIf(bool taken, Byte distance) {
    if (taken)
      pc = base::Low16(pc + static_cast<base::Address>(static_cast<std::int8_t>(distance)));
  }
  // When the mask falls, one more instruction goes before a pending interrupt.
  BREVANT_ALWAYS_INLINE void UnmaskAfter(bool was_masked) {
    if (was_masked && f.mask == 0) {
      deferred = true;
      bus.horizon = 0;
    }
  }
};

// One row of the instruction table as a type.
template <int kOpcode, bool kPaged>
struct Row {
  static constexpr isa::OpcodeRow kRow =
      kPaged ? isa::kOpcodeRows.page[isa::PageIndex(Byte{kOpcode}).value_or(0)]
             : isa::kOpcodeRows.main[kOpcode];
  static constexpr Byte kCode = kOpcode;
  static constexpr Mode kMode = kRow.mode;
  static constexpr std::string_view kName = kRow.mnemonic;
  static constexpr unsigned kCycles = kRow.cycles;
  static constexpr unsigned kLength = isa::kModeLengths[static_cast<std::size_t>(kMode)];
};

constexpr bool Named(std::string_view name, std::initializer_list<std::string_view> names) {
  for (std::string_view candidate : names) {
    if (name == candidate) return true;
  }
  return false;
}
constexpr bool Modifies(std::string_view name) {
  return Named(name, {"NEG", "COM", "LSR", "ROR", "ASR", "LSL", "ROL", "DEC", "INC", "TST", "CLR"});
}
constexpr bool Accumulates(std::string_view name) {
  return Named(
      name, {"SUB", "CMP", "SBC", "CPX", "AND", "BIT", "LDA", "EOR", "ADC", "ORA", "ADD", "LDX"});
}
constexpr bool Transfers(std::string_view name) {
  return Named(name, {"STA", "STX", "MOV", "LDHX", "STHX", "CPHX", "AIX", "AIS"});
}
constexpr bool TestsOrBranches(std::string_view name) {
  return Named(
      name, {"BSET", "BCLR", "BRSET", "BRCLR", "CBEQ", "CBEQA", "CBEQX", "DBNZ", "DBNZA", "DBNZX"});
}
constexpr bool Jumps(std::string_view name) {
  return Named(name, {"JMP", "JSR", "BSR", "RTS", "RTI"});
}
// NEGA is NEG of A, NEGX is NEG of X, and so on.
constexpr bool ModifiesRegister(std::string_view name) {
  return name.size() == 4 && (name[3] == 'A' || name[3] == 'X') && Modifies(name.substr(0, 3));
}

template <Mode kMode>
constexpr bool OneOf(std::initializer_list<Mode> modes) {
  for (Mode mode : modes) {
    if (mode == kMode) return true;
  }
  return false;
}

// The address of the memory operand, for every mode that has one.
template <Mode kMode>
BREVANT_ALWAYS_INLINE base::Address EffectiveAddress(Core& c) {
  using enum Mode;
  if constexpr (OneOf<kMode>({Direct, BitTestBranch, BitSetClear, CompareBranchDirect,
                              DecBranchDirect, MoveDirectDirect, MoveDirectPostInc})) {
    return c.Code(1);
  } else if constexpr (kMode == Extended) {
    return c.CodeWord(1);
  } else if constexpr (OneOf<kMode>({Indexed, CompareBranchIndexedPostInc, DecBranchIndexed,
                                     MovePostIncDirect})) {
    return c.hx();
  } else if constexpr (OneOf<kMode>({Indexed8, CompareBranchIndexed8PostInc, DecBranchIndexed8})) {
    return base::Low16(c.hx() + c.Code(1));
  } else if constexpr (kMode == Indexed16) {
    return base::Low16(static_cast<base::Address>(c.hx()) + c.CodeWord(1));
  } else if constexpr (OneOf<kMode>({Stack8, CompareBranchStack8, DecBranchStack8})) {
    return base::Low16(c.sp + c.Code(2));
  } else {
    static_assert(kMode == Stack16);
    return base::Low16(static_cast<base::Address>(c.sp) + c.CodeWord(2));
  }
}

template <Mode kMode>
BREVANT_ALWAYS_INLINE Byte Operand(Core& c) {
  if constexpr (OneOf<kMode>(
                    {Mode::Immediate, Mode::CompareBranchImmediate, Mode::MoveImmediateDirect})) {
    return c.Code(1);
  } else {
    return c.Read(EffectiveAddress<kMode>(c));
  }
}

template <Mode kMode>
BREVANT_ALWAYS_INLINE Word WordOperand(Core& c) {
  if constexpr (kMode == Mode::Immediate16) {
    return c.CodeWord(1);
  } else {
    const base::Address address = EffectiveAddress<kMode>(c);
    const unsigned high = c.Read(address);
    return static_cast<Word>(high << 8 | c.Read(base::Low16(address + 1)));
  }
}

// What the read-modify-write group makes of a byte.
template <typename R>
BREVANT_ALWAYS_INLINE Byte Modified(Flags& f, Byte m) {
  constexpr std::string_view kName = R::kName.substr(0, 3);
  if constexpr (kName == "NEG") {
    return alu::Negate(f, m);
  } else if constexpr (kName == "COM") {
    return alu::Complement(f, m);
  } else if constexpr (kName == "LSR") {
    return alu::ShiftRight(f, m, 0);
  } else if constexpr (kName == "ROR") {
    return alu::ShiftRight(f, m, f.carry);
  } else if constexpr (kName == "ASR") {
    return alu::ShiftRight(f, m, m >> 7);
  } else if constexpr (kName == "LSL") {
    return alu::ShiftLeft(f, m, 0);
  } else if constexpr (kName == "ROL") {
    return alu::ShiftLeft(f, m, f.carry);
  } else if constexpr (kName == "DEC") {
    return alu::Decrement(f, m);
  } else if constexpr (kName == "INC") {
    return alu::Increment(f, m);
  } else if constexpr (kName == "TST") {
    return alu::Logic(f, m);
  } else {
    static_assert(kName == "CLR");
    return alu::Logic(f, 0);
  }
}

template <typename R>
BREVANT_ALWAYS_INLINE void ModifyMemory(Core& c) {
  const base::Address address = EffectiveAddress<R::kMode>(c);
  // CLR does not look at what it clears, TST does not write back.
  constexpr bool kReads = R::kName != "CLR";
  const Byte after = Modified<R>(c.f, kReads ? c.Read(address) : Byte{0});
  if constexpr (R::kName != "TST") c.Write(address, after);
}

// A or X with a memory or immediate operand.
template <typename R>
BREVANT_ALWAYS_INLINE void Accumulate(Core& c) {
  constexpr std::string_view kName = R::kName;
  const Byte m = Operand<R::kMode>(c);
  if constexpr (kName == "SUB") c.a = alu::Subtract(c.f, c.a, m, 0);
  if constexpr (kName == "CMP") alu::Subtract(c.f, c.a, m, 0);
  if constexpr (kName == "SBC") c.a = alu::Subtract(c.f, c.a, m, c.f.carry);
  if constexpr (kName == "CPX") alu::Subtract(c.f, c.x, m, 0);
  if constexpr (kName == "AND") c.a = alu::Logic(c.f, c.a & m);
  if constexpr (kName == "BIT") alu::Logic(c.f, c.a & m);
  if constexpr (kName == "LDA") c.a = alu::Logic(c.f, m);
  if constexpr (kName == "EOR") c.a = alu::Logic(c.f, c.a ^ m);
  if constexpr (kName == "ADC") c.a = alu::Add(c.f, c.a, m, c.f.carry);
  if constexpr (kName == "ORA") c.a = alu::Logic(c.f, c.a | m);
  if constexpr (kName == "ADD") c.a = alu::Add(c.f, c.a, m, 0);
  if constexpr (kName == "LDX") c.x = alu::Logic(c.f, m);
}

// Stores, moves and the 16-bit operations.
template <typename R>
BREVANT_ALWAYS_INLINE void Transfer(Core& c) {
  constexpr std::string_view kName = R::kName;
  if constexpr (kName == "STA") {
    c.Write(EffectiveAddress<R::kMode>(c), alu::Logic(c.f, c.a));
  } else if constexpr (kName == "STX") {
    c.Write(EffectiveAddress<R::kMode>(c), alu::Logic(c.f, c.x));
  } else if constexpr (kName == "MOV") {
    const Byte m = alu::Logic(c.f, Operand<R::kMode>(c));
    if constexpr (R::kMode == Mode::MoveDirectPostInc) {
      c.Write(c.hx(), m);
    } else if constexpr (R::kMode == Mode::MovePostIncDirect) {
      c.Write(c.Code(1), m);
    } else {
      c.Write(c.Code(2), m);
    }
    if constexpr (OneOf<R::kMode>({Mode::MoveDirectPostInc, Mode::MovePostIncDirect})) {
      c.SetHx(c.hx() + 1u);
    }
  } else if constexpr (kName == "LDHX") {
    const Word value = WordOperand<R::kMode>(c);
    c.SetHx(value);
    alu::Logic16(c.f, value);
  } else if constexpr (kName == "STHX") {
    const base::Address address = EffectiveAddress<R::kMode>(c);
    alu::Logic16(c.f, c.hx());
    c.Write(address, c.h);
    c.Write(base::Low16(address + 1), c.x);
  } else if constexpr (kName == "CPHX") {
    alu::Compare16(c.f, c.hx(), WordOperand<R::kMode>(c));
  } else if constexpr (kName == "AIX") {
    c.SetHx(c.hx() + static_cast<unsigned>(static_cast<std::int8_t>(c.Code(1))));
  } else {
    static_assert(kName == "AIS");
    c.sp = static_cast<Word>(c.sp + static_cast<std::int8_t>(c.Code(1)));
  }
}

template <typename R>
BREVANT_ALWAYS_INLINE bool Condition(const Core& c) {
  constexpr std::string_view kName = R::kName;
  const Flags& f = c.f;
  if constexpr (kName == "BRN") {
    return false;
  } else if constexpr (kName == "BHI") {
    return !f.c() && !f.z();
  } else if constexpr (kName == "BLS") {
    return f.c() || f.z();
  } else if constexpr (kName == "BCC") {
    return !f.c();
  } else if constexpr (kName == "BCS") {
    return f.c();
  } else if constexpr (kName == "BNE") {
    return !f.z();
  } else if constexpr (kName == "BEQ") {
    return f.z();
  } else if constexpr (kName == "BHCC") {
    return f.half == 0;
  } else if constexpr (kName == "BHCS") {
    return f.half != 0;
  } else if constexpr (kName == "BPL") {
    return !f.n();
  } else if constexpr (kName == "BMI") {
    return f.n();
  } else if constexpr (kName == "BMC") {
    return f.mask == 0;
  } else if constexpr (kName == "BMS") {
    return f.mask != 0;
  } else if constexpr (kName == "BIL") {
    return c.bus.irq_low();
  } else if constexpr (kName == "BIH") {
    return !c.bus.irq_low();
  } else if constexpr (kName == "BGE") {
    return f.n() == f.v();
  } else if constexpr (kName == "BLT") {
    return f.n() != f.v();
  } else if constexpr (kName == "BGT") {
    return !f.z() && f.n() == f.v();
  } else if constexpr (kName == "BLE") {
    return f.z() || f.n() != f.v();
  } else {
    static_assert(kName == "BRA");
    return true;
  }
}

// Bit operations and everything that may branch on its operand.
template <typename R>
BREVANT_ALWAYS_INLINE void TestAndBranch(Core& c) {
  constexpr std::string_view kName = R::kName;
  constexpr Byte kBit = static_cast<Byte>(1u << ((R::kCode >> 1) & 7));
  constexpr unsigned kDistance = R::kLength - 1;  // the branch distance comes last
  if constexpr (Named(kName, {"BSET", "BCLR"})) {
    constexpr bool kSet = kName == "BSET";
    const base::Address address = EffectiveAddress<R::kMode>(c);
    const Byte m = c.Read(address);
    c.Write(address, Low(kSet ? m | kBit : m & ~kBit));
  } else if constexpr (Named(kName, {"BRSET", "BRCLR"})) {
    constexpr bool kIfSet = kName == "BRSET";
    c.f.carry = (Operand<R::kMode>(c) & kBit) != 0;
    c.BranchIf(c.f.c() == kIfSet, c.Code(kDistance));
  } else if constexpr (Named(kName, {"CBEQ", "CBEQA", "CBEQX"})) {
    const Byte m = Operand<R::kMode>(c);
    if constexpr (OneOf<R::kMode>(
                      {Mode::CompareBranchIndexedPostInc, Mode::CompareBranchIndexed8PostInc})) {
      c.SetHx(c.hx() + 1u);
    }
    constexpr bool kWithX = kName == "CBEQX";
    c.BranchIf(m == (kWithX ? c.x : c.a), c.Code(kDistance));
  } else if constexpr (kName == "DBNZ") {
    const base::Address address = EffectiveAddress<R::kMode>(c);
    const Byte m = Low(c.Read(address) - 1u);
    c.Write(address, m);
    c.BranchIf(m != 0, c.Code(kDistance));
  } else if constexpr (kName == "DBNZA") {
    c.BranchIf(--c.a != 0, c.Code(kDistance));
  } else {
    static_assert(kName == "DBNZX");
    c.BranchIf(--c.x != 0, c.Code(kDistance));
  }
}

template <typename R>
BREVANT_ALWAYS_INLINE void Jump(Core& c) {
  if constexpr (R::kName == "JMP") {
    c.pc = EffectiveAddress<R::kMode>(c);
  } else if constexpr (R::kName == "JSR") {
    const base::Address target = EffectiveAddress<R::kMode>(c);
    c.PushReturnAddress();
    c.pc = target;
  } else if constexpr (R::kName == "BSR") {
    c.PushReturnAddress();
    c.BranchIf(true, c.Code(1));
  } else if constexpr (R::kName == "RTS") {
    c.PullReturnAddress();
  } else {
    static_assert(R::kName == "RTI");
    const bool was_masked = c.f.mask != 0;
    c.f.Unpack(c.Pull());
    c.a = c.Pull();
    c.x = c.Pull();
    c.PullReturnAddress();
    c.UnmaskAfter(was_masked);
  }
}

// Operations on registers and the stack alone.
template <typename R>
BREVANT_ALWAYS_INLINE void Register(Core& c) {
  constexpr std::string_view kName = R::kName;
  const bool was_masked = c.f.mask != 0;
  if constexpr (ModifiesRegister(kName) && kName[3] == 'A') {
    c.a = Modified<R>(c.f, c.a);
  } else if constexpr (ModifiesRegister(kName)) {
    c.x = Modified<R>(c.f, c.x);
  } else if constexpr (kName == "CLRH") {
    c.h = alu::Logic(c.f, 0);
  } else if constexpr (kName == "MUL") {
    const unsigned product = static_cast<unsigned>(c.x) * c.a;
    c.x = Low(product >> 8);
    c.a = Low(product);
    c.f.carry = c.f.half = 0;
  } else if constexpr (kName == "DIV") {
    const alu::Quotient q = alu::Divide(c.f, c.h, c.a, c.x);
    c.a = q.quotient;
    c.h = q.remainder;
  } else if constexpr (kName == "NSA") {
    c.a = Low(c.a << 4 | c.a >> 4);
  } else if constexpr (kName == "DAA") {
    c.a = alu::DecimalAdjust(c.f, c.a);
  } else if constexpr (kName == "TAP") {
    c.f.Unpack(c.a);
    c.UnmaskAfter(was_masked);
  } else if constexpr (kName == "TPA") {
    c.a = c.f.Pack();
  } else if constexpr (kName == "PSHA") {
    c.Push(c.a);
  } else if constexpr (kName == "PSHX") {
    c.Push(c.x);
  } else if constexpr (kName == "PSHH") {
    c.Push(c.h);
  } else if constexpr (kName == "PULA") {
    c.a = c.Pull();
  } else if constexpr (kName == "PULX") {
    c.x = c.Pull();
  } else if constexpr (kName == "PULH") {
    c.h = c.Pull();
  } else if constexpr (kName == "TXS") {
    c.sp = static_cast<Word>(c.hx() - 1u);
  } else if constexpr (kName == "TSX") {
    c.SetHx(c.sp + 1u);
  } else if constexpr (kName == "TAX") {
    c.x = c.a;
  } else if constexpr (kName == "TXA") {
    c.a = c.x;
  } else if constexpr (kName == "CLC") {
    c.f.carry = 0;
  } else if constexpr (kName == "SEC") {
    c.f.carry = 1;
  } else if constexpr (kName == "CLI") {
    c.f.mask = 0;
    c.UnmaskAfter(was_masked);
  } else if constexpr (kName == "SEI") {
    c.f.mask = 1;
  } else if constexpr (kName == "RSP") {
    // Only the low byte: the high one keeps its value.
    c.sp = c.sp | 0x00FF;
  } else {
    static_assert(kName == "NOP");
  }
}

// One instruction. Exit::Horizon stands for "go on".
template <typename R>
BREVANT_ALWAYS_INLINE Exit Step(Core& c) {
  constexpr std::string_view kName = R::kName;
  c.cycle += R::kCycles;
  c.start = c.pc;
  c.pc = base::Low16(c.pc + R::kLength);
  if constexpr (kName == "SWI") {
    return Exit::SoftwareInterrupt;
  } else if constexpr (kName == "WAIT") {
    c.f.mask = 0;
    return Exit::Wait;
  } else if constexpr (kName == "STOP") {
    c.f.mask = 0;
    return Exit::Stop;
  } else if constexpr (R::kMode == Mode::Relative && kName != "BSR") {
    c.BranchIf(Condition<R>(c), c.Code(1));
  } else if constexpr (Modifies(kName)) {
    ModifyMemory<R>(c);
  } else if constexpr (Accumulates(kName)) {
    Accumulate<R>(c);
  } else if constexpr (Transfers(kName)) {
    Transfer<R>(c);
  } else if constexpr (TestsOrBranches(kName)) {
    TestAndBranch<R>(c);
  } else if constexpr (Jumps(kName)) {
    Jump<R>(c);
  } else {
    Register<R>(c);
  }
  return Exit::Horizon;
}

// Not an instruction: PC stays on it.
template <typename R>
requires(R::kMode == Mode::Illegal) BREVANT_ALWAYS_INLINE Exit Step(Core&) {
  return Exit::IllegalOpcode;
}

#define BREVANT_OPCODE(n, paged)                                                          \
  case (n):                                                                               \
    if (const Exit exit = Step<Row<(n), (paged)>>(c); exit != Exit::Horizon) return exit; \
    break;
// Row 9 of the main map has the page prefix in place of xE.
#define BREVANT_OPCODES_BUT_E(high, paged) \
  BREVANT_OPCODE(high##0, paged)           \
  BREVANT_OPCODE(high##1, paged)           \
  BREVANT_OPCODE(high##2, paged)           \
  BREVANT_OPCODE(high##3, paged)           \
  BREVANT_OPCODE(high##4, paged)           \
  BREVANT_OPCODE(high##5, paged)           \
  BREVANT_OPCODE(high##6, paged)           \
  BREVANT_OPCODE(high##7, paged)           \
  BREVANT_OPCODE(high##8, paged)           \
  BREVANT_OPCODE(high##9, paged)           \
  BREVANT_OPCODE(high##A, paged)           \
  BREVANT_OPCODE(high##B, paged)           \
  BREVANT_OPCODE(high##C, paged)           \
  BREVANT_OPCODE(high##D, paged)           \
  BREVANT_OPCODE(high##F, paged)
#define BREVANT_OPCODES(high, paged) \
  BREVANT_OPCODES_BUT_E(high, paged) \
  BREVANT_OPCODE(high##E, paged)

BREVANT_ALWAYS_INLINE Exit StepPaged(Core& c) {
  switch (c.bus.CodeByte(c.pc + 1)) {
    BREVANT_OPCODES(0x6, true)
    BREVANT_OPCODES(0xD, true)
    BREVANT_OPCODES(0xE, true)
    default:
      return Exit::IllegalOpcode;
  }
  return Exit::Horizon;
}

BREVANT_ALWAYS_INLINE Exit Loop(Core& c, base::Address watch) {
  while (c.cycle < c.bus.horizon) {
    if (watch - c.pc < 4) return Exit::NearBreak;
    if (!c.bus.Fetchable(c.pc)) return Exit::IllegalAddress;
    switch (c.bus.CodeByte(c.pc)) {
      BREVANT_OPCODES(0x0, false)
      BREVANT_OPCODES(0x1, false)
      BREVANT_OPCODES(0x2, false)
      BREVANT_OPCODES(0x3, false)
      BREVANT_OPCODES(0x4, false)
      BREVANT_OPCODES(0x5, false)
      BREVANT_OPCODES(0x6, false)
      BREVANT_OPCODES(0x7, false)
      BREVANT_OPCODES(0x8, false)
      BREVANT_OPCODES_BUT_E(0x9, false)
      case isa::kPagePrefix:
        if (const Exit exit = StepPaged(c); exit != Exit::Horizon) return exit;
        break;
        BREVANT_OPCODES(0xA, false)
        BREVANT_OPCODES(0xB, false)
        BREVANT_OPCODES(0xC, false)
        BREVANT_OPCODES(0xD, false)
        BREVANT_OPCODES(0xE, false)
        BREVANT_OPCODES(0xF, false)
    }
  }
  return Exit::Horizon;
}

#undef BREVANT_OPCODES
#undef BREVANT_OPCODES_BUT_E
#undef BREVANT_OPCODE

}  // namespace

void Cpu::Reset(std::uint16_t start) {
  *this = Cpu{};
  flags.Unpack(ccr::kI);
  pc = start;
}

Exit Cpu::Execute(Bus& bus, base::Address watch) {
  Core core{bus, bus.cycle, pc, pc, a, x, h, sp, flags, interrupts_deferred};
  const Exit exit = Loop(core, watch);
  bus.cycle = core.cycle;
  bus.horizon = 0;
  pc = static_cast<std::uint16_t>(core.pc);
  a = core.a;
  x = core.x;
  h = core.h;
  sp = core.sp;
  flags = core.f;
  interrupts_deferred = core.deferred;
  return exit;
}

void Cpu::StackForInterrupt(Bus& bus) {
  Push(bus, Low(pc));
  Push(bus, Low(pc >> 8));
  Push(bus, x);
  Push(bus, a);
  Push(bus, ccr());
  flags.mask = 1;
}

}  // namespace brevant::simulator
