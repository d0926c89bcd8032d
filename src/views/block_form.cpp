// SPDX-License-Identifier: MIT
#include "views/block_form.h"

#include "base/text_format.h"
#include "views/messages.h"
#include "views/writable.h"

namespace brevant::views {
namespace {

constexpr HexField kFillFields[] = {
    {"from", "&From address:", 6}, {"to", "&To address:", 6}, {"value", "Filled &with:", 4}};
constexpr HexField kMoveFields[] = {{"from", "&From address:", 6},
                                    {"to", "&To address:", 6},
                                    {"destination", "&Move to address:", 6}};
constexpr HexDialog kFill{"FILLDLG", "Fill Block (Hex Format)", kFillFields};
constexpr HexDialog kMoveDialog{"MOVEDLG", "Move Block (Hex Format)", kMoveFields};

constexpr HexField kPasteFields[] = {{"address", "Paste to address:", 5}};

constexpr std::size_t kFrom = 0, kTo = 1, kValueOrDestination = 2;

// Why the operation cannot be carried out; empty when it can.
std::string WhyNot(const BlockOperation& operation, const memory::Memory& memory) {
  if (!operation.Fits()) return messages::kDoesNotFit;
  const auto refused = WhyNotWritable(memory, operation.destination());
  return refused ? refused->why + '.' : std::string();
}

}  // namespace

const HexDialog& BlockForm::dialog() const {
  return kind_ == Kind::Fill ? kFill : kMoveDialog;
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
  const std::string why = WhyNot(operation, memory_);
  if (why.empty()) return operation;
  ui_.Beep();
  refusal_ = {kind_ == Kind::Fill ? kFrom : kValueOrDestination, why};
  return std::nullopt;
}

const HexDialog PasteForm::kDialog{"PASTEFROMCLIP", "Paste from Clipboard", kPasteFields};

bool PasteForm::Accept(std::span<const std::string> texts, const std::vector<std::uint8_t>& bytes) {
  operation_.reset();
  const HexNumbers numbers = ReadHexFields(texts, ui_);
  if (numbers.refused) {
    refusal_ = *numbers.refused;
    return false;
  }
  address_ = numbers.values.front() & ~base::Address{1};
  if (bytes.empty()) return true;
  operation_ = BlockOperation::Paste(address_, bytes);
  const std::string why = WhyNot(*operation_, memory_);
  if (why.empty()) return true;
  ui_.Beep();
  refusal_ = {0, why};
  return false;
}

}  // namespace brevant::views
