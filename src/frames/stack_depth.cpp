// SPDX-License-Identifier: MIT
#include "frames/stack_depth.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "isa/flow.h"

namespace brevant::frames {
namespace {

using base::Address;

constexpr Address kLongestInstruction = 4;
constexpr int kReturnBytes = 2;
// Bytes fetched in one go: most functions and the ways through them are short.
constexpr Address kAhead = 32;

// The depths that are found, address by address. The lowest address is always looked at next: ways
// mostly lead upwards, so code behind pc is seldom read.
class DepthSearch {
 public:
  DepthSearch(memory::Memory& memory, const symbols::Function& function)
      : memory_(memory), function_(function) {
    Reach(function.first, 0);
  }

  std::optional<int> At(Address pc) {
    while (!to_do_.empty() && !conflict_ && !memory_.LinkError()) {
      const Address next = *to_do_.begin();
      // Nothing that lies before pc is left.
      if (next >= pc && depths_.contains(pc)) break;
      to_do_.erase(to_do_.begin());
      Follow(InstructionAt(next), depths_.at(next));
    }
    const auto found = depths_.find(pc);
    if (conflict_ || found == depths_.end() || memory_.LinkError()) return std::nullopt;
    return found->second;
  }

 private:
  void Reach(Address address, int depth) {
    if (address < function_.first || address > function_.last) return;
    const auto [known, is_new] = depths_.try_emplace(address, depth);
    if (is_new) to_do_.insert(address);
    if (known->second != depth) conflict_ = true;
  }

  void Follow(const isa::Instruction& instruction, int depth) {
    const isa::Flow flow = isa::FlowOf(instruction);
    const auto growth = isa::StackGrowth(instruction);
    if (!growth) return;
    const int after = depth + *growth;
    const bool goes_on = flow.kind != isa::FlowKind::Jump && flow.kind != isa::FlowKind::Illegal;
    if (goes_on) Reach(instruction.end(), after);
    if (!flow.target) return;
    if (flow.kind != isa::FlowKind::Call) {
      Reach(*flow.target, after);
    } else if (*flow.target != function_.first) {
      // How SDCC calls through a pointer: a call of the next lines, which push the function's
      // address and return to it.
      Reach(*flow.target, after + kReturnBytes);
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
  std::map<Address, int> depths_;
  std::set<Address> to_do_;
  bool conflict_ = false;
};

}  // namespace

std::optional<int> StackDepth(memory::Memory& memory, const symbols::Function& function,
                              Address pc) {
  return DepthSearch(memory, function).At(pc);
}

}  // namespace brevant::frames
