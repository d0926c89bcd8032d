// SPDX-License-Identifier: MIT
#include "load/target_range.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace brevant::load {
namespace {

// About 0.4 s at 9600 baud; the positioning READ of each portion then costs under 3 %.
constexpr std::size_t kPortion = 128;

}  // namespace

RangeResult ReadRange(memory::Memory& memory, base::Address first, std::size_t count,
                      PortionSink sink) {
  std::array<std::uint8_t, kPortion> buffer{};
  for (std::size_t done = 0; done < count;) {
    const auto portion = std::span(buffer).first(std::min(kPortion, count - done));
    const base::Address address = base::Low16(first + static_cast<base::Address>(done));
    memory.AskBytes(portion, address);
    if (memory.LinkError()) return RangeResult::LinkLost;
    if (!sink(address, portion)) return RangeResult::Stopped;
    done += portion.size();
  }
  return RangeResult::Complete;
}

}  // namespace brevant::load
