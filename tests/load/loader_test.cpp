// SPDX-License-Identifier: MIT
#include "load/loader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "load/macro_page.h"
#include "load/messages.h"
#include "load/target_bench.h"

namespace brevant::load {
namespace {

constexpr const char* kInconsistent =
    "File format is possibly inconsistant.  Please\nuse Config menu to configure the compiler";

struct LoadBench : TargetBench {
  LoadBench() {
    loader.SetSteps({.reset_source_view = [this] { steps += "source "; },
                     .load_watch_configuration =
                         [this](const std::string& path) {
                           steps += std::filesystem::path(path).filename().string() + " ";
                         },
                     .refresh_after_stop = [this] { steps += "refresh "; }});
    // No import, and so no message about a missing listing, unless a test wants one.
    debug_info.tool_chain = symbols::ToolChain::Introl;
    target.board().ClearHostLog();
  }
  LoadResult Load(const std::string& name, const std::string& text) {
    return loader.LoadImage(Write(name, text));
  }

  std::string steps;
  MacroRunner macros{memory, frame, start, settings, user, folder.path().string()};
  Loader loader{memory, frame, breakpoints, debug_info, start, macros, settings, user};
};

TEST(LoadImage, WritesEachRecordAndTakesTheEntryAddress) {
  LoadBench bench;
  bench.breakpoints.AddBreakpoint(0x8000);
  const LoadResult result =
      bench.Load("a.S19", "S0030000FC S10501001122C6 S1030000FC S3070000012033AAFA S903012000");
  EXPECT_EQ(bench.Commands(), "R00FF w11 w22 RFFFF R011F w33 wAA W00FE=01 W00FF=20 R0100 R0120");
  EXPECT_EQ(result.outcome, LoadOutcome::Loaded);
  EXPECT_EQ(result.report.bytes, 4);
  EXPECT_EQ(result.report.entry, 0x0120u);
  EXPECT_EQ(bench.frame.PC, 0x0120u);
  EXPECT_EQ(bench.start.AfterReset(), 0x0120u);
  EXPECT_EQ(bench.steps, "a.cfg refresh ");
  EXPECT_EQ(bench.user.title, (bench.folder.path() / "a.S19").string());
  EXPECT_EQ(bench.breakpoints.count(), 0);
  EXPECT_EQ(bench.loader.image_directory(), bench.folder.path().string());
  EXPECT_EQ(bench.user.TakeTexts(), Texts{});
  EXPECT_EQ(bench.user.progress_windows, 0);
}

TEST(LoadImage, ReadsHexFilesByTheToolChain) {
  LoadBench bench;
  bench.start.EntryFromImage = true;
  bench.Load("a.hex", ":020100001122CA\n:00000001FF");
  EXPECT_EQ(bench.Commands(), "R00FF w11 w22 R0100");
  EXPECT_FALSE(bench.start.EntryFromImage) << "of the image before this one";

  bench.debug_info.tool_chain = symbols::ToolChain::MotorolaAssembler;
  bench.user.agrees = false;
  bench.Load("a.hex", "S10501001122C6");
  EXPECT_EQ(bench.Commands(), "R00FF w11 w22 R0100");
}

TEST(LoadImage, SaysWhatItDidNotLoad) {
  LoadBench bench;
  const std::string missing = (bench.folder.path() / "missing.s19").string();
  EXPECT_EQ(bench.loader.LoadImage(missing).outcome, LoadOutcome::NotFound);
  EXPECT_EQ(bench.user.TakeTexts(), Texts{"File " + missing + " is not found"});
  EXPECT_EQ(bench.Load("a.elf", "S10501001122C6").outcome, LoadOutcome::WrongFormat);
  EXPECT_EQ(bench.user.TakeTexts(), Texts{"Use only S19 or HEX format"});
  const std::filesystem::path folder = bench.folder.path() / "folder.s19";
  std::filesystem::create_directory(folder);
  EXPECT_EQ(bench.loader.LoadImage(folder.string()).outcome, LoadOutcome::NotReadable);
  EXPECT_EQ(bench.user.TakeTexts(),
            Texts{"Can not open file " + folder.string() + "\nIs a directory"});
  EXPECT_EQ(bench.Commands(), "");
  EXPECT_EQ(bench.user.title, "");
  EXPECT_EQ(bench.steps, "");
  EXPECT_FALSE(bench.settings.Has("config", "TimeStamp"));
}

TEST(LoadImage, TakesAnEntryOf0000OnlyWhereTheImageHasCodeThere) {
  LoadBench bench;
  bench.Load("a.s19", "S10501001122C6 S9030000FC");
  EXPECT_FALSE(bench.start.EntryFromImage);
  bench.Load("b.s19", "S10500001122C7 S9030000FC");
  EXPECT_TRUE(bench.start.EntryFromImage);
}

TEST(LoadImage, ShowsNoEntryThatIsIgnoredWhileTheDebugInformationIsRead) {
  LoadBench bench;
  std::vector<base::Address> seen;
  bench.loader.SetSteps({.reset_source_view = [&] { seen.push_back(bench.frame.PC); },
                         .flash_is_readable = [] { return false; }});
  bench.debug_info.tool_chain = symbols::ToolChain::Sdcc;
  const base::Address before = bench.frame.PC;
  bench.Load("a.s19", "S10501001122C6 S9030000FC");
  EXPECT_EQ(seen, std::vector{before});
  EXPECT_EQ(bench.frame.PC, before) << "what cannot be read is no vector";
}

TEST(LoadImage, KnowsTheFormatByTheContentAndRefusesWhatIsDamaged) {
  LoadBench bench;
  bench.Load("a.hex", "S10501001122C6");
  EXPECT_EQ(bench.Commands(), "R00FF w11 w22 R0100");
  for (const char* text : {"", "hello world", "S10501001122C6\nS105010011",
                           "S1050100\nS10501001122C6", ":020100001122CA\n:0201zz001122CA"}) {
    EXPECT_EQ(bench.Load("b.srec", text).outcome, LoadOutcome::Damaged) << text;
    EXPECT_EQ(bench.Commands(), "") << text;
    EXPECT_EQ(bench.user.TakeTexts().size(), 1u) << text;
  }
  bench.Load("c.s19", "S10501001122C6\nS105010011");
  EXPECT_NE(bench.user.TakeTexts().at(0).find("Line 2: fewer characters than the count says"),
            std::string::npos);
}

TEST(LoadImage, TellsWhatItTookAllTheSame) {
  LoadBench bench;
  EXPECT_EQ(bench.Load("a.s19", "S10501001122C6\nS104010233FF\n\nhello").outcome,
            LoadOutcome::Loaded);
  const Texts texts = bench.user.TakeTexts();
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_NE(texts[0].find("wrong checksum, the first in line 2"), std::string::npos);
  EXPECT_NE(texts[1].find("Line 4"), std::string::npos);
  EXPECT_EQ(bench.memory.AskByte(0x0102), 0x33);
  bench.Load("b.hex", ":020000040001F9 :0101000011ED :00000001FF");
  EXPECT_EQ(bench.user.TakeTexts().size(), 1u) << "beyond 64 K";
}

TEST(LoadImage, ImportsTheCompanionOrOffersTheOneThatFits) {
  const std::filesystem::path programs = std::filesystem::path(BREVANT_TEST_DATA) / "programs";
  for (const bool agrees : {false, true}) {
    LoadBench bench;
    bench.user.agrees = agrees;
    bench.debug_info.tool_chain = symbols::ToolChain::FreeAssembler;
    for (const char* name : {"arithmetic.s19", "arithmetic.cdb", "arithmetic.map"}) {
      std::filesystem::copy(programs / name, bench.folder.path() / name);
    }
    bench.loader.LoadImage((bench.folder.path() / "arithmetic.s19").string());
    const Texts texts = bench.user.TakeTexts();
    ASSERT_EQ(texts.size(), agrees ? 2u : 3u);
    EXPECT_NE(texts[0].find("flash has to be programmed"), std::string::npos);
    EXPECT_NE(texts[1].find("SDCC"), std::string::npos) << "asks first";
    EXPECT_EQ(texts.back() == kInconsistent, !agrees);
    EXPECT_EQ(bench.debug_info.DebugInfoLoaded, agrees);
    EXPECT_EQ(bench.settings.Integer(base::keys::kCompiler), agrees ? 32 : 1);
    EXPECT_EQ(bench.steps, agrees ? "source arithmetic.cfg refresh " : "arithmetic.cfg refresh ");
    if (!agrees) continue;
    bench.loader.LoadImage((bench.folder.path() / "arithmetic.s19").string());
    EXPECT_EQ(bench.user.TakeTexts().size(), 1u) << "still not in flash";
    EXPECT_TRUE(bench.debug_info.SymbolTable.FindSymbolAddress("_main"));
  }
}

TEST(LoadImage, WritesTheResetVectorOfACmdFile) {
  LoadBench bench;
  bench.debug_info.tool_chain = symbols::ToolChain::Imagecraft;
  bench.Write("a.cmd", "FILE a.c\nDEF _main 8012\nREG PC 8012\n");
  bench.Load("a.s19", "S1030100FB");
  EXPECT_EQ(bench.Commands(), "R00FF RFFFD w80 w12");
  EXPECT_EQ(bench.steps, "source a.cfg refresh ");
}

// The monitor cannot write flash: what the image has for it is compared, in full, and what differs
// is looked at twice.
TEST(LoadImage, ComparesWhatLiesInFlash) {
  LoadBench bench;
  const std::string image = "S105FDFE1122CC S1060100556677C6";
  EXPECT_EQ(bench.Load("a.s19", image).outcome, LoadOutcome::Differs);
  EXPECT_EQ(bench.Commands(), "R00FF w55 w66 w77 R0100 RFDFD r RFDFD r");
  EXPECT_NE(bench.user.TakeTexts().at(0).find("fdfe holds ff and not the image's 11: 2 of 2 bytes"),
            std::string::npos);
  bench.target.board().Load(0xFDFE, ByteList{0x11, 0x22});
  const LoadResult result = bench.Load("a.s19", image);
  EXPECT_EQ(result.outcome, LoadOutcome::Loaded);
  EXPECT_EQ(result.compared, 2);
  EXPECT_EQ(bench.memory.AskByte(0x0102), 0x77);
  const auto texts = bench.user.TakeTexts();
  ASSERT_EQ(texts.size(), 1u) << "of its content there is something to say";
  EXPECT_NE(texts[0].find("There is no reset vector"), std::string::npos);

  bench.loader.SetSteps({.flash_is_readable = [] { return false; }});
  EXPECT_EQ(bench.Load("a.s19", image).outcome, LoadOutcome::Differs);
  EXPECT_NE(bench.user.TakeTexts().at(0).find("could not be looked at"), std::string::npos);
}

TEST(LoadImage, CanBeCancelledBetweenRecords) {
  LoadBench bench;
  bench.user.cancels_after = 1;
  bench.debug_info.DebugInfoLoaded = true;
  const LoadResult result = bench.Load("a.s19", "S104010011E9 S104010122D7 S104010233C5");
  EXPECT_EQ(result.outcome, LoadOutcome::Cancelled);
  EXPECT_EQ(bench.Commands(), "R00FF w11");
  EXPECT_FALSE(bench.debug_info.DebugInfoLoaded);
  EXPECT_EQ(bench.steps, "refresh ");
}

// Whatever one byte on the line comes to: "loaded" is said of what the board holds.
TEST(LoadImage, ClaimsNothingThatTheBoardDoesNotBearOut) {
  using enum simulator::FaultKind;
  const std::vector<ByteList> blocks{{0x11, 0x22, 0x33, 0x44}, {0x55, 0x66}};
  for (const simulator::FaultKind kind : {LoseHostByte, DropLocalEcho, DropMonitorEcho, FlipEcho,
                                          FlipHostByte, ExtraByte, LoseReply, FlipReply}) {
    for (std::uint64_t at = 0; at < 36; ++at) {
      LoadBench bench;
      bench.target.board().Load(0xFDFE, blocks[1]);
      bench.target.SetFaultPlan({{.kind = kind, .at_host_byte = at, .bit = 3}});
      const LoadResult result = bench.Load("a.s19", "S1070100112233444D S105FDFE556644");
      if (result.outcome != LoadOutcome::Loaded) continue;
      for (base::Address i = 0; i < 4; ++i) {
        EXPECT_EQ(bench.Peek(0x0100 + i), blocks[0][i]) << static_cast<int>(kind) << " at " << at;
      }
    }
  }
}

TEST(LoadImage, SaysThatTheTargetDidNotAnswer) {
  LoadBench bench;
  bench.target.SetFaultPlan({{.kind = simulator::FaultKind::CutLine, .at_host_byte = 4}});
  EXPECT_EQ(bench.Load("a.s19", "S10501001122C6").outcome, LoadOutcome::LinkLost);
  ASSERT_EQ(bench.user.texts.size(), 1u);
  EXPECT_NE(bench.user.texts[0].find("ReStart"), std::string::npos);
}

TEST(LoadImage, RunsTheMacroFirst) {
  LoadBench bench;
  bench.settings.Store(base::keys::kMacroFlags, long{kMacroBeforeLoad});
  bench.settings.Store(base::keys::kLoadMacroFile, bench.Write("before.mac", "DMM.B 120 77"));
  bench.Load("a.s19", "S104010011E9");
  EXPECT_EQ(bench.Commands(), "W0120=77 R00FF w11 R0100");
  // Also before the extension is looked at; and a failing macro stops nothing.
  bench.Load("a.elf", "");
  EXPECT_EQ(bench.Commands(), "W0120=77");
  std::filesystem::remove(bench.folder.path() / "before.mac");
  bench.user.TakeTexts();
  bench.Load("a.s19", "S104010011E9");
  EXPECT_EQ(bench.Commands(), "R00FF w11 R0100");
  EXPECT_EQ(bench.user.TakeTexts(), Texts{messages::kMacroNotFound.text});
}

TEST(ImageIsNewer, ComparesTheStampAsText) {
  LoadBench bench;
  const std::string path = bench.Write("a.s19", "S104010011E9");
  const auto set_time = [&](long seconds) {
    const std::chrono::sys_seconds time{std::chrono::seconds(seconds)};
    std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(time));
  };
  EXPECT_TRUE(bench.loader.ImageIsNewer(path)) << "never loaded";
  set_time(1'700'000'000);
  bench.loader.LoadImage(path);
  EXPECT_EQ(bench.settings.String(base::keys::kTimeStamp), "1700000000");
  EXPECT_FALSE(bench.loader.ImageIsNewer(path));
  set_time(1'700'000'001);
  EXPECT_TRUE(bench.loader.ImageIsNewer(path));
  bench.settings.Store(base::keys::kTimeStamp, "9");
  EXPECT_FALSE(bench.loader.ImageIsNewer(path)) << "textual, so 17... sorts before 9";
  bench.settings.Store(base::keys::kTimeStamp, "");
  EXPECT_FALSE(bench.loader.ImageIsNewer(path));
  EXPECT_FALSE(bench.loader.ImageIsNewer("/no/such.s19"));
  EXPECT_FALSE(bench.loader.ImageIsNewer(""));
}

}  // namespace
}  // namespace brevant::load
