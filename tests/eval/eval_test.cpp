// SPDX-License-Identifier: MIT
// Expressions over a program made by hand; what SDCC makes of C is looked at with the projects.
#include "control/bench.h"
#include "control/program_context.h"
#include "eval/evaluate.h"
#include "eval/format.h"

namespace brevant::eval {
namespace {

using control::ByteList;
using symbols::Storage;
using symbols::Type;
using symbols::TypeId;
using Kind = Type::Kind;

class EvalTest : public control::Bench {
 protected:
  EvalTest() {
    symbols::Types& types = debug_info.types;
    u8_ = types.Add(IntegerType(1, false));
    s8_ = types.Add(IntegerType(1, true));
    s16_ = types.Add(IntegerType(2, true));
    u16_ = types.Add(IntegerType(2, false));
    s32_ = types.Add(IntegerType(4, true));
    const TypeId real = types.Add(FloatType());
    point_ = types.Add({.kind = Kind::Struct});
    const TypeId to_point = types.Add(PointerTo(point_));
    types.Complete(point_) = {.kind = Kind::Struct,
                              .size = 7,
                              .name = "struct point",
                              .members = {{"x", 0, 0, 0, s16_},
                                          {"next", 2, 0, 0, to_point},
                                          {"low", 4, 0, 3, u16_},
                                          {"wide", 4, 3, 10, s16_},
                                          {"tag", 6, 0, 0, u8_}}};
    const TypeId text = types.Add({.kind = Kind::Array, .size = 6, .target = u8_, .count = 6});
    const TypeId table = types.Add({.kind = Kind::Array, .size = 6, .target = s16_, .count = 3});
    const TypeId to_text = types.Add(PointerTo(u8_));
    const TypeId function = types.Add({.kind = Kind::Function, .target = s16_});
    const TypeId to_function = types.Add(PointerTo(function));
    Put("small", s8_, 1, 0x0090, ByteList{0xFE});
    Put("byte", u8_, 1, 0x0091, ByteList{200});
    Put("word", s16_, 2, 0x0092, ByteList{0xFF, 0x38});
    Put("big", s32_, 4, 0x0094, ByteList{0x00, 0x01, 0x11, 0x70});
    Put("name", text, 6, 0x0098, ByteList{'h', 'i', '"', 0, 9, 9});
    Put("table", table, 6, 0x00A0, ByteList{0, 1, 0xFF, 0xFE, 1, 0x2C});
    Put("here", point_, 7, 0x00B0, ByteList{0, 5, 0, 0xC0, 0xFD, 0x1E, 'A'});
    Load(0x00C0, ByteList{0xFF, 0xFF, 0, 0, 0, 0, 7});
    Put("there", to_point, 2, 0x00B8, ByteList{0, 0xB0});
    Put("words", to_text, 2, 0x00BA, ByteList{0, 0x98});
    Put("ratio", real, 4, 0x00BC, ByteList{0xBF, 0xC0, 0, 0});
    Put("handler", to_function, 2, 0x00C8, ByteList{0x01, 0x50});
    Put("hits", u8_, 1, 0x00CA, ByteList{1}).module = "io";
    Put("hits", u8_, 1, 0x00CB, ByteList{2}).module = "main";
    debug_info.functions.push_back(
        {.name = "_run",
         .module = "main",
         .first = 0x0150,
         .last = 0x0157,
         .locals = {
             {.name = "i", .type = s16_, .size = 2, .storage = Storage::Stack, .offset = -2},
             {.name = "word", .type = u8_, .size = 1, .storage = Storage::Stack, .offset = 2},
             {.name = "fast",
              .type = u8_,
              .size = 1,
              .storage = Storage::Registers,
              .registers = {"a"}},
             {.name = "gone", .type = u8_, .size = 1}}});
    debug_info.DebugInfoLoaded = true;
    // AIS #-2; CLR 1,SP; AIS #2; RTS
    Load(0x0150, ByteList{0xA7, 0xFE, 0x9E, 0x6F, 0x01, 0xA7, 0x02, 0x81});
    SetPC(0x0120);
  }

  symbols::Variable& Put(const char* name, TypeId type, int size, base::Address address,
                         const ByteList& bytes) {
    Load(address, bytes);
    debug_info.variables.push_back(
        {.name = name, .type = type, .size = size, .storage = Storage::Memory, .address = address});
    return debug_info.variables.back();
  }
  // Behind CLR, with what stands above SP.
  void StandInRun() {
    SetPC(0x0155);
    frame.HX = 0x1234;
    frame.A = 42;
    const base::Address sp = frame.ProgramSP();
    Load(sp + 1, ByteList{0x01, 0x02, 0x80, 0x03, 99});
  }
  Context Here(Reading reading = Reading::Everything) {
    return control::ContextOf(memory, debug_info, frame, reading);
  }
  std::string Text(const char* expression, Notation notation = Notation::AsC) {
    const Context context = Here();
    const Result result = Evaluate(expression, context);
    return result.ok() ? ValueText(result.value, context, notation) : result.problem;
  }
  std::string Set(const char* to, const char* what) {
    const Context context = Here();
    return Assign(Evaluate(to, context).value, Evaluate(what, context).value, context);
  }

  TypeId u8_ = 0, s8_ = 0, s16_ = 0, u16_ = 0, s32_ = 0, point_ = 0;
};

struct Row {
  const char* expression;
  const char* text;
};

TEST_F(EvalTest, ComputesAsCDoes) {
  constexpr Row kRows[] = {
      // numbers, and how far they reach
      {"12", "12"},
      {"0x1F + $1f", "62"},
      {"'a'", "97"},
      {"'\\n' + 'b' - 'a'", "11"},
      {"30000 + 30000", "-5536"},
      {"30000L + 1", "30001"},
      {"40000 + 30000", "70000"},
      {"0xFFFF + 1", "0"},
      {"-1 < 0xFFFFu", "0"},
      {"-1 < 1", "1"},
      {"(-2 > 1u) + (-1 < 1L)", "2"},
      {"0x10000 - 1", "65535"},
      // strength and side
      {"2 + 3 * 4", "14"},
      {"(2 + 3) * 4", "20"},
      {"10 - 4 - 3", "3"},
      {"-7 / 2", "-3"},
      {"-7 % 2", "-1"},
      {"1 << 3 | 1", "9"},
      {"6 & 3 == 3", "0"},
      {"!0 + ~0", "0"},
      {"1 || 1 / 0", "1"},
      {"0 && 1 / 0", "0"},
      {"7 >> 1 ^ 1", "2"},
      {"- -3", "3"},
      // variables and their signs
      {"small", "-2"},
      {"byte", "200"},
      {"byte + 100", "300"},
      {"word", "-200"},
      {"big", "70000"},
      {"big * 2", "140000"},
      {"(unsigned char)word", "56"},
      {"(long)byte << 10", "204800"},
      {"(signed char)byte", "-56"},
      {"small == -2 && byte > small", "1"},
      {"ratio * 2", "-3"},
      {"(int)ratio", "-1"},
      {"sizeof(int)", "2"},
      {"sizeof here", "7"},
      {"BYTE", "200"},
      // parts
      {"table[2]", "300"},
      {"table[byte - 199]", "-2"},
      {"*(table + 1)", "-2"},
      {"*table", "1"},
      {"here.x", "5"},
      {"there->x", "5"},
      {"there->next->x", "-1"},
      {"(*there).tag", "65"},
      {"here.low", "5"},
      {"here.wide", "-33"},
      {"&here.tag", "0x00b6"},
      {"&table[1]", "0x00a2"},
      {"there + 1", "0x00b7"},
      {"&table[2] - &table[0]", "2"},
      {"there == &here", "1"},
      {"*(int *)0xA2", "-2"},
      {"((struct point *)0xB0)->x", "5"},
      {"*(unsigned char *)&big", "0"},
      // whole things
      {"table", "{1, -2, 300}"},
      {"name", "\"hi\\\"\""},
      {"words", "0x0098 \"hi\\\"\""},
      {"words[1]", "105"},
      {"here", "{x = 5, next = 0x00c0, low = 5, wide = -33, tag = 65}"},
      {"handler", "0x0150 <run>"},
      {"run", "0x0150 <run>"},
      {"handler == run", "1"},
      // names of one file
      {"io.c:hits", "1"},
      {"main:hits + 1", "3"},
      {"@SP", "255"},
      {"PC", "288"},
      // what is wrong
      {"1 +", "a name or a number is missing at the end"},
      {"1 2", "unexpected \"2\""},
      {"nobody", "there is no nobody"},
      {"here.y", "here has no member y"},
      {"byte.x", "byte is no structure"},
      {"byte[0]", "byte is neither array nor pointer"},
      {"*byte", "byte is no pointer"},
      {"0xffffffffffffffff", "18446744073709551615"},
      {"0xffffffffffffffff / 2 > 5", "1"},
      {"18446744073709551616", "the number is too large"},
      {"2.5 * 2 + 1e1", "15"},
      {"ratio == -1.5", "1"},
      {"1.0 / 0", "inf"},
      {"010", "a leading 0 makes a number octal in C: write it without, or 0x before it"},
      {"++byte", "a name or a number is missing before \"++\""},
      {"*(int *)0xFFFF", "not available here (it would lie beyond FFFF)"},
      {"&table[0] - &here.tag", "pointers to different things have no difference"},
      {"1 / 0", "division by 0"},
      {"here + 1", "here is no number: name one of its parts"},
      {"(1", ") is missing before the end"},
      {"run()", "a function cannot be called"},
      {"byte = 1", "an expression changes nothing: use set"},
      {"1 << 16", "a shift by this many bits has no result in C"},
      {"hits", "hits is there in io, main: put the file and : before the name"},
      {"12ab", "a hexadecimal number begins with 0x or $"},
      {"", "a name or a number is missing at the end"},
      {"(struct nobody *)0", "there is no type struct nobody"},
      {"&1", "1 has no address"},
      {"@Q", "there is no register Q"},
      {"0x", "a hexadecimal digit is missing"},
  };
  for (const Row& row : kRows) EXPECT_EQ(Text(row.expression), row.text) << row.expression;
  EXPECT_EQ(Text("word", Notation::Hexadecimal), "0xff38");
  EXPECT_EQ(Text("byte", Notation::Binary), "11001000");
  EXPECT_EQ(Text("ratio", Notation::Hexadecimal), "0xbfc00000");
  // Hostile texts end in a refusal, not in a crash.
  EXPECT_EQ(Text(std::string(90000, '(').c_str()), "the expression is too long");
  EXPECT_EQ(Text(std::string(390, '~').c_str()), "the expression is nested too deeply");
}

TEST_F(EvalTest, TellsLocalsByWhereTheyAre) {
  EXPECT_EQ(Text("i"), "there is no i");
  StandInRun();
  EXPECT_EQ(Text("i"), "258");
  EXPECT_EQ(Text("word"), "99") << "a local comes before what is global";
  EXPECT_EQ(Text("run.i + 1"), "259");
  EXPECT_EQ(Text("fast"),
            "not available here (kept in register A for a part of the function, which "
            "holds 42 now)");
  EXPECT_EQ(Text("fast + 1"), Text("fast"));
  EXPECT_EQ(Text("gone"), "not available here (the compiler does not say where it keeps it)");
  EXPECT_EQ(Text("hits"), "2") << "of the function's own module";
  // Before anything was written there, before it has a place, and where nobody knows how much lies
  // on the stack.
  SetPC(0x0152);
  EXPECT_EQ(Text("i"),
            "not available here (nothing has been written to its place on the stack so far)");
  EXPECT_EQ(Text("word"), "99") << "a parameter is there from the beginning";
  SetPC(0x0150);
  EXPECT_EQ(Text("i"), "not available here (it has no place on the stack yet, or no longer)");
  Load(0x0150, ByteList{0x94});  // TXS
  SetPC(0x0152);
  EXPECT_EQ(Text("i"), "not available here (how much the function has on the stack is not known)");
}

TEST_F(EvalTest, WritesAndLooks) {
  EXPECT_EQ(Set("word", "-3"), "");
  EXPECT_EQ(Set("table[1]", "word * 2"), "");
  EXPECT_EQ(Set("there->next->tag", "'x'"), "");
  EXPECT_EQ(Set("here.wide", "77"), "");
  EXPECT_EQ(Set("ratio", "big"), "");
  EXPECT_EQ(Set("there", "&here"), "");
  EXPECT_EQ(Text("table"), "{1, -6, 300}");
  EXPECT_EQ(Text("here"), "{x = 5, next = 0x00c0, low = 5, wide = 77, tag = 65}");
  EXPECT_EQ(Text("ratio"), "70000");
  EXPECT_EQ(Text("*(char *)0xC6"), "120");
  EXPECT_EQ(Set("byte", "256"), "256 does not fit");
  EXPECT_EQ(Set("byte", "-1"), "");
  EXPECT_EQ(Text("byte"), "255");
  EXPECT_EQ(Set("here.low", "8"), "8 does not fit");
  EXPECT_EQ(Set("here", "1"), "only numbers and pointers that lie in memory can be set");
  EXPECT_EQ(Set("run", "1"), "only numbers and pointers that lie in memory can be set");
  EXPECT_EQ(Set("*(char *)0x8000", "1"), "8000 is no RAM: it cannot be set like this");
  EXPECT_EQ(Set("word", "name"), "a number is expected");
}

TEST_F(EvalTest, SparesRegistersThatChangeOnBeingReadAndSaysWhenTheLinkIsLost) {
  // SRSR
  const Value status{.type = IntegerType(1, false), .place = Place{0xFE01}};
  EXPECT_EQ(Loaded(status, Here(Reading::Sparing)).unavailable, "reading the register changes it");
  EXPECT_EQ(Loaded(status, Here()).unavailable, "");
  link.LinkError = true;
  memory.DropAll();
  EXPECT_EQ(Text("big"), "not available here (the link is lost)");
  EXPECT_EQ(Set("big", "1"), "the link is lost");
}

TEST_F(EvalTest, KnowsTheRegistersOfTheMcuAndTheirFieldsBehindTheNamesOfTheProgram) {
  EXPECT_EQ(Set("T1SC", "0x65"), "");
  EXPECT_EQ(Text("t1sc"), "101");
  EXPECT_EQ(Text("T1SC.PS + 1"), "6");
  EXPECT_EQ(Text("T1SC.tstop"), "1");
  EXPECT_EQ(Text("T1SC.0"), "1");
  EXPECT_EQ(Set("T1SC.PS", "2"), "");
  EXPECT_EQ(Set("T1SC.6", "0"), "");
  EXPECT_EQ(Text("T1SC"), "34");
  EXPECT_EQ(Set("T1SC.PS", "9"), "9 does not fit");
  EXPECT_EQ(Set("T1CNTL", "9"), "T1CNTL can only be read");
  EXPECT_EQ(Set("SCBR", "255"), "SCBR reads back 37");
  EXPECT_EQ(Text("&T1SC == 0x20"), "1");
  EXPECT_EQ(Evaluate("T1SC.8", Here()).problem, "T1SC has no field 8");
  EXPECT_EQ(Evaluate("T1SC.PS.0", Here()).problem, "T1SC.PS is no structure");
  EXPECT_EQ(Evaluate("word.1", Here()).problem, "word is no structure");
  Put("T1sc", u8_, 1, 0x0091, ByteList{200});
  EXPECT_EQ(Text("T1SC"), "200") << "a variable of the program";
  EXPECT_EQ(Evaluate("T1SC.PS", Here()).problem, "T1SC is no structure");
  Put("timer_control", s8_, 1, 0x0020, ByteList{});
  EXPECT_EQ(Text("timer_control.PS"), "2") << "its own name for a register";
}

TEST_F(EvalTest, HasPartsThatAreReadOnlyWhenTheyAreLookedAt) {
  const Context context = Here();
  const auto parts = [&](const char* expression, int most = 9) {
    std::string text;
    for (const Part& part : PartsOf(Evaluate(expression, context).value, context, most)) {
      text += part.name + "=" + ValueText(part.value, context) + " ";
    }
    return text;
  };
  EXPECT_EQ(parts("table"), "[0]=1 [1]=-2 [2]=300 ");
  EXPECT_EQ(parts("table", 2), "[0]=1 [1]=-2 ");
  EXPECT_EQ(parts("there"), "x=5 next=0x00c0 low=5 wide=-33 tag=65 ");
  EXPECT_EQ(parts("words"), "*=104 ");
  EXPECT_EQ(parts("byte") + parts("run"), "");
  EXPECT_EQ(TypeText(Evaluate("there", context).value, context), "struct point *");
}

}  // namespace
}  // namespace brevant::eval
