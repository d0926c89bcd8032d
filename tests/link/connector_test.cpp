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
  Bench() { SetStoredCode(kDefaultSecurityCode); }
  void SetStoredCode(const SecurityCode& code) { target.board().Load(0xFFF6, code); }
  // The security bytes that went out last.
  std::vector<std::uint8_t> TakeSent() {
    auto sent = target.board().host_log();
    target.board().ClearHostLog();
    return sent;
  }
  // The cable is pulled before the next byte.
  void CutLine() { target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine}}); }

  simulator::SimulatedTarget target{simulator::Gp32()};
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

std::vector<std::uint8_t> WithLookAtTheFlag(std::vector<std::uint8_t> sent) {
  sent.insert(sent.end(), {0x4A, 0x00, 0x80});
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
  EXPECT_EQ(bench.TakeSent(), WithLookAtTheFlag(expected));
  EXPECT_EQ(bench.security.InFlash(), kDefaultSecurityCode);
  EXPECT_THAT(bench.ui.TakeTexts(), IsEmpty());
  EXPECT_EQ(bench.log, "debug  0  5a\n");
  EXPECT_EQ(bench.link.PortName, "COM1");
  EXPECT_FALSE(bench.link.LinkError);
}

TEST(Connector, AWrongCodeLeavesRamToDebug) {
  Bench bench;
  bench.file.Set("Security0", "0102030405060708");
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::SecurityNotPassed);
  ASSERT_EQ(bench.ui.messages.size(), 1u);
  EXPECT_EQ(bench.ui.messages[0].text, kRamOnly);
  EXPECT_EQ(bench.ui.messages[0].caption, "Information");
  EXPECT_FALSE(bench.link.LinkError);
  bench.monitor.WriteByte(0x0090, 0x77);
  EXPECT_EQ(bench.monitor.ReadByte(0x0090), 0x77);
}

TEST(Connector, WithoutVerifyOnlyTheFlagIsLookedAt) {
  Bench bench;
  bench.file.Set("SecurityCheck", "0");
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::SecurityNotPassed);
  EXPECT_EQ(bench.TakeSent().front(), 0x49);
  EXPECT_EQ(bench.log, "debug  0  5a\n");
}

TEST(Connector, NoAnswerMeansHardwareNotReadyHoweverItComesAbout) {
  struct Case {
    const char* what;
    const char* port;
    bool cut;
    std::string log;
  };
  const Case cases[] = {{"no target", "COM1", true, "debug  c3  5a\n"},
                        {"no such logical port", "COM5", false, "debug  c3  5a\n"},
                        {"no port named", "", false, "debug  c3  5a\n"}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    Bench bench;
    bench.file.Set("port", row.port);
    if (row.cut) bench.CutLine();
    EXPECT_EQ(bench.connector.Connect(), ConnectResult::NotReady);
    ASSERT_EQ(bench.ui.messages.size(), 1u);
    EXPECT_EQ(bench.ui.messages[0].text, kHardwareNotReady);
    EXPECT_EQ(bench.ui.messages[0].caption, "Error Message");
    EXPECT_TRUE(bench.link.LinkError);
    EXPECT_EQ(bench.log, row.log);
    EXPECT_EQ(bench.link.IsOpen(), row.cut);

    bench.target.SetFaultPlan({});
    bench.file.Set("port", "com1");
    EXPECT_EQ(bench.connector.Connect(), ConnectResult::Connected) << "connecting again must work";
  }
}

TEST(Connector, ALostBreakCharacterMeansNotReadyToo) {
  Bench bench;
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::LoseReply, .at_host_byte = 7}});
  EXPECT_EQ(bench.connector.Connect(), ConnectResult::NotReady);
  EXPECT_TRUE(bench.link.LinkError);
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
  EXPECT_FALSE(link.LinkError);
  EXPECT_EQ(log, "");
}

TEST(Connector, AResetSendsTheCodeForResetsNotTheOneConnectedWith) {
  struct Case {
    const char* what;
    const char* in_settings;  // key "Security"; nullptr when it is absent
    std::optional<SecurityCode> session;
    SecurityCode sent;
  };
  constexpr SecurityCode kEleven{0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11};
  const Case cases[] = {
      {"nothing known", nullptr, {}, kDefaultSecurityCode},
      {"named in the settings", "1111111111111111", {}, kEleven},
      {"the settings win", "1111111111111111", kBlankSecurityCode, kEleven},
      {"known for this session", nullptr, kBlankSecurityCode, kBlankSecurityCode},
      {"not a code", "11", {}, kDefaultSecurityCode},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    Bench bench;
    bench.file.Set("Security0", "2222222222222222");
    if (row.in_settings != nullptr) bench.file.Set("Security", row.in_settings);
    if (row.session) bench.security.GiveForSession(*row.session);
    bench.connector.Connect();
    bench.TakeSent();
    bench.ui.TakeTexts();
    bench.connector.ResetTarget();
    EXPECT_EQ(bench.TakeSent(), WithLookAtTheFlag(BytesOf(row.sent)));
    EXPECT_EQ(bench.security.passed(), row.sent == kDefaultSecurityCode);
    EXPECT_FALSE(bench.link.LinkError);
    EXPECT_THAT(bench.ui.TakeTexts(), IsEmpty());
  }

  Bench unchecked;
  unchecked.connector.Connect();
  unchecked.file.Set("SecurityCheck", "0");
  unchecked.TakeSent();
  unchecked.connector.ResetTarget();
  EXPECT_EQ(unchecked.TakeSent(), WithLookAtTheFlag({}));
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
  // after each.
  EXPECT_EQ(bench.TakeSent().size(), 4 * (8 + 3));
  EXPECT_TRUE(bench.connector.SecurityPassed());

  bench.SetStoredCode({0, 1, 2, 3, 4, 5, 6, 7});
  EXPECT_EQ(bench.connector.TryKnownCodes(), std::nullopt);
  EXPECT_FALSE(bench.link.LinkError) << "RAM can still be used";
  EXPECT_EQ(bench.security.FoundByTrying(), std::nullopt);
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
