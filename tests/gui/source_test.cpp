// SPDX-License-Identifier: MIT
// The source window by key and mouse, on a program of SDCC.
#include "gui/source_window.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMdiArea>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QToolTip>
#include <fstream>

#include "gui/desktop.h"
#include "images/image_file.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr int kCodeColumn = 8;

class SourceTest : public Desktop {
 protected:
  // A copy of the program is loaded, whose vector leads to its start; the window opens.
  void StartWith(const std::string& program, bool with_sources = true) {
    UseToolChain(symbols::ToolChain::Sdcc);
    Start();
    session().program_views.SetRange(views::ProgramScrollRange("FFFF"));
    const std::filesystem::path from = std::string(BREVANT_TEST_DATA) + "/programs";
    std::filesystem::create_directory(folder_ / "build");
    for (const char* extension : {".s19", ".cdb", ".c"}) {
      if (!with_sources && extension == std::string(".c")) continue;
      std::filesystem::copy_file(from / (program + extension),
                                 folder_ / "build" / (program + extension));
    }
    LoadAndReset(program);
    Choose(commands::kOpenSource);
  }
  // The board's flash holds it, and the debugger loads what belongs to it.
  void LoadAndReset(const std::string& program) {
    const std::string image = folder_ / "build" / (program + ".s19");
    for (const images::Block& block : images::ReadImageFile(image).ToImage().Blocks()) {
      session().simulated()->board().Load(block.address, block.bytes);
    }
    window().LoadFile(image);
    Choose(commands::kReset);
  }
  SourceWindow& source() {
    return *static_cast<SourceWindow*>(window().Children(kSourceKind).front()->widget());
  }
  QString Title() { return window().Children(kSourceKind).front()->windowTitle(); }
  int RowOf(int line) { return line - 1 - source().view().state().top; }
  void Click(int column, int row) {
    const views::CellSize cell = source().cell();
    QTest::mouseClick(source().viewport(), Qt::LeftButton, {},
                      {column * cell.width + cell.width / 2, row * cell.height + cell.height / 2});
  }
  void GoToLine(const char* number) {
    OnDialog("DlgEdit", [number](QDialog& dialog) {
      Field(dialog, "text").setText("9999");
      Push(dialog, "ok");
      EXPECT_TRUE(dialog.isVisible());
      Field(dialog, "text").setText(number);
      Push(dialog, "ok");
    });
    Press(Qt::Key_G, Qt::ControlModifier);
  }
  int PcLine() {
    for (const views::SourceRow& row : source().view().Rows()) {
      if (row.is_pc) return row.number;
    }
    return 0;
  }
  const QAction& Item(int command) {
    return *window().findChild<QAction*>(QString("command%1").arg(command));
  }
};

TEST_F(SourceTest, ABreakpointIsClickedAndReachedAndTheCursorRunTo) {
  StartWith("counters");
  EXPECT_TRUE(Title().endsWith("build/counters.c"));
  source().setFocus();
  GoToLine("25");
  Click(2, RowOf(17));
  EXPECT_EQ(debugger().breakpoints.count(), 0) << "line 17 made no code";
  Click(2, RowOf(25));
  ASSERT_EQ(debugger().breakpoints.count(), 1);
  const base::Address address = *debugger().breakpoints.First();
  const auto line = debugger().debug_info.LineTable.LineForExactAddress(address);
  ASSERT_TRUE(line);
  EXPECT_EQ(line->line, 25u);
  Press(Qt::Key_F7);
  Settle();
  EXPECT_EQ(debugger().frame.PC, address);
  EXPECT_EQ(PcLine(), 25);
  EXPECT_GT(RedPixels(source(), kCodeColumn, RowOf(25), 10), 0);
  EXPECT_EQ(RedPixels(source(), kCodeColumn, RowOf(26), 10), 0);
  EXPECT_TRUE(source().TextLines().value(RowOf(25)).endsWith(", PC, breakpoint"))
      << qPrintable(source().TextLines().value(RowOf(25)));

  // The source window was active last, so its cursor is meant, by whichever way.
  Press(Qt::Key_F9);
  EXPECT_EQ(debugger().breakpoints.count(), 0) << "the cursor stands there after Go to line";
  Click(kCodeColumn, RowOf(28));
  Press(Qt::Key_F8);
  Settle();
  EXPECT_EQ(PcLine(), 28);
  Click(kCodeColumn, RowOf(31));
  Choose(commands::kSourceRunToCursor);
  Settle();
  EXPECT_EQ(PcLine(), 31);
  for (int n = 0; n < 3; ++n) Press(Qt::Key_Down, Qt::ShiftModifier);
  Press(Qt::Key_F8);
  EXPECT_EQ(PcLine(), 31);
  EXPECT_TRUE(window().status().toolTip().contains("counters.c:34 made no code"))
      << qPrintable(window().status().toolTip());
  // The program window has source lines where that is chosen.
  Choose(commands::kShowSource);
  EXPECT_TRUE(program().TextLines().join('\n').contains("counters.c:31  "))
      << qPrintable(program().TextLines().join('\n'));
  EXPECT_EQ(session().settings.Integer(base::keys::kShowSource), 8);
  // Elsewhere the program window's cursor is.
  window().area().setActiveSubWindow(window().Children(kProgramKind).front());
  EXPECT_FALSE(debugger().run_control.SourceViewCurrent());
}

TEST_F(SourceTest, ThePointerShowsValuesAndNoLineIsPcsWhileTheProgramRuns) {
  StartWith("counters");
  GoToLine("25");
  Click(2, RowOf(25));
  Press(Qt::Key_F7);
  Settle();
  const views::CellSize cell = source().cell();
  const auto hover = [&](const QString& name) {
    const int row = RowOf(25);
    const int column = static_cast<int>(source().TextLines().value(row).indexOf(name)) + 1;
    const QPoint at(column * cell.width + 1, row * cell.height + 1);
    QHelpEvent event(QEvent::ToolTip, at, source().viewport()->mapToGlobal(at));
    QApplication::sendEvent(source().viewport(), &event);
    return QToolTip::text();
  };
  EXPECT_TRUE(hover("sum").contains("sum = ")) << qPrintable(hover("sum"));
  QTest::mouseClick(source().viewport(), Qt::RightButton, {},
                    {kCodeColumn * cell.width, RowOf(28) * cell.height + 1});
  EXPECT_EQ(source().view().state().cursor, RowOf(28)) << "the popup acts on it";
  debugger().breakpoints.Clear();
  EXPECT_TRUE(source().TextLines().join('\n').contains(", PC"));
  Press(Qt::Key_F7);
  RunFor(300);
  EXPECT_FALSE(source().TextLines().join('\n').contains(", PC"));
  EXPECT_FALSE(program().TextLines().join('\n').contains(", PC"));
  Press(Qt::Key_F7);
  Settle();
  EXPECT_TRUE(program().TextLines().join('\n').contains(", PC"));
}

TEST_F(SourceTest, FindsTextAndExpandsTabs) {
  StartWith("counters");
  source().setFocus();
  QMenu& popup = *window().findChild<QMenu*>("CSrcMenu");
  const auto pop_up = [&] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 20},
                            source().mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(source().viewport(), &event);
    popup.hide();
  };
  pop_up();
  EXPECT_FALSE(Item(commands::kFindNext).isEnabled());
  EXPECT_EQ(Item(commands::kSourceTabSize).text(), "Tab size\t8");
  OnDialog("FindDlg", [](QDialog& dialog) {
    EXPECT_FALSE(dialog.findChild<QPushButton*>("ok")->isEnabled());
    QTest::keyClicks(&Field(dialog, "text"), "OUTER_TIMES");
    Push(dialog, "ok");
  });
  Press(Qt::Key_F, Qt::ControlModifier);
  const auto found = [this] {
    return source().view().state().top + source().view().state().cursor + 1;
  };
  const int first = found();
  EXPECT_TRUE(first == 9 || first == 38) << first;
  Press(Qt::Key_F3);
  pop_up();
  EXPECT_TRUE(Item(commands::kFindNext).isEnabled());
  OnDialog("FindDlg", [](QDialog& dialog) {
    EXPECT_EQ(Field(dialog, "text").text(), "OUTER_TIMES");
    dialog.findChild<QCheckBox*>("matchCase")->setChecked(true);
    Push(dialog, "ok");
  });
  OnDialog("message", [](QDialog& dialog) {
    EXPECT_EQ(static_cast<QMessageBox&>(dialog).text(), "String \"OUTER_TIMES\" not found");
    dialog.accept();
  });
  Choose(commands::kSourceFind);
  EXPECT_EQ(session().settings.Integer(base::keys::kMatchCase), 1);

  OnDialog("TabSizeDlg", [](QDialog& dialog) {
    Field(dialog, "text").setText("x");
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    Field(dialog, "text").setText("4");
    Push(dialog, "ok");
  });
  Choose(commands::kSourceTabSize);
  EXPECT_EQ(session().settings.Integer(base::keys::kTabSize), 4);
}

TEST_F(SourceTest, AsksForASourceThatIsNotBesideTheImageAndRemembersIt) {
  StartWith("modules", false);
  EXPECT_FALSE(source().view().problem().empty());
  EXPECT_TRUE(source().TextLines().join('\n').contains("was not found"))
      << qPrintable(source().TextLines().join('\n'));
  std::filesystem::create_directory(folder_ / "sources");
  const std::filesystem::path from = std::string(BREVANT_TEST_DATA) + "/programs";
  for (const char* name : {"modules.c", "modules_other.c"}) {
    std::filesystem::copy_file(from / name, folder_ / "sources" / name);
  }
  OnDialog("CBDlgList", [](QDialog& dialog) {
    auto& names = *dialog.findChild<QComboBox*>("names");
    EXPECT_EQ(dialog.windowTitle(), "Open source file");
    EXPECT_GE(names.count(), 2);
    names.setCurrentIndex(names.findText("modules_other.c"));
    Push(dialog, "ok");
  });
  Choose(commands::kSourceOpenFile);
  EXPECT_TRUE(Title().endsWith("build/modules_other.c"));
  ChooseInDialog(folder_ / "sources/modules.c");
  source().setFocus();
  Press(Qt::Key_Return);
  EXPECT_TRUE(window().status().toolTip().contains("is not called modules_other.c"))
      << qPrintable(window().status().toolTip());
  ChooseInDialog(folder_ / "sources/modules_other.c");
  Press(Qt::Key_Return);
  EXPECT_TRUE(Title().endsWith("sources/modules_other.c"));
  EXPECT_TRUE(source().view().problem().empty());
  // The other file is found there too, and both in the next run.
  Choose(commands::kSaveSettings);
  EXPECT_EQ(session().settings.Integer(base::keys::kSourceOpen), 1);
  Quit();
  Start();
  LoadAndReset("modules");
  ASSERT_EQ(window().Children(kSourceKind).size(), 1u);
  EXPECT_TRUE(Title().contains("sources/modules")) << qPrintable(Title());
  std::filesystem::remove_all(folder_ / "sources");
  QTest::qWait(1200);
  EXPECT_FALSE(source().view().problem().empty()) << "gone while it was open";
}

}  // namespace
}  // namespace brevant::gui
