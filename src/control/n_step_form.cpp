// SPDX-License-Identifier: MIT
#include "control/n_step_form.h"

#include <algorithm>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::control {

namespace {

using base::keys::kNStepCount;
using base::keys::kNStepForever;
using base::keys::kNStepForeverInDialog;
using base::keys::kNStepSubroutines;
using base::keys::kNStepUpdateRate;

constexpr int kPage = 10;

int ClampCount(int count) {
  return std::clamp(count, kMinNStepCount, kMaxNStepCount);
}
int ClampRate(int rate) {
  return std::clamp(rate, 0, kMaxNStepRate);
}
NStepCondition ToCondition(int value) {
  // Bit 0 is the one check box, bit 1 the other; both at once cannot be made in the dialog.
  if ((value & 1) != 0) return NStepCondition::Forever;
  return (value & 2) != 0 ? NStepCondition::AtStatement : NStepCondition::AfterCount;
}

}  // namespace

NStepSettings LoadNStepSettings(const base::SettingsFile& settings) {
  return {.count = ClampCount(settings.Integer(kNStepCount)),
          .into_subroutines = (settings.Integer(kNStepSubroutines) & 1) != 0,
          .update_rate = ClampRate(settings.Integer(kNStepUpdateRate)),
          .condition = ToCondition(settings.Integer(kNStepForever))};
}

NStepForm OpenNStepForm(const base::SettingsFile& settings) {
  NStepForm form;
  form.DragCount(settings.Integer(kNStepCount));
  form.into_subroutines = (settings.Integer(kNStepSubroutines) & 1) != 0;
  form.DragRate(settings.Integer(kNStepUpdateRate));
  form.condition = ToCondition(settings.Integer(kNStepForeverInDialog));
  return form;
}

void NStepForm::ClickForever() {
  condition = forever() ? NStepCondition::AfterCount : NStepCondition::Forever;
}

void NStepForm::ClickAtStatement() {
  condition = at_statement() ? NStepCondition::AfterCount : NStepCondition::AtStatement;
}

void NStepForm::TypeCount(std::string_view text) {
  count_text = text;
  count_position = ClampCount(base::ParseLeadingDecimal(text));
}

void NStepForm::ScrollCount(ScrollStep step) {
  switch (step) {
    case ScrollStep::LineBack:
      return DragCount(count_position - 1);
    case ScrollStep::LineForward:
      return DragCount(count_position + 1);
    case ScrollStep::PageBack:
      return DragCount(count_position - kPage);
    case ScrollStep::PageForward:
      return DragCount(count_position + kPage);
    case ScrollStep::Home:
      // Shows 0, which counts as 1 when it is stored.
      return TypeCount("0");
    case ScrollStep::End:
      return DragCount(kMaxNStepCount);
  }
}

void NStepForm::DragCount(int position) {
  count_position = ClampCount(position);
  count_text = base::Format("%d", count_position);
}

void NStepForm::ScrollRate(ScrollStep step) {
  switch (step) {
    case ScrollStep::LineBack:
    case ScrollStep::PageBack:
      return DragRate(update_rate - 1);
    case ScrollStep::LineForward:
    case ScrollStep::PageForward:
      return DragRate(update_rate + 1);
    case ScrollStep::Home:
      return DragRate(0);
    case ScrollStep::End:
      return DragRate(kMaxNStepRate);
  }
}

void NStepForm::DragRate(int position) {
  update_rate = ClampRate(position);
}

bool CommitNStepForm(const NStepForm& form, base::SettingsFile& settings, NStepSettings& engine) {
  engine = {.count = ClampCount(base::ParseLeadingDecimal(form.count_text)),
            .into_subroutines = form.into_subroutines,
            .update_rate = form.update_rate,
            .condition = form.condition};
  base::SettingsFile::Change change;
  change.Store(kNStepSubroutines, engine.into_subroutines ? 1L : 0L);
  change.Store(kNStepCount, static_cast<long>(engine.count));
  change.Store(kNStepUpdateRate, static_cast<long>(engine.update_rate));
  change.Store(kNStepForever, static_cast<long>(engine.condition));
  return settings.Apply(change);
}

}  // namespace brevant::control
