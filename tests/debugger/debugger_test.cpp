// SPDX-License-Identifier: MIT
#include "debugger/debugger.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "control/messages.h"
#include "debugger/bench.h"
#include "debugger/start_up_program.h"
#include "flash/flash_commands.h"

namespace brevant::debugger {
namespace {

constexpr std::uint8_t kEndless[] = {0x20, 0xFE};  // BRA to itself

// A line that carries nothing but bytes.
class BytesAlone final : public base::SerialPort {
 public:
  explicit BytesAlone(base::SerialPort& port) : port_(port) {}
  bool Open(const std::string& device) override { return port_.Open(device); }
  void Close() override { port_.Close(); }
  bool Configure(const base::LineSettings& settings) override { return port_.Configure(settings); }
  bool SetQueueSizes(int receive, int transmit) override {
    return port_.SetQueueSizes(receive, transmit);
  }
  bool SetDtr(bool high) override { return port_.SetDtr(high); }
  bool SetRts(bool high) override { return high ? Refuse() : port_.SetRts(false); }
  bool SetBreak(bool) override { return Refuse(); }
  bool Write(base::Bytes bytes) override { return port_.Write(bytes); }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer,
                                  std::chrono::milliseconds timeout) override {
    error_.clear();
    return port_.Read(buffer, timeout);
  }
  std::string LastError() const override { return error_; }

 private:
  bool Refuse() {
    error_ = "bytes alone";
    return false;
  }
  base::SerialPort& port_;
  std::string error_;
};

TEST(Debugger, WhatThePortRefusesIsNeitherDoneNorALostLink) {
  Bench bench;
  BytesAlone port(bench.target);
  Debugger debugger({.port = port,
                     .clock = bench.target,
                     .settings = bench.settings,
                     .ui = bench.user,
                     .events = bench.events,
                     .start_up_directory = ""});
  debugger.security.GiveForSession(link::kBlankSecurityCode);
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  bench.target.board().Load(0x0100, kEndless);
  debugger.frame.WriteProgramCounter(0x0100);
  debugger.run_control.Go();
  bench.user.messages.clear();
  const base::Stop stop = debugger.run_control.Stop();
  EXPECT_EQ(stop.reason, base::StopReason::Refused);
  EXPECT_EQ(control::StopMessage(stop)->id, "run.stop-not-sent");
  EXPECT_FALSE(debugger.Reset());
  ASSERT_EQ(bench.user.messages.size(), 1u);
  EXPECT_EQ(bench.user.messages[0].id, "connect.not-reset");
  EXPECT_NE(bench.user.texts.back().find("bytes alone"), std::string::npos);
  EXPECT_TRUE(debugger.Busy() && bench.target.board().running());
  EXPECT_TRUE(bench.events.stops.empty());
  EXPECT_FALSE(debugger.monitor_link.LinkError);
}

TEST(Debugger, StartUpLeavesItsProgramInRamAndTheFrameRead) {
  Bench bench;
  ASSERT_EQ(bench.debugger.Start(), link::ConnectResult::Connected);
  EXPECT_TRUE(bench.debugger.security.passed());
  EXPECT_EQ(bench.debugger.frame.ProgramSP(), 0x00FFu);
  std::vector<std::uint8_t> ram(kStartUpProgram.size());
  bench.debugger.monitor.ReadBlockBytes(ram, kStartUpProgramAddress);
  EXPECT_TRUE(std::equal(ram.begin(), ram.end(), kStartUpProgram.begin()));
}

TEST(Debugger, TriesOtherCodesOnlyWhenAsked) {
  Bench bench;
  bench.settings.Override(base::keys::kRecentSecurity, "0011223344556677", 0);
  EXPECT_EQ(bench.debugger.Start(), link::ConnectResult::SecurityNotPassed);
  EXPECT_FALSE(bench.debugger.security.passed());
  EXPECT_EQ(bench.debugger.Start(OtherCodes::Try), link::ConnectResult::Connected);
  EXPECT_EQ(bench.debugger.security.FoundByTrying(), link::kBlankSecurityCode);
  bench.debugger.Reset();
  EXPECT_TRUE(bench.debugger.security.passed());
}

// The image's entry address wins over the macro's PC, which wins over the reset vector.
TEST(Debugger, AResetChoosesTheProgramCounter) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  bench.target.board().Load(0xFFFE, std::vector<std::uint8_t>{0x90, 0x12});
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  EXPECT_EQ(debugger.frame.PC, 0x9012u);
  const auto pc_after_reset = [&] {
    debugger.Reset();
    EXPECT_EQ(debugger.frame.PC, debugger.frame.ReadFramePC());
    return debugger.frame.PC;
  };
  EXPECT_EQ(pc_after_reset(), 0x9012u);
  debugger.start_address.PcFromMacro = true;
  debugger.start_address.MacroPc = 0x8111;
  EXPECT_EQ(pc_after_reset(), 0x8111u);
  debugger.start_address.EntryFromImage = true;
  debugger.start_address.LoadEntryAddress = 0x0100;
  EXPECT_EQ(pc_after_reset(), 0x0100u);
}

// No echo tells of a bit that the line turns in an answer: what is told of the stopped program, and
// what was saved to be put back, must not rest on one answer alone.
TEST(Debugger, ABitTurnedInAnyOneAnswerIsNeitherToldNorPutBack) {
  const std::vector<std::uint8_t> code{0x9D, 0x4C, 0x5C, 0x9D, 0x20, 0xFA};
  constexpr int kBytes = 330;  // as many as the host sends below
  for (int at = 0; at < 2 * kBytes; ++at) {
    Bench bench;
    Debugger& debugger = bench.debugger;
    const auto peek = [&](base::Address a) { return bench.target.board().mcu().Peek(a); };
    bench.settings.Override(base::keys::kHardwareBreak, at % 2 == 0 ? "1" : "0");
    bench.target.board().Load(0xFFFE, std::vector<std::uint8_t>{0x90, 0x12});
    bench.target.SetFaultPlan({{.kind = simulator::FaultKind::FlipReply,
                                .at_host_byte = static_cast<std::uint64_t>(at / 2),
                                .bit = static_cast<std::uint8_t>(at / 2 % 8)}});
    if (debugger.Start() != link::ConnectResult::Connected) continue;
    EXPECT_EQ(debugger.frame.PC, 0x9012u) << at;
    debugger.memory.WriteAndLook(0x0150, code);
    debugger.frame.SetPC(0x0150);
    debugger.breakpoints.AddBreakpoint(0x0153);
    debugger.run_control.Go();
    // Whose break byte was altered is stopped as one that runs on.
    if (!bench.Settle()) debugger.run_control.Stop();
    ASSERT_FALSE(debugger.Busy()) << at;
    for (std::size_t i = 0; i < code.size(); ++i) {
      EXPECT_EQ(peek(0x0150 + static_cast<base::Address>(i)), code[i]) << at;
    }
    const base::Address base = debugger.frame.SP;
    EXPECT_EQ(debugger.run_control.last_stop()->pc, base::Word(peek(base + 4), peek(base + 5)));
    EXPECT_EQ(base, bench.target.board().mcu().cpu().sp + 1u) << at;
    EXPECT_EQ(debugger.frame.HX, base::Word(peek(base), peek(base + 3))) << at;
    EXPECT_EQ(debugger.frame.A, peek(base + 2)) << at;
  }
}

// RUN from such a stack leads anywhere, whatever was meant to run.
TEST(Debugger, FlashIsErasedAfterAProgramHasLostItsStack) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  // LDHX #$1005; TXS; SWI
  debugger.memory.WriteBytes(0x0150, std::vector<std::uint8_t>{0x45, 0x10, 0x05, 0x94, 0x83});
  debugger.frame.SetPC(0x0150);
  debugger.run_control.Go();
  ASSERT_TRUE(bench.Settle());
  ASSERT_EQ(debugger.run_control.last_stop()->reason, base::StopReason::BadStack);
  EXPECT_FALSE(debugger.crc.Of(0x9000, 256));
  EXPECT_FALSE(debugger.frame.SetStackPointer(0x00FF));
  EXPECT_FALSE(debugger.memory.LinkError());
  bench.target.board().Load(0x9000, kEndless);
  EXPECT_TRUE(flash::ErasePages(debugger.flash, {0x9000, 0x907F}));
  EXPECT_TRUE(bench.Settle());
  EXPECT_EQ(debugger.flash.status().outcome, flash::FlashOutcome::Done);
  EXPECT_EQ(bench.target.board().mcu().Peek(0x9000), 0xFF);
}

TEST(Debugger, AResetTakesARunningTargetBack) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  debugger.monitor.WriteBlock(0x0090, kEndless);
  debugger.frame.WriteProgramCounter(debugger.frame.PC = 0x0090);
  debugger.run_control.Go();
  debugger.Tick();
  EXPECT_TRUE(debugger.Busy());
  debugger.Reset();
  EXPECT_FALSE(debugger.Busy());
  EXPECT_FALSE(debugger.activity.RunningShown());
  debugger.frame.ReadRegisters();
  EXPECT_EQ(debugger.frame.ProgramSP(), 0x00FFu);
  EXPECT_FALSE(debugger.monitor.LinkError());
}

// An illegal opcode: the monitor waits for its code again and sends nothing. That is no lost cable,
// and RAM holds what it held.
TEST(Debugger, AnMcuThatHasResetItselfIsEnteredAgain) {
  for (const bool hardware : {true, false}) {
    Bench bench;
    Debugger& debugger = bench.debugger;
    ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
    debugger.breakpoints.SetBreakMode(hardware ? control::BreakMode::Hardware
                                               : control::BreakMode::Software);
    debugger.breakpoints.AddBreakpoint(0x0096);
    bench.target.board().Load(0x0090, std::vector<std::uint8_t>{0x9D, 0x9D, 0x32, 0, 0, 0, 0x9D});
    debugger.memory.DropAll();
    debugger.frame.SetPC(0x0090);
    debugger.run_control.Go();
    debugger.Tick();
    const base::Stop stop = debugger.run_control.Stop();
    EXPECT_EQ(stop.reason, base::StopReason::McuReset);
    EXPECT_EQ(stop.detail, "illegal opcode, last known PC 0090");
    EXPECT_FALSE(debugger.Busy() || debugger.monitor.LinkError());
    EXPECT_TRUE(debugger.security.passed());
    EXPECT_EQ(debugger.monitor.ReadByte(0x0096), 0x9D);
    debugger.frame.SetPC(0x0090);
    debugger.run_control.StepCommand(control::Calls::Follow);
    EXPECT_EQ(debugger.frame.PC, 0x0091u);
  }
}

// The code in flash changes with every erase and every programmed vector; a reset that sent the old
// one would lock the user out of the flash.
TEST(Debugger, ResetsSendTheCodeThatFlashHoldsNow) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  ASSERT_TRUE(flash::ProgramIrqVector(debugger.flash));
  ASSERT_TRUE(bench.Settle());
  EXPECT_TRUE(debugger.security.passed());
  EXPECT_EQ(debugger.monitor.ReadWord(0xFFFA), 0xFE27u);
  ASSERT_TRUE(flash::MassEraseCommand(debugger.flash));
  ASSERT_TRUE(bench.Settle());
  EXPECT_TRUE(debugger.security.passed());
  EXPECT_EQ(debugger.monitor.ReadWord(0xFFFA), 0xFFFFu);
}

// Another board may stand there when connecting again.
TEST(Debugger, ConnectingAgainForgetsTheCodeOfTheBoardBefore) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  debugger.Reset();
  bench.target.board().Load(0xFFF6, std::vector<std::uint8_t>(8, 0x22));
  bench.settings.Override(base::keys::kRecentSecurity, "2222222222222222", 0);
  ASSERT_EQ(debugger.Restart(), link::ConnectResult::Connected);
  debugger.Reset();
  EXPECT_TRUE(debugger.security.passed());
}

// No code fits, and the last try leaves the target silent: its RAM can be used all the same.
TEST(Debugger, TryingCodesDoesNotCostTheLink) {
  Bench bench;
  bench.target.board().Load(0xFFF6, std::vector<std::uint8_t>(8, 0x22));
  bench.settings.Override(base::keys::kRecentSecurity, "0011223344556677", 0);
  // Connecting sends 29 bytes, each try 22: the code and a look at the flag and at flash.
  constexpr std::uint64_t kInTheThirdTry = 29 + 2 * 22 + 1;
  bench.target.SetFaultPlan({{simulator::FaultKind::DropMonitorEcho, kInTheThirdTry}});
  EXPECT_EQ(bench.debugger.Start(OtherCodes::Try), link::ConnectResult::SecurityNotPassed);
  EXPECT_FALSE(bench.debugger.monitor.LinkError());
  bench.debugger.monitor.WriteByte(0x0140, 0x5A);
  EXPECT_EQ(bench.debugger.monitor.ReadByte(0x0140), 0x5A);
}

TEST(Debugger, TriesNoCodeWhenSecurityIsNotToBeVerified) {
  Bench bench;
  bench.settings.Override(base::keys::kSecurityCheck, "0");
  bench.debugger.Start(OtherCodes::Try);
  EXPECT_FALSE(bench.debugger.security.passed());
}

TEST(Debugger, AMacrosRegistersAreSeenAndItDoesNotRunTheProgramToMain) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  bench.settings.Override(base::keys::kRunToMain, "8");
  bench.settings.Override(base::keys::kRunToMainSymbol, "0120");
  bench.settings.Override(base::keys::kCompiler, "32");
  const std::string macro = bench.settings.path().string() + ".mac";
  ASSERT_EQ(base::ReplaceFile(macro, "PC 0110\n"), "");
  debugger.frame.PC = debugger.frame.A = 0x77;  // stale
  ASSERT_TRUE(debugger.RunMacro(macro));
  EXPECT_EQ(debugger.frame.A, debugger.memory.AskByte(debugger.frame.SP + 2));
  EXPECT_EQ(debugger.frame.PC, 0x0110u);
  EXPECT_FALSE(debugger.Busy());
}

TEST(Debugger, OnlyCProgramsRunToMain) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  bench.settings.Override(base::keys::kRunToMainSymbol, "0112");
  debugger.memory.WriteBytes(0x0110, std::vector<std::uint8_t>(4, 0x9D));  // NOP
  const auto ends_at = [&](const char* compiler, const char* wanted) {
    bench.settings.Override(base::keys::kCompiler, compiler);
    bench.settings.Override(base::keys::kRunToMain, wanted);
    debugger.frame.SetPC(0x0110);
    debugger.RefreshAfterStop();
    return debugger.frame.PC;
  };
  EXPECT_EQ(ends_at("1", "8"), 0x0110u);
  EXPECT_EQ(ends_at("32", "0"), 0x0110u);
  EXPECT_EQ(ends_at("8", "8"), 0x0112u);
  EXPECT_EQ(ends_at("32", "8"), 0x0112u);
}

// What is saved holds from the start: the device's map, steps, break mode, tool chain.
TEST(Debugger, StartsWithWhatIsSaved) {
  Bench bench(simulator::Ql());
  Debugger& debugger = bench.debugger;
  bench.settings.Override(base::keys::kDevice, "1");
  bench.settings.Override(base::keys::kNStepCount, "7");
  bench.settings.Override(base::keys::kHardwareBreak, "1");
  bench.settings.Override(base::keys::kCompiler, "32");
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  EXPECT_EQ(debugger.memory.device().option, "ql");
  EXPECT_EQ(debugger.n_step.settings.count, 7);
  EXPECT_EQ(debugger.debug_info.tool_chain, static_cast<symbols::ToolChain>(32));
  bench.settings.Override(base::keys::kDevice, "0");
  debugger.Reset();
  EXPECT_EQ(debugger.memory.device().option, "gp32") << "chosen since";
}

TEST(Debugger, AResetRunsItsMacroAndThenToMain) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  const std::string macro = bench.settings.path().string() + ".mac";
  ASSERT_EQ(base::ReplaceFile(macro, "PC 0140\n"), "");
  bench.settings.Override(base::keys::kMacroFlags, "3");
  bench.settings.Override(base::keys::kResetMacroFile, macro);
  debugger.Reset();
  EXPECT_EQ(debugger.frame.PC, 0x0140u);
  EXPECT_EQ(debugger.frame.ReadFramePC(), 0x0140u);
}

TEST(Debugger, EveryChangeOfTheLinkIsTold) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  debugger.Tick();
  EXPECT_EQ(bench.events.link_changes, 0);
  bench.target.SetFaultPlan({{simulator::FaultKind::CutLine, 0}});
  debugger.memory.AskByte(0x0100);
  debugger.Tick();
  EXPECT_EQ(bench.events.link_changes, 1) << "lost";
  debugger.Tick();
  EXPECT_EQ(bench.events.link_changes, 1);
  bench.target.SetFaultPlan({});
  debugger.debug_info.DebugInfoLoaded = true;
  ASSERT_EQ(debugger.Restart(), link::ConnectResult::Connected);
  EXPECT_EQ(bench.events.link_changes, 2) << "found again, without a tick";
  EXPECT_FALSE(debugger.debug_info.DebugInfoLoaded) << "perhaps of another board";
}

// The reset line of the board takes its power away.
TEST(Debugger, AResetNoticesThatRamHasLostTheImage) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  debugger.Reset();
  EXPECT_FALSE(debugger.image_gone) << "none was loaded";
  const std::string image = bench.settings.path().string() + ".s19";
  ASSERT_EQ(base::ReplaceFile(image, "S10501001122C6\n"), "");
  debugger.loader.LoadImage(image);
  debugger.Reset();
  EXPECT_TRUE(debugger.image_gone);
  debugger.loader.LoadImage(image);
  EXPECT_FALSE(debugger.loader.ImageIsGone());
}

TEST(Debugger, ALostLinkIsLeftByConnectingAgain) {
  Bench bench;
  Debugger& debugger = bench.debugger;
  ASSERT_EQ(debugger.Start(), link::ConnectResult::Connected);
  bench.target.SetFaultPlan({{simulator::FaultKind::CutLine, 0}});
  debugger.Reset();
  EXPECT_TRUE(debugger.monitor.LinkError());
  EXPECT_FALSE(IsConnected(debugger.Restart()));
  bench.target.SetFaultPlan({});
  EXPECT_EQ(debugger.Restart(), link::ConnectResult::Connected);
  EXPECT_EQ(debugger.frame.ProgramSP(), 0x00FFu);
}

}  // namespace
}  // namespace brevant::debugger
