// SPDX-License-Identifier: MIT
#include "views/watch_view.h"

#include "views/view_bench.h"
#include "views/watch_editor.h"

namespace brevant::views {
namespace {

class WatchViewTest : public ViewBench {
 protected:
  WatchViewTest() {
    Load(0x0180, ByteList{0x12, 0x34, 0x56, 0x78, 'h', 'i', 0, '!'});
    BytesSent();
  }
  void Watch(base::Address address, const char* codes, int length = 0) {
    table.Insert({.address = address,
                  .lengthOrValue = length,
                  .name = base::Format("%x", address),
                  .display = codes[0],
                  .width = codes[1],
                  .sign = codes[2]});
    table.MoveCursor(1);
    FollowList();
  }
  void FollowList() { Follow(table.generation()); }
  // The values; '!' behind those that have changed.
  std::string Values() const {
    std::string values;
    for (const WatchItem& item : table.items()) {
      values += item.ValueText() + (item.changed ? "! " : " ");
    }
    return values;
  }
  // Opens the editor of the highlighted entry, changes its text and accepts it.
  std::string Edit(const std::string& text) {
    WatchEditor editor(*table.Highlighted(), memory, user);
    if (!editor.Open()) return "refused";
    const std::string before = editor.InitialText();
    editor.Accept(text);
    FollowList();
    return before;
  }
  std::string LastText() { return user.texts.empty() ? "" : user.texts.back(); }

  WatchTable table;
  WatchView view{open, table, {memory, debug_info, frame, activity}};
};

TEST_F(WatchViewTest, ReadsEachWidthWithAsFewBytesAsItTakes) {
  Watch(0x0180, "HBS");
  EXPECT_EQ(BytesSent(), 3u) << "READ";
  memory.DropAll();
  Watch(0x0182, "HWS");
  BytesSent();
  memory.DropAll();
  table.Delete();
  table.Delete();
  Watch(0x0180, "DLU");
  EXPECT_EQ(BytesSent(), 2u * (3 + 1)) << "two words";
  EXPECT_EQ(Values(), "305419896 ");
  Watch(0x0184, "SBS", 3);
  EXPECT_EQ(BytesSent(), 3u + 2) << "READ and two IREADs";
  EXPECT_EQ(Values(), std::string("305419896 hi\1 "));
  Follow(table.generation() + 1);
  EXPECT_EQ(BytesSent(), 0u) << "all of it is known";
}

TEST_F(WatchViewTest, MarksWhatDiffersFromTheTimeBefore) {
  Watch(0x0180, "HBS");
  Watch(0x0181, "HWS");
  EXPECT_EQ(Values(), "12 3456 ");
  // STA $0181; NOP
  Program(0x0190, {0xC7, 0x01, 0x81, 0x9D, 0x9D});
  frame.WriteA(0x99);
  FollowList();
  run.StepCommand(control::Calls::Follow);
  FollowList();
  EXPECT_EQ(Values(), "12 9956! ");
  view.Refresh();
  FollowList();
  EXPECT_EQ(Values(), "12 9956! ") << "nothing has happened since";
  run.StepCommand(control::Calls::Follow);
  FollowList();
  EXPECT_EQ(Values(), "12 9956 ");
  memory.WriteByte(0x0180, 0xFF);
  FollowList();
  EXPECT_EQ(Values(), "ff! 9956 ") << "an edit in any view";
}

TEST_F(WatchViewTest, WhatCannotBeReadIsNoNumber) {
  Watch(0xFFFF, "HWS");
  EXPECT_EQ(Values(), "-- ");
  EXPECT_EQ(view.Explain(),
            "ffff ffff: signed word; its name is no symbol of the program; it ends beyond FFFF");
  table.Delete();
  Watch(0xFE01, "HBS");
  EXPECT_EQ(Values(), "-- ");
  EXPECT_NE(view.Explain().find("SRSR not read yet"), std::string::npos);
  Watch(0xFE02, "HWS");
  EXPECT_EQ(memory.LastRead(0xFE01), std::nullopt) << "nor read with what lies beside it";
  view.Refresh();
  FollowList();
  EXPECT_NE(Values().substr(0, 2), "--");
  table.Clear();
  Watch(0x0180, "HBS");
  target.SetFaultPlan({{simulator::FaultKind::CutLine, 0}});
  memory.DropAll();
  Watch(0x0182, "HBS");
  Follow(table.generation() + 1);
  EXPECT_TRUE(link.LinkError);
  EXPECT_EQ(Values(), "-- -- ") << "a value of long ago is none";
  EXPECT_NE(view.Explain().find("the target does not answer"), std::string::npos);
}

TEST_F(WatchViewTest, WaitsForTheTargetButNotWithTheList) {
  Watch(0x0180, "HBS");
  Program(0x0190, {0x20, 0xFE});  // BRA to itself
  run.GoCommand();
  Watch(0x0181, "HBS");
  EXPECT_EQ(Values(), "12 -- ");
}

TEST_F(WatchViewTest, EditsGoToTheTargetAndAreLookedAt) {
  Watch(0x0180, "DWS");
  EXPECT_EQ(Edit("beef"), "1234");
  EXPECT_EQ(Values(), "-16657! ");
  EXPECT_EQ(Edit("x"), "beef");
  EXPECT_EQ(user.beeps, 1);
  Watch(0x0180, "HLS");
  EXPECT_EQ(Edit("1"), "beef5678");
  EXPECT_EQ(memory.AskByte(0x0183), 1);
  EXPECT_EQ(Edit(""), "00000001") << "an empty text is 0";
  Watch(0x0184, "SBS", 4);
  EXPECT_EQ(Edit("\1\1\1?"), "hi\1!");
  ByteList bytes(4);
  memory.AskBytes(bytes, 0x0184);
  EXPECT_EQ(bytes, (ByteList{1, 1, 0, '?'})) << "only what was zero is shown as 1";
  Edit("A");
  memory.AskBytes(bytes, 0x0184);
  EXPECT_EQ(bytes, (ByteList{'A', 0, 0, '?'}));
  EXPECT_EQ(LastText(), "");
}

TEST_F(WatchViewTest, EditsThatDoNotTakeAreTold) {
  Watch(0x8000, "HBS");
  EXPECT_EQ(Edit("55"), "refused");
  EXPECT_EQ(LastText(),
            "8000 cannot be edited: 8000 is flash, which only erasing and programming change.");
  Watch(0xFFFF, "HWS");
  EXPECT_EQ(Edit("55"), "refused");
  Watch(0xFE08, "SBS", 0);
  EXPECT_EQ(Edit("55"), "refused");
  EXPECT_EQ(LastText(), "fe08 cannot be edited: no byte of it is shown.");
  Watch(0x0180, "HBS");
  WatchEditor editor(*table.Highlighted(), memory, user);
  ASSERT_TRUE(editor.Open());
  target.SetFaultPlan({{simulator::FaultKind::CutLine, 0}});
  EXPECT_TRUE(editor.Accept("55"));
  EXPECT_NE(LastText().find("What 180 holds now could not be looked at"), std::string::npos);
}

}  // namespace
}  // namespace brevant::views
