// SPDX-License-Identifier: MIT
// Dialogs that ask which memory is to be read, and where a file without addresses belongs, as
// forms.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "base/address.h"
#include "base/user_interface.h"
#include "memory/memory.h"
#include "views/hex_fields.h"

namespace brevant::views {

class RangeForm {
 public:
  // of: kCopyDialog or kSaveDialog.
  RangeForm(const HexDialog& of, const memory::Memory& memory, bool flash_is_readable,
            base::UserInterface& ui)
      : dialog_(of), memory_(memory), flash_is_readable_(flash_is_readable), ui_(ui) {}

  static const HexDialog kCopyDialog;
  static const HexDialog kSaveDialog;

  const HexDialog& dialog() const { return dialog_; }
  // From the lower address to the higher, both included. Nothing, after a beep, unless each field
  // holds an address and all of it can be read.
  std::optional<memory::Range> Accept(std::span<const std::string> texts);
  const FieldRefusal& refusal() const { return refusal_; }

 private:
  const HexDialog& dialog_;
  const memory::Memory& memory_;
  bool flash_is_readable_;
  base::UserInterface& ui_;
  FieldRefusal refusal_;
};

// Where the first byte of a binary file belongs.
class PlaceForm {
 public:
  PlaceForm(std::size_t size, base::UserInterface& ui) : size_(size), ui_(ui) {}

  static const HexDialog kDialog;

  // Nothing, after a beep, unless the field holds an address from which on the file fits.
  std::optional<base::Address> Accept(std::span<const std::string> texts);
  const FieldRefusal& refusal() const { return refusal_; }

 private:
  std::size_t size_;
  base::UserInterface& ui_;
  FieldRefusal refusal_;
};

}  // namespace brevant::views
