// SPDX-License-Identifier: MIT
// The File I/O menu.
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <fstream>
#include <iterator>

#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

// input; output; BRA 0150
const std::vector<std::uint8_t> kCopying{0xFC, 0x9D, 0x7C, 0x9D, 0x20, 0xFA};

class FileIoTest : public Desktop {
 protected:
  void StartAtSlots() {
    Start();
    session().simulated()->board().Load(0x0150, kCopying);
    window().CarryOut([this] {
      debugger().memory.DropAll();
      debugger().frame.SetPC(0x0150);
      program().view().GoToAddress(0x0150);
    });
    std::ofstream(Path("in.txt")) << "5\n6\n7\n";
  }
  std::string Path(const char* name) { return (folder_ / name).string(); }
  std::string Text(const char* name) {
    std::ifstream file(Path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  QAction& Item(int id) { return *window().findChild<QAction*>(QString("command%1").arg(id)); }
  void ReadMessage() {
    OnDialog("message", [this](QDialog& message) {
      said_ = message.findChild<QLabel*>("qt_msgbox_label")->text();
      message.accept();
    });
  }
  // Types the name, and checks the box.
  void Bind(int command, int row, const std::string& path) {
    ClickInProgram(20, row);
    OnDialog("FILEIODLG", [path](QDialog& dialog) {
      Field(dialog, "fileName").setText(QString::fromStdString(path));
      dialog.findChild<QCheckBox*>("enabled")->click();
      Push(dialog, "ok");
    });
    Choose(command);
  }
  std::uint8_t Peek(std::uint16_t address) {
    return session().simulated()->board().mcu().Peek(address);
  }
  QString said_;
};

TEST_F(FileIoTest, CopiesAFileByMenu) {
  StartAtSlots();
  ReadMessage();
  Choose(commands::kFileIoStart);
  EXPECT_EQ(said_, "Please setup input or output file first");
  ClickInProgram(20, 0);
  ReadMessage();
  Choose(commands::kFileIoOut);
  EXPECT_TRUE(said_.startsWith("Use STD EXT instruction only"));
  EXPECT_EQ(Item(commands::kFileIoOut).text(), "&OutFile");

  OnDialog("FILEIODLG", [this](QDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Get FileI/O input file name");
    EXPECT_FALSE(dialog.findChild<QCheckBox*>("enabled")->isChecked());
    Field(dialog, "fileName").setText("none.txt");
    ReadMessage();
    Push(dialog, "ok");
    EXPECT_EQ(said_, "   Can not open file none.txt   ");
    EXPECT_TRUE(dialog.isVisible());
    ChooseInDialog(Path("in.txt"));
    Push(dialog, "browse");
    EXPECT_EQ(Field(dialog, "fileName").text().toStdString(), Path("in.txt"));
    dialog.findChild<QCheckBox*>("enabled")->click();
    Push(dialog, "ok");
  });
  Choose(commands::kFileIoIn);
  EXPECT_EQ(Item(commands::kFileIoIn).text(), "&Infile");
  EXPECT_TRUE(Item(commands::kFileIoIn).isChecked());
  Bind(commands::kFileIoOut, 2, Path("out.txt"));
  EXPECT_TRUE(Item(commands::kFileIoOut).isChecked());

  ReadMessage();
  Choose(commands::kFileIoStart);
  Settle();
  EXPECT_TRUE(said_.contains("at its end: 3 numbers read, 3 written"));
  EXPECT_EQ(Text("out.txt"), "5\n6\n7\n");
  EXPECT_TRUE(Status().contains("end of file I/O, 3 numbers read")) << qPrintable(Status());
}

TEST_F(FileIoTest, HasTheTargetUntilGoEndsIt) {
  StartAtSlots();
  session().simulated()->board().Load(0x0154, std::vector<std::uint8_t>{0x20, 0xFE});  // BRA *
  Bind(commands::kFileIoIn, 0, Path("in.txt"));
  Choose(commands::kFileIoStart);
  RunFor(50);
  EXPECT_TRUE(Status().contains("running, file I/O: 1 numbers read")) << qPrintable(Status());
  QAction& go = *window().findChild<QAction*>(QString("button%1").arg(commands::kToolbarGo));
  EXPECT_EQ(go.text(), "Break  F7");
  EXPECT_FALSE(Item(commands::kFileIoStart).isEnabled());
  EXPECT_EQ(Item(commands::kFileIoStart).text(), "&Start");
  EXPECT_TRUE(program().TextLines().value(0).contains("****"));
  const long stops = debugger().run_control.stops();
  for (const int ignored : {commands::kStep, commands::kToolbarTrace, commands::kOpenData}) {
    window().Send(ignored);
  }
  Press(Qt::Key_F5);
  EXPECT_EQ(debugger().run_control.stops(), stops);
  EXPECT_TRUE(window().Children(kDataKind).empty());
  Press(Qt::Key_F7);
  EXPECT_FALSE(debugger().Busy() || debugger().activity.FileIoActive());
  EXPECT_EQ(go.text(), "Go  F7");
  EXPECT_TRUE(Item(commands::kFileIoStart).isEnabled());
  EXPECT_EQ(Peek(0x0150), 0xFC);
  QTest::qWait(30);
  EXPECT_FALSE(program().TextLines().value(0).contains("****"));
  Choose(commands::kFileIoStop);
  EXPECT_EQ(debugger().run_control.stops(), stops + 1) << "it is over already";

  // Cancelling takes the file out; its name is offered again, also the next time.
  ClickInProgram(20, 0);
  OnDialog("FILEIODLG", [](QDialog& dialog) { Push(dialog, "cancel"); });
  Choose(commands::kFileIoIn);
  EXPECT_FALSE(Item(commands::kFileIoIn).isChecked());
  Quit();
  Start();
  EXPECT_EQ(debugger().file_io.binding(control::FileSide::Input).file_name, Path("in.txt"));
  EXPECT_FALSE(debugger().file_io.binding(control::FileSide::Input).enabled);
  EXPECT_EQ(Item(commands::kFileIoIn).text(), "&InFile");
}

}  // namespace
}  // namespace brevant::gui
