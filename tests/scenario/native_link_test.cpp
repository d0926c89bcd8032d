// SPDX-License-Identifier: MIT
// The link over the operating system's port, against the board as a process of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): SIGKILL

#include <array>
#include <chrono>

#include "link/monitor.h"
#include "link/native/native_serial_port.h"
#include "link/security_code.h"
#include "scenario/target_process.h"

namespace brevant::scenario {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;

struct Bench {
  explicit Bench(const std::string& pace) : process({"--pace", pace}) {}
  bool Connect() {
    link.LinkError = false;
    return link.OpenPort(process.device()) &&
           monitor.SendSecurityCode(link::kBlankSecurityCode) == 0 && !link.LinkError;
  }

  TargetProcess process;
  link::PortBackend native = link::MakeNativeBackend();
  link::MonitorLink link{*native.port, *native.clock};
  link::Monitor monitor{link};
};

TEST(NativeLink, DebugsABoardInItsRealTime) {
  Bench bench("wire");
  ASSERT_TRUE(bench.Connect()) << bench.link.PortError();
  EXPECT_EQ(bench.monitor.ReadByte(0x0080) & 0x40, 0x40) << "the code was accepted";
  bench.monitor.WriteBlock(0x0100, ByteList{1, 2, 3, 4, 5});
  ByteList back(5);
  bench.monitor.ReadBlockBytes(back, 0x0100);
  EXPECT_THAT(back, ElementsAre(1, 2, 3, 4, 5));
  bench.monitor.WriteWord(0x0102, 0xBEEF);
  EXPECT_EQ(bench.monitor.ReadWord(0x0102), 0xBEEFu);

  bench.monitor.WriteBlock(0x0090, ByteList{0x4C, 0x20, 0xFD});  // INCA; BRA to it
  bench.monitor.WriteWord(0x00FE, 0x0090);
  bench.monitor.RunTarget();
  bench.link.WaitMs(2);
  EXPECT_EQ(bench.link.PollBreak(link::PollWait::None), 1);
  EXPECT_FALSE(bench.link.SendBreak()) << "a program with interrupts masked is deaf";
  ASSERT_TRUE(bench.link.PulseReset());
  EXPECT_EQ(bench.monitor.SendSecurityCode(link::kBlankSecurityCode), 0);
  bench.monitor.WriteBlock(0x0090, ByteList{0x83});  // SWI
  bench.monitor.WriteWord(0x00FE, 0x0090);
  bench.monitor.RunTarget();
  EXPECT_EQ(bench.link.PollBreak(), 0);
  EXPECT_EQ(bench.monitor.ReadStackPointer(), 0x00FAu);
  EXPECT_TRUE(bench.link.SendBreak()) << "the listening monitor answers a break";
  EXPECT_FALSE(bench.link.LinkError);
}

TEST(NativeLink, FailsAtOnceWhenTheBoardIsUnpluggedAndConnectsAgainToAnother) {
  Bench bench("bus");
  ASSERT_TRUE(bench.Connect()) << bench.link.PortError();
  bench.process.End(SIGKILL);
  const auto start = steady_clock::now();
  bench.monitor.ReadByte(0x0080);
  EXPECT_TRUE(bench.link.LinkError);
  EXPECT_THAT(bench.link.PortError(), HasSubstr("has gone"));
  EXPECT_EQ(bench.link.PollBreak(), 1);
  EXPECT_FALSE(bench.link.SendBreak());
  EXPECT_FALSE(bench.link.PulseReset());
  EXPECT_LT(steady_clock::now() - start, 1s);
  EXPECT_FALSE(bench.Connect());
  EXPECT_THAT(bench.link.PortError(), HasSubstr("no device"));

  const TargetProcess other({"--pace", "bus"});
  bench.link.LinkError = false;
  ASSERT_TRUE(bench.link.OpenPort(other.device())) << bench.link.PortError();
  EXPECT_EQ(bench.monitor.SendSecurityCode(link::kBlankSecurityCode), 0);
}

}  // namespace
}  // namespace brevant::scenario
