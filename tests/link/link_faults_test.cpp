// SPDX-License-Identifier: MIT
// Every kind of fault at every byte of every monitor operation. Whatever goes wrong, an operation
// ends in bounded time, a fault that the link's rules can see latches, one that they cannot see
// does not, and connecting again works.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <random>

#include "link/connected_target.h"

namespace brevant::link {
namespace {

using simulator::Fault;
using simulator::FaultKind;

// One frame of an operation as the link sends it.
struct Frame {
  int bytes;
  int replies;
  bool compared = true;  // the copies of its last byte
};

struct Operation {
  const char* name;
  std::vector<Frame> frames;
  std::function<void(Monitor&, base::Address, std::uint8_t data)> run;
};

const Operation kOperations[] = {
    {"READ", {{3, 1}}, [](Monitor& m, base::Address a, std::uint8_t) { m.ReadByte(a); }},
    {"WRITE", {{4, 0}}, [](Monitor& m, base::Address a, std::uint8_t d) { m.WriteByte(a, d); }},
    {"IREAD", {{1, 2}}, [](Monitor& m, base::Address, std::uint8_t) { m.ReadNext(); }},
    {"IWRITE", {{2, 0}}, [](Monitor& m, base::Address, std::uint8_t d) { m.WriteNext(d); }},
    {"READSP", {{1, 2}}, [](Monitor& m, base::Address, std::uint8_t) { m.ReadStackPointer(); }},
    {"RUN", {{1, 0}}, [](Monitor& m, base::Address, std::uint8_t) { m.RunTarget(); }},
    {"word", {{3, 1}, {1, 2}}, [](Monitor& m, base::Address a, std::uint8_t) { m.ReadWord(a); }},
    {"word write",
     {{3, 1}, {2, 0}, {2, 0}},
     [](Monitor& m, base::Address a, std::uint8_t d) { m.WriteWord(a, d * 0x0101u + 0x01); }},
    {"block read",
     {{3, 1}, {1, 2, false}, {1, 2, false}},
     [](Monitor& m, base::Address a, std::uint8_t) {
       std::array<std::uint16_t, 2> words{};
       m.ReadBlockWords(words, a);
     }},
    {"security code",
     {{8, 1}},
     [](Monitor& m, base::Address, std::uint8_t d) {
       m.link().PulseReset();
       SecurityCode code;
       for (std::uint8_t& byte : code) byte = d++;
       m.SendSecurityCode(code);
     }},
};

int BytesOf(const Operation& operation) {
  int bytes = 0;
  for (const Frame& frame : operation.frames) bytes += frame.bytes;
  return bytes;
}

struct Position {
  Frame frame;
  bool first;       // of its frame
  bool last;        // of its frame
  bool last_frame;  // of the operation
  bool reply_follows;
};

Position Locate(const Operation& operation, int byte) {
  for (std::size_t i = 0; i < operation.frames.size(); ++i) {
    const Frame& frame = operation.frames[i];
    if (byte < frame.bytes) {
      bool reply = false;
      for (std::size_t k = i; k < operation.frames.size(); ++k) {
        reply = reply || operation.frames[k].replies > 0;
      }
      return {frame, byte == 0, byte == frame.bytes - 1, i + 1 == operation.frames.size(), reply};
    }
    byte -= frame.bytes;
  }
  return {};
}

// Whether the operation itself must notice. Nothing where that depends on what the bytes happen to
// be: a command byte that became another command, copies shifted by a stray byte.
std::optional<bool> MustLatch(FaultKind kind, const Position& at) {
  switch (kind) {
    case FaultKind::LoseHostByte:
    case FaultKind::DropLocalEcho:
    case FaultKind::DropMonitorEcho:
    case FaultKind::DelayByte:
    case FaultKind::CutLine:
    case FaultKind::ResetMcu:
      return true;  // a copy or a reply is missing, wherever it is
    case FaultKind::FlipEcho:
      // Copies are compared only for the last byte of a frame, in block reads not even there.
      return at.last && at.frame.compared;
    case FaultKind::FlipHostByte:
      if (at.last && at.frame.compared) return true;
      // The monitor acts on another address or value, and nobody looks at its copy.
      if (!at.first) return false;
      // One flipped bit never makes another command of an IREAD, so its data are missing.
      return at.frame.compared ? std::nullopt : std::optional(true);
    case FaultKind::FlipReply:
      return false;  // data are taken as they come
    case FaultKind::LoseReply:
      return at.reply_follows;
    case FaultKind::ExtraByte:
      if (!at.frame.compared && at.last_frame) return false;  // shifted by one, seen by the next
      return at.last && at.frame.compared ? std::optional(true) : std::nullopt;
  }
  return std::nullopt;
}

class LinkFaults : public testing::TestWithParam<int> {};

TEST_P(LinkFaults, EndInBoundedTimeLatchWhenTheyCanBeSeenAndAreForgottenByConnecting) {
  const auto kind = static_cast<FaultKind>(GetParam());
  std::mt19937 random(20240607u + static_cast<unsigned>(kind));
  // RAM of even value, so that no copy, datum or address equals the stray byte $55.
  ByteList ram(0x60);
  for (std::uint8_t& byte : ram) byte = static_cast<std::uint8_t>(random() & 0xFEu);
  constexpr int kRounds = 8;  // one for each bit

  ConnectedTarget bench;
  for (const Operation& operation : kOperations) {
    for (int byte = 0; byte < BytesOf(operation); ++byte) {
      for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(std::string(operation.name) + ", byte " + std::to_string(byte) + ", round " +
                     std::to_string(round));
        ASSERT_TRUE(bench.Connect());
        bench.Load(0x0080, ram);
        const auto address = static_cast<base::Address>(0x0082 + (random() & 0x3Eu));
        const auto data = static_cast<std::uint8_t>(random() & 0x7Eu);
        bench.monitor.ReadByte(address);
        bench.target.SetFaultPlan({Fault{.kind = kind,
                                         .at_host_byte = static_cast<std::uint64_t>(byte),
                                         .bit = static_cast<std::uint8_t>(round),
                                         .extra = 0x55}});
        const std::int64_t start = bench.target.NowMs();
        operation.run(bench.monitor, address, data);
        // The longest operation takes 1200 ms of reset and 8 bytes; one read may time out.
        EXPECT_LE(bench.target.NowMs() - start, 1500);
        const auto must_latch = MustLatch(kind, Locate(operation, byte));
        EXPECT_EQ(bench.link.LinkError, must_latch.value_or(bench.link.LinkError));

        ASSERT_TRUE(bench.Connect());
        EXPECT_EQ(bench.monitor.ReadStackPointer(), 0x00FAu);
        bench.monitor.WriteWord(0x0090, 0x1234);
        EXPECT_EQ(bench.monitor.ReadWord(0x0090), 0x1234u);
        EXPECT_FALSE(bench.link.LinkError);
        if (HasFailure()) return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, LinkFaults,
                         testing::Range(0, static_cast<int>(FaultKind::ResetMcu) + 1));

}  // namespace
}  // namespace brevant::link
