// SPDX-License-Identifier: MIT
#include "simulator/fault_injector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host.h"

namespace brevant::simulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What the host gets of READ $0102 (which holds $5A) with one fault in it.
TEST(FaultInjector, ChangesWhatTheHostReceives) {
  struct Row {
    const char* name;
    Fault fault;
    ByteList received;
  };
  const Row rows[] = {
      {"lost code", {FaultKind::LoseHostByte, 0}, {1, 1, 2, 2}},
      {"lost address", {FaultKind::LoseHostByte, 1}, {0x4A, 0x4A, 2, 2}},
      {"no copy", {FaultKind::DropLocalEcho, 1}, {0x4A, 0x4A, 1, 2, 2, 0x5A}},
      {"no echo", {FaultKind::DropMonitorEcho, 2}, {0x4A, 0x4A, 1, 1, 2, 0x5A}},
      {"echo flipped", {FaultKind::FlipEcho, 0, 7}, {0x4A, 0xCA, 1, 1, 2, 2, 0x5A}},
      {"address flipped", {FaultKind::FlipHostByte, 2, 0}, {0x4A, 0x4A, 1, 1, 2, 3, 0xA5}},
      {"data flipped", {FaultKind::FlipReply, 1, 3}, {0x4A, 0x4A, 1, 1, 2, 2, 0x52}},
      {"no data", {FaultKind::LoseReply, 2}, {0x4A, 0x4A, 1, 1, 2, 2}},
      {"stray byte", {FaultKind::ExtraByte, 1, 0, 0x99}, {0x4A, 0x4A, 0x99, 1, 1, 2, 2, 0x5A}},
      {"reset", {FaultKind::ResetMcu, 1}, {0x4A, 0x4A, 1, 2, 2}},
      {"later", {FaultKind::LoseHostByte, 3}, {0x4A, 0x4A, 1, 1, 2, 2, 0x5A}},
  };
  for (const Row& row : rows) {
    Host host;
    host.Connect();
    host.board().Load(0x0102, ByteList{0x5A, 0xA5});
    host.target.SetFaultPlan({row.fault});
    host.target.Write(ByteList{0x4A, 0x01, 0x02});
    EXPECT_EQ(host.Read(10), row.received) << row.name;
  }
}

TEST(FaultInjector, DelaysAnAnswerByHalfASecond) {
  Host host;
  host.Connect();
  host.target.SetFaultPlan({{FaultKind::DelayByte, 0}});
  host.target.Write(ByteList{0x0C});
  EXPECT_THAT(host.Read(2), ElementsAre(0x0C));
  EXPECT_THAT(host.Read(3, milliseconds(378)), IsEmpty());
  EXPECT_THAT(host.Read(3, milliseconds(30)), ElementsAre(0x0C, 0x00, 0xFA));
}

TEST(FaultInjector, ACutLineFailsUntilItIsMended) {
  Host host;
  host.Connect();
  host.target.SetFaultPlan({{FaultKind::CutLine, 1}});
  EXPECT_THAT(host.Exchange({0x4A, 0x01}), ElementsAre(0x4A, 0x4A));
  std::array<std::uint8_t, 1> buffer{};
  EXPECT_EQ(host.target.Read(buffer, milliseconds(0)), std::nullopt);
  EXPECT_FALSE(host.target.Write(buffer));
  EXPECT_NE(host.target.LastError().find("connect again"), std::string::npos);
  EXPECT_FALSE(host.target.Open("board"));
  host.target.SetFaultPlan({});
  EXPECT_THAT(host.Connect(), ElementsAre(0));
  EXPECT_EQ(host.target.LastError(), "");
}

}  // namespace
}  // namespace brevant::simulator
