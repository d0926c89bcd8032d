// SPDX-License-Identifier: MIT
#include "flash/file_programmer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/text_format.h"
#include "flash/flash_bench.h"
#include "images/image_writer.h"

namespace brevant::flash {
namespace {

std::string Record(base::Address address, const ByteList& data) {
  std::string text = base::Format("S1%02X%04X", data.size() + 3, address);
  for (const std::uint8_t byte : data) text += base::Format("%02X", byte);
  return text + "00\n";
}

// Records at random places of the array: single bytes, gaps, neighbours, lengths up to what a
// record can hold. No address twice, since a byte is programmed once.
struct RandomFile {
  RandomFile(std::mt19937& random, const simulator::Device& device) {
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (const simulator::Range& range : device.flash) {
      base::Address at = range.first;
      // Most of the array stays blank, so that the run is short.
      const base::Address reach = range.last - range.first > 0x400
                                      ? range.first + static_cast<base::Address>(below(0x7000))
                                      : range.first;
      at = std::min(reach, range.last - std::min(range.last - range.first, 0x180u));
      while (at <= range.last) {
        ByteList data(
            std::min<std::size_t>(below(3) == 0 ? 1 : below(122) + 1, range.last - at + 1));
        for (std::uint8_t& byte : data) byte = static_cast<std::uint8_t>(random());
        // The protect byte would lock the part for good on a board without high voltage.
        for (std::size_t i = 0; i < data.size(); ++i) {
          if (at + i == device.flbpr) data[i] = 0xFF;
        }
        text += Record(at, data);
        image.Put(at, data);
        at += static_cast<base::Address>(data.size() + (below(2) == 0 ? 0 : below(200)));
      }
    }
  }
  std::string text;
  images::Image image;
};

TEST(FileProgrammer, ProgramsRandomImagesExactly) {
  std::mt19937 random(2024);
  for (int run = 0; run < 200; ++run) {
    const simulator::Device& device = run % 2 ? simulator::Ql() : simulator::Gp32();
    Bench bench(device);
    images::Image expected = bench.FlashContent();
    const RandomFile file(random, device);
    for (const images::Block& block : file.image.Blocks()) expected.Put(block.address, block.bytes);
    ASSERT_TRUE(bench.ProgramText(file.text));
    ASSERT_EQ(bench.programmer.status().outcome, FlashOutcome::Done) << run;
    EXPECT_EQ(bench.programmer.status().bytes_programmed, file.image.size());
    ASSERT_EQ(bench.FlashContent(), expected) << run;
    EXPECT_EQ(bench.mcu().flash_diagnostics().refused, 0u) << run;
    EXPECT_EQ(bench.user.TakeTexts(), Texts{});
    EXPECT_EQ(bench.resets, 1);
    EXPECT_TRUE(bench.Passed()) << "the code has been programmed too";
  }
}

TEST(FileProgrammer, TakesRecordsOfEveryLength) {
  for (std::size_t length = 1; length <= 128; ++length) {
    Bench bench;
    const ByteList data(length, 0x5A);
    ASSERT_TRUE(bench.ProgramText(Record(0x9000, data)));
    // Longer records have more characters than a record may have.
    const bool fits = length <= 122;
    EXPECT_EQ(bench.programmer.status().bytes_programmed, fits ? static_cast<long>(length) : 0);
    EXPECT_EQ(bench.Peek(0x9000 + static_cast<base::Address>(length) - 1), fits ? 0x5A : 0xFF);
    EXPECT_EQ(bench.programmer.report().skipped, fits ? 0 : 1);
    EXPECT_EQ(bench.user.texts.size(), fits ? 0u : 1u);
  }
}

TEST(FileProgrammer, SkipsThePointersWhereABlockContinues) {
  Bench bench;
  bench.target.board().ClearHostLog();
  ASSERT_TRUE(bench.ProgramText(Record(0x9000, ByteList(17, 0xAB)) +
                                Record(0x9011, ByteList(1, 0xCD)) +
                                Record(0x9020, ByteList(1, 0xEF))));
  std::string sent = bench.Commands();
  sent = sent.substr(sent.find("W00DB=00"));
  std::string ab;
  for (int i = 0; i < 16; ++i) ab += " wAB";
  const std::string start = " SP W00FE=00 W00FF=80 RUN R00DB";
  EXPECT_TRUE(sent.starts_with(
      "W00DB=00 R00DB R00DF" + ab + " R00D5 w90 w00 w90 w00 w10 w10 w00 wE0" + start +
      " R00DF wAB R00D9 w01 w01 w00 wE0" + start + " R00DF wCD R00D9 w01 w01 w00 wE0" + start +
      " R00DF wEF R00D5 w90 w20 w90 w20 w01 w01 w00 wE0" + start))
      << sent;
}

TEST(FileProgrammer, ReadsTheFileByItsOwnRules) {
  struct Case {
    std::string what, text;
    ByteList at_9000;
    long skipped;
  };
  const std::vector<Case> cases = {
      {"nothing but header and end", "S0030000FC\nS9030000FC\n", {0xFF, 0xFF}, 0},
      {"empty", "", {0xFF, 0xFF}, 0},
      {"S9 ends the file", "S104900011EA S9030000FC S104900122EA", {0x11, 0xFF}, 0},
      {"S5 ends the file", "S104900011EA S5030001FB S104900122EA", {0x11, 0xFF}, 0},
      {"a broken S9 ends it too", "S104900011EA S9 S104900122EA", {0x11, 0xFF}, 0},
      {"lower-case marks end it", "S104900011EA s104900122EA", {0x11, 0xFF}, 0},
      {"another word ends it", "S104900011EA hello S104900122EA", {0x11, 0xFF}, 0},
      {"malformed records are skipped", "S1049000\nS1049000zz00\nS104900122EA", {0xFF, 0x22}, 2},
      {"S2 and S3", "S20501900011EA S3060000900122EA", {0x11, 0x22}, 0},
  };
  for (const Case& c : cases) {
    Bench bench;
    ASSERT_TRUE(bench.ProgramText(c.text)) << c.what;
    EXPECT_EQ(bench.programmer.status().outcome, FlashOutcome::Done) << c.what;
    EXPECT_EQ(bench.programmer.report().skipped, c.skipped) << c.what;
    EXPECT_EQ(bench.user.texts.size(), c.skipped > 0 ? 1u : 0u) << c.what;
    for (base::Address i = 0; i < 2; ++i) EXPECT_EQ(bench.Peek(0x9000 + i), c.at_9000[i]) << c.what;
    EXPECT_EQ(bench.resets, 1) << c.what;
  }
}

TEST(FileProgrammer, StopsAtALocationThatIsNotBlank) {
  Bench bench;
  bench.mcu().Poke(0x9018, 0x00);
  bench.debug_info.DebugInfoLoaded = true;
  ASSERT_TRUE(bench.ProgramText(Record(0x9000, ByteList(48, 0xA5))));
  EXPECT_EQ(bench.programmer.status().outcome, FlashOutcome::VerifyFailed);
  EXPECT_EQ(bench.programmer.status().bytes_programmed, 16);
  EXPECT_EQ(bench.user.TakeTexts(),
            Texts{"Flash EEPROM not blank or an error found in programming"});
  EXPECT_EQ(bench.Peek(0x9020), 0xFF) << "nothing is programmed behind it";
  EXPECT_EQ(bench.resets, 1);
  EXPECT_EQ(bench.user.progress_windows, 0);
  EXPECT_FALSE(bench.debug_info.DebugInfoLoaded);
}

TEST(FileProgrammer, TakesFiveRecordsATick) {
  Bench bench;
  std::string text;
  for (base::Address i = 0; i < 12; ++i) text += Record(0x9000 + i, ByteList{0x5A});
  ASSERT_TRUE(bench.programmer.ProgramFlashFile(bench.Write("image.sx", text)));
  EXPECT_EQ(bench.settings.String(base::keys::kProgramFile),
            (bench.folder.path() / "image.sx").string());
  for (const long expected : {5, 10, 12}) {
    bench.Tick();
    EXPECT_EQ(bench.programmer.status().bytes_programmed, expected);
  }
  EXPECT_EQ(bench.user.progress_text, "Programming flash EEPROM\nlocation from 900b to 900c");
  EXPECT_FALSE(bench.programmer.running());
}

TEST(FileProgrammer, CancelKeepsWhatIsProgrammed) {
  Bench bench;
  bench.user.cancels_after = 3;
  ASSERT_TRUE(bench.ProgramText(Record(0x9000, ByteList(100, 0xA5))));
  EXPECT_EQ(bench.programmer.status().outcome, FlashOutcome::Cancelled);
  EXPECT_EQ(bench.resets, 1);
  EXPECT_EQ(bench.activity.RunMode(), control::Mode::Idle);
  EXPECT_EQ(bench.Peek(0x9000), 0xA5);
  EXPECT_EQ(
      bench.Peek(0x9000 + static_cast<base::Address>(bench.programmer.status().bytes_programmed)),
      0xFF);
}

TEST(FileProgrammer, AResetFromOutsideEndsIt) {
  Bench bench;
  std::string text;
  for (base::Address i = 0; i < 12; ++i) text += Record(0x9000 + i, ByteList{0x5A});
  ASSERT_TRUE(bench.programmer.ProgramFlashFile(bench.Write("image.s19", text)));
  bench.Tick();
  bench.ResetTarget();
  EXPECT_EQ(bench.programmer.status().outcome, FlashOutcome::Cancelled);
  EXPECT_EQ(bench.user.progress_windows, 0);
  bench.Tick();
  EXPECT_EQ(bench.Peek(0x9005), 0xFF);
}

TEST(FileProgrammer, RefusesAFileItCannotOpen) {
  Bench bench;
  for (const std::string& path : {bench.folder.path().string(), std::string("/no/such.s19")}) {
    EXPECT_FALSE(bench.programmer.ProgramFlashFile(path));
    EXPECT_EQ(bench.user.TakeTexts(), Texts{"Can not open file " + path});
    EXPECT_EQ(bench.programmer.status().outcome, FlashOutcome::Refused);
  }
}

TEST(FileProgrammer, SaysAtOnceHowFarItCameWhenTheLinkIsLost) {
  Bench bench;
  const std::string path = bench.Write("image.s19", Record(0x9000, ByteList(100, 0xA5)));
  ASSERT_TRUE(bench.programmer.ProgramFlashFile(path));
  // In the third block.
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 160}});
  bench.Tick();
  EXPECT_EQ(bench.programmer.status().outcome, FlashOutcome::LinkLost);
  ASSERT_EQ(bench.user.texts.size(), 1u);
  EXPECT_NE(bench.user.texts[0].find("32 of 100 bytes are programmed and verified. The bytes from "
                                     "9020 on are in doubt."),
            std::string::npos)
      << bench.user.texts[0];
  EXPECT_EQ(bench.activity.RunMode(), control::Mode::Idle);
  bench.Tick();
  EXPECT_EQ(bench.user.texts.size(), 1u);
}

TEST(FileProgrammer, DoesNotBeginWithoutAnAnswer) {
  Bench bench;
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 5}});
  EXPECT_FALSE(bench.programmer.ProgramFlashFile(bench.Write("image.s19", "S104900011EA")));
  EXPECT_EQ(bench.user.TakeTexts(), Texts{"Error in programming flash. Check the reset switch"});
  EXPECT_EQ(bench.activity.RunMode(), control::Mode::Idle);
  EXPECT_EQ(bench.user.progress_windows, 0);
}

// Whatever goes wrong on the wire, at whatever moment: what is called done is done, and afterwards
// the user can connect, erase and program the same file.
TEST(FileProgrammer, CanStartAfreshAfterEveryKindOfFault) {
  using simulator::FaultKind;
  std::mt19937 random(7);
  const std::string text = Record(0x9000, ByteList(24, 0xA5)) + Record(0xFFF0, ByteList(16, 0x3C));
  const auto programmed = [](Bench& bench) {
    return bench.Peek(0x9000) == 0xA5 && bench.Peek(0x9017) == 0xA5 && bench.Peek(0xFFF0) == 0x3C &&
           bench.Peek(0xFFFF) == 0x3C;
  };
  for (const FaultKind kind : kAllFaults) {
    for (int sample = 0; sample < 12; ++sample) {
      Bench bench;
      const std::uint64_t at = random() % 420;
      SCOPED_TRACE(base::Format("kind %d at byte %d", static_cast<int>(kind), at));
      bench.target.SetFaultPlan({{kind, at, static_cast<std::uint8_t>(random() % 8), 0x55}});
      bench.ProgramText(text);
      EXPECT_FALSE(bench.programmer.running());
      EXPECT_EQ(bench.user.progress_windows, 0);
      // The link compares the echoes of a command's last byte only, so it cannot see every flip.
      const bool flip = kind == FaultKind::FlipHostByte;
      if (bench.programmer.status().outcome == FlashOutcome::Done && !flip) {
        EXPECT_TRUE(programmed(bench));
      }

      ASSERT_TRUE(bench.Connect());
      ASSERT_TRUE(bench.flash.MassEraseFlash());
      bench.TickToEnd();
      ASSERT_EQ(bench.flash.status().outcome, FlashOutcome::Done);
      ASSERT_TRUE(bench.ProgramText(text));
      ASSERT_EQ(bench.programmer.status().outcome, FlashOutcome::Done);
      EXPECT_TRUE(programmed(bench));
      EXPECT_TRUE(bench.Passed());
    }
  }
}

}  // namespace
}  // namespace brevant::flash
