// SPDX-License-Identifier: MIT
#include "control/trace_log.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace brevant::control {
namespace {

TraceRecord Record(base::Address address) {
  TraceRecord record;
  record.instruction = isa::InstructionAt(address, std::array<std::uint8_t, 2>{0xA6, 0x12});
  record.PC = address + 2;
  record.SP = 0x00FA;
  record.HX = 0x1F;
  record.A = 0x0A;
  record.CCR = 0x6B;
  return record;
}

const auto no_source = [](base::Address) -> std::optional<std::string> { return std::nullopt; };

TEST(TraceLog, HoldsThreeLinesARecord) {
  TraceRing ring;
  ring.Add(Record(0xF000));
  ring.Add(Record(0xF002));
  const auto source = [](base::Address address) -> std::optional<std::string> {
    if (address != 0xF002) return std::nullopt;
    return "  x = " + std::string(300, '1');
  };
  EXPECT_EQ(FormatTraceLog(ring, isa::NoSymbols(), source),
            "00f000 a6 12 \tLDA\t#12\n"
            "PC=f002  SP=00ff  HX=001f  A=0a  V11H=0110  INZC=1011\n"
            "\n"
            "0f002:   x = " +
                std::string(192, '1') +
                "\n"
                "PC=f004  SP=00ff  HX=001f  A=0a  V11H=0110  INZC=1011\n"
                "\n");
}

TEST(TraceLog, TellsOfTheLast128StepsOldestFirst) {
  TraceRing ring(200);
  EXPECT_EQ(ring.Last(), nullptr);
  EXPECT_EQ(FormatTraceLog(ring, isa::NoSymbols(), no_source), "");
  for (base::Address n = 0; n < 300; ++n) ring.Add(Record(n));
  EXPECT_EQ(ring.size(), 200);
  EXPECT_EQ(ring.At(0).instruction.address, 100u);
  EXPECT_EQ(ring.Last()->instruction.address, 299u);
  const std::string log = FormatTraceLog(ring, isa::NoSymbols(), no_source);
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 384);
  EXPECT_TRUE(log.starts_with("0000ac ")) << "172, of the 200 that are kept";
  ring.Clear();
  EXPECT_EQ(ring.size(), 0);
}

}  // namespace
}  // namespace brevant::control
