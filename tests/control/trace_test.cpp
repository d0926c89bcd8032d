// SPDX-License-Identifier: MIT
#include "control/trace.h"

#include "base/files.h"
#include "control/bench.h"

namespace brevant::control {
namespace {

class TraceTest : public Bench {
 protected:
  std::string Log() const { return base::ReadFile(folder.path() / "trace.txt").text; }

  std::string directory = folder.path().string();
  Trace trace{run,
              activity,
              frame,
              breakpoints,
              debug_info,
              debug_info.SymbolTable,
              user,
              {.image_directory = [this] { return directory; },
               .source_text =
                   [](const symbols::SourceLine& line) {
                     return std::optional("line " + std::to_string(line.line));
                   }}};
};

TEST_F(TraceTest, RecordsEightStepsATickAndWritesThemWhenItStops) {
  Program(0x0150, {0x4C, 0x20, 0xFD});  // INCA; BRA
  frame.WriteA(0);
  trace.Command();
  EXPECT_EQ(activity.RunMode(), Mode::Tracing);
  Tick(2);
  target.board().ClearHostLog();
  trace.Command();
  // What was executed is known already; what is told of the stop was read twice.
  EXPECT_EQ(Commands(), "SP R00F9 r r r");
  EXPECT_FALSE(activity.Busy());
  EXPECT_EQ(run.last_stop()->reason, base::StopReason::UserBreak);
  EXPECT_EQ(trace.written_log()->lines, 48);
  EXPECT_EQ(trace.written_log()->path, (folder.path() / "trace.txt").string());
  EXPECT_THAT(Log(), ::testing::StartsWith("000150 4c \tINCA\n"
                                           "PC=0151  SP=00ff  HX=0000  A=01  V11H=0110  INZC=1000\n"
                                           "\n"
                                           "000151 20 fd \tBRA\t150\n"
                                           "PC=0150  SP=00ff  HX=0000  A=01"));
  // The next trace replaces the log.
  trace.Command();
  trace.Command();
  EXPECT_EQ(Log(), "");
  EXPECT_EQ(trace.written_log()->lines, 0);
}

TEST_F(TraceTest, EndsRightAfterTheInstructionAtABreakpoint) {
  Program(0x0150, ByteList(0x20, 0x9D));
  breakpoints.AddBreakpoint(0x0152);
  trace.Command();
  Tick(3);
  EXPECT_EQ(base::StopText(*run.last_stop()),
            "step done at 0153 (behind the breakpoint at 0152, end of the trace)");
  EXPECT_EQ(frame.PC, 0x0153u);
  EXPECT_EQ(trace.written_log()->lines, 9);
  EXPECT_FALSE(activity.Busy());
}

TEST_F(TraceTest, AStepThatComesBackLateIsRecordedWhenItDoes) {
  WakeAfterALongTime();
  Program(0x0150, ByteList(0x20, 0x9D));
  Load(0x0151, ByteList{0x8F});
  trace.Command();
  Tick();
  EXPECT_TRUE(activity.StepPending());
  EXPECT_EQ(trace.ring().size(), 1);
  for (int i = 0; i < 100 && activity.StepPending(); ++i) Tick();
  EXPECT_FALSE(link.LinkError);
  ASSERT_EQ(trace.ring().size(), 10);
  EXPECT_EQ(trace.ring().At(1).instruction.address, 0x0151u);
  EXPECT_EQ(trace.ring().At(1).PC, 0x0152u);
  EXPECT_EQ(trace.ring().At(2).instruction.address, 0x0152u);
}

TEST_F(TraceTest, StoppedDuringASlowStepItLeavesTheTargetToTheTimer) {
  Program(0x0150, {0x8F, 0x9D});  // WAIT without an interrupt in sight
  trace.Command();
  Tick(2);
  const long before = run.stops();
  trace.Command();
  EXPECT_EQ(run.stops(), before);
  EXPECT_EQ(trace.written_log()->lines, 0);
  EXPECT_TRUE(activity.StepPending());
  Tick(2);
  EXPECT_FALSE(link.LinkError);
}

TEST_F(TraceTest, NamesSourceLinesAndSaysWhenTheLogCannotBeWritten) {
  debug_info.LineTable.Assign({{.address = 0x0150, .line = 7, .file = 0}}, {"a.c"});
  debug_info.DebugInfoLoaded = true;
  Program(0x0150, ByteList(0x20, 0x9D));
  directory = (folder.path() / "gone").string();
  trace.Command();
  Tick();
  trace.Command();
  EXPECT_THAT(trace.LogText(), ::testing::StartsWith("00150: line 7\nPC=0151"));
  EXPECT_EQ(user.messages.size(), 1u);
  EXPECT_FALSE(trace.written_log() || activity.Busy());
  directory.clear();
  EXPECT_EQ(trace.LogPath(), "trace.txt");
}

TEST_F(TraceTest, ALostLinkAddsNoRecord) {
  Program(0x0150, ByteList(0x20, 0x9D));
  trace.Command();
  target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 100}});
  Tick(5);
  EXPECT_TRUE(link.LinkError);
  const int recorded = trace.ring().size();
  EXPECT_LT(recorded, 8);
  for (int i = 0; i < recorded; ++i) EXPECT_EQ(trace.ring().At(i).PC, 0x0151u + i);
}

}  // namespace
}  // namespace brevant::control
