// SPDX-License-Identifier: MIT
// Simulated instructions per second ("items_per_second", by processor time): straight code, a mixed
// program, and the same mixed program in shc08 of sdcc-ucsim with the ratio between the two.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <vector>

#include "child_time.h"
#include "simulator/mcu.h"

namespace brevant::simulator {
namespace {

using Code = std::vector<std::uint8_t>;

constexpr base::Address kStart = 0x8000;

// Loads, stores, arithmetic, shifts and read-modify-write without a branch, up to an SWI.
Code StraightCode() {
  const Code block{0xA6, 0x12, 0xAB, 0x34, 0xB7, 0xA0, 0xBE, 0xA1, 0x5C, 0x9F,
                   0xA4, 0x0F, 0xB8, 0xA2, 0x48, 0x97, 0x3C, 0xA3, 0x42, 0xC7,
                   0x01, 0x00, 0xE6, 0x40, 0x9E, 0xE1, 0x01, 0x87, 0x86};
  Code code;
  while (code.size() + block.size() < 0x7000) code.insert(code.end(), block.begin(), block.end());
  code.push_back(0x83);
  return code;
}

// 65,536 rounds of arithmetic, indexed and bit operations, a subroutine and data-dependent
// branches.
Code MixedProgram() {
  return {
      0x3F, 0x80,        //         CLR   $80
      0x3F, 0x81,        //         CLR   $81
      0xB6, 0x81,        // loop:   LDA   $81
      0xAB, 0x35,        //         ADD   #$35
      0xB7, 0x90,        //         STA   $90
      0xBE, 0x80,        //         LDX   $80
      0x42,              //         MUL
      0xB7, 0x91,        //         STA   $91
      0x45, 0x00, 0x92,  //         LDHX  #$0092
      0xF6,              //         LDA   ,X
      0xB8, 0x90,        //         EOR   $90
      0xF7,              //         STA   ,X
      0x6C, 0x03,        //         INC   3,X
      0xAD, 0x12,        //         BSR   sub
      0xA1, 0x40,        //         CMP   #$40
      0x24, 0x02,        //         BCC   skip
      0x33, 0x93,        //         COM   $93
      0x01, 0x91, 0x02,  // skip:   BRCLR 0,$91,next
      0x36, 0x94,        //         ROR   $94
      0x3B, 0x81, 0xDC,  // next:   DBNZ  $81,loop
      0x3B, 0x80, 0xD9,  //         DBNZ  $80,loop
      0x83,              //         SWI
      0x87,              // sub:    PSHA
      0x44,              //         LSRA
      0xA9, 0x01,        //         ADC   #1
      0x97,              //         TAX
      0x86,              //         PULA
      0x81,              //         RTS
  };
}
constexpr base::Address kMixedEnd = kStart + 43;  // its SWI

Mcu Loaded(const Code& code) {
  Mcu mcu(Gp32());
  mcu.SetSecurityPassed(true);
  for (base::Address i = 0; i < code.size(); ++i) mcu.Poke(kStart + i, code[i]);
  mcu.EnterMonitor();
  const base::Address frame = mcu.cpu().sp + 1u;
  mcu.Poke(frame + 4, base::HighByte(kStart));
  mcu.Poke(frame + 5, base::LowByte(kStart));
  mcu.ResumeFromMonitor();
  return mcu;
}

constexpr std::uint64_t kNoLimit = 1'000'000'000'000;

// Instructions up to and including the SWI.
std::uint64_t CountInstructions(Mcu mcu) {
  std::uint64_t count = 1;
  while (mcu.Run(mcu.cycle() + 1) == RunEnd::CycleLimit) ++count;
  return count;
}

void RunToEnd(benchmark::State& state, const Code& code) {
  const Mcu start = Loaded(code);
  const auto instructions = static_cast<std::int64_t>(CountInstructions(start));
  for (auto _ : state) {
    Mcu mcu = start;
    if (mcu.Run(kNoLimit) != RunEnd::SoftwareInterrupt) {
      state.SkipWithError("the program did not end");
      return;
    }
  }
  state.SetItemsProcessed(state.iterations() * instructions);
}

void StraightLine(benchmark::State& state) {
  RunToEnd(state, StraightCode());
}
BENCHMARK(StraightLine);

void Mixed(benchmark::State& state) {
  RunToEnd(state, MixedProgram());
}
BENCHMARK(Mixed)->Unit(benchmark::kMillisecond);

void WriteHexFile(const std::filesystem::path& path, const Code& code) {
  std::ofstream file(path);
  for (std::size_t first = 0; first < code.size(); first += 16) {
    const std::size_t count = std::min<std::size_t>(16, code.size() - first);
    const auto address = static_cast<std::uint32_t>(kStart + first);
    char text[16];
    unsigned sum = static_cast<unsigned>(count) + base::HighByte(address) + base::LowByte(address);
    std::snprintf(text, sizeof text, ":%02zX%04X00", count, address);
    file << text;
    for (std::size_t i = first; i < first + count; ++i) {
      std::snprintf(text, sizeof text, "%02X", code[i]);
      file << text;
      sum += code[i];
    }
    std::snprintf(text, sizeof text, "%02X\n", (0u - sum) & 0xFF);
    file << text;
  }
  file << ":00000001FF\n";
}

// Processor seconds that shc08 takes from its start to the end of the commands.
double Shc08Seconds(const std::filesystem::path& folder, const char* commands) {
  std::ofstream(folder / "commands") << commands;
  return SecondsOf("cd " + folder.string() +
                   " && shc08 -P -b -q program.hex <commands >output 2>&1");
}

// Whether its last output says that it stopped at the program's end.
bool Shc08ReachedEnd(const std::filesystem::path& folder) {
  std::ifstream output(folder / "output");
  char end[32];
  std::snprintf(end, sizeof end, "Stop at 0x%06x:", kMixedEnd);
  for (std::string line; std::getline(output, line);) {
    if (line.starts_with(end)) return true;
  }
  return false;
}

void MixedInShc08(benchmark::State& state) {
  const auto folder = std::filesystem::temp_directory_path() / "brevant-cpu-bench";
  std::filesystem::create_directories(folder);
  const Code code = MixedProgram();
  WriteHexFile(folder / "program.hex", code);
  const Mcu start = Loaded(code);
  const auto instructions = static_cast<double>(CountInstructions(start));

  // The other simulator's loading is not counted.
  const std::string settle = "set error stack off\nset error stack_overflow off\nstep 1\n";
  char run[64];
  std::snprintf(run, sizeof run, "run 0x%x 0x%x\n", kStart, kMixedEnd);
  const double idle = Shc08Seconds(folder, (settle + "quit\n").c_str());
  const double theirs = Shc08Seconds(folder, (settle + run).c_str()) - idle;
  if (idle < 0 || theirs <= 0 || !Shc08ReachedEnd(folder)) {
    state.SkipWithError("shc08 (Debian package sdcc-ucsim) is missing or did not run the program");
    return;
  }
  Mcu mcu = start;
  const std::clock_t before = std::clock();
  mcu.Run(kNoLimit);
  const double ours = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  for (auto _ : state) state.SetIterationTime(theirs);
  state.SetItemsProcessed(static_cast<std::int64_t>(instructions));
  state.counters["times_faster"] = theirs / ours;
}
BENCHMARK(MixedInShc08)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brevant::simulator

BENCHMARK_MAIN();
