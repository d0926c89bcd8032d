// SPDX-License-Identifier: MIT
#include "simulator/bus.h"

#include <algorithm>
#include <bit>

namespace brevant::simulator {
namespace {

using base::Address;

constexpr Address kTim1 = 0x0020, kTim2 = 0x002B, kSci = 0x0013;
constexpr Address kIntscr = 0x001D, kConfig2 = 0x001E, kConfig1 = 0x001F;
constexpr Address kSbsr = 0xFE00, kSrsr = 0xFE01, kBfcr = 0xFE03;
constexpr Address kInt1 = 0xFE04, kInt2 = 0xFE05, kInt3 = 0xFE06;
constexpr Address kFlcr = 0xFE08, kBrkh = 0xFE09, kBrkl = 0xFE0A, kBrkscr = 0xFE0B;
constexpr Address kLvisr = 0xFE0C, kCopctl = 0xFFFF;

constexpr std::uint8_t kCoprs = 0x80, kStop = 0x02, kCopd = 0x01;               // CONFIG1
constexpr std::uint8_t kSciFromBus = 0x01;                                      // CONFIG2
constexpr std::uint8_t kIrqf = 0x08, kAck = 0x04, kImask = 0x02, kMode = 0x01;  // INTSCR
constexpr std::uint8_t kBrke = 0x80, kBrka = 0x40;                              // BRKSCR
constexpr std::uint8_t kBcfe = 0x80;                                            // BFCR

// The COP counts crystal cycles, of which two make one bus cycle.
constexpr std::uint64_t kCopLong = 262'128 / 2, kCopShort = 8'176 / 2;

constexpr std::uint8_t kSecuredFlash = 0xAD;
constexpr std::uint8_t kUnmapped = 0xFF;

constexpr int kNoPort = -1;
// Port E and its direction register stand apart from the others.
constexpr int PortOfData(Address a) {
  if (a <= 3) return static_cast<int>(a);
  return a == 8 ? 4 : kNoPort;
}
constexpr Address PortData(int port) {
  return port == 4 ? 8 : static_cast<Address>(port);
}
constexpr Address PortDirection(int port) {
  return PortData(port) + 4;
}

constexpr bool In(Address a, Address first, int count) {
  return a >= first && a < first + static_cast<Address>(count);
}

}  // namespace

Bus::Bus(const Device& device) : device_(&device) {
  memory_.fill(kUnmapped);
  pins_[0] = device.port_a_pins;
  ScrambleRam();
  Reset(ResetCause::PowerOn);
}

void Bus::ScrambleRam() {
  // RAM comes up in no useful state; neighbours differ so that code which relies on it fails.
  for (Address a = device_->ram.first; a <= device_->ram.last; ++a) {
    memory_[a] = base::LowByte(a * 0x2D ^ 0xA5);
  }
}

void Bus::Reset(ResetCause cause) {
  for (Address a = device_->io.first; a <= device_->io.last; ++a) {
    const int port = PortOfData(a);
    if (port == kNoPort || port >= device_->ports) memory_[a] = 0;
  }
  for (Address a = device_->high_registers.first; a <= device_->high_registers.last; ++a) {
    memory_[a] = 0;
  }
  for (const PlainRegister& row : device_->plain_registers) memory_[row.address] = row.reset;
  for (Timer& timer : timers_) timer.Reset(TimerTime());
  sci_.Reset();
  flash_.Reset();
  irq_ = ExternalInterrupt{.low = irq_.low};
  break_module = {};
  in_break = false;
  config_written_ = {};
  cop_cleared_at_ = cycle;
  horizon = 0;
  if (cause == ResetCause::PowerOn) {
    reset_status_ = 0;
    security_passed_ = false;
  }
  reset_status_ |= static_cast<std::uint8_t>(cause);
  MapPages();
}

void Bus::MapPages() {
  for (Address page = 0; page < pages_.size(); ++page) {
    const Range whole{page * kPageSize, page * kPageSize + kPageSize - 1};
    const auto within = [&](const Range& r) {
      return r.Contains(whole.first) && r.Contains(whole.last);
    };
    std::uint8_t access = 0;
    if (within(device_->ram)) {
      access = kFastRead | kFastWrite | kFastFetch;
    } else if (within(device_->monitor_rom) || within(device_->auxiliary_rom)) {
      access = kFastRead | kFastFetch;
    } else if (security_passed_ && !whole.Contains(device_->flbpr) &&
               std::ranges::any_of(device_->flash, within)) {
      access = flash_.high_voltage() ? kFastRead : kFastRead | kFastFetch;
    }
    pages_[page] = access;
  }
}

bool Bus::IsRom(Address a) const {
  return device_->monitor_rom.Contains(a) || device_->auxiliary_rom.Contains(a);
}

bool Bus::IsRegister(Address a) const {
  return device_->io.Contains(a) || device_->high_registers.Contains(a);
}

std::uint8_t Bus::Peek(Address address) const {
  const Address a = base::Low16(address);
  return IsRegister(a) ? RegisterValue(a) : memory_[a];
}

void Bus::Poke(Address address, std::uint8_t value) {
  const Address a = base::Low16(address);
  if (IsRegister(a) || IsRom(a) || device_->ram.Contains(a) || device_->IsFlash(a)) {
    memory_[a] = value;
  }
}

std::uint8_t Bus::ReadSlow(Address a) {
  if (IsRegister(a)) return ReadRegister(a);
  if (a == device_->flbpr) flash_.OnFlbprRead();
  return !security_passed_ && device_->IsFlash(a) ? kSecuredFlash : memory_[a];
}

void Bus::WriteSlow(Address a, std::uint8_t value) {
  if (a == kCopctl) {
    cop_cleared_at_ = cycle;
    horizon = 0;
  }
  if (IsRegister(a)) {
    WriteRegister(a, value);
    horizon = 0;
  } else if (device_->ram.Contains(a)) {
    memory_[a] = value;
  } else if (device_->IsFlash(a)) {
    const bool had_voltage = flash_.high_voltage();
    flash_.OnFlashWrite(a, value, FlashSurroundings());
    if (flash_.high_voltage() != had_voltage) MapPages();
  }
}

bool Bus::FetchableSlow(Address a) {
  if (device_->ram.Contains(a) || IsRom(a)) return true;
  if (!security_passed_ || !device_->IsFlash(a)) return false;
  if (flash_.high_voltage()) {
    flash_.OnFlashFetch();
    MapPages();
  }
  return true;
}

std::uint8_t Bus::PortValue(int port) const {
  const std::uint8_t outputs = memory_[PortDirection(port)];
  const std::uint8_t inputs = pins_[static_cast<std::size_t>(port)];
  return static_cast<std::uint8_t>((memory_[PortData(port)] & outputs) | (inputs & ~outputs));
}

std::uint8_t Bus::PlainValue(Address a) const {
  for (const PlainRegister& row : device_->plain_registers) {
    if (row.address == a) return memory_[a] | row.always_set;
  }
  return memory_[a];
}

std::uint8_t Bus::RegisterValue(Address a) const {
  if (const int port = PortOfData(a); port != kNoPort && port < device_->ports) {
    return PortValue(port);
  }
  if (In(a, kTim1, Timer::kRegisters)) return timers_[0].Peek(static_cast<int>(a - kTim1));
  if (device_->second_timer && In(a, kTim2, Timer::kRegisters)) {
    return timers_[1].Peek(static_cast<int>(a - kTim2));
  }
  if (device_->sci && In(a, kSci, Sci::kRegisters)) return sci_.Peek(static_cast<int>(a - kSci));
  switch (a) {
    case kIntscr:
      return static_cast<std::uint8_t>((irq_.latched ? kIrqf : 0) | (irq_.masked ? kImask : 0) |
                                       (irq_.level ? kMode : 0));
    case kSrsr:
      return reset_status_;
    case kInt1:
      return base::LowByte((InterruptFlags() >> 1 & 0x3F) << 2);
    case kInt2:
      return base::LowByte(InterruptFlags() >> 7);
    case kInt3:
      return base::LowByte(InterruptFlags() >> 15 & 0x03);
    case kFlcr:
      return flash_.control();
    case kBrkh:
      return base::HighByte(break_module.address);
    case kBrkl:
      return base::LowByte(break_module.address);
    case kBrkscr:
      return static_cast<std::uint8_t>((break_module.enabled ? kBrke : 0) |
                                       (break_module.active ? kBrka : 0));
    default:
      return PlainValue(a);
  }
}

std::uint8_t Bus::ReadRegister(Address a) {
  ServicePeripherals();
  if (In(a, kTim1, Timer::kRegisters)) {
    return timers_[0].Read(static_cast<int>(a - kTim1), TimerTime(), !FlagsProtected());
  }
  if (device_->second_timer && In(a, kTim2, Timer::kRegisters)) {
    return timers_[1].Read(static_cast<int>(a - kTim2), TimerTime(), !FlagsProtected());
  }
  const std::uint8_t value = RegisterValue(a);
  if (a == kSrsr && !FlagsProtected()) reset_status_ = 0;
  return value;
}

void Bus::WriteRegister(Address a, std::uint8_t value) {
  if (In(a, kTim1, Timer::kRegisters)) {
    timers_[0].Write(static_cast<int>(a - kTim1), value, TimerTime(), !FlagsProtected());
    return;
  }
  if (device_->second_timer && In(a, kTim2, Timer::kRegisters)) {
    timers_[1].Write(static_cast<int>(a - kTim2), value, TimerTime(), !FlagsProtected());
    return;
  }
  if (device_->sci && In(a, kSci, Sci::kRegisters)) {
    sci_.Write(static_cast<int>(a - kSci), value, cycle, (memory_[kConfig2] & kSciFromBus) != 0);
    return;
  }
  switch (a) {
    case kIntscr:
      if ((value & kAck) != 0 && !FlagsProtected()) irq_.latched = false;
      irq_.masked = (value & kImask) != 0;
      irq_.level = (value & kMode) != 0;
      return;
    case kConfig1:
    case kConfig2:
      WriteConfig(a, value);
      return;
    case kSbsr:
      memory_[a] &= value;  // SBSW can only be cleared
      return;
    case kSrsr:
    case kInt1:
    case kInt2:
    case kInt3:
    case kLvisr:
      return;
    case kFlcr:
      WriteFlashControl(value);
      return;
    case kBrkh:
      break_module.address = base::Word(value, base::LowByte(break_module.address));
      return;
    case kBrkl:
      break_module.address = base::Word(base::HighByte(break_module.address), value);
      return;
    case kBrkscr:
      break_module.enabled = (value & kBrke) != 0;
      break_module.active = (value & kBrka) != 0;
      return;
    default:
      memory_[a] = value;
  }
}

// Each of the two can be written once after a reset.
void Bus::WriteConfig(Address a, std::uint8_t value) {
  bool& written = config_written_[a - kConfig2];
  if (written) return;
  written = true;
  memory_[a] = value;
}

FlashController::Surroundings Bus::FlashSurroundings() const {
  return {*device_, cycle, memory_[device_->flbpr], vtst_, security_passed_};
}

void Bus::EraseFlash(Address first, Address last) {
  for (Address a = first; a <= last; ++a) {
    if (device_->IsFlash(a)) memory_[a] = 0xFF;
  }
}

void Bus::WriteFlashControl(std::uint8_t value) {
  using Kind = FlashController::Effect::Kind;
  const bool had_voltage = flash_.high_voltage();
  const FlashController::Effect effect = flash_.WriteControl(value, FlashSurroundings());
  const auto page_size = static_cast<Address>(device_->page_size);
  switch (effect.kind) {
    case Kind::Nothing:
      break;
    case Kind::Program:
      for (const auto& [address, byte] : effect.bytes) memory_[address] &= byte;
      break;
    case Kind::ErasePage:
      EraseFlash(effect.address & ~(page_size - 1), effect.address | (page_size - 1));
      break;
    case Kind::EraseAll:
      for (const Range& range : device_->flash) EraseFlash(range.first, range.last);
      break;
  }
  if (flash_.high_voltage() != had_voltage) MapPages();
}

bool Bus::FlagsProtected() const {
  return in_break && (memory_[kBfcr] & kBcfe) == 0;
}

bool Bus::StopEnabled() const {
  return (memory_[kConfig1] & kStop) != 0;
}

void Bus::SetSecurityPassed(bool passed) {
  security_passed_ = passed;
  MapPages();
}

void Bus::SetIrqLow(bool low) {
  if (low && !irq_.low) irq_.latched = true;
  irq_.low = low;
}

void Bus::SetVtst(bool present) {
  if (vtst_ && !present) cop_cleared_at_ = cycle;
  vtst_ = present;
}

void Bus::ServicePeripherals() {
  timers_[0].Advance(TimerTime());
  if (device_->second_timer) timers_[1].Advance(TimerTime());
  if (device_->sci) sci_.Advance(cycle);
}

std::uint64_t Bus::CopDeadline() const {
  if (vtst_ || (memory_[kConfig1] & kCopd) != 0) return kNever;
  return cop_cleared_at_ + ((memory_[kConfig1] & kCoprs) != 0 ? kCopShort : kCopLong);
}

bool Bus::CopExpired() const {
  return cycle >= CopDeadline();
}

std::uint64_t Bus::NextEvent() const {
  std::uint64_t next = std::min(CopDeadline(), sci_.NextInterrupt());
  for (const Timer& timer : timers_) {
    const std::uint64_t at = timer.NextInterrupt();
    if (at != kNever) next = std::min(next, at + timers_stopped_);
  }
  return next;
}

// Bit n is source n.
std::uint32_t Bus::InterruptFlags() const {
  std::uint32_t flags = irq_.requested() ? 1u << 1 : 0;
  for (unsigned t = 0; t < timers_.size(); ++t) {
    const unsigned first = 3 + 3 * t;
    if (timers_[t].ChannelInterrupt(0)) flags |= 1u << first;
    if (timers_[t].ChannelInterrupt(1)) flags |= 1u << (first + 1);
    if (timers_[t].OverflowInterrupt()) flags |= 1u << (first + 2);
  }
  if (sci_.TransmitInterrupt()) flags |= 1u << 13;
  return flags;
}

int Bus::PendingInterrupt() const {
  const std::uint32_t flags = InterruptFlags();
  return flags == 0 ? 0 : std::countr_zero(flags);
}

void Bus::AcknowledgeInterrupt(int source) {
  if (source == 1) irq_.latched = false;
}

void Bus::AdvanceTo(std::uint64_t to, Clocks clocks) {
  if (to <= cycle) return;
  const std::uint64_t passed = to - cycle;
  cycle = to;
  if (clocks != Clocks::Everything) cop_cleared_at_ += passed;
  if (clocks == Clocks::Nothing) timers_stopped_ += passed;
  ServicePeripherals();
}

}  // namespace brevant::simulator
