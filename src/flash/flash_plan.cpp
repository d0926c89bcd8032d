// SPDX-License-Identifier: MIT
#include "flash/flash_plan.h"

#include <algorithm>

#include "devices/hc08.h"

namespace brevant::flash {
namespace {

constexpr int kMaxPages = 256;
constexpr std::array kIrqVectorContent{base::HighByte(devices::kIrqStopRoutine),
                                       base::LowByte(devices::kIrqStopRoutine)};

void AddRecord(const devices::FlashGeometry& flash, base::Address address, base::Bytes bytes,
               std::vector<FlashBlock>& blocks) {
  while (!bytes.empty()) {
    const std::size_t of_row = flash.row_size - address % flash.row_size;
    const base::Bytes block = bytes.first(std::min({bytes.size(), kBlockSize, of_row}));
    bytes = bytes.subspan(block.size());
    blocks.push_back({.address = base::Low16(address),
                      .bytes = {block.begin(), block.end()},
                      .ends_record = bytes.empty()});
    address = blocks.back().end();
  }
}

void JoinBlocks(std::vector<FlashBlock>& blocks) {
  for (std::size_t i = 1; i < blocks.size(); ++i) {
    blocks[i].continues = blocks[i].address == blocks[i - 1].end();
  }
}

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

base::Address FlashBlock::end() const {
  return base::Low16(address + static_cast<base::Address>(bytes.size()));
}

std::vector<std::uint8_t> FlashBlock::Parameters() const {
  const std::uint8_t high = base::HighByte(address);
  const std::uint8_t low = base::LowByte(address);
  const auto count = static_cast<std::uint8_t>(bytes.size());
  const std::uint8_t from_high = base::HighByte(kBlockData);
  const std::uint8_t from_low = base::LowByte(kBlockData);
  if (continues) return {count, count, from_high, from_low};
  return {high, low, high, low, count, count, from_high, from_low};
}

long FlashPlan::bytes() const {
  std::size_t sum = 0;
  for (const FlashBlock& block : blocks) sum += block.bytes.size();
  return static_cast<long>(sum);
}

FlashPlan PlanMassErase(const devices::Device& device) {
  return {.task = &tasks::kMassErase,
          .erases_security = true,
          .to_erase = devices::FlashWithin(device, 0, base::kAddressSpace - 1)};
}

FlashPlan PlanEraseRange(const devices::Device& device, base::Address start, base::Address end) {
  const devices::FlashGeometry& flash = device.flash;
  const ErasePlan pages = PlanErase(flash, start, end);
  const base::Address last =
      pages.first_page + (static_cast<base::Address>(pages.pages) << flash.page_shift) - 1;
  return {.task = &tasks::kEraseRange,
          .pages = pages,
          .erases_security = Erases(pages, flash, devices::kSecurityCode),
          .to_erase = devices::FlashWithin(device, pages.first_page, last)};
}

std::vector<devices::MemoryRange> PagesOf(const devices::FlashGeometry& flash,
                                          const images::ImageFile& file) {
  std::vector<devices::MemoryRange> pages;
  for (const images::Block& block : file.ToImage().Blocks()) {
    const auto last = block.address + static_cast<base::Address>(block.bytes.size()) - 1;
    const base::Address from = block.address & ~flash.page_mask();
    const base::Address to = last | flash.page_mask();
    if (pages.empty() || from > pages.back().last + 1) {
      pages.push_back({from, to, devices::MemoryKind::Flash});
    } else {
      pages.back().last = to;
    }
  }
  return pages;
}

FlashPlan PlanIrqVector(const devices::FlashGeometry& flash) {
  FlashPlan plan{.task = &tasks::kIrqVector};
  AddRecord(flash, devices::kIrqVector, kIrqVectorContent, plan.blocks);
  return plan;
}

FlashPlan PlanLocations(const devices::FlashGeometry& flash, base::Address address,
                        base::Bytes bytes) {
  FlashPlan plan{.task = &tasks::kLocations};
  AddRecord(flash, address, bytes, plan.blocks);
  return plan;
}

FlashPlan PlanFile(const devices::FlashGeometry& flash, const images::ImageFile& file,
                   const std::string& path) {
  FlashPlan plan{.task = &tasks::kFile, .remarks = file.report.Remarks(path)};
  for (const images::ImageRecord& record : file.records) {
    AddRecord(flash, record.address, record.bytes, plan.blocks);
  }
  JoinBlocks(plan.blocks);
  return plan;
}

void SpareBlocks(FlashPlan& plan, const images::Image& in_flash) {
  const long all = plan.bytes();
  std::erase_if(plan.blocks, [&in_flash](const FlashBlock& block) {
    base::Address at = block.address;
    return std::ranges::all_of(
        block.bytes, [&](std::uint8_t byte) { return in_flash.At(base::Low16(at++)) == byte; });
  });
  plan.spared = all - plan.bytes();
  for (FlashBlock& block : plan.blocks) block.continues = false;
  JoinBlocks(plan.blocks);
}

std::optional<base::Address> FirstNotBlank(const FlashPlan& plan, const images::Image& in_flash) {
  for (const FlashBlock& block : plan.blocks) {
    for (std::size_t i = 0; i < block.bytes.size(); ++i) {
      const base::Address at = base::Low16(block.address + static_cast<base::Address>(i));
      if (in_flash.At(at).value_or(devices::kBlank) != devices::kBlank) return at;
    }
  }
  return std::nullopt;
}

FlashPlan PlanImage(const devices::FlashGeometry& flash, const images::Image& image) {
  FlashPlan plan{.task = &tasks::kFile};
  for (const images::Block& run : image.Blocks()) {
    AddRecord(flash, run.address, run.bytes, plan.blocks);
  }
  std::erase_if(plan.blocks, [](const FlashBlock& block) {
    return std::ranges::count(block.bytes, devices::kBlank) == std::ssize(block.bytes);
  });
  JoinBlocks(plan.blocks);
  return plan;
}

}  // namespace brevant::flash
