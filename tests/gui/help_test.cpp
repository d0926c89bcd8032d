// SPDX-License-Identifier: MIT
// The help by keys, clicks and search.
#include <QAction>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTextBlock>
#include <QTextBrowser>

#include "gui/desktop.h"
#include "gui/help_window.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class HelpTest : public Desktop {
 protected:
  // Of the help that is open; empty when there is none.
  static QString Title() {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
      auto* const page = widget->findChild<QTextBrowser*>("page");
      if (page != nullptr && widget->isVisible()) return page->document()->begin().text();
    }
    return {};
  }
  QString TitleOf(int command) {
    const guide::Topic* const topic = window().help().guide().OfCommand(command);
    return topic == nullptr ? QString("none") : Text(topic->title);
  }
  static void CloseHelp() {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "HelpWindow") delete widget;
    }
  }
};

TEST_F(HelpTest, F1ExplainsTheWindowTheDialogAndTheItemOfAMenu) {
  Start();
  const guide::Guide& guide = window().help().guide();
  window().Open(kProgramKind);
  Press(Qt::Key_F1);
  EXPECT_EQ(Title(), Text(guide.OfWindow("MDI_Prog")->title));
  CloseHelp();

  // An item is explained and not carried out.
  QMenu& debug = window().menus().menu(workspace::Menu::Debug);
  const long stops = debugger().run_control.stops();
  debug.popup(window().mapToGlobal(QPoint(10, 10)));
  debug.setActiveAction(window().findChild<QAction*>("command190"));
  QTest::keyClick(&debug, Qt::Key_F1);
  QTest::qWait(10);
  EXPECT_FALSE(debug.isVisible());
  EXPECT_EQ(Title(), TitleOf(commands::kStep));
  EXPECT_EQ(debugger().run_control.stops(), stops);
  CloseHelp();

  QString in_dialog, by_button;
  OnDialog("NSTEPDLG", [&](QDialog& dialog) {
    QTest::keyClick(&Field(dialog, "count"), Qt::Key_F1);
    in_dialog = Title();
    auto* const help = dialog.findChild<HelpWindow*>();
    ASSERT_NE(help, nullptr) << "the dialog would keep input from any other window";
    delete help;
    Push(dialog, "help");
    QTest::qWait(10);
    by_button = Title();
    Push(dialog, "cancel");
  });
  Choose(commands::kNStep);
  EXPECT_EQ(in_dialog, Text(guide.OfDialog("NSTEPDLG")->title));
  EXPECT_EQ(by_button, in_dialog);
}

TEST_F(HelpTest, IsSearchedAndLeafedThrough) {
  Start();
  Choose(commands::kHelpSearch);
  auto& help = *window().findChild<HelpWindow*>();
  auto& search = *help.findChild<QLineEdit*>("search");
  auto& list = *help.findChild<QListWidget*>("topics");
  auto& page = *help.findChild<QTextBrowser*>("page");
  const int all = list.count();
  QTest::keyClicks(&search, "security");
  EXPECT_LT(list.count(), all);
  ASSERT_GT(list.count(), 0);
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(page.document()->begin().text(), list.item(0)->text());
  const QString found = page.document()->begin().text();
  Q_EMIT page.anchorClicked(QUrl("README.md"));
  EXPECT_NE(page.document()->begin().text(), found);
  QTest::mouseClick(help.findChild<QPushButton*>("back"), Qt::LeftButton);
  EXPECT_EQ(page.document()->begin().text(), found);
  // A second question goes to the same window.
  Choose(commands::kHelpContents);
  EXPECT_EQ(window().findChildren<HelpWindow*>().size(), 1);
}

}  // namespace
}  // namespace brevant::gui
