// SPDX-License-Identifier: MIT
#include "simulator/simulated_target.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

#include "simulator/host.h"

namespace brevant::simulator {
namespace {

using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

double MillisecondsSince(steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(steady_clock::now() - start).count();
}

TEST(SimulatedTarget, PassesVirtualTimeOnlyWhileTheHostWaits) {
  Host host;
  host.Connect();
  const std::int64_t start = host.target.NowMs();
  EXPECT_EQ(host.target.NowMs(), start);
  EXPECT_THAT(host.Read(1, milliseconds(0)), IsEmpty());
  EXPECT_EQ(host.target.NowMs(), start);
  EXPECT_THAT(host.Read(1, milliseconds(110)), IsEmpty());
  EXPECT_EQ(host.target.NowMs(), start + 110);
  host.target.SpinUntil(start + 200);
  EXPECT_EQ(host.target.NowMs(), start + 200);
  host.target.SpinUntil(start);
  EXPECT_EQ(host.target.NowMs(), start + 200);
  const auto wall = steady_clock::now();
  host.target.Sleep(std::chrono::hours(1));
  EXPECT_EQ(host.target.NowMs(), start + 3'600'200);
  EXPECT_LT(MillisecondsSince(wall), 60'000.0);
}

TEST(SimulatedTarget, AZeroTimeOutTakesWhatHasArrivedAndNoMore) {
  Host host;
  host.Connect();
  host.target.Write(ByteList{0x0C});
  EXPECT_THAT(host.Read(4, milliseconds(0)), IsEmpty());
  host.target.Sleep(milliseconds(2));
  EXPECT_THAT(host.Read(4, milliseconds(0)), ElementsAre(0x0C));
  host.target.Sleep(milliseconds(1));
  EXPECT_THAT(host.Read(4, milliseconds(0)), ElementsAre(0x0C));
}

TEST(SimulatedTarget, WaitsTenVirtualSecondsForARunningProgramInNoTime) {
  Host host;
  host.Connect();
  host.Plant(0x0100, {0x20, 0xFE});
  host.Exchange({0x28});
  const std::clock_t start = std::clock();
  EXPECT_THAT(host.Read(1, milliseconds(10'000)), IsEmpty());
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  EXPECT_LT(seconds, 4.0) << "an optimised build needs a twentieth of it";
}

TEST(SimulatedTarget, NeedsToBeOpenAndAtTheRightBaudRate) {
  Host host;
  EXPECT_FALSE(host.target.Write(ByteList{0x0C}));
  EXPECT_FALSE(host.target.SetRts(false));
  EXPECT_NE(host.target.LastError(), "");
  host.Connect();
  host.target.Configure({.baud = 4800});
  EXPECT_THAT(host.Exchange({0x0C}), ElementsAre(0x0C));
  host.target.Configure({.baud = 9600});
  EXPECT_THAT(host.Ask({0x0C}, 2), ElementsAre(0x00, 0xFA));
  host.target.Close();
  std::array<std::uint8_t, 1> buffer{};
  EXPECT_EQ(host.target.Read(buffer, milliseconds(1)), std::nullopt);
}

TEST(SimulatedTarget, KeepsRealTimeForProgramsOnlyAtTheBusPace) {
  Host host(Gp32(), Pace::Bus);
  auto start = steady_clock::now();
  ASSERT_THAT(host.Connect(), ElementsAre(0));
  for (int i = 0; i < 50; ++i) ASSERT_EQ(host.Ask({0x4A, 0x01, 0x00}, 1).size(), 1u);
  // The monitor's silence is waited out on its own clock.
  std::int64_t before = host.target.NowMs();
  EXPECT_TRUE(host.Read(1, milliseconds(2000)).empty());
  EXPECT_GE(host.target.NowMs(), before + 2000);
  before = host.target.NowMs();
  host.target.Sleep(milliseconds(1000));
  host.target.SpinUntil(before + 3000);
  EXPECT_GE(host.target.NowMs(), before + 3000);
  EXPECT_LT(MillisecondsSince(start), 1000) << "all of it";
  // CLRX; CLRA; DBNZA *; DBNZX: 256 * (256 * 3 + 4) cycles, 80.4 ms.
  host.Plant(0x0100, {0x5F, 0x4F, 0x4B, 0xFE, 0x5B, 0xFB, 0x83});
  start = steady_clock::now();
  host.Exchange({0x28});
  EXPECT_THAT(host.Read(1, milliseconds(1000)), ElementsAre(0));
  EXPECT_GE(MillisecondsSince(start), 80.0);
  EXPECT_LT(MillisecondsSince(start), 400.0) << "generous, for a busy machine";
}

}  // namespace
}  // namespace brevant::simulator
