// SPDX-License-Identifier: MIT
// N-step and trace by dialog, button and menu.
#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QScrollBar>

#include "gui/desktop.h"
#include "gui/trace_window.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class RepeatTest : public Desktop {
 protected:
  QAction& Button(int id) { return *window().findChild<QAction*>(QString("button%1").arg(id)); }
  QAction& Item(int id) { return *window().findChild<QAction*>(QString("command%1").arg(id)); }
  std::string Disabled() {
    std::string ids;
    for (const workspace::ToolbarButton& button : workspace::Toolbar()) {
      if (!Button(button.id).isEnabled()) ids += std::to_string(button.id) + " ";
    }
    return ids;
  }
};

TEST_F(RepeatTest, NStepsAsItsDialogSays) {
  Start();
  const long before = debugger().run_control.stops();
  OnDialog("NSTEPDLG", [](QDialog& dialog) {
    auto& forever = *dialog.findChild<QCheckBox*>("forever");
    auto& statement = *dialog.findChild<QCheckBox*>("statement");
    auto& bar = *dialog.findChild<QScrollBar*>("countBar");
    auto& count = *dialog.findChild<QLineEdit*>("count");
    EXPECT_EQ(count.text(), "10");
    forever.click();
    EXPECT_FALSE(count.isEnabled());
    statement.click();
    EXPECT_FALSE(forever.isChecked());
    statement.click();
    EXPECT_TRUE(count.isEnabled());
    count.selectAll();
    QTest::keyClicks(&count, "5000");
    EXPECT_EQ(bar.value(), control::kMaxNStepCount);
    bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    EXPECT_EQ(count.text(), "1990");
    count.selectAll();
    QTest::keyClicks(&count, "10");
    Push(dialog, "go");
  });
  Choose(commands::kNStep);
  EXPECT_EQ(Button(commands::kToolbarNStep).text(), "NStepping");
  EXPECT_TRUE(Item(commands::kNStep).isChecked());
  EXPECT_EQ(Disabled(), "341 343 344 345 347 40014 ");
  EXPECT_TRUE(window().status().toolTip().contains("N-stepping"));
  Settle();
  EXPECT_EQ(debugger().run_control.stops() - before, 13) << "twelve steps, and their end";
  EXPECT_FALSE(Item(commands::kNStep).isChecked());
  EXPECT_EQ(Disabled(), "");
  EXPECT_EQ(session().settings.Integer(base::keys::kNStepCount), 10);
  // The button starts at once with what is stored, and the menu item stops it.
  Button(commands::kToolbarNStep).trigger();
  EXPECT_EQ(debugger().activity.RunMode(), control::Mode::NStepping);
  Choose(commands::kNStep);
  EXPECT_EQ(debugger().activity.RunMode(), control::Mode::Idle);
  // What was only looked at changes nothing.
  OnDialog("NSTEPDLG", [](QDialog& dialog) {
    dialog.findChild<QCheckBox*>("forever")->click();
    Push(dialog, "cancel");
  });
  Choose(commands::kNStep);
  EXPECT_EQ(debugger().n_step.settings.condition, control::NStepCondition::AfterCount);
  EXPECT_FALSE(debugger().Busy());
}

TEST_F(RepeatTest, TracesUntilTheButtonComesAgainAndShowsTheLog) {
  Start();
  EXPECT_TRUE(window().Children(kTraceKind).empty());
  Button(commands::kToolbarTrace).trigger();
  EXPECT_EQ(Button(commands::kToolbarTrace).text(), "Tracing");
  EXPECT_EQ(Disabled(), "341 342 343 344 347 40014 ");
  for (int tick = 0; tick < 40; ++tick) window().Tick();
  Button(commands::kToolbarTrace).trigger();
  Settle();
  ASSERT_EQ(window().Children(kTraceKind).size(), 1u);
  auto& trace = *static_cast<TraceWindow*>(window().Children(kTraceKind).front()->widget());
  EXPECT_EQ(trace.view().line_count(), 384) << "the last 128 of some 300 steps";
  EXPECT_TRUE(trace.TextLines().value(1).startsWith("PC="))
      << qPrintable(trace.TextLines().value(1));
  trace.setFocus();
  Press(Qt::Key_PageDown);
  EXPECT_EQ(trace.view().top(), trace.view().rows());
}

TEST_F(RepeatTest, TheKeyThatStopsAProgramStopsWhatRepeatsSteps) {
  Start();
  Button(commands::kToolbarTrace).trigger();
  for (int tick = 0; tick < 5; ++tick) window().Tick();
  Press(Qt::Key_F7);
  Settle();
  EXPECT_EQ(debugger().activity.RunMode(), control::Mode::Idle);
  EXPECT_EQ(debugger().trace.logs(), 1) << "the steps are not lost";
  Button(commands::kToolbarNStep).trigger();
  Press(Qt::Key_F7);
  EXPECT_EQ(debugger().activity.RunMode(), control::Mode::Idle);
}

}  // namespace
}  // namespace brevant::gui
