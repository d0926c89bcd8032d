// SPDX-License-Identifier: MIT
#include "flash/flash_compare.h"

#include <algorithm>
#include <span>

#include "base/crc16.h"
#include "devices/hc08.h"

namespace brevant::flash {
namespace {

// Into so many parts a stretch that differs is divided: more would cost more where one page differs
// among many, fewer where all do.
constexpr std::size_t kDivision = 4;

std::vector<PagePart> PartsOf(const images::Block& block, base::Address page_mask) {
  std::vector<PagePart> parts;
  const base::Address end = block.address + static_cast<base::Address>(block.bytes.size());
  for (base::Address at = block.address; at < end;) {
    const base::Address next = std::min(end, (at | page_mask) + 1);
    parts.push_back({at, next - at});
    at = next;
  }
  return parts;
}

class Comparing {
 public:
  Comparing(control::TargetCrc& crc, long total,
            base::FunctionRef<bool(long done, long total)> progress)
      : crc_(crc), total_(total), progress_(progress) {}

  Comparison::End Look(const images::Block& block, std::span<PagePart> parts) {
    const base::Address first = parts.front().first;
    const base::Bytes bytes =
        base::Bytes(block.bytes).subspan(first - block.address, parts.back().last() + 1 - first);
    const auto found = crc_.Next(first, bytes.size());
    if (!found) return Comparison::End::NotSeen;
    const Holds holds = WhatHas(*found, bytes);
    if (holds == Holds::Other && parts.size() > 1) return Divide(block, parts);
    for (PagePart& part : parts) part.holds = holds;
    done_ += static_cast<long>(bytes.size());
    return progress_(done_, total_) ? Comparison::End::Complete : Comparison::End::Cancelled;
  }

 private:
  static Holds WhatHas(std::uint16_t crc, base::Bytes bytes) {
    if (crc == base::Crc16(bytes)) return Holds::TheImage;
    const std::vector<std::uint8_t> blank(bytes.size(), devices::kBlank);
    return crc == base::Crc16(blank) ? Holds::Nothing : Holds::Other;
  }

  Comparison::End Divide(const images::Block& block, std::span<PagePart> parts) {
    const std::size_t step = (parts.size() + kDivision - 1) / kDivision;
    for (std::size_t at = 0; at < parts.size(); at += step) {
      const auto end = Look(block, parts.subspan(at, std::min(step, parts.size() - at)));
      if (end != Comparison::End::Complete) return end;
    }
    return Comparison::End::Complete;
  }

  control::TargetCrc& crc_;
  long done_ = 0;
  long total_;
  base::FunctionRef<bool(long done, long total)> progress_;
};

}  // namespace

Comparison CompareWithFlash(control::TargetCrc& crc, const devices::FlashGeometry& flash,
                            const images::Image& image,
                            base::FunctionRef<bool(long done, long total)> progress) {
  Comparison result;
  if (image.empty()) return result;
  if (!crc.Begin()) return {Comparison::End::NotSeen};
  Comparing comparing(crc, image.size(), progress);
  for (const images::Block& block : image.Blocks()) {
    std::vector<PagePart> parts = PartsOf(block, flash.page_mask());
    result.end = comparing.Look(block, parts);
    if (result.end != Comparison::End::Complete) break;
    result.parts.insert(result.parts.end(), parts.begin(), parts.end());
  }
  if (!crc.End()) result.end = Comparison::End::NotSeen;
  return result;
}

}  // namespace brevant::flash
