// SPDX-License-Identifier: MIT
#include "control/messages.h"

namespace brevant::control {

std::optional<base::Message> StopMessage(StopResult result) {
  switch (result) {
    case StopResult::Stopped:
      return std::nullopt;
    case StopResult::NoAnswer:
      return ToMessage(messages::kStopNotAnswered);
    case StopResult::NotRecovered:
      return ToMessage(messages::kStackPointerLost);
    case StopResult::LinkLost:
      return ToMessage(messages::kLinkLost);
  }
  return std::nullopt;
}

std::optional<base::Message> BreakpointLimit(const BreakpointTable& table, bool hardware) {
  if (hardware) {
    if (table.count() < kMaxHardwareBreakpoints) return std::nullopt;
    return ToMessage(messages::kHardwareBreakpointLimit);
  }
  if (table.count() < kMaxBreakpoints) return std::nullopt;
  return ToMessage(messages::kBreakpointLimit, kMaxBreakpoints);
}

}  // namespace brevant::control
