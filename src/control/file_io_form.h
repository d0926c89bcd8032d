// SPDX-License-Identifier: MIT
// The two bindings of file I/O, and the rules of the dialog that makes them. Never touches the
// target.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/address.h"
#include "base/settings_keys.h"
#include "base/user_interface.h"

namespace brevant::control {

enum class FileSide { Input, Output };
inline constexpr FileSide kFileSides[] = {FileSide::Input, FileSide::Output};

// A file of the host, and the slot of the program: two bytes at which a number of the file goes
// into X:A, or X:A to the file.
struct FileBinding {
  base::Address address = 0;
  std::uint32_t saved_word = 0;  // what stood in the slot, the first byte high
  bool enabled = false;
  std::string file_name;
};
// As many characters as the settings hold.
inline constexpr std::size_t kMaxFileIoName = 99;
inline constexpr base::Address kSlotBytes = 2;

// What tells the two sides apart.
struct FileSideRow {
  const char* word;     // "input"
  std::uint8_t opcode;  // that a slot begins with
  const char* instruction;
  const char* menu_text;  // once the dialog has been there
  const char* title;      // of the dialog
  base::SettingsKey key;  // of the file's name
};
const FileSideRow& RowOf(FileSide side);

// Dialog "FILEIODLG".
struct FileIoForm {
  FileSide side = FileSide::Input;
  FileBinding binding;  // as it becomes; its name is the field, enabled the check box

  void ClickEnabled() { binding.enabled = !binding.enabled; }
  // What should be known of the slot although it is no obstacle; may be empty.
  std::string Note() const;
};

// Why the form cannot be opened: the slot does not begin with the side's instruction.
std::optional<base::Message> SlotRefused(const FileIoForm& form);
// Why "Ok" does not end the dialog; nothing when the name may stand.
std::optional<base::Message> NameRefused(const FileIoForm& form);

}  // namespace brevant::control
