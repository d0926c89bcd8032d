// SPDX-License-Identifier: MIT
// Lines of text a second: the disassembler, and next to it a general disassembly library where it
// is installed. Both get the same bytes: every legal opcode, evenly mixed, seeded operands.
#include <benchmark/benchmark.h>
#ifdef BREVANT_HAVE_CAPSTONE
#include <capstone/capstone.h>
#endif

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "isa/disassembler.h"
#include "isa/instruction_table.h"

namespace {

using namespace brevant;

constexpr int kInstructions = 4000;

std::vector<std::uint8_t> Program() {
  std::mt19937 random(1);
  std::vector<std::uint8_t> bytes;
  for (int count = 0; count < kInstructions;) {
    const auto b0 = static_cast<std::uint8_t>(random() & 0xFF);
    const auto b1 = static_cast<std::uint8_t>(random() & 0xFF);
    const isa::Entry entry = isa::Decode(b0, b1);
    if (entry.illegal()) continue;
    ++count;
    for (int i = 0; i < entry.length(); ++i) {
      bytes.push_back(i == 0 ? b0 : i == 1 ? b1 : static_cast<std::uint8_t>(random() & 0xFF));
    }
  }
  bytes.insert(bytes.end(), 4, 0x9D);
  return bytes;
}

void Brevant(benchmark::State& state) {
  const std::vector<std::uint8_t> program = Program();
  const isa::NoSymbols symbols;
  std::int64_t lines = 0;
  for (auto _ : state) {
    for (std::size_t at = 0; at + 4 <= program.size(); ++lines) {
      const isa::Instruction instruction = isa::InstructionAt(
          static_cast<base::Address>(0x1000 + at), base::Bytes(program).subspan(at, 4));
      benchmark::DoNotOptimize(isa::Disassemble(instruction, symbols));
      at += instruction.code().size();
    }
  }
  state.SetItemsProcessed(lines);
}
BENCHMARK(Brevant);

#ifdef BREVANT_HAVE_CAPSTONE
void Capstone(benchmark::State& state) {
  const std::vector<std::uint8_t> program = Program();
  csh handle = 0;
  if (cs_open(CS_ARCH_M680X, static_cast<cs_mode>(CS_MODE_M680X_6808), &handle) != CS_ERR_OK) {
    state.SkipWithError("the library knows no HC08");
    return;
  }
  cs_insn* line = cs_malloc(handle);
  std::int64_t lines = 0;
  for (auto _ : state) {
    const std::uint8_t* code = program.data();
    std::size_t size = program.size();
    std::uint64_t address = 0x1000;
    while (size > 0 && cs_disasm_iter(handle, &code, &size, &address, line)) ++lines;
    benchmark::DoNotOptimize(line->op_str);
    if (size > 0) state.SkipWithError("the library stopped before the end");
  }
  cs_free(line, 1);
  cs_close(&handle);
  state.SetItemsProcessed(lines);
}
BENCHMARK(Capstone);
#endif

}  // namespace

BENCHMARK_MAIN();
