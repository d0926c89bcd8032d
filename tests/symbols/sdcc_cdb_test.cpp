// SPDX-License-Identifier: MIT
// On debug files that SDCC wrote for the programs in tests/programs, and on records by hand for
// what those do not hold.
#include "symbols/sdcc_cdb.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "base/files.h"
#include "symbols/parsed_text.h"
#include "symbols/text_lines.h"

namespace brevant::symbols {
namespace {

const std::string kPrograms = BREVANT_TEST_DATA "/programs/";

ParsedProgram ParseProgram(const std::string& name) {
  SdccSources sources(kPrograms);
  return ParseSdccCdb(base::ReadFile(kPrograms + name + ".cdb").text,
                      base::ReadFile(kPrograms + name + ".map").text, sources);
}
ParsedProgram ParseText(std::string_view cdb, std::string_view map = {}) {
  SdccSources sources;
  return ParseSdccCdb(cdb, map, sources);
}
const Symbol* Find(const ParsedProgram& program, std::string_view name) {
  const auto found = std::ranges::find(program.symbols, name, &Symbol::name);
  return found == program.symbols.end() ? nullptr : &*found;
}

TEST(SdccCdb, EveryVariableOfTheProgramsIsKnownWithItsSize) {
  std::map<std::string, SymbolTable> tables;
  const std::string text = base::ReadFile(kPrograms + "expected.tsv").text;
  LineReader rows(text);
  int checked = 0;
  while (const auto row = rows.Next()) {
    if (row->starts_with('#')) continue;
    const auto words = Words(*row);
    ASSERT_EQ(words.size(), 4U) << *row;
    SymbolTable& table = tables[std::string(words[0])];
    if (table.empty()) table.Assign(ParseProgram(std::string(words[0])).symbols);
    const std::string compiled = (words[0] == "assembler" ? "" : "_") + std::string(words[1]);
    const Symbol* symbol = table.FindSymbol(compiled);
    ASSERT_NE(symbol, nullptr) << *row;
    EXPECT_GE(symbol->address, 0x80U) << *row;
    const int size = static_cast<int>(*LeadingDecimal(words[2]));
    if (words[0] != "assembler") {
      EXPECT_GE(symbol->size, size) << *row;
    }
    ++checked;
  }
  EXPECT_GT(checked, 40);
}

TEST(SdccCdb, TypesAndSizesReadAsC) {
  const ParsedProgram program = ParseProgram("structs");
  struct Row {
    const char* name;
    int size;
    const char* type;
  };
  const Row rows[] = {{"_points", 12, "struct point[4]"},
                      {"_segment", 6, "struct line"},
                      {"_word", 2, "union word"},
                      {"_flags", 1, "struct flags"},
                      {"_values", 8, "unsigned char[8]"},
                      {"_grid", 12, "int[2][3]"},
                      {"_sort", 0, "void ()"}};
  for (const Row& row : rows) {
    const Symbol* symbol = Find(program, row.name);
    ASSERT_NE(symbol, nullptr) << row.name;
    EXPECT_EQ(symbol->size, row.size) << row.name;
    EXPECT_EQ(symbol->type, row.type) << row.name;
  }
}

// The relocated listings say independently where instructions start and what line they belong to.
TEST(SdccCdb, EveryLineIsAnInstructionAndEveryCommentOfTheListingIsALine) {
  for (const char* name : {"counters", "recursion", "structs", "timer", "arithmetic", "strings",
                           "pointers", "modules", "longnames", "endings"}) {
    const ParsedProgram program = ParseProgram(name);
    ASSERT_TRUE(std::ranges::is_sorted(program.lines, {}, &LineEntry::address)) << name;
    LineTable table;
    table.Assign(program.lines, program.files);
    std::set<base::Address> instructions;
    for (const std::string& file : program.files) {
      if (!file.ends_with(".c")) continue;
      const std::string listing =
          base::ReadFile(kPrograms + file.substr(0, file.size() - 2) + ".rst").text;
      ASSERT_FALSE(listing.empty()) << file;
      LineReader reader(listing);
      std::uint32_t comment_line = 0;
      while (const auto line = reader.Next()) {
        const std::string_view comment = Columns(*line, 32);
        if (comment.starts_with(";" + file + ":")) {
          comment_line = LeadingDecimal(comment.substr(file.size() + 2)).value_or(0);
        }
        if (At(*line, 22) != '[') continue;
        const base::Address address = *LeadingHex(Columns(*line, 3, 4));
        instructions.insert(address);
        if (comment_line == 0) continue;
        const auto shown = table.LineForAddress(address);
        ASSERT_TRUE(shown) << name << std::hex << address;
        EXPECT_EQ(shown->line, comment_line) << name << " at " << std::hex << address;
        EXPECT_EQ(FileName(program.files, shown->file), file);
      }
    }
    for (const LineEntry& entry : program.lines) {
      EXPECT_TRUE(instructions.contains(entry.address)) << name << std::hex << entry.address;
    }
  }
}

// The listing holds nothing but its last line's number where a line goes on behind a jump, and the
// debug file puts what has no code of its own at the next function's start.
TEST(SdccCdb, FunctionsEndAtTheirOwnLinesWithAndWithoutTheListing) {
  SdccSources none;
  const std::string cdb = base::ReadFile(kPrograms + "endings.cdb").text;
  for (const ParsedProgram& program : {ParseProgram("endings"), ParseSdccCdb(cdb, {}, none)}) {
    std::map<std::uint32_t, std::set<base::Address>> places;
    for (const LineEntry& entry : program.lines) {
      if (program.files[entry.file] == "endings.c") places[entry.line].insert(entry.address);
    }
    const base::Address one_line = Find(program, "_one_line")->address;
    EXPECT_FALSE(places.contains(13)) << "the first __naked function's";
    EXPECT_FALSE(places.contains(31)) << "and the last one's";
    EXPECT_EQ(places[14].size(), 2U) << "start and return";
    EXPECT_TRUE(places[14].contains(one_line));
    EXPECT_EQ(places[19].size(), 1U) << "the return that nothing reaches";
    EXPECT_EQ(Find(program, "_ticks")->type, "unsigned long long[2]");
  }
}

TEST(SdccCdb, FunctionsKnowTheirEndsAndWhereTheirLocalsAre) {
  const ParsedProgram program = ParseText(
      "M:m\nF:G$f$0_0$0({2}DF,SI:S),C,0,2,1,6,0\nS:Lm.f$t$1_0$5({5}STpt:S),B,1,-5\n"
      "S:Lm.f$n$1_0$5({2}SI:S),R,0,0,[a,x]\nS:Lm.f$gone$1_0$5({2}SI:S),R,0,0,[]\n"
      "S:Lm.f$kept$1_0$5({1}SC:U),F,0,0\nS:Lm.f$sloc0$0_1$0({2}SI:S),E,0,0\n"
      "T:Fm$pt[({0}S:S$x$0_0$0({1}SC:U),Z,0,0)]\nS:G$g$0_0$0({1}SC:U),F,0,0\n"
      "L:G$f$0$0:8000\nL:XG$f$0$0:8008\nL:Lm.f$kept$1_0$5:80\nL:G$g$0_0$0:81\n");
  ASSERT_EQ(program.functions.size(), 1U);
  const Function& f = program.functions[0];
  EXPECT_TRUE(f.is_interrupt);
  EXPECT_EQ(program.types.Text(f.result), "int");
  std::string locals = base::Format("%04x-%04x", f.first, f.last);
  for (const Variable& v : f.locals) {
    locals += base::Format("|%s %s %d %04x %d", program.types.Text(v.type), v.name,
                           static_cast<int>(v.storage), v.address, v.offset);
    for (const std::string& name : v.registers) locals += " " + name;
  }
  EXPECT_EQ(locals,
            "8000-8008|int gone 3 0000 0|unsigned char kept 0 0080 0|int n 2 0000 0 a x|"
            "struct pt t 1 0000 -5");
  ASSERT_EQ(program.variables.size(), 1U);
  EXPECT_EQ(program.variables[0].name, "g");
}

TEST(SdccCdb, StringsLieWhereTheListingSaysOrNowhere) {
  SymbolTable table;
  table.Assign(ParseProgram("strings").symbols);
  EXPECT_EQ(table.FindSymbolName(0x8153), "_strcpy");
  EXPECT_EQ(table.FindSymbolAddress("___str_1"), 0x82EEU);
  SdccSources none;
  table.Assign(ParseSdccCdb(base::ReadFile(kPrograms + "strings.cdb").text, {}, none).symbols);
  EXPECT_FALSE(table.FindSymbolAddress("___str_1"));
}

TEST(SdccCdb, StaticNamesOfTwoModulesCanBeToldApart) {
  const ParsedProgram program = ParseProgram("modules");
  SymbolTable table;
  table.Assign(program.symbols);
  const auto first = table.FindSymbolAddress("_modules.scale");
  const auto second = table.FindSymbolAddress("_modules_other.scale");
  ASSERT_TRUE(first && second);
  EXPECT_NE(*first, *second);
  EXPECT_EQ(table.FindSymbolAddress("_scale"), first) << "the plain name means the first";
  EXPECT_EQ(table.FindSymbolName(*second), "_scale") << "and is what code shows";
  EXPECT_EQ(table.FindSymbol("_modules_other.factor")->size, 1);
}

TEST(SdccCdb, NamesAreNotCutAndTheMapAddsWhatIsMissing) {
  const ParsedProgram program = ParseProgram("longnames");
  const Symbol* first =
      Find(program, "_a_counter_with_a_name_that_is_longer_than_any_map_shows_it_first");
  const Symbol* second =
      Find(program, "_a_counter_with_a_name_that_is_longer_than_any_map_shows_it_second");
  ASSERT_TRUE(first != nullptr && second != nullptr);
  EXPECT_NE(first->address, second->address);
  EXPECT_EQ(Find(program, "_a_counter_with_a_name_that_is_l"), nullptr);
  EXPECT_NE(Find(ParseProgram("arithmetic"), "__mulint"), nullptr) << "a library function";
  EXPECT_EQ(Find(program, "s_CSEG"), nullptr);
}

TEST(SdccCdb, AssemblerProgramHasItsLinesAndGlobals) {
  const ParsedProgram program = ParseProgram("assembler");
  EXPECT_EQ(program.files, std::vector<std::string>{"assembler.asm"});
  EXPECT_EQ(program.lines.front().line, 12U);
  EXPECT_EQ(Find(program, "done")->address, 0x8029U);
  EXPECT_EQ(Find(program, "smaller"), nullptr) << "local labels are in no output of the linker";
}

TEST(SdccCdb, LastOfManyLinesAtOneAddressIsShownAndAllAreFound) {
  const ParsedProgram program = ParseText(
      "L:C$m.c$9$1_0$1:8008\nL:C$m.c$5$1_0$1:8000\nL:C$m.c$6$1_0$1:8000\nL:C$m.c$7$1_0$1:8000\n");
  LineTable table;
  table.Assign(program.lines, program.files);
  EXPECT_EQ(table.LineForAddress(0x8000)->line, 7U);
  EXPECT_EQ(table.LineForAddress(0x8004)->line, 7U);
  EXPECT_EQ(table.LineForExactAddress(0x8000)->line, 5U);
  for (std::uint32_t line = 5; line <= 7; ++line) EXPECT_EQ(table.AddressForLine(line, 0), 0x8000U);
}

TEST(SdccCdb, RecordsByHand) {
  struct Row {
    const char* what;
    const char* records;
    const char* program;  // symbols, then lines
  };
  const Row rows[] = {
      {"assembler lines appear only outside functions with lines of C",
       "L:A$m$5:8000\nL:A$m$9:8010\nL:C$m.c$3$1_0$1:8010\nL:G$f$0$0:8010\nL:A$m$10:8012\n"
       "L:XG$f$0$0:8012\nL:A$m$12:8014\nL:G$g$0$0:8020\nL:A$m$20:8020\nL:XG$g$0$0:8024\n",
       "_f 8010\n_g 8020\n8000 m.asm:5\n8010 m.c:3\n8014 m.asm:12\n8020 m.asm:20\n"},
      {"a function on one line gets that line at its start",
       "L:C$m.c$1$1_0$1:8000\nL:G$f$0$0:8000\nL:XG$f$0$0:8002\nL:Fm$g$0$0:8003\n"
       "L:C$m.c$2$1_0$1:8009\nL:XFm$g$0$0:8009\n",
       "_f 8000\n_g 8003\n8000 m.c:1\n8003 m.c:2\n8009 m.c:2\n"},
      {"locals are named by their function; those in registers or on the stack have no address",
       "M:m\nS:Lm.f$i$1_0$5({2}SI:S),R,0,0,[]\nS:Lm.f$n$1_0$5({1}SC:U),F,0,0\n"
       "S:Lm.f$n$2_0$6({2}SI:U),F,0,0\nS:Lm.f$t$1_0$5({3}DA3d,SC:U),B,1,-3\n"
       "L:Lm.f$n$1_0$5:80\nL:Lm.f$n$2_0$6:81\n",
       "_f.n 0080\n_f.n 0081\n"},
      {"addresses alone give symbols",
       "L:G$main$0$0:8036\nL:Smain$main$20:803E\nL:XG$main$0$0:8040\nL:G$x$0_0$0:90\n",
       "_main 8036\n_x 0090\n"},
      {"malformed records are passed over",
       "L:\nL:G$\nL:G$x\nL:G$x$0$0:\nL:G$x$0$0:XY\nL:C$m.c$:80\nL:C$m.c$0$1_0:80\nL:A$m:80\n"
       "L:Lm$x$0$0:1\nL:Q$x$0$0:10\nS:G$x$0_0$0({\nS:G$x({1\nT:F[\nM\n:\nL:XG:80\n"
       "L:G$ok$0$0:10\n",
       "_ok 0010\n"},
      {"nothing has an address", "M:main\nS:G$x$0_0$0({1}SC:U),F,0,0\n", ""},
  };
  for (const Row& row : rows) {
    const ParsedProgram program = ParseText(row.records);
    EXPECT_EQ(SymbolsText(program) + LinesText(program), row.program) << row.what;
    EXPECT_EQ(program.problem.empty(), *row.program != 0) << row.what;
  }
}

}  // namespace
}  // namespace brevant::symbols
