// SPDX-License-Identifier: MIT
// Changing one cell of a data view, a byte or a word, as a form. Rests on the door to memory.
#pragma once

#include <string>
#include <string_view>

#include "base/user_interface.h"
#include "memory/memory.h"
#include "views/data_view.h"

namespace brevant::views {

class LocationEditor {
 public:
  // Asks the target for the cell at the address: what is kept of it may be old.
  LocationEditor(memory::Memory& memory, DataUnit unit, base::Address address,
                 base::UserInterface& ui);

  std::string Title() const;
  const std::string& initial_text() const { return initial_text_; }
  int max_length() const { return digits_; }
  // Writes the hexadecimal number, 0 for an empty text. False, after a beep, when it is none;
  // nothing has then been written and the editor stays open. Memory that did not take it is told
  // in a message.
  bool Accept(std::string_view text);

 private:
  memory::Memory& memory_;
  base::Address address_;
  int digits_;
  std::string initial_text_;
  base::UserInterface& ui_;
};

}  // namespace brevant::views
