// SPDX-License-Identifier: MIT
// Importing from files beside an image, whole and damaged.
#include "symbols/importers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <random>

#include "base/files.h"
#include "base/temporary_folder.h"
#include "base/text_format.h"
#include "symbols/columns.h"
#include "symbols/messages.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

const char* const kCdb =
    "M:main\nS:G$counter$0_0$0({2}SI:U),F,0,0\nL:C$main.c$3$1_0$1:8000\nL:G$main$0$0:8000\n"
    "L:C$main.c$4$1_0$1:8003\nL:XG$main$0$0:8005\nL:G$counter$0_0$0:80\n";

struct Case {
  ToolChain tool_chain;
  int image_format;
  std::vector<std::pair<const char*, std::string>> files;  // extension, content; companion first
  std::size_t symbols;
  std::size_t lines;
};

std::vector<Case> Cases() {
  return {
      {ToolChain::FreeAssembler, 0, {{"lst", FreeListing()}}, 4, 3},
      {ToolChain::MotorolaAssembler, 0, {{"lst", MotorolaListing()}}, 3, 3},
      {ToolChain::McuezAssembler, 0, {{"lst", McuezListing()}, {"prm", McuezParameters()}}, 4, 3},
      {ToolChain::Imagecraft, 0, {{"cmd", ImagecraftCmd()}}, 1, 4},
      {ToolChain::Imagecraft, 1, {{"map", ImagecraftMap()}, {"src", "main.c\n"}}, 2, 3},
      {ToolChain::Sdcc, 0, {{"cdb", kCdb}}, 2, 2},
  };
}

class Importing : public ::testing::Test {
 protected:
  void Write(const std::string& extension, const std::string& text) {
    std::ofstream(folder_.path() / ("prog." + extension), std::ios::binary) << text;
  }
  void Remove(const std::string& extension) {
    std::filesystem::remove(folder_.path() / ("prog." + extension));
  }
  void WriteAll(const Case& c) {
    for (const auto& [extension, text] : c.files) Write(extension, text);
  }
  void RemoveAll(const Case& c) {
    for (const auto& [extension, text] : c.files) Remove(extension);
  }
  ImportResult Import(const Case& c) {
    info_.tool_chain = c.tool_chain;
    return ImportCompanion({Image(), folder_.path(), c.image_format,
                            [this](std::uint16_t value) { reset_vectors_.push_back(value); }},
                           info_);
  }
  std::string Image() const { return folder_.path() / "prog.s19"; }
  void FillTables() {
    info_.SymbolTable.Assign({{"old", 1, 0, ""}});
    info_.LineTable.Assign({{1, 1, 0}}, {"old.c"});
    info_.DebugInfoLoaded = true;
  }

  base::TemporaryFolder folder_;
  DebugInfo info_;
  std::vector<std::uint16_t> reset_vectors_;
};

TEST_F(Importing, EachToolChainFillsTheTablesFromItsCompanion) {
  for (const Case& c : Cases()) {
    SCOPED_TRACE(FindToolChain(c.tool_chain)->short_name);
    FillTables();
    WriteAll(c);
    const ImportResult result = Import(c);
    EXPECT_TRUE(result.loaded) << result.detail;
    EXPECT_TRUE(info_.DebugInfoLoaded);
    EXPECT_FALSE(result.message);
    EXPECT_EQ(info_.SymbolTable.symbols().size(), c.symbols);
    EXPECT_EQ(info_.LineTable.entries().size(), c.lines);
    EXPECT_FALSE(info_.SymbolTable.FindSymbolAddress("old"));
    RemoveAll(c);
  }
  EXPECT_EQ(reset_vectors_, std::vector<std::uint16_t>{0x8000});
}

TEST_F(Importing, MissingOrForeignListingOfTheTwoAssemblersIsReported) {
  for (const Case& c : Cases()) {
    SCOPED_TRACE(FindToolChain(c.tool_chain)->short_name);
    const bool has_marker =
        c.tool_chain == ToolChain::FreeAssembler || c.tool_chain == ToolChain::MotorolaAssembler;
    for (const bool is_there : {false, true}) {
      if (is_there) Write(c.files[0].first, "one line\nand another\n");
      FillTables();
      const ImportResult result = Import(c);
      EXPECT_FALSE(result.loaded);
      EXPECT_FALSE(info_.DebugInfoLoaded);
      EXPECT_TRUE(info_.LineTable.empty());
      EXPECT_EQ(result.message.has_value(), has_marker);
      if (result.message) {
        EXPECT_EQ(result.message->text, kInconsistentFormat.text);
        EXPECT_EQ(result.message->caption, "Error Message");
      }
      EXPECT_NE(result.detail.find("prog."), std::string::npos) << result.detail;
    }
    RemoveAll(c);
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "info.src"));
}

TEST_F(Importing, ToolChainsWithoutCompanionChangeNothing) {
  FillTables();
  for (const Case& c :
       {Case{ToolChain::Introl, 0, {}, 0, 0}, Case{ToolChain::Imagecraft, 7, {}, 0, 0},
        Case{static_cast<ToolChain>(99), 0, {}, 0, 0}}) {
    EXPECT_TRUE(Import(c).loaded);
    EXPECT_TRUE(info_.SymbolTable.FindSymbolAddress("old"));
  }
  info_.DebugInfoLoaded = false;
  EXPECT_FALSE(Import({ToolChain::Introl, 0, {}, 0, 0}).loaded);
}

TEST_F(Importing, ListingLeavesItsIntermediateFilesBesideTheImage) {
  const Case c = Cases()[0];
  WriteAll(c);
  ASSERT_TRUE(Import(c).loaded);
  EXPECT_EQ(info_.LineTable.files(), std::vector<std::string>{"info.src"});
  const ParsedProgram again = ReadInfoFiles(folder_.path());
  EXPECT_EQ(again.symbols.size(), c.symbols);
  EXPECT_EQ(base::ReadFile(folder_.path() / "info.add").text,
            "8000\t0005\n8002\t0006\n8003\t0007\n");
  EXPECT_FALSE(ReadInfoFiles(folder_.path() / "nowhere").problem.empty());
}

TEST_F(Importing, ListingWhoseFilesCannotBeWrittenIsNotLoaded) {
  const Case c = Cases()[0];
  WriteAll(c);
  std::filesystem::create_directory(folder_.path() / "info.sym");
  const ImportResult result = Import(c);
  EXPECT_FALSE(result.loaded);
  EXPECT_NE(result.detail.find("info.sym"), std::string::npos) << result.detail;
}

TEST_F(Importing, OtherToolChainsOutputIsFoundSdccFirst) {
  EXPECT_FALSE(FindOtherToolChain(Image(), ToolChain::FreeAssembler));
  Write("lst", MotorolaListing());
  const auto listing = FindOtherToolChain(Image(), ToolChain::FreeAssembler);
  ASSERT_TRUE(listing);
  EXPECT_EQ(listing->row->tool_chain, ToolChain::MotorolaAssembler);
  Write("cdb", kCdb);
  EXPECT_EQ(FindOtherToolChain(Image(), ToolChain::FreeAssembler)->row->short_name, "sdcc");
  Write("cdb", "M:empty\n");
  EXPECT_EQ(FindOtherToolChain(Image(), ToolChain::FreeAssembler)->row->short_name, "motorola");
  EXPECT_FALSE(FindOtherToolChain(Image(), ToolChain::MotorolaAssembler));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "info.src")) << "looking writes nothing";
}

TEST_F(Importing, DotsInFolderNamesDoNotHideTheCompanion) {
  const std::filesystem::path deep = folder_.path() / "v1.2";
  std::filesystem::create_directory(deep);
  std::ofstream(deep / "prog.cdb") << kCdb;
  std::ofstream(deep / "two.dots.cdb") << kCdb;
  EXPECT_EQ(CompanionPath(deep / "prog.s19", "cdb"), deep / "prog.cdb");
  EXPECT_EQ(CompanionPath(deep / "two.dots.s19", "cdb"), deep / "two.dots.cdb");
  EXPECT_EQ(CompanionPath(deep / "gone.s19", "cdb"), deep / "gone.cdb");
  std::ofstream(folder_.path() / "v1.cdb") << kCdb;
  EXPECT_EQ(CompanionPath(deep / "prog.s19", "cdb"), folder_.path() / "v1.cdb")
      << "a file at the first dot of the whole path comes first";
}

TEST_F(Importing, ToolChainsAreFoundBySettingAndByName) {
  EXPECT_EQ(ToolChains().size(), 6U);
  EXPECT_EQ(FindToolChain(32)->display_name, "SDCC C compiler");
  EXPECT_EQ(FindToolChainByName("McuEZ")->tool_chain, ToolChain::McuezAssembler);
  EXPECT_EQ(FindToolChain(0), nullptr);
  EXPECT_EQ(FindToolChainByName("gcc"), nullptr);
}

// Damaged copies of a file: cut everywhere, shuffled, with stray bytes, with huge lines.
std::vector<std::string> DamagedCopies(const std::string& whole) {
  std::vector<std::string> copies;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    copies.push_back(whole.substr(0, length));
  }
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < whole.size(); at = whole.find('\n', at) + 1) {
    lines.push_back(whole.substr(at, whole.find('\n', at) + 1 - at));
  }
  std::mt19937 random(908);
  for (int i = 0; i < 50; ++i) {
    std::ranges::shuffle(lines, random);
    std::string text =
        i % 2 == 0 ? whole.substr(0, whole.find('\n', whole.find('\n') + 1) + 1) : "";
    for (const std::string& line : lines) text += line;
    copies.push_back(text);
    for (int k = 0; k < 20; ++k) text[random() % text.size()] = static_cast<char>(random());
    copies.push_back(text);
  }
  copies.push_back(whole + std::string(1000000, 'x'));
  copies.push_back(whole + "L:C$" + std::string(1000000, '$') + ":8000");
  return copies;
}

TEST_F(Importing, DamagedFilesGiveAWholeProgramOrNone) {
  for (const Case& c : Cases()) {
    const auto& [extension, whole] = c.files[0];
    const auto companions = FindToolChain(c.tool_chain)->companions;
    const auto companion = std::ranges::find_if(companions, [&](const Companion& each) {
      return std::string_view(each.extension) == extension;
    });
    WriteAll(c);
    const std::string path = CompanionPath(Image(), extension);
    for (const std::string& text : DamagedCopies(whole)) {
      std::ofstream(path, std::ios::binary) << text;
      ParsedProgram program = companion->parse(path);
      if (program.info_files) program = ReadBack(program);
      EXPECT_EQ(program.problem.empty(), program.HasContent());
      for (const LineEntry& entry : program.lines) {
        const bool is_named = entry.file < program.files.size();
        EXPECT_TRUE(is_named || c.tool_chain == ToolChain::Imagecraft) << entry.file;
      }
    }
    RemoveAll(c);
  }
}

TEST_F(Importing, LineEndsMakeNoDifference) {
  for (const Case& c : Cases()) {
    WriteAll(c);
    const auto& [extension, whole] = c.files[0];
    std::string crlf;
    for (const char ch : whole) crlf += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
    for (const std::string& text : {crlf, whole.substr(0, whole.size() - 1)}) {
      Write(extension, text);
      EXPECT_TRUE(Import(c).loaded);
      EXPECT_EQ(info_.SymbolTable.symbols().size(), c.symbols) << extension;
      EXPECT_EQ(info_.LineTable.entries().size(), c.lines) << extension;
    }
    RemoveAll(c);
  }
}

TEST(ImporterSpeed, LargeProgramLoadsInASecondAndLooksUpAtOnce) {
#if defined(__SANITIZE_ADDRESS__)
  constexpr double kBound = 20;
#else
  constexpr double kBound = 1;
#endif
  std::string cdb = "M:big\n";
  for (int i = 0; i < 10000; ++i) {
    cdb += base::Format("S:G$name_%d$0_0$0({2}SI:U),F,0,0\nL:G$name_%d$0_0$0:%X\n", i, i, i);
  }
  for (int i = 0; i < 50000; ++i) {
    cdb += base::Format("L:A$big$%d:%X\nL:C$big.c$%d$1_0$1:%X\n", i + 1, i, i + 1, i);
  }
  const base::TemporaryFolder folder;
  std::ofstream(folder.path() / "big.cdb") << cdb;
  DebugInfo info;
  info.tool_chain = ToolChain::Sdcc;
  // Processor time: what else runs on the machine does not count.
  const auto seconds_since = [](std::clock_t since) {
    return static_cast<double>(std::clock() - since) / CLOCKS_PER_SEC;
  };
  std::clock_t start = std::clock();
  ASSERT_TRUE(ImportCompanion({folder.path() / "big.s19", folder.path(), 0, {}}, info).loaded);
  EXPECT_LT(seconds_since(start), kBound);
  ASSERT_EQ(info.SymbolTable.symbols().size(), 10000U);
  ASSERT_EQ(info.LineTable.entries().size(), 50000U);
  start = std::clock();
  for (std::uint32_t i = 0; i < 50000; ++i) {
    ASSERT_EQ(info.LineTable.LineForAddress(i)->line, i + 1);
    ASSERT_EQ(info.LineTable.AddressForLine(i + 1, 0), i);
    ASSERT_EQ(info.SymbolTable.FindSymbolName(i).has_value(), i < 10000);
    ASSERT_TRUE(info.SymbolTable.FindCName(base::Format("NAME_%d", i % 10000)));
  }
  EXPECT_LT(seconds_since(start), kBound);
}

}  // namespace
}  // namespace brevant::symbols
