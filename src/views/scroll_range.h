// SPDX-License-Identifier: MIT
// How far the program windows scroll, which address a position of their scroll bar stands for, and
// the dialogs that change how far program and data windows scroll. Rests on the settings
// "progrange" and "DataAddrRange".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/address.h"
#include "base/settings_file.h"
#include "base/user_interface.h"

namespace brevant::views {

// A scroll bar has positions 0 to maximum; position p stands for address p << shift.
struct ScrollRange {
  base::Address end = 0x7FFF;  // the last address that is shown
  int shift = 0;
  int maximum = 0x7FFF;

  int Position(base::Address address) const { return static_cast<int>(address >> shift); }
  // Never past the end.
  base::Address AddressAt(int position) const;
  // The last address that a window may begin with.
  base::Address LastTop() const { return end == 0 ? 0 : end - 1; }
  bool operator==(const ScrollRange&) const = default;
};

// The range that a text of hexadecimal digits asks for. Ranges of 8000 and more are rounded up to
// the next power of two, so that each fills the whole scroll bar, and end at 400000.
ScrollRange ProgramScrollRange(std::string_view text);

// The dialog that changes it.
class ProgramRangeForm {
 public:
  static constexpr const char* kTitle = "Configure program range";
  static constexpr const char* kLabel = "Program range:";
  static constexpr int kMaxLength = 6;

  ProgramRangeForm(base::SettingsFile& settings, base::UserInterface& ui)
      : settings_(settings), ui_(ui) {}

  std::string InitialText() const;
  // Stores the text and returns its range; a beep and nothing for text that is not hexadecimal.
  std::optional<ScrollRange> Accept(std::string_view text);
  // The accepted text could be written to the settings file.
  bool stored() const { return stored_; }

 private:
  base::SettingsFile& settings_;
  base::UserInterface& ui_;
  bool stored_ = true;
};

// The same for the data windows: how many bytes from address 0 on they can show.
class DataRangeForm {
 public:
  static constexpr const char* kTitle = "Configure data range";
  static constexpr const char* kLabel = "Data range:";
  static constexpr int kMaxLength = 6;

  DataRangeForm(base::Address range, base::SettingsFile& settings, base::UserInterface& ui)
      : range_(range), settings_(settings), ui_(ui) {}

  std::string InitialText() const;
  std::optional<base::Address> Accept(std::string_view text);
  bool stored() const { return stored_; }

 private:
  base::Address range_;
  base::SettingsFile& settings_;
  base::UserInterface& ui_;
  bool stored_ = true;
};

}  // namespace brevant::views
