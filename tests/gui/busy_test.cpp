// SPDX-License-Identifier: MIT
// The windows while the engine is at work: what scrolling costs, what shows meanwhile, and that
// nothing else can start.
#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QWheelEvent>
#include <fstream>

#include "gui/desktop.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

// What one line costs in bytes of the host: an address, then a command for every two bytes.
constexpr std::size_t kForwardCost = 3 + 2;
constexpr std::size_t kBackwardCost = 3 + 12;

class Busy : public Desktop {
 protected:
  simulator::Board& board() { return session().simulated()->board(); }
  // Host bytes that what is done costs.
  template <typename Act>
  std::size_t CostOf(const Act& act) {
    board().ClearHostLog();
    act();
    QTest::qWait(30);
    return board().host_log().size();
  }
  // An image of so many bytes in RAM, for which the wire needs some 10 ms each.
  std::string ImageOf(int bytes) {
    const std::string path = (folder_ / "image.s19").string();
    std::ofstream file(path);
    constexpr int kBytesARecord = 16;
    for (int at = 0; at < bytes; at += kBytesARecord) {
      const int address = 0x0100 + at;
      int sum = kBytesARecord + 3 + (address >> 8) + (address & 0xFF);
      file << base::Format("S1%02X%04X", kBytesARecord + 3, address);
      for (int i = 0; i < kBytesARecord; ++i) file << "9D";
      sum += kBytesARecord * 0x9D;
      file << base::Format("%02X\n", ~sum & 0xFF);
    }
    return path;
  }
};

// Counts how often a widget is painted.
class PaintCounter final : public QObject {
 public:
  explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

TEST_F(Busy, ScrollsSixtyLinesForTheCostOfOne) {
  Start();
  const int height = program().cell().height;
  window().resize(900, 64 * height + 200);
  QMdiSubWindow* const child = window().Children(kProgramKind).front();
  child->setGeometry(0, 0, 600, 60 * height + child->height() - program().viewport()->height());
  QTest::qWait(30);
  ASSERT_EQ(program().view().state().lineCount, 60);

  const auto key = [this](Qt::Key k) { return [this, k] { QTest::keyClick(&program(), k); }; };
  EXPECT_LE(CostOf(key(Qt::Key_Down)), kForwardCost);
  EXPECT_LE(CostOf(key(Qt::Key_Up)), kBackwardCost);
  QScrollBar& bar = *program().verticalScrollBar();
  EXPECT_LE(CostOf([&] { bar.triggerAction(QAbstractSlider::SliderSingleStepAdd); }), kForwardCost);
  const QPointF at(50, 50);
  QWheelEvent wheel(at, program().viewport()->mapToGlobal(at), {}, {0, -120}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  EXPECT_LE(CostOf([&] { QApplication::sendEvent(program().viewport(), &wheel); }),
            3 * kForwardCost);
  // Neither the cursor nor a breakpoint nor covering the window makes it read again.
  EXPECT_EQ(CostOf([this] {
              ClickInProgram(12, 30);
              ClickInProgram(2, 30);
              program().viewport()->update();
            }),
            0u);
}

TEST_F(Busy, ShowsProgressMeanwhileAndTakesNoOtherCommand) {
  UseToolChain(symbols::ToolChain::Introl);
  pace_ = simulator::Pace::Wire;
  Start();
  const base::Address before = debugger().frame.PC;
  PaintCounter painted(*program().viewport());
  int painted_at_progress = 0;
  OnDialog("progress", [&](QDialog& progress) {
    painted_at_progress = painted.count;
    EXPECT_EQ(progress.windowTitle(), "Loading File...");
    for (const int command : {commands::kStep, commands::kGo, commands::kReset}) {
      window().Send(command);
    }
    QTest::qWait(100);
    Push(progress, "cancel");
  });
  window().LoadFile(ImageOf(256));
  EXPECT_GT(painted_at_progress, 0);
  EXPECT_FALSE(debugger().Busy());
  EXPECT_EQ(debugger().frame.PC, before);
  EXPECT_NE(debugger().monitor.ReadByte(0x01FF), 0x9D) << "cancelled before the end";
  EXPECT_EQ(window().findChild<QDialog*>("progress"), nullptr);
}

TEST_F(Busy, ClosesAsSoonAsTheCommandHasEnded) {
  Start();
  session().gate.Run([&] {
    window().close();
    QTest::qWait(50);
    EXPECT_TRUE(window().isVisible());
  });
  EXPECT_TRUE(QTest::qWaitFor([this] { return !window().isVisible(); }));
}

TEST_F(Busy, ACableThatIsPulledWhileAProgramRunsShowsWhenItIsStopped) {
  Start();
  Press(Qt::Key_F7);
  RunFor(50);
  session().simulated()->SetFaultPlan({{.kind = simulator::FaultKind::CutLine}});
  RunFor(50);
  OnDialog("message", [](QDialog& message) { message.accept(); });
  Press(Qt::Key_F7);
  QTest::qWait(200);
  EXPECT_TRUE(Status().contains("link lost")) << qPrintable(Status());
  // Nothing that is asked of the dead link changes what is said, or hangs.
  OnDialog("message", [](QDialog& message) { message.accept(); });
  Press(Qt::Key_F5);
  QTest::keyClick(&program(), Qt::Key_PageDown);
  QTest::qWait(50);
  EXPECT_TRUE(Status().contains("ReStart"));
  Reconnect();
  EXPECT_GE(RowOf(debugger().frame.PC), 0);
}

}  // namespace
}  // namespace brevant::gui
