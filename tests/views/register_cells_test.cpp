// SPDX-License-Identifier: MIT
#include "views/register_cells.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

class RegisterCellsTest : public ViewBench {
 protected:
  RegisterCells cells{open, frame, user};

  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (const RegisterCell& cell : cells.Cells()) texts.push_back(cell.text);
    return texts;
  }
  // The cells shown in red.
  std::string Changed() {
    cells.UpdateChangeFlags();
    std::string changed;
    for (const RegisterCell& cell : cells.Cells()) changed += cell.changed ? '*' : '.';
    return changed;
  }
};

TEST_F(RegisterCellsTest, ShowTheRegistersOfTheStoppedProgram) {
  SetPC(0x8123);
  frame.WriteHX(0x0A7F);
  frame.WriteA(0x05);
  frame.WriteCCR(0x6A);
  ASSERT_TRUE(frame.SetStackPointer(0x023F));
  ASSERT_TRUE(frame.ReadRegisters());
  EXPECT_THAT(Texts(), ::testing::ElementsAre("  PC 8123", "  SP 023f", "  HX 0a7f", "   A   05",
                                              "V11H 0110", "INZC 1010"));
  EXPECT_EQ(cells.Explain(2), "Index register\n2687 decimal\nH 0a, X 7f");
  EXPECT_EQ(cells.Explain(5),
            "I, interrupts masked: 1\nN, negative: 0\nZ, zero: 1\nC, carry or borrow: 0");
}

TEST_F(RegisterCellsTest, MarkWhatAStepHasChanged) {
  Program(0x0100, {0xA6, 0x12, 0x9D});
  Changed();
  EXPECT_EQ(Changed(), "......");
  run.StepCommand(control::Calls::Follow);
  EXPECT_EQ(Changed(), "*..*..");
  run.StepCommand(control::Calls::Follow);
  EXPECT_EQ(Changed(), "*.....");
}

TEST_F(RegisterCellsTest, FlowIntoAsManyColumnsAsFit) {
  constexpr int kCharacter = 8;
  struct Case {
    int characters, per_row;
  };
  for (const Case& c : {Case{5, 1}, Case{21, 1}, Case{22, 2}, Case{66, 6}, Case{200, 18}}) {
    cells.Resize(c.characters * kCharacter, kCharacter);
    EXPECT_EQ(cells.cells_per_row(), c.per_row) << c.characters;
  }
  cells.Resize(44 * kCharacter, kCharacter);
  EXPECT_EQ(cells.PositionOf(5), (CellPosition{1, 1}));
}

TEST_F(RegisterCellsTest, AreHitOnTheirValuesOnly) {
  cells.Resize(220, 10);  // two a row, of 110 pixels
  struct Case {
    int x, y;
    std::optional<int> cell;
  };
  for (const Case& c : {Case{49, 0, {}}, Case{50, 0, 0}, Case{99, 19, 0}, Case{100, 0, {}},
                        Case{160, 20, 3}, Case{160, 59, 5}, Case{160, 60, {}},
                        // Right of the last column there is nothing.
                        Case{280, 0, {}}, Case{-1, 0, {}}, Case{50, -1, {}}}) {
    EXPECT_EQ(cells.HitTest(c.x, c.y, 10, 20), c.cell) << c.x << ',' << c.y;
  }
}

TEST_F(RegisterCellsTest, AreEditedInTheirOwnForm) {
  frame.WriteCCR(0x60);
  struct Case {
    int cell;
    const char* caption;
    int length;
    const char* refused;
    const char* accepted;
    const char* shown;
  };
  const std::vector<Case> cases{
      {0, "EDIT: PC", 4, "12G4", "8001", "  PC 8001"},
      {1, "EDIT: SP", 4, "x", "023f", "  SP 023f"},
      {2, "EDIT: HX", 4, "12 34", "1234", "  HX 1234"},
      {3, "EDIT: A", 2, "-1", "FE", "   A   fe"},
      {4, "EDIT: V11H", 4, "1012", "1011", "V11H 1011"},
      {5, "EDIT: INZC", 4, "A", "0101", "INZC 0101"},
  };
  for (const Case& c : cases) {
    cells.Select(c.cell);
    RegisterEditor editor = cells.OpenEditor();
    EXPECT_EQ(editor.caption(), c.caption);
    EXPECT_EQ(editor.max_length(), c.length);
    EXPECT_TRUE(std::string(c.shown).size() >= editor.initial_text().size());
    const std::vector<std::string> before = Texts();
    EXPECT_FALSE(editor.Accept(c.refused)) << c.caption;
    EXPECT_EQ(Texts(), before);
    EXPECT_TRUE(editor.Accept(c.accepted));
    ASSERT_TRUE(frame.ReadRegisters());
    EXPECT_EQ(Texts()[static_cast<std::size_t>(c.cell)], c.shown);
  }
  EXPECT_EQ(user.beeps, 6);
  EXPECT_TRUE(user.texts.empty());
}

TEST_F(RegisterCellsTest, OpenTheirEditorWithTheKeyThatWasTyped) {
  SetPC(0x1234);
  EXPECT_EQ(cells.OpenEditor().initial_text(), "1234");
  EXPECT_FALSE(cells.OpenEditor().typing_continues());
  RegisterEditor editor = cells.OpenEditor('7');
  EXPECT_EQ(editor.initial_text(), "7");
  EXPECT_TRUE(editor.typing_continues());
  EXPECT_EQ(editor.max_length(), 4);
  EXPECT_TRUE(editor.Accept("7"));
  EXPECT_EQ(frame.PC, 0x0007u);
  EXPECT_TRUE(cells.OpenEditor().Accept(""));
  EXPECT_EQ(frame.PC, 0u);
}

TEST_F(RegisterCellsTest, TellWhenTheTargetDoesNotTakeAStackPointer) {
  cells.Select(1);
  target.SetFaultPlan({{simulator::FaultKind::CutLine, 0}});
  EXPECT_TRUE(cells.OpenEditor().Accept("0123"));
  EXPECT_EQ(user.texts.size(), 1u);
}

}  // namespace
}  // namespace brevant::views
