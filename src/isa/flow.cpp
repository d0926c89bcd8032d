// SPDX-License-Identifier: MIT
#include "isa/flow.h"

#include <algorithm>
#include <iterator>

#include "isa/operand_address.h"

namespace brevant::isa {
namespace {

constexpr int kJmp = *MnemonicIndex("JMP"), kJsr = *MnemonicIndex("JSR");
constexpr int kBsr = *MnemonicIndex("BSR"), kBra = *MnemonicIndex("BRA");
constexpr int kBrn = *MnemonicIndex("BRN");
constexpr int kRts = *MnemonicIndex("RTS"), kRti = *MnemonicIndex("RTI");
constexpr int kTxs = *MnemonicIndex("TXS"), kRsp = *MnemonicIndex("RSP");
constexpr int kAis = *MnemonicIndex("AIS");
constexpr int kPushes[] = {*MnemonicIndex("PSHA"), *MnemonicIndex("PSHH"), *MnemonicIndex("PSHX")};
constexpr int kPulls[] = {*MnemonicIndex("PULA"), *MnemonicIndex("PULH"), *MnemonicIndex("PULX")};

constexpr Mode kBranchModes[] = {Mode::BitTestBranch,
                                 Mode::CompareBranchDirect,
                                 Mode::CompareBranchImmediate,
                                 Mode::CompareBranchStack8,
                                 Mode::CompareBranchIndexed8PostInc,
                                 Mode::CompareBranchIndexedPostInc,
                                 Mode::DecBranchDirect,
                                 Mode::DecBranchRegister,
                                 Mode::DecBranchIndexed,
                                 Mode::DecBranchIndexed8,
                                 Mode::DecBranchStack8,
                                 Mode::Relative};

template <typename Range, typename Value>
bool Contains(const Range& range, Value value) {
  return std::ranges::find(range, value) != std::end(range);
}

// Of JMP and JSR.
std::optional<base::Address> FixedTarget(const Instruction& instruction) {
  const Mode mode = instruction.entry().mode();
  if (mode != Mode::Direct && mode != Mode::Extended) return std::nullopt;
  return OperandAddress(instruction, {});
}

}  // namespace

Flow FlowOf(const Instruction& instruction) {
  const Entry entry = instruction.entry();
  const int mnemonic = entry.mnemonic();
  if (entry.illegal()) return {FlowKind::Illegal};
  if (mnemonic == kRts || mnemonic == kRti) return {FlowKind::Return};
  if (mnemonic == kJmp) return {FlowKind::Jump, FixedTarget(instruction)};
  if (mnemonic == kJsr) return {FlowKind::Call, FixedTarget(instruction)};
  if (!Contains(kBranchModes, entry.mode()) || mnemonic == kBrn) return {FlowKind::Straight};
  const base::Address target = base::Low16(instruction.BranchTarget());
  if (mnemonic == kBsr) return {FlowKind::Call, target};
  return {mnemonic == kBra ? FlowKind::Jump : FlowKind::Branch, target};
}

std::optional<int> StackGrowth(const Instruction& instruction) {
  const int mnemonic = instruction.entry().mnemonic();
  if (mnemonic == kTxs || mnemonic == kRsp || mnemonic == kRts || mnemonic == kRti) {
    return std::nullopt;
  }
  if (Contains(kPushes, mnemonic)) return 1;
  if (Contains(kPulls, mnemonic)) return -1;
  if (mnemonic == kAis) return -static_cast<int>(static_cast<std::int8_t>(instruction.bytes[1]));
  return 0;
}

}  // namespace brevant::isa
