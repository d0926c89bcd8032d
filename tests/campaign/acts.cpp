// SPDX-License-Identifier: MIT
#include "campaign/acts.h"

#include <algorithm>
#include <array>

#include "base/files.h"
#include "base/text_format.h"
#include "flash/flash_commands.h"
#include "flash/flash_image.h"
#include "images/image_writer.h"
#include "load/confirmed_read.h"
#include "load/verify.h"

namespace brevant::campaign {
namespace {

using base::Address;
using control::Calls;

constexpr auto kReadOn = [](long, long) { return true; };

// Whether bytes that were written have been seen there.
bool Seen(Bench& bench, Address address, base::Bytes bytes) {
  const bool differs = bench.debugger.memory.WriteAndLook(address, bytes).has_value();
  const bool doubted = bench.debugger.memory.TakeDamage().has_value();
  if (differs || doubted || !bench.Reached()) return false;
  bench.Claim(bench.BoardHolds(address, bytes), base::Format("written at %04x", address));
  return true;
}

void LoadLoop(Bench& bench) {
  bench.code_in_ram = Seen(bench, bench.free_ram(), kLoop);
  if (!bench.code_in_ram) return;
  bench.debugger.frame.SetPC(bench.free_ram());
}

// Nothing that was planted stays behind in a program that has stopped.
void CheckLoop(Bench& bench) {
  if (!bench.code_in_ram || !bench.Reached() || bench.debugger.Busy()) return;
  if (bench.debugger.memory.TakeDamage()) return;
  bench.Claim(bench.BoardHolds(bench.free_ram(), kLoop), "the program in RAM is as it was");
}

// What one instruction really does, from the same state.
struct StepOracle {
  explicit StepOracle(Bench& bench) : mcu(bench.port.target.board().mcu()) {
    mcu.ResumeFromMonitor();
    mcu.Run(mcu.cycle() + 1);
  }
  simulator::Mcu mcu;
};

void Step(Bench& bench) {
  debugger::Debugger& d = bench.debugger;
  const bool possible = bench.Reached() && !bench.port.target.board().running() &&
                        bench.port.target.board().mcu().in_monitor();
  std::optional<StepOracle> oracle;
  if (possible) oracle.emplace(bench);
  d.run_control.StepCommand(Calls::Follow);
  bench.Settle();
  CheckLoop(bench);
  if (!oracle || !bench.Reached() || bench.events.stops.empty()) return;
  const base::Stop& stop = bench.events.stops.back();
  if (stop.reason != base::StopReason::StepDone || oracle->mcu.in_monitor()) return;
  const simulator::Cpu& cpu = oracle->mcu.cpu();
  bench.Claim(d.frame.PC == cpu.pc && d.frame.A == cpu.a && d.frame.HX == cpu.hx(),
              base::Format("one step: PC %04x A %02x HX %04x, is PC %04x A %02x HX %04x",
                           d.frame.PC, d.frame.A, d.frame.HX, cpu.pc, cpu.a, cpu.hx()));
}

void StepOver(Bench& bench) {
  for (int steps = bench.dice.Pick(4); steps >= 0; --steps) {
    bench.debugger.run_control.StepCommand(Calls::StepOver);
    bench.Settle();
  }
  CheckLoop(bench);
}

void GoAndWait(Bench& bench) {
  debugger::Debugger& d = bench.debugger;
  if (bench.code_in_ram) d.breakpoints.AddBreakpoint(bench.free_ram() + 4);
  const bool has = d.breakpoints.count() > 0;
  d.run_control.Go();
  bench.Settle();
  if (has && !bench.events.stops.empty() && bench.Reached()) {
    const base::Stop& stop = bench.events.stops.back();
    if (stop.reason == base::StopReason::Breakpoint) {
      bench.Claim(d.breakpoints.Has(stop.pc) || !stop.detail.empty(), "stopped at a breakpoint");
    }
  }
  CheckLoop(bench);
  d.breakpoints.Clear();
}

void GoAndStop(Bench& bench) {
  bench.debugger.run_control.Go();
  for (int ticks = bench.dice.Pick(5); ticks > 0; --ticks) {
    bench.port.Sleep(std::chrono::milliseconds(10));
    bench.debugger.Tick();
  }
  const base::Stop stop = bench.debugger.run_control.Stop();
  if (stop.reason == base::StopReason::UserBreak && bench.Reached()) {
    bench.Claim(!bench.port.target.board().running(), "stopped by the user");
  }
  CheckLoop(bench);
}

void RunTo(Bench& bench) {
  const Address place = bench.code_in_ram ? bench.free_ram() + 3 : bench.debugger.frame.PC + 2;
  bench.debugger.run_control.RunToAddress(place);
  bench.Settle();
  if (!bench.events.stops.empty() && bench.Reached()) {
    const base::Stop& stop = bench.events.stops.back();
    if (stop.reason == base::StopReason::PlaceReached && stop.detail.empty()) {
      bench.Claim(stop.pc == base::Low16(place), "reached the place");
    }
  }
  CheckLoop(bench);
}

void StepLine(Bench& bench) {
  constexpr control::LineStepKind kKinds[] = {
      control::LineStepKind::Into, control::LineStepKind::Over, control::LineStepKind::Out};
  bench.debugger.line_step.Start(kKinds[bench.dice.Pick(3)]);
}

void NStep(Bench& bench) {
  bench.debugger.n_step.Start();
}

void Trace(Bench& bench) {
  bench.debugger.trace.Start(5 + bench.dice.Pick(30));
}

void Fill(Bench& bench) {
  const Address from = bench.SomeRam(), to = bench.last_free_ram();
  const auto word = static_cast<std::uint16_t>(bench.dice.Pick(0x10000));
  bench.code_in_ram = false;
  const auto outcome = bench.debugger.block.Run(views::BlockOperation::Fill(from, to, word));
  if (outcome != views::BlockOutcome::Done) {
    return bench.Require(!bench.user.messages.empty(), "not filled, and nobody is told");
  }
  const std::array<std::uint8_t, 2> bytes{base::HighByte(word), base::LowByte(word)};
  for (Address at = from; at < to; at += 2) {
    bench.Claim(bench.BoardHolds(at, bytes), base::Format("filled at %04x", at));
  }
}

void Move(Bench& bench) {
  constexpr Address kCount = 24;
  const Address from = bench.flash(), to = bench.SomeRam() & ~1u;
  std::vector<std::uint8_t> bytes;
  for (Address i = 0; i < kCount; ++i) bytes.push_back(bench.Peek(from + i));
  bench.code_in_ram = false;
  const auto move = views::BlockOperation::Move(from, from + kCount - 1, to);
  if (bench.debugger.block.Run(move) == views::BlockOutcome::Done) {
    bench.Claim(!bench.debugger.security.passed() || bench.BoardHolds(to, bytes), "moved");
  } else {
    bench.Require(!bench.user.messages.empty(), "not moved, and nobody is told");
  }
}

void WriteSome(Bench& bench) {
  bench.code_in_ram = false;
  Seen(bench, bench.SomeRam(), bench.SomeBytes(16));
}

bool BoardHolds(Bench& bench, const images::Image& image) {
  return std::ranges::all_of(image.Blocks(), [&](const images::Block& block) {
    return bench.BoardHolds(block.address, block.bytes);
  });
}

void Load(Bench& bench) {
  const std::string path = bench.folder + "/image.s19";
  images::Image image;
  image.Put(bench.SomeRam(), bench.SomeBytes(16));
  if (bench.dice.OneIn(2)) image.Put(bench.flash() + 0x40, bench.SomeBytes(40));
  base::ReplaceFile(path, images::SRecordText(image));
  bench.code_in_ram = false;
  const load::LoadResult result = bench.debugger.loader.LoadImage(path);
  if (result.outcome == load::LoadOutcome::Loaded) {
    bench.Claim(BoardHolds(bench, image), "loaded");
  } else {
    bench.Require(!bench.user.messages.empty() || result.outcome == load::LoadOutcome::Cancelled,
                  "not loaded, and nobody is told");
  }
}

void Verify(Bench& bench) {
  images::Image image;
  const Address from = bench.dice.OneIn(2) ? bench.SomeRam() : bench.flash();
  for (Address at = from; at < from + 30; ++at) image.Put(at, std::array{bench.Peek(at)});
  if (bench.dice.OneIn(2)) image.Put(from + 7, bench.SomeBytes(1));
  const bool equal = BoardHolds(bench, image);
  const auto result = load::Verify(bench.debugger.memory, image, kReadOn, &bench.debugger.crc);
  const bool sound = !bench.debugger.memory.TakeDamage() && bench.Reached();
  if (!sound || !bench.debugger.security.passed()) return;
  if (result.outcome == load::VerifyOutcome::Equal) bench.Claim(equal, "verified");
  if (result.outcome == load::VerifyOutcome::Different) bench.Claim(!equal, "differs");
}

void ReadOut(Bench& bench) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(40 + bench.dice.Pick(200)));
  const auto read =
      load::ReadConfirmed(bench.debugger.memory, bench.debugger.crc, bench.flash(), bytes, kReadOn);
  const bool sound = !bench.debugger.memory.TakeDamage() && bench.debugger.security.passed();
  if (read.range == load::RangeResult::Complete && sound && bench.Reached()) {
    bench.Claim(bench.BoardHolds(bench.flash(), bytes), "read out");
  }
}

// Whether the flash job has come to what it was to come to.
bool JobIsDone(Bench& bench, bool started) {
  if (started) bench.Settle();
  bench.code_in_ram = false;
  const bool done = bench.debugger.flash.status().outcome == flash::FlashOutcome::Done;
  bench.Require(done || !bench.user.messages.empty(), "flash has failed, and nobody is told");
  return done;
}

void CheckBlank(Bench& bench, bool started) {
  if (!JobIsDone(bench, started)) return;
  for (const devices::MemoryRange& range : bench.debugger.flash.status().to_erase) {
    for (Address at = range.first; at <= range.last; ++at) {
      const Address trim = bench.debugger.memory.device().flash.trim;
      if (at == trim && trim != 0) continue;
      if (bench.Peek(at) == 0xFF) continue;
      return bench.Claim(false, base::Format("erased at %04x", at));
    }
  }
  bench.Claim(true, "erased");
}

void Erase(Bench& bench) {
  const Address from = bench.flash() + 0x80 * static_cast<Address>(bench.dice.Pick(4));
  bench.port.target.board().Load(from + 5, bench.SomeBytes(30));
  CheckBlank(bench, flash::EraseFlashRange(bench.debugger.flash, from, from + 0x17F));
}

void MassErase(Bench& bench) {
  CheckBlank(bench, flash::MassEraseCommand(bench.debugger.flash));
}

void ProgramSome(Bench& bench) {
  const Address at = bench.flash() + 0x200 + static_cast<Address>(bench.dice.Pick(0x80));
  const std::vector<std::uint8_t> bytes = bench.SomeBytes(100);
  const bool started = flash::ProgramFlashLocations(bench.debugger.flash, at, bytes);
  if (JobIsDone(bench, started)) bench.Claim(bench.BoardHolds(at, bytes), "programmed");
}

images::Image SomeFlash(Bench& bench) {
  images::Image image;
  for (int blocks = 1 + bench.dice.Pick(3); blocks > 0; --blocks) {
    image.Put(bench.flash() + static_cast<Address>(bench.dice.Pick(0x300)), bench.SomeBytes(120));
  }
  return image;
}

void ProgramFile(Bench& bench) {
  const images::Image image = SomeFlash(bench);
  const std::string path = bench.folder + "/flash.s19";
  base::ReplaceFile(path, images::SRecordText(image));
  const bool started = flash::ProgramFlashFile(bench.debugger.flash, path);
  if (JobIsDone(bench, started)) bench.Claim(BoardHolds(bench, image), "file programmed");
}

void FlashAll(Bench& bench) {
  const images::Image image = SomeFlash(bench);
  bench.code_in_ram = false;
  flash::FlashImage job(bench.debugger.flash.surroundings(), bench.debugger.crc);
  const flash::FlashImageResult result = job.Run(image);
  if (result.outcome == flash::FlashOutcome::Done) {
    bench.Claim(BoardHolds(bench, image), "image in flash");
  } else {
    bench.Require(!bench.user.messages.empty(), "flash image has failed, and nobody is told");
  }
}

void SetRegisters(Bench& bench) {
  control::RegisterFrame& frame = bench.debugger.frame;
  if (!bench.Reached() || !frame.StackIsRam()) return;
  frame.Edit(control::Register::HX, base::Format("%04x", bench.dice.Pick(0x10000)));
  frame.Edit(control::Register::A, base::Format("%02x", bench.dice.Pick(0x100)));
  if (bench.dice.OneIn(3)) {
    const Address sp = bench.is_ql ? 0xF0 : 0x230;
    if (frame.Edit(control::Register::SP, base::Format("%04x", sp)) && bench.Reached()) {
      bench.Claim(bench.port.target.board().mcu().cpu().sp + 1u == sp - 5, "SP is set");
    }
  }
}

void Reset(Bench& bench) {
  bench.debugger.Reset();
  bench.code_in_ram = false;
}

void Restart(Bench& bench) {
  const std::size_t said = bench.user.messages.size();
  const bool connected = debugger::IsConnected(bench.debugger.Restart());
  bench.code_in_ram = false;
  bench.Require(connected || bench.user.messages.size() > said,
                "not connected, and nobody is told");
}

void Watch(Bench& bench) {
  if (!bench.table.full()) {
    bench.table.Insert({.address = bench.SomeRam(), .name = "here", .display = 'H', .width = 'B'});
  }
  if (bench.dice.OneIn(2)) bench.watch.Refresh();
  base::Generations now = bench.debugger.generations();
  now.settings += bench.table.generation();
  bench.open.Follow(now, bench.debugger.MonitorListens());
  if (!bench.Reached() || !bench.AnswersAreSound()) return;
  for (const views::WatchItem& item : bench.table.items()) {
    if (item.held != views::Held::Current) continue;
    bench.Claim((item.lengthOrValue & 0xFF) == bench.Peek(item.address),
                base::Format("watched at %04x", item.address));
  }
}

constexpr Act kRows[] = {
    {"loop into RAM", LoadLoop},
    {"loop into RAM", LoadLoop},
    {"step", Step},
    {"step", Step},
    {"step", Step},
    {"step over", StepOver},
    {"go and wait", GoAndWait},
    {"go and wait", GoAndWait},
    {"go and stop", GoAndStop},
    {"run to", RunTo},
    {"step by a line", StepLine},
    {"N-step", NStep},
    {"trace", Trace},
    {"fill", Fill},
    {"move", Move},
    {"write", WriteSome},
    {"load", Load},
    {"verify", Verify},
    {"read out", ReadOut},
    {"erase", Erase},
    {"mass erase", MassErase},
    {"program", ProgramSome},
    {"program file", ProgramFile},
    {"flash image", FlashAll},
    {"set registers", SetRegisters},
    {"reset", Reset},
    {"restart", Restart},
    {"watch", Watch},
};

}  // namespace

const std::span<const Act> kActs = kRows;

}  // namespace brevant::campaign
