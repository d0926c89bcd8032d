// SPDX-License-Identifier: MIT
#include "flash/flash_records.h"

#include "base/text_number.h"

namespace brevant::flash {
namespace {

constexpr int kLastDataType = 3;

bool EndsFile(std::string_view word) {
  return word.front() != 'S' || (word.size() > 1 && base::HexDigitValue(word[1]) > kLastDataType);
}

}  // namespace

images::ImageFile ParseFlashRecords(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  const bool intel_hex = first != std::string_view::npos && text[first] == ':';
  return intel_hex ? images::ParseIntelHex(text) : images::ParseSRecords(text, EndsFile);
}

}  // namespace brevant::flash
