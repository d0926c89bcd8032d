// SPDX-License-Identifier: MIT
// A source file of 200,000 lines: opening it, finding a text in its last line, and reading a page
// of it. Aim for less than 300 ms to open and 100 ms to find.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

#include "views/source_index.h"

namespace {

using brevant::views::SourceIndex;

constexpr int kLines = 200'000;
constexpr int kPage = 60;
constexpr int kColumns = 120;

std::string LargeFile() {
  const std::string path = std::filesystem::temp_directory_path() / "brevant_source_bench.c";
  std::ofstream file(path);
  for (int n = 1; n < kLines; ++n)
    file << "  total += table[" << n << "] * 3; /* line " << n << " */\n";
  file << "  the_end();\n";
  return path;
}

void Open(benchmark::State& state) {
  const std::string path = LargeFile();
  for (auto _ : state) {
    const SourceIndex index(path);
    if (index.line_count() != kLines) state.SkipWithError("lines are missing");
  }
  std::filesystem::remove(path);
}
BENCHMARK(Open)->Unit(benchmark::kMillisecond);

void FindInLastLine(benchmark::State& state) {
  const std::string path = LargeFile();
  const SourceIndex index(path);
  for (auto _ : state) {
    if (index.Find("THE_END", 0, false) != kLines - 1) state.SkipWithError("not found");
  }
  std::filesystem::remove(path);
}
BENCHMARK(FindInLastLine)->Unit(benchmark::kMillisecond);

void ReadPage(benchmark::State& state) {
  const std::string path = LargeFile();
  const SourceIndex index(path);
  for (auto _ : state) benchmark::DoNotOptimize(index.Read(kLines - kPage, kPage, kColumns));
  std::filesystem::remove(path);
}
BENCHMARK(ReadPage)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
