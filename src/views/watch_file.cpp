// SPDX-License-Identifier: MIT
#include "views/watch_file.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "base/file_names.h"
#include "base/files.h"
#include "base/settings_file.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "symbols/importers.h"
#include "views/watched_name.h"

namespace brevant::views {
namespace {

using namespace watch_codes;

constexpr const char* kSection = "watch";
constexpr const char* kCount = "nwatch";
constexpr const char* kEntry = "ws%d";
constexpr const char* kEntryText = "%s@%c%c%c%02x%02x@%06lx";
constexpr int kEntryBuffer = 80;
constexpr int kByteDigits = 2;
constexpr int kAddressDigits = 6;
constexpr unsigned kLowByte = 0xFF;

// In their order, the usual one of each first.
constexpr std::array<std::string_view, 3> kCodes{"HDBS", "WBL", "SU"};

// The next code of the text, which loses it; the usual one for what is none.
char TakeCode(std::string_view& text, std::string_view codes) {
  if (text.empty()) return codes.front();
  const char code = base::UpperCase(text.substr(0, 1)).front();
  text.remove_prefix(1);
  return codes.find(code) == std::string_view::npos ? codes.front() : code;
}

std::string ReadableName(std::string_view text) {
  std::string name(text.substr(0, WatchItem::kMostName));
  std::ranges::replace_if(
      name, [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
  return name;
}

WatchItem ParseEntry(std::string_view text) {
  WatchItem item;
  const std::size_t at = text.find('@');
  item.name = ReadableName(text.substr(0, at));
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
  item.display = TakeCode(text, kCodes[0]);
  item.width = TakeCode(text, kCodes[1]);
  item.sign = TakeCode(text, kCodes[2]);
  const auto length = base::ScanHex(text, kByteDigits);
  const auto reserved = length ? base::ScanHex(text, kByteDigits) : std::nullopt;
  item.lengthOrValue = static_cast<std::int32_t>(length.value_or(0));
  item.reserved = static_cast<std::uint8_t>(reserved.value_or(0));
  if (item.IsString()) item.lengthOrValue = item.bytes();
  if (!reserved || !text.starts_with('@')) return item;
  text.remove_prefix(1);
  item.address = base::ScanHex(text, kAddressDigits).value_or(0);
  return item;
}

std::string EntryText(const WatchItem& item) {
  const bool no_length =
      item.lengthOrValue < 0 || (item.IsString() && item.lengthOrValue > WatchItem::kMostString);
  const auto length =
      static_cast<unsigned>(no_length ? WatchItem::kMostString : item.lengthOrValue);
  return base::Format(kEntryText, item.name, item.display, item.width, item.sign, length & kLowByte,
                      item.reserved, static_cast<unsigned long>(item.address));
}

}  // namespace

std::string WatchFilePath(const std::string& image_path) {
  return image_path.empty() ? std::string() : symbols::CompanionPath(image_path, "cfg");
}

bool SaveWatchFile(const std::string& path, std::span<const WatchItem> items) {
  std::vector<std::string> lines{base::Format("%s=%d", kCount, static_cast<int>(items.size()))};
  for (const WatchItem& item : items) {
    const int n = static_cast<int>(&item - items.data());
    lines.push_back(base::Format(kEntry, n) + '=' + EntryText(item));
    lines.emplace_back();  // the line end that belongs to an entry
  }
  return base::SettingsFile(path).ReplaceSection(kSection, lines);
}

WatchFile LoadWatchFile(const std::string& path, const symbols::DebugInfo& info) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return {};
  if (const base::FileText file = base::ReadFile(path); !file.ok()) {
    return {.problem = path + " cannot be read: " + file.error};
  }
  const base::SettingsFile file(path);
  WatchFile loaded{.found = file.Has(kSection, kCount)};
  const int count = std::min(file.ReadInteger(kSection, kCount, 0), WatchTable::kMost);
  for (int n = 0; n < count; ++n) {
    WatchItem item =
        ParseEntry(file.ReadString(kSection, base::Format(kEntry, n), "", kEntryBuffer));
    const auto known = info.DebugInfoLoaded ? FindWatched(item.name, info) : std::nullopt;
    item.resolved = known.has_value();
    item.address = known.value_or(item.address);
    loaded.items.push_back(std::move(item));
  }
  return loaded;
}

}  // namespace brevant::views
