// SPDX-License-Identifier: MIT
// The Configure menu's dialogs as a user goes through them.
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <fstream>

#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;
namespace keys = base::keys;

class ConfigureTest : public Desktop {
 protected:
  static void Click(QDialog& dialog, const char* name) {
    dialog.findChild<QRadioButton*>(name)->click();
  }
  static void Turn(QDialog& dialog, int tab) {
    dialog.findChild<QTabWidget*>("tabs")->setCurrentIndex(tab);
  }
  // Answers the question whether an untouched Compiler page is to change the tool chain.
  void AnswerToolChain(const QString& button) {
    OnDialog("message", [button](QDialog& dialog) {
      for (auto* const candidate : dialog.findChildren<QPushButton*>()) {
        if (candidate->text().remove('&') == button) return candidate->click();
      }
      ADD_FAILURE() << "no button " << qPrintable(button);
    });
  }
};

TEST_F(ConfigureTest, PagesAreStoredWhenTheyAreLeftAndTheTargetIsReset) {
  UseToolChain(symbols::ToolChain::Sdcc);
  Start();
  debugger().breakpoints.AddBreakpoint(0x0110);
  debugger().run_control.StepCommand(control::Calls::Follow);
  const int before = program().cell().height;
  OnDialog("ConfigDlg", [&](QDialog& dialog) {
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("mcuez")->isChecked());
    EXPECT_EQ(dialog.findChild<QLabel*>("inForce")->text(), "In force: SDCC C compiler");
    Click(dialog, "imagecraft");
    Turn(dialog, 2);
    EXPECT_EQ(session().settings.Integer(keys::kCompiler), 8) << "leaving the tab stores it";
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("hardware")->isChecked());
    Click(dialog, "software");
    Turn(dialog, 3);
    EXPECT_EQ(session().settings.Integer(keys::kHardwareBreak), 0);
    Click(dialog, "courier");
    Click(dialog, "points8");
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("courier")->isChecked());
    // There is no way to leave without storing.
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  Choose(commands::kConfigure);
  EXPECT_EQ(session().settings.Integer(keys::kFont), 24);
  EXPECT_NE(program().cell().height, before);
  EXPECT_EQ(debugger().debug_info.tool_chain, symbols::ToolChain::Imagecraft);
  EXPECT_FALSE(debugger().breakpoints.HardwareBreakMode());
  EXPECT_EQ(debugger().breakpoints.count(), 0);
  EXPECT_EQ(debugger().run_control.last_stop()->reason, base::StopReason::Reset);
}

TEST_F(ConfigureTest, OkAtOnceAsksBeforeItChangesTheToolChain) {
  UseToolChain(symbols::ToolChain::Sdcc);
  Start();
  OnDialog("ConfigDlg", [&](QDialog& dialog) {
    OnDialog("message", [](QDialog& box) { QTest::keyClick(&box, Qt::Key_Return); });
    Push(dialog, "ok");
  });
  Choose(commands::kConfigure);
  EXPECT_EQ(session().settings.Integer(keys::kCompiler), 32) << "Enter leaves what was not chosen";
  OnDialog("ConfigDlg", [&](QDialog& dialog) {
    AnswerToolChain("Yes");
    Push(dialog, "ok");
  });
  Choose(commands::kConfigure);
  EXPECT_EQ(session().settings.Integer(keys::kCompiler), 4);
}

TEST_F(ConfigureTest, TheIntrolDirectoryAndTheStartOfSymbolsAreAskedFor) {
  Start();
  OnDialog("ConfigDlg", [&](QDialog& dialog) {
    OnDialog("INTROLLIBDIR", [&](QDialog& introl) {
      Field(introl, "directory").setText("/opt/introl/libraries");
      Push(introl, "ok");
    });
    Click(dialog, "introl");
    Push(dialog, "ok");
  });
  Choose(commands::kConfigure);
  EXPECT_EQ(session().settings.Integer(keys::kCompiler), 16);
  EXPECT_EQ(session().settings.String(keys::kIntrolLibDir), "/opt/introl/libraries");
  OnDialog("SymTabDlg", [&](QDialog& dialog) {
    Field(dialog, "text").clear();
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    Field(dialog, "text").setText("Symbols");
    Push(dialog, "ok");
  });
  Choose(commands::kSymbolTableStart);
  EXPECT_EQ(session().settings.String(keys::kSymbolTableStart), "Symbols");
}

TEST_F(ConfigureTest, AMacroFileThatCannotBeReadIsSaidAndTheRestIsKept) {
  Start();
  std::ofstream(folder_ / "RESET.MAC") << "DMM.B 40 5A\n";
  OnDialog("ConfigDlg", [&](QDialog& dialog) {
    AnswerToolChain("No");
    Turn(dialog, 1);
    dialog.findChild<QAbstractButton*>("beforeLoad")->click();
    dialog.findChild<QAbstractButton*>("afterReset")->click();
    Field(dialog, "beforeLoadFile").setText("RESET.MAC");
    Field(dialog, "afterResetFile").setText("missing.mac");
    OnDialog("message", [](QDialog& box) {
      EXPECT_TRUE(static_cast<QMessageBox&>(box).text().startsWith("   Can not open "));
      box.accept();
    });
    Push(dialog, "ok");
  });
  Choose(commands::kConfigure);
  EXPECT_EQ(session().settings.Integer(keys::kMacroFlags), 3);
  EXPECT_EQ(session().settings.String(keys::kLoadMacroFile), (folder_ / "RESET.MAC").string());
  EXPECT_EQ(session().settings.String(keys::kResetMacroFile), (folder_ / "RESET.MAC").string())
      << "an empty name becomes the default when the reset macro runs";
  EXPECT_EQ(debugger().memory.ReadByte(0x40), 0x5A) << "and it has run";
}

}  // namespace
}  // namespace brevant::gui
