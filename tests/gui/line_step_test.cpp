// SPDX-License-Identifier: MIT
// Steps by lines and the call stack by key and mouse, on a recursive program of SDCC.
#include "gui/call_stack_window.h"

#include <QMdiArea>

#include "gui/desktop.h"
#include "gui/source_window.h"
#include "images/image_file.h"
#include "symbols/places.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class LineStepTest : public Desktop {
 protected:
  void StartInRecursion() {
    UseToolChain(symbols::ToolChain::Sdcc);
    Start();
    const std::string image = std::string(BREVANT_TEST_DATA) + "/programs/recursion.s19";
    for (const images::Block& block : images::ReadImageFile(image).ToImage().Blocks()) {
      session().simulated()->board().Load(block.address, block.bytes);
    }
    window().LoadFile(image);
    Choose(commands::kReset);
    Press(Qt::Key_S, Qt::AltModifier);
    Press(Qt::Key_A, Qt::AltModifier);
    debugger().breakpoints.AddBreakpoint(
        *symbols::FindPlace("recursion.c:42", debugger().debug_info).address);
    for (int n = 0; n < 3; ++n) {
      Press(Qt::Key_F7);
      Settle();
    }
    debugger().breakpoints.Clear();
  }
  CallStackWindow& calls() {
    return *static_cast<CallStackWindow*>(window().Children(kCallsKind).front()->widget());
  }
  SourceWindow& source() {
    return *static_cast<SourceWindow*>(window().Children(kSourceKind).front()->widget());
  }
  int PcLine() {
    for (const views::SourceRow& row : source().view().Rows()) {
      if (row.is_pc) return row.number;
    }
    return 0;
  }
};

TEST_F(LineStepTest, KeysStepByLinesAndTheCallStackFollows) {
  StartInRecursion();
  const QStringList deep{"#0 sum_to at recursion.c:42", "#1 sum_to at recursion.c:42",
                         "#2 sum_to at recursion.c:42", "#3 main at recursion.c:57"};
  EXPECT_EQ(calls().TextLines(), deep);
  Press(Qt::Key_F11);
  Settle();
  EXPECT_EQ(calls().TextLines().size(), 5) << "one deeper";
  EXPECT_EQ(PcLine(), 40) << "behind what the function does on entry";
  Press(Qt::Key_F11, Qt::ShiftModifier);
  Settle();
  EXPECT_EQ(calls().TextLines(), deep) << "back in the line of the call";
  Press(Qt::Key_F10);
  Settle();
  EXPECT_EQ(PcLine(), 43);

  // A click shows where a caller stands, without going there.
  const base::Address pc = debugger().frame.PC;
  QTest::mouseClick(calls().viewport(), Qt::LeftButton, {}, {5, 3 * calls().cell().height + 2});
  EXPECT_EQ(source().view().state().top + source().view().state().cursor + 1, 57);
  EXPECT_EQ(debugger().frame.PC, pc);

  // In the source window a step is one of lines; elsewhere an instruction.
  source().setFocus();
  window().area().setActiveSubWindow(window().Children(kSourceKind).front());
  Press(Qt::Key_F5);
  Settle();
  EXPECT_GT(debugger().line_step.moves(), 0);
  EXPECT_EQ(PcLine(), 42) << "in the caller";
  window().area().setActiveSubWindow(window().Children(kProgramKind).front());
  const base::Address before = debugger().frame.PC;
  Press(Qt::Key_F5);
  Settle();
  EXPECT_LE(debugger().frame.PC - before, 4u);
}

}  // namespace
}  // namespace brevant::gui
