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
      run.StepCommand(Calls::Follow);
    } else if (operation == 1) {
      run.RunToAddress(0x0152);
    } else {
      run.Go();
      Tick(2);
      if (operation == 2) run.Stop();
    }
    Tick(3);
  }
  ByteList Code() {
    ByteList bytes;
    for (base::Address a = 0x0150; a < 0x0155; ++a) bytes.push_back(Peek(a));
    return bytes;
  }
  void ExpectFrozen() {
    target.board().ClearHostLog();
    const base::Address pc = frame.PC;
    EXPECT_TRUE(pc >= 0x0150 && pc < 0x0154) << pc;
    run.StepCommand(Calls::Follow);
    run.Go();
    Tick(3);
    EXPECT_EQ(run.Stop().reason, base::StopReason::LinkLost);
    EXPECT_EQ(Commands(), "");
    EXPECT_EQ(frame.PC, pc);
  }
};

TEST_F(LinkFaultsTest, FreezeWhateverIsUnderWayUntilAConnectionStartsAfresh) {
  PointIrqVectorToMonitor();
  const ByteList code{0x9D, 0x9D, 0x20, 0xFE, 0x4C};
  for (const FaultKind kind :
       {FaultKind::CutLine, FaultKind::LoseHostByte, FaultKind::DropLocalEcho,
        FaultKind::DropMonitorEcho, FaultKind::FlipEcho, FaultKind::FlipHostByte,
        FaultKind::LoseReply, FaultKind::ExtraByte, FaultKind::DelayByte, FaultKind::ResetMcu}) {
    for (int n = 0; n < 8 * 20; ++n) {
      const int operation = n % 4, at = n / 8 * 3;
      UseHardware(n % 8 < 4);
      SCOPED_TRACE(base::Format("fault %d in operation %d at byte %d", static_cast<int>(kind),
                                operation, at));
      breakpoints.Clear();
      breakpoints.AddBreakpoint(operation == 3 ? 0x0151 : 0x0154);
      Program(0x0150, code);
      target.SetFaultPlan({{.kind = kind, .at_host_byte = static_cast<std::uint64_t>(at)}});
      Act(operation);
      if (link.LinkError) ExpectFrozen();

      const ByteList left = Code();
      target.SetFaultPlan({});
      Connect();
      Load(0x0150, left);  // as on a board whose RAM outlives a reset
      run.AbandonRunForReset();
      // What other faults do to the bytes on the wire cannot be known.
      if (kind == FaultKind::CutLine) {
        EXPECT_EQ(Code(), code);
      }
      EXPECT_FALSE(link.LinkError || activity.Busy() || activity.RunningShown());
      EXPECT_FALSE(breakpoints.StepPlanted());
      Program(0x0150, {0x9D, 0x9D});
      run.StepCommand(Calls::Follow);
      EXPECT_EQ(frame.PC, 0x0151u);
      if (HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace brevant::control
