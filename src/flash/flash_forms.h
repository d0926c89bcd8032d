// SPDX-License-Identifier: MIT
// The three dialogs of the flash commands as forms: what they open with, what they accept, and what
// they store once it is accepted.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"
#include "base/settings_file.h"
#include "base/user_interface.h"

namespace brevant::flash {

inline constexpr std::size_t kMaxAddressDigits = 4;

struct AddressRange {
  base::Address start = 0;
  base::Address end = 0;
};

struct EraseRangeForm {
  static constexpr std::string_view kTemplate = "FEEPERASE";
  static constexpr std::string_view kCaption = "Erase flash EEPROM";
  static constexpr std::string_view kStartButton = "&Start to erase";

  std::string from;  // at most kMaxAddressDigits characters each
  std::string to;

  static EraseRangeForm Open(const base::SettingsFile& settings);
  // Stores both fields. Nothing, after a beep, unless each holds 1 to 4 hexadecimal digits.
  std::optional<AddressRange> Commit(base::SettingsFile& settings, base::UserInterface& ui) const;
};

struct LocationData {
  base::Address address = 0;
  std::vector<std::uint8_t> bytes;
};

struct ProgramLocationForm {
  static constexpr std::string_view kTemplate = "PROGLOCATION";
  static constexpr std::string_view kCaption = "Program location";
  static constexpr std::size_t kMaxContentLength = 47;

  std::string address;  // at most kMaxAddressDigits characters
  std::string content;  // at most kMaxContentLength characters

  static ProgramLocationForm Open(const base::SettingsFile& settings);
  // Stores the address, then the normalised content. Nothing after telling the user about the first
  // field that is wrong.
  std::optional<LocationData> Commit(base::SettingsFile& settings, base::UserInterface& ui) const;
};

struct ProgramFileForm {
  static constexpr std::string_view kTemplate = "FEEPROM";
  static constexpr std::string_view kCaption = "Program EEPROM";
  static constexpr std::string_view kStartButton = "&Start to Program";
  static constexpr std::size_t kMaxNameLength = 80;

  std::string
      file_name;  // at most kMaxNameLength characters can be typed; a chosen one may be longer

  static ProgramFileForm Open(const base::SettingsFile& settings);
  // False after telling the user that the file cannot be read. The command stores the name.
  bool Check(base::UserInterface& ui) const;
};

}  // namespace brevant::flash
