// SPDX-License-Identifier: MIT
// What a flash command will do, worked out before the target is touched: the pages to erase, or the
// blocks to program, and what they cost in parameters.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/user_interface.h"
#include "devices/device.h"
#include "flash/flash_task.h"
#include "images/image_file.h"

namespace brevant::flash {

struct ErasePlan {
  base::Address first_page = 0;
  int pages = 0;  // 1 to 256
  // For kEraseParameters: the address the routine writes to in the first page, which is the page's
  // last byte, and the number of pages, where 0 means 256.
  std::array<std::uint8_t, 3> parameters{};
};
// For a range whose end lies above its start, both 16 bits. A range of more than 256 pages wraps
// around modulo 256, and an end that is the first byte of a page does not get that page erased: the
// routine's page counter has eight bits, and these are the rules its users know.
ErasePlan PlanErase(const devices::FlashGeometry& flash, base::Address start, base::Address end);
// The page that holds the address is among those erased.
bool Erases(const ErasePlan& plan, const devices::FlashGeometry& flash, base::Address address);

// What the routine programs and verifies in one go.
struct FlashBlock {
  base::Address address = 0;
  std::vector<std::uint8_t> bytes;  // 1 to kBlockSize
  bool continues = false;           // where the block before it has left the routine's pointers
  bool ends_record = false;

  base::Address end() const;  // behind it, 16 bits
  // For kBlockParameters, where to program and where to verify, then the counts; for kBlockCounts,
  // the counts alone, when the block continues.
  std::vector<std::uint8_t> Parameters() const;
  bool operator==(const FlashBlock&) const = default;
};

struct FlashPlan {
  const FlashTask* task = nullptr;
  ErasePlan pages{};                 // of a range
  std::vector<FlashBlock> blocks{};  // none when erasing
  bool erases_security = false;
  std::vector<devices::MemoryRange> to_erase{};  // the flash in the pages that an erase covers
  std::optional<std::uint8_t> trim{};            // to be written back behind the erase
  std::vector<base::Message> remarks{};          // to be told at the end
  long spared = 0;                               // bytes of blocks that stood in flash already

  long bytes() const;
};

FlashPlan PlanMassErase(const devices::Device& device);
FlashPlan PlanEraseRange(const devices::Device& device, base::Address start, base::Address end);
// The pages that hold bytes of the file, and no others; neighbours are one range.
std::vector<devices::MemoryRange> PagesOf(const devices::FlashGeometry& flash,
                                          const images::ImageFile& file);
// The monitor's stop-on-IRQ routine into the IRQ vector.
FlashPlan PlanIrqVector(const devices::FlashGeometry& flash);
// Blocks end where a row of flash ends, since one high voltage programs no more than a row.

// Any number of bytes: more than kBlockSize go in several blocks, each with its place.
FlashPlan PlanLocations(const devices::FlashGeometry& flash, base::Address address,
                        base::Bytes bytes);
// The data records in file order, also where they overlap. The path is for the remark.
FlashPlan PlanFile(const devices::FlashGeometry& flash, const images::ImageFile& file,
                   const std::string& path);
// Drops the blocks of a file that stand in flash already; in_flash may hold less than flash does.
void SpareBlocks(FlashPlan& plan, const images::Image& in_flash);
// The first byte of flash under what the plan programs that is known not to be blank; nothing where
// all is, or is not known.
std::optional<base::Address> FirstNotBlank(const FlashPlan& plan, const images::Image& in_flash);
// Every run of an image, without the blocks that a blank array holds already.
FlashPlan PlanImage(const devices::FlashGeometry& flash, const images::Image& image);

}  // namespace brevant::flash
