// SPDX-License-Identifier: MIT
// Everything on the MCU's address bus but the CPU: memories, ports, timers, SCI, flash, break and
// reset registers, and the count of bus cycles that they live by. A value: a copy is a snapshot.
//
// Plain memory is read and written through a table of 64-byte pages; only pages with side effects
// take the slow way. What the slow way changes may concern the execution loop (an interrupt
// enabled, a break address moved): it then sets horizon to 0, and the loop comes back to look.
#pragma once

#include <array>
#include <cstdint>

#include "base/address.h"
#include "simulator/always_inline.h"
#include "simulator/device.h"
#include "simulator/flash_controller.h"
#include "simulator/sci.h"
#include "simulator/timer.h"

namespace brevant::simulator {

// Bits of the reset status register.
enum class ResetCause : std::uint8_t {
  PowerOn = 0x80,
  Pin = 0x40,
  Cop = 0x20,
  IllegalOpcode = 0x10,
  IllegalAddress = 0x08,
};

// The IRQ pin and INTSCR.
struct ExternalInterrupt {
  bool low = false;
  bool latched = false;  // a falling edge that was not acknowledged yet
  bool masked = false;
  bool level = false;  // MODE: the low level counts too
  bool requested() const { return !masked && (latched || (level && low)); }
  bool operator==(const ExternalInterrupt&) const = default;
};

struct BreakModule {
  base::Address address = 0;  // BRKH:BRKL
  bool enabled = false;       // BRKE
  bool active = false;        // BRKA
  bool operator==(const BreakModule&) const = default;
};

class Bus {
 public:
  static constexpr int kMaxPorts = 5;
  // Interrupt sources are numbered 1 (IRQ) to 16 as in INT1-3: a lower number goes first.
  static constexpr int kInterruptSources = 16;
  static constexpr base::Address InterruptVector(int source) {
    return 0xFFFC - 2 * static_cast<base::Address>(source);
  }

  explicit Bus(const Device& device);

  // All registers as after a reset; memory is untouched. The flag of the cause is set in SRSR,
  // which a power-on reset clears first.
  void Reset(ResetCause cause);
  // The RAM contents that follow a loss of power.
  void ScrambleRam();

  const Device& device() const { return *device_; }

  // Bus accesses at the present cycle, side effects included. Unmapped addresses read $FF; flash
  // reads $AD until security has passed.
  BREVANT_ALWAYS_INLINE std::uint8_t Read(base::Address address) {
    const base::Address a = base::Low16(address);
    return (pages_[a / kPageSize] & kFastRead) != 0 ? memory_[a] : ReadSlow(a);
  }
  BREVANT_ALWAYS_INLINE void Write(base::Address address, std::uint8_t value) {
    const base::Address a = base::Low16(address);
    if ((pages_[a / kPageSize] & kFastWrite) != 0) {
      memory_[a] = value;
    } else {
      WriteSlow(a, value);
    }
  }
  // No side effects. Poke reaches flash and ROM as well; in registers it changes plain ones only.
  std::uint8_t Peek(base::Address address) const;
  void Poke(base::Address address, std::uint8_t value);

  // Whether an opcode may be fetched here; tells the flash controller of a fetch from the array.
  bool Fetchable(base::Address address) {
    return (pages_[address / kPageSize] & kFastFetch) != 0 || FetchableSlow(address);
  }
  // An instruction's bytes as they stand: no side effects even where registers follow the code.
  std::uint8_t CodeByte(base::Address address) const { return memory_[base::Low16(address)]; }

  // Brings timers and SCI up to the present cycle.
  void ServicePeripherals();
  // The next cycle at which a peripheral interrupt or the COP will want attention; kNever if none.
  std::uint64_t NextEvent() const;
  bool CopExpired() const;
  // The source that would be served next, 0 if none.
  int PendingInterrupt() const;
  void AcknowledgeInterrupt(int source);

  // Lets time pass up to a cycle without bus accesses.
  enum class Clocks {
    Everything,
    ButCop,   // the COP stands still
    Nothing,  // and the timers too
  };
  void AdvanceTo(std::uint64_t to, Clocks clocks);

  void SetSecurityPassed(bool passed);
  bool security_passed() const { return security_passed_; }
  void SetIrqLow(bool low);
  bool irq_low() const { return irq_.low; }
  // What the outside drives onto a port's input pins; all high to begin with.
  void SetPins(int port, std::uint8_t levels) { pins_[static_cast<std::size_t>(port)] = levels; }
  void SetVtst(bool present);
  bool vtst() const { return vtst_; }
  bool StopEnabled() const;  // CONFIG1

  std::uint64_t cycle = 0;
  std::uint64_t horizon = 0;  // the execution loop looks up when cycle reaches it
  bool in_break = false;      // break state: timer flags are protected unless BCFE is set
  BreakModule break_module;

  const FlashController& flash() const { return flash_; }
  Sci& sci() { return sci_; }
  const Sci& sci() const { return sci_; }

  bool operator==(const Bus&) const = default;

 private:
  static constexpr base::Address kPageSize = 64;
  static constexpr std::uint8_t kFastRead = 1, kFastWrite = 2, kFastFetch = 4;

  void MapPages();
  std::uint8_t ReadSlow(base::Address a);
  void WriteSlow(base::Address a, std::uint8_t value);
  bool FetchableSlow(base::Address a);
  bool IsRom(base::Address a) const;
  bool IsRegister(base::Address a) const;
  std::uint8_t ReadRegister(base::Address a);
  std::uint8_t RegisterValue(base::Address a) const;
  std::uint8_t PlainValue(base::Address a) const;
  std::uint8_t PortValue(int port) const;
  void WriteRegister(base::Address a, std::uint8_t value);
  void WriteConfig(base::Address a, std::uint8_t value);
  void WriteFlashControl(std::uint8_t value);
  void EraseFlash(base::Address first, base::Address last);
  FlashController::Surroundings FlashSurroundings() const;
  std::uint64_t TimerTime() const { return cycle - timers_stopped_; }
  std::uint32_t InterruptFlags() const;
  bool FlagsProtected() const;
  std::uint64_t CopDeadline() const;

  const Device* device_;  // a constant row
  std::array<std::uint8_t, 0x10000 / kPageSize> pages_{};
  // Memories and plain registers; $FF where nothing is mapped.
  std::array<std::uint8_t, 0x10000> memory_{};
  std::array<Timer, 2> timers_;
  std::uint64_t timers_stopped_ = 0;  // cycles during which timer time stood still
  Sci sci_;
  FlashController flash_;
  ExternalInterrupt irq_;
  std::array<std::uint8_t, kMaxPorts> pins_{0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  std::array<bool, 2> config_written_{};
  std::uint8_t reset_status_ = 0;  // SRSR
  std::uint64_t cop_cleared_at_ = 0;
  bool vtst_ = true;  // high voltage on IRQ: COP off, block protection lifted
  bool security_passed_ = false;
};

}  // namespace brevant::simulator
