// SPDX-License-Identifier: MIT
#include "simulator/bus.h"

#include <gtest/gtest.h>

#include <sstream>

#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

constexpr base::Address kConfig1 = 0x001F, kConfig2 = 0x001E;

// Addresses with what lies there: r RAM, f flash, m ROM, - nothing.
void CheckMap(const Device& device, const std::string& map) {
  std::istringstream places(map);
  base::Address address = 0;
  for (char kind = 0; places >> std::hex >> address >> kind;) {
    SCOPED_TRACE(std::string(device.name) + " " + std::to_string(address));
    Bus bus(device);
    bus.SetSecurityPassed(true);
    bus.Poke(address, 0x5A);
    EXPECT_EQ(bus.Read(address), kind != '-' ? 0x5A : 0xFF);
    EXPECT_EQ(bus.Fetchable(address), kind != '-');
    bus.Write(address, 0xA5);
    EXPECT_EQ(bus.Read(address) == 0xA5, kind == 'r');
    bus.SetSecurityPassed(false);
    EXPECT_EQ(bus.Fetchable(address), kind == 'r' || kind == 'm');
    EXPECT_EQ(bus.Read(address) == 0xAD, kind == 'f');
  }
}

TEST(Bus, MapsEachDevice) {
  CheckMap(Gp32(),
           "0040 r 023F r 0240 - 7FFF - 8000 f FDFF f FE0D - FE20 m FF52 m FF53 - "
           "FF7E f FF7F - FFDB - FFDC f FFFF f");
  CheckMap(Ql(),
           "007F - 0080 r 00FF r 0100 - 2800 m EDFF - EE00 f FF7D m FFAF - FFB0 f "
           "FFBE f FFBF - FFC0 f FFFF f");
}

TEST(Bus, PortsMixLatchAndPinsByDirection) {
  Bus bus(Gp32());
  bus.SetPins(1, 0x0F);
  bus.Write(0x0001, 0xAA);
  EXPECT_EQ(bus.Read(0x0001), 0x0F);
  bus.Write(0x0005, 0xF0);
  EXPECT_EQ(bus.Read(0x0001), 0xAF);
  bus.Reset(ResetCause::Pin);  // the direction is gone, the latch is not
  EXPECT_EQ(bus.Read(0x0001), 0x0F);
  bus.Write(0x0005, 0xFF);
  EXPECT_EQ(bus.Read(0x0001), 0xAA);
  bus.Write(0x000C, 0x01);  // port E's direction stands apart
  bus.Write(0x0008, 0x00);
  EXPECT_EQ(bus.Read(0x0008), 0xFE);
  EXPECT_EQ(Bus(Ql()).Read(0x0000) & 0x04, 0) << "PTA2 is the IRQ pin";
}

TEST(Bus, ConfigIsWrittenOnceAfterEachReset) {
  Bus bus(Gp32());
  bus.Write(kConfig1, 0x01);
  bus.Write(kConfig1, 0x02);
  bus.Write(kConfig2, 0x01);
  EXPECT_EQ(bus.Read(kConfig1), 0x01);
  EXPECT_EQ(bus.Read(kConfig2), 0x01);
  bus.Reset(ResetCause::Pin);
  EXPECT_EQ(bus.Read(kConfig1), 0x00);
  bus.Write(kConfig1, 0x02);
  EXPECT_TRUE(bus.StopEnabled());
}

TEST(Bus, PeekDisturbsNothing) {
  Bus bus(Gp32());
  EXPECT_EQ(bus.Peek(0xFE01), 0x80);
  EXPECT_EQ(bus.Peek(0xFE01), 0x80);
  EXPECT_EQ(bus.Read(0xFE01), 0x80);
  EXPECT_EQ(bus.Peek(0xFE01), 0x00);
  EXPECT_EQ(bus.Peek(0xC000), 0xFF) << "security hides flash from the program, not from a loader";
}

TEST(Bus, TheSciSendsAtItsBaudRate) {
  Mcu mcu = ReadyMcu();
  mcu.Write(0x0013, 0x40);  // ENSCI
  mcu.Write(0x0014, 0x08);  // TE
  mcu.Write(0x0019, 0x03);  // crystal / (64 * 8): 256 bus cycles a bit
  const std::uint64_t start = mcu.cycle();
  mcu.Write(0x0018, 'H');
  EXPECT_EQ(mcu.Read(0x0016), 0x80);  // the buffer is free at once, the shifter is not
  mcu.Write(0x0018, 'i');
  EXPECT_EQ(mcu.Read(0x0016), 0x00);
  mcu.AdvanceTo(start + 2559);
  EXPECT_TRUE(mcu.sci_log().empty());
  mcu.AdvanceTo(start + 2560);
  EXPECT_EQ(mcu.Read(0x0016), 0x80);
  mcu.AdvanceTo(start + 5120);
  EXPECT_EQ(mcu.Read(0x0016), 0xC0);
  EXPECT_EQ(std::string(mcu.sci_log().begin(), mcu.sci_log().end()), "Hi");
}

}  // namespace
}  // namespace brevant::simulator
