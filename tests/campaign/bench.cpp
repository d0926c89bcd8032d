// SPDX-License-Identifier: MIT
#include "campaign/bench.h"

#include <algorithm>
#include <cstdio>

#include "base/files.h"
#include "base/text_format.h"
#include "devices/hc08.h"
#include "images/image_file.h"

namespace brevant::campaign {
namespace {

using base::Address;

const std::string kProgram = std::string(BREVANT_TEST_DATA) + "/programs/projects/lines/lines";
constexpr std::uint8_t kStopVector[] = {0xFE, 0x27};
constexpr std::uint8_t kBlankFlashProtect = 0xFF, kAllProtected = 0x00;
constexpr int kTicks = 200;

std::string Settings(const std::vector<std::string>& foreign, const Dice&) {
  std::string text = "[config]\nport=COM1\nSecurityCheck=1\ncompiler=32\n";
  for (const std::string& line : foreign) text += line + "\n";
  return text;
}

}  // namespace

Bench::Bench(Dice& drawn, const std::string& where, bool verbose)
    : dice(drawn),
      is_ql(dice.OneIn(4)),
      faults(DrawFaults(dice)),
      folder(where),
      foreign_settings{"; kept by hand",    "elsewhere=1", "[other]",
                       "Key = \" value \"", "[window]",    "client=1,2,3,4,0"},
      port(is_ql ? simulator::Ql() : simulator::Gp32()),
      settings((base::ReplaceFile(folder + "/brevant.ini", Settings(foreign_settings, dice)),
                folder + "/brevant.ini")),
      debugger({.port = port,
                .clock = port,
                .settings = settings,
                .ui = user,
                .events = events,
                .start_up_directory = folder}),
      watch(open, table, {debugger.memory, debugger.debug_info, debugger.frame, debugger.activity}),
      verbose_(verbose) {
  report.faults = FaultsText(faults);
  settings.Override(base::keys::kDevice, is_ql ? "1" : "0");
  settings.Override(base::keys::kHardwareBreak, dice.OneIn(2) ? "1" : "0");
  user.agrees = !dice.OneIn(8);
  if (dice.OneIn(8)) user.cancels_after = dice.Pick(20);

  simulator::Board& board = port.target.board();
  if (!is_ql) {
    for (const images::Block& block : images::ReadImageFile(kProgram + ".s19").ToImage().Blocks()) {
      board.Load(block.address, block.bytes);
    }
    debugger.LoadSymbols(kProgram + ".cdb");
  }
  if (!dice.OneIn(4)) board.Load(devices::kIrqVector, kStopVector);
  // Without high voltage on IRQ the protection of flash counts.
  if (dice.OneIn(8)) {
    board.mcu().Poke(debugger.memory.device().flash.flbpr, kAllProtected);
    board.mcu().SetVtst(false);
  }
  link::SecurityCode code{};
  for (std::size_t i = 0; i < code.size(); ++i) {
    code[i] = Peek(devices::kSecurityCode + static_cast<Address>(i));
  }
  if (dice.OneIn(8)) code[0] = static_cast<std::uint8_t>(code[0] + 1);
  debugger.security.GiveForSession(code);
}

void Bench::Say(std::string_view what) const {
  if (verbose_) std::printf("%.*s\n", static_cast<int>(what.size()), what.data());
}

void Bench::Require(bool holds, const std::string& otherwise) {
  if (holds) return;
  report.violations.push_back(act_ + ": " + otherwise);
  Say("  VIOLATION " + otherwise);
}

void Bench::Claim(bool holds, const std::string& claim) {
  ++report.claims;
  Say("  claims: " + claim);
  if (!holds && !ResetUnnoticed()) Require(false, claim);
}

bool Bench::ResetUnnoticed() {
  if (!Holds(faults, simulator::FaultKind::ResetMcu)) return false;
  if (Reached()) debugger.memory.ReadStackPointer();
  return !Reached();
}

bool Bench::AnswersAreSound() const {
  return std::ranges::none_of(faults, [](const simulator::Fault& fault) {
    return fault.kind == simulator::FaultKind::FlipReply ||
           fault.kind == simulator::FaultKind::LoseReply ||
           fault.kind == simulator::FaultKind::ExtraByte;
  });
}

bool Bench::BoardHolds(Address address, base::Bytes bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (Peek(base::Low16(address + static_cast<Address>(i))) != bytes[i]) return false;
  }
  return true;
}

std::vector<std::uint8_t> Bench::SomeBytes(int most) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(1 + dice.Pick(most)));
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(dice.Pick(256));
  return bytes;
}

bool Bench::Connect() {
  act_ = "connect";
  Say("faults" + report.faults + (is_ql ? ", ql" : ", gp32") +
      (debugger.breakpoints.HardwareBreakMode() ? "" : ""));
  port.target.SetFaultPlan(faults);
  port.Allow(kLongestAct);
  const link::ConnectResult result =
      debugger.Start(dice.OneIn(2) ? debugger::OtherCodes::Try : debugger::OtherCodes::Leave);
  Settle();
  const bool connected = debugger::IsConnected(result);
  Require(connected || !user.messages.empty(), "not connected, and nobody is told");
  Require(HasFaults() || connected, "no connection on a sound line");
  if (!connected) return false;
  if (debugger.security.passed()) {
    Claim(port.target.board().mcu().security_passed(), "security passed");
  }
  CheckStandstill();
  return true;
}

void Bench::Do(std::string_view name, const std::function<void()>& act) {
  act_ = name;
  Say(act_);
  events.stops.clear();
  user.messages.clear();
  debugger.memory.TakeDamage();
  port.Allow(kLongestAct);
  const std::int64_t before = port.NowMs();
  act();
  Settle();
  report.longest_ms = std::max<long long>(report.longest_ms, port.NowMs() - before);
  if (verbose_) {
    for (const base::Message& message : user.messages) Say("  said: " + message.text);
    for (const base::Stop& stop : events.stops) Say("  stop: " + base::StopText(stop));
  }
  Require(HasFaults() || Reached(), "the link is lost on a sound line");
  CheckStandstill();
}

void Bench::Settle() {
  for (int ticks = 0; ticks < kTicks && debugger.Busy(); ++ticks) {
    port.Sleep(std::chrono::milliseconds(10));
    debugger.Tick();
  }
  // A flash job ends by itself.
  while (debugger.flash.running()) {
    port.Sleep(std::chrono::milliseconds(10));
    debugger.Tick();
  }
  if (debugger.Busy()) debugger.run_control.Stop();
  if (debugger.Busy()) {
    debugger.Reset();
    code_in_ram = false;
  }
  Require(!debugger.Busy() || HasFaults(), "still busy after a reset");
}

void Bench::CheckStandstill() {
  if (!Reached() || debugger.Busy()) return;
  const auto& stop = debugger.run_control.last_stop();
  using enum base::StopReason;
  const bool doubted = stop && (stop->reason == LinkLost || stop->reason == NotRecovered ||
                                stop->reason == BadStack);
  if (doubted) return;
  Claim(!port.target.board().running(), "the target stands still");
  CheckRegisters();
}

void Bench::CheckRegisters() {
  const control::RegisterFrame& frame = debugger.frame;
  const Address base = base::Low16(port.target.board().mcu().cpu().sp + 1u);
  Claim(frame.SP == base, base::Format("SP %04x, is %04x", frame.SP, base));
  if (debugger.memory.KindOf(base) != devices::MemoryKind::Ram) return;
  const auto word = [&](Address high, Address low) {
    return base::Word(Peek(base + high), Peek(base + low));
  };
  Claim(frame.PC == word(4, 5), base::Format("PC %04x, is %04x", frame.PC, word(4, 5)));
  Claim(frame.HX == word(0, 3), base::Format("HX %04x, is %04x", frame.HX, word(0, 3)));
  Claim(frame.A == Peek(base + 2), base::Format("A %02x, is %02x", frame.A, Peek(base + 2)));
  Claim(frame.CCR == Peek(base + 1), base::Format("CCR %02x, is %02x", frame.CCR, Peek(base + 1)));
}

}  // namespace brevant::campaign
