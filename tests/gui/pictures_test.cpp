// SPDX-License-Identifier: MIT
// Draws the pictures of the guide: every window and dialog, on a light desktop and on a dark one.
// Run by scripts/pictures, which says in BREVANT_PICTURES where they go.
#include <QAction>
#include <QApplication>
#include <QMdiArea>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleFactory>
#include <QTabWidget>
#include <filesystem>
#include <fstream>

#include "gui/desktop.h"
#include "gui/help_window.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

struct DialogPicture {
  const char* dialog;
  int command;
  const char* end;  // the button that leaves it
};
// Those that a command opens at once.
constexpr DialogPicture kDialogs[] = {
    {"LookHWDlg", commands::kReStart, "cancel"},
    {"ConfigDlg", commands::kConfigure, "ok"},
    {"SymTabDlg", commands::kSymbolTableStart, "cancel"},
    {"PROGRANGE", commands::kProgramRange, "cancel"},
    {"NSTEPDLG", commands::kNStep, "cancel"},
    {"COPYTOCLIP", commands::kCopyToClipboard, "cancel"},
    {"SAVEMEM", commands::kSaveMemory, "cancel"},
    {"FEEPROM", commands::kProgramFlash, "cancel"},
    {"FEEPERASE", commands::kEraseFlash, "cancel"},
    {"PROGLOCATION", commands::kProgramLocations, "cancel"},
};

struct PicturesTest : Desktop, testing::WithParamInterface<bool> {
  bool dark() const { return GetParam(); }

  void SetUp() override {
    Desktop::SetUp();
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QPalette palette(dark() ? QColor(45, 45, 48) : QColor(239, 239, 239));
    if (dark()) {
      palette.setColor(QPalette::Base, QColor(30, 30, 30));
      palette.setColor(QPalette::Text, QColor(220, 220, 220));
      palette.setColor(QPalette::WindowText, QColor(220, 220, 220));
      palette.setColor(QPalette::ButtonText, QColor(220, 220, 220));
      palette.setColor(QPalette::Link, QColor(100, 160, 255));
    }
    QApplication::setPalette(palette);
  }
  void TearDown() override {
    Desktop::TearDown();
    QApplication::setPalette(QPalette());
  }

  void Draw(QWidget& widget, const QString& name) {
    const QString folder = qEnvironmentVariable("BREVANT_PICTURES");
    QTest::qWait(50);
    EXPECT_TRUE(
        widget.grab().save(folder + '/' + name + (dark() ? "-dark.png" : "-light.png"), "PNG"))
        << qPrintable(name);
  }
  void DrawDialog(const DialogPicture& picture) {
    OnDialog(picture.dialog, [this, &picture](QDialog& dialog) {
      Draw(dialog, picture.dialog);
      Push(dialog, picture.end);
    });
    Choose(picture.command);
  }
  void DrawWindow(const WindowKind& kind, QSize size) {
    ChildWindow& child = window().Open(kind);
    child.resize(size);
    child.move(0, 0);
    QTest::qWait(50);
    static_cast<TextView*>(child.widget())->ShowChanges();
    Draw(child, child.widget()->objectName());
    if (!kind.Permanent()) child.close();
  }
};

TEST_P(PicturesTest, DISABLED_OfEveryWindowAndDialog) {
  ASSERT_FALSE(qEnvironmentVariableIsEmpty("BREVANT_PICTURES"));
  UseToolChain(symbols::ToolChain::Sdcc);
  for (const char* const name : {"blink.s19", "blink.cdb", "blink.map", "blink.c"})
    std::filesystem::copy_file(Example(name), folder_ / name);
  Start();
  window().resize(900, 620);
  window().LoadFile((folder_ / "blink.s19").string());
  debugger().run_control.RunToAddress(
      *debugger().debug_info.SymbolTable.FindSymbolAddress("_show"));
  Settle();
  window().Refresh();
  Draw(window(), "main-window");
  for (const WindowKind& kind : WindowKinds()) DrawWindow(kind, {620, 300});
  for (const DialogPicture& picture : kDialogs) DrawDialog(picture);
  Choose(commands::kHelpContents);
  Draw(*window().findChild<HelpWindow*>(), "HelpWindow");
}

INSTANTIATE_TEST_SUITE_P(Desktops, PicturesTest, testing::Bool());

}  // namespace
}  // namespace brevant::gui
