// SPDX-License-Identifier: MIT
#include "views/stack_view.h"

#include "views/view_bench.h"

namespace brevant::views {
namespace {

constexpr int kStackLineHeight = 10;

// The program's SP is $00FF. In flash: main calls f, which calls g; h is the timer's handler.
class StackViewTest : public ViewBench {
 protected:
  StackViewTest() {
    Load(0x8000, ByteList{0xCD, 0x80, 0x10, 0x20, 0xFE});  // JSR 8010; BRA *
    Load(0x8010, ByteList{0xAD, 0x0E, 0xFD, 0x81});        // BSR 8020; JSR ,X; RTS
    Load(0x8020, ByteList{0x9D, 0x81});
    Load(0x8030, ByteList{0x8B, 0x8A, 0x80});
    Load(0xFFF2, ByteList{0x80, 0x30});
    SetPC(0x8020);
  }
  void NameFunctions() {
    const auto function = [this](const char* name, base::Address first, base::Address last) {
      symbols_.push_back({name, first, 0, {}});
      debug_info.functions.push_back({.name = name, .module = "", .first = first, .last = last});
    };
    function("_main", 0x8000, 0x8004);
    function("_f", 0x8010, 0x8013);
    function("_g", 0x8020, 0x8021);
    function("_h", 0x8030, 0x8032);
    debug_info.SymbolTable.Assign(symbols_);
    debug_info.LineTable.Assign({{0x8000, 7, 0}, {0x8010, 12, 0}}, {"t.c"});
  }
  void Show(int lines) {
    view.Resize(lines * kStackLineHeight, kStackLineHeight);
    BytesSent();
    Follow();
  }
  std::string Text(std::size_t n) const {
    return view.lines().at(n).text.substr(static_cast<std::size_t>(StackTextColumn()));
  }

  std::vector<symbols::Symbol> symbols_;
  StackView view{open, {memory, debug_info, frame, activity}};
};

TEST_F(StackViewTest, TellsReturnAddressesByTheCallBeforeThem) {
  // A local, then the return addresses; the last number is one too, but no call stands before it.
  Load(0x0100, ByteList{0x80, 0x80, 0x12, 0x80, 0x03, 0x80, 0x13, 0x80, 0x04});
  NameFunctions();
  Show(6);
  EXPECT_EQ(view.lines()[0].text, "000100   +1  80              128");
  EXPECT_EQ(view.lines()[1].text,
            "000101   +2  80 12           return to 8012 behind BSR _g at 8010 _f, t.c:12");
  EXPECT_EQ(Text(2), "return to 8003 behind JSR _f at 8000 _main, t.c:7");
  EXPECT_EQ(Text(3), "perhaps return to 8013 behind an indexed JSR at 8012 _f+2");
  EXPECT_EQ(Text(4), "128");
  EXPECT_EQ(Text(5), "4");
  view.MoveCursor(1);
  EXPECT_EQ(view.CodeUnderCursor(), 0x8010u);
  view.MoveCursor(0);
  EXPECT_EQ(view.CodeUnderCursor(), std::nullopt);
  // Another look costs nothing, and a byte that changes is marked.
  BytesSent();
  debug_info.SymbolTable.Assign(symbols_);
  Follow();
  EXPECT_EQ(BytesSent(), 0u);
  memory.WriteByte(0x0100, 0x81);
  Follow();
  EXPECT_TRUE(view.lines()[0].changed[0]);
  // Without names there is no telling who was called.
  debug_info.functions.clear();
  debug_info.SymbolTable.Clear();
  debug_info.LineTable.Clear();
  Follow();
  EXPECT_EQ(Text(1), "perhaps return to 8012 behind BSR 8020 at 8010");
}

TEST_F(StackViewTest, NamesWhatAnInterruptHasStackedWithItsVector) {
  const ByteList stacked{0x00, 0x62, 0x12, 0x34, 0x80, 0x03, 0x55};
  NameFunctions();
  Load(0x0100, stacked);
  SetPC(0x8031);
  Show(3);
  EXPECT_EQ(Text(1), "perhaps interrupt TIM1-OVF at 8003 _main+3, t.c:7: CCR=62 A=12 X=34");
  EXPECT_EQ(Text(2), "85");
  // In no handler, at no instruction's start, or with interrupts masked, these are but numbers.
  for (const auto& [pc, at, byte] :
       {std::tuple{0x8020, 0x0100, 0x00}, {0x8031, 0x0105, 0x02}, {0x8031, 0x0101, 0x6A}}) {
    Load(0x0100, stacked);
    memory.WriteByte(static_cast<base::Address>(at), static_cast<std::uint32_t>(byte));
    SetPC(static_cast<base::Address>(pc));
    Follow();
    EXPECT_EQ(view.lines().at(1).entry.kind, frames::StackEntry::Kind::Byte) << pc << ' ' << at;
  }
}

TEST_F(StackViewTest, ReadsABoundedNumberOfBytesAndSaysWhenThatWasNotEnough) {
  ByteList many(0x60);
  for (std::size_t i = 0; i < many.size(); i += 2) {
    many[i] = static_cast<std::uint8_t>(0x90 + i);
    many[i + 1] = static_cast<std::uint8_t>(i);
  }
  Load(0x0100, many);
  Show(0x60);
  const auto not_looked_at = [this] {
    return std::ranges::count_if(view.lines(),
                                 [](const StackLine& line) { return !line.entry.looked_at; });
  };
  const auto before = not_looked_at();
  EXPECT_GT(before, 0);
  EXPECT_NE(view.Explain().find("were read, 129 of them code"), std::string::npos)
      << view.Explain();
  view.Refresh();
  Follow();
  EXPECT_LT(not_looked_at(), before) << "what is known of the code is not read again";
}

TEST_F(StackViewTest, SaysWhereThereIsNoStackAndScrollsOnlyToTheEndOfRam) {
  Show(4);
  view.Scroll(ScrollCode::ThumbTrack, view.last_position());
  Follow();
  EXPECT_EQ(view.lines().front().entry.address, 0x023Fu);
  frame.SP = 0x023A;
  view.Refresh();
  Follow();
  EXPECT_TRUE(view.lines().empty());
  EXPECT_EQ(view.problem(), "SP is 023f, the last byte of RAM: nothing is stacked above it.");
  frame.SP = 0x010A;
  debug_info.functions.push_back({.name = "_start", .module = "", .first = 0x0118, .last = 0x0130});
  debug_info.SymbolTable.Assign({{"_start", 0x0118, 0, {}}, {"_count", 0x010C, 2, {}}});
  const auto addresses = [this] {
    view.Refresh();
    Follow();
    return std::pair(view.lines().front().entry.address, view.last_position());
  };
  Show(0x20);
  EXPECT_EQ(addresses(), std::pair(0x0110u, 7)) << "up to the function";
  frame.SP = 0x0107;
  EXPECT_EQ(addresses(), std::pair(0x010Du, 0x0132)) << "variables do not end it once it is there";
  frame.SP = 0x0112;
  view.Refresh();
  Follow();
  EXPECT_EQ(view.problem(), "SP is 0117: _start begins above it, and no stack.");
  frame.SP = 0x7FFA;
  view.Refresh();
  Follow();
  EXPECT_EQ(view.problem(), "SP is 7fff, which is not in RAM: there is no stack to show.");
}

}  // namespace
}  // namespace brevant::views
