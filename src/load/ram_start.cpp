// SPDX-License-Identifier: MIT
#include "load/ram_start.h"

#include <algorithm>
#include <string_view>

#include "load/image_check.h"

namespace brevant::load {
namespace {

// Of C compilers and of assembly programs.
constexpr std::string_view kStartNames[] = {"main",  "_main",  "__sdcc_gs_init_startup",
                                            "start", "_start", "__start"};

bool NamesStart(const symbols::Symbol& symbol) {
  return std::ranges::find(kStartNames, symbol.name) != std::end(kStartNames);
}

}  // namespace

bool IsForRam(const images::Image& image, const devices::Device& device) {
  return !IsForFlash(image, device) &&
         std::ranges::any_of(image.Blocks(), [&device](const images::Block& block) {
           return devices::KindOf(device, block.address) == devices::MemoryKind::Ram;
         });
}

std::optional<RamStart> FindRamStart(const images::Image& image, const devices::Device& device,
                                     const symbols::SymbolTable& symbols) {
  const auto holds = [&](base::Address at) {
    return image.At(at) && devices::KindOf(device, at) == devices::MemoryKind::Ram;
  };
  if (!IsForRam(image, device)) return std::nullopt;
  if (const auto vector = ResetVector(image); vector && holds(*vector)) {
    return RamStart{*vector, "the image's reset vector"};
  }
  std::optional<RamStart> lowest;
  for (const symbols::Symbol& symbol : symbols.symbols()) {
    if (!NamesStart(symbol) || !holds(symbol.address)) continue;
    if (!lowest || symbol.address < lowest->address) lowest = {symbol.address, symbol.name};
  }
  return lowest;
}

}  // namespace brevant::load
