// SPDX-License-Identifier: MIT
#include "campaign/faults.h"

#include <algorithm>

#include "base/text_format.h"

namespace brevant::campaign {
namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::FaultPlan;

constexpr FaultKind kKinds[] = {
    FaultKind::LoseHostByte, FaultKind::DropLocalEcho, FaultKind::DropMonitorEcho,
    FaultKind::FlipEcho,     FaultKind::FlipHostByte,  FaultKind::FlipReply,
    FaultKind::LoseReply,    FaultKind::ExtraByte,     FaultKind::DelayByte,
    FaultKind::CutLine,      FaultKind::ResetMcu};
constexpr std::uint8_t kExtras[] = {0x00, 0x55, 0xFF, 0x4A};
// About as many bytes as a connection, and as a long session sends.
constexpr int kConnecting = 120, kShort = 1200, kLong = 6000;
constexpr int kMostSilence = 300;

Fault OneFault(Dice& dice, int at) {
  return {.kind = kKinds[dice.Pick(std::size(kKinds))],
          .at_host_byte = static_cast<std::uint64_t>(at),
          .bit = static_cast<std::uint8_t>(dice.Pick(8)),
          .extra = kExtras[dice.Pick(std::size(kExtras))]};
}

}  // namespace

FaultPlan DrawFaults(Dice& dice) {
  FaultPlan plan;
  if (dice.OneIn(10)) return plan;
  constexpr int kReaches[] = {kConnecting, kShort, kShort, kLong};
  const int reach = kReaches[dice.Pick(std::size(kReaches))];
  switch (dice.Pick(6)) {
    case 0:
      for (int at = dice.Pick(reach); at < kLong; at += 1 + dice.Pick(reach)) {
        plan.push_back(OneFault(dice, at));
      }
      break;
    case 1: {
      const int first = dice.Pick(reach), last = first + dice.Pick(kMostSilence);
      for (int at = first; at <= last; ++at) {
        plan.push_back(
            {.kind = FaultKind::LoseHostByte, .at_host_byte = static_cast<std::uint64_t>(at)});
      }
      break;
    }
    default:
      for (int faults = 1 + dice.Pick(3); faults > 0; --faults) {
        plan.push_back(OneFault(dice, dice.Pick(reach)));
      }
  }
  return plan;
}

std::string FaultsText(const FaultPlan& plan) {
  constexpr std::size_t kMost = 8;
  std::string text;
  for (const Fault& fault : plan) {
    if (&fault - plan.data() == kMost) return text + " ...";
    text += base::Format(" %d@%d:%d", static_cast<int>(fault.kind),
                         static_cast<int>(fault.at_host_byte), static_cast<int>(fault.bit));
  }
  return plan.empty() ? " none" : text;
}

bool Holds(const FaultPlan& plan, FaultKind kind) {
  return std::ranges::find(plan, kind, &Fault::kind) != plan.end();
}

}  // namespace brevant::campaign
