// SPDX-License-Identifier: MIT
#include "views/backward_start.h"

#include <gtest/gtest.h>

#include <vector>

namespace brevant::views {
namespace {

using Lengths = std::vector<int>;

// A code of lengths[j] at j; the others as filler.
Lengths Row(int filler, std::initializer_list<std::pair<int, int>> set) {
  Lengths lengths(kBackwardBytes, filler);
  for (const auto& [j, length] : set) lengths[static_cast<std::size_t>(j)] = length;
  return lengths;
}

TEST(BackwardStart, ChoosesByTheLengthsAlone) {
  struct Case {
    const char* what;
    Lengths lengths;
    int expected;
  };
  const std::vector<Case> cases{
      {"the only candidate", Row(2, {{1, 2}}), 1},
      {"the only candidate, of one byte", Row(3, {{0, 1}, {2, 2}}), 0},
      {"no candidate and no one-byte instruction", Row(4, {{3, 3}}), 0},
      {"two candidates and no one-byte instruction: the longer", Row(4, {{1, 2}}), 3},
      {"a one-byte instruction that nothing covers", Row(2, {{0, 1}, {6, 1}, {7, 2}, {8, 3}}), 6},
      // Of several, the one nearest to the address is tried first.
      {"the nearer of two", Row(2, {{0, 1}, {9, 1}, {12, 1}}), 9},
      // The four bytes at 8 cover 6, and no instruction ends 2 bytes before the address: on to 10.
      {"a covered one is passed over",
       Row(2, {{0, 1}, {2, 4}, {3, 4}, {4, 4}, {6, 1}, {8, 4}, {10, 1}}), 10},
      // One does end there, but another ends 3 bytes before the address.
      {"covered with more than one way on",
       Row(2, {{0, 1}, {2, 1}, {3, 1}, {4, 4}, {6, 1}, {8, 4}, {10, 1}}), 10},
      // As before, but instructions end 2 bytes before the address and none ends 3 bytes before.
      {"covered by what does not lead to the address",
       Row(2, {{0, 1}, {2, 1}, {3, 4}, {4, 4}, {6, 1}, {7, 2}, {8, 4}}), 6},
      // What would cover the last one is not among the bytes looked at.
      {"the last place", Row(2, {{0, 1}, {23, 1}}), 23},
      {"one byte before the address", {3}, 0},
      {"nothing covers from below address 0", {1, 2, 2, 2, 2, 2, 1}, 6},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ChooseBackwardStart(c.lengths), c.expected) << c.what;
  }
}

TEST(BackwardStart, WalksTheChainToTheLastInstruction) {
  // From 9 over 8, 6 and 4 to 1, whose two bytes end at the address.
  EXPECT_EQ(BackwardStart(Row(2, {{0, 1}, {9, 1}, {4, 3}})), 1);
  // A chain that runs into the address all the same stops before it.
  EXPECT_EQ(BackwardStart(Lengths{3}), 0);
}

TEST(BackwardStart, BeginsWhereAnInstructionIsKnownToBegin) {
  const auto from = [](const Lengths& lengths, int place) {
    return StartFrom(lengths, [place](int j) { return j == place; });
  };
  const Lengths lengths = Row(2, {{0, 1}, {2, 3}, {5, 3}});
  EXPECT_EQ(from(lengths, 5), 2);
  EXPECT_EQ(from(lengths, kBackwardBytes), std::nullopt) << "nothing is known";
  EXPECT_EQ(from(Row(2, {{2, 2}}), 2), std::nullopt) << "runs past the address";
}

}  // namespace
}  // namespace brevant::views
