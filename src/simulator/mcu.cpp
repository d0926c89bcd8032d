// SPDX-License-Identifier: MIT
#include "simulator/mcu.h"

#include <algorithm>
#include <array>

#include "isa/instruction_table.h"

namespace brevant::simulator {
namespace {

using base::Address;

constexpr Address kMonitorEntry = 0xFE30;  // of SWI and break
constexpr Address kMonitorExit = 0xFE2B;
constexpr Address kMonitorSwiVector = 0xFEFC, kMonitorResetVector = 0xFEFE;

constexpr std::array<std::uint8_t, 4> kIrqHandlerCode{
    0x2E, 0xFE,  // BIL *
    0x83,        // SWI
    0x80,        // RTI
};
constexpr std::array<std::uint8_t, 2> kExitCode{
    0x8A,  // PULH
    0x80,  // RTI
};
// The rest of the ROM: whoever strays into it ends in the monitor.
constexpr std::uint8_t kSwi = 0x83;

// Reset is held for 4096 + 32 crystal cycles after power-on and for 32 otherwise.
constexpr std::uint64_t kPowerOnCycles = 4128 / 2, kResetCycles = 32 / 2;
constexpr std::uint64_t kInterruptCycles = 9;
constexpr std::uint64_t kPushHCycles = 2;

}  // namespace

Mcu::Mcu(const Device& device) : bus_(device) {
  LoadMonitorRom();
  PowerOnReset();
}

void Mcu::LoadMonitorRom() {
  for (const Range& rom : {device().monitor_rom, device().auxiliary_rom}) {
    for (Address a = rom.first; a <= rom.last; ++a) Poke(a, kSwi);
  }
  const auto place = [this](Address at, base::Bytes bytes) {
    for (const std::uint8_t byte : bytes) Poke(at++, byte);
  };
  place(kMonitorIrqHandler, kIrqHandlerCode);
  place(kMonitorExit, kExitCode);
  place(kMonitorSwiVector, std::array{base::HighByte(kMonitorEntry), base::LowByte(kMonitorEntry)});
  place(kMonitorResetVector,
        std::array{base::HighByte(kMonitorResetEntry), base::LowByte(kMonitorResetEntry)});
}

Address Mcu::VectorAt(Address address) {
  const std::uint8_t high = bus_.Read(address);
  return base::Word(high, bus_.Read(address + 1));
}

void Mcu::PowerOnReset() {
  bus_.ScrambleRam();
  Reset(ResetCause::PowerOn);
}

void Mcu::Reset(ResetCause cause) {
  bus_.AdvanceTo(cycle() + (cause == ResetCause::PowerOn ? kPowerOnCycles : kResetCycles),
                 Bus::Clocks::Nothing);
  bus_.Reset(cause);
  cpu_.Reset(static_cast<std::uint16_t>(VectorAt(kMonitorResetVector)));
  sleep_ = Sleep::Awake;
  in_monitor_ = false;
  pass_break_once_ = false;
  reset_cause_ = cause;
}

RunEnd Mcu::ResetBy(ResetCause cause) {
  Reset(cause);
  return RunEnd::Reset;
}

void Mcu::EnterMonitor() {
  cpu_.StackForInterrupt(bus_);
  cpu_.Push(bus_, cpu_.h);
  cpu_.pc = static_cast<std::uint16_t>(VectorAt(kMonitorSwiVector));
  bus_.cycle += kPushHCycles;
  in_monitor_ = true;
}

void Mcu::ResumeFromMonitor() {
  in_monitor_ = false;
  bus_.in_break = false;
  cpu_.pc = kMonitorExit;
  for (std::size_t i = 0; i < kExitCode.size(); ++i) ExecuteOne();
  pass_break_once_ = bus_.break_module.enabled && cpu_.pc == bus_.break_module.address;
}

void Mcu::AdvanceTo(std::uint64_t cycle) {
  bus_.AdvanceTo(cycle, in_break() ? Bus::Clocks::Nothing : Bus::Clocks::ButCop);
}

RunEnd Mcu::Run(std::uint64_t until_cycle) {
  while (cycle() < until_cycle) {
    bus_.ServicePeripherals();
    if (bus_.CopExpired()) return ResetBy(ResetCause::Cop);
    if (BreakIsDue()) return EnterByBreak();
    if (ServeInterrupt()) continue;
    if (waiting()) {
      SleepUntil(until_cycle);
      continue;
    }
    switch (Execute(until_cycle)) {
      case Exit::Horizon:
      case Exit::NearBreak:
        break;
      case Exit::SoftwareInterrupt:
        EnterMonitor();
        return RunEnd::SoftwareInterrupt;
      case Exit::Wait:
        sleep_ = Sleep::Wait;
        break;
      case Exit::Stop:
        if (!bus_.StopEnabled()) return ResetBy(ResetCause::IllegalOpcode);
        sleep_ = Sleep::Stop;
        break;
      case Exit::IllegalOpcode:
        return ResetBy(ResetCause::IllegalOpcode);
      case Exit::IllegalAddress:
        return ResetBy(ResetCause::IllegalAddress);
    }
  }
  bus_.ServicePeripherals();
  return RunEnd::CycleLimit;
}

Exit Mcu::Execute(std::uint64_t until_cycle) {
  const BreakModule& module = bus_.break_module;
  const Address watch = module.enabled ? module.address : Cpu::kNoWatch;
  if (cpu_.interrupts_deferred || pass_break_once_ || watch - cpu_.pc < 4) return ExecuteOne();
  bus_.horizon = std::min(until_cycle, bus_.NextEvent());
  return cpu_.Execute(bus_, watch);
}

Exit Mcu::ExecuteOne() {
  const int length = isa::InstructionLength(bus_.CodeByte(cpu_.pc), bus_.CodeByte(cpu_.pc + 1u));
  const Address offset = base::Low16(bus_.break_module.address - cpu_.pc);
  pass_break_once_ = false;
  cpu_.interrupts_deferred = false;
  bus_.horizon = cycle() + 1;
  const Exit exit = cpu_.Execute(bus_, Cpu::kNoWatch);
  // A match on an operand byte breaks once the instruction is through.
  if (bus_.break_module.enabled && offset != 0 && offset < static_cast<Address>(length)) {
    bus_.break_module.active = true;
  }
  return exit;
}

bool Mcu::BreakIsDue() {
  BreakModule& module = bus_.break_module;
  if (module.enabled && cpu_.pc == module.address && !pass_break_once_ && !waiting()) {
    module.active = true;
  }
  return module.active;
}

RunEnd Mcu::EnterByBreak() {
  bus_.cycle += kInterruptCycles;
  bus_.in_break = true;
  EnterMonitor();
  return RunEnd::Break;
}

bool Mcu::ServeInterrupt() {
  const int source = bus_.PendingInterrupt();
  if (source == 0 || cpu_.flags.mask != 0 || cpu_.interrupts_deferred) return false;
  sleep_ = Sleep::Awake;
  bus_.cycle += kInterruptCycles;
  cpu_.StackForInterrupt(bus_);
  bus_.AcknowledgeInterrupt(source);
  cpu_.pc = static_cast<std::uint16_t>(VectorAt(Bus::InterruptVector(source)));
  return true;
}

void Mcu::SleepUntil(std::uint64_t until_cycle) {
  if (sleep_ == Sleep::Stop) {
    // Nothing but the IRQ pin, which moves between runs, ends STOP.
    bus_.AdvanceTo(until_cycle, Bus::Clocks::Nothing);
  } else {
    bus_.AdvanceTo(std::min(until_cycle, bus_.NextEvent()), Bus::Clocks::Everything);
  }
}

}  // namespace brevant::simulator
