// SPDX-License-Identifier: MIT
#include "control/trace_rows.h"

#include <numeric>

#include "control/bench.h"
#include "control/trace.h"

namespace brevant::control {
namespace {

// A loop of two functions: _main at 0150-0154 calls _store at 0158-015c.
const ByteList kMain{0xCD, 0x01, 0x58, 0x20, 0xFB};   // JSR 0158; BRA 0150
const ByteList kStore{0x4C, 0xC7, 0x00, 0xB0, 0x81};  // INCA; STA 00B0 (extended); RTS

class TraceRowsTest : public Bench {
 protected:
  void RunTrace(long steps) {
    Load(0x0158, kStore);
    Program(0x0150, kMain);
    frame.WriteA(0x10);
    trace.Start(steps);
    TickUntilIdle();
  }
  void NameFunctions() {
    debug_info.functions = {{.name = "_main", .module = "", .first = 0x0150, .last = 0x0154},
                            {.name = "_store", .module = "", .first = 0x0158, .last = 0x015C}};
    debug_info.LineTable.Assign({{0x0150, 3, 0}, {0x0158, 7, 0}, {0x0159, 8, 0}}, {"a,b.c"});
    debug_info.DebugInfoLoaded = true;
  }
  Trace trace{
      run,
      activity,
      frame,
      breakpoints,
      debug_info,
      debug_info.SymbolTable,
      user,
      {.image_directory = [this] { return folder.path().string(); },
       .source_text = [](const symbols::SourceLine&) { return std::optional<std::string>(); }}};
};

TEST_F(TraceRowsTest, ATableForOtherPrograms) {
  NameFunctions();
  RunTrace(5);
  const std::string csv =
      FormatTraceCsv(trace.ring(), trace.steps(), debug_info, debug_info.SymbolTable);
  EXPECT_EQ(csv,
            "number,address,bytes,instruction,cycles,total cycles,PC,SP,HX,A,CCR,function,line,"
            "writes\r\n"
            "1,0150,cd 01 58,JSR 158,5,5,0158,00fd,0000,10,68,main,\"a,b.c:3\",00fe-00ff=0153\r\n"
            "2,0158,4c,INCA,1,6,0159,00fd,0000,11,68,store,\"a,b.c:7\",\r\n"
            "3,0159,c7 00 b0,STA b0,4,10,015c,00fd,0000,11,68,store,\"a,b.c:8\",00b0=11\r\n"
            "4,015c,81,RTS,4,14,0153,00ff,0000,11,68,store,\"a,b.c:8\",\r\n"
            "5,0153,20 fb,BRA 150,3,17,0150,00ff,0000,11,68,main,\"a,b.c:3\",\r\n");
}

// The cycles are those that the simulated CPU takes, and none gets lost.
TEST_F(TraceRowsTest, AProfileAddsUpToTheTotal) {
  RunTrace(50);
  TraceProfile profile = ProfileOf(trace.ring(), debug_info);
  EXPECT_EQ(profile.steps, 50);
  EXPECT_EQ(profile.cycles, 170);
  ASSERT_EQ(profile.functions.size(), 1u) << "nothing is known of the program";
  EXPECT_EQ(profile.functions[0].cycles, 170);

  NameFunctions();
  debug_info.functions[0].last = 0x0152;
  profile = ProfileOf(trace.ring(), debug_info);
  std::string order;
  for (const ProfileRow& row : profile.functions) {
    order += base::Format("%s %04x %ld/%ld ", row.name, row.address, row.cycles, row.steps);
  }
  EXPECT_EQ(order, "store 0158 90/30 main 0150 50/10 (elsewhere) 0153 30/10 ");
  for (const auto* const rows : {&profile.functions, &profile.lines}) {
    long cycles = 0, steps = 0;
    for (const ProfileRow& row : *rows) {
      cycles += row.cycles;
      steps += row.steps;
    }
    EXPECT_EQ(cycles, profile.cycles);
    EXPECT_EQ(steps, profile.steps);
  }
  EXPECT_EQ(ProfileRowText(profile.functions[0], profile),
            "store                           90        30   52.9 %");
  EXPECT_EQ(ProfileOf(TraceRing(), debug_info).cycles, 0);
}

}  // namespace
}  // namespace brevant::control
