// SPDX-License-Identifier: MIT
// Reading a large S-record file, every check sum looked at, and next to it srec_info of the Debian
// package srecord, which reads the same file as a process of its own: bytes of text a second, by
// processor time. "times_faster" is the ratio.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "child_time.h"
#include "images/image_file.h"

namespace {

using namespace brevant;

constexpr std::uint32_t kRecords = 500'000;
constexpr std::uint32_t kDataBytes = 16;

// S3 records one behind the other: far more than a target holds, so that starting a process does
// not count.
std::string Text() {
  std::string text;
  char piece[16];
  for (std::uint32_t n = 0; n < kRecords; ++n) {
    const std::uint32_t address = n * kDataBytes;
    std::uint32_t sum = kDataBytes + 5;
    std::snprintf(piece, sizeof piece, "S3%02X%08X", sum, address);
    text += piece;
    for (int shift = 0; shift < 32; shift += 8) sum += address >> shift & 0xFF;
    for (std::uint32_t i = 0; i < kDataBytes; ++i) {
      const std::uint32_t byte = (n * 7 + i * 13) & 0xFF;
      sum += byte;
      std::snprintf(piece, sizeof piece, "%02X", byte);
      text += piece;
    }
    std::snprintf(piece, sizeof piece, "%02X\n", ~sum & 0xFF);
    text += piece;
  }
  return text + "S70500000000FA\n";
}

bool AllRight(const images::ImageFile& file) {
  std::uint32_t data = 0;
  for (const images::ImageRecord& record : file.records) {
    if (!record.checksum_right) return false;
    if (record.kind == images::ImageRecord::Kind::Data) ++data;
  }
  return data == kRecords;
}

void LargeFile(benchmark::State& state) {
  const auto path = std::filesystem::temp_directory_path() / "brevant-image-bench.s37";
  const std::string text = Text();
  std::ofstream(path) << text;
  double ours = 0;
  double theirs = 0;
  for ([[maybe_unused]] const auto round : state) {
    const std::clock_t before = std::clock();
    const images::ImageFile file = images::ReadImageFile(path);
    const double taken = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    state.SetIterationTime(taken);
    ours += taken;
    if (!AllRight(file)) state.SkipWithError("records are missing");
    const double peer = SecondsOf("srec_info " + path.string() + " >/dev/null");
    if (peer < 0) state.SkipWithError("srec_info (Debian package srecord) is missing or failed");
    theirs += peer;
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.counters["times_faster"] = theirs / ours;
  std::filesystem::remove(path);
}
BENCHMARK(LargeFile)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
