// SPDX-License-Identifier: MIT
#include "flash/verdicts.h"

#include <optional>

#include "base/text_format.h"
#include "devices/hc08.h"
#include "flash/flash_image.h"
#include "flash/messages.h"

namespace brevant::flash {
namespace {

const char* Cause(const WrongBytes& wrong) {
  const auto& [address, expected, found] = wrong.first;
  if ((expected & ~found) != 0) {
    return wrong.was_blank ? "bits fell to 0 that were to stay 1"
                           : "bits that were to be 1 are 0: it was not blank before";
  }
  return found == devices::kBlank ? "it is still blank: nothing was programmed there"
                                  : "bits stayed 1 that were to become 0";
}

// The first address that the block protect register protects, if any: its eight bits are those
// above the page's within an array that ends at $FFFF.
std::optional<base::Address> ProtectedFrom(const devices::FlashGeometry& flash,
                                           std::uint8_t flbpr) {
  if (flbpr == devices::kBlank) return std::nullopt;
  const base::Address array = base::kAddressSpace - (0x100u << flash.page_shift);
  return array | (base::Address{flbpr} << flash.page_shift);
}

}  // namespace

std::string BlockText(const FlashBlock& block) {
  return base::Format("Programming flash EEPROM\nlocation from %04x to %04x", block.address,
                      block.end());
}

std::string ErasedText(std::span<const devices::MemoryRange> erased) {
  std::string ranges;
  for (const devices::MemoryRange& range : erased) {
    if (!ranges.empty()) ranges += ", ";
    ranges += base::Format("%04x to %04x", range.first, range.last);
  }
  return "erased " + ranges + ", all blank";
}

std::string ProgrammedText(const FlashStatus& status) {
  std::string text = base::Format("programmed %ld bytes", status.bytes_programmed);
  if (status.bytes_spared > 0) {
    text += base::Format(", %ld more stood there already", status.bytes_spared);
  }
  return text;
}

std::vector<std::string> FlashImageText(const FlashImageResult& result) {
  std::vector<std::string> lines{
      base::Format("%ld of %ld bytes stood there already, in %ld of %ld pages", result.spared,
                   result.bytes, result.pages_spared, result.pages)};
  if (!result.erased.empty()) lines.push_back(ErasedText(result.erased));
  if (result.kept > 0) {
    lines.push_back(base::Format("put back %ld bytes that the image does not hold", result.kept));
  }
  if (result.programmed > 0) {
    lines.push_back(base::Format("programmed %ld bytes, all verified", result.programmed));
  }
  return lines;
}

base::Message NotErasedMessage(const devices::FlashGeometry& flash, const BlankReport& report) {
  std::string pages;
  for (const base::Address used : report.used) {
    const base::Address page = used & ~flash.page_mask();
    pages += base::Format("%04x-%04x, from %04x on\n", page, page + flash.page_mask(), used);
  }
  if (report.cut_short) pages += "and perhaps more behind\n";
  const bool protect_page =
      (report.used.back() & ~flash.page_mask()) == (flash.flbpr & ~flash.page_mask());
  return ToMessage(protect_page ? messages::kProtectPageNotErased : messages::kNotErased, pages);
}

std::string DifferenceText(memory::Memory& memory, const WrongBytes& wrong) {
  const devices::FlashGeometry& flash = memory.device().flash;
  std::string text = base::Format(
      "%ld of %ld bytes differ, the first at %04x: expected %02x, found %02x: %s", wrong.different,
      wrong.compared, wrong.first.address, wrong.first.expected, wrong.first.found, Cause(wrong));
  const std::uint8_t flbpr = memory.AskByte(flash.flbpr);
  const auto from = memory.LinkError() ? std::nullopt : ProtectedFrom(flash, flbpr);
  if (from && wrong.first.address >= *from) {
    text += base::Format(
        ". The block protect register at %04x holds %02x: %04x to ffff are protected unless IRQ "
        "has the high voltage",
        flash.flbpr, flbpr, *from);
  }
  return text;
}

}  // namespace brevant::flash
