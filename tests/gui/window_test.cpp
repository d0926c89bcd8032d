// SPDX-License-Identifier: MIT
// The windows as a person uses them: connecting, loading, breakpoints, running, editing, closing.
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QMessageBox>
#include <QPushButton>
#include <QWheelEvent>
#include <fstream>
#include <set>

#include "gui/command_actions.h"
#include "gui/data_window.h"
#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr base::Address kScratch = 0x0100;  // in RAM
constexpr int kTextColumn = 12;

void TypeDevice(QDialog& dialog, const char* text) {
  QLineEdit& field = *dialog.findChild<QComboBox*>("deviceBehindPort")->lineEdit();
  field.selectAll();
  QTest::keyClicks(&field, text);
}

TEST_F(Desktop, ConnectsThroughTheDialogAfterAWrongPortWasRefused) {
  OnDialog("LookHWDlg", [this](QDialog& dialog) {
    EXPECT_TRUE(
        dialog.findChild<QComboBox*>("deviceBehindPort")->currentText().contains("simulated"));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "only Ok leaves it";
    OnDialog("message", [](QDialog& message) {
      EXPECT_EQ(static_cast<QMessageBox&>(message).text(), "Not a correct COM port number");
      message.accept();
    });
    Field(dialog, "port").setText("COM9");
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    Field(dialog, "port").setText("com1");
    // All digits at once into a field that holds some.
    QApplication::clipboard()->setText("0x01 23-45:67 89ABCDeF");
    QTest::keyClick(&Field(dialog, "code3"), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Field(dialog, "code0").text(), "C3") << "\"x\" is no digit";
    QApplication::clipboard()->setText("01 23-45:67 89ABCDeF");
    QTest::keyClick(&Field(dialog, "code3"), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Field(dialog, "code0").text(), "01");
    EXPECT_EQ(Field(dialog, "code7").text(), "EF");
    TypeDevice(dialog, "/dev/no-such-port");
    EXPECT_EQ(dialog.findChild<QPushButton*>("quit"), nullptr);
    // What cannot be reached is told, and the dialog is there again.
    OnDialog("message", [this](QDialog& message) {
      message.accept();
      OnDialog("LookHWDlg", [this](QDialog& again) {
        EXPECT_NE(again.findChild<QPushButton*>("quit"), nullptr);
        again.findChild<QComboBox*>("select")->setCurrentIndex(1);
        Q_EMIT again.findChild<QComboBox*>("select")->activated(1);
        TypeDevice(again, " simulator ");
        Push(again, "ok");
      });
    });
    Push(dialog, "ok");
  });
  Start(false);
  EXPECT_EQ(Status(), "COM1 simulated MC68HC908GP32: stopped");
  EXPECT_EQ(window().windowTitle(), "No File Loaded");
  EXPECT_EQ(session().settings.String(base::keys::kPort), "COM1");
  EXPECT_EQ(session().settings.StringInFile(base::keys::kProgramRange), "FFFF");
  EXPECT_EQ(session().settings.Integer(base::keys::kSaveOnExit), 8);
}

TEST_F(Desktop, LoadsAFileAndRunsToAClickedBreakpoint) {
  UseToolChain(symbols::ToolChain::Sdcc);
  Start();
  const std::string demo = Example("demo.s19");
  ChooseInDialog(demo);
  Choose(commands::kLoadImage);
  EXPECT_EQ(window().windowTitle(), Text(demo));
  EXPECT_TRUE(debugger().debug_info.DebugInfoLoaded);
  EXPECT_EQ(debugger().frame.PC, kScratch);
  ASSERT_EQ(RowOf(kScratch), 0) << "the window follows PC";
  EXPECT_EQ(window().findChild<QAction*>("command144")->text(), Text(demo));

  const int row = 4;
  const base::Address address = program().view().Lines()[row].address;
  ClickInProgram(2, row);
  EXPECT_TRUE(debugger().breakpoints.Has(address));
  Press(Qt::Key_F7);
  Settle();
  EXPECT_EQ(debugger().frame.PC, address);
  EXPECT_TRUE(program().view().Lines()[static_cast<std::size_t>(RowOf(address))].is_pc);
  EXPECT_GT(RedPixels(program(), kTextColumn, RowOf(address), 10), 0);
  EXPECT_EQ(RedPixels(program(), kTextColumn, RowOf(address) + 1, 10), 0);

  // It belongs to the image, and is offered when that is loaded again.
  OnDialog("message", [](QDialog& message) {
    auto& question = static_cast<QMessageBox&>(message);
    EXPECT_TRUE(question.text().startsWith("This image had breakpoints when it was used last: 01"));
    question.button(QMessageBox::Yes)->click();
  });
  window().LoadFile(demo);
  EXPECT_TRUE(debugger().breakpoints.Has(address));

  ClickInProgram(2, RowOf(address));
  EXPECT_FALSE(debugger().breakpoints.Has(address));
  QTest::qWait(30);
  window().LoadFile(demo);
}

TEST_F(Desktop, IsQuietAndLargerWhenThatIsChosen) {
  Start();
  QMdiSubWindow& child = *window().Children(kProgramKind).front();
  EXPECT_EQ(window().area().activeSubWindow(), &child);
  EXPECT_EQ(child.geometry().right() + 1, window().area().width() - 4) << "fills the frame";
  window().resize(window().width() + 60, window().height() + 40);
  QTest::qWait(10);
  EXPECT_EQ(child.geometry().right() + 1, window().area().width() - 4) << "and follows it";
  child.resize(400, 300);
  QTest::qWait(10);
  window().resize(window().width() - 100, window().height());
  QTest::qWait(10);
  EXPECT_EQ(child.size(), QSize(400, 300)) << "until it is moved";

  Choose(commands::kQuietColours);
  const base::Address address = program().view().Lines()[2].address;
  ClickInProgram(0, 2);
  EXPECT_TRUE(debugger().breakpoints.Has(address));
  EXPECT_GT(RedPixels(program(), 0, 2, 1), 0) << "a dot in the gutter";
  EXPECT_EQ(RedPixels(program(), 0, 1, 30), 0);
  QAccessibleTextInterface* const text =
      QAccessible::queryAccessibleInterface(&program())->textInterface();
  ASSERT_NE(text, nullptr);
  const QStringList lines = text->text(0, text->characterCount()).split('\n');
  EXPECT_TRUE(lines[0].contains("LDHX") && lines[0].endsWith(", PC"));
  EXPECT_TRUE(lines[2].endsWith(", breakpoint"));
  ClickInProgram(kTextColumn, 1);
  EXPECT_EQ(text->cursorPosition(), lines[0].size() + 1);

  const int height = program().cell().height;
  const QPointF at(50, 50);
  QWheelEvent wheel(at, program().viewport()->mapToGlobal(at), {}, {0, 120}, Qt::NoButton,
                    Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(program().viewport(), &wheel);
  Choose(commands::kLargerText);
  EXPECT_GT(program().cell().height, height);
  Quit();
  Start();
  EXPECT_TRUE(window().findChild<QAction*>("command41011")->isChecked());
  EXPECT_GT(program().cell().height, height);
}

TEST_F(Desktop, EditsCodeStepsItAndSeesTheRegisterRed) {
  Start();
  OnDialog("CBDlgEdit", [](QDialog& dialog) {
    Field(dialog, "text").setText("0100");
    Push(dialog, "ok");
  });
  Press(Qt::Key_G, Qt::ControlModifier);
  ASSERT_EQ(RowOf(kScratch), 0);
  OnDialog("DlgEdit", [](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Edit at 000100");
    Field(dialog, "text").setText("no instruction");
    EXPECT_FALSE(dialog.findChild<QLabel*>("refusal")->isVisible());
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(dialog.findChild<QLabel*>("refusal")->text().startsWith("NO is no instruction"));
    Field(dialog, "text").setText("LDA #5a");
    Push(dialog, "ok");
  });
  ClickInProgram(kTextColumn, 0, true);
  EXPECT_EQ(debugger().monitor.ReadByte(kScratch), 0xA6);
  EXPECT_NE(program().view().Lines()[0].text.find("LDA"), std::string::npos);

  Choose(commands::kPopupSetPc);
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(debugger().frame.PC, kScratch + 2);
  EXPECT_EQ(debugger().frame.A, 0x5Au);
  const auto at = [this](int cell) { return session().registers.PositionOf(cell); };
  EXPECT_GT(RedPixels(registers(), at(3).column * 11, at(3).row, 11), 0) << "A";
  EXPECT_EQ(RedPixels(registers(), at(1).column * 11, at(1).row, 11), 0) << "SP";
}

TEST_F(Desktop, EditsARegisterByTypingAndResets) {
  Start();
  const base::Address reset_pc = debugger().frame.PC;
  window().area().setActiveSubWindow(window().Children(kRegistersKind).front());
  registers().setFocus();
  OnDialog("DlgEdit", [](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "EDIT: PC");
    QTest::qWait(10);
    QTest::keyClicks(&Field(dialog, "text"), "123");
    EXPECT_EQ(Field(dialog, "text").text(), "0123") << "typing goes on after the first key";
    QTest::keyClick(&Field(dialog, "text"), Qt::Key_Return);
  });
  Press(Qt::Key_0);
  EXPECT_EQ(debugger().frame.PC, 0x0123u);
  // Over the name of A, while PC is the selected one.
  OnDialog("DlgEdit", [](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "EDIT: A");
    Push(dialog, "cancel");
  });
  const views::CellPosition a = session().registers.PositionOf(3);
  QTest::mouseDClick(
      registers().viewport(), Qt::LeftButton, {},
      {(a.column * 11 + 3) * registers().cell().width, a.row * registers().cell().height + 2});
  EXPECT_EQ(debugger().frame.ReadFramePC(), 0x0123u);

  Press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(debugger().frame.PC, reset_pc);
}

TEST_F(Desktop, StaysUsableWhileTheTargetRuns) {
  Start();
  const auto lines_before = program().view().Lines();
  Press(Qt::Key_F7);
  RunFor(50);
  EXPECT_EQ(Status(), "COM1 simulated MC68HC908GP32: running");
  EXPECT_EQ(window().findChild<QAction*>("button344")->text(), "Break  F7");
  EXPECT_FALSE(window().findChild<QAction*>("button341")->isEnabled());
  // Neither a step nor scrolling nor loading may disturb the running program.
  Press(Qt::Key_F5);
  EXPECT_TRUE(window().statusBar()->currentMessage().contains("press Break"));
  QTest::keyClick(&program(), Qt::Key_PageDown);
  window().LoadFile(Example("demo.s19"));
  RunFor(50);
  EXPECT_FALSE(debugger().monitor.LinkError());
  EXPECT_TRUE(debugger().Busy());
  EXPECT_EQ(program().view().Lines().front().address, lines_before.front().address);

  Press(Qt::Key_F7);
  Settle();
  EXPECT_TRUE(Status().contains(": stopped, user's break at "));
  EXPECT_EQ(window().statusBar()->currentMessage(), "") << "true no more";
  EXPECT_GE(RowOf(debugger().frame.PC), 0);
}

TEST_F(Desktop, ABreakpointIsNoticedWhileADialogIsOpen) {
  Start();
  ClickInProgram(2, 2);
  const base::Address address = program().view().Lines()[2].address;
  OnDialog("PROGRANGE", [&](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Configure program range");
    Settle();
    EXPECT_EQ(debugger().frame.PC, address);
    Push(dialog, "cancel");
  });
  Press(Qt::Key_F7);
  Choose(commands::kProgramRange);
}

TEST_F(Desktop, ReStartBringsBackEverythingAfterTheCableWasPulled) {
  Start();
  const int row = 1;
  const base::Address address = program().view().Lines()[row].address;
  ClickInProgram(2, row);
  session().simulated()->SetFaultPlan({{.kind = simulator::FaultKind::CutLine}});
  Press(Qt::Key_F5);
  QTest::qWait(200);
  EXPECT_TRUE(Status().contains("link lost")) << qPrintable(Status());
  EXPECT_TRUE(Status().contains("ReStart"));

  Reconnect();
  EXPECT_TRUE(debugger().breakpoints.Has(address));
  EXPECT_TRUE(program().view().Lines()[row].has_breakpoint);
}

TEST_F(Desktop, FindsItsWindowsWhereTheyWere) {
  Start();
  window().resize(900, 620);
  window().Open(kProgramKind);
  const QRect first(30, 140, 500, 300);
  const QRect second(200, 60, 450, 250);
  window().Children(kProgramKind)[0]->setGeometry(first);
  window().Children(kProgramKind)[1]->setGeometry(second);
  window().Children(kRegistersKind).front()->setGeometry(5, 5, 300, 90);
  window().Open(kDataKind, {0x12, 129}).setGeometry(first);
  Choose(commands::kSaveSettings);
  Choose(commands::kSaveOnExit);
  // Not saved, as the setting for that is off now, save where data windows stand.
  window().Children(kProgramKind)[0]->setGeometry(first.translated(50, 50));
  static_cast<DataWindow&>(*window().active_view()).view().GoToDataAddress(0x0140);
  QTest::qWait(20);
  window().close();
  Quit();

  Start();
  EXPECT_EQ(window().size(), QSize(900, 620));
  ASSERT_EQ(window().Children(kProgramKind).size(), 2u);
  EXPECT_EQ(window().Children(kProgramKind)[0]->geometry(), first);
  EXPECT_EQ(window().Children(kProgramKind)[1]->geometry(), second);
  EXPECT_EQ(window().Children(kRegistersKind).front()->geometry(), QRect(5, 5, 300, 90));
  ASSERT_EQ(window().Children(kDataKind).size(), 1u);
  EXPECT_EQ(window().Children(kDataKind)[0]->geometry(), first);
  EXPECT_EQ(static_cast<TextView*>(window().Children(kDataKind)[0]->widget())->Attributes(),
            (workspace::WindowAttributes{0x14, 129}));
  window().Children(kRegistersKind).front()->close();
  EXPECT_TRUE(window().Children(kRegistersKind).front()->isVisible())
      << "the registers cannot be closed";
  window().Children(kProgramKind)[0]->close();
  QTest::qWait(10);
  EXPECT_EQ(session().program_views.views().size(), 1u);
}

TEST_F(Desktop, ReloadsAnImageThatIsNewerOnce) {
  UseToolChain(symbols::ToolChain::Introl);  // which leaves nothing beside an image
  Start();
  const auto image = folder_ / "count.s19";
  const auto write = [&](const char* record, int seconds) {
    std::ofstream(image) << record << "\nS9030100FB\n";
    const auto now = std::filesystem::last_write_time(image);
    std::filesystem::last_write_time(image, now + std::chrono::seconds(seconds));
  };
  write("S10501001122C6", 0);
  window().LoadFile(image.string());
  EXPECT_EQ(debugger().monitor.ReadByte(kScratch), 0x11);

  write("S1050100445560", 100);
  const auto activate = [this] {
    QEvent event(QEvent::WindowActivate);
    QApplication::sendEvent(&window(), &event);
    QTest::qWait(30);
  };
  activate();
  EXPECT_EQ(debugger().monitor.ReadByte(kScratch), 0x44);
  debugger().monitor.WriteByte(kScratch, 0x99);
  activate();
  EXPECT_EQ(debugger().monitor.ReadByte(kScratch), 0x99) << "loaded already";

  // A running program is left alone, and the user is told.
  constexpr base::Address kDemoInFlash = 0x8000;
  debugger().frame.WriteProgramCounter(kDemoInFlash);
  Press(Qt::Key_F7);
  RunFor(50);
  write("S105010066771C", 200);
  activate();
  EXPECT_TRUE(debugger().Busy());
  EXPECT_TRUE(window().statusBar()->currentMessage().contains("has changed"));
  Press(Qt::Key_F7);
  Settle();
  activate();
  EXPECT_EQ(debugger().monitor.ReadByte(kScratch), 0x66);
}

TEST_F(Desktop, NothingStartsWhileSomethingElseIsUnderWay) {
  Start();
  const base::Address before = debugger().frame.PC;
  session().gate.Run([&] {
    Press(Qt::Key_F5);
    Press(Qt::Key_F7);
    window().close();
    QTest::qWait(30);
  });
  EXPECT_EQ(debugger().frame.PC, before);
  EXPECT_FALSE(debugger().Busy());
  EXPECT_TRUE(window().isVisible());
}

TEST_F(Desktop, OffersEveryCommandThatIsBuiltAndNoOther) {
  Start();
  for (const workspace::CommandRow& row : workspace::CommandRows()) {
    if (row.menu == workspace::Menu::None) continue;
    const bool offered = window().findChild<QAction*>(QString("command%1").arg(row.id)) != nullptr;
    EXPECT_EQ(offered, IsBuilt(row.id)) << row.id;
  }
  std::set<int> acted;
  for (const auto group : {FileActions(), RunActions(), ProgramActions(), DataActions(),
                           SourceActions(), WindowActions()}) {
    for (const CommandAction& action : group) {
      EXPECT_NE(workspace::FindCommand(action.id), nullptr) << action.id;
      EXPECT_TRUE(acted.insert(action.id).second) << action.id;
    }
  }
  EXPECT_TRUE(window().findChild<QAction*>("button345")->isVisible());
  EXPECT_TRUE(window().findChild<QAction*>("button341")->isEnabled()) << "does what Step does";
}

}  // namespace
}  // namespace brevant::gui
