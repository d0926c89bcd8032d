// SPDX-License-Identifier: MIT
// Key-by-key access to the settings file in INI form. Nothing is cached: each read looks at the
// file, each write replaces it in one step (see ReplaceFile). Section and key names ignore case;
// lines that are not understood, comments, blank lines, the order of keys and other programs' keys
// survive every write. A missing or unreadable file reads as all defaults.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings_keys.h"

namespace brevant::base {

class SettingsFile {
 public:
  explicit SettingsFile(std::filesystem::path path) : path_(std::move(path)) {}
  const std::filesystem::path& path() const { return path_; }

  // Keys that are stored together. A later value of a key takes the place of an earlier one.
  class Change {
   public:
    void Store(const SettingsKey& row, std::string_view text, int n = 0);
    void Store(const SettingsKey& row, long value, int n = 0);

   private:
    friend class SettingsFile;
    struct Entry {
      std::string section;
      std::string key;
      std::string text;
      std::string default_text;
    };
    std::vector<Entry> entries_;
  };
  // Stores all of it with one replacement of the file, or nothing: false when the file could not be
  // replaced or a text holds a line end or a NUL. A text with outer blanks or quotes is written
  // between quotes; a file that would not change is left alone.
  bool Apply(const Change& change);
  // Every value of the change is in force already: in the file, for this run, or as the default.
  bool Holds(const Change& change) const;

  // By name, as private-profile functions do. The integer is the leading decimal digits of the
  // value (0 when it does not start with one); strings lose outer white space and one pair of
  // enclosing quotes, and are cut to buffer_size - 1 characters.
  int ReadInteger(std::string_view section, std::string_view key, int default_value) const;
  std::string ReadString(std::string_view section, std::string_view key,
                         std::string_view default_text, int buffer_size) const;
  // The section holds these lines from now on and no others; what stands outside of it stays. One
  // replacement of the file, or nothing.
  bool ReplaceSection(std::string_view section, const std::vector<std::string>& lines);
  // A change of one key.
  bool WriteString(std::string_view section, std::string_view key, std::string_view text);
  bool WriteInteger(std::string_view section, std::string_view key, long value);
  // True when the key stands in the file.
  bool Has(std::string_view section, std::string_view key) const;

  // By row.
  int Integer(const SettingsKey& row, int n = 0) const;
  std::string String(const SettingsKey& row, int n = 0) const;
  bool Store(const SettingsKey& row, std::string_view text, int n = 0);
  bool Store(const SettingsKey& row, long value, int n = 0);

  // A value for this run only, as a command line gives it: it wins over the file and ends when
  // another value is stored. Storing the same value, which may just have been shown, leaves both
  // the override and the file as they are.
  void Override(const SettingsKey& row, std::string_view text, int n = 0);
  bool Overridden(const SettingsKey& row, int n = 0) const;
  // As String, past what holds for this run only.
  std::string StringInFile(const SettingsKey& row, int n = 0) const;

 private:
  std::optional<std::string> Find(std::string_view section, std::string_view key) const;
  // The change would only repeat what holds for this run.
  bool RepeatsOverride(const Change::Entry& entry) const;

  std::filesystem::path path_;
  std::map<std::string, std::string> overrides_;  // by OverrideName
};

}  // namespace brevant::base
