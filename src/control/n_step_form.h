// SPDX-License-Identifier: MIT
// The settings of N-step and the rules of the "N Step Setup" dialog.
#pragma once

#include <string>
#include <string_view>

#include "base/settings_file.h"

namespace brevant::control {

inline constexpr int kMinNStepCount = 1, kMaxNStepCount = 2000;
inline constexpr int kMaxNStepRate = 10;

// Setting "NStepForever".
enum class NStepCondition { AfterCount = 0, Forever = 1, AtStatement = 2 };

struct NStepSettings {
  int count = 10;
  bool into_subroutines = true;  // else calls are stepped over
  int update_rate = 1;           // ticks from step to step; 0 is as fast as 1
  NStepCondition condition = NStepCondition::Forever;
};

// As at start-up: an absent "NStepForever" reads as Forever here, unlike in the dialog.
NStepSettings LoadNStepSettings(const base::SettingsFile& settings);

enum class ScrollStep { LineBack, LineForward, PageBack, PageForward, Home, End };

struct NStepForm {
  std::string count_text;  // the "Steps" edit, decimal
  int count_position = 1;  // its scroll bar, 1 to 2000
  bool into_subroutines = true;
  int update_rate = 1;  // scroll bar "Update rate", 0 to 10
  NStepCondition condition = NStepCondition::AfterCount;

  bool forever() const { return condition == NStepCondition::Forever; }
  bool at_statement() const { return condition == NStepCondition::AtStatement; }
  // The edit and its scroll bar.
  bool count_enabled() const { return condition == NStepCondition::AfterCount; }

  // The check boxes: checking one unchecks the other.
  void ClickForever();
  void ClickAtStatement();
  void ClickIntoSubroutines() { into_subroutines = !into_subroutines; }
  // The user has typed: only the scroll bar follows, clamped.
  void TypeCount(std::string_view text);
  void ScrollCount(ScrollStep step);
  void DragCount(int position);
  void ScrollRate(ScrollStep step);
  void DragRate(int position);
};

NStepForm OpenNStepForm(const base::SettingsFile& settings);
// "Ok" and "Go": what N-step is to use from now on. False when it could not be stored as well.
bool CommitNStepForm(const NStepForm& form, base::SettingsFile& settings, NStepSettings& engine);

}  // namespace brevant::control
