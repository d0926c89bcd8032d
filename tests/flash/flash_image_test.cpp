// SPDX-License-Identifier: MIT
// Flash image: what it leaves alone, what it keeps, and what it says when it does not come to its
// end.
#include "flash/flash_image.h"

#include <gtest/gtest.h>

#include "flash/flash_bench.h"
#include "flash/flash_records.h"
#include "flash/verdicts.h"

namespace brevant::flash {
namespace {

// Fills four pages and a bit, and the security code with the vectors behind it.
images::Image Program(base::Address first, std::uint8_t seed) {
  ByteList code;
  for (int i = 0; i < 540; ++i) code.push_back(static_cast<std::uint8_t>(seed + i * 7));
  images::Image image;
  image.Put(first, code);
  image.Put(0xFFF0, ByteList(16, static_cast<std::uint8_t>(first >> 8)));
  return image;
}

struct ImageBench : Bench {
  using Bench::Bench;

  FlashImageResult Flash(const images::Image& image) {
    return FlashImage(surroundings, crc).Run(image);
  }
  bool Holds(const images::Image& image) {
    return std::ranges::all_of(image.Blocks(), [&](const images::Block& block) {
      return Bench::Holds(block.address, block.bytes);
    });
  }
  bool Holds(base::Address at, std::uint8_t byte) { return Peek(at) == byte; }
};

TEST(FlashImage, TouchesOnlyWhatDiffersAndKeepsWhatElseStandsThere) {
  for (const simulator::Device* device : kDevices) {
    ImageBench bench(*device);
    const base::Address first = 0xF020, page = device->page_size;
    // Of somebody else: before and behind the code, in the page of the vectors, and the trim.
    const base::Address others[] = {0xF01F, 0xF2F0, 0xFFE2,
                                    device == &simulator::Ql() ? 0xFFC0u : 0xFFE4u};
    images::Image image = Program(first, 1);
    ASSERT_EQ(bench.Flash(image).outcome, FlashOutcome::Done);
    ASSERT_TRUE(bench.Holds(image));
    for (const base::Address at : others) bench.mcu().Poke(at, 0x3C);
    EXPECT_TRUE(bench.Passed()) << "the image has brought a code";

    FlashImageResult again = bench.Flash(image);
    EXPECT_EQ(again.outcome, FlashOutcome::Done);
    EXPECT_EQ(again.spared, image.size());
    EXPECT_EQ(again.pages_spared, again.pages);
    EXPECT_TRUE(again.erased.empty());

    image.Put(first + page, ByteList{0x99});
    image.Put(0xFFF0, ByteList{0x88});
    image.Put(first + 4 * page + 100, ByteList(40, 0x77));  // was blank
    const images::Image before = bench.FlashContent();
    again = bench.Flash(image);
    EXPECT_EQ(again.outcome, FlashOutcome::Done);
    EXPECT_TRUE(bench.Holds(image));
    for (const base::Address at : others) EXPECT_EQ(bench.Peek(at), 0x3C) << at;
    EXPECT_EQ(again.pages - again.pages_spared, 3);
    EXPECT_EQ(bench.mcu().flash_diagnostics().refused, 0u);
    EXPECT_TRUE(bench.Passed());
    images::Image expected = before;
    for (const images::Block& block : image.Blocks()) expected.Put(block.address, block.bytes);
    EXPECT_EQ(bench.FlashContent(), expected);
  }
}

// Wherever the line is cut or damaged: what is called done is done, nothing hangs, and what stood
// beside the image is still there or told.
TEST(FlashImage, NeverSilentlyLosesNorClaimsWhatIsNot) {
  using enum simulator::FaultKind;
  images::Image image;
  image.Put(0x9000, ByteList(100, 0x5A));
  for (const simulator::FaultKind kind :
       {CutLine, LoseHostByte, FlipHostByte, FlipReply, DropMonitorEcho, ExtraByte}) {
    for (std::uint64_t at = 1; at < 1500; at += kind == CutLine ? 41 : 97) {
      ImageBench bench;
      for (base::Address i = 0; i < 100; ++i) bench.mcu().Poke(0x9000 + i, 0x11);
      bench.mcu().Poke(0x9070, 0x3C);
      bench.target.SetFaultPlan({{.kind = kind, .at_host_byte = at, .bit = 3}});
      const FlashImageResult result = bench.Flash(image);
      SCOPED_TRACE(base::Format("kind %d at byte %d", static_cast<int>(kind), at));
      const bool kept = bench.Peek(0x9070) == 0x3C;
      if (result.outcome == FlashOutcome::Done) {
        EXPECT_TRUE(bench.Holds(image) && kept);
      } else if (!kept) {
        EXPECT_NE(bench.user.texts.back().find("9070: 3c"), std::string::npos)
            << bench.user.texts.back();
      }
      EXPECT_EQ(bench.user.progress_windows, 0);
      // What it could not finish it finishes the next time.
      if (at % 3 != 0) continue;
      ASSERT_TRUE(bench.Connect());
      EXPECT_EQ(bench.Flash(image).outcome, FlashOutcome::Done);
      EXPECT_TRUE(bench.Holds(image));
    }
  }
}

TEST(FlashImage, SaysWhatItDidNotDoWhenItIsCancelledOrFlashResists) {
  ImageBench cancelled;
  const images::Image image = Program(0x9000, 3);
  cancelled.user.cancels_after = 8;
  EXPECT_EQ(cancelled.Flash(image).outcome, FlashOutcome::Cancelled);
  EXPECT_NE(cancelled.user.texts.back().find("of the 556 bytes of the image that were not there"),
            std::string::npos)
      << cancelled.user.texts.back();
  EXPECT_EQ(cancelled.Flash(image).outcome, FlashOutcome::Done);

  ImageBench protected_part;
  protected_part.FillFlash(0x5A);
  protected_part.mcu().Poke(0xFF7E, 0x80);
  ASSERT_TRUE(protected_part.Connect());
  protected_part.mcu().SetVtst(false);
  images::Image above;
  above.Put(0xC000, ByteList(20, 1));
  EXPECT_EQ(protected_part.Flash(above).outcome, FlashOutcome::NotErased);
  protected_part.mcu().Poke(0xC000, 0xFF);
  images::Image one;
  one.Put(0xC000, ByteList{1});
  EXPECT_EQ(protected_part.Flash(one).outcome, FlashOutcome::VerifyFailed);
  EXPECT_NE(
      protected_part.user.texts.back().find("it is still blank: nothing was programmed there. "
                                            "The block protect register at ff7e holds 80: "
                                            "c000 to ffff are protected"),
      std::string::npos)
      << protected_part.user.texts.back();

  ImageBench locked;
  locked.security.NoteReset(link::kDefaultSecurityCode, false);
  EXPECT_EQ(locked.Flash(image).outcome, FlashOutcome::NotSeen);
}

TEST(ProgramFile, GoesOnWhereItWasBrokenOffAndSparesWhatStands) {
  Bench bench;
  ByteList bytes(200);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i);
  const auto file = ParseFlashRecords(Record(0x9000, {bytes.begin(), bytes.begin() + 100}) +
                                      Record(0x9064, {bytes.begin() + 100, bytes.end()}));
  for (base::Address i = 0; i < 64; ++i) bench.mcu().Poke(0x9000 + i, bytes[i]);
  EXPECT_TRUE(bench.EndsWell(ProgramFlashFile(bench.flash, "image", file, &bench.crc)));
  EXPECT_EQ(bench.flash.status().bytes_spared, 64);
  EXPECT_EQ(bench.flash.status().bytes_programmed, 136);
  EXPECT_TRUE(bench.Holds(0x9000, bytes));
  EXPECT_TRUE(bench.EndsWell(ProgramFlashFile(bench.flash, "image", file, &bench.crc)));
  EXPECT_EQ(ProgrammedText(bench.flash.status()),
            "programmed 0 bytes, 200 more stood there already");
}

}  // namespace
}  // namespace brevant::flash
