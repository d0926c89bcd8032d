// SPDX-License-Identifier: MIT
#include "frames/stack_depth.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "base/function_ref.h"
#include "isa/flow.h"
#include "isa/step_effects.h"

namespace brevant::frames {
namespace {

using base::Address;

constexpr Address kLongestInstruction = 4;
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

// Follows a function's code from its first instruction, and keeps what the stack is like at each.
// The lowest address is always looked at next: ways mostly lead upwards, so code behind pc is
// seldom read where only the depth is asked for.
class CodeSearch {
 public:
  CodeSearch(memory::Memory& memory, const symbols::Function& function)
      : memory_(memory), function_(function) {
    Reach(function.first, {});
  }

  std::optional<int> DepthAt(Address pc) {
    // Nothing that lies before pc is left then.
    Search([&] { return *to_do_.begin() >= pc && states_.contains(pc); });
    const auto found = states_.find(pc);
    if (conflict_ || found == states_.end() || memory_.LinkError()) return std::nullopt;
    return found->second.depth;
  }

  StackWrites WritesBefore(Address pc) {
    Search([] { return false; });
    StackWrites before;
    before.may_be_all = conflict_ || memory_.LinkError() || x_differs_;
    std::set<Address> seen{pc};
    for (std::vector<Address> back{pc}; !back.empty();) {
      const Address at = back.back();
      back.pop_back();
      for (const Address from : came_from_[at]) {
        const StackWrites& own = writes_[from];
        before.places.insert(own.places.begin(), own.places.end());
        before.may_be_all = before.may_be_all || own.may_be_all;
        if (seen.insert(from).second) back.push_back(from);
      }
    }
    return before;
  }

 private:
  struct State {
    int depth = 0;
    std::optional<int> x = {};  // the place that H:X points at, where it does
    bool operator==(const State&) const = default;
  };

  void Search(base::FunctionRef<bool()> enough) {
    while (!to_do_.empty() && !conflict_ && !memory_.LinkError() && !enough()) {
      const Address next = *to_do_.begin();
      to_do_.erase(to_do_.begin());
      Follow(InstructionAt(next), states_.at(next));
    }
  }

  void Reach(Address address, const State& state) {
    if (address < function_.first || address > function_.last) return;
    const auto [known, is_new] = states_.try_emplace(address, state);
    if (is_new) to_do_.insert(address);
    if (known->second.depth != state.depth) conflict_ = true;
    if (known->second.x != state.x) x_differs_ = true;
  }

  void NoteWrites(const isa::Instruction& instruction, const State& state) {
    StackWrites& writes = writes_[instruction.address];
    const isa::StepRegisters registers{
        .sp = kEntrySp - static_cast<Address>(state.depth),
        .hx = state.x ? kEntrySp + static_cast<Address>(*state.x) : 0};
    const isa::StepEffects effects = isa::PredictEffects(registers, instruction);
    for (int i = 0; i < effects.count; ++i) {
      const int place = static_cast<int>(effects.first) - static_cast<int>(kEntrySp) + i;
      if (std::abs(place) < kMostDistance) writes.places.insert(place);
    }
    writes.may_be_all = state.x && IsOneOf(instruction.entry().mnemonic(), kHandOnX);
  }

  static std::optional<int> XAfter(const isa::Instruction& instruction, const State& state) {
    const int mnemonic = instruction.entry().mnemonic();
    if (mnemonic == Mnemonic("TSX")) return 1 - state.depth;
    if (!state.x) return std::nullopt;
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
    const auto lead_to = [&](Address address) {
      came_from_[address].push_back(instruction.address);
      Reach(address, after);
    };
    if (goes_on) lead_to(instruction.end());
    if (!flow.target) return;
    if (flow.kind != isa::FlowKind::Call) {
      lead_to(*flow.target);
    } else if (*flow.target != function_.first) {
      // How SDCC calls through a pointer: a call of the next lines, which push the function's
      // address and return to it.
      after.depth += static_cast<int>(isa::kReturnBytes);
      lead_to(*flow.target);
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
  std::map<Address, StackWrites> writes_;              // of each instruction
  std::map<Address, std::vector<Address>> came_from_;  // instructions that lead there
  bool conflict_ = false;                              // of depths
  bool x_differs_ = false;                             // two ways do not agree on where H:X points
};

}  // namespace

bool StackWrites::MayHold(int first, int count) const {
  if (may_be_all) return true;
  const auto found = places.lower_bound(first);
  return found != places.end() && *found < first + count;
}

std::optional<int> StackDepth(memory::Memory& memory, const symbols::Function& function,
                              Address pc) {
  return CodeSearch(memory, function).DepthAt(pc);
}

StackWrites StackWritesBefore(memory::Memory& memory, const symbols::Function& function,
                              Address pc) {
  return CodeSearch(memory, function).WritesBefore(pc);
}

}  // namespace brevant::frames
