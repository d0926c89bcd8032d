// SPDX-License-Identifier: MIT
#include "views/block_form.h"

#include "base/text_format.h"
#include "views/messages.h"
#include "views/writable.h"

namespace brevant::views {
namespace {

constexpr HexField kFillFields[] = {
    {"from", "From address:", 6}, {"to", "To address:", 6}, {"value", "Filled with:", 4}};
constexpr HexField kMoveFields[] = {
    {"from", "From address:", 6}, {"to", "To address:", 6}, {"destination", "Move to address:", 6}};
constexpr HexDialog kFill{"FILLDLG", "Fill Block (Hex Format)", kFillFields};
constexpr HexDialog kMove{"MOVEDLG", "Move Block (Hex Format)", kMoveFields};

constexpr std::size_t kFrom = 0, kTo = 1, kValueOrDestination = 2;

}  // namespace

const HexDialog& BlockForm::dialog() const {
  return kind_ == Kind::Fill ? kFill : kMove;
}

std::vector<std::string> BlockForm::InitialTexts(base::Address cursor) const {
  std::vector<std::string> texts(dialog().fields.size());
  texts[kFrom] = base::Format("%06lx", cursor & ~base::Address{1});
  return texts;
}

std::optional<BlockOperation> BlockForm::Accept(std::span<const std::string> texts) {
  const HexNumbers numbers = ReadHexFields(texts, ui_);
  if (numbers.refused) {
    refusal_ = *numbers.refused;
    return std::nullopt;
  }
  const auto& values = numbers.values;
  const std::uint32_t last = values[kValueOrDestination];
  const BlockOperation operation =
      kind_ == Kind::Fill
          ? BlockOperation::Fill(values[kFrom], values[kTo], static_cast<std::uint16_t>(last))
          : BlockOperation::Move(values[kFrom], values[kTo], last);
  std::string why;
  if (!operation.Fits()) {
    why = messages::kDoesNotFit;
  } else if (const auto refused = WhyNotWritable(memory_, operation.destination())) {
    why = refused->why + '.';
  }
  if (why.empty()) return operation;
  ui_.Beep();
  refusal_ = {kind_ == Kind::Fill ? kFrom : kValueOrDestination, why};
  return std::nullopt;
}

}  // namespace brevant::views
