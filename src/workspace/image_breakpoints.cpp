// SPDX-License-Identifier: MIT
#include "workspace/image_breakpoints.h"

#include <string_view>

#include "base/text_format.h"
#include "base/text_number.h"

namespace brevant::workspace {
namespace {

using base::keys::kImageBreakpoints;

constexpr int kAddressDigits = 4;

struct Entry {
  std::vector<base::Address> addresses;
  std::string image;
};

// "0100 0123 /home/me/count.s19": a path begins where no more addresses follow.
Entry ParseEntry(std::string_view text) {
  Entry entry;
  while (text.size() > kAddressDigits && text[kAddressDigits] == ' ') {
    const auto address = base::ParseHexExactly(text.substr(0, kAddressDigits), kAddressDigits);
    if (!address) break;
    entry.addresses.push_back(*address);
    text.remove_prefix(kAddressDigits + 1);
  }
  entry.image = text;
  return entry;
}

std::string FormatEntry(const Entry& entry) {
  std::string text;
  for (const base::Address address : entry.addresses) text += base::Format("%04x ", address);
  return text + entry.image;
}

std::vector<Entry> Entries(const base::SettingsFile& settings) {
  std::vector<Entry> entries;
  for (int n = 0; n < kImageBreakpoints.count; ++n) {
    Entry entry = ParseEntry(settings.String(kImageBreakpoints, n));
    if (!entry.image.empty()) entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace

std::vector<base::Address> RememberedBreakpoints(const base::SettingsFile& settings,
                                                 const std::string& image) {
  for (const Entry& entry : Entries(settings)) {
    if (entry.image == image) return entry.addresses;
  }
  return {};
}

bool RememberBreakpoints(base::SettingsFile& settings, const std::string& image,
                         const std::vector<base::Address>& addresses) {
  if (RememberedBreakpoints(settings, image) == addresses) return true;
  std::vector<Entry> entries = Entries(settings);
  std::erase_if(entries, [&image](const Entry& entry) { return entry.image == image; });
  if (!addresses.empty()) entries.insert(entries.begin(), {addresses, image});
  entries.resize(static_cast<std::size_t>(kImageBreakpoints.count));
  base::SettingsFile::Change change;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto n = static_cast<int>(i);
    const std::string text = FormatEntry(entries[i]);
    if (text != settings.String(kImageBreakpoints, n)) change.Store(kImageBreakpoints, text, n);
  }
  return settings.Apply(change);
}

}  // namespace brevant::workspace
