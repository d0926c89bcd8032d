// SPDX-License-Identifier: MIT
#include "link/port_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/settings_in_folder.h"

namespace brevant::link {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::vector<SerialDevice> kFound = {
    {"/dev/ttyS0", "", "", "", false},
    {"/dev/ttyUSB0", "FT232R USB UART", "FTDI", "A50285BI", true},
    {"/dev/ttyUSB1", "CH340", "", "", true},
};

TEST(PortMap, TheSettingsComeFirstThenTheFirstAdapterThenTheSimulatedTarget) {
  SettingsInFolder file;
  EXPECT_EQ(DeviceBehind("COM1", file.settings, kFound), "/dev/ttyUSB0");
  EXPECT_EQ(DeviceBehind("COM1", file.settings, {kFound[0]}), kSimulator);
  EXPECT_EQ(DeviceBehind("COM2", file.settings, kFound), std::nullopt);
  base::SettingsFile::Change change;
  EXPECT_TRUE(StoreDeviceBehind("COM2", "/dev/ttyS0", change));
  EXPECT_TRUE(StoreDeviceBehind("COM1", kSimulator, change));
  ASSERT_TRUE(file.settings.Apply(change));
  EXPECT_EQ(DeviceBehind("COM2", file.settings, kFound), "/dev/ttyS0");
  EXPECT_EQ(DeviceBehind("COM1", file.settings, kFound), kSimulator);
  EXPECT_TRUE(StoreDeviceBehind("COM1", "", change));
  ASSERT_TRUE(file.settings.Apply(change));
  EXPECT_EQ(DeviceBehind("COM1", file.settings, kFound), "/dev/ttyUSB0");
  for (const char* name : {"COM0", "COM5", "com1", "COM11", ""}) {
    EXPECT_FALSE(StoreDeviceBehind(name, "x", change)) << name;
    EXPECT_EQ(DeviceBehind(name, file.settings, kFound), std::nullopt) << name;
  }
}

TEST(PortMap, ListsAdaptersFirstAndAlwaysTheSimulatedTarget) {
  std::vector<std::string> texts;
  for (const DeviceChoice& choice : ListDeviceChoices(kFound, "/dev/ttyUSB9")) {
    texts.push_back(choice.text);
  }
  EXPECT_THAT(texts, ElementsAre("/dev/ttyUSB0 - FT232R USB UART (FTDI, serial number A50285BI)",
                                 "/dev/ttyUSB1 - CH340", "/dev/ttyS0", HasSubstr("simulated"),
                                 "/dev/ttyUSB9 - not found at present"));
  EXPECT_EQ(ListDeviceChoices({}, kSimulator).size(), 1u);
  EXPECT_EQ(ListDeviceChoices({}).front().device, kSimulator);
}

}  // namespace
}  // namespace brevant::link
