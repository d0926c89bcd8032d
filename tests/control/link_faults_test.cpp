// SPDX-License-Identifier: MIT
// Faults on the wire in the middle of everything that run control does.
#include <functional>

#include "control/bench.h"

namespace brevant::control {
namespace {

using simulator::FaultKind;

class LinkFaultsTest : public Bench {
 protected:
  void Act(int operation) {
    if (operation == 0) {
      run.StepCommand(true);
    } else if (operation == 1) {
      run.RunToAddress(0x0152);
    } else {
      run.Go();
      Tick(2);
      run.Stop();
    }
    Tick(3);
  }
  void ExpectFrozen() {
    target.board().ClearHostLog();
    const base::Address pc = frame.PC;
    run.StepCommand(true);
    run.Go();
    Tick(3);
    EXPECT_EQ(run.Stop(), StopResult::LinkLost);
    EXPECT_EQ(Commands(), "");
    EXPECT_EQ(frame.PC, pc);
  }
};

TEST_F(LinkFaultsTest, FreezeWhateverIsUnderWayUntilAConnectionStartsAfresh) {
  PointIrqVectorToMonitor();
  for (const FaultKind kind :
       {FaultKind::CutLine, FaultKind::LoseHostByte, FaultKind::DropLocalEcho,
        FaultKind::DropMonitorEcho, FaultKind::FlipEcho, FaultKind::FlipHostByte,
        FaultKind::LoseReply, FaultKind::ExtraByte, FaultKind::DelayByte, FaultKind::ResetMcu}) {
    for (int n = 0; n < 6 * 12; ++n) {
      const int operation = n % 3, at = n / 6 * 5;
      state.HardwareBreakMode = n % 6 < 3;
      SCOPED_TRACE(base::Format("fault %d in operation %d at byte %d", static_cast<int>(kind),
                                operation, at));
      breakpoints.Clear();
      breakpoints.AddBreakpoint(0x0170);
      Program(0x0150, {0x9D, 0x9D, 0x20, 0xFE});
      target.SetFaultPlan({{.kind = kind, .at_host_byte = static_cast<std::uint64_t>(at)}});
      Act(operation);
      if (link.LinkError) ExpectFrozen();

      target.SetFaultPlan({});
      Connect();
      run.AbandonRunForReset();
      EXPECT_FALSE(link.LinkError || state.Busy() || state.RunningShown);
      EXPECT_FALSE(breakpoints.StepPlanted());
      Program(0x0150, {0x9D, 0x9D});
      run.StepCommand(true);
      EXPECT_EQ(frame.PC, 0x0151u);
      if (HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace brevant::control
