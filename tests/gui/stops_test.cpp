// SPDX-License-Identifier: MIT
// Why the target has stopped, in the status bar; and the data window, which follows each stop.
#include <gtest/gtest.h>

#include <QTest>

#include "gui/data_window.h"
#include "gui/desktop.h"
#include "gui/main_window.h"
#include "gui/status_text.h"
#include "workspace/command_rows.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class Stops : public Desktop {
 protected:
  // The program in RAM, with PC at its start.
  void Put(const std::vector<std::uint8_t>& program) {
    session().gate.Run([&] {
      debugger().memory.WriteBytes(0x0100, program);
      debugger().frame.SetPC(0x0100);
      session().FollowEngine();
    });
  }
  void ExpectReason(const char* reason) {
    Settle();
    EXPECT_TRUE(Status().endsWith(reason)) << Status().toStdString() << " and not " << reason;
  }
};

TEST_F(Stops, AreExplainedInTheStatusBar) {
  Start();
  Press(Qt::Key_R, Qt::ControlModifier);
  ExpectReason(": stopped, reset, PC at 8000");
  Put({0x4C, 0x9D, 0x83, 0x20, 0xFE});  // INCA; NOP; SWI; BRA *
  Press(Qt::Key_F5);
  ExpectReason(": stopped, step done at 0101");
  debugger().breakpoints.AddBreakpoint(0x0102);
  Press(Qt::Key_F7);
  ExpectReason(": stopped, breakpoint at 0102");
  debugger().breakpoints.Clear();
  Press(Qt::Key_F7);
  ExpectReason(": stopped, SWI of the program before 0103");
  Press(Qt::Key_F7);
  RunFor(100);
  EXPECT_TRUE(Status().endsWith(": running"));
  Press(Qt::Key_F7);
  ExpectReason(": stopped, user's break at 0103");
  Put({0x4C, 0x4C, 0x4C});
  session().gate.Run([&] { debugger().run_control.RunToAddress(0x0102); });
  ExpectReason(": stopped, reached 0102");
  session().simulated()->SetFaultPlan({{simulator::FaultKind::CutLine, 0}});
  Press(Qt::Key_F5);
  RunFor(200);
  EXPECT_TRUE(Status().contains("link lost"));
  // What only a damaged target does.
  ConnectionState damaged;
  damaged.device = "x";
  damaged.stop = base::Stop{base::StopReason::NotRecovered, 0x100, {}};
  EXPECT_NE(StatusText(damaged).find("damaged stack"), std::string::npos);
}

TEST_F(Stops, AreFollowedByADataWindow) {
  Start();
  Press(Qt::Key_D, Qt::AltModifier);
  auto* const data = window().findChild<DataWindow*>("MDI_Data");
  ASSERT_NE(data, nullptr) << "Alt+D opens one";
  const auto line = [data](std::size_t n) { return data->view().lines().at(n).text; };
  ASSERT_FALSE(data->view().lines().empty());
  EXPECT_EQ(line(0).substr(0, 7), "000000 ");
  for (int i = 0; i < 40; ++i) QTest::keyClick(data, Qt::Key_PageDown);
  for (int i = 0; i < 40; ++i) QTest::keyClick(data, Qt::Key_PageUp);
  QTest::qWait(30);
  EXPECT_EQ(data->view().state().topLine, 0);

  // Down to $0100 by keys, then a step that writes there.
  while (data->view().CursorCellAddress() < 0x0120) {
    QTest::keyClick(data, Qt::Key_Down);
    QTest::qWait(15);
  }
  Put({0xC7, 0x01, 0x20});  // STA $0120
  session().gate.Run([&] { debugger().frame.WriteA(0x5E); });
  Press(Qt::Key_F5);
  Settle();
  const auto& lines = data->view().lines();
  const auto shown = std::ranges::find(lines, 0x0120u, &views::DataLine::address);
  ASSERT_NE(shown, lines.end());
  EXPECT_EQ(shown->text.substr(7, 2), "5e");
  // What changes past the debugger is seen when the user asks for it.
  session().simulated()->board().mcu().Poke(0x0120, 0x77);
  Choose(commands::kRefresh);
  EXPECT_EQ(std::ranges::find(data->view().lines(), 0x0120u, &views::DataLine::address)
                ->text.substr(7, 2),
            "77");
}

}  // namespace
}  // namespace brevant::gui
