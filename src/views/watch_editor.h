// SPDX-License-Identifier: MIT
// Changing the value of a watched variable in the target, as a form. Rests on the door to memory.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/user_interface.h"
#include "memory/memory.h"
#include "views/watch_table.h"

namespace brevant::views {

class WatchEditor {
 public:
  WatchEditor(WatchItem item, memory::Memory& memory, base::UserInterface& ui)
      : item_(std::move(item)), memory_(memory), ui_(ui) {}

  // Asks the target for a number; of a string the bytes that were read last are what is edited.
  // False when nothing can be edited: the user has been told why.
  bool Open();
  std::string Title() const;
  std::string InitialText() const;
  int max_length() const;
  // Writes what the text stands for and looks at it. False, after a beep, when it stands for
  // nothing; nothing has then been written and the editor stays open. Memory that did not take it,
  // or could not be looked at, is told in a message.
  bool Accept(std::string_view text);

 private:
  std::vector<std::uint8_t> BytesOf(std::string_view text) const;

  const WatchItem item_;
  memory::Memory& memory_;
  base::UserInterface& ui_;
  std::vector<std::uint8_t> bytes_;  // when the editor was opened
};

}  // namespace brevant::views
