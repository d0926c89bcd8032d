// SPDX-License-Identifier: MIT
// Everything that was told of the target, in order.
#pragma once

#include <string>
#include <vector>

#include "base/events.h"

namespace brevant::base {

struct EventLog final : Events {
  std::vector<Stop> stops;
  int starts = 0, activity_changes = 0, link_changes = 0;

  void Started() override { ++starts; }
  void Stopped(const Stop& stop) override { stops.push_back(stop); }
  void ActivityChanged() override { ++activity_changes; }
  void LinkChanged() override { ++link_changes; }

  // The words of the reasons since the last call, parted by blanks.
  std::string TakeReasons() {
    std::string words;
    for (const Stop& stop : stops) {
      words += (words.empty() ? "" : " ") + std::string(StopWord(stop.reason));
    }
    stops.clear();
    return words;
  }
};

}  // namespace brevant::base
