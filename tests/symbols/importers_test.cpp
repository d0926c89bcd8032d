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
#include "symbols/info_files.h"
#include "symbols/messages.h"
#include "symbols/parsed_text.h"

namespace brevant::symbols {
namespace {

struct Case {
  ToolChain tool_chain;
  int image_format = 0;
  const char* name = "";                     // of its files in tests/symbols/listings
  std::vector<const char*> extensions = {};  // companion first
};

const Case kCases[] = {
    {ToolChain::FreeAssembler, 0, "free", {"lst"}},
    {ToolChain::MotorolaAssembler, 0, "motorola", {"lst"}},
    {ToolChain::McuezAssembler, 0, "mcuez", {"lst", "prm"}},
    {ToolChain::Imagecraft, 0, "imagecraft", {"cmd"}},
    {ToolChain::Imagecraft, 1, "imagecraft", {"map", "src"}},
    {ToolChain::Sdcc, 0, "sdcc", {"cdb"}},
};

std::string Listing(const char* name, const std::string& extension) {
  return base::ReadFile(std::string(BREVANT_TEST_DATA "/symbols/listings/") + name + "." +
                        extension)
      .text;
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
    for (const char* extension : c.extensions) Write(extension, Listing(c.name, extension));
  }
  void RemoveAll(const Case& c) {
    for (const char* extension : c.extensions) Remove(extension);
  }
  // The tables, then the intermediate files of an assembler's listing.
  std::string Imported() {
    ParsedProgram tables;
    tables.symbols = info_.SymbolTable.symbols();
    tables.lines = info_.LineTable.entries();
    tables.files = info_.LineTable.files();
    std::string text = SymbolsText(tables) + LinesText(tables);
    for (const char* file : {"info.src", "info.sym", "info.add"}) {
      const base::FileText read = base::ReadFile(folder_.path() / file);
      if (read.ok()) text += std::string("-- ") + file + "\n" + read.text;
      std::filesystem::remove(folder_.path() / file);
    }
    return text;
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

TEST_F(Importing, EachToolChainFillsTheTablesFromItsCompanionWhateverTheLineEnds) {
  for (const Case& c : kCases) {
    const std::string whole = Listing(c.name, c.extensions[0]);
    SCOPED_TRACE(c.name + std::string(".") + c.extensions[0]);
    std::string crlf;
    for (const char ch : whole) crlf += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
    WriteAll(c);
    const std::string expected = Listing(c.name, std::string(c.extensions[0]) + ".imported");
    for (const std::string& text : {crlf, whole.substr(0, whole.size() - 1), whole}) {
      Write(c.extensions[0], text);
      FillTables();
      reset_vectors_.clear();
      const ImportResult result = Import(c);
      EXPECT_TRUE(result.loaded) << result.detail;
      EXPECT_TRUE(info_.DebugInfoLoaded);
      EXPECT_FALSE(result.message);
      EXPECT_EQ(Imported(), expected);
      EXPECT_EQ(reset_vectors_.size(), whole.starts_with("LINE") ? 1U : 0U);
    }
    RemoveAll(c);
  }
}

TEST_F(Importing, MissingOrForeignListingOfTheTwoAssemblersIsReported) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(FindToolChain(c.tool_chain)->short_name);
    const bool has_marker =
        c.tool_chain == ToolChain::FreeAssembler || c.tool_chain == ToolChain::MotorolaAssembler;
    // The marker of a listing stands in its second line, at the start and in its own case.
    for (const char* text : {"", "one line\nand another\n", "as12 68HC12\n", "\n\nas12 68HC12\n",
                             "\n as12 68hc12\n", "\nAS12\n"}) {
      if (*text != 0) Write(c.extensions[0], text);
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
  for (const Case& c : {Case{ToolChain::Introl}, Case{ToolChain::Imagecraft, 7},
                        Case{static_cast<ToolChain>(99)}}) {
    EXPECT_TRUE(Import(c).loaded);
    EXPECT_TRUE(info_.SymbolTable.FindSymbolAddress("old"));
  }
  info_.DebugInfoLoaded = false;
  EXPECT_FALSE(Import({ToolChain::Introl}).loaded);
}

TEST_F(Importing, ListingWhoseFilesCannotBeWrittenIsNotLoaded) {
  const Case c = kCases[0];
  WriteAll(c);
  std::filesystem::create_directory(folder_.path() / "info.sym");
  const ImportResult result = Import(c);
  EXPECT_FALSE(result.loaded);
  EXPECT_NE(result.detail.find("info.sym"), std::string::npos) << result.detail;
}

TEST_F(Importing, OtherToolChainsOutputIsFoundSdccFirst) {
  EXPECT_FALSE(FindOtherToolChain(Image(), ToolChain::FreeAssembler));
  Write("lst", Listing("motorola", "lst"));
  const auto listing = FindOtherToolChain(Image(), ToolChain::FreeAssembler);
  ASSERT_TRUE(listing);
  EXPECT_EQ(listing->row->tool_chain, ToolChain::MotorolaAssembler);
  Write("cdb", Listing("sdcc", "cdb"));
  EXPECT_EQ(FindOtherToolChain(Image(), ToolChain::FreeAssembler)->row->short_name, "sdcc");
  Write("cdb", "M:empty\n");
  EXPECT_EQ(FindOtherToolChain(Image(), ToolChain::FreeAssembler)->row->short_name, "motorola");
  EXPECT_FALSE(FindOtherToolChain(Image(), ToolChain::MotorolaAssembler));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "info.src")) << "looking writes nothing";
}

TEST_F(Importing, DotsInFolderNamesDoNotHideTheCompanion) {
  const std::filesystem::path deep = folder_.path() / "v1.2";
  std::filesystem::create_directory(deep);
  std::ofstream(deep / "prog.cdb") << "M:x";
  std::ofstream(deep / "two.dots.cdb") << "M:x";
  EXPECT_EQ(CompanionPath(deep / "prog.s19", "cdb"), deep / "prog.cdb");
  EXPECT_EQ(CompanionPath(deep / "two.dots.s19", "cdb"), deep / "two.dots.cdb");
  EXPECT_EQ(CompanionPath(deep / "gone.s19", "cdb"), deep / "gone.cdb");
  std::ofstream(folder_.path() / "v1.cdb") << "M:x";
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
  for (std::size_t length = 0; length < whole.size(); length += 3) {
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
  for (const Case& c : kCases) {
    const auto companions = FindToolChain(c.tool_chain)->companions;
    const auto companion = std::ranges::find_if(companions, [&](const Companion& each) {
      return std::string_view(each.extension) == c.extensions[0];
    });
    const std::string path = CompanionPath(Image(), c.extensions[0]);
    for (const char* damaged : c.extensions) {
      WriteAll(c);
      for (const std::string& text : DamagedCopies(Listing(c.name, damaged))) {
        Write(damaged, text);
        ParsedProgram program = companion->parse(path);
        if (program.info_files) program = ParseInfoFiles(*program.info_files);
        EXPECT_EQ(program.problem.empty(), program.HasContent());
        for (const LineEntry& entry : program.lines) {
          const bool is_named = entry.file < program.files.size();
          EXPECT_TRUE(is_named || c.tool_chain == ToolChain::Imagecraft) << entry.file;
        }
      }
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
    ASSERT_TRUE(info.SymbolTable.FindSymbolAddress(base::Format("_NAME_%d", i % 10000)));
  }
  EXPECT_LT(seconds_since(start), kBound);
}

}  // namespace
}  // namespace brevant::symbols
