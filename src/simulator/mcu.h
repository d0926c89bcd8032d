// SPDX-License-Identifier: MIT
// The simulated microcontroller without its board: CPU and bus, resets, interrupts, the break
// module and the way into the monitor and out of it. The monitor program itself is the board's: the
// MCU only says that it has been entered. A value; a copy is a snapshot, and two equal MCUs stay
// equal when the same is done to both.
//
// Time is counted in bus cycles (2.4576 MHz, 256 to a bit on the wire) from the MCU's making; it
// never goes back, over resets either.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/bus.h"
#include "simulator/cpu.h"
#include "simulator/device.h"

namespace brevant::simulator {

enum class RunEnd {
  CycleLimit,         // still running
  SoftwareInterrupt,  // SWI: in the monitor now, the frame is stacked
  Break,              // break module: the same
  Reset,  // the CPU has been reset (see reset_cause) and stands at the monitor's reset entry
};

class Mcu {
 public:
  static constexpr std::uint64_t kBusHz = 2'457'600;
  // Where the monitor ROM is entered after a reset, and its stop-on-IRQ handler.
  static constexpr base::Address kMonitorResetEntry = 0xFE20;
  static constexpr base::Address kMonitorIrqHandler = 0xFE27;

  // Flash is erased; otherwise as after PowerOnReset.
  explicit Mcu(const Device& device);

  // Loss of power and its return: RAM holds a fixed pattern, flash is kept, security must be passed
  // anew. The CPU stands at the monitor's reset entry and is not in the monitor until EnterMonitor.
  void PowerOnReset();
  // Any other reset: RAM and the state of security are kept.
  void Reset(ResetCause cause);

  // What the monitor ROM does on every entry: stacks PCL, PCH, X, A, CCR, sets I, pushes H. Run
  // does it by itself for SWI and break; the board calls it once its reset sequence is over.
  void EnterMonitor();
  // The monitor's RUN: PULH, RTI. A break address equal to the resumed PC is passed once.
  void ResumeFromMonitor();
  bool in_monitor() const { return in_monitor_; }
  // Executes user code from the present PC until the cycle counter reaches the limit (the last
  // instruction may overshoot it) or something enters the monitor or resets. Not to be called while
  // in the monitor.
  RunEnd Run(std::uint64_t until_cycle);
  // Lets time pass without executing: the monitor is at work, or the MCU is held. The timers run,
  // except in the break state.
  void AdvanceTo(std::uint64_t cycle);

  // Bus accesses with all their side effects; unmapped addresses read $FF and ignore writes, flash
  // reads $AD until security has passed.
  std::uint8_t Read(base::Address address) { return bus_.Read(address); }
  void Write(base::Address address, std::uint8_t value) { bus_.Write(address, value); }
  // No side effects, for loaders and tests. Poke writes flash and ROM directly.
  std::uint8_t Peek(base::Address address) const { return bus_.Peek(address); }
  void Poke(base::Address address, std::uint8_t value) { bus_.Poke(address, value); }

  std::uint64_t cycle() const { return bus_.cycle; }
  const Device& device() const { return bus_.device(); }
  Cpu& cpu() { return cpu_; }
  const Cpu& cpu() const { return cpu_; }
  // Break state: entered by the break module, not by SWI.
  bool in_break() const { return bus_.in_break; }
  bool waiting() const { return sleep_ != Sleep::Awake; }
  // Of the last reset.
  ResetCause reset_cause() const { return reset_cause_; }

  void SetIrqLow(bool low) { bus_.SetIrqLow(low); }
  bool irq_low() const { return bus_.irq_low(); }
  // High voltage on IRQ (present to begin with): block protection lifted, COP off.
  void SetVtst(bool present) { bus_.SetVtst(present); }
  bool vtst() const { return bus_.vtst(); }
  void SetSecurityPassed(bool passed) { bus_.SetSecurityPassed(passed); }
  bool security_passed() const { return bus_.security_passed(); }
  // What the outside drives onto a port's input pins (0 is port A); all high to begin with.
  void SetPins(int port, std::uint8_t levels) { bus_.SetPins(port, levels); }

  const FlashDiagnostics& flash_diagnostics() const { return bus_.flash().diagnostics(); }
  // What the program has sent through the SCI.
  const std::vector<std::uint8_t>& sci_log() const { return bus_.sci().log(); }
  void ClearSciLog() { bus_.sci().ClearLog(); }

  bool operator==(const Mcu&) const = default;

 private:
  enum class Sleep : std::uint8_t { Awake, Wait, Stop };

  void LoadMonitorRom();
  base::Address VectorAt(base::Address address);
  RunEnd ResetBy(ResetCause cause);
  RunEnd EnterByBreak();
  bool BreakIsDue();
  bool ServeInterrupt();
  void SleepUntil(std::uint64_t until_cycle);
  Exit Execute(std::uint64_t until_cycle);
  Exit ExecuteOne();

  Bus bus_;
  Cpu cpu_;
  Sleep sleep_ = Sleep::Awake;
  bool in_monitor_ = false;
  bool pass_break_once_ = false;  // resumed at the break address
  ResetCause reset_cause_ = ResetCause::PowerOn;
};

}  // namespace brevant::simulator
