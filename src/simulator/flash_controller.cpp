// SPDX-License-Identifier: MIT
#include "simulator/flash_controller.h"

namespace brevant::simulator {
namespace {

using namespace flcr;  // NOLINT(google-build-using-namespace)

bool Protected(const FlashController::Surroundings& s, std::uint8_t mode, base::Address selected) {
  if (s.protection_off || s.flbpr == 0xFF) return false;
  // A mass erase would take protected pages too.
  if ((mode & kMass) != 0) return true;
  const base::Address start = s.device.protect_base | static_cast<base::Address>(s.flbpr)
                                                          << s.device.protect_shift;
  return selected >= start;
}

}  // namespace

void FlashController::Reset() {
  control_ = 0;
  step_ = Step::Idle;
  staged_.clear();
}

void FlashController::Refuse(FlashFault fault) {
  ++diagnostics_.refused;
  diagnostics_.last_fault = fault;
  control_ &= static_cast<std::uint8_t>(~kHven);
  step_ = Step::Broken;
  staged_.clear();
}

FlashController::Effect FlashController::WriteControl(std::uint8_t value, const Surroundings& s) {
  value &= kPgm | kErase | kMass | kHven;
  if ((value & kPgm) != 0 && (value & kErase) != 0) {
    Refuse(FlashFault::BothModes);
    control_ = 0;
    return {};
  }
  if (high_voltage()) {
    if ((value & kHven) == 0) return LowerVoltage(s, value);
    if (value == control_) return {};
    if (step_ == Step::Pulse && (value & (kPgm | kErase)) == 0) {
      EndPulse(s);
      if (high_voltage()) control_ = value;
    } else {
      Refuse(FlashFault::Order);
    }
    return {};
  }
  const std::uint8_t mode = value & (kPgm | kErase | kMass);
  control_ = mode;
  if ((value & kHven) != 0) {
    if (step_ != Step::Broken) RaiseVoltage(mode, s);
  } else {
    mode_ = mode;
    step_ = (mode & (kPgm | kErase)) != 0 ? Step::Armed : Step::Idle;
  }
  return {};
}

void FlashController::RaiseVoltage(std::uint8_t mode, const Surroundings& s) {
  if (step_ != Step::Selected || mode != mode_) {
    Refuse(FlashFault::Order);
  } else if (s.now - since_ < flash_timing::kNvs) {
    Refuse(FlashFault::TooShort);
  } else if (Protected(s, mode_, selected_)) {
    Refuse(FlashFault::Protected);
  } else if (!s.security_passed && (mode_ != (kErase | kMass) || selected_ != s.device.flbpr)) {
    Refuse(FlashFault::Locked);
  } else {
    control_ |= kHven;
    step_ = Step::Pulse;
    since_ = s.now;
    pulse_running_ = false;
    staged_.clear();
  }
}

void FlashController::OnFlbprRead() {
  if (step_ == Step::Armed) step_ = Step::Ready;
}

void FlashController::OnFlashFetch() {
  if (high_voltage()) Refuse(FlashFault::RanFromFlash);
}

void FlashController::OnFlashWrite(base::Address address, std::uint8_t value,
                                   const Surroundings& s) {
  switch (step_) {
    case Step::Idle:
      ++diagnostics_.ignored_writes;
      return;
    case Step::Broken:
      return;
    case Step::Ready:
    case Step::Selected:
      selected_ = address;
      since_ = s.now;
      step_ = Step::Selected;
      return;
    case Step::Pulse:
      if ((mode_ & kPgm) != 0) {
        if (!EndProgramPulse(s.now)) return;
        const auto row_size = static_cast<base::Address>(s.device.row_size);
        if (address / row_size != selected_ / row_size) ++diagnostics_.outside_row;
        staged_.emplace_back(address, value);
        since_ = s.now;
        pulse_running_ = true;
        return;
      }
      [[fallthrough]];
    case Step::Armed:
    case Step::Hold:
      Refuse(FlashFault::Order);
  }
}

// The time since HVEN was set (before the first byte) or since the last byte was written.
bool FlashController::EndProgramPulse(std::uint64_t now) {
  const std::uint64_t elapsed = now - since_;
  if (elapsed < (pulse_running_ ? flash_timing::kProgram : flash_timing::kPgs)) {
    Refuse(FlashFault::TooShort);
    return false;
  }
  if (pulse_running_ && elapsed > flash_timing::kProgramMax) ++diagnostics_.long_pulses;
  return true;
}

void FlashController::EndPulse(const Surroundings& s) {
  if ((mode_ & kPgm) != 0) {
    if (!EndProgramPulse(s.now)) return;
  } else if (s.now - since_ <
             ((mode_ & kMass) != 0 ? flash_timing::kMassErase : flash_timing::kErase)) {
    Refuse(FlashFault::TooShort);
    return;
  }
  step_ = Step::Hold;
  since_ = s.now;
}

FlashController::Effect FlashController::LowerVoltage(const Surroundings& s, std::uint8_t value) {
  const bool mass = (mode_ & kMass) != 0;
  if (step_ != Step::Hold) {
    Refuse(FlashFault::Order);
  } else if (s.now - since_ < (mass ? flash_timing::kNvhMass : flash_timing::kNvh)) {
    Refuse(FlashFault::TooShort);
  }
  control_ = value;
  const bool whole = step_ == Step::Hold;
  step_ = Step::Idle;
  if (!whole) return {};
  if ((mode_ & kPgm) != 0) return {Effect::Kind::Program, selected_, std::move(staged_)};
  return {mass ? Effect::Kind::EraseAll : Effect::Kind::ErasePage, selected_, {}};
}

}  // namespace brevant::simulator
