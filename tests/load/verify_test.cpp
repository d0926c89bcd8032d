// SPDX-License-Identifier: MIT
#include "load/verify.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <sstream>

#include "base/files.h"
#include "images/image_file.h"
#include "load/read_out.h"
#include "load/target_bench.h"

namespace brevant::load {
namespace {

constexpr auto GoOn = [](long, long) { return true; };

struct FilledBench : TargetBench {
  FilledBench() {
    bytes.resize(301);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    target.board().Load(0x9000, bytes);
    image.Put(0x9000, bytes);
    image.Put(0xFFFF, ByteList{0xFF});
  }
  ByteList bytes;
  images::Image image;
};

TEST(Verify, ComparesEveryByteOfTheImage) {
  FilledBench bench;
  long shown = 0;
  const VerifyResult equal = Verify(bench.memory, bench.image, [&](long done, long total) {
    EXPECT_GT(done, shown);
    EXPECT_EQ(total, 302);
    shown = done;
    return true;
  });
  EXPECT_EQ(equal.outcome, VerifyOutcome::Equal);
  EXPECT_EQ(equal.compared, 302);
  EXPECT_EQ(shown, 302);

  bench.mcu().Poke(0x9100, 0x77);
  bench.mcu().Poke(0x912C, 0x78);
  const VerifyResult different = Verify(bench.memory, bench.image, GoOn);
  EXPECT_EQ(different.outcome, VerifyOutcome::Different);
  EXPECT_EQ(different.different, 2);
  ASSERT_TRUE(different.first);
  EXPECT_EQ(different.first->address, 0x9100u);
  EXPECT_EQ(different.first->expected, 0x00);
  EXPECT_EQ(different.first->found, 0x77);
}

TEST(Verify, IsNotEqualWhenItCouldNotLook) {
  FilledBench bench;
  EXPECT_EQ(Verify(bench.memory, bench.image, [](long, long) { return false; }).outcome,
            VerifyOutcome::Cancelled);
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 100}});
  const VerifyResult lost = Verify(bench.memory, bench.image, GoOn);
  EXPECT_EQ(lost.outcome, VerifyOutcome::LinkLost);
  EXPECT_LT(lost.compared, 302);
  EXPECT_EQ(lost.different, 0);
}

TEST(ReadOut, SavesWhatReadsBackTheSame) {
  FilledBench bench;
  for (const char* name : {"a.s19", "a.SX", "a.hex"}) {
    const std::string path = (bench.folder.path() / name).string();
    const ReadOutResult result = ReadOut(bench.memory, bench.crc, 0x9000, 0x912C, path, GoOn);
    EXPECT_EQ(result.outcome, ReadOutOutcome::Saved) << name;
    EXPECT_EQ(result.bytes, 301);
    const auto blocks = images::ReadImageFile(path).ToImage().Blocks();
    ASSERT_EQ(blocks.size(), 1u) << name;
    EXPECT_EQ(blocks[0], (images::Block{0x9000, bench.bytes})) << name;
  }
  const std::filesystem::path path = bench.folder.path() / "a.bin";
  EXPECT_EQ(ReadOut(bench.memory, bench.crc, 0xFFFF, 0xFFFF, path.string(), GoOn).bytes, 1);
  EXPECT_EQ(std::filesystem::file_size(path), 1u);
}

// What the line turns on its way to the host shows in no echo.
TEST(ReadOut, SavesNothingThatTheTargetDoesNotHold) {
  FilledBench bench;
  const std::string path = (bench.folder.path() / "a.bin").string();
  for (int at = 0; at < 200; at += 3) {
    bench.target.SetFaultPlan({{.kind = simulator::FaultKind::FlipReply,
                                .at_host_byte = static_cast<std::uint64_t>(at),
                                .bit = static_cast<std::uint8_t>(at % 8)}});
    const bool flash = at % 2 == 0;
    const base::Address first = flash ? 0x9000 : 0x0150, last = flash ? 0x912C : 0x0170;
    const ReadOutResult result = ReadOut(bench.memory, bench.crc, first, last, path, GoOn);
    ASSERT_EQ(result.outcome, ReadOutOutcome::Saved) << at;
    const std::string saved = base::ReadFile(path).text;
    for (base::Address i = first; i <= last; ++i) {
      ASSERT_EQ(static_cast<std::uint8_t>(saved[i - first]), bench.Peek(i)) << at;
    }
  }
}

TEST(Verify, ReadsOnlyWhatTheTargetsCrcDoesNotProveEqual) {
  FilledBench bench;
  bench.target.board().Load(0xA000, ByteList(5000, 0x12));
  bench.image.Put(0xA000, ByteList(5000, 0x12));
  bench.TakeSent();
  EXPECT_EQ(Verify(bench.memory, bench.image, GoOn, &bench.crc).compared, 5302);
  EXPECT_LT(bench.TakeSent().size(), 800u);
  bench.mcu().Poke(0xA480, 0x13);
  const VerifyResult different = Verify(bench.memory, bench.image, GoOn, &bench.crc);
  EXPECT_EQ(different.compared, 5302);
  EXPECT_EQ(different.different, 1);
  EXPECT_EQ(different.first->address, 0xA480u);
  EXPECT_LT(bench.TakeSent().size(), 3400u);
}

TEST(ReadOut, LeavesTheOldFileUnlessAllWasRead) {
  FilledBench bench;
  const std::string path = bench.Write("old.s19", "old");
  const auto outcome = [&](base::Address first, base::Address last, const std::string& name,
                           Progress progress) {
    return ReadOut(bench.memory, bench.crc, first, last, name, progress).outcome;
  };
  EXPECT_EQ(outcome(0x9001, 0x9000, path, GoOn), ReadOutOutcome::BadRange);
  EXPECT_EQ(outcome(0x9000, 0x10000, path, GoOn), ReadOutOutcome::BadRange);
  EXPECT_EQ(outcome(0x9000, 0x9001, path + ".txt", GoOn), ReadOutOutcome::UnknownFormat);
  EXPECT_EQ(outcome(0x9000, 0x9001, "/no/such/a.s19", GoOn), ReadOutOutcome::NotWritten);
  EXPECT_EQ(outcome(0x9000, 0x91FF, path, [](long, long) { return false; }),
            ReadOutOutcome::Cancelled);
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 100}});
  EXPECT_EQ(outcome(0x9000, 0x91FF, path, GoOn), ReadOutOutcome::LinkLost);
  std::ifstream file(path);
  std::stringstream content;
  content << file.rdbuf();
  EXPECT_EQ(content.str(), "old");
  EXPECT_FALSE(std::filesystem::exists(path + ".txt"));
}

}  // namespace
}  // namespace brevant::load
