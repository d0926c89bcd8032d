// SPDX-License-Identifier: MIT
#include "devices/device.h"

#include <gtest/gtest.h>

#include "devices/hc08.h"
#include "simulator/device.h"

namespace brevant::devices {
namespace {

MemoryKind SimulatedKind(const simulator::Device& board, base::Address at) {
  if (board.io.Contains(at) || board.high_registers.Contains(at)) return MemoryKind::Registers;
  if (board.ram.Contains(at)) return MemoryKind::Ram;
  if (board.IsFlash(at)) return MemoryKind::Flash;
  const bool rom = board.monitor_rom.Contains(at) || board.auxiliary_rom.Contains(at);
  return rom ? MemoryKind::Rom : MemoryKind::Nothing;
}

TEST(Devices, AreWhatTheSimulatedBoardsAre) {
  for (std::size_t number = 0; number < All().size(); ++number) {
    const Device& device = All()[number];
    SCOPED_TRACE(device.name);
    EXPECT_EQ(device.settings_number, static_cast<int>(number)) << "lists show rows by number";
    const simulator::Device& board = simulator::DeviceByIndex(device.settings_number);
    EXPECT_EQ(device.name, board.name);
    EXPECT_EQ(device.flash.flbpr, board.flbpr);
    EXPECT_EQ(device.flash.page_size(), static_cast<base::Address>(board.page_size));
    EXPECT_EQ(device.flash.row_size, static_cast<base::Address>(board.row_size));
    for (base::Address at = 0; at <= 0xFFFF; ++at) {
      ASSERT_EQ(KindOf(device, at), SimulatedKind(board, at)) << at;
    }
    EXPECT_EQ(KindOf(device, 0x10000), MemoryKind::Nothing);
    for (const Vector& vector : device.vectors) {
      EXPECT_EQ(KindOf(device, vector.address), MemoryKind::Flash) << vector.name;
      EXPECT_EQ(KindOf(device, vector.address + 1), MemoryKind::Flash) << vector.name;
    }
    EXPECT_EQ(device.vectors.back().address, kResetVector);
  }
}

TEST(Devices, AreFoundByNumberAndOption) {
  EXPECT_EQ(BySettingsNumber(1).name, "MC68HC908QL");
  for (const int number : {0, 2, -1}) EXPECT_EQ(BySettingsNumber(number).name, "MC68HC908GP32");
  EXPECT_EQ(ByOption("ql"), &BySettingsNumber(1));
  EXPECT_EQ(ByOption("QL"), nullptr);
}

}  // namespace
}  // namespace brevant::devices
