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
#include "gui/dialog_rows.h"
#include "gui/help_window.h"
#include "views/watch_file.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

constexpr const char* kConfigurePages[] = {"ConfigDlg", "ConfigDlg-macros", "ConfigDlg-misc",
                                           "ConfigDlg-font"};

struct PicturesTest : Desktop, testing::WithParamInterface<bool> {
  bool dark() const { return GetParam(); }

  void SetUp() override {
    Desktop::SetUp();
    // What titles show is the same at each run.
    std::filesystem::remove_all(folder_);
    folder_ = std::filesystem::temp_directory_path() / "blink";
    std::filesystem::create_directories(folder_);
    std::filesystem::current_path(folder_);
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
  static void Close(ChildWindow& child) {
    child.close();
    QTest::qWait(30);
  }
  // So that its windows have something to show.
  void Trace() {
    debugger().trace.Start(60);
    Settle();
    window().Tick();
    for (const WindowKind* const kind : {&kTraceKind, &kProgramKind}) {
      for (ChildWindow* const child : window().Children(*kind)) Close(*child);
    }
  }
  void DrawDialog(const DialogRow& picture) {
    ChildWindow* const child = picture.in == nullptr ? nullptr : &window().Open(*picture.in);
    if (child != nullptr) window().area().setActiveSubWindow(child);
    QTest::qWait(30);
    OnDialog(picture.dialog, [this, &picture](QDialog& dialog) {
      Draw(dialog, picture.dialog);
      dialog.reject();
    });
    Choose(picture.command);
    if (child != nullptr) Close(*child);
  }
  void DrawConfiguration() {
    OnDialog("ConfigDlg", [this](QDialog& dialog) {
      dialog.findChild<QRadioButton*>("sdcc")->click();
      auto& tabs = *dialog.findChild<QTabWidget*>("tabs");
      for (int page = 0; page < tabs.count(); ++page) {
        tabs.setCurrentIndex(page);
        Draw(dialog, kConfigurePages[page]);
      }
      Push(dialog, "ok");
    });
    Choose(commands::kConfigure);
  }
  void DrawWindow(const WindowKind& kind) {
    ChildWindow& child = window().Open(kind);
    if (!kind.Permanent()) child.resize(640, 320);
    if (&kind == &kWatchKind)
      session().watch.Assign(views::LoadWatchFile("blink.cfg", debugger().debug_info).items);
    RunFor(100);
    // The first of what unfolds.
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up}) {
      if (&kind == &kChipKind) QTest::keyClick(child.widget(), key);
    }
    QTest::qWait(50);
    Draw(child, child.widget()->objectName());
    if (!kind.Permanent()) Close(child);
  }
};

TEST_P(PicturesTest, DISABLED_OfEveryWindowAndDialog) {
  ASSERT_FALSE(qEnvironmentVariableIsEmpty("BREVANT_PICTURES"));
  UseToolChain(symbols::ToolChain::Sdcc);
  for (const char* const name : {"blink.s19", "blink.cdb", "blink.map", "blink.c"})
    std::filesystem::copy_file(Example(name), folder_ / name);
  std::ofstream("blink.cfg") << "[watch]\nnwatch=3\nws0=_ticks@DWU0000@000000\n\n"
                                "ws1=_shown@BBU0000@000000\n\nws2=_round@HBS0000@000000\n\n";
  Start();
  session().program_views.SetRange(views::ProgramScrollRange("FFFF"));
  window().resize(900, 620);
  window().LoadFile((folder_ / "blink.s19").string());
  debugger().run_control.RunToAddress(
      *debugger().debug_info.SymbolTable.FindSymbolAddress("_show"));
  Settle();
  window().Refresh();
  Draw(window(), "main-window");
  Trace();
  for (const WindowKind& kind : WindowKinds()) DrawWindow(kind);
  for (const DialogRow& picture : kDialogs) DrawDialog(picture);
  DrawConfiguration();
  Choose(commands::kHelpContents);
  Draw(*window().findChild<HelpWindow*>(), "HelpWindow");
}

INSTANTIATE_TEST_SUITE_P(Desktops, PicturesTest, testing::Bool());

}  // namespace
}  // namespace brevant::gui
