// SPDX-License-Identifier: MIT
// Faults on the wire in the middle of everything that run control does.
#include <functional>

#include "control/bench.h"

namespace brevant::control {
namespace {

using simulator::FaultKind;

struct Operation {
  const char* name;
  std::function<void()> act;
};

class LinkFaultsTest : public Bench {
 protected:
  LinkFaultsTest() { PointIrqVectorToMonitor(); }
  void Start(bool hardware, const Operation& operation, FaultKind kind, std::uint64_t at) {
    state.HardwareBreakMode = hardware;
    breakpoints.Clear();
    breakpoints.AddBreakpoint(0x0170);
    Program(0x0150, {0x9D, 0x9D, 0x20, 0xFE});
    target.SetFaultPlan({{.kind = kind, .at_host_byte = at}});
    operation.act();
    Tick(3);
  }
  void ExpectFreshStartAfterConnecting() {
    target.SetFaultPlan({});
    Connect();
    run.AbandonRunForReset();
    EXPECT_FALSE(link.LinkError || state.Busy() || state.RunningShown);
    EXPECT_FALSE(breakpoints.StepPlanted());
    Program(0x0150, {0x9D, 0x9D});
    run.StepCommand(true);
    EXPECT_EQ(frame.PC, 0x0151u);
  }
  const std::vector<Operation> operations{
      {"step", [this] { run.StepCommand(true); }},
      {"run to", [this] { run.RunToAddress(0x0152); }},
      {"go and stop",
       [this] {
         run.Go();
         Tick(2);
         run.Stop();
       }},
  };
};

TEST_F(LinkFaultsTest, ACutLineFreezesWhateverIsUnderWayUntilTheNextConnection) {
  for (const bool hardware : {true, false}) {
    for (const Operation& operation : operations) {
      for (std::uint64_t at = 0; at < 60; at += 3) {
        SCOPED_TRACE(base::Format("%s, cut at %d", operation.name, static_cast<int>(at)));
        Start(hardware, operation, FaultKind::CutLine, at);
        if (link.LinkError) {
          target.board().ClearHostLog();
          const base::Address pc = frame.PC;
          run.StepCommand(true);
          run.Go();
          Tick(3);
          EXPECT_EQ(run.Stop(), StopResult::LinkLost);
          EXPECT_EQ(Commands(), "");
          EXPECT_EQ(frame.PC, pc);
        }
        ExpectFreshStartAfterConnecting();
      }
    }
  }
}

TEST_F(LinkFaultsTest, AnyOtherFaultEndsAndAConnectionStartsAfresh) {
  for (const FaultKind kind :
       {FaultKind::LoseHostByte, FaultKind::DropLocalEcho, FaultKind::DropMonitorEcho,
        FaultKind::FlipEcho, FaultKind::FlipHostByte, FaultKind::LoseReply, FaultKind::ExtraByte,
        FaultKind::DelayByte, FaultKind::ResetMcu}) {
    for (const bool hardware : {true, false}) {
      for (const Operation& operation : operations) {
        for (std::uint64_t at = 1; at < 60; at += 7) {
          SCOPED_TRACE(base::Format("%s, fault %d at %d", operation.name, static_cast<int>(kind),
                                    static_cast<int>(at)));
          Start(hardware, operation, kind, at);
          ExpectFreshStartAfterConnecting();
          if (HasFailure()) return;
        }
      }
    }
  }
}

TEST_F(LinkFaultsTest, AStopWithoutAPortIsALostLink) {
  Program(0x0150, {0x20, 0xFE});
  run.Go();
  Tick();
  target.Close();
  EXPECT_EQ(run.Stop(), StopResult::LinkLost);
  EXPECT_EQ(state.RunMode, Mode::Running);
}

}  // namespace
}  // namespace brevant::control
