// SPDX-License-Identifier: MIT
#include "link/connector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/test_user.h"
#include "link/messages.h"
#include "link/scripted_port.h"
#include "link/settings_in_folder.h"
#include "simulator/simulated_target.h"

namespace brevant::link {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kHardwareNotReady =
    "Hardware is not ready.  Please check:\n\n1. Cable is plugged snuggly, the target and debugger "
    "are powered up.\n\n2. Try another port.\n";
constexpr const char* kRamOnly = "Security not passed, but RAM can be used for debugging";

// A board whose flash holds the default code.
struct Bench {
  explicit Bench(const simulator::Device& device = simulator::Gp32()) : target(device) {
    SetStoredCode(kDefaultSecurityCode);
  }
  void SetStoredCode(const SecurityCode& code) { target.board().Load(0xFFF6, code); }
  // The security bytes that went out last.
  std::vector<std::uint8_t> TakeSent() {
    auto sent = target.board().host_log();
    target.board().ClearHostLog();
    return sent;
  }
  // The cable is pulled before the next byte.
  void CutLine() { target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine}}); }

  simulator::SimulatedTarget target;
  MonitorLink link{target, target};
  Monitor monitor{link};
  SettingsInFolder file;
  base::TestUser ui;
  std::string log;
  SecurityKeeper security{file.settings};
  Connector connector{monitor, file.settings, security, ui,
                      [this](const std::string& line) { log += line; }};
};

std::vector<std::uint8_t> BytesOf(const SecurityCode& code) {
  return {code.begin(), code.end()};
}

// One that is set is looked at twice.
std::vector<std::uint8_t> WithLooksAtTheFlag(std::vector<std::uint8_t> sent, int looks) {
  while (looks-- > 0) sent.insert(sent.end(), {0x4A, 0x00, 0x80});
  return sent;
}

TEST(Connector, ConnectsWithTheNewestCodeAndExercisesTheLinkOnce) {
  Bench bench;
  bench.link.LinkError = true;
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::Connected);
  std::vector<std::uint8_t> expected = BytesOf(kDefaultSecurityCode);
  for (const int byte : {0x49, 0x01, 0x00, 0x5A, 0x4A, 0x01, 0x00}) {
    expected.push_back(static_cast<std::uint8_t>(byte));
  }
  EXPECT_EQ(bench.TakeSent(), WithLooksAtTheFlag(expected, 2));
  EXPECT_EQ(bench.security.InFlash(), kDefaultSecurityCode);
  EXPECT_THAT(bench.ui.TakeTexts(), IsEmpty());
  EXPECT_EQ(bench.log, "debug  0  5a\n");
  EXPECT_EQ(bench.link.PortName, "COM1");
  EXPECT_FALSE(bench.link.LinkError);
}

TEST(Connector, AWrongCodeOrNoneLeavesRamToDebug) {
  for (const bool verify : {true, false}) {
    Bench bench;
    bench.file.Set("Security0", "0102030405060708");
    bench.file.Set("SecurityCheck", verify ? "1" : "0");
    EXPECT_EQ(bench.connector.Connect(), ConnectResult::SecurityNotPassed);
    EXPECT_EQ(bench.TakeSent().front(), verify ? 0x01 : 0x49);
    EXPECT_THAT(bench.ui.TakeTexts(), ElementsAre(kRamOnly));
    if (!verify) continue;  // the monitor still waits for its code
    EXPECT_FALSE(bench.link.LinkError);
    bench.monitor.WriteByte(0x0090, 0x77);
    EXPECT_EQ(bench.monitor.ReadByte(0x0090), 0x77);
  }
}

TEST(Connector, NoAnswerMeansHardwareNotReadyHoweverItComesAbout) {
  using simulator::FaultKind;
  struct Case {
    const char* port;
    simulator::FaultPlan faults;
  };
  for (const Case& row : {Case{"COM1", {{.kind = FaultKind::CutLine}}},
                          Case{"COM1", {{.kind = FaultKind::LoseReply, .at_host_byte = 7}}},
                          Case{"COM5", {}}, Case{"", {}}}) {
    SCOPED_TRACE(row.port);
    Bench bench;
    bench.file.Set("port", row.port);
    bench.target.SetFaultPlan(row.faults);
    EXPECT_EQ(bench.connector.Connect(), ConnectResult::NotReady);
    EXPECT_THAT(bench.ui.TakeTexts(), ElementsAre(kHardwareNotReady));
    EXPECT_TRUE(bench.link.LinkError);
    EXPECT_EQ(bench.link.IsOpen(), !row.faults.empty());

    bench.target.SetFaultPlan({});
    bench.file.Set("port", "com1");
    EXPECT_EQ(bench.connector.Connect(), ConnectResult::Connected) << "connecting again must work";
  }
}

TEST(Connector, APortThatRefusesSaysSoWithItsOwnReason) {
  ScriptedPort port;
  port.refuse = "open COM2";
  MonitorLink link(port, port);
  Monitor monitor(link);
  SettingsInFolder file;
  base::TestUser ui;
  std::string log;
  SecurityKeeper security(file.settings);
  Connector connector(monitor, file.settings, security, ui,
                      [&](const std::string& line) { log += line; });
  file.Set("port", "com2");
  security.NoteConnected(kDefaultSecurityCode, true);
  EXPECT_EQ(connector.Connect(), ConnectResult::PortUnavailable);
  EXPECT_FALSE(security.passed()) << "nothing was looked at";
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0].text, "COM2 is not available. Please try another port\n\nrefused");
  EXPECT_EQ(ui.messages[0].caption, "Information");
  EXPECT_TRUE(link.LinkError) << "whatever was connected before";
  EXPECT_EQ(log, "");
}

TEST(Connector, AResetSendsTheCodeForResetsNotTheOneConnectedWith) {
  const auto sent_by_reset = [](std::string_view key, std::string_view value, bool for_session) {
    Bench bench;
    bench.file.Set("Security0", "2222222222222222");
    if (for_session) bench.security.GiveForSession(kBlankSecurityCode);
    bench.connector.Connect();
    bench.TakeSent();
    bench.ui.TakeTexts();
    bench.file.Set(key, value);
    bench.connector.ResetTarget();
    EXPECT_THAT(bench.ui.TakeTexts(), IsEmpty());
    auto sent = bench.TakeSent();
    EXPECT_EQ(bench.security.passed(), sent.front() == 0xC3);
    // Where the flag is clear, other signs are looked for.
    if (!bench.security.passed() && sent.size() > 11) sent.resize(sent.size() - 11);
    return sent;
  };
  const auto code = [](std::uint8_t byte) { return std::vector<std::uint8_t>(8, byte); };
  EXPECT_EQ(sent_by_reset("Security", "", false), WithLooksAtTheFlag(code(0xC3), 2));
  EXPECT_EQ(sent_by_reset("Security", "11", false), WithLooksAtTheFlag(code(0xC3), 2));
  EXPECT_EQ(sent_by_reset("Security", "1111111111111111", true), WithLooksAtTheFlag(code(0x11), 1));
  EXPECT_EQ(sent_by_reset("font", "7", true), WithLooksAtTheFlag(code(0xFF), 1));
  EXPECT_EQ(sent_by_reset("SecurityCheck", "0", false), WithLooksAtTheFlag({}, 1));
}

TEST(Connector, TriesEachKnownCodeOnceUntilOneFits) {
  Bench bench;
  bench.file.Set("Security0", "1111111111111111");
  bench.file.Set("Security1", "2222222222222222");
  bench.file.Set("Security2", "1111111111111111");
  bench.SetStoredCode(kBlankSecurityCode);
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::SecurityNotPassed);
  bench.TakeSent();
  EXPECT_EQ(bench.connector.TryKnownCodes(), kBlankSecurityCode);
  EXPECT_EQ(bench.security.FoundByTrying(), kBlankSecurityCode);
  // Two codes of the list, the default of the two empty entries, the blank one; a look at the flag
  // after each, and at flash where it is clear.
  EXPECT_EQ(bench.TakeSent().size(), 4 * (8 + 3) + 3 * (3 + 8) + 3);
  EXPECT_TRUE(bench.connector.SecurityPassed());

  bench.SetStoredCode({0, 1, 2, 3, 4, 5, 6, 7});
  EXPECT_EQ(bench.connector.TryKnownCodes(), std::nullopt);
  EXPECT_FALSE(bench.link.LinkError) << "RAM can still be used";
  EXPECT_EQ(bench.security.FoundByTrying(), std::nullopt);
}

// A monitor that keeps its verdict elsewhere must not make a right code look wrong: the search for
// another would shut the flash.
TEST(Connector, ARightCodeIsKnownByOtherSigns) {
  static constexpr base::Address kFirstRam[] = {0x0040};
  simulator::Device device = simulator::Gp32();
  device.security_flags = kFirstRam;
  Bench bench(device);
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::Connected);
  EXPECT_EQ(bench.connector.sign(), SecuritySign::Flash) << "its code makes it differ";
  bench.SetStoredCode(kBlankSecurityCode);
  bench.file.Set("Security0", "ffffffffffffffff");
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::Connected);
  EXPECT_EQ(bench.connector.sign(), SecuritySign::FirstRam);
  bench.SetStoredCode({1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::SecurityNotPassed);
  bench.target.board().Load(0x0040, std::vector<std::uint8_t>{0x40});
  EXPECT_FALSE(bench.connector.SecurityPassed()) << "what reads as locked is not believed";
  bench.TakeSent();
  EXPECT_EQ(bench.connector.TryKnownCodes(), std::nullopt);
  const auto sent = bench.TakeSent();
  ASSERT_GE(sent.size(), 25u);
  EXPECT_EQ(std::vector(sent.end() - 22, sent.end() - 14), BytesOf(kBlankSecurityCode))
      << "the user's own code comes last";
}

TEST(Connector, TryingCodesGoesOnAfterAFailedTryAndEndsInErrorWithoutATarget) {
  Bench bench;
  bench.file.Set("Security0", "1111111111111111");
  ASSERT_EQ(bench.connector.Connect(), ConnectResult::SecurityNotPassed);
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::LoseHostByte, .at_host_byte = 3}});
  EXPECT_EQ(bench.connector.TryKnownCodes(), kDefaultSecurityCode);
  EXPECT_FALSE(bench.link.LinkError);

  bench.target.SetRts(true);
  bench.CutLine();
  EXPECT_EQ(bench.connector.TryKnownCodes(), std::nullopt);
  EXPECT_TRUE(bench.link.LinkError);
}

}  // namespace
}  // namespace brevant::link
