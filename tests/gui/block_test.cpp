// SPDX-License-Identifier: MIT
// Writing blocks of memory from the windows: filled and moved in the background.
#include <QAction>
#include <QClipboard>
#include <QMessageBox>
#include <QScrollBar>
#include <QStatusBar>
#include <QTreeWidget>

#include "base/files.h"
#include "base/text_number.h"
#include "gui/data_window.h"
#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;
using ByteList = std::vector<std::uint8_t>;

class Block : public Desktop {
 protected:
  // The window in which a person would choose the command.
  void OpenData(base::Address address) {
    Press(Qt::Key_D, Qt::AltModifier);
    data().view().GoToDataAddress(address);
    QTest::qWait(30);
  }
  DataWindow& data() {
    return *static_cast<DataWindow*>(window().Children(kDataKind).front()->widget());
  }
  // As the board holds it, past everything that the host has kept.
  ByteList Peek(base::Address first, std::size_t count) {
    ByteList bytes;
    for (std::size_t i = 0; i < count; ++i) {
      bytes.push_back(session().simulated()->board().mcu().Peek(
          static_cast<std::uint16_t>(first + static_cast<base::Address>(i))));
    }
    return bytes;
  }
  // Types into the fields of the next dialog of that name, in their order, and chooses Ok.
  void Fill(const QString& dialog, const std::vector<const char*>& texts) {
    OnDialog(dialog, [texts](QDialog& open) {
      for (const char* const text : texts) {
        QWidget* const field = open.focusWidget();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Tab);
      }
      Push(open, "ok");
      EXPECT_FALSE(open.isVisible()) << qPrintable(open.objectName());
    });
  }
  QDialog* Progress() { return window().findChild<QDialog*>("UpdateDlg"); }
  bool Ends() {
    return QTest::qWaitFor([this] { return !debugger().Busy() && Progress() == nullptr; });
  }
  QString Notice() { return window().statusBar()->currentMessage(); }
};

TEST_F(Block, AFillIsCancelledInItsMiddleAndSaysHowFarItGot) {
  Start();
  OpenData(0x0101);
  session().simulated()->board().Load(0x0100, ByteList(0x100, 0x11));
  OnDialog("FILLDLG", [this](QDialog& fill) {
    EXPECT_EQ(Field(fill, "from").text(), "000100") << "the cell under the cursor";
    // One field after the other is wrong; nothing is written and the dialog stays.
    struct Case {
      const char *from, *to, *value;
    };
    for (const Case& c : {Case{"", "1ff", "0"}, Case{"100", "1g0", "0"}, Case{"100", "1ff", ""},
                          Case{"100", "10000", "0"}, Case{"7f00", "8001", "0"}}) {
      Field(fill, "from").setText(c.from);
      Field(fill, "to").setText(c.to);
      Field(fill, "value").setText(c.value);
      QTest::keyClick(&fill, Qt::Key_Return);
      EXPECT_TRUE(fill.isVisible()) << c.from << ' ' << c.to << ' ' << c.value;
    }
    EXPECT_FALSE(debugger().Busy());
    Field(fill, "from").setText("1ff");
    Field(fill, "to").setText("100");
    Field(fill, "value").setText("");
    QTest::keyClicks(&Field(fill, "value"), "abcdef");
    QTest::keyClick(&fill, Qt::Key_Return);
  });
  Choose(commands::kDataFill);
  ASSERT_TRUE(debugger().Busy());
  ASSERT_NE(Progress(), nullptr);
  EXPECT_EQ(Progress()->windowTitle(), "Fill memory");
  for (int slices = 0; slices < 3; ++slices) window().Tick();
  // Nothing else gets at the target meanwhile.
  for (const int command : {commands::kGo, commands::kStep, commands::kDataMove}) {
    window().Send(command);
    EXPECT_TRUE(Notice().contains("being written")) << command;
  }
  QTest::keyClick(&data(), Qt::Key_7);
  OnDialog("message", [](QDialog& message) {
    EXPECT_EQ(static_cast<QMessageBox&>(message).text(),
              "Cancelled before its end.\n\n0100 to 015f were written and read back.");
    message.accept();
  });
  Push(*Progress(), "cancel");
  EXPECT_FALSE(debugger().Busy());
  EXPECT_EQ(Peek(0x015E, 4), (ByteList{0xAB, 0xCD, 0x11, 0x11}));
  EXPECT_TRUE(Ends());
  EXPECT_TRUE(data().TextLines().front().startsWith("000100 abcd abcd"));
}

TEST_F(Block, OverlappingMovesArriveAsTheyWere) {
  Start();
  OpenData(0x0100);
  ByteList block(0x80);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<std::uint8_t>(3 * i + 1);
  for (const auto& [from, to] : {std::pair("100", "108"), std::pair("108", "100")}) {
    const base::Address source = base::ParseHex(from);
    session().simulated()->board().Load(source, block);
    debugger().memory.DropAll();
    const std::string last = base::Format("%x", source + 0x7F);
    Fill("MOVEDLG", {from, last.c_str(), to});
    Choose(commands::kDataMove);
    EXPECT_TRUE(Ends());
    EXPECT_EQ(Peek(base::ParseHex(to), block.size()), block) << from;
    EXPECT_TRUE(Notice().endsWith("were written and read back.")) << qPrintable(Notice());
  }
}

TEST_F(Block, ALostLinkOrAResetSaysUpToWhereAndNothingHangs) {
  Start();
  OpenData(0x0100);
  Fill("FILLDLG", {"100", "1ff", "5a5a"});
  Choose(commands::kDataFill);
  window().Tick();
  session().simulated()->SetFaultPlan(
      {{.kind = simulator::FaultKind::CutLine, .at_host_byte = 30}});
  QString text;
  const auto read_message = [&text](QDialog& message) {
    text = static_cast<QMessageBox&>(message).text();
    message.accept();
  };
  OnDialog("message", read_message);
  EXPECT_TRUE(Ends());
  EXPECT_TRUE(text.contains("0100 to 011f were written and read back.")) << qPrintable(text);
  EXPECT_TRUE(text.contains("What 0120 to 013f hold could not be looked at")) << qPrintable(text);
  EXPECT_TRUE(Status().contains("link lost"));
  Reconnect();

  Fill("FILLDLG", {"100", "1ff", "a5a5"});
  Choose(commands::kDataFill);
  window().Tick();
  OnDialog("message", read_message);
  Choose(commands::kReset);
  EXPECT_TRUE(Ends());
  EXPECT_TRUE(text.contains("0100 to 011f were written and read back.")) << qPrintable(text);
}

TEST_F(Block, ACopyIsEditedAndPastedBack) {
  Start();
  OpenData(0x0100);
  session().simulated()->board().Load(0x0100, ByteList{0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC});
  debugger().memory.DropAll();
  QClipboard& clipboard = *QGuiApplication::clipboard();
  Fill("COPYTOCLIP", {"103", "100"});
  Press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard.text(), "1234\r\n5678\r\n");
  EXPECT_EQ(window().windowTitle(), "No File Loaded");

  clipboard.setText(clipboard.text().replace("5678", "FACE") + "0007\r\n");
  OnDialog("PASTEFROMCLIP", [](QDialog& paste) {
    for (const char* const wrong : {"", "12g", "fffe", "8000"}) {
      Field(paste, "address").setText(wrong);
      Push(paste, "ok");
      EXPECT_TRUE(paste.isVisible()) << wrong;
    }
    Field(paste, "address").setText("121");
    Push(paste, "ok");
  });
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Peek(0x0120, 6), (ByteList{0x12, 0x34, 0xFA, 0xCE, 0x00, 0x07}));
  EXPECT_EQ(Notice(), "0120 to 0125 were written and read back.");

  // An editor has made the line ends its own: the first word, then a way out.
  clipboard.setText("aaaa\nbbbb\n");
  Fill("PASTEFROMCLIP", {"140"});
  OnDialog("message", [this](QDialog& message) {
    EXPECT_TRUE(static_cast<QMessageBox&>(message).text().startsWith("Not HEX string\n\nLine 2 "));
    EXPECT_EQ(Peek(0x0140, 1), (ByteList{0xAA}));
    EXPECT_NE(Peek(0x0142, 1), (ByteList{0xBB}));
    Push(message, "offer1");
  });
  Choose(commands::kPasteFromClipboard);
  EXPECT_EQ(Peek(0x0140, 4), (ByteList{0xAA, 0xAA, 0xBB, 0xBB}));
  clipboard.clear();
  Fill("PASTEFROMCLIP", {"140"});
  OnDialog("message", [](QDialog& message) {
    EXPECT_EQ(static_cast<QMessageBox&>(message).text(), "Not correct format");
    message.accept();
  });
  Choose(commands::kPasteFromClipboard);
}

TEST_F(Block, ACopyOnALostLinkLeavesTheClipboardAlone) {
  Start();
  QGuiApplication::clipboard()->setText("kept");
  session().simulated()->SetFaultPlan(
      {{.kind = simulator::FaultKind::CutLine, .at_host_byte = 200}});
  Fill("COPYTOCLIP", {"100", "1ff"});
  OnDialog("message", [](QDialog& message) {
    EXPECT_TRUE(static_cast<QMessageBox&>(message).text().contains("the clipboard is as it was"));
    message.accept();
  });
  Choose(commands::kCopyToClipboard);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "kept");
  EXPECT_EQ(window().windowTitle(), "No File Loaded");
}

TEST_F(Block, ASavedFileIsComparedAndADifferenceIsJumpedTo) {
  Start();
  const std::string path = (folder_ / "ram.bin").string();
  const ByteList before = Peek(0x0100, 0x100);
  Fill("SAVEMEMORY", {"1ff", "100"});
  ChooseInDialog(path);
  Choose(commands::kSaveMemory);
  EXPECT_TRUE(Notice().startsWith("256 bytes from 0100 on were saved")) << qPrintable(Notice());
  const std::string saved = base::ReadFile(path).text;
  EXPECT_EQ(ByteList(saved.begin(), saved.end()), before);

  const auto compare = [&] {
    ChooseInDialog(path);
    Fill("PLACEOFFILE", {"100"});
    Choose(commands::kCompareFile);
  };
  QString text;
  const auto read_message = [&text](QDialog& message) {
    text = static_cast<QMessageBox&>(message).text();
    message.accept();
  };
  OnDialog("message", read_message);
  compare();
  EXPECT_TRUE(text.startsWith("All 256 bytes of")) << qPrintable(text);

  const auto other = static_cast<std::uint8_t>(before[0x55] ^ 0xFF);
  session().simulated()->board().Load(0x0155, ByteList{other});
  debugger().memory.DropAll();
  compare();
  auto* const dialog = window().findChild<QDialog*>("COMPARE");
  ASSERT_NE(dialog, nullptr);
  auto* const list = dialog->findChild<QTreeWidget*>("differences");
  ASSERT_EQ(list->topLevelItemCount(), 1);
  EXPECT_EQ(list->topLevelItem(0)->text(0), "0155");
  EXPECT_EQ(list->topLevelItem(0)->text(2), Text(base::Format("%02x", other)));
  QTest::keyClick(list, Qt::Key_Return);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(data().view().CursorCellAddress() & ~1U, 0x0154u) << "in a window of its own";
  dialog->reject();

  session().simulated()->SetFaultPlan(
      {{.kind = simulator::FaultKind::CutLine, .at_host_byte = 100}});
  OnDialog("message", read_message);
  compare();
  EXPECT_TRUE(text.contains("The target does not answer")) << qPrintable(text);
  Reconnect();
  session().simulated()->SetFaultPlan(
      {{.kind = simulator::FaultKind::CutLine, .at_host_byte = 100}});
  Fill("SAVEMEMORY", {"100", "1ff"});
  ChooseInDialog(path + "2.s19");
  OnDialog("message", read_message);
  Choose(commands::kSaveMemory);
  EXPECT_TRUE(text.contains("no file was written")) << qPrintable(text);
  EXPECT_FALSE(std::filesystem::exists(path + "2.s19"));
}

TEST_F(Block, AScrollRangeHoldsForAllOpenWindows) {
  Start();
  OpenData(0x0000);
  Press(Qt::Key_D, Qt::AltModifier);
  OnDialog("PROGRANGE", [](QDialog& range) {
    EXPECT_EQ(range.windowTitle(), "Configure data range");
    EXPECT_EQ(Field(range, "text").text(), "010000");
    Field(range, "text").setText("24x");
    Push(range, "ok");
    EXPECT_TRUE(range.isVisible());
    Field(range, "text").setText("40");
    Push(range, "ok");
  });
  Choose(commands::kDataRange);
  QTest::qWait(30);
  for (ChildWindow* const child : window().Children(kDataKind)) {
    EXPECT_EQ(static_cast<TextView*>(child->widget())->TextLines().size(), 4);
  }
  EXPECT_EQ(session().settings.StringInFile(base::keys::kDataRange), "40");
  Fill("PROGRANGE", {"1000"});
  Choose(commands::kProgramRange);
  QTest::qWait(30);
  EXPECT_EQ(program().verticalScrollBar()->maximum(), 0x1000);
}

}  // namespace
}  // namespace brevant::gui
