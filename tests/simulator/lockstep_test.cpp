// SPDX-License-Identifier: MIT
// The CPU beside an independent simulator (shc08 of Debian's sdcc-ucsim): the same bytes, registers
// and instructions, compared after every instruction, and all memory at the end. Where the other
// one is known to be wrong, its registers are set right or the instruction is left out.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "isa/instruction_table.h"
#include "simulator/cpu.h"
#include "simulator/mcu_kit.h"

namespace brevant::simulator {
namespace {

struct State {
  base::Address pc = 0, sp = 0;
  std::uint8_t a = 0, x = 0, h = 0, ccr = 0;
};

std::string Text(const State& s) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "PC=%04x SP=%04x A=%02x X=%02x H=%02x CCR=%02x", s.pc,
                s.sp, s.a, s.x, s.h, s.ccr);
  return text.data();
}

// What has to agree after one instruction.
struct Step {
  std::string what;
  State expected;
  std::uint8_t ccr_mask = 0xFF;
  base::Address sp_mask = 0xFFFF;
};

// Collects commands for the other simulator while ours executes, then runs it once over all of
// them.
class Oracle {
 public:
  explicit Oracle(const Bus& bus)
      : folder_(testing::TempDir() + "brevant-" +
                testing::UnitTest::GetInstance()->current_test_info()->name()) {
    std::filesystem::create_directories(folder_);
    for (base::Address first = 0; first < 0x10000; first += 64) {
      std::vector<std::uint8_t> bytes;
      for (base::Address a = first; a < first + 64; ++a) bytes.push_back(bus.Peek(a));
      SetMemory(first, bytes);
    }
    // The first step only settles the program; without the switch it stops at its own stack limit.
    commands_ << "set error stack off\nset error stack_overflow off\nstep 1\n";
  }
  ~Oracle() { std::filesystem::remove_all(folder_); }

  void SetRegisters(const State& s) {
    commands_ << "set mem regs8 0 " << int{s.a} << ' ' << int{s.ccr} << ' ' << int{s.h} << ' '
              << int{s.x} << "\nset mem regs16 0 " << s.sp << "\npc " << s.pc << '\n';
  }
  void SetMemory(base::Address address, base::Bytes bytes) {
    commands_ << "set mem rom " << address;
    for (const std::uint8_t byte : bytes) commands_ << ' ' << int{byte};
    commands_ << '\n';
  }
  void ExpectAfterStep(Step step) {
    commands_ << "step 1\n";
    steps_.push_back(std::move(step));
  }

  void Compare(const Bus& bus) {
    commands_ << "dump /h rom 0 0xffff 64\nquit\n";
    std::ofstream(folder_ / "commands") << commands_.str();
    const std::string run = "cd " + folder_.string() + " && shc08 -P -b -q <commands >output 2>&1";
    ASSERT_EQ(std::system(run.c_str()), 0);
    std::ifstream output(folder_ / "output");
    CompareSteps(output);
    if (!testing::Test::HasFailure()) CompareMemory(output, bus);
  }

 private:
  // After "key" and "= $", a hexadecimal number.
  static std::uint32_t Number(const std::string& line, std::string_view key) {
    const auto at = line.find(key);
    if (at == std::string::npos) return 0xFFFFFFFF;
    return static_cast<std::uint32_t>(std::stoul(line.substr(at + key.size()), nullptr, 16));
  }

  static bool ReadState(std::istream& in, State& s) {
    std::string line;
    while (std::getline(in, line) && !line.starts_with("Stop at 0x")) {
    }
    if (!in) return false;
    s.pc = Number(line, "Stop at ");
    std::getline(in, line);
    s.ccr = base::LowByte(Number(line, "Flags= $"));
    s.a = base::LowByte(Number(line, "A= $"));
    std::getline(in, line);
    s.h = base::LowByte(Number(line, "H= $"));
    s.x = base::LowByte(Number(line, "X= $"));
    std::getline(in, line);
    s.sp = Number(line, "SP= $");
    return true;
  }

  void CompareSteps(std::istream& in) const {
    State other;
    ASSERT_TRUE(ReadState(in, other));  // of the settling step
    int differences = 0;
    for (const Step& step : steps_) {
      ASSERT_TRUE(ReadState(in, other)) << "no answer to " << step.what;
      other.ccr |= ccr::kAlwaysSet;
      const State& mine = step.expected;
      const bool equal = mine.pc == other.pc && mine.a == other.a && mine.x == other.x &&
                         mine.h == other.h && ((mine.sp ^ other.sp) & step.sp_mask) == 0 &&
                         ((mine.ccr ^ other.ccr) & step.ccr_mask) == 0;
      EXPECT_TRUE(equal) << step.what << "\n  ours " << Text(mine) << "\n  theirs " << Text(other);
      if (!equal && ++differences == 20) return;
    }
  }

  static void CompareMemory(std::istream& in, const Bus& bus) {
    std::string line;
    base::Address compared = 0;
    while (std::getline(in, line)) {
      if (!line.starts_with("0x") || line.size() < 6 + 3 * 64) continue;
      const base::Address first = static_cast<base::Address>(std::stoul(line, nullptr, 16));
      if (first != compared) continue;
      for (base::Address i = 0; i < 64; ++i, ++compared) {
        const std::string byte = line.substr(7 + 3 * i, 2);
        ASSERT_EQ(bus.Peek(first + i), std::stoul(byte, nullptr, 16)) << std::hex << first + i;
      }
    }
    EXPECT_EQ(compared, 0x10000u);
  }

  std::filesystem::path folder_;
  std::ostringstream commands_;
  std::vector<Step> steps_;
};

class Lockstep : public testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v shc08 >/dev/null 2>&1") != 0) {
      GTEST_SKIP() << "shc08 is not installed (Debian package sdcc-ucsim)";
    }
    for (base::Address a = 0; a < 0x10000; ++a) bus_.Poke(a, Byte());
  }

  std::uint8_t Byte() { return base::LowByte(static_cast<std::uint32_t>(random_())); }
  base::Address Word() { return base::Word(Byte(), Byte()); }

  State RandomState() {
    return {0x0100 + Word() % 0xFE00,
            Word(),
            Byte(),
            Byte(),
            Byte(),
            static_cast<std::uint8_t>(Byte() | ccr::kAlwaysSet)};
  }
  void Enter(const State& s, Oracle& oracle) {
    cpu_.pc = static_cast<std::uint16_t>(s.pc);
    cpu_.sp = static_cast<std::uint16_t>(s.sp);
    cpu_.a = s.a;
    cpu_.x = s.x;
    cpu_.h = s.h;
    cpu_.flags.Unpack(s.ccr);
    oracle.SetRegisters(s);
  }
  State Present() const { return {cpu_.pc, cpu_.sp, cpu_.a, cpu_.x, cpu_.h, cpu_.ccr()}; }

  // What the other simulator cannot be asked about: it has no SWI mask, DAA, WAIT or STOP, no IRQ
  // pin, and wraps neither its PC nor an indexed address at the end of memory.
  bool Comparable() const {
    const isa::Entry entry = isa::Decode(bus_.Peek(cpu_.pc), bus_.Peek(cpu_.pc + 1u));
    if (entry.illegal() || cpu_.pc < 0x0080 || cpu_.pc >= 0xFF70) return false;
    const std::string_view name = isa::MnemonicName(entry.mnemonic());
    for (const std::string_view left_out : {"SWI", "DAA", "WAIT", "STOP", "BIL", "BIH"}) {
      if (name == left_out) return false;
    }
    return UnwrappedOperand(entry.mode()) <= 0xFFFF;
  }

  // Register plus offset where the mode has both, not cut to 16 bits.
  base::Address UnwrappedOperand(isa::Mode mode) const {
    using enum isa::Mode;
    const auto code = [this](base::Address offset) { return bus_.Peek(cpu_.pc + offset); };
    switch (mode) {
      case Indexed8:
      case CompareBranchIndexed8PostInc:
      case DecBranchIndexed8:
        return cpu_.hx() + std::uint32_t{code(1)};
      case Indexed16:
        return cpu_.hx() + base::Word(code(1), code(2));
      case Stack8:
      case CompareBranchStack8:
      case DecBranchStack8:
        return cpu_.sp + std::uint32_t{code(2)};
      case Stack16:
        return cpu_.sp + base::Word(code(2), code(3));
      default:
        return 0;
    }
  }

  // Executes one instruction here and asks for it there.
  void StepBoth(Oracle& oracle) {
    const State before = Present();
    const isa::Entry entry = isa::Decode(bus_.Peek(cpu_.pc), bus_.Peek(cpu_.pc + 1u));
    const std::string name(isa::MnemonicName(entry.mnemonic()));
    bus_.horizon = bus_.cycle + 1;
    ASSERT_EQ(cpu_.Execute(bus_, Cpu::kNoWatch), Exit::Horizon);
    Step step{name + " from " + Text(before), Present()};
    const bool changes_flags_there = name.starts_with("DBNZ");
    if (changes_flags_there)
      step.ccr_mask = static_cast<std::uint8_t>(~(ccr::kV | ccr::kN | ccr::kZ));
    if (name == "RSP") step.sp_mask = 0x00FF;
    oracle.ExpectAfterStep(step);
    if (changes_flags_there || name == "RSP") oracle.SetRegisters(Present());
  }

  std::mt19937 random_{68'908};
  Bus bus_{kAllRam};
  Cpu cpu_;
};

TEST_F(Lockstep, SingleInstructionsWithRandomOperandsAgree) {
  Oracle oracle(bus_);
  int compared = 0;
  const auto try_opcode = [&](std::vector<std::uint8_t> code) {
    for (int i = 0; i < 6; ++i) {
      State s = RandomState();
      // Half of the cases stay near the first page, where the direct modes meet the others.
      if (i % 2 == 0) s.h = 0;
      code.resize(code.front() == isa::kPagePrefix ? 2 : 1);
      while (code.size() < 4) code.push_back(Byte());
      for (base::Address k = 0; k < 4; ++k) bus_.Poke(s.pc + k, code[k]);
      oracle.SetMemory(s.pc, code);
      Enter(s, oracle);
      if (!Comparable()) continue;
      StepBoth(oracle);
      ++compared;
    }
  };
  for (int code = 0; code < 256; ++code) {
    const auto byte = base::LowByte(static_cast<std::uint32_t>(code));
    if (byte != isa::kPagePrefix) try_opcode({byte});
    try_opcode({isa::kPagePrefix, byte});
  }
  EXPECT_GT(compared, 1600);
  oracle.Compare(bus_);
}

}  // namespace
}  // namespace brevant::simulator
