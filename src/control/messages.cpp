// SPDX-License-Identifier: MIT
#include "control/messages.h"

namespace brevant::control {

std::optional<base::Message> StopMessage(const base::Stop& stop) {
  switch (stop.reason) {
    case base::StopReason::Refused:
      return stop.detail.empty() ? ToMessage(messages::kStopNotAnswered)
                                 : ToMessage(messages::kStopNotSent, stop.detail);
    case base::StopReason::NotRecovered:
      return ToMessage(messages::kStackPointerLost);
    case base::StopReason::BadStack:
      return ToMessage(messages::kBadStack);
    case base::StopReason::NotStarted:
      return ToMessage(messages::kNotStarted, stop.detail);
    case base::StopReason::McuReset:
      return ToMessage(messages::kMcuReset, stop.detail);
    case base::StopReason::LinkLost:
      return ToMessage(messages::kLinkLost);
    default:
      return std::nullopt;
  }
}

std::optional<base::Message> BreakpointLimit(const BreakpointTable& table) {
  if (table.HardwareBreakMode()) {
    if (table.count() < kMaxHardwareBreakpoints) return std::nullopt;
    return ToMessage(messages::kHardwareBreakpointLimit);
  }
  if (table.count() < kMaxBreakpoints) return std::nullopt;
  return ToMessage(messages::kBreakpointLimit, kMaxBreakpoints);
}

}  // namespace brevant::control
