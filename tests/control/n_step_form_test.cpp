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

TEST_F(NStepFormTest, ScrollsWithinItsLimits) {
  NStepForm form = OpenNStepForm(settings);
  std::string seen;
  for (const ScrollStep step :
       {ScrollStep::LineForward, ScrollStep::PageForward, ScrollStep::LineBack,
        ScrollStep::PageBack, ScrollStep::PageBack, ScrollStep::LineBack, ScrollStep::End,
        ScrollStep::PageForward, ScrollStep::Home}) {
    form.ScrollCount(step);
    form.ScrollRate(step);
    seen += form.count_text + "/" + std::to_string(form.update_rate) + " ";
  }
  EXPECT_EQ(seen, "11/2 21/3 20/2 10/1 1/0 1/0 2000/10 2000/10 0/0 ");
  EXPECT_EQ(form.count_position, 1);
}

TEST_F(NStepFormTest, CommitStoresAllFourAndHandsThemToTheEngine) {
  NStepForm form = OpenNStepForm(settings);
  form.TypeCount("5000");
  form.ClickIntoSubroutines();
  form.DragRate(7);
  form.ClickForever();
  EXPECT_TRUE(form.forever() && !form.count_enabled());
  form.ClickAtStatement();
  EXPECT_TRUE(form.at_statement() && !form.forever() && !form.count_enabled());
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
