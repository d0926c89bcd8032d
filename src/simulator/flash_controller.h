// SPDX-License-Identifier: MIT
// The flash control register and the sequences behind it. A sequence takes effect as a whole, when
// the high voltage is switched off as the data sheet asks; one that breaks a rule leaves the array
// as it was and is counted. Programming outside the selected row and pulses longer than the data
// sheet allows are counted too, but their data are taken.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "base/address.h"
#include "simulator/device.h"

namespace brevant::simulator {

namespace flcr {
inline constexpr std::uint8_t kPgm = 1, kErase = 2, kMass = 4, kHven = 8;
}  // namespace flcr

// Shortest (and for a program pulse longest) times in bus cycles at 2.4576 MHz.
namespace flash_timing {
inline constexpr std::uint64_t kNvs = 25;          // 10 us, selection to high voltage
inline constexpr std::uint64_t kPgs = 13;          // 5 us, high voltage to the first byte
inline constexpr std::uint64_t kProgram = 74;      // 30 us
inline constexpr std::uint64_t kProgramMax = 98;   // 40 us
inline constexpr std::uint64_t kNvh = 13;          // 5 us, end of pulse to high voltage off
inline constexpr std::uint64_t kNvhMass = 246;     // 100 us
inline constexpr std::uint64_t kErase = 2458;      // 1 ms
inline constexpr std::uint64_t kMassErase = 9831;  // 4 ms
}  // namespace flash_timing

enum class FlashFault {
  None,
  Order,         // steps missing or in another order
  BothModes,     // PGM and ERASE at once
  TooShort,      // a step came before its time
  Protected,     // the block protect register covers the address
  RanFromFlash,  // code was fetched from the array under high voltage
  Locked,        // security failed: only a mass erase selected through FLBPR is let through
};

struct FlashDiagnostics {
  std::uint64_t refused = 0;  // sequences that broke a rule
  FlashFault last_fault = FlashFault::None;
  std::uint64_t ignored_writes = 0;  // writes to flash addresses outside any sequence
  std::uint64_t outside_row = 0;     // bytes programmed outside the selected row
  std::uint64_t long_pulses = 0;     // bytes under the program pulse for more than 40 us
  bool operator==(const FlashDiagnostics&) const = default;
};

class FlashController {
 public:
  // What the controller needs to know of the rest of the chip at each step.
  struct Surroundings {
    const Device& device;
    std::uint64_t now;    // bus cycles
    std::uint8_t flbpr;   // the byte stored there
    bool protection_off;  // high voltage on IRQ
    bool security_passed;
  };
  // Bytes that have become true in the array; programmed ones still have to be ANDed.
  struct Effect {
    enum class Kind { Nothing, Program, ErasePage, EraseAll } kind = Kind::Nothing;
    base::Address address = 0;  // any address of the page
    std::vector<std::pair<base::Address, std::uint8_t>> bytes;
  };

  void Reset();
  std::uint8_t control() const { return control_; }
  bool high_voltage() const { return (control_ & flcr::kHven) != 0; }
  Effect WriteControl(std::uint8_t value, const Surroundings& s);
  void OnFlbprRead();
  void OnFlashWrite(base::Address address, std::uint8_t value, const Surroundings& s);
  void OnFlashFetch();

  const FlashDiagnostics& diagnostics() const { return diagnostics_; }

  bool operator==(const FlashController&) const = default;

 private:
  enum class Step {
    Idle,
    Armed,     // PGM or ERASE set
    Ready,     // and FLBPR read
    Selected,  // and an address written
    Pulse,     // HVEN set
    Hold,      // PGM or ERASE cleared again, HVEN still set
    Broken,    // counted; its remaining steps are neither obeyed nor counted again
  };
  void Refuse(FlashFault fault);
  void RaiseVoltage(std::uint8_t mode, const Surroundings& s);
  void EndPulse(const Surroundings& s);
  Effect LowerVoltage(const Surroundings& s, std::uint8_t value);
  bool EndProgramPulse(std::uint64_t now);

  std::uint8_t control_ = 0;
  Step step_ = Step::Idle;
  std::uint8_t mode_ = 0;  // PGM, ERASE, MASS as the sequence began
  base::Address selected_ = 0;
  std::uint64_t since_ = 0;  // begin of the present step or program pulse
  bool pulse_running_ = false;
  std::vector<std::pair<base::Address, std::uint8_t>> staged_;
  FlashDiagnostics diagnostics_;
};

}  // namespace brevant::simulator
