// SPDX-License-Identifier: MIT
#include "workspace/clock_text.h"

#include "base/text_format.h"

namespace brevant::workspace {

std::string ClockText(int hour, int minute, int second) {
  constexpr int kHalfDay = 12;
  const int shown = hour % kHalfDay == 0 ? kHalfDay : hour % kHalfDay;
  return base::Format("%2d:%02d:%02d %s", shown, minute, second, hour < kHalfDay ? "AM" : "PM");
}

}  // namespace brevant::workspace
