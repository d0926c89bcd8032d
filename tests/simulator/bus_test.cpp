// SPDX-License-Identifier: MIT
#include "simulator/bus.h"

#include <gtest/gtest.h>

#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

constexpr base::Address kConfig1 = 0x001F, kConfig2 = 0x001E;

TEST(Bus, MapsEachDevice) {
  struct Case {
    base::Address address;
    bool ram, flash, rom;
  };
  const auto check = [](const Device& device, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(device.name) + " " + std::to_string(c.address));
      Bus bus(device);
      bus.SetSecurityPassed(true);
      bus.Poke(c.address, 0x5A);
      EXPECT_EQ(bus.Read(c.address), c.ram || c.flash || c.rom ? 0x5A : 0xFF);
      EXPECT_EQ(bus.Fetchable(c.address), c.ram || c.flash || c.rom);
      bus.Write(c.address, 0xA5);
      EXPECT_EQ(bus.Read(c.address) == 0xA5, c.ram);
      bus.SetSecurityPassed(false);
      EXPECT_EQ(bus.Fetchable(c.address), c.ram || c.rom);
      EXPECT_EQ(bus.Read(c.address) == 0xAD, c.flash);
    }
  };
  check(Gp32(), {{0x0040, true, false, false},
                 {0x023F, true, false, false},
                 {0x0240, false, false, false},
                 {0x7FFF, false, false, false},
                 {0x8000, false, true, false},
                 {0xFDFF, false, true, false},
                 {0xFE0D, false, false, false},
                 {0xFE20, false, false, true},
                 {0xFF52, false, false, true},
                 {0xFF53, false, false, false},
                 {0xFF7E, false, true, false},
                 {0xFF7F, false, false, false},
                 {0xFFDB, false, false, false},
                 {0xFFDC, false, true, false},
                 {0xFFFF, false, true, false}});
  check(Ql(), {{0x007F, false, false, false},
               {0x0080, true, false, false},
               {0x00FF, true, false, false},
               {0x0100, false, false, false},
               {0x2800, false, false, true},
               {0xEDFF, false, false, false},
               {0xEE00, false, true, false},
               {0xFF7D, false, false, true},
               {0xFFAF, false, false, false},
               {0xFFB0, false, true, false},
               {0xFFBE, false, true, false},
               {0xFFBF, false, false, false},
               {0xFFC0, false, true, false},
               {0xFFFF, false, true, false}});
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

  // Interrupt driven: the handler counts $80 down and sends it until it is 0.
  mcu.ClearSciLog();
  mcu.Poke(0xFFE2, 0x01);
  mcu.Poke(0xFFE3, 0x80);
  // LDA SCS1; LDX $80; STX SCDR; DBNZ $80,out; LDA #8; STA SCC2; out: RTI
  Load(mcu, 0x0180, "B616 BE80 BF18 3B8004 A608 B714 80");
  mcu.Poke(0x0080, 5);
  mcu.Write(0x0014, 0x88);
  ASSERT_EQ(RunCode(mcu, 0x0100, "9A 20FE", 40'000), RunEnd::CycleLimit);
  EXPECT_EQ(mcu.sci_log(), (std::vector<std::uint8_t>{5, 4, 3, 2, 1}));
}

}  // namespace
}  // namespace brevant::simulator
