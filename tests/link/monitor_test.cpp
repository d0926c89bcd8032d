// SPDX-License-Identifier: MIT
#include "link/monitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/connected_target.h"

namespace brevant::link {
namespace {

using testing::ElementsAre;

struct TrafficCase {
  const char* sent;
  std::uint32_t result;
  std::uint32_t (*run)(Monitor&);
};

// RAM from $0090 holds 90 91 92 ...; the vector at $FFFE is $8012.
constexpr TrafficCase kTraffic[] = {
    {"W0123=FF", 0, [](Monitor& m) { return m.WriteByte(0x0123, 0x1FF), 0u; }},
    {"R00A1", 0xA1, [](Monitor& m) { return m.ReadByte(0x00A1) + 0u; }},
    {"R00A1", 0xA1, [](Monitor& m) { return m.ReadByte(0x100A1) + 0u; }},
    {"w5A", 0, [](Monitor& m) { return m.WriteNext(0x5A), 0u; }},
    {"SP", 0x00FA, [](Monitor& m) { return m.ReadStackPointer(); }},
    {"R0097 r", 0x9899, [](Monitor& m) { return m.ReadByte(0x0097), m.ReadNext(); }},
    {"RFFFD r", 0x8012, [](Monitor& m) { return m.ReadWord(0xFFFE); }},
    {"RFFFF r", 0, [](Monitor& m) { return m.ReadWord(0) & 0u; }},
    {"R00BF w12 w34", 0, [](Monitor& m) { return m.WriteWord(0x00C0, 0x1234), 0u; }},
    {"R00C1 w07 w08", 0,
     [](Monitor& m) {
       return m.WriteBlock(0x00C2, ByteList{7, 8}), 0u;
     }},
    {"R0090", 0, [](Monitor& m) { return m.ReadBlockWords({}, 0x91), 0u; }},
    {"R0090", 0, [](Monitor& m) { return m.ReadBlockBytes({}, 0x91), 0u; }},
    {"RUN", 0, [](Monitor& m) { return m.RunTarget(), 0u; }},
};

TEST(Monitor, EachOperationCostsItsOwnBytesAndNoMore) {
  ConnectedTarget bench;
  ByteList ram;
  for (int value = 0x90; value < 0xC0; ++value) ram.push_back(static_cast<std::uint8_t>(value));
  bench.Load(0x0090, ram);
  bench.Load(0xFFFE, {0x80, 0x12});
  for (const TrafficCase& row : kTraffic) {
    bench.TakeSent();
    EXPECT_EQ(row.run(bench.monitor), row.result) << row.sent;
    EXPECT_EQ(bench.Commands(), row.sent);
    EXPECT_FALSE(bench.link.LinkError);
  }
}

TEST(Monitor, StoresWordsHighByteFirstAndBlocksInOrder) {
  ConnectedTarget bench;
  bench.monitor.WriteWord(0x0100, 0x1234);
  bench.monitor.WriteBlock(0x0102, ByteList{7, 8, 9});
  bench.monitor.WriteByte(0x0105, 0x5A);
  ByteList stored;
  for (base::Address a = 0x0100; a <= 0x0105; ++a) stored.push_back(bench.Peek(a));
  EXPECT_THAT(stored, ElementsAre(0x12, 0x34, 7, 8, 9, 0x5A));
}

TEST(Monitor, ReadsBlocksTwoBytesAnIreadAndDropsTheOddOne) {
  ConnectedTarget bench;
  bench.Load(0x00A0, {1, 2, 3, 4, 5, 6});
  bench.TakeSent();

  std::array<std::uint16_t, 3> words{};
  bench.monitor.ReadBlockWords(words, 0x00A0);
  EXPECT_THAT(words, ElementsAre(0x0102, 0x0304, 0x0506));
  EXPECT_THAT(bench.TakeSent(), ElementsAre(0x4A, 0x00, 0x9F, 0x1A, 0x1A, 0x1A));

  ByteList bytes = {0xEE, 0xEE, 0xEE, 0xEE};
  bench.monitor.ReadBlockBytes(std::span(bytes).first(3), 0x00A0);
  EXPECT_THAT(bytes, ElementsAre(1, 2, 3, 0xEE));
  EXPECT_EQ(bench.TakeSent().size(), 5u);
}

TEST(Monitor, SendsNothingAndTouchesNothingWhileTheLinkIsInError) {
  ConnectedTarget bench;
  bench.TakeSent();
  bench.link.LinkError = true;
  for (const TrafficCase& row : kTraffic) row.run(bench.monitor);
  std::array<std::uint16_t, 2> words = {0xA5A5, 0xA5A5};
  bench.monitor.ReadBlockWords(words, 0x0090);
  EXPECT_EQ(bench.monitor.SendSecurityCode(kDefaultSecurityCode), 0xC3);
  EXPECT_TRUE(bench.TakeSent().empty());
  EXPECT_THAT(words, ElementsAre(0xA5A5, 0xA5A5));
}

TEST(Monitor, ABlockReadThatBreaksOffKeepsWhatItHasReadAndLatches) {
  ConnectedTarget bench;
  bench.Load(0x00A0, {1, 2, 3, 4, 5, 6});
  // Bytes 0 to 2 are the READ; the second IREAD loses its data.
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::LoseReply, .at_host_byte = 4}});
  std::array<std::uint16_t, 3> words{};
  bench.monitor.ReadBlockWords(words, 0x00A0);
  EXPECT_TRUE(bench.link.LinkError);
  EXPECT_THAT(words, ElementsAre(0x0102, 0, 0));
}

TEST(Monitor, ASecurityCodeWithoutAnAnswerNeverLooksLikeSuccess) {
  ConnectedTarget bench;
  const SecurityCode zeros{};
  // The eighth byte's copies arrive, the break character does not.
  const auto send = [&](const SecurityCode& code) {
    bench.target.SetFaultPlan({});
    bench.link.LinkError = false;
    bench.link.PulseReset();
    bench.target.SetFaultPlan({{.kind = simulator::FaultKind::LoseReply, .at_host_byte = 7}});
    return bench.monitor.SendSecurityCode(code);
  };
  EXPECT_EQ(send(kDefaultSecurityCode), 0xC3);
  EXPECT_TRUE(bench.link.LinkError);
  EXPECT_EQ(send(zeros), 1);
  EXPECT_TRUE(bench.link.LinkError);
}

}  // namespace
}  // namespace brevant::link
