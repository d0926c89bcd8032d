// SPDX-License-Identifier: MIT
// The program without a mouse.
#include <QAction>
#include <QMdiArea>
#include <QMenu>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "gui/desktop.h"
#include "gui/dialog_rows.h"
#include "gui/help_window.h"

namespace brevant::gui {
namespace {

class KeyboardTest : public Desktop {
 protected:
  void StartWithAProgram() {
    for (const char* const name : {"blink.s19", "blink.cdb", "blink.map", "blink.c"})
      std::filesystem::copy_file(Example(name), folder_ / name);
    UseToolChain(symbols::ToolChain::Sdcc);
    Start();
    window().LoadFile((folder_ / "blink.s19").string());
  }
  std::string Settings() const {
    std::ifstream file(folder_ / "brevant.ini");
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(KeyboardTest, EscapeLeavesEachDialogAndChangesNothing) {
  StartWithAProgram();
  for (const DialogRow& row : kDialogs) {
    if (row.command == workspace::commands::kReStart) continue;  // only its buttons end it
    // Without a window manager nobody gives the focus back when a dialog has closed.
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    ChildWindow* const child = row.in != nullptr ? &window().Open(*row.in) : nullptr;
    if (child != nullptr) window().area().setActiveSubWindow(child);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return child == nullptr || window().area().activeSubWindow() == child; }));
    QTest::qWait(30);
    const std::string settings = Settings();
    const base::Generations before = debugger().generations();
    OnDialog(row.dialog, [&](QDialog& dialog) {
      // It has none until the desktop has activated it.
      QWidget* const focus = dialog.focusWidget();
      QTest::keyClick(focus != nullptr ? focus : &dialog, Qt::Key_Escape);
      EXPECT_FALSE(dialog.isVisible()) << row.dialog;
    });
    Choose(row.command);
    EXPECT_EQ(Settings(), settings) << row.dialog;
    EXPECT_TRUE(debugger().generations() == before) << row.dialog;
  }
}

// Gone through by arrows, each item is explained, and none carried out.
TEST_F(KeyboardTest, F1ExplainsEachItemOfEachMenu) {
  StartWithAProgram();
  const long stops = debugger().run_control.stops();
  int explained = 0;
  for (const workspace::CommandRow& row : workspace::CommandRows()) {
    const auto* const item = window().findChild<QAction*>(QString("command%1").arg(row.id));
    if (item == nullptr || !item->isVisible() || !item->isEnabled()) continue;
    QMenu& menu = window().menus().menu(row.menu);
    menu.popup(window().mapToGlobal(QPoint(10, 10)));
    for (int n = 0; n < menu.actions().size() && menu.activeAction() != item; ++n)
      QTest::keyClick(&menu, Qt::Key_Down);
    ASSERT_EQ(menu.activeAction(), item) << row.text;
    QTest::keyClick(&menu, Qt::Key_F1);
    QTest::qWait(5);
    EXPECT_FALSE(menu.isVisible());
    auto* const help = window().findChild<HelpWindow*>();
    ASSERT_NE(help, nullptr) << row.text;
    const int own = row.same_as != 0 ? row.same_as : row.id;
    EXPECT_EQ(help->findChild<QTextBrowser*>("page")->document()->begin().text(),
              Text(window().help().guide().OfCommand(own)->title));
    delete help;
    ++explained;
  }
  EXPECT_GT(explained, 110);
  EXPECT_EQ(debugger().run_control.stops(), stops);
}

TEST_F(KeyboardTest, WhatIsWiderThanAWindowScrollsSideways) {
  Start();
  Choose(workspace::commands::kOpenChip);
  auto& chip = static_cast<TextView&>(*window().Children(kChipKind).front()->widget());
  chip.window()->activateWindow();
  chip.parentWidget()->resize(200, 200);
  QTest::qWait(30);
  const int columns = chip.viewport()->width() / chip.cell().width;
  EXPECT_EQ(chip.horizontalScrollBar()->maximum(), std::max(chip.LongestLine() - columns, 0));
  for (int n = 0; n < 20; ++n) QTest::keyClick(&chip, Qt::Key_Right);  // unfolds, and stays
  EXPECT_EQ(chip.horizontalScrollBar()->value(), 0);
  window().Tick();
  ASSERT_GT(chip.horizontalScrollBar()->maximum(), 0);
  for (int n = 0; n < 50; ++n) QTest::keyClick(&chip, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(chip.horizontalScrollBar()->value(), chip.LongestLine() - columns);
}

TEST_F(KeyboardTest, EachRegisterComesIntoSightInASmallWindow) {
  Start();
  ChildWindow& child = *window().Children(kRegistersKind).front();
  const int line = registers().cell().height;
  child.resize(child.width() - registers().width() + 24 * registers().cell().width,
               child.height() - registers().height() + line);
  QTest::qWait(30);
  registers().setFocus();
  for (int n = 0; n < views::RegisterCells::kCells; ++n)
    QTest::keyClick(&registers(), Qt::Key_Right);
  const int row = session().registers.PositionOf(views::RegisterCells::kCells - 1).row;
  ASSERT_GT(row, 0);
  EXPECT_EQ(registers().verticalScrollBar()->value(), row);
  // A click chooses what is seen there.
  QTest::mouseClick(registers().viewport(), Qt::LeftButton, {},
                    {6 * registers().cell().width, line / 2});
  EXPECT_EQ(session().registers.PositionOf(session().registers.selected()),
            (views::CellPosition{0, row}));
}

TEST_F(KeyboardTest, TilingLeavesTheSourceWindowAlone) {
  StartWithAProgram();
  ChildWindow& source = window().Open(kSourceKind);
  const QRect place = source.geometry();
  Press(Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_EQ(source.geometry(), place);
  source.close();
  QTest::qWait(30);
  Press(Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_EQ(window().Children(kProgramKind).front()->x(), 0);
}

}  // namespace
}  // namespace brevant::gui
