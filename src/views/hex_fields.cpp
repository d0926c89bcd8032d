// SPDX-License-Identifier: MIT
#include "views/hex_fields.h"

#include "base/address.h"
#include "base/text_number.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

constexpr int kMaxDigits = 6;

}  // namespace

HexNumbers ReadHexFields(std::span<const std::string> texts, base::UserInterface& ui) {
  HexNumbers numbers;
  for (std::size_t i = 0; i < texts.size() && !numbers.refused; ++i) {
    const auto value = base::ParseHexExactly(texts[i], kMaxDigits);
    if (!value) {
      numbers.refused = FieldRefusal{i, messages::kExpectDigits};
    } else if (*value > base::kLastAddress) {
      numbers.refused = FieldRefusal{i, base::Format(messages::kBeyondAddressSpace, texts[i])};
    } else {
      numbers.values.push_back(*value);
    }
  }
  if (numbers.refused) ui.Beep();
  return numbers;
}

}  // namespace brevant::views
