// SPDX-License-Identifier: MIT
#include "flash/flash_forms.h"

#include "base/files.h"
#include "base/normalised_text.h"
#include "base/text_number.h"
#include "flash/messages.h"

namespace brevant::flash {
namespace {

constexpr int kMaxByteDigits = 2;

std::optional<base::Address> ParseAddress(std::string_view text) {
  return base::ParseHexExactly(text, static_cast<int>(kMaxAddressDigits));
}

// At least one.
std::optional<std::vector<std::uint8_t>> ParseBytes(std::string_view normalised) {
  if (normalised.empty()) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  for (const std::string_view word : base::SplitWords(normalised)) {
    const auto byte = base::ParseHexExactly(word, kMaxByteDigits);
    if (!byte) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(*byte));
  }
  return bytes;
}

}  // namespace

EraseRangeForm EraseRangeForm::Open(const base::SettingsFile& settings) {
  return {settings.String(base::keys::kEraseStart), settings.String(base::keys::kEraseEnd)};
}

std::optional<AddressRange> EraseRangeForm::Commit(base::SettingsFile& settings,
                                                   base::UserInterface& ui) const {
  const auto start = ParseAddress(from);
  const auto end = ParseAddress(to);
  if (!start || !end) {
    ui.Beep();
    return std::nullopt;
  }
  base::SettingsFile::Change change;
  change.Store(base::keys::kEraseStart, from);
  change.Store(base::keys::kEraseEnd, to);
  settings.Apply(change);
  return AddressRange{*start, *end};
}

ProgramLocationForm ProgramLocationForm::Open(const base::SettingsFile& settings) {
  return {settings.String(base::keys::kProgramLocationAddress),
          settings.String(base::keys::kProgramLocationBytes)};
}

std::optional<LocationData> ProgramLocationForm::Commit(base::SettingsFile& settings,
                                                        base::UserInterface& ui) const {
  const auto start = ParseAddress(address);
  if (!start) {
    ui.ShowMessage(ToMessage(messages::kNotHexAddress));
    return std::nullopt;
  }
  // The address is kept also when the bytes are refused.
  base::SettingsFile::Change change;
  change.Store(base::keys::kProgramLocationAddress, address);
  const std::string normalised = base::NormaliseText(content);
  auto bytes = ParseBytes(normalised);
  if (bytes) change.Store(base::keys::kProgramLocationBytes, normalised);
  settings.Apply(change);
  if (!bytes) {
    ui.ShowMessage(ToMessage(normalised.empty() ? messages::kNoData : messages::kBadData));
    return std::nullopt;
  }
  return LocationData{*start, std::move(*bytes)};
}

ProgramFileForm ProgramFileForm::Open(const base::SettingsFile& settings) {
  return {settings.String(base::keys::kProgramFile)};
}

bool ProgramFileForm::Check(base::UserInterface& ui) const {
  if (base::ReadFile(file_name).ok()) return true;
  ui.ShowMessage(ToMessage(messages::kProgramFileNotAccessible));
  return false;
}

}  // namespace brevant::flash
