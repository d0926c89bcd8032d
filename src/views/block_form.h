// SPDX-License-Identifier: MIT
// The dialogs of "Fill Block", "Move Block" and "Paste from Clipboard" as forms: what they open
// with, and which operation comes of them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/user_interface.h"
#include "memory/memory.h"
#include "views/block_operation.h"
#include "views/hex_fields.h"

namespace brevant::views {

class BlockForm {
 public:
  enum class Kind { Fill, Move };

  BlockForm(Kind kind, const memory::Memory& memory, base::UserInterface& ui)
      : kind_(kind), memory_(memory), ui_(ui) {}

  const HexDialog& dialog() const;
  // One a field; the first is the address of the cell under the cursor, made even.
  std::vector<std::string> InitialTexts(base::Address cursor) const;
  // Nothing, after a beep, unless each field holds a number and all of the destination can be
  // written.
  std::optional<BlockOperation> Accept(std::span<const std::string> texts);
  // Of the texts that were refused last.
  const FieldRefusal& refusal() const { return refusal_; }

 private:
  Kind kind_;
  const memory::Memory& memory_;
  base::UserInterface& ui_;
  FieldRefusal refusal_;
};

class PasteForm {
 public:
  PasteForm(const memory::Memory& memory, base::UserInterface& ui) : memory_(memory), ui_(ui) {}

  static const HexDialog kDialog;

  // False, after a beep, unless the field holds an address from which on all of the bytes can be
  // written; it is made even.
  bool Accept(std::span<const std::string> texts, const std::vector<std::uint8_t>& bytes);
  base::Address address() const { return address_; }
  // Nothing for no bytes.
  const std::optional<BlockOperation>& operation() const { return operation_; }
  const FieldRefusal& refusal() const { return refusal_; }

 private:
  const memory::Memory& memory_;
  base::UserInterface& ui_;
  base::Address address_ = 0;
  std::optional<BlockOperation> operation_;
  FieldRefusal refusal_;
};

}  // namespace brevant::views
