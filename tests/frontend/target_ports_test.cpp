// SPDX-License-Identifier: MIT
#include "frontend/target_ports.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "frontend/connection.h"

namespace brevant::frontend {
namespace {

namespace keys = base::keys;

constexpr base::Address kFlash = 0x9000;
constexpr base::Address kResetVector = 0xFFFE;

struct Bench {
  std::filesystem::path path = std::filesystem::temp_directory_path() /
                               ("brevant_ports_" + std::to_string(getpid()) + ".ini");
  base::SettingsFile settings{path};
  ~Bench() { std::filesystem::remove(path); }
};

TEST(TargetPorts, ConnectAgainToTheSameBoardUntilAnotherDeviceIsChosen) {
  Bench bench;
  UseForThisRun({.port = "sim"}, bench.settings);
  TargetPorts ports(bench.settings, {.demo = true});
  EXPECT_EQ(ports.simulated(), nullptr);
  ASSERT_TRUE(ports.router().Open("COM1"));
  EXPECT_TRUE(ports.is_simulated());
  EXPECT_NE(ports.simulated()->board().mcu().Peek(kResetVector), 0xFF) << "the demo program";
  ports.simulated()->board().mcu().Poke(kFlash, 0x12);
  ports.router().Close();
  EXPECT_FALSE(ports.is_simulated());
  ASSERT_TRUE(ports.router().Open("COM1"));
  EXPECT_EQ(ports.simulated()->board().mcu().Peek(kFlash), 0x12);

  bench.settings.Override(keys::kDevice, "1");
  ASSERT_TRUE(ports.router().Open("COM1"));
  EXPECT_EQ(ports.simulated()->board().device().name, "MC68HC908QL");
}

TEST(TargetPorts, TheNamedPortIsUsedWithoutBeingRemembered) {
  struct Case {
    const char* name;
    const char* port;
    const char* device;  // behind COM1
  };
  for (const Case& c : {Case{"com3", "COM3", ""},
                        {"sim", "COM1", "simulator"},
                        {"/dev/ttyUSB7", "COM1", "/dev/ttyUSB7"}}) {
    Bench bench;
    UseForThisRun({.port = c.name}, bench.settings);
    EXPECT_EQ(bench.settings.String(keys::kPort), c.port);
    EXPECT_EQ(bench.settings.String(keys::kPortDevice, 1), c.device);
    EXPECT_FALSE(std::filesystem::exists(bench.path));
  }
}

}  // namespace
}  // namespace brevant::frontend
