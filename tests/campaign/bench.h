// SPDX-License-Identifier: MIT
// The engine, the board and what is known of it beside the engine: for the acts of a session.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/event_log.h"
#include "base/test_user.h"
#include "campaign/faults.h"
#include "campaign/session.h"
#include "campaign/watched_target.h"
#include "debugger/debugger.h"
#include "views/open_views.h"
#include "views/watch_view.h"

namespace brevant::campaign {

class Bench {
 public:
  // In the target's time; more than the longest job takes on a sound line.
  static constexpr std::chrono::minutes kLongestAct{5};

  Bench(Dice& dice, const std::string& folder, bool verbose);

  // False where there is no connection; the user has been told.
  bool Connect();
  // One act, and what holds after each.
  void Do(std::string_view name, const std::function<void()>& act);
  // Ticks until nothing is under way; what runs for long is stopped.
  void Settle();

  // What has to hold; the text says what does not.
  void Require(bool holds, const std::string& otherwise);
  // Something was claimed: it has to hold, unless the MCU has been reset behind the engine's back,
  // of which it can know only when it asks the next time.
  void Claim(bool holds, const std::string& claim);
  // The registers shown are those of the stopped program, and it has stopped.
  void CheckStandstill();
  bool BoardHolds(base::Address address, base::Bytes bytes);
  std::uint8_t Peek(base::Address address) { return port.target.board().mcu().Peek(address); }
  // The line has done nothing so far that an answer may be the worse for and no echo tells.
  bool AnswersAreSound() const;
  bool HasFaults() const { return !faults.empty(); }
  // Answers and pulse of time: nothing is claimed of a target that does not answer.
  bool Reached() const { return !debugger.memory.LinkError(); }
  void Say(std::string_view what) const;

  base::Address free_ram() const { return is_ql ? 0x00A0 : 0x0180; }
  base::Address last_free_ram() const { return is_ql ? 0x00BF : 0x01DF; }
  base::Address flash() const { return is_ql ? 0xF000 : 0xC000; }
  // Where a stretch of free RAM may be; even.
  base::Address SomeRam() { return free_ram() + 2 * static_cast<base::Address>(dice.Pick(8)); }
  std::vector<std::uint8_t> SomeBytes(int most);

  Dice& dice;
  bool is_ql;
  simulator::FaultPlan faults;
  SessionReport report;
  std::string folder;
  std::vector<std::string> foreign_settings;
  WatchedTarget port;
  base::SettingsFile settings;
  base::TestUser user;
  base::EventLog events;
  debugger::Debugger debugger;
  views::OpenViews open;
  views::WatchTable table;
  views::WatchView watch;
  // A loop in RAM, for software breakpoints, once it has been loaded.
  bool code_in_ram = false;

 private:
  bool ResetUnnoticed();
  void CheckRegisters();

  bool verbose_;
  std::string act_;
};

// NOP; INCA; TSX; INCX; NOP; BRA to the start.
inline constexpr std::uint8_t kLoop[] = {0x9D, 0x4C, 0x95, 0x5C, 0x9D, 0x20, 0xF9};

}  // namespace brevant::campaign
