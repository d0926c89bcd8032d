// SPDX-License-Identifier: MIT
#include "isa/next_pc.h"

#include <optional>

#include "isa/instruction_table.h"

namespace brevant::isa {
namespace {

using base::Address;
using base::Low16;

// How an instruction chooses what comes next.
enum class Flow : std::uint8_t { FallThrough, Branch, BitTest, Compare, Count, Jump, Call, Return };

struct NamedFlow {
  std::string_view mnemonic;
  Flow flow;
};
constexpr NamedFlow kNamedFlows[] = {{"JMP", Flow::Jump},
                                     {"JSR", Flow::Call},
                                     {"BSR", Flow::Call},
                                     {"RTS", Flow::Return},
                                     {"RTI", Flow::Return}};

constexpr Flow FlowOf(Entry entry) {
  for (const NamedFlow& row : kNamedFlows) {
    if (MnemonicName(entry.mnemonic()) == row.mnemonic) return row.flow;
  }
  switch (entry.mode()) {
    case Mode::Relative:
      return Flow::Branch;
    case Mode::BitTestBranch:
      return Flow::BitTest;
    case Mode::CompareBranchDirect:
    case Mode::CompareBranchImmediate:
    case Mode::CompareBranchIndexed8PostInc:
    case Mode::CompareBranchIndexedPostInc:
    case Mode::CompareBranchStack8:
      return Flow::Compare;
    case Mode::DecBranchDirect:
    case Mode::DecBranchRegister:
    case Mode::DecBranchIndexed:
    case Mode::DecBranchIndexed8:
    case Mode::DecBranchStack8:
      return Flow::Count;
    default:
      return Flow::FallThrough;
  }
}

template <std::size_t N>
constexpr std::array<Flow, N> FlowsOf(const std::array<Entry, N>& map) {
  std::array<Flow, N> flows{};
  for (std::size_t i = 0; i < N; ++i) flows[i] = FlowOf(map[i]);
  return flows;
}
constexpr auto kMainFlows = FlowsOf(kMainMap);
constexpr auto kPageFlows = FlowsOf(kPageMap);

struct Flags {
  explicit constexpr Flags(std::uint32_t ccr)
      : v((ccr & 0x80) != 0),
        h((ccr & 0x10) != 0),
        i((ccr & 0x08) != 0),
        n((ccr & 0x04) != 0),
        z((ccr & 0x02) != 0),
        c((ccr & 0x01) != 0) {}
  bool v, h, i, n, z, c;
};

struct Condition {
  std::string_view mnemonic;
  bool (*holds)(Flags);
};
constexpr Condition kConditions[] = {
    {"BRA", [](Flags) { return true; }},
    {"BRN", [](Flags) { return false; }},
    {"BHI", [](Flags f) { return !f.c && !f.z; }},
    {"BLS", [](Flags f) { return f.c || f.z; }},
    {"BCC", [](Flags f) { return !f.c; }},
    {"BCS", [](Flags f) { return f.c; }},
    {"BNE", [](Flags f) { return !f.z; }},
    {"BEQ", [](Flags f) { return f.z; }},
    {"BHCC", [](Flags f) { return !f.h; }},
    {"BHCS", [](Flags f) { return f.h; }},
    {"BPL", [](Flags f) { return !f.n; }},
    {"BMI", [](Flags f) { return f.n; }},
    {"BMC", [](Flags f) { return !f.i; }},
    {"BMS", [](Flags f) { return f.i; }},
    // The monitor cannot tell the level of the IRQ pin: high unless the host holds the line.
    {"BIL", [](Flags) { return false; }},
    {"BIH", [](Flags) { return true; }},
    {"BGE", [](Flags f) { return f.n == f.v; }},
    {"BLT", [](Flags f) { return f.n != f.v; }},
    {"BGT", [](Flags f) { return !f.z && f.n == f.v; }},
    {"BLE", [](Flags f) { return f.z || f.n != f.v; }},
};

// The condition of each branch opcode, nullptr elsewhere.
constexpr auto kConditionOf = [] {
  std::array<const Condition*, 256> conditions{};
  for (const Condition& condition : kConditions) {
    const int mnemonic = MnemonicIndex(condition.mnemonic).value();
    for (std::size_t b0 = 0; b0 < 256; ++b0) {
      if (kMainMap[b0].mnemonic() == mnemonic) conditions[b0] = &condition;
    }
  }
  return conditions;
}();

constexpr bool EveryBranchHasACondition() {
  for (std::size_t b0 = 0; b0 < 256; ++b0) {
    if ((kMainFlows[b0] == Flow::Branch) != (kConditionOf[b0] != nullptr)) return false;
  }
  return true;
}
static_assert(EveryBranchHasACondition());

// One instruction with the registers it will meet.
class Step {
 public:
  Step(const StepRegisters& registers, const Instruction& instruction)
      : registers_(registers), instruction_(instruction), entry_(instruction.entry()) {
    const auto& bytes = instruction.bytes;
    const auto page = bytes[0] == kPagePrefix ? PageIndex(bytes[1]) : std::nullopt;
    flow_ = page ? kPageFlows[*page] : kMainFlows[bytes[0]];
  }

  Flow flow() const { return flow_; }
  Mode mode() const { return entry_.mode(); }
  bool IsUnconditionalBranch() const { return MnemonicName(entry_.mnemonic()) == "BRA"; }

  Address FallThrough() const { return Low16(instruction_.end()); }
  Address BranchTarget() const { return Low16(instruction_.BranchTarget()); }
  Address CallOrJumpTarget() const {
    return mode() == Mode::Relative ? BranchTarget() : OperandAddress(instruction_, registers_);
  }
  // RTI finds CCR, A and X above the stack pointer before the address, RTS the address alone.
  Address ReturnTarget(const TargetMemory& memory) const {
    const Address offset = MnemonicName(entry_.mnemonic()) == "RTI" ? 4 : 1;
    return Low16(memory.word(Low16(registers_.sp + offset)));
  }

  // For the flows that may branch.
  bool TakesBranch(const TargetMemory& memory) const {
    switch (flow_) {
      case Flow::Branch:
        return kConditionOf[instruction_.bytes[0]]->holds(Flags(registers_.ccr));
      case Flow::BitTest: {
        const bool is_set = (Operand(memory) >> (instruction_.bytes[0] >> 1 & 7) & 1) != 0;
        const bool branches_on_set = (instruction_.bytes[0] & 1) == 0;
        return is_set == branches_on_set;
      }
      case Flow::Compare:
        return Operand(memory) == (NamesX() ? X() : registers_.a & 0xFF);
      default:  // Flow::Count: the counter as it is before the decrement
        return Operand(memory) != 1;
    }
  }

 private:
  std::uint32_t X() const { return registers_.hx & 0xFF; }
  // CBEQX and DBNZX; their siblings without a memory operand work on the accumulator.
  bool NamesX() const { return MnemonicName(entry_.mnemonic()).ends_with('X'); }

  // What a compare, a count or a bit test looks at.
  std::uint32_t Operand(const TargetMemory& memory) const {
    if (mode() == Mode::CompareBranchImmediate) return instruction_.bytes[1];
    if (mode() == Mode::DecBranchRegister) return NamesX() ? X() : registers_.a & 0xFF;
    return memory.byte(OperandAddress(instruction_, registers_));
  }

  const StepRegisters& registers_;
  const Instruction& instruction_;
  Entry entry_;
  Flow flow_;
};

}  // namespace

Address PredictNextPC(const StepRegisters& registers, const Instruction& instruction, Calls calls,
                      const TargetMemory& memory) {
  const Step step(registers, instruction);
  switch (step.flow()) {
    case Flow::FallThrough:
      return step.FallThrough();
    case Flow::Jump:
      return step.CallOrJumpTarget();
    case Flow::Call:
      return calls == Calls::StepOver ? step.FallThrough() : step.CallOrJumpTarget();
    case Flow::Return:
      return step.ReturnTarget(memory);
    default:
      return step.TakesBranch(memory) ? step.BranchTarget() : step.FallThrough();
  }
}

BranchAnalysis AnalyseBranch(const StepRegisters& registers, const Instruction& instruction,
                             Calls calls, const TargetMemory& memory,
                             base::FunctionRef<bool(Address)> is_library_call) {
  const Step step(registers, instruction);
  switch (step.flow()) {
    case Flow::FallThrough:
      return {};
    case Flow::Jump:
      return {BranchKind::Jump, step.CallOrJumpTarget()};
    case Flow::Call: {
      if (calls == Calls::StepOver) return {};
      const Address target = step.CallOrJumpTarget();
      const bool indexed = step.mode() == Mode::Indexed || step.mode() == Mode::Indexed8 ||
                           step.mode() == Mode::Indexed16;
      const bool steps_over = indexed && is_library_call(target);
      return {steps_over ? BranchKind::None : BranchKind::Call, target};
    }
    case Flow::Return:
      return {BranchKind::Return, step.ReturnTarget(memory)};
    default:
      return {step.IsUnconditionalBranch() ? BranchKind::Jump : BranchKind::Conditional,
              step.BranchTarget()};
  }
}

}  // namespace brevant::isa
