// SPDX-License-Identifier: MIT
#include "simulator/fault_injector.h"

#include <utility>

namespace brevant::simulator {

void FaultInjector::Install(FaultPlan plan) {
  plan_ = std::move(plan);
  host_bytes_ = 0;
  waiting_.clear();
}

HostByteFaults FaultInjector::NextHostByte() {
  HostByteFaults faults;
  const std::uint64_t index = host_bytes_++;
  for (const Fault& fault : plan_) {
    if (fault.at_host_byte != index) continue;
    const auto mask = static_cast<std::uint8_t>(1u << (fault.bit & 7u));
    switch (fault.kind) {
      case FaultKind::LoseHostByte:
        faults.lose = true;
        break;
      case FaultKind::DropLocalEcho:
        faults.drop_copy = true;
        break;
      case FaultKind::DropMonitorEcho:
        faults.drop_echo = true;
        break;
      case FaultKind::FlipEcho:
        faults.flip_echo |= mask;
        break;
      case FaultKind::FlipHostByte:
        faults.flip |= mask;
        break;
      case FaultKind::FlipReply:
        waiting_.push_back({.lose = false, .flip = mask});
        break;
      case FaultKind::LoseReply:
        waiting_.push_back({.lose = true, .flip = 0});
        break;
      case FaultKind::ExtraByte:
        faults.extra = fault.extra;
        break;
      case FaultKind::DelayByte:
        faults.delay = true;
        break;
      case FaultKind::CutLine:
        faults.cut = true;
        break;
      case FaultKind::ResetMcu:
        faults.reset = true;
        break;
    }
  }
  return faults;
}

ReplyFaults FaultInjector::NextReply() {
  if (waiting_.empty()) return {};
  const ReplyFaults faults = waiting_.front();
  waiting_.pop_front();
  return faults;
}

}  // namespace brevant::simulator
