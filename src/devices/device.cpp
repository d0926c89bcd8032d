// SPDX-License-Identifier: MIT
#include "devices/device.h"

#include <algorithm>
#include <array>

#include "devices/hc08.h"

namespace brevant::devices {
namespace {

using enum MemoryKind;

// MC68HC908GP32 data sheet: memory map, interrupt sources.
constexpr std::array kGp32Memory{
    MemoryRange{0x0000, 0x003F, Registers}, MemoryRange{0x0040, 0x023F, Ram},
    MemoryRange{0x8000, 0xFDFF, Flash},     MemoryRange{0xFE00, 0xFE0C, Registers},
    MemoryRange{0xFE20, 0xFF52, Rom},       MemoryRange{0xFF7E, 0xFF7E, Flash},
    MemoryRange{0xFFDC, 0xFFFF, Flash},
};
constexpr std::array kGp32Vectors{
    Vector{0xFFDC, "TBM"},      Vector{0xFFDE, "ADC"},      Vector{0xFFE0, "KBI"},
    Vector{0xFFE2, "SCI-TX"},   Vector{0xFFE4, "SCI-RX"},   Vector{0xFFE6, "SCI-ERR"},
    Vector{0xFFE8, "SPI-TX"},   Vector{0xFFEA, "SPI-RX"},   Vector{0xFFEC, "TIM2-OVF"},
    Vector{0xFFEE, "TIM2-CH1"}, Vector{0xFFF0, "TIM2-CH0"}, Vector{0xFFF2, "TIM1-OVF"},
    Vector{0xFFF4, "TIM1-CH1"}, Vector{0xFFF6, "TIM1-CH0"}, Vector{0xFFF8, "PLL"},
    Vector{kIrqVector, "IRQ"},  Vector{kSwiVector, "SWI"},  Vector{kResetVector, "RESET"},
};

// MC68HC908QL4 data sheet. $2800 holds the auxiliary ROM, $FFBF is reserved.
constexpr std::array kQlMemory{
    MemoryRange{0x0000, 0x004F, Registers}, MemoryRange{0x0080, 0x00FF, Ram},
    MemoryRange{0x2800, 0x2DFF, Rom},       MemoryRange{0xEE00, 0xFDFF, Flash},
    MemoryRange{0xFE00, 0xFE0F, Registers}, MemoryRange{0xFE20, 0xFF7D, Rom},
    MemoryRange{0xFFB0, 0xFFBE, Flash},     MemoryRange{0xFFC0, 0xFFFF, Flash},
};
// Where the serial LIN controller has its vector is not known.
constexpr std::array kQlVectors{
    Vector{0xFFDE, "ADC"},     Vector{0xFFE0, "KBI"},         Vector{0xFFF2, "TIM-OVF"},
    Vector{0xFFF4, "TIM-CH1"}, Vector{0xFFF6, "TIM-CH0"},     Vector{kIrqVector, "IRQ"},
    Vector{kSwiVector, "SWI"}, Vector{kResetVector, "RESET"},
};

constexpr std::array kDevices{
    Device{0, "MC68HC908GP32", "gp32", kGp32Memory, {7, 64, 0xFF7E}, kGp32Vectors, Gp32Registers},
    Device{1, "MC68HC908QL", "ql", kQlMemory, {6, 32, 0xFFBE, 0xFFC0}, kQlVectors, QlRegisters},
};

}  // namespace

std::span<const Device> All() {
  return kDevices;
}

const Device& BySettingsNumber(int number) {
  const auto found = std::ranges::find(kDevices, number, &Device::settings_number);
  return found == kDevices.end() ? kDevices.front() : *found;
}

const Device* ByOption(std::string_view option) {
  const auto found = std::ranges::find(kDevices, option, &Device::option);
  return found == kDevices.end() ? nullptr : &*found;
}

MemoryKind KindOf(const Device& device, base::Address address) {
  for (const MemoryRange& range : device.memory) {
    if (address >= range.first && address <= range.last) return range.kind;
  }
  return Nothing;
}

std::vector<MemoryRange> FlashWithin(const Device& device, base::Address first,
                                     base::Address last) {
  std::vector<MemoryRange> ranges;
  for (const MemoryRange& range : device.memory) {
    if (range.kind != Flash || range.last < first || range.first > last) continue;
    ranges.push_back({std::max(range.first, first), std::min(range.last, last), Flash});
  }
  return ranges;
}

std::optional<base::Address> FirstOutsideFlash(const Device& device, base::Address first,
                                               base::Address count) {
  for (base::Address at = first; at < first + count; ++at) {
    if (KindOf(device, at) != Flash) return at;
  }
  return std::nullopt;
}

}  // namespace brevant::devices
