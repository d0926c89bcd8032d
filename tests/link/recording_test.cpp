// SPDX-License-Identifier: MIT
// A recording of a link to the simulated board, and the board that the recording makes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/connected_target.h"
#include "link/recording_port.h"
#include "link/replay_target.h"

namespace brevant::link {
namespace {

using simulator::FaultKind;
using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;

constexpr SecurityCode kCode{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

// A board behind a port that is recorded.
struct Recorded {
  Recording Taken(Secrets secrets = Secrets::Hide) {
    port.TellNothings();
    return ParseRecording(std::string(kRecordingMark) + "\n" + WithSecrets(lines, secrets));
  }

  simulator::SimulatedTarget target{simulator::Gp32()};
  std::string lines;
  RecordingPort port{target, target, [this](std::string_view line) { lines += line; }};
  MonitorLink link{port, target, [this](bool on) { port.Secret(on); }};
  Monitor monitor{link};
};

// What a session sees of its target.
struct Seen {
  bool operator==(const Seen&) const = default;

  bool opened = false;
  int answer = -1;
  std::vector<std::uint32_t> values;
  bool link_error = false;
  long damage = 0;
};

Seen Use(Monitor& monitor, const SecurityCode& code = kCode) {
  MonitorLink& link = monitor.link();
  Seen seen;
  seen.opened = link.OpenPort("COM1");
  seen.answer = monitor.SendSecurityCode(code);
  monitor.WriteByte(0x0100, 0x5A);
  for (const base::Address address : {0x0100, 0xFFF6, 0x0080}) {
    seen.values.push_back(monitor.ReadByte(address));
  }
  link.PulseReset();
  seen.values.push_back(monitor.SendSecurityCode(code));
  seen.values.push_back(monitor.ReadStackPointer());
  seen.link_error = link.LinkError;
  seen.damage = link.damage();
  return seen;
}

struct Played {
  explicit Played(Recording recording) : target(std::move(recording), "a.rec") {}
  ReplayTarget target;
  MonitorLink link{target, target};
  Monitor monitor{link};
};

TEST(Recording, PlaysBackWhatTheLineDidToIt) {
  const simulator::FaultPlan plans[] = {
      {},
      {{FaultKind::FlipEcho, 3, 2}},      // in the code
      {{FaultKind::DropMonitorEcho, 5}},  // likewise
      {{FaultKind::FlipReply, 14, 7}},
      {{FaultKind::ExtraByte, 16}},
      {{FaultKind::LoseReply, 21}},
      {{FaultKind::CutLine, 17}},
  };
  for (const simulator::FaultPlan& plan : plans) {
    SCOPED_TRACE(plan.empty() ? "no fault" : "fault at " + std::to_string(plan[0].at_host_byte));
    Recorded recorded;
    recorded.target.SetFaultPlan(plan);
    const Seen seen = Use(recorded.monitor);
    for (const Secrets secrets : {Secrets::Hide, Secrets::Show}) {
      Played played(recorded.Taken(secrets));
      EXPECT_EQ(Use(played.monitor), seen) << played.target.LastError();
    }
  }
}

TEST(Recording, HidesTheCodeAndNothingElse) {
  Recorded recorded;
  const SecurityCode code{0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7, 0xD8};
  const Seen seen = Use(recorded.monitor, code);
  const std::string hidden = WithSecrets(recorded.lines, Secrets::Hide);
  EXPECT_THAT(hidden, Not(testing::ContainsRegex(" d[1-8]"))) << hidden;
  EXPECT_THAT(hidden, HasSubstr(" > --\n"));
  EXPECT_THAT(hidden, HasSubstr(" > 49\n"));
  EXPECT_THAT(WithSecrets(recorded.lines, Secrets::Show), HasSubstr(" < d1 d1\n"));

  Played other_code(recorded.Taken(Secrets::Hide));
  EXPECT_EQ(Use(other_code.monitor, kCode), seen);
  Played compared(recorded.Taken(Secrets::Show));
  EXPECT_NE(Use(compared.monitor, kCode), seen);
  EXPECT_THAT(compared.target.LastError(), HasSubstr("expects d1 at event "));
}

TEST(Recording, TellsTheFirstDifferenceAndGivesNothingAfterIt) {
  const Recording recording = ParseRecording(
      "brevant recording 1; x\n0 open COM1\n# a note\n5 > 4a\n6 < 4a 4a\n7 rts high\n7 failed no\n"
      "8 nothing 2\n9 > 01\n");
  ASSERT_EQ(recording.error, "");
  const auto send = [](ReplayTarget& target, std::uint8_t byte) {
    return target.Write(base::Bytes(&byte, 1));
  };
  std::array<std::uint8_t, 4> buffer{};

  ReplayTarget other(recording, "a.rec");
  ASSERT_TRUE(other.Open("COM1"));
  EXPECT_FALSE(send(other, 0x49));
  EXPECT_EQ(other.LastError(), "The recording expects 4a at event 2, 49 was sent.");
  EXPECT_FALSE(other.Read(buffer, milliseconds(10)));
  EXPECT_FALSE(send(other, 0x4A));
  EXPECT_THAT(other.LastError(), HasSubstr("event 2"));

  ReplayTarget unread(recording, "a.rec");
  ASSERT_TRUE(unread.Open("COM1") && send(unread, 0x4A));
  EXPECT_FALSE(unread.SetRts(true));
  EXPECT_EQ(unread.LastError(),
            "The recording expects that 4a is read at event 3, RTS was set high.");

  ReplayTarget same(recording, "a.rec");
  ASSERT_TRUE(same.Open("COM1") && send(same, 0x4A));
  EXPECT_EQ(same.Read(buffer, milliseconds(0)), 2u);
  EXPECT_EQ(same.NowMs(), 6);
  EXPECT_FALSE(same.SetRts(true));
  EXPECT_EQ(same.LastError(), "no");
  EXPECT_EQ(same.Read(buffer, milliseconds(100)), 0u);  // once instead of twice
  EXPECT_TRUE(send(same, 0x01));
  EXPECT_FALSE(send(same, 0x02));
  EXPECT_EQ(same.LastError(), "The recording ends after event 7, 02 was sent.");
}

TEST(Recording, IsRefusedWhenItIsDamagedButNotWhenItsEndIsMissing) {
  const std::string head = std::string(kRecordingMark) + "\n1 > 4a\n";
  EXPECT_EQ(ParseRecording(head + "2 < 4").events.size(), 1u);
  EXPECT_EQ(ParseRecording(head + "2 < 4").error, "");
  for (const char* line : {"2 < 4", "2 <", "x > 01", "2 rts up", "2 nothing 0", "2 nothing", "2"}) {
    EXPECT_EQ(ParseRecording(head + line + "\n").error,
              "line 3: \"" + std::string(line) + "\" is no event");
  }
  EXPECT_NE(ParseRecording("S00600004844521B\n").error, "");
  EXPECT_NE(ParseRecording(std::string(kRecordingMark) + "\n").error, "");
}

}  // namespace
}  // namespace brevant::link
