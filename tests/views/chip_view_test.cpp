// SPDX-License-Identifier: MIT
#include "views/chip_view.h"

#include "control/program_context.h"
#include "views/name_value.h"
#include "views/view_bench.h"

namespace brevant::views {
namespace {

using ::testing::ElementsAre;

class ChipViewTest : public ViewBench {
 protected:
  ChipViewTest() { Show(100); }
  void Show(int lines) {
    view.Resize(lines * 10, 10);
    Follow();
    BytesSent();
  }
  int RowOf(const std::string& path) {
    for (int n = 0; n < view.count(); ++n) {
      if (view.At(n).path == path) return n;
    }
    ADD_FAILURE() << path;
    return 0;
  }
  void Unfold(const std::string& path) {
    view.MoveCursor(RowOf(path));
    view.Unfold(true);
    Follow();
  }
  std::string Text(const std::string& path) { return view.At(RowOf(path)).text; }
  std::string Changed() {
    std::string paths;
    for (int n = 0; n < view.count(); ++n) {
      if (view.At(n).changed) paths += view.At(n).path + " ";
    }
    return paths;
  }

  void Step(const ByteList& instruction) {
    Program(0x0150, instruction);
    run.StepCommand(control::Calls::Follow);
    Follow();
  }

  ChipView view{open, memory, activity};
};

TEST_F(ChipViewTest, UnfoldsGroupsToRegistersAndTheseToFields) {
  EXPECT_EQ(BytesSent(), 0u) << "groups alone show nothing of the target";
  EXPECT_EQ(view.At(0).left, "+ Ports");
  monitor.WriteByte(0x20, 0x62);
  Unfold("Timer 1");
  Unfold("Timer 1/T1SC");
  const int row = RowOf("Timer 1/T1SC");
  EXPECT_EQ(view.At(row).left + view.At(row).text,
            "  - T1SC         62 %01100010  status and control");
  EXPECT_EQ(view.At(row + 2).left + view.At(row + 2).text,
            "      TOIE       = 1  1: an overflow interrupts");
  EXPECT_EQ(Text("Timer 1/T1SC/PS"), "= 2  counts bus clock / 1, 2, 4 to 64; 7: the external pin");
  EXPECT_TRUE(view.ToggleAt(row - view.top(), 2));
  Follow();
  EXPECT_EQ(view.At(row + 1).path, "Timer 1/T1CNTH");
  EXPECT_FALSE(view.ToggleAt(row - view.top(), 0)) << "beside its mark";
}

TEST_F(ChipViewTest, ReadsWhatIsInSightAndOnlyOnce) {
  Unfold("Ports");
  BytesSent();
  Show(4);
  EXPECT_EQ(BytesSent(), 0u) << "all that is in sight is known";
  view.Refresh();
  Follow();
  EXPECT_EQ(Commands(), "R0000 r R0003");
  view.Scroll(ScrollCode::LineDown);
  Follow();
  EXPECT_EQ(Commands(), "R0004") << "the row that has come into sight";
  Follow();
  EXPECT_EQ(Commands(), "");
}

TEST_F(ChipViewTest, ReadsRegistersThatChangeOnBeingReadWhenTheUserSaysSo) {
  Unfold("SIM");
  EXPECT_EQ(Text("SIM/SRSR"), "-- (reading it clears the causes of the last reset)");
  EXPECT_TRUE(view.At(RowOf("SIM/SRSR")).on_request);
  EXPECT_EQ(Peek(0xFE01), 0x80) << "not read";
  Unfold("SIM/SRSR");
  EXPECT_EQ(Text("SIM/SRSR/POR"), "--");
  view.Refresh();
  Follow();
  EXPECT_EQ(Peek(0xFE01), 0x80) << "nor by a refresh";
  view.ReadNow();
  Follow();
  EXPECT_EQ(Peek(0xFE01), 0);
  EXPECT_EQ(Text("SIM/SRSR"), "80 %10000000  why it was reset last");
  EXPECT_EQ(Text("SIM/SRSR/POR"), "= 1  power on");
  Step({0x9D});
  EXPECT_EQ(Text("SIM/SRSR").substr(0, 2), "--") << "what was true at the stop before";
}

TEST_F(ChipViewTest, SetsRegistersAndFieldsAndMarksWhatHasChangedSinceTheStopBefore) {
  Unfold("Ports");
  Unfold("Ports/DDRA");
  view.MoveCursor(RowOf("Ports/DDRA"));
  EXPECT_EQ(view.Editable(), "DDRA");
  EXPECT_EQ(view.EditableText(), "00");
  EXPECT_NE(view.Assign("100").refused, "");
  EXPECT_NE(view.Assign("").refused, "");
  EXPECT_EQ(view.Assign("f0").refused + view.Assign("f0").remark, "");
  Follow();
  EXPECT_EQ(Text("Ports/DDRA").substr(0, 2), "f0");
  view.MoveCursor(RowOf("Ports/DDRA/1"));
  EXPECT_EQ(view.Editable(), "DDRA.1");
  EXPECT_EQ(view.Assign("1").refused, "");
  Follow();
  EXPECT_EQ(Peek(0x0004), 0xF2);
  EXPECT_EQ(Changed(),
            "Ports/DDRA Ports/DDRA/7 Ports/DDRA/6 Ports/DDRA/5 Ports/DDRA/4 "
            "Ports/DDRA/1 ");
  Step({0x13, 0x04});  // BCLR 1,DDRA
  EXPECT_EQ(Changed(), "Ports/DDRA Ports/DDRA/1 ");
  Unfold("Timer 1");
  view.MoveCursor(RowOf("Timer 1/T1CNTL"));
  EXPECT_EQ(view.Editable(), "") << "can only be read";
}

TEST_F(ChipViewTest, ARegisterIsDescribedWhereCodeNamesIt) {
  const auto text = [this](const char* word) {
    return NameValueText(word,
                         control::ContextOf(memory, debug_info, frame, eval::Reading::Sparing));
  };
  EXPECT_EQ(text("PBWC"), "0037 PBWC (bandwidth control) = 40 %01000000");
  EXPECT_EQ(text("SRSR"), "SRSR is not available here (reading the register changes it)");
  EXPECT_EQ(Peek(0xFE01), 0x80);
}

}  // namespace
}  // namespace brevant::views
