// SPDX-License-Identifier: MIT
#include "simulator/timer.h"

#include <gtest/gtest.h>

#include <random>

namespace brevant::simulator {
namespace {

enum Offset { kTsc, kCntH, kCntL, kModH, kModL, kTsc0, kCh0H, kCh0L, kTsc1, kCh1H, kCh1L };
constexpr std::uint8_t kTof = 0x80, kToie = 0x40, kTstop = 0x20, kTrst = 0x10;
constexpr std::uint8_t kChf = 0x80, kChie = 0x40, kCompare = 0x10;

// A timer with its own clock, on which every access takes no time.
struct Bench {
  Timer timer;
  std::uint64_t now = 1000;

  Bench() { timer.Reset(now); }
  void Set(int offset, unsigned value) {
    timer.Write(offset, static_cast<std::uint8_t>(value), now, true);
  }
  void SetWord(int offset, unsigned value) {
    Set(offset, value >> 8);
    Set(offset + 1, value & 0xFF);
  }
  unsigned Get(int offset) { return timer.Read(offset, now, true); }
  unsigned Count() {
    const unsigned high = Get(kCntH);
    return high << 8 | Get(kCntL);
  }
};

TEST(Timer, StandsStillAfterResetAndCountsPrescaledOnceStarted) {
  Bench b;
  EXPECT_EQ(b.Get(kTsc), kTstop);
  b.now += 100;
  EXPECT_EQ(b.Count(), 0u);
  b.Set(kTsc, 2);  // bus / 4
  b.now += 4 * 300 + 3;
  EXPECT_EQ(b.Count(), 300u);
  b.now += 1;
  EXPECT_EQ(b.Count(), 301u);
  b.Set(kTsc, kTstop | 2);
  b.now += 4000;
  EXPECT_EQ(b.Count(), 301u);
  b.Set(kTsc, kTrst | kTstop | 2);
  EXPECT_EQ(b.Count(), 0u);
}

TEST(Timer, ReadingTheHighByteHoldsTheLowOne) {
  Bench b;
  b.Set(kTsc, 0);
  b.now += 0x12FF;
  EXPECT_EQ(b.Get(kCntH), 0x12u);
  b.now += 1;
  EXPECT_EQ(b.Get(kCntL), 0xFFu);
  EXPECT_EQ(b.Count(), 0x1300u);
}

TEST(Timer, OverflowsAfterModuloPlusOneAndClearsByReadThenWrite) {
  Bench b;
  b.SetWord(kModH, 99);
  b.Set(kTsc, kToie);
  EXPECT_EQ(b.timer.NextInterrupt(), b.now + 100);
  b.now += 99;
  b.timer.Advance(b.now);
  EXPECT_FALSE(b.timer.OverflowInterrupt());
  b.now += 1;
  b.timer.Advance(b.now);
  EXPECT_TRUE(b.timer.OverflowInterrupt());

  b.Set(kTsc, kToie);  // not read yet: stays
  EXPECT_EQ(b.Get(kTsc), kTof | kToie);
  b.now += 100;  // overflows again between read and write: stays
  b.Set(kTsc, kToie);
  EXPECT_EQ(b.Get(kTsc), kTof | kToie);
  b.Set(kTsc, kTof | kToie);  // writing 1 changes nothing
  EXPECT_EQ(b.Get(kTsc), kTof | kToie);
  b.Set(kTsc, kToie);
  EXPECT_EQ(b.Get(kTsc), kToie);
}

TEST(Timer, ComparesWithinTheModuloOnlyAndAfterTheLowByteIsWritten) {
  Bench b;
  b.SetWord(kModH, 0x1FF);
  b.SetWord(kCh0H, 0x180);
  b.SetWord(kCh1H, 0x200);  // never reached
  b.Set(kTsc0, kChie | kCompare);
  b.Set(kTsc1, kChie | kCompare);
  b.Set(kTsc, 0);
  EXPECT_EQ(b.timer.NextInterrupt(), b.now + 0x180);
  b.Set(kCh0H, 0x01);
  EXPECT_EQ(b.timer.NextInterrupt(), kNever);
  b.Set(kCh0L, 0x40);
  b.now += 0x140;
  b.timer.Advance(b.now);
  EXPECT_TRUE(b.timer.ChannelInterrupt(0));
  EXPECT_FALSE(b.timer.ChannelInterrupt(1));
  EXPECT_EQ(b.Get(kTsc0), kChf | kChie | kCompare);
  b.Set(kTsc0, kChie | kCompare);
  EXPECT_EQ(b.Get(kTsc0), kChie | kCompare);
  EXPECT_EQ(b.timer.NextInterrupt(), b.now + 0x200);
}

// One long jump must leave what single cycles leave, and NextInterrupt must name the very cycle.
TEST(Timer, JumpsLikeItSteps) {
  std::mt19937 random(1908);
  const auto below = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
  for (int trial = 0; trial < 300; ++trial) {
    Bench b;
    b.SetWord(kModH, below(60));
    b.SetWord(kCh0H, below(70));
    b.SetWord(kCh1H, below(70));
    b.Set(kTsc0, (below(2) != 0 ? kChie : 0) | (below(4) != 0 ? kCompare : 0));
    b.Set(kTsc1, (below(2) != 0 ? kChie : 0) | kCompare);
    b.Set(kTsc, (below(2) != 0 ? kToie : 0) | below(4));
    b.now += below(100);
    b.timer.Advance(b.now);
    if (below(4) == 0) b.SetWord(kModH, below(60));  // the counter may be past it now

    Timer stepped = b.timer, jumped = b.timer;
    const auto requests = [](const Timer& t) {
      return t.OverflowInterrupt() + 2 * t.ChannelInterrupt(0) + 4 * t.ChannelInterrupt(1);
    };
    const int before = requests(stepped);
    const std::uint64_t predicted = stepped.NextInterrupt();
    std::uint64_t seen = kNever;
    const std::uint64_t end = b.now + 1 + below(2000);
    for (std::uint64_t t = b.now + 1; t <= end; ++t) {
      stepped.Advance(t);
      if (seen == kNever && requests(stepped) != before) seen = t;
    }
    jumped.Advance(end);
    EXPECT_EQ(stepped, jumped) << "trial " << trial;
    EXPECT_EQ(seen, predicted <= end ? predicted : kNever) << "trial " << trial;
  }
}

}  // namespace
}  // namespace brevant::simulator
