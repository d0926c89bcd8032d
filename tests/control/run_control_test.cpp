// SPDX-License-Identifier: MIT
#include "control/run_control.h"

#include <functional>

#include "control/bench.h"
#include "control/messages.h"

namespace brevant::control {
namespace {

constexpr std::uint8_t kNOP = 0x9D;
// What is told of a stop was read twice.
constexpr const char* kLookedAgain = " SP R00F9 r r r";

class RunControlTest : public Bench {
 protected:
  void RunEndlessLoop() {
    Program(0x0150, {kNOP, 0x20, 0xFD});
    run.Go();
  }
};

TEST_F(RunControlTest, StepsAndRunsToAnAddressWithExactlyTheseCommands) {
  struct Row {
    bool hardware;
    ByteList program;
    std::function<void()> act;
    const char* commands;
    base::Address pc;
    const char* reason;
  };
  const auto step = [&] { run.StepCommand(Calls::Follow); };
  const auto run_to = [&] { run.RunToCursor(0x0153); };
  const ByteList branch{0x27, 0x04, kNOP, kNOP, kNOP, kNOP, 0x4C}, nops(8, kNOP);
  breakpoints.AddBreakpoint(0x0140);
  Load(0x0140, ByteList{kNOP});
  for (const Row& row : {
           Row{true, branch, step, "R014F r r RFE08 w01 w52 WFE0B=80 RUN SP R00F9 r r r WFE0B=00",
               0x0152, "step"},
           Row{true,
               {0x9E, 0xD6, 0x00, 0x01},
               step,
               "R014F r r RFE08 w01 w54 WFE0B=80 RUN SP R00F9 r r r WFE0B=00",
               0x0154,
               "step"},
           Row{false, branch, step,
               "R014F r r R0156 R0156 W0156=83 R0156 R0152 R0152 W0152=83 R0152 RUN SP R00F9 r r r "
               "WFE0B=00 "
               "W00FE=01 W00FF=52 R0152 W0152=9D R0156 W0156=4C",
               0x0152, "step"},
           Row{true, nops, run_to, "RFE08 w01 w53 WFE0B=80 RUN SP R00F9 r r r WFE0B=00", 0x0153,
               "place"},
           Row{false, nops, run_to,
               "R0140 R0140 W0140=83 R0140 R0153 R0153 W0153=83 R0153 RUN SP R00F9 r r r WFE0B=00 "
               "W00FE=01 W00FF=53 R0153 W0153=9D R0140 W0140=9D",
               0x0153, "place"},
       }) {
    UseHardware(row.hardware);
    Program(0x0150, row.program);
    target.board().ClearHostLog();
    row.act();
    EXPECT_EQ(Commands(), std::string(row.commands) + kLookedAgain);
    EXPECT_EQ(frame.PC, row.pc);
    EXPECT_EQ(frame.ReadFramePC(), row.pc);
    ASSERT_EQ(events.stops.size(), 1u);
    EXPECT_EQ(events.stops[0].pc, row.pc);
    EXPECT_EQ(events.TakeReasons(), row.reason);
  }
  target.board().ClearHostLog();
  run.RunToCursor(0x0153);  // is there already
  EXPECT_EQ(Commands(), "");
}

TEST_F(RunControlTest, CompletesASlowStepOverOnTheTimer) {
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    Program(0x0150, {0xAD, 0x02, kNOP, kNOP, 0x45, 0, 0, 0xAF, 0xFF, 0x65, 0, 0, 0x26, 0xF9, 0x81});
    run.StepCommand(Calls::StepOver);  // a BSR to a loop of 160 ms
    EXPECT_TRUE(activity.StepPending() && activity.WaitingForBreak() && activity.StepOver());
    EXPECT_TRUE(events.stops.empty());
    Tick();
    EXPECT_TRUE(activity.RunningShown());
    target.board().ClearHostLog();
    run.StepCommand(Calls::Follow);  // there is no monitor to ask
    run.RunToAddress(0x0160);
    EXPECT_EQ(Commands(), "");
    TickUntilIdle();
    EXPECT_EQ(events.TakeReasons(), "step");
    EXPECT_EQ(frame.PC, 0x0152u);
    EXPECT_FALSE(activity.RunningShown() || activity.StepOver() || breakpoints.StepPlanted() ||
                 link.LinkError);
    EXPECT_EQ(Peek(0x0152), kNOP);
  }
}

TEST_F(RunControlTest, StepsOverLibraryRoutinesCalledThroughHXInSoftwareMode) {
  UseHardware(false);
  debug_info.tool_chain = symbols::ToolChain::Imagecraft;
  Program(0x0150, {0xFD, kNOP});
  Load(0x0160, ByteList{0x81});
  frame.WriteHX(0x0160);
  run.StepCommand(Calls::Follow);
  EXPECT_EQ(frame.PC, 0x0160u);
  debug_info.SymbolTable.Assign({{.name = "_printf", .address = 0x0160, .size = 0, .type = ""}});
  SetPC(0x0150);
  run.StepCommand(Calls::Follow);
  EXPECT_EQ(frame.PC, 0x0151u);
}

TEST_F(RunControlTest, GoStopsAtABreakpointBeforeItsInstructionAndGoesOnFromThere) {
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    breakpoints.Clear();
    breakpoints.AddBreakpoint(0x0151);
    Program(0x0150, {kNOP, 0x4C, 0x20, 0xFC});  // NOP; INCA; BRA $0150
    frame.WriteA(0);
    target.board().ClearHostLog();
    EXPECT_FALSE(run.GoCommand());
    EXPECT_TRUE(activity.RunningShown());
    EXPECT_EQ(Commands(), hardware ? "W00FB=60 RFE08 w01 w51 WFE0B=80 RUN"
                                   : "W00FB=60 R0151 R0151 W0151=83 R0151 RUN");
    TickUntilIdle();
    const std::string stops = hardware ? "WFE0B=00 SP R00F9 r r r"
                                       : "WFE0B=00 R0151 W0151=4C SP R00F9 r r r W00FE=01 W00FF=51";
    EXPECT_EQ(Commands(), stops + kLookedAgain);
    EXPECT_EQ(frame.PC, 0x0151u);
    EXPECT_EQ(frame.A, 0u);
    EXPECT_FALSE(activity.RunningShown());
    run.GoCommand();
    TickUntilIdle();
    EXPECT_EQ(frame.PC, 0x0151u);
    EXPECT_EQ(frame.A, 1u);
    EXPECT_EQ(events.TakeReasons(), "breakpoint breakpoint");
  }
}

TEST_F(RunControlTest, TellsAnSwiOfTheProgramItselfAndLeavesThePcBehindIt) {
  breakpoints.AddBreakpoint(0x0170);
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    Program(0x0150, {kNOP, 0x83});
    run.Go();
    TickUntilIdle();
    EXPECT_EQ(frame.PC, 0x0152u);
    SetPC(0x0150);
    run.RunToAddress(0x0160);
    EXPECT_EQ(events.TakeReasons(), "swi swi");
  }
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    SetPC(0x0151);
    run.StepCommand(Calls::Follow);
    EXPECT_EQ(events.TakeReasons(), "swi");
    EXPECT_EQ(frame.PC, 0x0152u) << "or nobody could step past it";
  }
}

TEST_F(RunControlTest, ABreakOnAnOperandIsNotTakenForAnSwi) {
  Program(0x0150, {kNOP, 0xA6, 0x12, kNOP});
  run.RunToAddress(0x0152);
  EXPECT_EQ(frame.PC, 0x0153u);
  ASSERT_EQ(events.stops.size(), 1u);
  EXPECT_EQ(events.stops[0].detail, "0152 is inside an instruction");
  EXPECT_EQ(events.TakeReasons(), "place");
}

TEST_F(RunControlTest, StepsABranchToItselfInBothModes) {
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    Program(0x0150, {0x4B, 0xFE, kNOP});  // DBNZA *
    frame.WriteA(2);
    run.StepCommand(Calls::Follow);
    EXPECT_EQ(frame.PC, 0x0150u);
    EXPECT_EQ(frame.A, 1u);
    run.StepCommand(Calls::Follow);
    EXPECT_EQ(frame.PC, 0x0152u);
    EXPECT_EQ(events.TakeReasons(), "step step");
  }
}

TEST_F(RunControlTest, RefusesToRunWhereNoSwiCanStand) {
  UseHardware(false);
  Load(0x8000, ByteList{kNOP, kNOP, 0x20, 0xFD});
  const auto refuses = [&](const std::function<void()>& act) {
    target.board().ClearHostLog();
    events.stops.clear();
    act();
    EXPECT_EQ(Commands().find("RUN"), std::string::npos);
    ASSERT_EQ(events.stops.size(), 1u);
    EXPECT_EQ(events.stops[0].reason, base::StopReason::NotStarted);
    EXPECT_THAT(events.stops[0].detail, ::testing::HasSubstr("8001"));
    EXPECT_FALSE(activity.Busy() || breakpoints.StepPlanted());
  };
  SetPC(0x8000);
  refuses([&] { EXPECT_FALSE(run.StepCommand(Calls::Follow)); });
  Program(0x0150, {kNOP, kNOP, kNOP});
  refuses([&] { run.RunToAddress(0x8001); });
  breakpoints.AddBreakpoint(0x0152);
  breakpoints.AddBreakpoint(0x8001);
  refuses([&] { run.Go(); });
  EXPECT_EQ(Peek(0x0152), kNOP);
  EXPECT_FALSE(breakpoints.TakesSwi(0x8001));
}

TEST_F(RunControlTest, TheUsersBreakpointsCountOnTheWayToAPlaceWhereTheyCan) {
  breakpoints.AddBreakpoint(0x0152);
  UseHardware(false);
  Program(0x0150, ByteList(8, kNOP));
  EXPECT_FALSE(run.SuspendedBy(0x0154));
  run.RunToAddress(0x0154);
  EXPECT_EQ(frame.PC, 0x0152u);
  run.RunToAddress(0x0153);  // off the breakpoint and there at once
  EXPECT_EQ(frame.PC, 0x0153u);
  SetPC(0x0150);
  run.RunToAddress(0x0152);
  EXPECT_EQ(events.TakeReasons(), "breakpoint place place");
  EXPECT_EQ(Peek(0x0152), kNOP);
  UseHardware(true);
  EXPECT_EQ(run.SuspendedBy(0x0154), 0x0152u);
  EXPECT_FALSE(run.SuspendedBy(0x0152));
}

TEST_F(RunControlTest, ABreakpointTakenAwayWhileRunningLeavesItsCodeByte) {
  UseHardware(false);
  breakpoints.AddBreakpoint(0x0160);
  Load(0x0160, ByteList{kNOP, kNOP});
  PointIrqVectorToMonitor();
  RunEndlessLoop();
  breakpoints.RemoveBreakpoint(0x0160);
  breakpoints.AddBreakpoint(0x0161);
  EXPECT_EQ(run.Stop().reason, base::StopReason::UserBreak);
  EXPECT_EQ(Peek(0x0160), kNOP);
  EXPECT_EQ(Peek(0x0161), kNOP);
}

TEST_F(RunControlTest, ABreakSignalThatIsTakenLateStopsTheProgramThen) {
  PointIrqVectorToMonitor();
  breakpoints.AddBreakpoint(0x0170);
  Load(0x0170, ByteList{kNOP});
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    // SEI; LDHX #0; AIX #1; eight NOP; CPHX #$FFFF; BNE: 0.4 s; CLI; BRA *
    Program(0x0150, {0x9B, 0x45, 0,    0,    0xAF, 1,    kNOP, kNOP, kNOP, kNOP, kNOP,
                     kNOP, kNOP, kNOP, 0x65, 0xFF, 0xFF, 0x26, 0xF1, 0x9A, 0x20, 0xFE});
    run.Go();
    Tick(2);
    EXPECT_EQ(run.Stop().reason, base::StopReason::Refused);
    TickUntilIdle();
    EXPECT_EQ(events.TakeReasons(), "break");
    EXPECT_EQ(frame.PC, 0x0164u);
    EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
    EXPECT_EQ(Peek(0x0170), kNOP);
  }
}

TEST_F(RunControlTest, APortThatIsGoneEndsTheRun) {
  RunEndlessLoop();
  Tick(2);
  target.Close();
  Tick();
  EXPECT_TRUE(link.LinkError);
  EXPECT_FALSE(activity.Busy());
  run.StepCommand(Calls::Follow);
  EXPECT_EQ(events.TakeReasons(), "link-lost link-lost");
}

TEST_F(RunControlTest, GoesOnWhenTheStepOffABreakpointComesBackLate) {
  WakeAfterALongTime();
  Program(0x0150, {0x8F, 0x4C, 0x20, 0xFD});  // WAIT; INCA; BRA $0151
  breakpoints.AddBreakpoint(0x0150);
  run.Go();
  EXPECT_TRUE(activity.StepPending());
  for (int i = 0; i < 100 && activity.StepPending(); ++i) Tick();
  Tick();
  EXPECT_EQ(activity.RunMode(), Mode::Running);
  EXPECT_FALSE(link.LinkError);
  EXPECT_TRUE(target.board().running());
}

TEST_F(RunControlTest, StopRebuildsTheFrameOfTheInterruptedProgram) {
  PointIrqVectorToMonitor();
  frame.WriteHX(0x1234);
  frame.WriteA(0x56);
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    breakpoints.AddBreakpoint(0x0170);
    Load(0x0170, ByteList{kNOP});
    RunEndlessLoop();
    Tick(3);
    target.board().ClearHostLog();
    EXPECT_EQ(run.GoCommand()->reason, base::StopReason::UserBreak);
    EXPECT_THAT(Commands(),
                ::testing::StartsWith("WFE0B=00 SP R00F5 r r r r r R007F r r r "
                                      "R007F r r r R007F w45 w01 w00 w94 w83 W00F9=00 W00FA=80 "
                                      "RUN R007F"));
    EXPECT_EQ(Peek(0x0170), kNOP);
    breakpoints.Clear();
    Tick(3);
    EXPECT_FALSE(activity.Busy() || activity.RunningShown());
    ASSERT_TRUE(frame.ReadRegisters());
    EXPECT_TRUE(frame.PC == 0x0150 || frame.PC == 0x0151) << frame.PC;
    EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
    EXPECT_EQ(frame.HX, 0x1234u);
    EXPECT_EQ(frame.A, 0x56u);
  }
}

TEST_F(RunControlTest, AnUnansweredStopLeavesEverythingAsItWas) {
  // The program has a handler of its own at the IRQ vector.
  Load(0xFFFA, ByteList{0x01, 0x70});
  Load(0x0170, ByteList{0x80});
  RunEndlessLoop();
  Tick(2);
  EXPECT_EQ(run.Stop().reason, base::StopReason::Refused);
  EXPECT_TRUE(StopMessage({base::StopReason::Refused, 0, {}}));
  Tick(5);
  EXPECT_EQ(activity.RunMode(), Mode::Running);
  EXPECT_TRUE(activity.WaitingForBreak() && activity.RunningShown() && target.board().running());
  EXPECT_TRUE(events.stops.empty());
  EXPECT_FALSE(link.LinkError);
  target.Close();
  EXPECT_EQ(run.Stop().reason, base::StopReason::LinkLost);
}

TEST_F(RunControlTest, AStopAtTheMomentOfABreakpointHitTakesTheBreakpointsStop) {
  PointIrqVectorToMonitor();
  breakpoints.AddBreakpoint(0x0170);
  Load(0x0100, ByteList(16, 0));
  for (const bool hardware : {true, false}) {
    // The delay ends before the signal, three times while the line is held, and after that.
    for (const int delay : {0x10, 0x48, 0x60, 0x80, 0xFF}) {
      SCOPED_TRACE(base::Format("%s mode, delay %02X", hardware ? "hardware" : "software", delay));
      UseHardware(hardware);
      // SEI; LDHX #0; AIX #1; CPHX #delay:00; BNE; JMP $0170
      Program(0x0150, {0x9B, 0x45, 0, 0, 0xAF, 1, 0x65, base::LowByte(delay), 0, 0x26, 0xF9, 0xCC,
                       0x01, 0x70});
      Load(0x0170, ByteList{kNOP, kNOP});
      run.Go();
      target.Sleep(std::chrono::milliseconds(50));  // no tick looks for the break byte
      EXPECT_EQ(run.Stop().reason, base::StopReason::Breakpoint);
      EXPECT_EQ(frame.PC, 0x0170u);
      ASSERT_TRUE(frame.ReadRegisters());
      EXPECT_EQ(frame.PC, 0x0170u);
      EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
      EXPECT_EQ(Peek(0x0170), kNOP);
      EXPECT_FALSE(activity.Busy() || link.LinkError);
    }
  }
}

TEST_F(RunControlTest, StopEndsAStepThatNeverComesBack) {
  PointIrqVectorToMonitor();
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    Program(0x0151, {0xAD, 0x02, kNOP, kNOP, 0x20, 0xFE});  // BSR to an endless loop
    frame.WriteCCR(0x60);
    run.StepCommand(Calls::StepOver);
    Tick(2);
    EXPECT_EQ(run.GoCommand()->reason, base::StopReason::UserBreak);
    EXPECT_EQ(frame.PC, 0x0155u);
    EXPECT_EQ(Peek(0x0153), kNOP);
    EXPECT_FALSE(activity.Busy() || breakpoints.StepPlanted());
    ASSERT_TRUE(frame.SetStackPointer(0x00FF));
  }
}

TEST_F(RunControlTest, RunsToMainBySymbolOrAddress) {
  const auto run_to = [&](const std::string& main) {
    SetPC(0x0150);
    run.RunToMain(main);
    return frame.PC;
  };
  Program(0x0150, ByteList(0x10, kNOP));
  debug_info.SymbolTable.Assign({{.name = "_main", .address = 0x0158, .size = 0, .type = ""}});
  debug_info.DebugInfoLoaded = true;
  EXPECT_EQ(run_to("_main"), 0x0158u);
  EXPECT_EQ(run_to("_start"), 0x0150u);
  debug_info.DebugInfoLoaded = false;
  EXPECT_EQ(run_to("_main"), 0x0150u);
  EXPECT_EQ(run_to("0154"), 0x0154u);
}

TEST_F(RunControlTest, AResetWhileRunningRestoresTheCodeAndTheStoppedState) {
  UseHardware(false);
  breakpoints.AddBreakpoint(0x0170);
  Load(0x0170, ByteList{0x4C});
  RunEndlessLoop();
  Tick(2);
  Connect();
  Load(0x0170, ByteList{kSwiOpcode});  // as after a reset that keeps RAM
  run.AbandonRunForReset();
  EXPECT_EQ(Peek(0x0170), 0x4C);
  Tick(2);
  EXPECT_FALSE(activity.Busy() || activity.RunningShown());
}

}  // namespace
}  // namespace brevant::control
