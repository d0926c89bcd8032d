// SPDX-License-Identifier: MIT
#include "control/line_code.h"

#include <map>
#include <set>

#include "isa/flow.h"

namespace brevant::control {
namespace {

using base::Address;
using isa::FlowKind;

// Instructions looked at of one line: more is a table or no code.
constexpr std::size_t kMostInstructions = 400;

bool IsIn(Address address, const memory::Range& range) {
  return address - range.first < range.count;
}

// Whether it is known where the instruction leads, and with what on the stack.
bool Decides(const isa::Instruction& instruction, const isa::Flow& flow, Enters enters) {
  if (flow.kind == FlowKind::Call) return enters(instruction);
  return flow.kind == FlowKind::Branch || !isa::StackGrowth(instruction) ||
         (flow.kind == FlowKind::Jump && !flow.target) || flow.kind == FlowKind::Illegal;
}

Address Next(const isa::Instruction& instruction, const isa::Flow& flow) {
  return flow.kind == FlowKind::Jump ? *flow.target : base::Low16(instruction.end());
}

std::optional<RunEnd> FindDecision(Address pc, const memory::Range& line, CodeAt code_at,
                                   Enters enters) {
  RunEnd at{pc, 0};
  std::set<Address> passed;
  while (IsIn(at.address, line) && passed.insert(at.address).second) {
    const isa::Instruction instruction = code_at(at.address);
    const isa::Flow flow = isa::FlowOf(instruction);
    if (Decides(instruction, flow, enters)) return at;
    at = {Next(instruction, flow), at.growth + *isa::StackGrowth(instruction)};
  }
  if (IsIn(at.address, line)) return std::nullopt;
  return at;
}

// Follows all ways through the line: the exit unless they lead to several places or do not tell,
// and whether there is none.
LineCode FindExit(Address pc, const memory::Range& line, CodeAt code_at, Enters enters) {
  std::map<Address, int> growths{{pc, 0}};
  std::set<Address> to_do{pc};
  std::optional<RunEnd> exit;
  while (!to_do.empty() && growths.size() <= kMostInstructions) {
    const Address at = *to_do.begin();
    to_do.erase(to_do.begin());
    const int growth = growths.at(at);
    if (!IsIn(at, line)) {
      if (exit) return {};
      exit = {at, growth};
      continue;
    }
    const isa::Instruction instruction = code_at(at);
    const isa::Flow flow = isa::FlowOf(instruction);
    const bool both = flow.kind == FlowKind::Branch;
    if (!both && Decides(instruction, flow, enters)) return {};
    const int after = growth + *isa::StackGrowth(instruction);
    const auto reach = [&](Address address) {
      const auto [known, is_new] = growths.try_emplace(address, after);
      if (is_new) to_do.insert(address);
      return known->second == after;
    };
    if (!reach(both ? base::Low16(instruction.end()) : Next(instruction, flow))) return {};
    if (both && !reach(*flow.target)) return {};
  }
  if (!to_do.empty()) return {};
  return {.exit = exit, .decision = {}, .endless = !exit};
}

}  // namespace

LineCode LookAtLine(Address pc, const memory::Range& line, CodeAt code_at, Enters enters) {
  LineCode code = FindExit(pc, line, code_at, enters);
  code.decision = FindDecision(pc, line, code_at, enters);
  return code;
}

}  // namespace brevant::control
