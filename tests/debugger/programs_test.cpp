// SPDX-License-Identifier: MIT
// Real programs, from SDCC's output to a breakpoint in main and to the values that C says they must
// leave behind: programmed into flash, reset, run, stepped.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "debugger/bench.h"
#include "flash/flash_commands.h"
#include "symbols/places.h"

namespace brevant::debugger {
namespace {

const std::string kPrograms = std::string(BREVANT_TEST_DATA) + "/programs/";

struct Expected {
  std::string variable;
  std::size_t size = 0;
  std::string bytes;
};

std::map<std::string, std::vector<Expected>> ReadExpected() {
  std::map<std::string, std::vector<Expected>> expected;
  std::ifstream file(kPrograms + "expected.tsv");
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream fields(line);
    std::string program;
    Expected row;
    fields >> program >> row.variable >> row.size >> row.bytes;
    expected[program].push_back(row);
  }
  return expected;
}

std::string ReadVariable(Debugger& debugger, base::Address address, std::size_t size) {
  std::vector<std::uint8_t> bytes(size);
  debugger.monitor.ReadBlockBytes(bytes, address);
  std::string text;
  for (const std::uint8_t byte : bytes) text += base::Format("%02x", byte);
  return text;
}

void StepOver(Bench& bench) {
  bench.debugger.run_control.StepCommand(control::Calls::StepOver);
  ASSERT_TRUE(bench.Settle());
}

class Programs
    : public testing::TestWithParam<std::pair<const std::string, std::vector<Expected>>> {};

TEST_P(Programs, LeaveBehindWhatCSaysWhenDebuggedInFlash) {
  const std::string image = kPrograms + GetParam().first + ".s19";
  Bench bench;
  Debugger& debugger = bench.debugger;
  bench.settings.Override(base::keys::kCompiler, "32");
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);

  ASSERT_TRUE(flash::ProgramFlashFile(debugger.flash, image));
  ASSERT_TRUE(bench.Settle());
  ASSERT_EQ(debugger.flash.status().outcome, flash::FlashOutcome::Done);
  ASSERT_TRUE(debugger.security.passed()) << "the code that was programmed opens the monitor again";
  ASSERT_EQ(debugger.loader.LoadImage(image).outcome, load::LoadOutcome::Loaded);
  ASSERT_TRUE(debugger.debug_info.DebugInfoLoaded);

  bench.settings.Override(base::keys::kRunToMain, "8");
  debugger.Reset();
  ASSERT_TRUE(bench.Settle());
  // A program in assembler may start elsewhere than in a main of its own.
  const base::Address start = symbols::FindPlace("main", debugger.debug_info)
                                  .address.value_or(debugger.monitor.ReadWord(0xFFFE));
  EXPECT_EQ(debugger.frame.PC, start);
  EXPECT_TRUE(debugger.debug_info.LineTable.LineForAddress(start));
  StepOver(bench);
  EXPECT_NE(debugger.frame.PC, start);

  const auto done = symbols::FindPlace("done", debugger.debug_info).address;
  ASSERT_TRUE(done);
  debugger.breakpoints.AddBreakpoint(*done);
  debugger.run_control.Go();
  ASSERT_TRUE(bench.Settle());
  ASSERT_EQ(debugger.frame.PC, *done);
  // One of them stores its last result there.
  StepOver(bench);
  StepOver(bench);
  for (const Expected& row : GetParam().second) {
    const auto address = symbols::FindPlace(row.variable, debugger.debug_info).address;
    ASSERT_TRUE(address) << row.variable;
    EXPECT_EQ(ReadVariable(debugger, *address, row.size), row.bytes) << row.variable;
  }
  EXPECT_TRUE(bench.user.texts.empty()) << bench.user.texts.front();
}

INSTANTIATE_TEST_SUITE_P(OfSdcc, Programs, testing::ValuesIn([] {
                           const auto expected = ReadExpected();
                           return std::vector<std::pair<const std::string, std::vector<Expected>>>(
                               expected.begin(), expected.end());
                         }()),
                         [](const auto& test) { return test.param.first; });

// Breakpoints on lines, as the source text numbers them.
TEST(SourceLines, ABreakpointOnALineStopsThere) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  bench.settings.Override(base::keys::kCompiler, "32");
  bench.PutFlash(kPrograms + "counters.s19");
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  debugger.loader.LoadImage(kPrograms + "counters.s19");
  EXPECT_EQ(debugger.frame.PC, debugger.monitor.ReadWord(0xFFFE)) << "not the S9 record's 0000";

  std::ifstream source(kPrograms + "counters.c");
  std::string text;
  std::uint32_t line = 1;
  while (std::getline(source, text) && text.find("sum = 0;") == std::string::npos) ++line;
  const auto address = debugger.debug_info.LineTable.AddressForLine(line, 0);
  ASSERT_TRUE(address);
  debugger.breakpoints.AddBreakpoint(*address);
  debugger.run_control.Go();
  ASSERT_TRUE(bench.Settle());
  EXPECT_EQ(debugger.frame.PC, *address);
  EXPECT_EQ(debugger.debug_info.LineTable.LineForAddress(debugger.frame.PC)->line, line);
  const auto wrapped = symbols::FindPlace("wrapped", debugger.debug_info).address;
  EXPECT_EQ(debugger.monitor.ReadByte(*wrapped), 300 % 256);
}

}  // namespace
}  // namespace brevant::debugger
