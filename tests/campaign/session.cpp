// SPDX-License-Identifier: MIT
#include "campaign/session.h"

#include <cstdio>
#include <filesystem>

#include "base/files.h"
#include "base/text_format.h"
#include "campaign/acts.h"
#include "campaign/bench.h"

namespace brevant::campaign {
namespace {

constexpr int kMostActs = 10;

// Faults that the line makes of a session must not outlast it: connecting anew on a sound line
// brings back everything.
void RecoverOnSoundLine(Bench& bench) {
  bench.Say("recover");
  bench.port.target.SetFaultPlan({});
  bench.port.target.board().mcu().SetVtst(true);
  bench.port.Allow(Bench::kLongestAct);
  const link::ConnectResult result = bench.debugger.Restart();
  bench.Settle();
  bench.Require(debugger::IsConnected(result) && !bench.debugger.memory.LinkError(),
                "a sound line does not bring the connection back");
  bench.CheckStandstill();
  const std::vector<std::uint8_t> bytes{1, 2, 3, 4};
  const bool taken = !bench.debugger.memory.WriteAndLook(bench.free_ram(), bytes);
  bench.Require(taken && bench.BoardHolds(bench.free_ram(), bytes), "RAM is not written any more");
}

// Keys of anybody stay, whatever happens.
void CheckSettings(Bench& bench) {
  for (const std::string& line : bench.foreign_settings) {
    bench.Require(base::ReadFile(bench.settings.path()).text.find(line) != std::string::npos,
                  "the settings have lost " + line);
  }
}

}  // namespace

SessionReport RunSession(unsigned seed, const std::string& folder, bool verbose) {
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  Dice dice(seed);
  Bench bench(dice, folder, verbose);
  try {
    if (bench.Connect()) {
      for (int acts = 2 + dice.Pick(kMostActs); acts > 0; --acts) {
        const Act& act = kActs[static_cast<std::size_t>(dice.Pick(static_cast<int>(kActs.size())))];
        bench.Do(act.name, [&] { act.perform(bench); });
      }
    }
    RecoverOnSoundLine(bench);
    CheckSettings(bench);
  } catch (const Hang& hang) {
    bench.Require(false, hang.what());
  }
  return bench.report;
}

}  // namespace brevant::campaign
