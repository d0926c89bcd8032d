// SPDX-License-Identifier: MIT
// Calls by hand; what SDCC makes of C is looked at with the projects.
#include "frames/call_stack.h"

#include "control/bench.h"
#include "frames/source_line.h"
#include "frames/stack_depth.h"

namespace brevant::frames {
namespace {

using base::Address;
using control::ByteList;

// The program's SP is $00FF. main at $8000 calls f at $8010; g at $8020 is a handler.
class CallStackTest : public control::Bench {
 protected:
  CallStackTest() {
    Load(0x8000, ByteList{0xCD, 0x80, 0x10, 0x20, 0xFE});  // JSR 8010; BRA *
    Load(0x8010, ByteList{0x87, 0xA7, 0xFD, 0x26, 0x02,    // PSHA; AIS #-3; BNE 8017
                          0x9D, 0x9D, 0xA7, 0x04, 0x81});  // NOP; NOP; 8017: AIS #4; RTS
    Load(0x8020, ByteList{0x8B, 0x9D, 0x8A, 0x80});        // PSHH; NOP; PULH; RTI
    Function("_main", 0x8000, 0x8004);
    Function("_f", 0x8010, 0x8019);
    Function("_g", 0x8020, 0x8023).is_interrupt = true;
    debug_info.LineTable.Assign(
        {{0x8000, 7, 0}, {0x8010, 12, 0}, {0x8013, 13, 0}, {0x8017, 14, 0}, {0x8020, 20, 0}},
        {"t.c"});
  }
  symbols::Function& Function(const char* name, Address first, Address last) {
    debug_info.functions.push_back({.name = name, .module = "", .first = first, .last = last});
    return debug_info.functions.back();
  }
  std::string Stack(Address pc) {
    memory.DropAll();
    const CallStack stack = FindCallStack(memory, debug_info, pc, frame.ProgramSP(), 8);
    std::string text;
    for (std::size_t n = 0; n < stack.frames.size(); ++n) {
      text += FrameText(n, stack.frames[n], debug_info) + "\n";
    }
    return text + stack.end;
  }
};

TEST_F(CallStackTest, FollowsTheCodeFromWhereverItStands) {
  constexpr const char* kInF = "#0 f at t.c:%d\n#1 main at t.c:7\n";
  Load(0x0100, ByteList{0x80, 0x03});
  EXPECT_EQ(Stack(0x8010), base::Format(kInF, 12));
  EXPECT_EQ(Stack(0x8019), base::Format(kInF, 14)) << "behind its own clean-up";
  Load(0x0100, ByteList{1, 0x80, 0x03});
  EXPECT_EQ(Stack(0x8011), base::Format(kInF, 12));
  Load(0x0100, ByteList{0x80, 0x03, 0x80, 0x03, 0x80, 0x03});
  EXPECT_EQ(Stack(0x8013), base::Format(kInF, 13));
  EXPECT_EQ(Stack(0x8017), base::Format(kInF, 14)) << "both ways there agree";
  // The handler has interrupted f: H, CCR, A, X, PC, and then what f has.
  Load(0x0100, ByteList{9, 0x62, 1, 2, 0x80, 0x15, 0x80, 0x03, 0x80, 0x03, 0x80, 0x03});
  EXPECT_EQ(Stack(0x8021),
            "#0 g at t.c:20\n#1 f at t.c:13 (interrupted there)\n#2 main at t.c:7\n");
}

TEST_F(CallStackTest, SaysWhereItDoesNotKnowTheWay) {
  // No call stands before what should be the return address.
  Load(0x0100, ByteList{0x80, 0x02});
  EXPECT_EQ(Stack(0x8010), "#0 f at t.c:12\nthe return address 8002 at 0100 has no call before it");
  // SP is set from a register: the stack is searched instead.
  Load(0x8010, ByteList{0x94});
  debug_info.SymbolTable.Assign({{"_main", 0x8000, 0, {}}, {"_f", 0x8010, 0, {}}});
  Load(0x0100, ByteList{7, 0x80, 0x03, 0});
  EXPECT_EQ(Stack(0x8013), "#0 f at t.c:13\n#1 main at t.c:7\n");
  Load(0x0100, ByteList(0x100, 0));
  EXPECT_EQ(Stack(0x8013), "#0 f at t.c:13\nnothing above 00ff looks like a return address");
  // Two ways that do not agree.
  Load(0x8010, ByteList{0x26, 0x01, 0x87, 0x9D});  // BNE 8013; PSHA; NOP
  EXPECT_EQ(StackDepth(memory, debug_info.functions[1], 0x8013), std::nullopt);
  EXPECT_EQ(StackDepth(memory, debug_info.functions[1], 0x8012), 0);
}

TEST_F(CallStackTest, TellsWhatMayHaveBeenWrittenOnTheWay) {
  const symbols::Function& f = debug_info.functions[1];
  // AIS #-4; NOP; CLR 1,SP; BNE 8012; CLR 2,SP: a loop writes behind where it begins.
  Load(0x8010, ByteList{0xA7, 0xFC, 0x9D, 0x9E, 0x6F, 0x01, 0x26, 0xFA, 0x9E, 0x6F});
  Load(0x801A, ByteList{0x02, 0x9D, 0x9D});
  debug_info.functions[1].last = 0x801C;
  StackWrites writes = StackWritesBefore(memory, f, 0x8012);
  EXPECT_TRUE(writes.MayHold(-3, 1));
  EXPECT_FALSE(writes.MayHold(-2, 2)) << "that comes later";
  writes = StackWritesBefore(memory, f, 0x801B);
  EXPECT_TRUE(writes.MayHold(-2, 1));
  EXPECT_FALSE(writes.MayHold(-1, 2));
  // AIS #-4; TSX; TXA: from then on anybody may know an address in the stack.
  Load(0x8010, ByteList{0xA7, 0xFC, 0x95, 0x9F});
  Load(0x8014, ByteList(9, 0x9D));
  EXPECT_FALSE(StackWritesBefore(memory, f, 0x8013).MayHold(-3, 4));
  EXPECT_TRUE(StackWritesBefore(memory, f, 0x8014).MayHold(-3, 4));
}

// As SDCC calls through a pointer: a call of the next lines, which push the target and return to
// it.
TEST_F(CallStackTest, FollowsCallsThroughPointers) {
  Load(0x8000, ByteList{0xAD, 0x02, 0x20, 0xFE,  // BSR 8004; BRA *
                        0x87, 0x87, 0x81});      // PSHA; PSHA; RTS
  debug_info.functions[0].last = 0x8006;
  Load(0x0100, ByteList{0x80, 0x02});
  EXPECT_EQ(Stack(0x8010), "#0 f at t.c:12\n#1 main at t.c:7\n");
  EXPECT_EQ(StackDepth(memory, debug_info.functions[0], 0x8006), 4);
}

TEST_F(CallStackTest, LinesEndWithTheirFunction) {
  const auto line = [this](Address address) {
    const auto found = LineAt(address, debug_info);
    return found ? static_cast<int>(found->line) : 0;
  };
  EXPECT_EQ(line(0x8012), 12);
  EXPECT_EQ(line(0x8019), 14);
  EXPECT_EQ(line(0x801A), 0) << "code of a library behind it";
  EXPECT_EQ(line(0x7FFF), 0);
  EXPECT_EQ(CodeOfLineAt(0x8015, debug_info).first, 0x8013u);
  EXPECT_EQ(CodeOfLineAt(0x8015, debug_info).count, 4u);
  EXPECT_EQ(CodeOfLineAt(0x8018, debug_info).count, 3u) << "up to the function's end";
  EXPECT_EQ(FirstStatement(debug_info.functions[1], debug_info), 0x8013u);
  EXPECT_EQ(FirstStatement(debug_info.functions[0], debug_info), 0x8000u);
  // Where no functions are told, the next symbol ends a line.
  debug_info.functions.clear();
  debug_info.SymbolTable.Assign({{"lib", 0x8016, 0, {}}});
  EXPECT_EQ(line(0x8015), 13);
  EXPECT_EQ(line(0x8016), 0);
  EXPECT_EQ(line(0x8030), 0) << "behind the last line";
}

}  // namespace
}  // namespace brevant::frames
