// SPDX-License-Identifier: MIT
// The window onto the registers of the MCU by key and mouse.
#include <QMenu>

#include "gui/chip_window.h"
#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class Chip : public Desktop {
 protected:
  void Open() {
    Start();
    Choose(commands::kOpenChip);
    QTest::qWait(30);
  }
  ChipWindow& chip() {
    return *static_cast<ChipWindow*>(window().Children(kChipKind).front()->widget());
  }
  // Puts the cursor on the line that begins so.
  void MoveTo(const char* start) {
    Press(Qt::Key_Home);
    const QStringList lines = chip().TextLines();
    for (const QString& line : lines) {
      if (line.trimmed().startsWith(start)) return;
      Press(Qt::Key_Down);
    }
    FAIL() << start << " is not in\n" << qPrintable(lines.join('\n'));
  }
  QString Line() { return chip().TextLines()[chip().TextCursorLine()]; }
  void Unfold(const char* start) {
    MoveTo(start);
    Press(Qt::Key_Right);
    QTest::qWait(30);
  }
};

TEST_F(Chip, PortsAreSetByTheirDirectionAndData) {
  Open();
  EXPECT_EQ(chip().TextLines()[0], "+ Ports");
  Unfold("+ Ports");
  const auto set = [&](const char* name, const char* shown, const char* typed) {
    MoveTo(name);
    OnDialog("DlgEdit", [=](QDialog& dialog) {
      EXPECT_EQ(Field(dialog, "text").text(), shown);
      Field(dialog, "text").setText(typed);
      Push(dialog, "ok");
    });
    Press(Qt::Key_Return);
    QTest::qWait(30);
  };
  set("+ DDRB", "00", "0f");
  EXPECT_TRUE(Line().startsWith("  + DDRB         0f %00001111  port B direction, 1: output"))
      << qPrintable(Line());
  EXPECT_TRUE(Line().endsWith(", changed"));
  Unfold("+ DDRB");
  set("0 ", "1", "0");
  EXPECT_EQ(debugger().memory.AskByte(0x0005), 0x0E);
  EXPECT_TRUE(chip().CursorText().startsWith("0005 DDRB: Ports, port B direction"));
  // By the mark, with the mouse.
  QTest::mouseClick(chip().viewport(), Qt::LeftButton, {}, {1, chip().cell().height / 2});
  QTest::qWait(30);
  EXPECT_EQ(chip().TextLines()[1], "+ SPI");
}

TEST_F(Chip, AKeyReadsWhatChangesOnBeingReadAndTheItemsOfThePopupFitTheRow) {
  Open();
  const auto enabled = [&](int command) { return chip().ItemOf(command)->enabled; };
  EXPECT_FALSE(enabled(commands::kChipEdit)) << "of a group";
  Unfold("+ SIM");
  MoveTo("+ SRSR");
  EXPECT_TRUE(Line().contains("-- (reading it clears"));
  EXPECT_FALSE(enabled(commands::kChipEdit)) << "can only be read";
  EXPECT_TRUE(enabled(commands::kChipReadNow));
  Press(Qt::Key_R);
  QTest::qWait(30);
  EXPECT_TRUE(Line().contains(" %")) << qPrintable(Line());
}

}  // namespace
}  // namespace brevant::gui
