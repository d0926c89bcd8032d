// SPDX-License-Identifier: MIT
// What each command leaves behind in flash, what it sends, and when it does nothing at all.
#include "flash/flash_commands.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <random>

#include "flash/flash_bench.h"
#include "images/image_writer.h"

namespace brevant::flash {
namespace {

// No rule of the flash sequence was broken.
void ExpectCleanSequences(Bench& bench) {
  const simulator::FlashDiagnostics& seen = bench.mcu().flash_diagnostics();
  EXPECT_EQ(seen.refused, 0u) << static_cast<int>(seen.last_fault);
  EXPECT_EQ(seen.outside_row, 0u);
}

TEST(MassErase, BlanksEveryByteAndLeavesABlankCode) {
  for (const simulator::Device* device : kDevices) {
    for (const bool locked : {false, true}) {
      Bench bench(*device);
      bench.FillFlash(0x5A);
      bench.mcu().Poke(0xFFC0, 0xFF);  // no trim to ask for
      ASSERT_TRUE(bench.Connect());
      if (locked) {
        bench.link.PulseReset();
        bench.monitor.SendSecurityCode(link::kDefaultSecurityCode);
        ASSERT_FALSE(bench.Passed());
        bench.security.Forget();
        bench.security.NoteReset(link::kDefaultSecurityCode, false);
      }
      ASSERT_TRUE(bench.EndsWell(MassEraseCommand(bench.flash)));
      for (const images::Block& block : bench.FlashContent().Blocks()) {
        EXPECT_EQ(block.bytes, ByteList(block.bytes.size(), 0xFF)) << block.address;
      }
      ExpectCleanSequences(bench);
      EXPECT_TRUE(bench.Passed()) << "the reset has to send the blank code";
      EXPECT_EQ(
          bench.user.TakeTexts(),
          (Texts{"Do you really want to mass erase flash EEPROM",
                 "The security code of the part is now ffffffffffffffff. It is remembered for "
                 "the next start."}));
      EXPECT_EQ(bench.security.Recent(0), link::kBlankSecurityCode);
    }
  }
}

TEST(EraseRange, ErasesExactlyTheNamedPages) {
  struct Case {
    const simulator::Device* device;
    base::Address start, end;
    base::Address first_blank, last_blank;
    FlashOutcome outcome = FlashOutcome::Done;
  };
  const std::vector<Case> cases = {
      {&simulator::Gp32(), 0x8000, 0xFFFF, 0x8000, 0xFFFF},
      {&simulator::Gp32(), 0x9001, 0x9181, 0x9000, 0x91FF},
      {&simulator::Ql(), 0xEE00, 0xFDFF, 0xEE00, 0xFDFF},
      {&simulator::Ql(), 0xFD00, 0xFFFF, 0xFD00, 0xFFFF, FlashOutcome::NotErased},
  };
  for (const Case& c : cases) {
    Bench bench(*c.device);
    bench.FillFlash(0x5A);
    ASSERT_TRUE(bench.Connect());
    ASSERT_TRUE(EraseFlashRange(bench.flash, c.start, c.end));
    bench.TickToEnd();
    EXPECT_EQ(bench.flash.status().outcome, c.outcome) << c.start;
    for (const images::Block& block : bench.FlashContent().Blocks()) {
      for (base::Address i = 0; i < block.bytes.size(); ++i) {
        const base::Address at = block.address + i;
        // The last byte of the block protect register's page, to which the routine has to write, is
        // no flash on either device: that page outlives a range erase.
        if (at <= c.device->flbpr && at > 0xFE00) continue;
        if (at == 0xFFC0) continue;  // the trim, written back
        const bool blank = at >= c.first_blank && at <= c.last_blank;
        ASSERT_EQ(block.bytes[i], blank ? 0xFF : 0x5A) << at << " erasing from " << c.start;
      }
    }
    EXPECT_TRUE(bench.Passed()) << c.start;
  }
}

TEST(Erase, SaysWhichPagesDidNotTakeIt) {
  Bench bench;
  bench.FillFlash(0x5A);
  bench.mcu().Poke(0xFF7E, 0x80);  // protects C000 and above once the high voltage is gone
  ASSERT_TRUE(bench.Connect());
  bench.mcu().SetVtst(false);
  ASSERT_TRUE(EraseFlashRange(bench.flash, 0xBF00, 0xC081));
  bench.TickToEnd();
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::NotErased);
  EXPECT_EQ(bench.flash.status().blank->used, (std::vector<base::Address>{0xC000, 0xC080}));
  EXPECT_NE(bench.user.texts.back().find("c000-c07f, from c000 on\nc080-c0ff, from c080 on"),
            std::string::npos)
      << bench.user.texts.back();
  EXPECT_EQ(bench.Peek(0xBF00), 0xFF);

  ASSERT_TRUE(MassEraseFlash(bench.flash));
  bench.TickToEnd();
  EXPECT_EQ(bench.flash.status().outcome, FlashOutcome::NotErased);
  EXPECT_TRUE(bench.flash.status().blank->cut_short);
}

TEST(Erase, WritesTheOscillatorsTrimBackIfAsked) {
  for (const bool wanted : {true, false}) {
    Bench bench(simulator::Ql());
    bench.mcu().Poke(0xFFC0, 0x7B);
    ASSERT_TRUE(bench.Connect());
    bench.user.agrees = wanted;
    ASSERT_TRUE(bench.EndsWell(MassEraseFlash(bench.flash)));
    EXPECT_EQ(bench.Peek(0xFFC0), wanted ? 0x7B : 0xFF);
    EXPECT_EQ(bench.user.texts.size(), wanted ? 2u : 1u);  // that it is back is said
  }
}

TEST(Erase, TheTrimIsKeptUnlessTheImageHoldsIt) {
  for (const bool held : {true, false}) {
    Bench bench(simulator::Ql());
    bench.mcu().Poke(0xFFC0, 0x7B);
    ASSERT_TRUE(bench.Connect());
    bench.user.agrees = false;  // nothing is asked
    images::Image image;
    image.Put(held ? 0xFFC0 : 0xFFDE, ByteList{0x55});
    ASSERT_TRUE(bench.EndsWell(ErasePages(bench.flash, {0xFFC0, 0xFFFF}, image)));
    EXPECT_EQ(bench.Peek(0xFFC0), held ? 0xFF : 0x7B);
    EXPECT_EQ(bench.user.texts.size(), 1u);
  }
}

TEST(ProgramLocations, TakesMoreBytesThanABlockHoldsAndFollowsTheSecurityCode) {
  ByteList bytes(26);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
  for (const simulator::Device* device : kDevices) {
    // 0xC0 and on: a program stopped deep in its calls, so that the monitor works where the data
    // go.
    for (const base::Address sp : {0x00FFu, 0x00C0u, 0x00EFu, 0x00F4u, 0x00FCu}) {
      Bench bench(*device);
      ASSERT_TRUE(bench.frame.SetStackPointer(sp));
      ASSERT_TRUE(bench.EndsWell(ProgramFlashLocations(bench.flash, 0xFFE0, bytes))) << sp;
      EXPECT_EQ(bench.flash.status().bytes_programmed, 26);
      EXPECT_TRUE(bench.Holds(0xFFE0, bytes)) << sp;
      ASSERT_TRUE(bench.EndsWell(ProgramFlashLocations(bench.flash, 0xFFFA, ByteList{7, 8})));
      EXPECT_EQ(bench.security.InFlash(), (link::SecurityCode{23, 24, 25, 26, 7, 8, 0xFF, 0xFF}));
      EXPECT_TRUE(bench.Passed());
      ExpectCleanSequences(bench);
    }
  }
}

TEST(ProgramIrqVector, PointsItToTheMonitorsHandler) {
  for (const simulator::Device* device : kDevices) {
    Bench bench(*device);
    ASSERT_TRUE(bench.EndsWell(ProgramIrqVector(bench.flash)));
    EXPECT_TRUE(bench.Holds(0xFFF9, {0xFF, 0xFE, 0x27, 0xFF}));
    EXPECT_TRUE(bench.Passed()) << "two bytes of the security code have changed with it";
  }
}

// Records at random places near the end of each array: single bytes, gaps, neighbours, lengths up
// to what a record can hold. No address twice, since a byte is programmed once.
images::Image RandomImage(std::mt19937& random, const simulator::Device& device,
                          std::string& text) {
  const auto below = [&](std::size_t limit) { return random() % limit; };
  images::Image image;
  for (const simulator::Range& range : device.flash) {
    base::Address at = std::max(range.first, range.last - 0x180u);
    while (at <= range.last) {
      ByteList data(std::min<std::size_t>(below(3) == 0 ? 1 : below(122) + 1, range.last - at + 1));
      for (std::size_t i = 0; i < data.size(); ++i) {
        // The protect byte would lock the part for good on a board without high voltage.
        data[i] = at + i == device.flbpr ? 0xFF : static_cast<std::uint8_t>(random());
      }
      text += Record(at, data);
      image.Put(at, data);
      at += static_cast<base::Address>(data.size() + (below(2) == 0 ? 0 : below(200)));
    }
  }
  return image;
}

TEST(ProgramFile, ProgramsRandomImagesExactly) {
  std::mt19937 random(2024);
  for (int run = 0; run < 40; ++run) {
    const simulator::Device& device = *kDevices[run % 2];
    Bench bench(device);
    images::Image expected = bench.FlashContent();
    std::string text;
    const images::Image image = RandomImage(random, device, text);
    for (const images::Block& block : image.Blocks()) expected.Put(block.address, block.bytes);
    ASSERT_TRUE(bench.ProgramText(text)) << run;
    EXPECT_EQ(bench.flash.status().bytes_programmed, image.size());
    ASSERT_EQ(bench.FlashContent(), expected) << run;
    ExpectCleanSequences(bench);
    const link::SecurityCode code = bench.CodeInFlash();
    EXPECT_TRUE(code == link::kBlankSecurityCode || code == bench.security.Recent(0))
        << "the next start needs it";
    EXPECT_TRUE(bench.Passed()) << "the code has been programmed too";
  }
}

TEST(ProgramFile, ReadsTheFileByItsOwnRules) {
  struct Case {
    std::string text;
    ByteList at_9000;
    std::size_t messages = 0;
  };
  const std::vector<Case> cases = {
      {"S1049000115A S9030000FC S10490012248", {0x11, 0xFF}},
      {"S1049000115A S9 S10490012248", {0x11, 0xFF}},
      {"S1049000115A S5030001FB S10490012248", {0x11, 0xFF}},
      {"S1049000115A s10490012248", {0x11, 0xFF}, 1},
      {"S1049000115A hello S10490012248", {0x11, 0xFF}, 1},
      {"S2050090001159 S306000090012246", {0x11, 0x22}},
      {Record(0x9000, ByteList(122, 0x5A)), ByteList(122, 0x5A)},
      {":0290000011223B\n:00000001FF", {0x11, 0x22}},
  };
  for (const Case& c : cases) {
    Bench bench;
    ASSERT_TRUE(bench.ProgramText(c.text)) << c.text;
    EXPECT_EQ(bench.user.texts.size(), c.messages) << c.text;
    EXPECT_TRUE(bench.Holds(0x9000, c.at_9000)) << c.text;
    EXPECT_EQ(bench.resets, 1) << c.text;
  }
}

std::string Words(const ByteList& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += base::Format(" w%02X", byte);
  return text;
}

TEST(FlashCommands, SendRoutineAndParametersInTheirOwnOrders) {
  struct Case {
    std::function<bool(FlashJob&)> start;
    std::vector<std::uint8_t> (*routine)(const devices::FlashGeometry&);
    std::string before, after;
  };
  const std::string point = " W00FE=00 W00FF=80";
  const std::vector<Case> cases = {
      {MassEraseFlash, MassEraseRoutine, "SP ", point + " RUN"},
      {[](auto& job) { return EraseFlashRange(job, 0x8000, 0x8081); }, EraseRangeRoutine,
       "R00C9 w80 w7F w02 ", " SP" + point + " RUN"},
      {ProgramIrqVector, ProgrammingRoutine, "RFFF9 r ",
       " SP" + point +
           " W001F=01 R00D5 wFF wFA wFF wFA w02 w02 w00 wE0 W001F=01 R00DF wFE w27 RUN"},
      {[](auto& job) {
         return ProgramFlashLocations(job, 0x9000, ByteList{0x12, 0x34});
       },
       ProgrammingRoutine, "R00DF w12 w34 ",
       " SP" + point + " W001F=01 R00D5 w90 w00 w90 w00 w02 w02 w00 wE0 RUN"},
  };
  for (const Case& c : cases) {
    Bench bench;
    bench.target.board().ClearHostLog();
    EXPECT_TRUE(c.start(bench.flash));
    EXPECT_EQ(bench.Commands(),
              c.before + "R007F" + Words(c.routine(bench.memory.device().flash)) + c.after);
  }
}

TEST(ProgramFile, SendsTheRoutineOnceAndSkipsThePointersWhereABlockContinues) {
  Bench bench;
  bench.target.board().ClearHostLog();
  ASSERT_TRUE(bench.ProgramText(Record(0x9000, ByteList(17, 0xAB)) +
                                Record(0x9011, ByteList{0xCD}) + Record(0x9020, ByteList{0xEF})));
  const std::string point = " SP W00FE=00 W00FF=80";
  const std::string run = point + " RUN R00DB";
  const std::string expected =
      "R007F" + Words(ProgrammingRoutine(bench.memory.device().flash)) + point +
      " W001F=01 W00DB=00 R00DB R00DF" + Words(ByteList(16, 0xAB)) +
      " R00D5 w90 w00 w90 w00 w10 w10 w00 wE0" + run + " R00DF wAB R00D9 w01 w01 w00 wE0" + run +
      " R00DF wCD R00D9 w01 w01 w00 wE0" + run +
      " R00DF wEF R00D5 w90 w20 w90 w20 w01 w01 w00 wE0" + run;
  EXPECT_EQ(bench.Commands().substr(0, expected.size()), expected);
}

TEST(FlashCommands, LeaveTheTargetAloneWhenRefused) {
  Bench bench;
  bench.target.board().ClearHostLog();
  const auto refuses = [&](bool started) {
    return !started && bench.flash.status().outcome == FlashOutcome::Refused;
  };
  EXPECT_TRUE(refuses(EraseFlashRange(bench.flash, 0x8000, 0x8000)));
  EXPECT_TRUE(refuses(ProgramFlashLocations(bench.flash, 0x9000, {})));
  EXPECT_TRUE(refuses(ProgramFlashLocations(bench.flash, 0x10000, ByteList{1})));
  EXPECT_TRUE(refuses(ProgramFlashFile(bench.flash, "/no/such.s19")));
  // Empty, without data, damaged, no image.
  for (const std::string& text :
       {std::string(), std::string("S0030000FC\nS9030000FC\n"),
        std::string("S104900011DA\nS1049000zz00\n"), std::string("hello world"),
        Record(0x9000, ByteList(123, 0x5A))}) {
    EXPECT_TRUE(refuses(ProgramFlashFile(bench.flash, bench.Write("damaged.s19", text)))) << text;
    bench.user.texts.pop_back();
  }
  // Outside flash, above 64 K, past the end.
  EXPECT_TRUE(refuses(EraseFlashRange(bench.flash, 0x0000, 0xFFFF)));
  EXPECT_TRUE(refuses(ProgramFlashLocations(bench.flash, 0xFDFF, ByteList{1, 2})));
  for (const char* record :
       {"S306000190000167", "S105FFFF0102F9", "S1040080017A", "S105FDFF0102FB"}) {
    EXPECT_TRUE(refuses(ProgramFlashFile(bench.flash, bench.Write("outside.s19", record))));
    EXPECT_NE(bench.user.texts.back().find("is not flash"), std::string::npos) << record;
    bench.user.texts.pop_back();
  }
  bench.user.agrees = false;
  EXPECT_TRUE(refuses(EraseFlashRange(bench.flash, 0x8000, 0xFFFF)));
  EXPECT_TRUE(refuses(MassEraseCommand(bench.flash)));
  EXPECT_EQ(bench.user.TakeTexts(),
            (Texts{"It is going to erase flash EEPROM, please confirm.",
                   "End address must be greater than start address", "No data to program",
                   "Not a correct HEX address", "Can not open file /no/such.s19",
                   "It is going to erase flash EEPROM, please confirm.",
                   "00000 is not flash, and nothing was done.\n"
                   "Flash of the MC68HC908GP32: 8000-fdff, ff7e, ffdc-ffff.",
                   "0fe00 is not flash, and nothing was done.\n"
                   "Flash of the MC68HC908GP32: 8000-fdff, ff7e, ffdc-ffff.",
                   "It is going to erase flash EEPROM, please confirm.",
                   "Do you really want to mass erase flash EEPROM"}));
  EXPECT_EQ(bench.Commands(), "");
}

}  // namespace
}  // namespace brevant::flash
