// SPDX-License-Identifier: MIT
// Dialogs whose fields each take a hexadecimal number: what they look like, as data, and the rule
// that their texts are read by.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/user_interface.h"

namespace brevant::views {

struct HexField {
  const char* name;   // of its purpose: "from"
  const char* label;  // "&From address:"; '&' before its key
  int max_length;     // characters that can be typed
};

struct HexDialog {
  const char* name;  // of the dialog's template: "FILLDLG"
  const char* caption;
  std::span<const HexField> fields;
};

// Shown in the dialog, which stays open.
struct FieldRefusal {
  std::size_t field = 0;
  std::string why;
};

struct HexNumbers {
  std::vector<std::uint32_t> values;  // one a field, unless refused
  std::optional<FieldRefusal> refused = {};
};

// Each text is 1 to 6 hexadecimal digits, and none stands for more than FFFF; anything else gives a
// beep.
HexNumbers ReadHexFields(std::span<const std::string> texts, base::UserInterface& ui);

}  // namespace brevant::views
