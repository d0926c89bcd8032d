// SPDX-License-Identifier: MIT
#include "control/n_step_form.h"

#include <gtest/gtest.h>

#include "base/temporary_folder.h"

namespace brevant::control {
namespace {

class NStepFormTest : public ::testing::Test {
 protected:
  base::TemporaryFolder folder;
  base::SettingsFile settings{folder.path() / "brevant.ini"};
};

TEST_F(NStepFormTest, AnAbsentConditionIsForeverAtStartUpAndACountInTheDialog) {
  EXPECT_EQ(LoadNStepSettings(settings).condition, NStepCondition::Forever);
  EXPECT_EQ(LoadNStepSettings(settings).count, 10);
  const NStepForm form = OpenNStepForm(settings);
  EXPECT_FALSE(form.forever() || form.at_statement());
  EXPECT_TRUE(form.count_enabled() && form.into_subroutines);
  EXPECT_EQ(form.count_text, "10");
  EXPECT_EQ(form.update_rate, 1);
}

TEST_F(NStepFormTest, ClampsWhatIsStoredAndWhatIsTyped) {
  settings.Store(base::keys::kNStepCount, 0L);
  settings.Store(base::keys::kNStepUpdateRate, 99L);
  settings.Store(base::keys::kNStepSubroutines, 2L);
  EXPECT_EQ(LoadNStepSettings(settings).count, 1);
  EXPECT_EQ(LoadNStepSettings(settings).update_rate, 10);
  EXPECT_FALSE(LoadNStepSettings(settings).into_subroutines);
  NStepForm form = OpenNStepForm(settings);
  EXPECT_EQ(form.count_text, "1");
  form.TypeCount("5000");
  EXPECT_EQ(form.count_text, "5000");
  EXPECT_EQ(form.count_position, 2000);
}

TEST_F(NStepFormTest, CheckingOneConditionUnchecksTheOther) {
  NStepForm form = OpenNStepForm(settings);
  form.ClickForever();
  EXPECT_TRUE(form.forever());
  EXPECT_FALSE(form.count_enabled());
  form.ClickAtStatement();
  EXPECT_TRUE(form.at_statement() && !form.forever() && !form.count_enabled());
  form.ClickAtStatement();
  EXPECT_TRUE(form.count_enabled());
}

TEST_F(NStepFormTest, ScrollsWithinItsLimits) {
  NStepForm form = OpenNStepForm(settings);
  struct Row {
    ScrollStep step;
    const char* count;
    int rate;
  };
  for (const Row& row : {Row{ScrollStep::LineForward, "11", 2},
                         Row{ScrollStep::PageForward, "21", 3}, Row{ScrollStep::LineBack, "20", 2},
                         Row{ScrollStep::PageBack, "10", 1}, Row{ScrollStep::PageBack, "1", 0},
                         Row{ScrollStep::LineBack, "1", 0}, Row{ScrollStep::End, "2000", 10},
                         Row{ScrollStep::PageForward, "2000", 10}, Row{ScrollStep::Home, "0", 0}}) {
    form.ScrollCount(row.step);
    form.ScrollRate(row.step);
    EXPECT_EQ(form.count_text, row.count);
    EXPECT_EQ(form.update_rate, row.rate);
  }
  EXPECT_EQ(form.count_position, 1);
}

TEST_F(NStepFormTest, CommitStoresAllFourAndHandsThemToTheEngine) {
  NStepForm form = OpenNStepForm(settings);
  form.TypeCount("5000");
  form.ClickIntoSubroutines();
  form.DragRate(7);
  form.ClickAtStatement();
  NStepSettings engine;
  ASSERT_TRUE(CommitNStepForm(form, settings, engine));
  const NStepSettings stored = LoadNStepSettings(settings);
  for (const NStepSettings& kept : {engine, stored}) {
    EXPECT_EQ(kept.count, 2000);
    EXPECT_FALSE(kept.into_subroutines);
    EXPECT_EQ(kept.update_rate, 7);
    EXPECT_EQ(kept.condition, NStepCondition::AtStatement);
  }
  EXPECT_TRUE(OpenNStepForm(settings).at_statement());
}

}  // namespace
}  // namespace brevant::control
