// SPDX-License-Identifier: MIT
#include "views/location_editor.h"

#include <array>
#include <span>

#include "base/text_format.h"
#include "base/text_number.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

constexpr int kDigitsAByte = 2;

}  // namespace

LocationEditor::LocationEditor(memory::Memory& memory, DataUnit unit, base::Address address,
                               base::UserInterface& ui)
    : memory_(memory),
      address_(address),
      digits_(unit == DataUnit::Bytes ? kDigitsAByte : 2 * kDigitsAByte),
      ui_(ui) {
  std::array<std::uint8_t, 2> bytes{};
  const auto cell = std::span(bytes).first(static_cast<std::size_t>(digits_ / kDigitsAByte));
  memory_.AskBytes(cell, address_);
  for (const std::uint8_t byte : cell) initial_text_ += base::Format("%02x", byte);
}

std::string LocationEditor::Title() const {
  return base::Format("Edit at %04x", address_);
}

bool LocationEditor::Accept(std::string_view text) {
  if (!base::IsHexField(text)) {
    ui_.Beep();
    return false;
  }
  const std::uint32_t value = base::ParseHex(text);
  const std::array bytes{static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
  const auto cell = std::span(bytes).last(static_cast<std::size_t>(digits_ / kDigitsAByte));
  if (const auto difference = memory_.WriteAndLook(address_, cell)) {
    ui_.ShowMessage(base::ToMessage(messages::kLocationNotTaken, difference->address,
                                    difference->found, difference->expected));
  }
  return true;
}

}  // namespace brevant::views
