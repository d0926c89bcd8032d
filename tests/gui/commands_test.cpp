// SPDX-License-Identifier: MIT
// Commands beyond the first session: recent files, dropped files, macros, symbols, the popup menu
// of program windows and the arrangement of windows.
#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QListWidget>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <fstream>

#include "gui/data_window.h"
#include "gui/desktop.h"
#include "gui/stack_window.h"
#include "images/image_file.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr base::Address kDemoMain = 0x0100;  // of examples/demo.s19
constexpr int kMnemonicColumn = 12;

class Commands : public Desktop {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    std::ofstream(folder_ / name) << text;
    return (folder_ / name).string();
  }
  QString Recent(int n) {
    const auto* const item =
        window().findChild<QAction*>(QString("command%1").arg(commands::kFirstRecentFile + n));
    return item->isVisible() ? item->text() : QString();
  }
  void ExpectMessage(const QString& text) {
    OnDialog("message", [text](QDialog& dialog) {
      EXPECT_EQ(static_cast<QMessageBox&>(dialog).text(), text);
      dialog.accept();
    });
  }
  void AnswerPrompt(const QString& title, const char* text) {
    OnDialog("CBDlgEdit", [title, text](QDialog& dialog) {
      EXPECT_EQ(dialog.windowTitle(), title);
      Field(dialog, "text").setText(text);
      Push(dialog, "ok");
    });
  }
  base::Address AddressOf(int row) {
    return program().view().Lines()[static_cast<std::size_t>(row)].address;
  }
};

TEST_F(Commands, RemembersFilesThatWereLoadedAndNoOthers) {
  UseToolChain(symbols::ToolChain::Introl);  // which leaves nothing beside an image
  Start();
  EXPECT_EQ(Recent(0), "");
  const std::string first = Write("first.s19", "S10501001122C6\n");
  const std::string second = Write("second.s19", "S1050100445560\n");
  window().LoadFile(first);
  window().LoadFile(second);
  ExpectMessage("Use only S19 or HEX format");
  window().LoadFile(Write("notes.txt", "no image\n"));
  EXPECT_EQ(window().windowTitle(), Text(second)) << "what is still loaded";
  EXPECT_EQ(Recent(0), Text(second));
  EXPECT_EQ(Recent(1), Text(first));
  EXPECT_EQ(Recent(2), "");

  Choose(commands::kFirstRecentFile + 1);
  EXPECT_EQ(debugger().monitor.ReadByte(0x0100), 0x11);
  EXPECT_EQ(Recent(0), Text(first));
  std::filesystem::remove(first);
  ExpectMessage("File " + Text(first) + " is not found");
  Choose(commands::kFirstRecentFile);
  Quit();

  Start();
  EXPECT_EQ(Recent(0), Text(first));
  EXPECT_EQ(Recent(1), Text(second));
  EXPECT_EQ(window().windowTitle(), "No File Loaded");
}

TEST_F(Commands, LoadsAFileThatIsDroppedOnTheWindow) {
  UseToolChain(symbols::ToolChain::Introl);
  Start();
  const std::string image = Write("dropped.s19", "S1050100445560\n");
  const auto drop = [this](const QMimeData& data) {
    QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&window(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &event);
    return true;
  };
  QMimeData text;
  text.setText("S1050100445560");
  EXPECT_FALSE(drop(text));
  QMimeData file;
  file.setUrls({QUrl::fromLocalFile(Text(image))});
  // It comes while something is under way, and is not lost.
  session().gate.Run([&] {
    EXPECT_TRUE(drop(file));
    QTest::qWait(30);
  });
  EXPECT_EQ(window().windowTitle(), "No File Loaded");
  EXPECT_TRUE(QTest::qWaitFor([&] { return window().windowTitle() == Text(image); }));
  EXPECT_EQ(debugger().monitor.ReadByte(0x0100), 0x44);
}

TEST_F(Commands, RunsAMacroAndFindsTheSymbolsOfAFile) {
  Start();
  ChooseInDialog(Write("prepare", "DMM.B 120 5A\nPC 8021\n"));  // no extension is put to it
  Choose(commands::kLoadMacro);
  EXPECT_EQ(debugger().monitor.ReadByte(0x0120), 0x5A);
  EXPECT_EQ(debugger().frame.PC, 0x8021u);
  EXPECT_TRUE(program().view().Lines()[static_cast<std::size_t>(RowOf(0x8021))].is_pc);

  AnswerPrompt("Goto Address", "8000");
  Choose(commands::kPopupGoToAddress);
  ASSERT_EQ(RowOf(0x8004), 2) << "JSR 80D6 of the demo program in flash";
  ChooseInDialog(Write("names.lst", "\nsetup 80D6\n"));
  Choose(commands::kLoadSymbols);
  EXPECT_NE(program().view().Lines()[2].text.find("setup"), std::string::npos);
  // What is neither a name nor a number keeps the prompt open.
  OnDialog("CBDlgEdit", [](QDialog& dialog) {
    Field(dialog, "text").setText("nowhere");
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    Push(dialog, "cancel");
  });
  Choose(commands::kPopupGoToSymbol);
  EXPECT_EQ(AddressOf(0), 0x8000u);
}

TEST_F(Commands, ListsTheBreakpointAndGoesToIt) {
  Start();
  ClickInProgram(kMnemonicColumn, 3);
  const base::Address address = AddressOf(3);
  Press(Qt::Key_F9);
  ASSERT_TRUE(debugger().breakpoints.Has(address));
  AnswerPrompt("Goto Address", "9000");
  Choose(commands::kPopupGoToAddress);
  ASSERT_EQ(RowOf(address), -1);

  OnDialog("BKPTDLG", [](QDialog& dialog) {
    Push(dialog, "goto");
    EXPECT_TRUE(dialog.isVisible()) << "nothing is selected";
    dialog.findChild<QListWidget*>()->setCurrentRow(0);
    Push(dialog, "goto");
  });
  Choose(commands::kPopupGoToBreakpoint);
  EXPECT_EQ(AddressOf(0), address);

  OnDialog("BKPTDLG", [](QDialog& dialog) {
    auto* const list = dialog.findChild<QListWidget*>();
    ASSERT_EQ(list->count(), 1);
    list->setCurrentRow(0);
    Push(dialog, "delete");
    EXPECT_EQ(list->count(), 0);
    Push(dialog, "close");
  });
  Choose(commands::kPopupGoToBreakpoint);
  EXPECT_FALSE(debugger().breakpoints.Has(address));
  EXPECT_FALSE(program().view().Lines()[0].has_breakpoint);
}

TEST_F(Commands, RunsToTheCursorAndToALabel) {
  UseToolChain(symbols::ToolChain::Sdcc);
  Start();
  window().LoadFile(Example("demo.s19"));
  ASSERT_EQ(AddressOf(0), kDemoMain);
  const base::Address cursor = AddressOf(2);
  ClickInProgram(kMnemonicColumn, 2);
  Press(Qt::Key_F8);
  Settle();
  EXPECT_EQ(debugger().frame.PC, cursor);
  const auto count = debugger().debug_info.SymbolTable.FindSymbolAddress("_count");
  ASSERT_TRUE(count);
  AnswerPrompt("Run to label or address", "_COUNT");
  Choose(commands::kPopupRunToLabel);
  Settle();
  EXPECT_EQ(debugger().frame.PC, *count);
}

TEST_F(Commands, PopUpWhereTheMouseIsAndLeaveTheCursor) {
  Start();
  ClickInProgram(kMnemonicColumn, 2);
  const QPoint at(100, program().cell().height * 5);
  QContextMenuEvent right(QContextMenuEvent::Mouse, at, program().viewport()->mapToGlobal(at));
  QApplication::sendEvent(program().viewport(), &right);
  auto* const popup = window().findChild<QMenu*>("ProgMenu");
  ASSERT_TRUE(popup->isVisible());
  EXPECT_EQ(program().view().state().cursorLine, 2);
  const base::Address cursor = AddressOf(2);
  QAction* const set_pc =
      window().findChild<QAction*>(QString("command%1").arg(commands::kPopupSetPc));
  QTest::mouseClick(popup, Qt::LeftButton, {}, popup->actionGeometry(set_pc).center());
  EXPECT_EQ(debugger().frame.PC, cursor);
  EXPECT_FALSE(popup->isVisible());
}

TEST_F(Commands, ADataWindowIsEditedAndDisplaysAsItsPopupSays) {
  Start();
  Press(Qt::Key_D, Qt::AltModifier);
  EXPECT_EQ(window().Children(kDataKind).front()->windowTitle(), "Data (Data page)");
  auto& data = static_cast<DataWindow&>(*window().active_view());
  AnswerPrompt("Goto Address", "0121");
  Press(Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(data.view().CursorCellAddress(), 0x0120u) << "the active window's key";
  const auto popup_item = [&](int command) {
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {5, 5}, {});
    QApplication::sendEvent(data.viewport(), &key);
    auto* const popup = window().findChild<QMenu*>("DataMenu");
    EXPECT_TRUE(popup->isVisible());
    popup->hide();
    return window().findChild<QAction*>(QString("command%1").arg(command));
  };
  EXPECT_EQ(popup_item(commands::kDataUnit)->text(), "Display as WORD");
  Choose(commands::kDataUnit);
  EXPECT_EQ(popup_item(commands::kDataUnit)->text(), "Display as BYTE");
  Choose(commands::kDataPerLine);
  EXPECT_EQ(popup_item(commands::kDataPerLine)->text(), "Toggle data per line (8)");
  EXPECT_TRUE(popup_item(commands::kDataAscii)->isChecked());
  Choose(commands::kDataAscii);
  EXPECT_FALSE(popup_item(commands::kDataAscii)->isChecked());
  EXPECT_EQ(session().settings.Integer(base::keys::kDataPerLine), 0);

  AnswerPrompt("Goto Address", "0121");
  Choose(commands::kDataGoToAddress);
  data.setFocus();
  OnDialog("DlgEdit", [](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Edit at 0121");
    QTest::qWait(10);
    QTest::keyClicks(&Field(dialog, "text"), "f");
    QTest::keyClick(&Field(dialog, "text"), Qt::Key_Return);
  });
  Press(Qt::Key_3);
  EXPECT_EQ(debugger().monitor.ReadByte(0x0121), 0x3F);
  EXPECT_EQ(data.view().lines()[0].text.substr(7, 5).substr(3), "3f");
  // What is under the cursor is told while the window is the active one; a change is marked.
  window().Tick();
  EXPECT_TRUE(window().status().toolTip().startsWith("0121: 3f 63 '?' %00111111, word 3f"));
  data.setFocus();
  QTest::keyClick(&data, Qt::Key_Home);  // lets the mark go elsewhere
  EXPECT_GT(RedPixels(data, 10, 0, 2), 0);
  EXPECT_EQ(RedPixels(data, 13, 0, 8), 0);
  window().area().setActiveSubWindow(window().Children(kProgramKind).front());
  window().Tick();
  EXPECT_EQ(window().status().toolTip(), "");
  window().area().setActiveSubWindow(window().Children(kDataKind).front());
  // Flash is not changed by writing to it, and the user hears so.
  AnswerPrompt("Goto Address", "8000");
  Choose(commands::kDataGoToAddress);
  OnDialog("message", [](QDialog& message) {
    EXPECT_TRUE(static_cast<QMessageBox&>(message).text().startsWith("The byte at 8000 reads"));
    message.accept();
  });
  OnDialog("DlgEdit", [](QDialog& dialog) {
    Field(dialog, "text").setText("00");
    Push(dialog, "ok");
  });
  Choose(commands::kDataEdit);
}

TEST_F(Commands, TheStackWindowLeadsToTheCallsOfAnSdccProgram) {
  UseToolChain(symbols::ToolChain::Sdcc);
  Start();
  session().program_views.SetRange(views::ProgramScrollRange("FFFF"));
  const std::string image = std::string(BREVANT_TEST_DATA) + "/programs/recursion.s19";
  for (const images::Block& block : images::ReadImageFile(image).ToImage().Blocks()) {
    session().simulated()->board().Load(block.address, block.bytes);
  }
  window().LoadFile(image);
  Press(Qt::Key_K, Qt::AltModifier);
  Press(Qt::Key_K, Qt::AltModifier);
  ASSERT_EQ(window().Children(kStackKind).size(), 1u) << "one is enough";
  auto& stack = static_cast<StackWindow&>(*window().active_view());
  const auto run_to = [this](const char* label) {
    AnswerPrompt("Run to label or address", label);
    Choose(commands::kPopupRunToLabel);
    Settle();
  };
  run_to("_is_even");
  run_to("_is_odd");
  const QString back = stack.TextLines().value(0);
  EXPECT_TRUE(back.contains("+1  80")) << qPrintable(back);
  EXPECT_TRUE(back.contains("  return to 80")) << qPrintable(back);
  EXPECT_TRUE(back.contains("behind JSR _is_odd at 80")) << qPrintable(back);
  EXPECT_TRUE(back.contains("_is_even+")) << qPrintable(back);
  EXPECT_TRUE(back.contains("recursion.c:")) << qPrintable(back);
  EXPECT_TRUE(stack.TextLines().join('\n').contains("behind JSR _is_even at 81"))
      << qPrintable(stack.TextLines().join('\n'));
  EXPECT_TRUE(window().status().toolTip().contains("bytes were read"));

  stack.setFocus();
  Press(Qt::Key_Return);
  const std::string call = program().view().Lines().front().text;
  EXPECT_NE(call.find("JSR"), std::string::npos) << call;
  EXPECT_NE(call.find("_is_odd"), std::string::npos) << call;
  Choose(commands::kSaveSettings);
  EXPECT_EQ(session().settings.Integer(base::keys::kStackOpen), 1);
}

TEST_F(Commands, F1OnAMenuItemExplainsItInsteadOfCarryingItOut) {
  Start();
  const base::Address before = debugger().frame.PC;
  QAction* const step = window().findChild<QAction*>(QString("command%1").arg(commands::kStep));
  for (QAction* const title : window().menuBar()->actions()) {
    if (!title->menu()->actions().contains(step)) continue;
    title->menu()->popup({100, 100});
    title->menu()->setActiveAction(step);
    EXPECT_EQ(window().statusBar()->currentMessage(), "Run one step");
    QTest::keyClick(title->menu(), Qt::Key_F1);
    EXPECT_FALSE(title->menu()->isVisible());
  }
  Settle();
  EXPECT_EQ(debugger().frame.PC, before);
  EXPECT_EQ(window().statusBar()->currentMessage(), "Run one step") << "stays to be read";
}

TEST_F(Commands, ArrangesWindowsAndFindsThemInTheWindowMenu) {
  Start();
  Press(Qt::Key_P, Qt::AltModifier);
  const auto programs = window().Children(kProgramKind);
  ASSERT_EQ(programs.size(), 2u);
  EXPECT_EQ(window().area().activeSubWindow(), programs[1]);
  Press(Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_FALSE(programs[0]->geometry().intersects(programs[1]->geometry()));
  Press(Qt::Key_F5, Qt::ShiftModifier);
  EXPECT_TRUE(programs[0]->geometry().intersects(programs[1]->geometry()));
  programs[0]->showMinimized();
  Choose(commands::kArrangeIcons);
  EXPECT_EQ(programs[0]->geometry().bottomLeft(), window().area().viewport()->rect().bottomLeft());

  window().area().setActiveSubWindow(programs[1]);
  QMenu& menu = window().menus().menu(workspace::Menu::Window);
  menu.popup({0, 0});
  QStringList marked;
  for (const QAction* item : menu.actions()) {
    if (item->isChecked()) marked << item->text();
  }
  EXPECT_EQ(marked, QStringList("&3 Program"));
  menu.findChild<QAction*>("window2")->trigger();
  menu.hide();
  EXPECT_EQ(window().area().activeSubWindow(), programs[0]);
  EXPECT_FALSE(programs[0]->isMinimized());
  EXPECT_EQ(session().program_views.main(), session().program_views.views()[0]);
}

}  // namespace
}  // namespace brevant::gui
