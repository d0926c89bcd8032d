// SPDX-License-Identifier: MIT
// Replacing one instruction in the target by a line of assembly text, as a form. Rests on the
// assembler. A shorter instruction leaves the old one's last bytes, a longer one runs into the
// next.
#pragma once

#include <string>
#include <string_view>

#include "base/user_interface.h"
#include "isa/symbol_names.h"
#include "memory/memory.h"
#include "views/code_lines.h"

namespace brevant::views {

class InstructionEditor {
 public:
  static constexpr int kMaxLength = 79;

  // The line under the cursor of a program view.
  InstructionEditor(const CodeLine& line, memory::Memory& memory, const isa::SymbolNames& symbols,
                    base::UserInterface& ui);

  std::string Title() const;
  const std::string& initial_text() const { return initial_text_; }
  // Assembles the text for the line's address and writes its bytes. False, after a beep, when it is
  // no instruction; nothing has then been written and the editor stays open. Memory that did not
  // take the bytes, as flash does not, is told in a message.
  bool Accept(std::string_view text);
  // What was wrong with the text that was refused last.
  const std::string& refusal() const { return refusal_; }

 private:
  base::Address address_;
  std::string initial_text_;
  std::string refusal_;
  memory::Memory& memory_;
  const isa::SymbolNames& symbols_;
  base::UserInterface& ui_;
};

}  // namespace brevant::views
