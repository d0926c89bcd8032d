// SPDX-License-Identifier: MIT
#include "views/range_form.h"

#include <algorithm>

#include "devices/device.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

constexpr int kDigits = 5;
constexpr HexField kFromTo[] = {{"from", "&From address:", kDigits},
                                {"to", "&To address:", kDigits}};
constexpr HexField kPlace[] = {{"address", "Address of the first byte:", kDigits}};

}  // namespace

const HexDialog RangeForm::kCopyDialog{"COPYTOCLIP", "Copy to Clipboard", kFromTo};
const HexDialog RangeForm::kSaveDialog{"SAVEMEMORY", "Save memory", kFromTo};
const HexDialog PlaceForm::kDialog{"PLACEOFFILE", "Compare with file", kPlace};

std::optional<memory::Range> RangeForm::Accept(std::span<const std::string> texts) {
  const HexNumbers numbers = ReadHexFields(texts, ui_);
  if (numbers.refused) {
    refusal_ = *numbers.refused;
    return std::nullopt;
  }
  const auto [first, last] = std::ranges::minmax(numbers.values);
  if (!flash_is_readable_ && !devices::FlashWithin(memory_.device(), first, last).empty()) {
    ui_.Beep();
    refusal_ = {0, messages::kFlashNotReadable};
    return std::nullopt;
  }
  return memory::Range{first, last - first + 1};
}

std::optional<base::Address> PlaceForm::Accept(std::span<const std::string> texts) {
  const HexNumbers numbers = ReadHexFields(texts, ui_);
  if (numbers.refused) {
    refusal_ = *numbers.refused;
  } else if (numbers.values.front() + size_ > base::kAddressSpace) {
    ui_.Beep();
    refusal_ = {0, base::Format(messages::kFileDoesNotFit, size_)};
  } else {
    return numbers.values.front();
  }
  return std::nullopt;
}

}  // namespace brevant::views
