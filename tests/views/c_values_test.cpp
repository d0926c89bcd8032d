// SPDX-License-Identifier: MIT
// C variables in the watch view and in the variables view, of programs that SDCC has made.
#include "control/program_context.h"
#include "images/image_file.h"
#include "symbols/importers.h"
#include "symbols/places.h"
#include "views/variables_view.h"
#include "views/view_bench.h"
#include "views/watch_form.h"
#include "views/watch_view.h"

namespace brevant::views {
namespace {

class CValues : public ViewBench {
 protected:
  // The program in flash, stopped where it comes to that place.
  void RunTo(const std::string& program, const char* place) {
    const std::string path = std::string(BREVANT_TEST_DATA) + "/programs/" + program;
    for (const images::Block& block : images::ReadImageFile(path + ".s19").ToImage().Blocks()) {
      target.board().Load(block.address, block.bytes);
    }
    memory.DropAll();
    auto parsed = symbols::ReadDebugFile(path + ".cdb");
    ASSERT_TRUE(parsed && parsed->problem.empty());
    debug_info.Assign(std::move(*parsed), "");
    debug_info.DebugInfoLoaded = true;
    UseHardware(true);
    SetPC(memory.ReadWord(0xFFFE));
    GoOnTo(place);
  }
  void GoOnTo(const char* place) {
    const auto found = symbols::FindPlace(place, debug_info);
    ASSERT_TRUE(found.address) << found.problem;
    run.RunToAddress(*found.address);
    TickUntilIdle();
    ASSERT_EQ(frame.PC, *found.address);
    FollowAll();
  }
  void FollowAll() { Follow(table.generation()); }
  eval::Context Here() {
    return control::ContextOf(memory, debug_info, frame, eval::Reading::Sparing);
  }
  // As the dialog adds it, with what the name brings.
  void Watch(const char* name) {
    const eval::Context here = Here();
    WatchForm form = WatchForm::ToAdd();
    form.ChooseSymbol(name, {debug_info, &here});
    ASSERT_FALSE(form.Check({debug_info, &here}, user));
    table.Insert(form.Item(debug_info));
    table.MoveCursor(table.LineCount());
    FollowAll();
  }
  std::string Watched(int entry) const {
    const WatchItem& item = table.items()[static_cast<std::size_t>(entry)];
    return item.Label() + item.ValueText();
  }
  static std::string Text(const ValueRow& row) {
    return row.Left() + (row.is_heading ? "" : row.text) + (row.changed ? " !" : "");
  }
  std::string Below(int entry) const {
    std::string text;
    const auto& rows = table.items()[static_cast<std::size_t>(entry)].values.rows();
    for (std::size_t n = 1; n < rows.size(); ++n) text += Text(rows[n]) + '\n';
    return text;
  }

  WatchTable table;
  WatchView watch{open, table, {memory, debug_info, frame, activity}};
  VariablesView variables{open, {memory, debug_info, frame, activity}};
};

TEST_F(CValues, NamesBringTheirTypes) {
  RunTo("structs", "done");
  Watch("sum_y");
  EXPECT_EQ(Watched(0), "    sum_y(H) fff6");
  EXPECT_EQ(table.items()[0].sign, 'S');
  Watch("points[2].y");
  EXPECT_EQ(Watched(1), "points[2](H) fffd");
  Watch("points[1].x");
  EXPECT_EQ(table.items()[2].width, 'B');
  EXPECT_EQ(Watched(2), "points[1](H) 04");
  Watch("flags.middle");
  EXPECT_EQ(Watched(3), "flags.mid(H) 09");
  EXPECT_TRUE(table.items()[3].computed) << "a bit-field";
  Watch("values");
  EXPECT_EQ(table.items()[4].display, 'S');
  EXPECT_EQ(table.items()[4].bytes(), 8);
  watch.ShowAsC(true);
  FollowAll();
  EXPECT_EQ(Watched(0), "    sum_y(C) -10");
  EXPECT_EQ(Watched(3), "flags.mid(C) 9");
}

TEST_F(CValues, ValuesWithPartsUnfold) {
  RunTo("structs", "done");
  Watch("segment");
  EXPECT_EQ(Watched(0).substr(0, 13), "  segment(C)+");
  watch.Unfold(true);
  FollowAll();
  EXPECT_EQ(Below(0), "  + from = {x = 1, y = -1}\n  + to = {x = 16, y = -4}\n");
  watch.MoveCursor(2);
  watch.Unfold(true);
  FollowAll();
  EXPECT_EQ(Below(0),
            "  + from = {x = 1, y = -1}\n  - to = {x = 16, y = -4}\n      x = 16\n      y = -4\n");
  EXPECT_NE(watch.Explain().find("segment/to"), std::string::npos) << watch.Explain();
  EXPECT_TRUE(watch.ToggleAt(0, kWatchLabelWidth - 1));
  FollowAll();
  EXPECT_EQ(Below(0), "");
  EXPECT_EQ(table.count(), 1);
}

TEST_F(CValues, AnExpressionIsEvaluatedAtEachStopAndSaysWhyItHasNoValue) {
  RunTo("recursion", "gcd");
  Watch("b");
  Watch("a");
  Watch("nobody.at_all");
  EXPECT_EQ(Watched(0), "        b(H) 01ce") << "462, on the stack";
  EXPECT_EQ(Watched(1).substr(12), "*--") << "in registers for a part of the function";
  EXPECT_NE(table.items()[1].problem.find("register"), std::string::npos);
  EXPECT_EQ(Watched(2).substr(12), "*--");
  EXPECT_EQ(table.items()[2].problem, "there is no nobody");
  GoOnTo("gcd");
  EXPECT_EQ(Watched(0), "        b(H) 0093") << "1071 % 462, elsewhere on the stack";
  EXPECT_TRUE(table.items()[0].changed);
  GoOnTo("done");
  EXPECT_EQ(Watched(0), "        b(H)*--") << "no variable of this function";
}

TEST_F(CValues, TheVariablesOfThePlaceAreShownOrSaidNotToBeAvailable) {
  RunTo("structs", "done");
  variables.Resize(100, 1);
  FollowAll();
  const auto row = [this](const std::string& name) -> const ValueRow* {
    const auto found = std::ranges::find(variables.rows(), name, &ValueRow::name);
    return found == variables.rows().end() ? nullptr : &*found;
  };
  EXPECT_TRUE(variables.rows()[0].name.find("done") != std::string::npos);
  ASSERT_NE(row("sum_y"), nullptr);
  EXPECT_EQ(row("sum_y")->text, "-10");
  EXPECT_EQ(row("flags")->text, "{low = 5, middle = 9, top = 1}");
  EXPECT_TRUE(row("points")->has_parts);
  // Changed through an expression, and read back.
  variables.MoveCursor(static_cast<int>(row("sum_y") - variables.rows().data()));
  ASSERT_NE(variables.Editable(), nullptr);
  EXPECT_EQ(variables.Assign("size_of_line * 2"), "");
  FollowAll();
  EXPECT_EQ(Text(*row("sum_y")), "  sum_y = 12 !");
  EXPECT_NE(variables.Assign("no such"), "");
  EXPECT_NE(variables.Assign("70000"), "");
  EXPECT_EQ(memory.ReadWord(row("sum_y")->value.place->address), 12u);
  variables.MoveCursor(static_cast<int>(row("points") - variables.rows().data()));
  EXPECT_EQ(variables.Editable(), nullptr) << "only its members";
  variables.Unfold(true);
  FollowAll();
  EXPECT_EQ(Text(*row("[3]")), "  + [3] = {x = 16, y = -4}");
}

TEST_F(CValues, LocalsAreNeverShownWhereTheyAreNot) {
  RunTo("recursion", "gcd");
  variables.Resize(100, 1);
  FollowAll();
  std::string shown;
  for (const ValueRow& row : variables.rows()) {
    if (row.is_heading && row.name == "globals") break;
    shown += Text(row).substr(0, 32) + '\n';
  }
  EXPECT_EQ(shown, "gcd: parameters and locals\n  a = not available here (kept i\n  b = 462\n");
}

}  // namespace
}  // namespace brevant::views
