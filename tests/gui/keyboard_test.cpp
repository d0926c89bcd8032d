// SPDX-License-Identifier: MIT
// The program without a mouse.
#include <QAction>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QTextBlock>
#include <QTextBrowser>
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
    if (row.in != nullptr) window().area().setActiveSubWindow(&window().Open(*row.in));
    QTest::qWait(10);
    const std::string settings = Settings();
    const base::Generations before = debugger().generations();
    OnDialog(row.dialog, [&](QDialog& dialog) {
      QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
      EXPECT_FALSE(dialog.isVisible()) << row.dialog;
    });
    Choose(row.command);
    EXPECT_EQ(Settings(), settings) << row.dialog;
    EXPECT_TRUE(debugger().generations() == before) << row.dialog;
  }
}

// Opened by its key, gone through by arrows: each item is explained, and none carried out.
TEST_F(KeyboardTest, F1ExplainsEachItemOfEachMenu) {
  StartWithAProgram();
  const long stops = debugger().run_control.stops();
  int explained = 0;
  for (QAction* const title : window().menuBar()->actions()) {
    QMenu& menu = *title->menu();
    const auto open = [&] {
      window().menuBar()->setActiveAction(title);
      QTest::qWait(5);
    };
    open();
    for (const workspace::CommandRow& row : workspace::CommandRows()) {
      const auto* const item = window().findChild<QAction*>(QString("command%1").arg(row.id));
      if (item == nullptr || !menu.actions().contains(item) || !item->isVisible()) continue;
      if (!menu.isVisible()) open();
      for (int n = 0; n < menu.actions().size() && menu.activeAction() != item; ++n)
        QTest::keyClick(&menu, Qt::Key_Down);
      ASSERT_EQ(menu.activeAction(), item) << qPrintable(item->text());
      QTest::keyClick(&menu, Qt::Key_F1);
      QTest::qWait(10);
      auto* const help = window().findChild<HelpWindow*>();
      ASSERT_NE(help, nullptr) << qPrintable(item->text());
      const guide::Topic* const topic = window().help().guide().OfCommand(row.id);
      ASSERT_NE(topic, nullptr) << row.id;
      EXPECT_EQ(help->findChild<QTextBrowser*>("page")->document()->begin().text(),
                Text(topic->title));
      delete help;
      ++explained;
    }
  }
  EXPECT_GT(explained, 50);
  EXPECT_EQ(debugger().run_control.stops(), stops);
}

}  // namespace
}  // namespace brevant::gui
