// SPDX-License-Identifier: MIT
#include "views/instruction_editor.h"

#include <algorithm>
#include <span>

#include "base/text_format.h"
#include "isa/assembler.h"
#include "views/messages.h"

namespace brevant::views {

InstructionEditor::InstructionEditor(const CodeLine& line, memory::Memory& memory,
                                     const isa::SymbolNames& symbols, base::UserInterface& ui)
    : address_(line.address),
      initial_text_(isa::EditableText(line.text)),
      memory_(memory),
      symbols_(symbols),
      ui_(ui) {}

std::string InstructionEditor::Title() const {
  return base::Format("Edit at %06lx", address_);
}

bool InstructionEditor::Accept(std::string_view text) {
  const auto instruction =
      isa::AssembleLine(text.substr(0, kMaxLength), address_, symbols_, &refusal_);
  if (!instruction) {
    refusal_ = refusal_ + '\n' + messages::kExpectInstruction;
    ui_.Beep();
    return false;
  }
  if (memory_.WriteAndLook(address_, instruction->code())) {
    ui_.ShowMessage(base::ToMessage(messages::kInstructionNotTaken, address_));
  }
  return true;
}

}  // namespace brevant::views
