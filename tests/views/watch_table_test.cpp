// SPDX-License-Identifier: MIT
#include "views/watch_table.h"

#include <gtest/gtest.h>

#include "base/test_user.h"
#include "views/watch_form.h"

namespace brevant::views {
namespace {

WatchItem Named(const std::string& name) {
  return {.name = name, .reserved = static_cast<std::uint8_t>(name.front()), .resolved = true};
}

class WatchTableTest : public testing::Test {
 protected:
  // Ten entries "a" to "j", four of which fit.
  WatchTableTest() {
    std::vector<WatchItem> items;
    for (char name = 'a'; name <= 'j'; ++name) items.push_back(Named({name}));
    table.Assign(items);
    table.SetRows(4);
  }
  std::string Names() const {
    std::string names;
    for (const WatchItem& item : table.items()) names += item.name;
    return names;
  }
  std::string Shown() const {
    return table.Highlighted()->name + std::to_string(table.top()) + std::to_string(table.cursor());
  }
  WatchTable table;
};

TEST_F(WatchTableTest, EntriesMoveAndTheHighlightGoesWithThem) {
  EXPECT_FALSE(table.CanMoveUp());
  table.MoveUp();
  EXPECT_EQ(Shown(), "a00");
  for (int i = 0; i < 4; ++i) table.MoveDown();
  EXPECT_EQ(Names(), "bcdeafghij");
  EXPECT_EQ(Shown(), "a13") << "scrolled by one line";
  EXPECT_EQ(table.items()[4].reserved, 'e') << "belongs to the place, not to the entry";
  table.Scroll(ScrollCode::ThumbTrack, 4);
  table.PlaceCursor(0);
  table.MoveUp();
  EXPECT_EQ(Names(), "bcdaefghij");
  EXPECT_EQ(Shown(), "a30");
  table.MoveCursor(100);
  EXPECT_EQ(Shown(), "j63");
  EXPECT_FALSE(table.CanMoveDown());
  table.MoveDown();
  EXPECT_EQ(Names(), "bcdaefghij");
}

TEST_F(WatchTableTest, NewEntriesComeBehindTheHighlightAndThirtyFiveAreTheMost) {
  table.MoveCursor(2);
  EXPECT_TRUE(table.Insert(Named("X")));
  EXPECT_EQ(Names(), "abcXdefghij");
  EXPECT_EQ(Shown(), "c02");
  while (table.count() < WatchTable::kMost) EXPECT_TRUE(table.Insert(Named("Y")));
  EXPECT_FALSE(table.Insert(Named("Z")));
  EXPECT_EQ(table.count(), 35);
  table.Clear();
  EXPECT_EQ(table.Highlighted(), nullptr);
  EXPECT_TRUE(table.Insert(Named("Z")));
  EXPECT_EQ(Shown(), "Z00");
}

TEST_F(WatchTableTest, DeletingKeepsAnEntryHighlighted) {
  table.MoveCursor(9);
  table.Delete();
  EXPECT_EQ(Shown(), "i62");
  for (int i = 0; i < 6; ++i) table.Delete();
  EXPECT_EQ(Names(), "abc");
  EXPECT_EQ(Shown(), "c02") << "all fit again";
  for (int i = 0; i < 4; ++i) table.Delete();
  EXPECT_EQ(table.count(), 0);
  EXPECT_EQ(table.cursor(), 0);
}

TEST_F(WatchTableTest, ScrollsAsItsBarDoes) {
  EXPECT_EQ(table.last_position(), 9);
  table.PlaceCursor(3);
  table.Scroll(ScrollCode::PageDown, 0);
  table.Scroll(ScrollCode::PageDown, 0);
  EXPECT_EQ(Shown(), "j81") << "the cursor stays on an entry";
  table.Scroll(ScrollCode::LineDown, 0);
  table.Scroll(ScrollCode::LineDown, 0);
  EXPECT_EQ(Shown(), "j90");
  table.Scroll(ScrollCode::PageUp, 0);
  table.Scroll(ScrollCode::LineUp, 0);
  EXPECT_EQ(Shown(), "e40");
  table.SetRows(20);
  EXPECT_EQ(Shown(), "e04") << "a larger window shows all";
  EXPECT_EQ(table.last_position(), 0);
  table.Scroll(ScrollCode::LineDown, 0);
  EXPECT_EQ(table.top(), 0);
  table.PlaceCursor(10);
  EXPECT_EQ(Shown(), "e04") << "no line is there";
}

TEST_F(WatchTableTest, LinesUnfoldedBelowAnEntryBelongToIt) {
  const auto rows = [](int below) {
    ValueRows values;
    for (int i = 0; i <= below; ++i) values.AddHeading("row");
    return values;
  };
  table.SetValues(1, rows(3));
  table.MoveCursor(4);
  EXPECT_EQ(table.LineCount(), 13);
  EXPECT_EQ(Shown(), "b13");
  EXPECT_EQ(table.HighlightedPlace()->below, 3);
  table.MoveDown();
  EXPECT_EQ(Names(), "acbdefghij");
  EXPECT_EQ(table.HighlightedPlace()->below, 0);
  table.Scroll(ScrollCode::ThumbTrack, 5);
  EXPECT_EQ(table.PlaceOf(5).entry, 2);
  EXPECT_EQ(table.PlaceOf(6).entry, 3);
  table.PlaceCursor(0);
  table.SetValues(2, rows(1));
  EXPECT_EQ(table.HighlightedPlace()->below, 1) << "as far as it is still there";
}

TEST(WatchItem, ShowsNumbersByDisplayWidthAndSign) {
  const auto text = [](const char* codes, std::uint32_t value) {
    return WatchItem{.lengthOrValue = static_cast<std::int32_t>(value),
                     .display = codes[0],
                     .width = codes[1],
                     .sign = codes[2],
                     .held = Held::Current}
        .ValueText();
  };
  EXPECT_EQ(text("HBS", 0x0A), "0a");
  EXPECT_EQ(text("HWS", 0x0A), "000a");
  EXPECT_EQ(text("HLU", 0xFFFFFFFF), "ffffffff");
  EXPECT_EQ(text("DBS", 0xFF), "-1");
  EXPECT_EQ(text("DBU", 0xFF), "255");
  EXPECT_EQ(text("DWS", 0x8000), "-32768");
  EXPECT_EQ(text("DWU", 0x8000), "32768");
  EXPECT_EQ(text("DLS", 0xFFFFFFFE), "-2");
  EXPECT_EQ(text("DLU", 0xFFFFFFFE), "4294967294");
  EXPECT_EQ(text("BBS", 0xA5), "10100101");
  EXPECT_EQ(text("BWS", 0x8001), "1000000000000001");
  EXPECT_EQ(text("BLS", 0x80000001), "10000000000000000000000000000001");
}

TEST(WatchItem, LabelsEndInTheDisplayCodeAndAStarForNoSymbol) {
  WatchItem item = Named("count");
  EXPECT_EQ(item.Label(), "    count(H) ");
  item.name = "eightchr";
  EXPECT_EQ(item.Label(), " eightchr(H) ");
  item.name = "ninechars";
  EXPECT_EQ(item.Label(), "ninechars(H) ");
  item.name = "much_longer_name";
  item.resolved = false;
  EXPECT_EQ(item.Label(), "much_long(H)*");
  EXPECT_EQ(item.ValueText(), "--") << "nothing was read";
}

class WatchFormTest : public testing::Test {
 protected:
  WatchFormTest() { info.SymbolTable.Assign({{"_count", 0x80, 0, ""}, {"x", 0x90, 0, ""}}); }
  std::string Refusal(const WatchForm& form) {
    const auto refused = form.Check({info}, user);
    return refused ? refused->why : "";
  }
  base::TestUser user;
  symbols::DebugInfo info;
};

TEST_F(WatchFormTest, ANameBringsItsAddress) {
  WatchForm form = WatchForm::ToAdd();
  form.TypeSymbol("x", {info});
  EXPECT_EQ(form.address, "") << "one letter may become any name";
  form.TypeSymbol("_coun", {info});
  EXPECT_EQ(form.address, "");
  form.TypeSymbol("_count", {info});
  EXPECT_EQ(form.symbol + form.address, "_COUNT00080");
  EXPECT_EQ(form.Item(info).address, 0x80u);
  EXPECT_TRUE(form.Item(info).resolved);
  form.address = "123";
  EXPECT_EQ(form.Item(info).address, 0x80u) << "the symbol's address counts";
  form.ChooseSymbol("no_symbol", {info});
  const WatchItem item = form.Item(info);
  EXPECT_EQ(item.address, 0x123u);
  EXPECT_FALSE(item.resolved);
  form.symbol = "";
  EXPECT_EQ(form.Item(info).name, "123");
  form.symbol = "a_name_of_more_than_24_characters";
  EXPECT_EQ(form.Item(info).name, "a_name_of_more_than_24_c");
}

TEST_F(WatchFormTest, RefusesWhatIsNoAddressOrLength) {
  WatchForm form = WatchForm::ToAdd();
  EXPECT_NE(Refusal(form), "");
  form.address = "12G";
  EXPECT_EQ(form.Check({info}, user)->field, WatchForm::Field::Address);
  form.address = "100000080";
  EXPECT_EQ(Refusal(form), "100000080 is beyond FFFF, the last address of the target.");
  form.address = "00000000080";
  EXPECT_EQ(Refusal(form), "");
  form.display = watch_codes::kString;
  EXPECT_EQ(form.Check({info}, user)->field, WatchForm::Field::Length);
  form.length = "a";
  EXPECT_EQ(Refusal(form), "");
  EXPECT_EQ(form.Item(info).lengthOrValue, 10);
  form.length = "fff";
  EXPECT_EQ(form.Item(info).lengthOrValue, 16);
  form.symbol = "a@b";
  EXPECT_EQ(form.Check({info}, user)->field, WatchForm::Field::Symbol);
  EXPECT_EQ(user.beeps, 5);
}

}  // namespace
}  // namespace brevant::views
