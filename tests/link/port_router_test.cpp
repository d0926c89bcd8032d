// SPDX-License-Identifier: MIT
#include "link/port_router.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "link/connected_target.h"
#include "link/scripted_port.h"

namespace brevant::link {
namespace {

using testing::HasSubstr;

// "COM1" is the board, "COM2" a port that is busy, "COM3" a device nobody can drive.
struct Bench {
  std::shared_ptr<simulator::SimulatedTarget> board =
      std::make_shared<simulator::SimulatedTarget>(simulator::Gp32());
  std::shared_ptr<ScriptedPort> busy = std::make_shared<ScriptedPort>();
  PortRouter router{[](const std::string& name) -> std::optional<std::string> {
                      static const std::map<std::string, std::string> kDevices = {
                          {"COM1", "board"}, {"COM2", "busy"}, {"COM3", "nothing"}};
                      const auto it = kDevices.find(name);
                      if (it == kDevices.end()) return std::nullopt;
                      return it->second;
                    },
                    [this](const std::string& device) -> PortBackend {
                      if (device == "board") return {board, board.get(), board.get()};
                      if (device == "busy") return {busy, busy.get(), busy.get()};
                      return {};
                    },
                    [this] { ++pauses; }};
  int pauses = 0;
};

TEST(PortRouter, DrivesTheDeviceBehindTheNameOnItsOwnTime) {
  Bench bench;
  MonitorLink link(bench.router, bench.router);
  Monitor monitor(link);
  ASSERT_TRUE(link.OpenPort("COM1"));
  EXPECT_EQ(bench.router.device(), "board");
  EXPECT_EQ(monitor.SendSecurityCode(kBlankSecurityCode), 0);
  EXPECT_EQ(monitor.ReadStackPointer(), 0x00FAu);
  EXPECT_FALSE(link.LinkError);
}

TEST(PortRouter, PausesBetweenTransfersAndDuringLongWaits) {
  Bench bench;
  MonitorLink link(bench.router, bench.router);
  Monitor monitor(link);
  ASSERT_TRUE(link.OpenPort("COM1"));
  ASSERT_EQ(monitor.SendSecurityCode(kBlankSecurityCode), 0);
  bench.pauses = 0;
  monitor.ReadByte(0x80);
  EXPECT_GE(bench.pauses, 3);
  bench.pauses = 0;
  const std::int64_t start = bench.router.NowMs();
  bench.router.Sleep(std::chrono::milliseconds(1010));
  EXPECT_GE(bench.pauses, 50);
  bench.router.SpinUntil(bench.router.NowMs() + 500);
  EXPECT_EQ(bench.router.NowMs() - start, 1510) << "no longer for the pauses";
}

TEST(PortRouter, TimeNeverGoesBackWhenTheDeviceChanges) {
  Bench bench;
  std::int64_t last = bench.router.NowMs();
  const auto expect_onward = [&] {
    EXPECT_GE(bench.router.NowMs(), last);
    EXPECT_LT(bench.router.NowMs() - last, 1000);
    last = bench.router.NowMs();
  };
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(bench.router.Open("COM1"));
    expect_onward();
    bench.router.Sleep(std::chrono::milliseconds(500));
    expect_onward();
    ASSERT_TRUE(bench.router.Open("COM2"));
    expect_onward();
    bench.router.Close();
    expect_onward();
  }
}

TEST(PortRouter, SaysWhyNothingIsOpenAndRefusesEverythingThen) {
  Bench bench;
  bench.busy->refuse = "open busy";
  ASSERT_TRUE(bench.router.Open("COM1"));
  const std::pair<const char*, const char*> cases[] = {
      {"COM4", "No device stands behind COM4"}, {"COM2", "refused"}, {"COM3", "Choose another"}};
  for (const auto& [name, reason] : cases) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(bench.router.Open(name));
    EXPECT_THAT(bench.router.LastError(), HasSubstr(reason));
    EXPECT_EQ(bench.router.device(), "");
    std::uint8_t byte = 0;
    EXPECT_EQ(bench.router.Read(std::span(&byte, 1), {}), std::nullopt);
    EXPECT_FALSE(bench.router.Write(base::Bytes(&byte, 1)));
    EXPECT_FALSE(bench.router.SetRts(true));
    EXPECT_FALSE(bench.router.Configure({}));
  }
}

}  // namespace
}  // namespace brevant::link
