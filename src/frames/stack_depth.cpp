// SPDX-License-Identifier: MIT
#include "frames/stack_depth.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "isa/flow.h"
#include "isa/step_effects.h"

namespace brevant::frames {
namespace {

using base::Address;

constexpr Address kLongestInstruction = 4;
constexpr int kReturnBytes = 2;
// Bytes fetched in one go: most functions and the ways through them are short.
constexpr Address kAhead = 32;

// SP at the first instruction, so to speak: places are told by their distance from it.
constexpr Address kEntrySp = 0x8000;
constexpr int kMostDistance = 0x400;

constexpr int Mnemonic(std::string_view name) {
  return *isa::MnemonicIndex(name);
}
// What leaves something else in H:X.
constexpr std::array kChangeX{
    Mnemonic("LDX"),  Mnemonic("LDHX"), Mnemonic("TAX"),  Mnemonic("PULX"),  Mnemonic("PULH"),
    Mnemonic("CLRX"), Mnemonic("CLRH"), Mnemonic("MUL"),  Mnemonic("DIV"),   Mnemonic("INCX"),
    Mnemonic("DECX"), Mnemonic("NEGX"), Mnemonic("COMX"), Mnemonic("LSLX"),  Mnemonic("LSRX"),
    Mnemonic("ASRX"), Mnemonic("ROLX"), Mnemonic("RORX"), Mnemonic("DBNZX"), Mnemonic("MOV"),
    Mnemonic("CBEQ")};
// What hands its value on.
constexpr std::array kHandOnX{Mnemonic("STX"), Mnemonic("STHX"), Mnemonic("PSHX"), Mnemonic("PSHH"),
                              Mnemonic("TXA"), Mnemonic("JSR"),  Mnemonic("BSR")};

bool IsOneOf(int mnemonic, const auto& list) {
  return std::ranges::find(list, mnemonic) != list.end();
}

// The depths that are found, address by address. The lowest address is always looked at next: ways
// mostly lead upwards, so code behind pc is seldom read.
class DepthSearch {
 public:
  DepthSearch(memory::Memory& memory, const symbols::Function& function)
      : memory_(memory), function_(function) {
    Reach(function.first, {});
  }

  std::optional<StackUse> At(Address pc) {
    while (!to_do_.empty() && !conflict_ && !memory_.LinkError()) {
      const Address next = *to_do_.begin();
      // Nothing that lies before pc is left.
      if (next >= pc && states_.contains(pc)) break;
      to_do_.erase(to_do_.begin());
      Follow(InstructionAt(next), states_.at(next));
    }
    const auto found = states_.find(pc);
    if (conflict_ || found == states_.end() || memory_.LinkError()) return std::nullopt;
    use_.depth = found->second.depth;
    return use_;
  }

 private:
  struct State {
    int depth = 0;
    std::optional<int> x = {};  // the place that H:X points at, where it does
    bool operator==(const State&) const = default;
  };

  void Reach(Address address, const State& state) {
    if (address < function_.first || address > function_.last) return;
    const auto [known, is_new] = states_.try_emplace(address, state);
    if (is_new) to_do_.insert(address);
    if (known->second.depth != state.depth) conflict_ = true;
    if (known->second.x != state.x) use_.may_be_all = true;
  }

  void NoteWrites(const isa::Instruction& instruction, const State& state) {
    const isa::StepRegisters registers{
        .sp = kEntrySp - static_cast<Address>(state.depth),
        .hx = state.x ? kEntrySp + static_cast<Address>(*state.x) : 0};
    const isa::StepEffects effects = isa::PredictEffects(registers, instruction);
    for (int i = 0; i < effects.count; ++i) {
      const int place = static_cast<int>(effects.first) - static_cast<int>(kEntrySp) + i;
      if (std::abs(place) < kMostDistance) use_.written.insert(place);
    }
  }

  std::optional<int> XAfter(const isa::Instruction& instruction, const State& state) {
    const int mnemonic = instruction.entry().mnemonic();
    if (mnemonic == Mnemonic("TSX")) return 1 - state.depth;
    if (!state.x) return std::nullopt;
    if (IsOneOf(mnemonic, kHandOnX)) use_.may_be_all = true;
    const bool call = mnemonic == Mnemonic("JSR") || mnemonic == Mnemonic("BSR");
    if (call || IsOneOf(mnemonic, kChangeX)) return std::nullopt;
    if (mnemonic != Mnemonic("AIX")) return state.x;
    return *state.x + static_cast<std::int8_t>(instruction.bytes[1]);
  }

  void Follow(const isa::Instruction& instruction, const State& state) {
    const isa::Flow flow = isa::FlowOf(instruction);
    const auto growth = isa::StackGrowth(instruction);
    NoteWrites(instruction, state);
    if (!growth) return;
    State after{state.depth + *growth, XAfter(instruction, state)};
    const bool goes_on = flow.kind != isa::FlowKind::Jump && flow.kind != isa::FlowKind::Illegal;
    if (goes_on) Reach(instruction.end(), after);
    if (!flow.target) return;
    if (flow.kind != isa::FlowKind::Call) {
      Reach(*flow.target, after);
    } else if (*flow.target != function_.first) {
      // How SDCC calls through a pointer: a call of the next lines, which push the function's
      // address and return to it.
      after.depth += kReturnBytes;
      Reach(*flow.target, after);
    }
  }

  isa::Instruction InstructionAt(Address address) {
    const Address begin = address - function_.first;
    const Address size = function_.last + 1 - function_.first;
    const Address needed = std::min(begin + kLongestInstruction, size);
    if (needed > code_.size()) {
      const auto known = static_cast<Address>(code_.size());
      code_.resize(std::min(std::max(needed, known + kAhead), size));
      memory_.ReadBytes(std::span(code_).subspan(known), function_.first + known);
    }
    return isa::InstructionAt(address, base::Bytes(code_).subspan(begin));
  }

  memory::Memory& memory_;
  const symbols::Function& function_;
  std::vector<std::uint8_t> code_;  // from the function's first byte on
  std::map<Address, State> states_;
  std::set<Address> to_do_;
  bool conflict_ = false;
  StackUse use_;
};

}  // namespace

bool StackUse::MayBeWritten(int first, int count) const {
  if (may_be_all) return true;
  const auto found = written.lower_bound(first);
  return found != written.end() && *found < first + count;
}

std::optional<StackUse> StackUseAt(memory::Memory& memory, const symbols::Function& function,
                                   Address pc) {
  return DepthSearch(memory, function).At(pc);
}

std::optional<int> StackDepth(memory::Memory& memory, const symbols::Function& function,
                              Address pc) {
  const auto use = StackUseAt(memory, function, pc);
  return use ? std::optional(use->depth) : std::nullopt;
}

}  // namespace brevant::frames
