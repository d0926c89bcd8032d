// SPDX-License-Identifier: MIT
#include "control/run_control.h"

#include <functional>

#include "control/bench.h"
#include "control/messages.h"

namespace brevant::control {
namespace {

using ::testing::ElementsAre;

constexpr std::uint8_t kNOP = 0x9D;

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
  };
  const auto step = [&] { run.StepCommand(true); };
  const auto run_to = [&] { run.RunToCursor(0x0153); };
  const ByteList branch{0x27, 0x04, kNOP, kNOP, kNOP, kNOP, 0x4C}, nops(8, kNOP);
  breakpoints.AddBreakpoint(0x0151);  // stays out of all this
  for (const Row& row : {
           Row{true, branch, step,
               "R0150 R0151 R0152 RFE08 w01 w52 WFE0B=80 RUN SP R00F9 r r r WFE0B=00", 0x0152},
           Row{true,
               {0x9E, 0xD6, 0x00, 0x01},
               step,
               "R0150 R0151 R0152 R0153 RFE08 w01 w54 WFE0B=80 RUN SP R00F9 r r r WFE0B=00",
               0x0154},
           Row{false, branch, step,
               "R0150 R0151 R0152 R0156 W0156=83 R0152 W0152=83 RUN SP R00F9 r r r WFE0B=00 "
               "W00FE=01 W00FF=52 R0152 W0152=9D R0156 W0156=4C",
               0x0152},
           Row{true, nops, run_to, "RFE08 w01 w53 WFE0B=80 RUN SP R00F9 r r r WFE0B=00", 0x0153},
           Row{false, nops, run_to,
               "R0153 W0153=83 RUN SP R00F9 r r r WFE0B=00 W00FE=01 W00FF=53 R0153 W0153=9D",
               0x0153},
       }) {
    state.HardwareBreakMode = row.hardware;
    Program(0x0150, row.program);
    refreshes = 0;
    target.board().ClearHostLog();
    row.act();
    EXPECT_EQ(Commands(), row.commands);
    EXPECT_EQ(frame.PC, row.pc);
    EXPECT_EQ(frame.ReadFramePC(), row.pc);
    EXPECT_EQ(refreshes, 1);
  }
  target.board().ClearHostLog();
  run.RunToCursor(0x0153);  // is there already
  EXPECT_EQ(Commands(), "");
}

TEST_F(RunControlTest, CompletesASlowStepOverOnTheTimer) {
  for (const bool hardware : {true, false}) {
    state.HardwareBreakMode = hardware;
    shown.clear();
    refreshes = 0;
    Program(0x0150, {0xAD, 0x02, kNOP, kNOP, 0x45, 0, 0, 0xAF, 0xFF, 0x65, 0, 0, 0x26, 0xF9, 0x81});
    state.StepOver = true;  // a BSR to a loop of 160 ms
    run.StepCommand(true);
    EXPECT_TRUE(state.StepPending && state.WaitingForBreak);
    EXPECT_EQ(refreshes, 0);
    Tick();
    target.board().ClearHostLog();
    run.StepCommand(true);  // there is no monitor to ask
    run.RunToAddress(0x0160);
    EXPECT_EQ(Commands(), "");
    TickUntilIdle();
    EXPECT_THAT(shown, ElementsAre(true, false));
    EXPECT_EQ(frame.PC, 0x0152u);
    EXPECT_EQ(refreshes, 1);
    EXPECT_FALSE(state.StepOver || breakpoints.StepPlanted() || link.LinkError);
    EXPECT_EQ(Peek(0x0152), kNOP);
  }
}

TEST_F(RunControlTest, StepsOverLibraryRoutinesCalledThroughHXInSoftwareMode) {
  state.HardwareBreakMode = false;
  debug_info.tool_chain = symbols::ToolChain::Imagecraft;
  Program(0x0150, {0xFD, kNOP});
  target.board().Load(0x0160, ByteList{0x81});
  frame.WriteHX(0x0160);
  run.StepCommand(true);
  EXPECT_EQ(frame.PC, 0x0160u);
  debug_info.SymbolTable.Assign({{.name = "_printf", .address = 0x0160, .size = 0, .type = ""}});
  SetPC(0x0150);
  run.StepCommand(true);
  EXPECT_EQ(frame.PC, 0x0151u);
}

TEST_F(RunControlTest, GoStopsAtABreakpointBeforeItsInstructionAndGoesOnFromThere) {
  for (const bool hardware : {true, false}) {
    state.HardwareBreakMode = hardware;
    shown.clear();
    breakpoints.Clear();
    breakpoints.AddBreakpoint(0x0151);
    Program(0x0150, {kNOP, 0x4C, 0x20, 0xFC});  // NOP; INCA; BRA $0150
    frame.WriteA(0);
    frame.reread = true;
    target.board().ClearHostLog();
    EXPECT_FALSE(run.GoCommand());
    EXPECT_EQ(Commands(),
              hardware ? "W00FB=60 RFE08 w01 w51 WFE0B=80 RUN" : "W00FB=60 R0151 W0151=83 RUN");
    TickUntilIdle();
    EXPECT_EQ(Commands(), hardware ? "WFE0B=00 SP R00F9 r r r"
                                   : "WFE0B=00 R0151 W0151=4C SP R00F9 r r r W00FE=01 W00FF=51");
    EXPECT_EQ(frame.PC, 0x0151u);
    EXPECT_EQ(frame.A, 0u);
    EXPECT_FALSE(frame.reread);
    run.GoCommand();
    TickUntilIdle();
    EXPECT_EQ(frame.PC, 0x0151u);
    EXPECT_EQ(frame.A, 1u);
    EXPECT_THAT(shown, ElementsAre(true, false, true, false));
  }
}

TEST_F(RunControlTest, LeavesThePcBehindAnSwiOfTheProgramItself) {
  state.HardwareBreakMode = false;
  breakpoints.AddBreakpoint(0x0170);
  Program(0x0150, {kNOP, 0x83});
  run.Go();
  TickUntilIdle();
  EXPECT_EQ(frame.PC, 0x0152u);
}

TEST_F(RunControlTest, GoesOnWhenTheStepOffABreakpointComesBackLate) {
  WakeAfterALongTime();
  Program(0x0150, {0x8F, 0x4C, 0x20, 0xFD});  // WAIT; INCA; BRA $0151
  breakpoints.AddBreakpoint(0x0150);
  run.Go();
  EXPECT_TRUE(state.StepPending);
  for (int i = 0; i < 100 && state.StepPending; ++i) Tick();
  Tick();
  EXPECT_EQ(state.RunMode, Mode::Running);
  EXPECT_FALSE(link.LinkError);
  EXPECT_TRUE(target.board().running());
}

TEST_F(RunControlTest, StopRebuildsTheFrameOfTheInterruptedProgram) {
  PointIrqVectorToMonitor();
  frame.WriteHX(0x1234);
  frame.WriteA(0x56);
  for (const bool hardware : {true, false}) {
    state.HardwareBreakMode = hardware;
    breakpoints.AddBreakpoint(0x0170);
    target.board().Load(0x0170, ByteList{kNOP});
    RunEndlessLoop();
    Tick(3);
    target.board().ClearHostLog();
    EXPECT_EQ(run.GoCommand(), StopResult::Stopped);
    EXPECT_THAT(Commands(), ::testing::StartsWith("WFE0B=00 SP R00F5 R00FB r r R007F r r r "
                                                  "R007F w45 w01 w00 w94 w83 W00F9=00 W00FA=80 "
                                                  "RUN R007F"));
    EXPECT_EQ(Peek(0x0170), kNOP);
    breakpoints.Clear();
    Tick(3);
    EXPECT_FALSE(state.Busy() || state.RunningShown || shown.back());
    ASSERT_TRUE(frame.ReadRegisters());
    EXPECT_TRUE(frame.PC == 0x0150 || frame.PC == 0x0151) << frame.PC;
    EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
    EXPECT_EQ(frame.HX, 0x1234u);
    EXPECT_EQ(frame.A, 0x56u);
  }
}

TEST_F(RunControlTest, AnUnansweredStopLeavesEverythingAsItWas) {
  // The program has a handler of its own at the IRQ vector.
  target.board().Load(0xFFFA, ByteList{0x01, 0x70});
  target.board().Load(0x0170, ByteList{0x80});
  RunEndlessLoop();
  Tick(2);
  link.BreakPollState = 0;
  EXPECT_EQ(run.Stop(), StopResult::NoAnswer);
  EXPECT_TRUE(StopMessage(StopResult::NoAnswer));
  Tick(5);
  EXPECT_EQ(state.RunMode, Mode::Running);
  EXPECT_TRUE(state.WaitingForBreak && state.RunningShown && target.board().running());
  EXPECT_EQ(refreshes, 0);
  EXPECT_FALSE(link.LinkError);
  target.Close();
  EXPECT_EQ(run.Stop(), StopResult::LinkLost);
}

TEST_F(RunControlTest, AStopAtTheMomentOfABreakpointHitTakesTheBreakpointsStop) {
  PointIrqVectorToMonitor();
  breakpoints.AddBreakpoint(0x0170);
  target.board().Load(0x0100, ByteList(16, 0));
  for (const bool hardware : {true, false}) {
    // The delay ends before the signal, three times while the line is held, and after that.
    for (const int delay : {0x10, 0x48, 0x60, 0x80, 0xFF}) {
      SCOPED_TRACE(base::Format("%s mode, delay %02X", hardware ? "hardware" : "software", delay));
      state.HardwareBreakMode = hardware;
      // SEI; LDHX #0; AIX #1; CPHX #delay:00; BNE; JMP $0170
      Program(0x0150, {0x9B, 0x45, 0, 0, 0xAF, 1, 0x65, base::LowByte(delay), 0, 0x26, 0xF9, 0xCC,
                       0x01, 0x70});
      target.board().Load(0x0170, ByteList{kNOP, kNOP});
      run.Go();
      target.Sleep(std::chrono::milliseconds(50));  // no tick looks for the break byte
      EXPECT_EQ(run.Stop(), StopResult::Stopped);
      EXPECT_EQ(frame.PC, 0x0170u);
      ASSERT_TRUE(frame.ReadRegisters());
      EXPECT_EQ(frame.PC, 0x0170u);
      EXPECT_EQ(frame.ProgramSP(), 0x00FFu);
      EXPECT_EQ(Peek(0x0170), kNOP);
      EXPECT_FALSE(state.Busy() || link.LinkError);
    }
  }
}

TEST_F(RunControlTest, StopEndsAStepThatNeverComesBack) {
  PointIrqVectorToMonitor();
  for (const bool hardware : {true, false}) {
    state.HardwareBreakMode = hardware;
    Program(0x0151, {0xAD, 0x02, kNOP, kNOP, 0x20, 0xFE});  // BSR to an endless loop
    frame.WriteCCR(0x60);
    state.StepOver = true;
    run.StepCommand(true);
    Tick(2);
    EXPECT_EQ(run.GoCommand(), StopResult::Stopped);
    EXPECT_EQ(frame.PC, 0x0155u);
    EXPECT_EQ(Peek(0x0153), kNOP);
    EXPECT_FALSE(state.Busy() || breakpoints.StepPlanted());
    ASSERT_TRUE(frame.SetStackPointer(0x00FF));
  }
}

TEST_F(RunControlTest, RunsToMainForCProgramsWhenAskedTo) {
  const auto run_from = [&](base::Address pc) {
    SetPC(pc);
    run.RunToMainIfConfigured();
    return frame.PC;
  };
  Program(0x0150, ByteList(0x10, kNOP));
  debug_info.SymbolTable.Assign({{.name = "_main", .address = 0x0158, .size = 0, .type = ""}});
  debug_info.DebugInfoLoaded = true;
  EXPECT_EQ(run_from(0x0150), 0x0150u);  // not asked to
  settings.Store(base::keys::kRunToMain, 8L);
  EXPECT_EQ(run_from(0x0150), 0x0150u);  // an assembler has no main
  for (const long compiler : {8L, 32L}) {
    settings.Store(base::keys::kCompiler, compiler);
    EXPECT_EQ(run_from(0x0150), 0x0158u);
  }
  settings.Store(base::keys::kRunToMainSymbol, "_start");
  EXPECT_EQ(run_from(0x0150), 0x0150u);
  settings.Store(base::keys::kRunToMainSymbol, "0154");
  debug_info.DebugInfoLoaded = false;
  EXPECT_EQ(run_from(0x0150), 0x0154u);
}

class Recorder final : public BackgroundOperation {
 public:
  void Advance() override { ++advanced; }
  void Abandon() override { ++abandoned; }
  int advanced = 0, abandoned = 0;
};

TEST_F(RunControlTest, HandsTheTickToTheOperationOnceTheBreakByteHasCome) {
  Recorder erase;
  run.SetBackgroundOperation(Mode::MassErase, &erase);
  state.RunMode = Mode::MassErase;
  state.WaitingForBreak = true;
  Program(0x0150, {0x4F, 0x4B, 0xFE, 0x83});
  monitor.RunTarget();
  run.CompleteOnTimer();
  EXPECT_TRUE(state.RunningShown);
  EXPECT_EQ(erase.advanced, 0);
  Tick(2);
  EXPECT_EQ(erase.advanced, 2);
  run.AbandonRunForReset();
  EXPECT_EQ(erase.abandoned, 1);
  EXPECT_FALSE(state.Busy() || state.RunningShown);
}

TEST_F(RunControlTest, AResetWhileRunningRestoresTheCodeAndTheStoppedState) {
  state.HardwareBreakMode = false;
  breakpoints.AddBreakpoint(0x0170);
  target.board().Load(0x0170, ByteList{0x4C});
  RunEndlessLoop();
  Tick(2);
  Connect();
  target.board().Load(0x0170, ByteList{kSwiOpcode});  // as after a reset that keeps RAM
  run.AbandonRunForReset();
  EXPECT_EQ(Peek(0x0170), 0x4C);
  Tick(2);
  EXPECT_FALSE(state.Busy() || state.RunningShown);
}

}  // namespace
}  // namespace brevant::control
