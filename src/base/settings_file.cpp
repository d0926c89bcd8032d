// SPDX-License-Identifier: MIT
#include "base/settings_file.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "base/file_names.h"
#include "base/files.h"
#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::base {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool InQuotes(std::string_view text) {
  return text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
         text.front() == text.back();
}

struct Line {
  std::string_view text;
  std::string_view end;  // "\n", "\r\n", or nothing at the end of the file
};

std::vector<Line> SplitLines(std::string_view text) {
  std::vector<Line> lines;
  while (!text.empty()) {
    const std::size_t feed = text.find('\n');
    std::size_t length = feed == std::string_view::npos ? text.size() : feed;
    const std::size_t whole = feed == std::string_view::npos ? text.size() : feed + 1;
    if (length < whole && length > 0 && text[length - 1] == '\r') --length;
    lines.push_back({text.substr(0, length), text.substr(length, whole - length)});
    text.remove_prefix(whole);
  }
  return lines;
}

std::optional<std::string_view> SectionName(std::string_view line) {
  if (line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
  line = Trim(line);
  if (!line.starts_with('[')) return std::nullopt;
  const std::size_t close = line.find(']');
  if (close == std::string_view::npos) return std::nullopt;
  return Trim(line.substr(1, close - 1));
}

struct KeyLine {
  std::string_view key;
  std::string_view value;       // trimmed, quotes still on
  std::size_t value_start = 0;  // where a new value takes the place of the old one
};

std::optional<KeyLine> SplitKeyLine(std::string_view line) {
  const std::size_t equals = line.find('=');
  const std::string_view key = Trim(line.substr(0, equals));
  if (equals == std::string_view::npos || key.empty() || key.front() == ';') return std::nullopt;
  const std::size_t value = line.find_first_not_of(kBlanks, equals + 1);
  return KeyLine{key, Trim(line.substr(equals + 1)),
                 value == std::string_view::npos ? equals + 1 : value};
}

// Where a key stands in the lines, or where it would have to be inserted.
struct Place {
  std::optional<KeyLine> found;
  std::size_t line = 0;  // of the key that was found
  bool has_section = false;
  std::size_t insert_at = 0;  // behind the last key of the first section of that name
};

Place FindKey(const std::vector<Line>& lines, std::string_view section, std::string_view key) {
  Place place;
  bool inside = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (const auto name = SectionName(lines[i].text)) {
      // Only the first section of a name counts, as private-profile readers have it.
      inside = !place.has_section && EqualIgnoringCase(*name, section);
      if (!inside) continue;
      place.has_section = true;
      place.insert_at = i + 1;
    } else if (const auto row = SplitKeyLine(lines[i].text); inside && row) {
      place.insert_at = i + 1;
      if (EqualIgnoringCase(row->key, key)) {
        place.found = row;
        place.line = i;
        return place;
      }
    }
  }
  return place;
}

// The key's value without quotes; nothing when it does not stand in the file.
std::optional<std::string> Lookup(const std::filesystem::path& path, std::string_view section,
                                  std::string_view key) {
  const FileText file = ReadFile(path);
  const Place place = FindKey(SplitLines(file.text), section, key);
  if (!place.found) return std::nullopt;
  std::string_view value = place.found->value;
  if (InQuotes(value)) value = value.substr(1, value.size() - 2);
  return std::string(value);
}

// A value whose blanks or quotes a reader would take off goes between quotes of its own.
std::string Quoted(std::string_view text) {
  if (Trim(text) == text && !InQuotes(text)) return std::string(text);
  return '"' + std::string(text) + '"';
}

std::string Join(const std::vector<Line>& lines) {
  std::string text;
  for (const Line& line : lines) {
    text += line.text;
    text += line.end;
  }
  return text;
}

std::string WithValue(std::string_view text, std::string_view section, std::string_view key,
                      std::string_view value) {
  std::vector<Line> lines = SplitLines(text);
  const std::string_view style = !lines.empty() && lines.front().end == "\r\n" ? "\r\n" : "\n";
  const Place place = FindKey(lines, section, key);
  if (place.found) {
    Line& line = lines[place.line];
    const std::string changed =
        std::string(line.text.substr(0, place.found->value_start)) + Quoted(value);
    line.text = changed;
    return Join(lines);
  }

  std::size_t at = place.insert_at;
  std::string added;
  if (!place.has_section) {
    at = lines.size();
    if (!lines.empty() && !Trim(lines.back().text).empty()) added += style;
    added += '[' + std::string(section) + ']' + std::string(style);
  }
  added += std::string(key) + '=' + Quoted(value);
  // A file whose last line has no end keeps that property for whatever is last now.
  Line last{added, style};
  if (at == lines.size() && at > 0) std::swap(last.end, lines.back().end);
  if (at == lines.size() && at > 0 && lines.back().end.empty()) lines.back().end = style;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), last);
  return Join(lines);
}

std::string WithSection(std::string_view text, std::string_view section,
                        const std::vector<std::string>& held) {
  const std::vector<Line> lines = SplitLines(text);
  const std::string style = !lines.empty() && lines.front().end == "\r\n" ? "\r\n" : "\n";
  std::string body;
  for (const std::string& line : held) body += line + style;
  std::string result;
  bool inside = false, done = false;
  for (const Line& line : lines) {
    const auto name = SectionName(line.text);
    if (name) inside = !done && EqualIgnoringCase(*name, section);
    if (inside && !name) continue;
    result.append(line.text).append(line.end);
    if (!inside) continue;
    if (line.end.empty()) result += style;
    result += body;
    done = true;
  }
  if (done) return result;
  if (!lines.empty() && lines.back().end.empty()) result += style;
  return result + '[' + std::string(section) + ']' + style + body;
}

std::string OverrideName(std::string_view section, std::string_view key) {
  return UpperCase(section) + ']' + UpperCase(key);
}

}  // namespace

std::optional<std::string> SettingsFile::Find(std::string_view section,
                                              std::string_view key) const {
  const auto found = overrides_.find(OverrideName(section, key));
  return found != overrides_.end() ? found->second : Lookup(path_, section, key);
}

void SettingsFile::Override(const SettingsKey& row, std::string_view text, int n) {
  overrides_[OverrideName(row.section, NumberedKey(row, n))] = text;
}

bool SettingsFile::Overridden(const SettingsKey& row, int n) const {
  return overrides_.contains(OverrideName(row.section, NumberedKey(row, n)));
}

int SettingsFile::ReadInteger(std::string_view section, std::string_view key,
                              int default_value) const {
  const auto value = Find(section, key);
  if (!value) return default_value;
  const bool is_number = !value->empty() && value->front() >= '0' && value->front() <= '9';
  return is_number ? ParseLeadingDecimal(*value) : 0;
}

std::string SettingsFile::ReadString(std::string_view section, std::string_view key,
                                     std::string_view default_text, int buffer_size) const {
  std::string value = Find(section, key).value_or(std::string(default_text));
  const auto limit = static_cast<std::size_t>(buffer_size > 0 ? buffer_size - 1 : 0);
  if (value.size() > limit) value.resize(limit);
  return value;
}

bool SettingsFile::RepeatsOverride(const Change::Entry& entry) const {
  const auto found = overrides_.find(OverrideName(entry.section, entry.key));
  return found != overrides_.end() && found->second == entry.text;
}

bool SettingsFile::Apply(const Change& change) {
  const FileText file = ReadFile(path_);
  std::error_code error;
  if (!file.ok() && std::filesystem::exists(path_, error)) return false;
  std::string text = file.text;
  for (const Change::Entry& entry : change.entries_) {
    // One line is all that a value has.
    if (entry.text.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos) return false;
    if (!RepeatsOverride(entry)) text = WithValue(text, entry.section, entry.key, entry.text);
  }
  if (text != file.text && !ReplaceFile(path_, text).empty()) return false;
  for (const Change::Entry& entry : change.entries_) {
    if (!RepeatsOverride(entry)) overrides_.erase(OverrideName(entry.section, entry.key));
  }
  return true;
}

bool SettingsFile::ReplaceSection(std::string_view section, const std::vector<std::string>& lines) {
  const FileText file = ReadFile(path_);
  std::error_code error;
  if (!file.ok() && std::filesystem::exists(path_, error)) return false;
  const std::string text = WithSection(file.text, section, lines);
  return text == file.text || ReplaceFile(path_, text).empty();
}

bool SettingsFile::Holds(const Change& change) const {
  return std::ranges::all_of(change.entries_, [this](const Change::Entry& entry) {
    return Find(entry.section, entry.key).value_or(entry.default_text) == entry.text;
  });
}

bool SettingsFile::WriteString(std::string_view section, std::string_view key,
                               std::string_view text) {
  Change change;
  change.entries_.push_back(
      {std::string(section), std::string(key), std::string(text), std::string()});
  return Apply(change);
}

bool SettingsFile::WriteInteger(std::string_view section, std::string_view key, long value) {
  return WriteString(section, key, Format("%ld", value));
}

bool SettingsFile::Has(std::string_view section, std::string_view key) const {
  return Find(section, key).has_value();
}

int SettingsFile::Integer(const SettingsKey& row, int n) const {
  return ReadInteger(row.section, NumberedKey(row, n), ParseLeadingDecimal(row.default_text));
}

std::string SettingsFile::String(const SettingsKey& row, int n) const {
  return ReadString(row.section, NumberedKey(row, n), row.default_text, row.buffer_size);
}

std::string SettingsFile::StringInFile(const SettingsKey& row, int n) const {
  return SettingsFile(path_).String(row, n);
}

void SettingsFile::Change::Store(const SettingsKey& row, std::string_view text, int n) {
  entries_.push_back({std::string(row.section), NumberedKey(row, n), std::string(text),
                      std::string(row.default_text)});
}

void SettingsFile::Change::Store(const SettingsKey& row, long value, int n) {
  Store(row, Format("%ld", value), n);
}

bool SettingsFile::Store(const SettingsKey& row, std::string_view text, int n) {
  Change change;
  change.Store(row, text, n);
  return Apply(change);
}

bool SettingsFile::Store(const SettingsKey& row, long value, int n) {
  return Store(row, Format("%ld", value), n);
}

}  // namespace brevant::base
