// SPDX-License-Identifier: MIT
// The watch window by key and mouse.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QRadioButton>
#include <fstream>

#include "base/files.h"
#include "gui/data_window.h"
#include "gui/desktop.h"
#include "gui/variables_window.h"
#include "gui/watch_window.h"
#include "images/image_file.h"
#include "symbols/places.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr base::Address kWatched = 0x0180;  // in RAM

class Watch : public Desktop {
 protected:
  void Open() {
    Start();
    Choose(commands::kOpenWatch);
    debugger().memory.WriteBytes(kWatched,
                                 std::vector<std::uint8_t>{0x12, 0x34, 0x56, 0x78, 'h', 'i', 0});
  }
  WatchWindow& watch() {
    return *static_cast<WatchWindow*>(window().Children(kWatchKind).front()->widget());
  }
  // Opens the dialog with the key, fills its fields and leaves it by Ok.
  void Add(const char* symbol, const char* address, std::vector<const char*> choices,
           const char* length = "") {
    OnDialog("WATCHDLGADD", [=](QDialog& dialog) {
      EXPECT_EQ(dialog.windowTitle(), "Add watch");
      QTest::keyClicks(dialog.findChild<QComboBox*>("symbol")->lineEdit(), symbol);
      if (*address != '\0') Field(dialog, "address").setText(address);
      Field(dialog, "length").setText(length);
      for (const char* const choice : choices) Check(dialog, choice);
      Push(dialog, "ok");
    });
    Press(Qt::Key_Insert);
  }
  static void Check(QDialog& dialog, const char* name) {
    dialog.findChild<QRadioButton*>(name)->click();
  }
  // What the window shows, a line each.
  QString Lines() { return watch().TextLines().join('\n'); }
  void Edit(const QString& shown, const QString& typed) {
    OnDialog("DlgEdit", [=](QDialog& dialog) {
      EXPECT_EQ(Field(dialog, "text").text(), shown);
      Field(dialog, "text").setText(typed);
      Push(dialog, "ok");
    });
    Press(Qt::Key_Return);
  }
  void ExpectMessage(const QString& text) {
    OnDialog("message", [text](QDialog& dialog) {
      EXPECT_EQ(static_cast<QMessageBox&>(dialog).text(), text);
      dialog.accept();
    });
  }
  std::string FileText(const char* name) { return base::ReadFile(folder_ / name).text; }
};

TEST_F(Watch, VariablesAreAddedShownAndEdited) {
  Open();
  EXPECT_EQ(Lines(), "Nothing is watched: Insert adds a variable.");
  Add("", "180", {"byte"});
  EXPECT_EQ(Lines(), "      180(H)*12");
  Add("temp", "180", {"decimal", "long", "unsigned"});
  EXPECT_EQ(Lines(), "      180(H)*12\n     TEMP(D)*305419896");
  Press(Qt::Key_Down);
  Add("", "181", {"binary", "byte"});
  Press(Qt::Key_Down);
  Add("", "184", {"string"}, "3");
  EXPECT_EQ(Lines(),
            "      180(H)*12\n     TEMP(D)*305419896\n      181(B)*00110100\n"
            "      184(S)*hi\u00B7");
  Press(Qt::Key_Up);
  EXPECT_TRUE(watch().CursorText().startsWith("0180 TEMP: unsigned long"));
  Edit("12345678", "ffffffff");
  EXPECT_EQ(debugger().memory.AskByte(kWatched + 3), 0xFF);
  EXPECT_EQ(watch().TextLines()[1], "     TEMP(D)*4294967295, changed");
  EXPECT_GT(RedPixels(watch(), views::kWatchLabelWidth, 1, 10), 0);
  EXPECT_EQ(RedPixels(watch(), 0, 1, 10), 0);
  Press(Qt::Key_End);
  Edit("hi\1", "ab");
  std::vector<std::uint8_t> bytes(3);
  debugger().memory.AskBytes(bytes, kWatched + 4);
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{'a', 'b', 0}));
  // Clicking and double-clicking do the same.
  const views::CellSize cell = watch().cell();
  const QPoint first(cell.width * 20, cell.height / 2);
  QTest::mouseClick(watch().viewport(), Qt::LeftButton, {}, first);
  OnDialog("DlgEdit", [](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "EDIT: 180");
    Field(dialog, "text").setText("xy");
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible()) << "no number";
    Field(dialog, "text").setText("7");
    Push(dialog, "ok");
  });
  QTest::mouseDClick(watch().viewport(), Qt::LeftButton, {}, first);
  EXPECT_EQ(debugger().memory.AskByte(kWatched), 7);
}

TEST_F(Watch, TheDialogRefusesAndModifies) {
  Open();
  OnDialog("WATCHDLGADD", [](QDialog& dialog) {
    Check(dialog, "string");
    Push(dialog, "ok");
    EXPECT_TRUE(Field(dialog, "length").hasFocus() || dialog.isVisible());
    Field(dialog, "length").setText("2");
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible()) << "no address";
    QLineEdit& symbol = *dialog.findChild<QComboBox*>("symbol")->lineEdit();
    QTest::keyClicks(&symbol, "a_name_that_goes_on_and_on");
    EXPECT_EQ(symbol.text(), "A_NAME_THAT_GOES");
    Push(dialog, "cancel");
  });
  Press(Qt::Key_Insert);
  EXPECT_EQ(session().watch.count(), 0);
  Add("count", "180", {"decimal", "byte"});
  OnDialog("WATCHDLGADD", [](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Modify Setting");
    EXPECT_EQ(dialog.findChild<QComboBox*>("symbol")->currentText(), "COUNT");
    EXPECT_EQ(Field(dialog, "address").text(), "180");
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("decimal")->isChecked());
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("signed")->isChecked());
    Check(dialog, "hex");
    Check(dialog, "word");
    Push(dialog, "ok");
  });
  Choose(commands::kWatchModify);
  EXPECT_EQ(Lines(), "    COUNT(H)*1234");
  // 35 and no more.
  while (session().watch.count() < views::WatchTable::kMost) {
    session().watch.Insert(session().watch.items().front());
  }
  ExpectMessage("Can not add any more");
  Press(Qt::Key_Insert);
  EXPECT_EQ(session().watch.count(), 35);
}

TEST_F(Watch, EntriesMoveAndGoByKey) {
  Open();
  for (const char* const address : {"180", "181", "182"}) {
    Add("", address, {"byte"});
    Press(Qt::Key_Down);
  }
  Press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(Lines(), "      180(H)*12\n      182(H)*56\n      181(H)*34");
  Press(Qt::Key_Down, Qt::AltModifier);
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Lines(), "      181(H)*34\n      182(H)*56");
  // The popup says what can be done.
  const auto enabled = [this](int command) {
    return window().findChild<QAction*>(QString("command%1").arg(command))->isEnabled();
  };
  const auto pop_up = [this] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, watch().mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(watch().viewport(), &event);
    auto* const popup = window().findChild<QMenu*>("WatchMenu");
    EXPECT_TRUE(popup->isVisible());
    popup->close();
  };
  pop_up();
  EXPECT_FALSE(enabled(commands::kWatchMoveUp));
  EXPECT_TRUE(enabled(commands::kWatchMoveDown) && enabled(commands::kWatchEdit));
  Press(Qt::Key_Delete);
  Press(Qt::Key_Delete);
  Press(Qt::Key_Delete);
  pop_up();
  EXPECT_FALSE(enabled(commands::kWatchEdit) || enabled(commands::kWatchDelete) ||
               enabled(commands::kWatchMoveDown));
  // In other windows these keys are theirs.
  Add("", "180", {"byte"});
  window().Open(kDataKind);
  Press(Qt::Key_Delete);
  EXPECT_EQ(session().watch.count(), 1);
}

TEST_F(Watch, TheListStaysWithItsProgram) {
  UseToolChain(symbols::ToolChain::Sdcc);
  std::filesystem::copy(Example("demo.s19"), folder_ / "demo.s19");
  std::filesystem::copy(Example("demo.map"), folder_ / "demo.map");
  std::filesystem::copy(Example("demo.cdb"), folder_ / "demo.cdb");
  std::ofstream(folder_ / "demo.cfg") << "[watch]\nnwatch=1\nws0=_start@HWU0000@000001\n";
  Open();
  Add("", "180", {"byte"});
  EXPECT_NE(base::ReadFile(folder_ / "demo.cfg").text.find("_start"), std::string::npos)
      << "no program is loaded: the list is kept in memory";
  window().LoadFile((folder_ / "demo.s19").string());
  EXPECT_TRUE(Lines().startsWith("   _start(H) ")) << qPrintable(Lines());
  EXPECT_TRUE(session().watch.items()[0].resolved);
  Add("", "180", {"byte"});
  EXPECT_NE(FileText("demo.cfg").find("ws1=180@HBS"), std::string::npos);
  // Saved elsewhere, emptied, and opened again.
  ChooseInDialog((folder_ / "other.cfg").string());
  Choose(commands::kWatchSave);
  EXPECT_NE(FileText("other.cfg").find("nwatch=2"), std::string::npos);
  Press(Qt::Key_Delete);
  Press(Qt::Key_Delete);
  EXPECT_NE(FileText("demo.cfg").find("nwatch=0"), std::string::npos);
  ChooseInDialog((folder_ / "other.cfg").string());
  Choose(commands::kWatchOpen);
  EXPECT_EQ(session().watch.count(), 2);
  // Closing the window keeps the list; the window starts with a new one.
  window().Children(kWatchKind).front()->close();
  QTest::qWait(30);
  EXPECT_EQ(session().watch.count(), 2);
  window().Open(kDataKind);
  Choose(commands::kDataAddToWatch);
  EXPECT_EQ(session().watch.count(), 3) << "added to the list that was kept";
  window().Children(kWatchKind).front()->close();
  QTest::qWait(30);
  Choose(commands::kOpenWatch);
  EXPECT_EQ(session().watch.count(), 0);
  EXPECT_TRUE(Lines().startsWith("demo.cfg holds 3")) << qPrintable(Lines());
}

TEST_F(Watch, ComesBackToItsPlace) {
  Start();
  Choose(commands::kOpenWatch);
  const QRect place(40, 30, 400, 150);
  window().Children(kWatchKind).front()->setGeometry(place);
  Choose(commands::kSaveSettings);
  EXPECT_EQ(session().settings.Integer(base::keys::kWatchOpen), 1);
  window().Children(kWatchKind).front()->close();
  QTest::qWait(30);
  Choose(commands::kOpenWatch);
  EXPECT_EQ(window().Children(kWatchKind).front()->geometry(), place);
  Choose(commands::kOpenWatch);
  EXPECT_EQ(window().Children(kWatchKind).size(), 1u);
  Quit();
  Start();
  ASSERT_EQ(window().Children(kWatchKind).size(), 1u);
  EXPECT_EQ(window().Children(kWatchKind).front()->windowTitle(), "Watch");
}

// A program of SDCC's in flash, stopped at a function of it.
class WatchC : public Watch {
 protected:
  void RunTo(const char* function) {
    UseToolChain(symbols::ToolChain::Sdcc);
    Start();
    const std::string image = std::string(BREVANT_TEST_DATA) + "/programs/structs.s19";
    for (const images::Block& block : images::ReadImageFile(image).ToImage().Blocks()) {
      session().simulated()->board().Load(block.address, block.bytes);
    }
    window().LoadFile(image);
    ASSERT_TRUE(debugger().debug_info.DebugInfoLoaded);
    Choose(commands::kReset);
    const auto found = symbols::FindPlace(function, debugger().debug_info);
    debugger().run_control.RunToAddress(*found.address);
    Settle();
    ASSERT_EQ(debugger().frame.PC, *found.address);
    // Lists beside the test's programs are not to be written.
    session().recent_files = {};
  }
  static QPoint CellAt(TextView& view, int column, int row) {
    const views::CellSize cell = view.cell();
    return {column * cell.width + cell.width / 2, row * cell.height + cell.height / 2};
  }
};

TEST_F(WatchC, StructuresAreAddedByNameAndUnfold) {
  RunTo("done");
  Choose(commands::kOpenWatch);
  OnDialog("WATCHDLGADD", [](QDialog& dialog) {
    auto& symbol = *dialog.findChild<QComboBox*>("symbol");
    EXPECT_GE(symbol.findText("_sum_y"), 0);
    QTest::keyClicks(symbol.lineEdit(), "_sum_y");
    EXPECT_EQ(symbol.currentText(), "_SUM_Y");
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("word")->isChecked());
    symbol.lineEdit()->clear();
    QTest::keyClicks(symbol.lineEdit(), "points[1].x");
    EXPECT_EQ(symbol.currentText(), "POINTS[1].x");
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("byte")->isChecked());
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("unsigned")->isChecked());
    Push(dialog, "ok");
  });
  Press(Qt::Key_Insert);
  EXPECT_EQ(Lines(), "POINTS[1](H) 04");
  Edit("04", "7f");
  EXPECT_EQ(Lines(), "POINTS[1](H) 7f, changed");
  Add("segment", "", {});
  EXPECT_EQ(watch().TextLines()[1].left(13), "  SEGMENT(C)+");
  QTest::mouseClick(watch().viewport(), Qt::LeftButton, {}, CellAt(watch(), 12, 1));
  QTest::qWait(30);
  EXPECT_EQ(watch().TextLines().mid(2).join('\n'),
            "  + from = {x = 1, y = -1}\n  + to = {x = 16, y = -4}");
  Press(Qt::Key_Down);
  Press(Qt::Key_Right);
  QTest::qWait(30);
  EXPECT_EQ(watch().TextLines()[3], "      x = 1");
  Press(Qt::Key_Return);
  EXPECT_TRUE(window().status().toolTip().contains("no value of its own")) << "a structure";
  Press(Qt::Key_Down);
  Edit("1", "points[1].x - 0x7a");
  EXPECT_EQ(watch().TextLines()[3], "      x = 5, changed");
  Choose(commands::kWatchAsC);
  EXPECT_EQ(watch().TextLines()[0].left(16), "POINTS[1](C) 127");
  EXPECT_EQ(session().settings.Integer(base::keys::kWatchAsC), 1);
}

TEST_F(WatchC, VariablesAreShownUnfoldedAndChanged) {
  RunTo("done");
  Press(Qt::Key_V, Qt::AltModifier);
  auto& variables =
      *static_cast<VariablesWindow*>(window().Children(kVariablesKind).front()->widget());
  QTest::qWait(30);
  EXPECT_EQ(variables.TextLines()[0], "done: parameters and locals: none");
  const auto row_of = [&](const char* start) {
    const QStringList lines = variables.TextLines();
    for (int row = 0; row < lines.size(); ++row) {
      if (lines[row].startsWith(start)) return row;
    }
    ADD_FAILURE() << start << " is not in\n" << qPrintable(lines.join('\n'));
    return 0;
  };
  const int row = row_of("  sum_y = -10");
  for (int i = 0; i < row; ++i) Press(Qt::Key_Down);
  Edit("-10", "1 + 2");
  EXPECT_EQ(variables.TextLines()[row], "  sum_y = 3, changed");
  EXPECT_TRUE(variables.CursorText().endsWith("int sum_y = 3"))
      << qPrintable(variables.CursorText());
  OnDialog("DlgEdit", [](QDialog& dialog) {
    Field(dialog, "text").setText("nothing");
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.findChild<QLabel*>("refusal")->text(), "there is no nothing");
    Push(dialog, "cancel");
  });
  Press(Qt::Key_Return);
  const int points = row_of("+ points");
  QTest::mouseClick(variables.viewport(), Qt::LeftButton, {},
                    CellAt(variables, 0, points - variables.view().top()));
  QTest::qWait(30);
  EXPECT_EQ(variables.TextLines()[points + 4], "  + [3] = {x = 16, y = -4}");
}

}  // namespace
}  // namespace brevant::gui
