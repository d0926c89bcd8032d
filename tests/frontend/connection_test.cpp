// SPDX-License-Identifier: MIT
#include "frontend/connection.h"

#include <gtest/gtest.h>

#include "debugger/bench.h"
#include "frontend/stop_wait.h"
#include "link/messages.h"

namespace brevant::frontend {
namespace {

using namespace std::chrono_literals;

constexpr base::Address kCodeAddress = 0xFFF6;
constexpr link::SecurityCode kOtherCode{1, 2, 3, 4, 5, 6, 7, 8};

class FrontEnd : public testing::Test {
 protected:
  std::vector<std::string> Said(const Connection& connection) {
    EXPECT_TRUE(surroundings.user.texts.empty()) << "it is kept back";
    std::vector<std::string> texts;
    for (const base::Message& message : connection.said) texts.push_back(message.text);
    return texts;
  }
  WaitEnd Wait(std::chrono::milliseconds time_out, base::FunctionRef<long()> progress,
               bool interrupted = false) {
    return WaitForStop(engine, {time_out, progress, [&] { return interrupted; }});
  }

  debugger::Bench surroundings;
  HoldingUi ui{surroundings.user};
  debugger::Debugger engine{{.port = surroundings.target,
                             .clock = surroundings.target,
                             .settings = surroundings.settings,
                             .ui = ui,
                             .events = surroundings.events,
                             .start_up_directory = "."}};
  const std::vector<std::string> refused{link::kSecurityNotPassed.text};
};

TEST_F(FrontEnd, TriesKnownCodesAndRemembersTheOneThatFits) {
  UseForThisRun({.security = kOtherCode}, surroundings.settings);
  const Connection left = Connect(engine, ui, KnownCodes::Leave);
  EXPECT_TRUE(left.ok());
  EXPECT_FALSE(left.found);
  EXPECT_EQ(Said(left), refused);

  const Connection tried = Connect(engine, ui, KnownCodes::TryAndRemember);
  EXPECT_EQ(tried.found, link::kBlankSecurityCode);
  EXPECT_TRUE(Said(tried).empty()) << "another code fitted";
  base::SettingsFile next_run(surroundings.settings.path());
  EXPECT_EQ(link::SecurityKeeper(next_run).ToConnect(), link::kBlankSecurityCode);
}

TEST_F(FrontEnd, SaysOnceThatNoKnownCodeFits) {
  surroundings.target.board().Load(kCodeAddress, kOtherCode);
  surroundings.settings.Override(base::keys::kRecentSecurity, "0011223344556677", 0);
  // The third try fails in its echo, so that the engine connects anew at last and says it again.
  // Connecting sends 18 bytes, each try 11.
  surroundings.target.SetFaultPlan({{simulator::FaultKind::DropMonitorEcho, 18 + 2 * 11 + 1}});
  const Connection connection = Connect(engine, ui, KnownCodes::Try);
  EXPECT_TRUE(connection.ok());
  EXPECT_EQ(Said(connection), refused);
  EXPECT_EQ(Said(ConnectAgain(engine, ui)), refused);
}

TEST_F(FrontEnd, WaitsUntilTheTargetStopsOrSomethingElseEndsIt) {
  ASSERT_TRUE(Connect(engine, ui, KnownCodes::Try).ok());
  const auto none = [] { return 0L; };
  engine.monitor.WriteBlock(0x0100, std::vector<std::uint8_t>{0x20, 0xFE});  // BRA to itself
  engine.frame.WriteProgramCounter(0x0100);
  engine.run_control.Go();
  const std::int64_t before = engine.clock.NowMs();
  EXPECT_EQ(Wait(100ms, none, true), WaitEnd::Interrupted);
  EXPECT_EQ(Wait(100ms, none), WaitEnd::TimedOut);
  EXPECT_LT(engine.clock.NowMs() - before, 200);
  // As long as something moves there is time.
  long reached = 0;
  EXPECT_EQ(Wait(100ms, [&] { return reached < 50 ? ++reached : reached; }), WaitEnd::TimedOut);
  EXPECT_GE(engine.clock.NowMs() - before, 600);
  surroundings.target.board().mcu().Poke(0x0101, 0x00);  // on to the next, which is an SWI
  surroundings.target.board().mcu().Poke(0x0102, 0x83);
  EXPECT_EQ(Wait(100ms, none), WaitEnd::Stopped);
}

}  // namespace
}  // namespace brevant::frontend
