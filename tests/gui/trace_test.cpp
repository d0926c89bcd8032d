// SPDX-License-Identifier: MIT
// The windows onto a trace: its log, and where the cycles went.
#include <QLineEdit>
#include <QStatusBar>
#include <fstream>
#include <iterator>

#include "gui/desktop.h"
#include "gui/profile_window.h"
#include "gui/trace_window.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class TraceTest : public Desktop {
 protected:
  // Four rounds of PSHA; PULA; BRA at 0150.
  void TraceLoop() {
    Start();
    session().simulated()->board().Load(0x0150, std::vector<std::uint8_t>{0x87, 0x86, 0x20, 0xFC});
    window().CarryOut([this] {
      debugger().memory.DropAll();
      debugger().frame.SetPC(0x0150);
      debugger().frame.WriteA(0x5A);
      debugger().trace.Start(12);
    });
    Settle();
  }
  TraceWindow& trace() {
    return *static_cast<TraceWindow*>(window().Children(kTraceKind).front()->widget());
  }
  static void ClickRow(TextView& view, int row) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                      QPoint(view.cell().width, row * view.cell().height + 3));
  }
  QString Notice() { return window().statusBar()->currentMessage(); }
  base::Address TopOfProgram() { return program().view().Lines().front().address; }
};

TEST_F(TraceTest, LeadsToTheCodeOfItsRecords) {
  TraceLoop();
  ASSERT_EQ(trace().view().line_count(), 36);
  ClickRow(trace(), 4);
  EXPECT_EQ(trace().view().cursor(), 4);
  EXPECT_EQ(TopOfProgram(), 0x0151u) << "of whose registers this is the line";
  trace().setFocus();
  Press(Qt::Key_Up);
  Press(Qt::Key_Up);
  EXPECT_EQ(trace().view().cursor(), 2);
  EXPECT_TRUE(trace().CursorText().endsWith("line 3 of 36, writes 00ff=5a"))
      << qPrintable(trace().CursorText());
  Press(Qt::Key_Return);
  EXPECT_EQ(TopOfProgram(), 0x0150u);
}

TEST_F(TraceTest, FindsRoundTheEnd) {
  TraceLoop();
  trace().setFocus();
  const auto search = [this](const char* text) {
    OnDialog("FindDlg", [text](QDialog& dialog) {
      Field(dialog, "text").setText(text);
      Push(dialog, "ok");
    });
    Press(Qt::Key_F, Qt::ControlModifier);
    return trace().view().cursor();
  };
  EXPECT_EQ(search("bra"), 6);
  for (const int next : {15, 24, 33, 6}) {
    Press(Qt::Key_F3);
    EXPECT_EQ(trace().view().cursor(), next);
  }
  EXPECT_TRUE(Notice().contains("from the top")) << qPrintable(Notice());
  EXPECT_EQ(search("JSR"), 6);
  EXPECT_TRUE(Notice().contains("\"JSR\" does not stand in the trace"));
}

TEST_F(TraceTest, GoesOutAsATableAndAsAProfile) {
  TraceLoop();
  trace().setFocus();
  const std::string path = (folder_ / "steps.csv").string();
  ChooseInDialog(path);
  Choose(commands::kTraceExport);
  EXPECT_TRUE(Notice().contains("12 steps written to")) << qPrintable(Notice());
  std::ifstream file(path);
  const std::string csv{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(csv.find("\n12,0152,20 fc,BRA 150,3,28,"), std::string::npos) << csv;

  Choose(commands::kTraceProfile);
  ASSERT_EQ(window().Children(kProfileKind).size(), 1u);
  auto& profile = *static_cast<ProfileWindow*>(window().Children(kProfileKind).front()->widget());
  EXPECT_EQ(profile.TextLines().value(0), "28 cycles in 12 steps");
  EXPECT_TRUE(profile.TextLines().value(3).contains("100.0 %"))
      << qPrintable(profile.TextLines().join('\n'));
  ClickRow(profile, 3);
  EXPECT_EQ(TopOfProgram(), 0x0150u);
}

}  // namespace
}  // namespace brevant::gui
