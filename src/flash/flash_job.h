// SPDX-License-Identifier: MIT
// Carries out a flash plan: brings the routine into target RAM, lets it run block by block, and
// follows progress, cancel, a lost link and the end, for a file as for a range. One job at a time;
// the timer completes it. The target is never erased before it is programmed: a location that is
// not blank shows as a verify failure.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/message_text.h"
#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/activity.h"
#include "control/register_frame.h"
#include "flash/blank_check.h"
#include "flash/flash_driver.h"
#include "flash/flash_plan.h"
#include "flash/flash_runner.h"
#include "link/monitor_link.h"
#include "link/security_keeper.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"

namespace brevant::flash {

// The modules that flash commands build on.
struct FlashSurroundings {
  memory::Memory& memory;
  link::MonitorLink& link;
  control::RegisterFrame& frame;
  control::Activity& activity;
  symbols::DebugInfo& debug_info;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  link::SecurityKeeper& security;
  // Resets the target and follows up; it also ends what is under way.
  std::function<void()> reset_target;
};

enum class FlashOutcome {
  None,          // nothing was ever started
  Running,       // the timer completes it
  Done,          // and looked at: erased pages are blank, programmed bytes read back
  VerifyFailed,  // not blank, or an error in programming
  NotErased,     // the routine has ended, but not all its pages are blank
  NotSeen,       // the routine has ended, but its pages could not be looked at
  LinkLost,
  Cancelled,  // by the user, by a reset, or since the routine did not tell its end
  Refused,    // nothing was done to the target: a question denied, a bad range, no such file
};

struct FlashStatus {
  FlashOutcome outcome = FlashOutcome::None;
  long bytes_programmed = 0;  // and verified
  long bytes_total = 0;       // to be programmed, known from the start; 0 for erasing
  long bytes_spared = 0;      // of a file: they stood in flash already
  // What an erase was to make blank: the flash in the pages that it covers.
  std::vector<devices::MemoryRange> to_erase{};
  // What a look at it has shown; of a program job that was cancelled, at the places that it did not
  // get to. Nothing when it could not be looked at.
  std::optional<BlankReport> blank{};
};

class FlashJob final : public control::Operation {
 public:
  explicit FlashJob(const FlashSurroundings& surroundings);
  FlashJob(const FlashJob&) = delete;
  FlashJob& operator=(const FlashJob&) = delete;

  const FlashSurroundings& surroundings() const { return with_; }
  const FlashStatus& status() const { return status_; }
  bool running() const { return status_.outcome == FlashOutcome::Running; }

  // True when the routine is under way; else the user has been told and the status says why.
  bool Start(FlashPlan plan);
  // A command does not get as far as a plan. Always false.
  bool Refuse();
  // The user's "Cancel": waits for the end of the routine, which comes soon, since a reset under
  // high voltage can leave anything in flash; then resets the target, looks at what is in flash
  // now, and says so. An erase is over by then.
  void Cancel();

  // The routine has ended, or the next records of a file are due.
  void Advance() override;
  // Shows progress and takes the user's cancel.
  void Wait() override;
  void LinkLost() override;
  // A reset has ended it.
  void Abandon() override;

 private:
  // RUN. False when the line has damaged what the routine was to work on: the job is over.
  bool LetRun();
  bool RanAsSent();
  bool TakeBlock();
  void SendNextBlock();
  void ProgramRecords();
  bool ProgramBlockAtOnce();
  // False once the user has asked to cancel.
  bool ShowProgress();
  base::Address CurrentAddress() const;
  bool Erasing() const { return plan_.blocks.empty() && !status_.to_erase.empty(); }
  void FinishErase();
  void ResetAndSayWhatIsErased();
  // False when it has not ended in a time that is enough for all of them.
  bool AwaitRoutine();
  // Resets the target, whatever it is doing, and says what is in flash now.
  void BreakOff(const base::MessageText& says);
  void SayWhatIsProgrammed(const base::MessageText& says);
  std::vector<devices::MemoryRange> RestOfPlan() const;
  void ResetAndKeepCode();
  bool SecurityCodeIsBlank() const;
  void LookForBlank();
  void WriteTrimBack();
  void Finish(FlashOutcome outcome);
  void Fail(const base::Message& message);
  void End(FlashOutcome outcome);

  FlashSurroundings with_;
  FlashDriver driver_;
  FlashRunner runner_;
  BlankCheck blank_check_;
  FlashStatus status_;
  FlashPlan plan_;
  std::size_t next_ = 0;  // of its blocks
  int waits_ = 0;         // ticks since the routine was let run
  std::string progress_text_;
  bool progress_shown_ = false;
  bool busy_cursor_ = false;
  std::optional<link::SecurityCode> code_before_;
};

}  // namespace brevant::flash
