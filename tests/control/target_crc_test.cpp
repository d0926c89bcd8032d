// SPDX-License-Identifier: MIT
#include "control/target_crc.h"

#include <gtest/gtest.h>

#include "base/crc16.h"
#include "link/connected_target.h"

namespace brevant::control {
namespace {

using link::ByteList;

struct CrcBench : link::ConnectedTarget {
  explicit CrcBench(const simulator::Device& device, int number) : ConnectedTarget(device) {
    memory.UseDevice(devices::BySettingsNumber(number));
    EXPECT_TRUE(frame.ReadRegisters());
  }
  ByteList Bytes(base::Address first, std::size_t count) {
    ByteList bytes;
    for (std::size_t i = 0; i < count; ++i)
      bytes.push_back(Peek(first + static_cast<base::Address>(i)));
    return bytes;
  }
  memory::Memory memory{monitor};
  RegisterFrame frame{memory, link};
  TargetCrc crc{memory, link, frame};
};

TEST(TargetCrc, IsThatOfTheBytesAndLeavesNoTrace) {
  EXPECT_EQ(base::Crc16(ByteList{'1', '2', '3', '4', '5', '6', '7', '8', '9'}), 0x29B1);
  for (const bool ql : {false, true}) {
    CrcBench bench(ql ? simulator::Ql() : simulator::Gp32(), ql ? 1 : 0);
    ByteList code;
    for (int i = 0; i < 700; ++i) code.push_back(static_cast<std::uint8_t>(i * i / 7));
    bench.Load(0xF000, code);
    bench.Load(0xFFFE, {0xF0, 0x12});
    for (const base::Address stack : {0x00FFu, 0x008Du, 0x00B0u}) {
      ASSERT_TRUE(bench.frame.SetStackPointer(stack));
      bench.frame.SetPC(0x00E0);
      bench.frame.WriteHX(0x1234);
      bench.frame.WriteCCR(0x60);
      const ByteList ram = bench.Bytes(stack + 1, 0x100 - stack - 1);
      for (const auto& [first, count] : {std::pair{0xF000u, 700u}, {0xF001u, 1u}, {0xFFFEu, 2u}}) {
        EXPECT_EQ(bench.crc.Of(first, count), base::Crc16(bench.Bytes(first, count)));
      }
      EXPECT_EQ(bench.Bytes(stack + 1, ram.size()), ram);
      ASSERT_TRUE(bench.frame.ReadRegisters());
      EXPECT_EQ(bench.frame.ProgramSP(), stack);
      EXPECT_EQ(bench.frame.PC, 0x00E0u);
      EXPECT_EQ(bench.frame.HX, 0x1234u);
      EXPECT_EQ(bench.frame.CCR, 0x60u);
    }
    EXPECT_FALSE(bench.crc.Of(0xFDFF, 2)) << "registers must not be read so";
    EXPECT_FALSE(bench.crc.Of(0xFFFF, 2));
  }
}

}  // namespace
}  // namespace brevant::control
