// SPDX-License-Identifier: MIT
#include "control/file_io.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "control/bench.h"

namespace brevant::control {
namespace {

using enum base::StopReason;
using enum FileSide;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// In RAM at $0150: reads a number, doubles it (X:A), writes it, and again.
//   0150 FC 9D        input slot
//   0152 48           LSLA
//   0153 59           ROLX
//   0154 7C 9D        output slot
//   0156 20 F8        BRA 0150
const ByteList kDoubling{0xFC, 0x9D, 0x48, 0x59, 0x7C, 0x9D, 0x20, 0xF8};
constexpr base::Address kIn = 0x0150, kOut = 0x0154;

class FileIoTest : public Bench {
 protected:
  FileIoTest() {
    PointIrqVectorToMonitor();
    Program(0x0150, kDoubling);
  }
  std::string Path(const char* name) { return (folder.path() / name).string(); }
  std::string Text(const char* name) {
    std::ifstream file(Path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Put(const char* name, const char* text) { std::ofstream(Path(name)) << text; }
  void Bind(FileSide side, base::Address address, const std::string& path) {
    auto form = file_io.OpenForm(side, address);
    ASSERT_TRUE(form) << user.texts.back();
    form->binding.file_name = path;
    form->binding.enabled = true;
    ASSERT_TRUE(file_io.Commit(*form)) << user.texts.back();
  }
  void BindBoth(const char* numbers) {
    Put("in.txt", numbers);
    Bind(Input, kIn, Path("in.txt"));
    Bind(Output, kOut, Path("out.txt"));
  }
  // What the target's memory holds, past everything that is kept.
  ByteList There(base::Address address, std::size_t count) {
    ByteList bytes;
    for (std::size_t i = 0; i < count; ++i) {
      bytes.push_back(Peek(address + static_cast<base::Address>(i)));
    }
    return bytes;
  }
  ByteList ProgramThere() { return There(0x0150, kDoubling.size()); }
  std::string StopDetail() const { return run.last_stop()->detail; }

  FileIo file_io{run, activity, memory, frame, breakpoints, user};
};

TEST_F(FileIoTest, NumbersGoInAndOutUntilTheInputEnds) {
  for (const bool hardware : {true, false}) {
    UseHardware(hardware);
    SetPC(kIn);
    BindBoth("1\n\n# a comment\n  0x7fff \n'A'\r\n-2\n65535");
    ASSERT_TRUE(file_io.Start());
    EXPECT_TRUE(activity.RunningShown());
    EXPECT_EQ(There(kIn, 2), (ByteList{0, 0})) << "caught by the break module";
    EXPECT_EQ(There(kOut, 2), (ByteList{0x83, 0}));
    TickUntilIdle();
    EXPECT_EQ(Text("out.txt"), "2\n65534\n130\n65532\n65534\n");
    EXPECT_EQ(run.last_stop()->reason, PlaceReached);
    EXPECT_EQ(frame.PC, kIn);
    EXPECT_EQ(StopDetail(), "end of file I/O, 5 numbers read, 5 written");
    EXPECT_THAT(user.texts.back(), HasSubstr("at its end: 5 numbers read, 5 written"));
    EXPECT_EQ(ProgramThere(), kDoubling);
    EXPECT_FALSE(activity.FileIoActive());
    EXPECT_TRUE(file_io.binding(Input).enabled && file_io.binding(Output).enabled);
  }
}

TEST_F(FileIoTest, OnlyTheOutputIsBound) {
  // INCA; output; BRA
  Program(0x0150, {0x4C, 0x7C, 0x9D, 0x20, 0xFB});
  frame.WriteHX(0x3401);
  frame.WriteA(0xFF);
  Bind(Output, 0x0151, Path("out.txt"));
  ASSERT_TRUE(file_io.Start());
  EXPECT_EQ(There(0x0150, 3), (ByteList{0x4C, 0, 0}));
  Tick(3);
  EXPECT_TRUE(activity.Busy());
  EXPECT_EQ(Text("out.txt").substr(0, 8), "256\n257\n") << "handed on at once";
  run.Stop();
  EXPECT_FALSE(activity.Busy() || activity.FileIoActive());
  EXPECT_EQ(run.last_stop()->reason, UserBreak);
  EXPECT_EQ(There(0x0150, 3), (ByteList{0x4C, 0x7C, 0x9D}));
  const long written = file_io.numbers_written();
  Tick(5);
  EXPECT_EQ(file_io.numbers_written(), written);
}

TEST_F(FileIoTest, ASlotInFlashIsCaughtAndLeftAsItIs) {
  Load(0x8000, ByteList{0xFC, 0x9D, 0x97, 0xCC, 0x01, 0x54});  // input; TAX; JMP 0154
  Load(0x0154, ByteList{0x7C, 0x9D, 0xCC, 0x80, 0x00});
  Put("in.txt", "3\n4\n");
  Bind(Input, 0x8000, Path("in.txt"));
  Bind(Output, kOut, Path("out.txt"));
  SetPC(0x8000);
  ASSERT_TRUE(file_io.Start());
  EXPECT_EQ(There(kOut, 2), (ByteList{0x83, 0})) << "whichever it is, RAM takes the SWI";
  TickUntilIdle();
  EXPECT_EQ(Text("out.txt"), "771\n1028\n");
  EXPECT_EQ(There(0x8000, 2), (ByteList{0xFC, 0x9D}));
}

TEST_F(FileIoTest, RefusesBeforeAnythingIsChanged) {
  const auto refused = [this](const char* why) {
    const ByteList before = ProgramThere();
    const auto registers = frame.PC;
    EXPECT_FALSE(file_io.Start());
    EXPECT_THAT(user.texts.back(), HasSubstr(why));
    EXPECT_EQ(ProgramThere(), before);
    EXPECT_FALSE(activity.Busy() || activity.FileIoActive());
    EXPECT_EQ(frame.PC, registers);
  };
  refused("Please setup input or output file first");
  BindBoth("1\n");
  Load(0x8000, ByteList{0xFC, 0x9D, 0x7C, 0x9D});
  Bind(Input, 0x8000, Path("in.txt"));
  Bind(Output, 0x8002, Path("out.txt"));
  refused("both lie in flash");
  Bind(Output, kOut, Path("in.txt"));
  refused("input and the output file at once");
  EXPECT_EQ(Text("in.txt"), "1\n");

  BindBoth("1\n");
  std::filesystem::remove(Path("in.txt"));
  refused("cannot be opened: No such file or directory");
  BindBoth("1\n");
  std::filesystem::create_directory(Path("folder"));
  Bind(Output, kOut, Path("folder"));
  refused("cannot be opened: Is a directory");

  BindBoth("1\n");
  Load(kOut, ByteList{0x4C, 0x9D});
  refused("no longer 7c 9d");
  Load(kOut, ByteList{0xFC, 0x7C, 0x9D});
  Bind(Input, kOut, Path("in.txt"));
  Bind(Output, kOut + 1, Path("out.txt"));
  refused("overlap");
  Load(0x00FA, ByteList{0xFC, 0x9D});
  file_io.Disable(Output);
  Bind(Input, frame.SP, Path("in.txt"));
  refused("lies in the stack");
}

TEST_F(FileIoTest, ALineThatIsNoNumberStopsTheProgramAtItsSlot) {
  BindBoth("7\n#\nseven\n8\n");
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_THAT(user.texts.back(), HasSubstr("in.txt, line 3: expected a number from -32768"));
  EXPECT_EQ(user.messages.back().severity, base::Severity::Error);
  EXPECT_EQ(frame.PC, kIn);
  EXPECT_EQ(Text("out.txt"), "14\n");
  EXPECT_EQ(ProgramThere(), kDoubling);
}

TEST_F(FileIoTest, AFullDiskStopsTheProgram) {
  Put("in.txt", "7\n8\n");
  Bind(Input, kIn, Path("in.txt"));
  Bind(Output, kOut, "/dev/full");
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_THAT(user.texts.front(), HasSubstr("/dev/full\ncannot be written: No space left"));
  EXPECT_EQ(file_io.numbers_written(), 0);
  EXPECT_EQ(frame.PC, kOut);
  EXPECT_EQ(ProgramThere(), kDoubling);
}

TEST_F(FileIoTest, BreakpointsInRamStayAndTheHardwareOneWaits) {
  BindBoth("1\n2\n3\n");
  breakpoints.AddBreakpoint(0x0153);
  ASSERT_TRUE(file_io.Start());
  EXPECT_EQ(file_io.suspended(), 0x0153u);
  TickUntilIdle();
  EXPECT_EQ(file_io.numbers_written(), 3) << "there is one break module";

  UseHardware(false);
  BindBoth("1\n2\n3\n");
  SetPC(kIn);
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_EQ(run.last_stop()->reason, Breakpoint);
  EXPECT_EQ(frame.PC, 0x0153u);
  EXPECT_EQ(file_io.numbers(), 1);
  EXPECT_EQ(ProgramThere(), kDoubling);
  // Off the breakpoint at which it stands, and round to it again.
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_EQ(frame.PC, 0x0153u);
  EXPECT_EQ(Text("out.txt"), "2\n") << "of the run before";

  // On the slot itself, and behind it.
  for (const base::Address address : {kOut, kOut + kSlotBytes}) {
    breakpoints.Clear();
    breakpoints.AddBreakpoint(address);
    SetPC(kIn);
    ASSERT_TRUE(file_io.Start());
    TickUntilIdle();
    EXPECT_EQ(run.last_stop()->reason, Breakpoint);
    EXPECT_EQ(frame.PC, address);
    EXPECT_EQ(ProgramThere(), kDoubling);
  }
}

// The byte before the slot bears an SWI, and the slot is jumped to: PC alone does not tell which of
// them has stopped the program.
TEST_F(FileIoTest, ABreakpointInFrontOfTheSlotIsNotTakenForIt) {
  UseHardware(false);
  Program(0x0150, {0x9D, 0xFC, 0x9D, 0x20, 0xFC});  // NOP; input; BRA 0151
  Put("in.txt", "1\n2\n3\n");
  Bind(Input, 0x0151, Path("in.txt"));
  breakpoints.AddBreakpoint(0x0150);
  SetPC(0x0151);
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_EQ(frame.PC, 0x0151u);
  EXPECT_EQ(file_io.numbers_read(), 3);
  Load(0x0153, ByteList{0x20, 0xFB});  // BRA 0150
  SetPC(0x0151);
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_EQ(run.last_stop()->reason, Breakpoint);
  EXPECT_EQ(frame.PC, 0x0150u);
}

TEST_F(FileIoTest, WhateverStopsTheProgramEndsIt) {
  Load(0x0152, ByteList{0x83});  // its own SWI
  BindBoth("1\n2\n");
  ASSERT_TRUE(file_io.Start());
  TickUntilIdle();
  EXPECT_EQ(run.last_stop()->reason, OwnSwi);
  EXPECT_EQ(StopDetail(), "end of file I/O, 1 numbers read, 0 written");
  EXPECT_EQ(There(kIn, 2), (ByteList{0xFC, 0x9D}));

  // A connection from the beginning, which takes the target's power away.
  Program(0x0150, {0xFC, 0x9D, 0x20, 0xFE});
  ASSERT_TRUE(file_io.Start());
  Tick();
  EXPECT_TRUE(activity.FileIoActive());
  Connect();
  run.AbandonRunForReset();
  EXPECT_FALSE(activity.FileIoActive());
  EXPECT_THAT(user.texts.back(), HasSubstr("Before file I/O it held 7c 9d"));
}

TEST_F(FileIoTest, ALostLinkSaysWhatCouldNotBePutBackAndDoesItLater) {
  BindBoth("1\n");
  Load(0x0152, ByteList{0x20, 0xFE});  // BRA *
  ASSERT_TRUE(file_io.Start());
  Tick();
  link.LinkError = true;
  Tick();
  EXPECT_EQ(run.last_stop()->reason, LinkLost);
  EXPECT_THAT(user.texts.back(), HasSubstr("put back:\nfc 9d at 0150\n7c 9d at 0154"));
  EXPECT_FALSE(activity.FileIoActive());
  EXPECT_EQ(There(kIn, 2), (ByteList{0, 0}));
  link.LinkError = false;
  run.Stop();
  file_io.PutBack();
  EXPECT_EQ(There(kIn, 2), (ByteList{0xFC, 0x9D}));
  EXPECT_EQ(There(kOut, 2), (ByteList{0x7C, 0x9D}));
}

TEST_F(FileIoTest, ASlotThatTheProgramHasOverwrittenIsLeft) {
  // input; MOV #$12,$B0 over the output slot that lies there; BRA *
  Program(0x0150, {0xFC, 0x9D, 0x6E, 0x12, 0xB0, 0x20, 0xFE});
  Load(0x00B0, ByteList{0x7C, 0x9D});
  Put("in.txt", "1\n");
  Bind(Input, kIn, Path("in.txt"));
  Bind(Output, 0x00B0, Path("out.txt"));
  ASSERT_TRUE(file_io.Start());
  Tick(2);
  run.Stop();
  EXPECT_THAT(user.texts, ElementsAre(HasSubstr("00b0 was left as it is: 12 00 stand there")));
  EXPECT_EQ(There(kIn, 2), (ByteList{0xFC, 0x9D}));
}

TEST_F(FileIoTest, TheDialogsRules) {
  EXPECT_FALSE(file_io.OpenForm(Input, kOut));
  EXPECT_FALSE(file_io.OpenForm(Output, kIn));
  ASSERT_THAT(user.texts, ElementsAre(::testing::StartsWith("Use LDD EXT instruction only"),
                                      ::testing::StartsWith("Use STD EXT instruction only")));
  auto form = file_io.OpenForm(Input, kIn);
  ASSERT_TRUE(form);
  EXPECT_EQ(form->Note(), "");
  EXPECT_FALSE(form->binding.enabled);
  form->ClickEnabled();
  const auto refused = [&](const std::string& name) {
    form->binding.file_name = name;
    user.texts.clear();
    EXPECT_FALSE(file_io.Commit(*form));
    return user.texts.empty() ? "" : user.texts.back();
  };
  EXPECT_EQ(refused(""), "   Can not open file    ");
  EXPECT_EQ(refused("none.txt"), "   Can not open file none.txt   ");
  EXPECT_EQ(refused(folder.path()), "   Can not open file " + folder.path().string() + "   ");
  Put("in.txt", "1\n");
  std::string name = Path("in.txt");
  while (name.size() + 2 <= kMaxFileIoName) name.insert(name.rfind('/'), "/.");
  while (name.size() < kMaxFileIoName + 1) name.insert(name.rfind('/'), "/");
  EXPECT_THAT(refused(name), HasSubstr("longer than 99 characters"));
  form->binding.file_name = name.erase(name.rfind('/'), 1);
  EXPECT_TRUE(file_io.Commit(*form));
  EXPECT_TRUE(file_io.binding(Input).enabled);
  file_io.Disable(Input);
  EXPECT_EQ(file_io.OpenForm(Input, kIn)->binding.file_name, name) << "names survive";

  Load(kOut, ByteList{0x7C, 0x4F});
  form = file_io.OpenForm(Output, kOut);
  EXPECT_THAT(form->Note(), HasSubstr("0155 is 4f, no NOP"));
  EXPECT_EQ(refused(Path("nowhere/out.txt")),
            "   Can not open file " + Path("nowhere/out.txt") + "   ");
  form->binding.file_name = "out.txt";
  EXPECT_TRUE(file_io.Commit(*form)) << "a name without a folder";
}

TEST(NumberFileTest, LinesOfNumbers) {
  EXPECT_EQ(ParseNumberLine(" -32768\t"), 0x8000);
  EXPECT_EQ(ParseNumberLine("0XfFfF"), 0xFFFF);
  EXPECT_EQ(ParseNumberLine("' '"), 0x20);
  EXPECT_EQ(ParseNumberLine("'\xE4'"), 0xE4);
  for (const char* none :
       {"", "-", "65536", "-32769", "0x", "0x10000", "12 13", "1.5", "''", "'ab'", "-0x1", "12h"}) {
    EXPECT_EQ(ParseNumberLine(none), std::nullopt) << none;
  }
}

}  // namespace
}  // namespace brevant::control
