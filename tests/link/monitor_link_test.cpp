// SPDX-License-Identifier: MIT
#include "link/monitor_link.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/connected_target.h"
#include "link/scripted_port.h"

namespace brevant::link {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(MonitorLink, OpensStepByStepAndStopsAtTheFirstRefusal) {
  const std::vector<std::string> steps = {"open COM2",       "configure 9600", "sleep 100",
                                          "DTR low",         "RTS low",        "sleep 1000",
                                          "queues 2048 1024"};
  ScriptedPort port;
  MonitorLink link(port, port);
  port.arriving = {1, 2, 3};
  ASSERT_TRUE(link.OpenPort("COM2"));
  EXPECT_EQ(port.calls, steps);
  EXPECT_THAT(port.arriving, IsEmpty()) << "stale input survived the opening";

  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (steps[i].starts_with("sleep")) continue;
    SCOPED_TRACE(steps[i]);
    ScriptedPort refusing;
    refusing.refuse = steps[i];
    MonitorLink closed(refusing, refusing);
    EXPECT_FALSE(closed.OpenPort("COM2"));
    EXPECT_FALSE(closed.IsOpen());
    EXPECT_FALSE(closed.LinkError);
    EXPECT_EQ(closed.PortError(), "refused") << "the reason must outlive the closing";
    EXPECT_EQ(refusing.calls.size(), i == 0 ? 1 : i + 2);
    EXPECT_EQ(refusing.calls.back(), i == 0 ? "open COM2" : "close");
  }
}

TEST(MonitorLink, ClosesAnOpenPortBeforeOpeningAnother) {
  ScriptedPort port;
  MonitorLink link(port, port);
  ASSERT_TRUE(link.OpenPort("COM1"));
  port.calls.clear();
  port.refuse = "open COM2";
  EXPECT_FALSE(link.OpenPort("COM2"));
  EXPECT_THAT(port.calls, ElementsAre("close", "open COM2"));
  EXPECT_FALSE(link.IsOpen());
}

struct EchoCase {
  const char* what;
  std::deque<std::uint8_t> copies;  // two for each of the three bytes sent
  bool error;
  std::size_t sent;
};

TEST(MonitorLink, ComparesOnlyTheLastPairAndStopsAtAMissingCopy) {
  const EchoCase cases[] = {
      {"all good", {0x4A, 0x4A, 1, 1, 2, 2}, false, 3},
      {"an earlier pair differs", {0x4A, 0x00, 1, 9, 2, 2}, false, 3},
      {"the copies agree with each other, not with the byte", {0, 0, 0, 0, 7, 7}, false, 3},
      {"the last pair differs", {0x4A, 0x4A, 1, 1, 2, 3}, true, 3},
      {"no copy at all", {}, true, 1},
      {"one copy of the first byte", {0x4A}, true, 1},
      {"one copy of the last byte", {0x4A, 0x4A, 1, 1, 2}, true, 3},
  };
  for (const EchoCase& row : cases) {
    SCOPED_TRACE(row.what);
    ScriptedPort port;
    MonitorLink link(port, port);
    port.answer_each_write = row.copies;
    link.SendEchoed(ByteList{0x4A, 1, 2});
    EXPECT_EQ(link.LinkError, row.error);
    EXPECT_EQ(port.written.size(), row.sent);
    EXPECT_THAT(port.timeouts_ms, Each(120));
  }
}

TEST(MonitorLink, LatchesWhenThePortIsGoneAndThenStaysSilentButForThePoll) {
  ScriptedPort port;
  MonitorLink link(port, port);
  port.gone = true;
  link.SendEchoed(ByteList{0x28});
  EXPECT_TRUE(link.LinkError);

  port.gone = false;
  port.written.clear();
  port.timeouts_ms.clear();
  port.arriving = {0};
  link.SendEchoed(ByteList{0x28});
  std::uint8_t untouched = 0xA5;
  link.ReadRaw(std::span(&untouched, 1));
  EXPECT_THAT(port.written, IsEmpty());
  EXPECT_THAT(port.timeouts_ms, IsEmpty());
  EXPECT_EQ(untouched, 0xA5);
  EXPECT_EQ(link.PollBreak(), 0);
  EXPECT_TRUE(link.LinkError);
}

TEST(MonitorLink, AShortReadLatchesAndLeavesTheBufferAlone) {
  ScriptedPort port;
  MonitorLink link(port, port);
  port.arriving = {0x12};
  ByteList buffer = {0xA5, 0xA5};
  link.ReadRaw(buffer);
  EXPECT_TRUE(link.LinkError);
  EXPECT_THAT(buffer, ElementsAre(0xA5, 0xA5));
}

TEST(MonitorLink, PollsForTheBreakByteWithoutTouchingTheLatch) {
  struct Case {
    std::deque<std::uint8_t> arriving;
    int result;
  };
  const Case cases[] = {{{}, 1}, {{0x00}, 0}, {{0x83}, -125}, {{0x7F}, 127}, {{0xFF}, -1}};
  for (const Case& row : cases) {
    ScriptedPort port;
    MonitorLink link(port, port);
    port.arriving = row.arriving;
    EXPECT_EQ(link.PollBreak(), row.result);
    EXPECT_FALSE(link.LinkError);
  }
  ScriptedPort port;
  MonitorLink link(port, port);
  link.PollBreak();
  link.PollBreak(PollWait::None);
  port.gone = true;
  EXPECT_EQ(link.PollBreak(PollWait::None), 1);
  EXPECT_FALSE(link.LinkError);
  EXPECT_THAT(port.timeouts_ms, ElementsAre(110, 0, 0));
}

TEST(MonitorLink, ABreakSignalSucceedsOnlyWhenTheMonitorAnswersIt) {
  ConnectedTarget bench;
  const std::int64_t start = bench.target.NowMs();
  EXPECT_TRUE(bench.link.SendBreak());
  EXPECT_GE(bench.target.NowMs() - start, 101);

  bench.Load(0x0090, {0x9B, 0x20, 0xFE});  // SEI; BRA *: deaf to its IRQ pin
  bench.Start(0x0090);
  bench.link.WaitMs(2);  // a break straight after RUN cancels it
  EXPECT_FALSE(bench.link.SendBreak());
  EXPECT_FALSE(bench.link.LinkError);
}

TEST(MonitorLink, AResetTakesTheProgramAwayAndDropsWhatCameBefore) {
  ConnectedTarget bench;
  bench.Load(0x0090, {0x83});  // SWI: its break byte waits unread
  bench.Start(0x0090);
  bench.link.WaitMs(5);
  const std::int64_t start = bench.target.NowMs();
  ASSERT_TRUE(bench.link.PulseReset());
  EXPECT_GE(bench.target.NowMs() - start, 1101);
  EXPECT_EQ(bench.link.PollBreak(), 1);
  EXPECT_EQ(bench.monitor.SendSecurityCode(kBlankSecurityCode), 0);
}

TEST(MonitorLink, ASignalThatThePortRefusesFails) {
  for (const char* refused : {"break on", "break off", "RTS high", "RTS low"}) {
    ScriptedPort port;
    MonitorLink link(port, port);
    port.refuse = refused;
    port.arriving = {0, 0};
    EXPECT_FALSE(refused[0] == 'b' ? link.SendBreak() : link.PulseReset());
    EXPECT_EQ(port.calls.back(), refused);
    EXPECT_NE(link.SignalError(), "");
    EXPECT_FALSE(link.LinkError) << "the port is still there";
  }
}

}  // namespace
}  // namespace brevant::link
