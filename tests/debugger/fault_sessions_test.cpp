// SPDX-License-Identifier: MIT
// Whole sessions, each with one fault on the line at a place and of a kind that its number decides:
// whatever the engine claims, the board bears out, and nothing hangs.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "base/files.h"
#include "base/text_format.h"
#include "debugger/bench.h"
#include "flash/flash_commands.h"
#include "images/image_writer.h"
#include "load/confirmed_read.h"
#include "simulator/fault_plan.h"

namespace brevant::debugger {
namespace {

using simulator::FaultKind;

constexpr int kSessions = 1000;
constexpr FaultKind kKinds[] = {
    FaultKind::LoseHostByte, FaultKind::DropLocalEcho, FaultKind::DropMonitorEcho,
    FaultKind::FlipEcho,     FaultKind::FlipHostByte,  FaultKind::FlipReply,
    FaultKind::LoseReply,    FaultKind::ExtraByte,     FaultKind::DelayByte};
// About as many bytes as a session sends.
constexpr int kBytes = 1500;
constexpr int kFlashBytes = 1500;
constexpr int kFileIoBytes = 1500;

class FaultySession {
 public:
  FaultySession(int number, int bytes) {
    std::mt19937 random(static_cast<unsigned>(number));
    const auto pick = [&](int below) {
      return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    bench_.target.board().Load(0x9000, Pattern(300));
    // The IRQ vector is a part of the security code.
    bench_.target.board().Load(0xFFFA, {{0xFE, 0x27}});
    debugger_.security.GiveForSession({0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0x27, 0xFF, 0xFF});
    fault_ = {.kind = kKinds[pick(std::size(kKinds))],
              .at_host_byte = static_cast<std::uint64_t>(pick(bytes)),
              .bit = static_cast<std::uint8_t>(pick(8))};
    bench_.debugger.breakpoints.SetBreakMode(pick(2) == 0 ? control::BreakMode::Hardware
                                                          : control::BreakMode::Software);
  }
  std::string Name() const {
    return base::Format("fault %d at byte %d", static_cast<int>(fault_.kind),
                        static_cast<int>(fault_.at_host_byte));
  }

  void Run() {
    bench_.target.SetFaultPlan({fault_});
    if (!IsConnected(debugger_.Start(OtherCodes::Try))) return;
    if (debugger_.security.passed()) {
      EXPECT_TRUE(bench_.target.board().mcu().security_passed());
    }
    const auto mode = debugger_.breakpoints.HardwareBreakMode();
    Write();
    Read();
    // NOP; NOP; INCA; BRA *
    const std::vector<std::uint8_t> code{0x9D, 0x9D, 0x4C, 0x20, 0xFE};
    if (!Took(0x0150, code)) return;
    debugger_.frame.SetPC(0x0150);
    debugger_.run_control.StepCommand(control::Calls::Follow);
    Settle();
    debugger_.breakpoints.AddBreakpoint(0x0152);
    debugger_.run_control.Go();
    Settle();
    debugger_.breakpoints.Clear();
    debugger_.run_control.Go();
    Wait(5);
    debugger_.run_control.Stop();
    CheckStop();
    EXPECT_EQ(mode, debugger_.breakpoints.HardwareBreakMode());
  }

  void RunFlash() {
    bench_.target.SetFaultPlan({fault_});
    if (!IsConnected(debugger_.Start(OtherCodes::Try)) || !debugger_.security.passed()) return;
    if (Done(flash::ErasePages(debugger_.flash, {0x9000, 0x90FF}))) {
      ExpectHeld(0x9000, std::vector<std::uint8_t>(256, 0xFF));
    }
    // Into flash that is blank, though the line may have kept it from being erased.
    if (Done(flash::ProgramFlashLocations(debugger_.flash, 0xA030, Pattern(60)))) {
      ExpectHeld(0xA030, Pattern(60));
    }
  }

  // The numbers 0 to 19 through a program that doubles them: what comes out is right as far as it
  // goes, and at the end the slots hold the program, unless that was said not to be so.
  void RunFileIo() {
    bench_.target.SetFaultPlan({fault_});
    if (!IsConnected(debugger_.Start(OtherCodes::Try))) return;
    const std::vector<std::uint8_t> code{0xFC, 0x9D, 0x48, 0x59, 0x7C, 0x9D, 0x20, 0xF8};
    if (!Took(0x0150, code)) return;
    debugger_.frame.SetPC(0x0150);
    if (debugger_.memory.TakeDamage()) return;
    const std::string in = bench_.settings.path().string() + ".in", out = in + ".out";
    std::string numbers, doubled;
    for (int n = 0; n < 20; ++n) {
      numbers += base::Format("%d\n", n);
      doubled += base::Format("%d\n", 2 * n);
    }
    ASSERT_EQ(base::ReplaceFile(in, numbers), "");
    if (!Bound(control::FileSide::Input, 0x0150, in)) return;
    if (!Bound(control::FileSide::Output, 0x0154, out)) return;
    bench_.user.messages.clear();
    if (!debugger_.file_io.Start()) return;
    Settle();
    EXPECT_FALSE(debugger_.activity.FileIoActive() && !debugger_.Busy());
    if (debugger_.Busy()) return;
    const auto said = [this](std::string_view id) {
      return std::ranges::any_of(bench_.user.messages,
                                 [id](const base::Message& message) { return message.id == id; });
    };
    const std::string written = base::ReadFile(out).text;
    EXPECT_TRUE(doubled.starts_with(written) || said("fileio.damaged")) << written;
    EXPECT_TRUE(!Claims(said("fileio.input-at-end")) || written == doubled) << written;
    if (!said("fileio.not-put-back") && !said("fileio.slot-overwritten")) ExpectHeld(0x0150, code);
  }

  int claims() const { return claims_; }

 private:
  bool Claims(bool what) {
    if (what) ++claims_;
    return what;
  }
  bool Bound(control::FileSide side, base::Address address, const std::string& path) {
    auto form = debugger_.file_io.OpenForm(side, address);
    if (!form) return false;
    form->binding.enabled = true;
    form->binding.file_name = path;
    return debugger_.file_io.Commit(*form);
  }
  bool Done(bool started) {
    EXPECT_TRUE(!started || bench_.Settle());
    return Claims(debugger_.flash.status().outcome == flash::FlashOutcome::Done);
  }
  void ExpectHeld(base::Address address, base::Bytes bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      ASSERT_EQ(Peek(address + static_cast<base::Address>(i)), bytes[i]);
    }
  }
  static std::vector<std::uint8_t> Pattern(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{7});
    return bytes;
  }
  std::uint8_t Peek(base::Address address) { return bench_.target.board().mcu().Peek(address); }

  // Whether the engine says so; the board must bear it out.
  bool Took(base::Address address, base::Bytes bytes) {
    const bool differs = debugger_.memory.WriteAndLook(address, bytes).has_value();
    const bool doubted = debugger_.memory.TakeDamage().has_value();
    if (!Claims(!differs && !doubted && !debugger_.memory.LinkError())) return false;
    ExpectHeld(address, bytes);
    return true;
  }
  void Write() {
    Took(0x0160, Pattern(40));
    const std::string path = bench_.settings.path().string() + ".s19";
    images::Image image;
    image.Put(0x0190, Pattern(20));
    image.Put(0x01C0, Pattern(20));
    ASSERT_EQ(base::ReplaceFile(path, images::SRecordText(image)), "");
    const auto fill = views::BlockOperation::Fill(0x01A0, 0x01FF, 0x1234);
    if (Claims(debugger_.block.Run(fill) == views::BlockOutcome::Done)) {
      for (base::Address at = 0x01A0; at <= 0x01FE; at += 2) {
        EXPECT_EQ(base::Word(Peek(at), Peek(at + 1)), 0x1234u) << at;
      }
    }
    if (!Claims(debugger_.loader.LoadImage(path).outcome == load::LoadOutcome::Loaded)) return;
    ExpectHeld(0x0190, Pattern(20));
    ExpectHeld(0x01C0, Pattern(20));
  }
  void Read() {
    std::vector<std::uint8_t> bytes(300);
    const auto read = load::ReadConfirmed(debugger_.memory, debugger_.crc, 0x9000, bytes,
                                          [](long, long) { return true; });
    const bool sound = !debugger_.memory.TakeDamage() && debugger_.security.passed();
    if (Claims(read.range == load::RangeResult::Complete && sound)) {
      EXPECT_EQ(bytes, Pattern(300));
    }
  }
  void Wait(int ticks) {
    for (int i = 0; i < ticks && debugger_.Busy(); ++i) {
      bench_.target.Sleep(std::chrono::milliseconds(10));
      debugger_.Tick();
    }
  }
  void Settle() {
    Wait(100);
    if (debugger_.Busy()) debugger_.run_control.Stop();
    CheckStop();
  }
  // A stop that was told is one, and it is where it was told to be.
  void CheckStop() {
    if (debugger_.memory.LinkError() || debugger_.Busy()) return;
    const auto& stop = debugger_.run_control.last_stop();
    if (!stop || stop->reason == base::StopReason::LinkLost) return;
    // Says that what it shows is not to be relied on.
    if (stop->reason == base::StopReason::NotRecovered) return;
    EXPECT_FALSE(bench_.target.board().running()) << base::StopText(*stop);
    const base::Address base = base::Low16(bench_.target.board().mcu().cpu().sp + 1u);
    EXPECT_EQ(stop->pc, base::Word(Peek(base + 4), Peek(base + 5))) << base::StopText(*stop);
  }

  Bench bench_;
  Debugger& debugger_ = bench_.debugger;
  simulator::Fault fault_;
  int claims_ = 0;
};

void RunSessions(int bytes, void (FaultySession::*run)()) {
  int claims = 0;
  for (int number = 0; number < kSessions; ++number) {
    FaultySession session(number, bytes);
    SCOPED_TRACE(base::Format("session %d, ", number) + session.Name());
    (session.*run)();
    if (testing::Test::HasFailure()) return;
    claims += session.claims();
  }
  EXPECT_GT(claims, kSessions);  // or nothing was put to the test
}

TEST(FaultSessions, ClaimNothingThatTheBoardDoesNotBearOut) {
  RunSessions(kBytes, &FaultySession::Run);
}

TEST(FaultSessions, ErasedAndProgrammedAreSaidOfWhatTheBoardHolds) {
  RunSessions(kFlashBytes, &FaultySession::RunFlash);
}

TEST(FaultSessions, NumbersOfFilesComeThroughAsTheyAre) {
  RunSessions(kFileIoBytes, &FaultySession::RunFileIo);
}

}  // namespace
}  // namespace brevant::debugger
