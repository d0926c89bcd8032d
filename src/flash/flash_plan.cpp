// SPDX-License-Identifier: MIT
#include "flash/flash_plan.h"

#include <algorithm>

namespace brevant::flash {
namespace {

constexpr int kMaxPages = 256;

}  // namespace

ErasePlan PlanErase(const devices::FlashGeometry& flash, base::Address start, base::Address end) {
  const base::Address mask = flash.page_mask();
  ErasePlan plan;
  plan.first_page = start & ~mask;
  const std::uint8_t count = base::LowByte((end - plan.first_page + mask) >> flash.page_shift);
  plan.pages = count == 0 ? kMaxPages : count;
  plan.parameters = {base::HighByte(plan.first_page), base::LowByte(plan.first_page + mask), count};
  return plan;
}

bool Erases(const ErasePlan& plan, const devices::FlashGeometry& flash, base::Address address) {
  const base::Address offset = base::Low16(address - plan.first_page);
  return static_cast<int>(offset >> flash.page_shift) < plan.pages;
}

std::array<std::uint8_t, 8> BlockParameters(base::Address address, std::size_t count) {
  const std::uint8_t high = base::HighByte(address);
  const std::uint8_t low = base::LowByte(address);
  const auto counts = ContinuedParameters(count);
  return {high, low, high, low, counts[0], counts[1], counts[2], counts[3]};
}

std::array<std::uint8_t, 4> ContinuedParameters(std::size_t count) {
  const auto n = static_cast<std::uint8_t>(count);
  return {n, n, base::HighByte(kBlockData), base::LowByte(kBlockData)};
}

std::vector<base::Bytes> SplitIntoBlocks(base::Bytes bytes) {
  std::vector<base::Bytes> blocks;
  while (!bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), kBlockSize);
    blocks.push_back(bytes.first(count));
    bytes = bytes.subspan(count);
  }
  return blocks;
}

}  // namespace brevant::flash
