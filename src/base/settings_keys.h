// SPDX-License-Identifier: MIT
// Every key of the settings file, as rows. A reader names the row, never a section and key text.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace brevant::base {

enum class SettingKind {
  Integer,    // decimal text
  Flag,       // 0 or 8; 8 marks a checked menu item
  HexString,  // hexadecimal digits without prefix; empty parses to 0
  String,
  Geometry,  // comma-separated decimal integers
};

struct SettingsKey {
  std::string_view section;
  std::string_view key;  // with a "%d" where the key is numbered
  SettingKind kind;
  std::string_view default_text;
  int buffer_size;  // of a string's reader, terminator included; 0 for numbers
  int count = 1;    // how many numbered keys there are; 0 when another key says how many
};

namespace keys {

// Section "config".
inline constexpr SettingsKey kPort{"config", "port", SettingKind::String, "COM1", 100};
inline constexpr SettingsKey kRecentSecurity{"config", "Security%d", SettingKind::String,
                                             "c3c3c3c3c3c3c3c3", 100, 5};
inline constexpr SettingsKey kResetSecurity{"config", "Security", SettingKind::String,
                                            "C3C3C3C3C3C3C3C3", 100};
inline constexpr SettingsKey kSecurityCheck{"config", "SecurityCheck", SettingKind::Integer, "1", 0};
inline constexpr SettingsKey kDevice{"config", "HC08Devices", SettingKind::Integer, "0", 0};
inline constexpr SettingsKey kCompiler{"config", "compiler", SettingKind::Integer, "1", 0};
// ... the remaining rows follow the same form.

}  // namespace keys

// All rows, for documentation, tests and tools.
std::span<const SettingsKey> AllSettingsKeys();

// The n-th key of a numbered row ("Security%d", 3 -> "Security3").
std::string NumberedKey(const SettingsKey& row, int n);

}  // namespace brevant::base
