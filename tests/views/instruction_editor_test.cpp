// SPDX-License-Identifier: MIT
#include "views/instruction_editor.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

class InstructionEditorTest : public ViewBench {
 protected:
  InstructionEditor Open(base::Address address) {
    const CodeLine line = ReadCodeLine(memory, debug_info.SymbolTable, address);
    return {line, memory, debug_info.SymbolTable, user};
  }
};

TEST_F(InstructionEditorTest, ReplacesTheBytesOfOneInstruction) {
  Load(0x0100, ByteList{0xA6, 0x12, 0x9D, 0x9D, 0x9D});
  debug_info.SymbolTable.Assign({{"START", 0x0100, 0, ""}});
  InstructionEditor editor = Open(0x0100);
  EXPECT_EQ(editor.Title(), "Edit at 000100");
  EXPECT_EQ(editor.initial_text(), "LDA  #12");
  target.board().ClearHostLog();
  EXPECT_TRUE(editor.Accept("bra start ; for ever"));
  EXPECT_EQ(Commands().find("R00FF w20 wFE"), 0u);
  EXPECT_TRUE(user.texts.empty());
  EXPECT_EQ(Peek(0x0100), 0x20);
  EXPECT_EQ(Peek(0x0101), 0xFE);
  EXPECT_EQ(Peek(0x0102), 0x9D);
  EXPECT_EQ(Open(0x0100).initial_text(), "BRA  START");
}

TEST_F(InstructionEditorTest, SaysWhenTheMemoryDidNotTakeIt) {
  Load(0x8000, ByteList{0xA6, 0x12});
  EXPECT_TRUE(Open(0x8000).Accept("LDA #34"));
  ASSERT_EQ(user.texts.size(), 1u);
  EXPECT_EQ(user.texts[0].find("The memory at 008000 did not take the instruction."), 0u);
  EXPECT_EQ(Peek(0x8001), 0x12);
}

TEST_F(InstructionEditorTest, WritesNothingForWhatIsNoInstruction) {
  InstructionEditor editor = Open(0x0100);
  target.board().ClearHostLog();
  for (const char* text : {"", " NOP", "LDA #NOSUCH", "NOP NOP", "BRA 300"}) {
    EXPECT_FALSE(editor.Accept(text)) << text;
  }
  EXPECT_EQ(user.beeps, 5);
  EXPECT_EQ(BytesSent(), 0u);
}

}  // namespace
}  // namespace brevant::views
