// SPDX-License-Identifier: MIT
#include "target/srecord_file.h"

#include <numeric>
#include <optional>

#include "base/text_number.h"

namespace brevant::target {

namespace {

std::optional<std::vector<std::uint8_t>> HexPairs(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const auto byte = base::ParseHexExactly(text.substr(i, 2), 2);
    if (!byte) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(*byte));
  }
  return bytes;
}

// Adds the data of one record; answers what is wrong with it.
const char* ParseRecord(std::string_view line, std::vector<Segment>& segments) {
  if (line.size() < 4 || line[0] != 'S' || line[1] < '0' || line[1] > '9') return "no S-record";
  const auto bytes = HexPairs(line.substr(2));
  if (!bytes) return "not hexadecimal";
  if (bytes->at(0) != bytes->size() - 1) return "wrong length";
  if ((std::accumulate(bytes->begin(), bytes->end(), 0u) & 0xFFu) != 0xFF) return "wrong checksum";
  if (line[1] < '1' || line[1] > '3') return nullptr;

  const std::size_t address_bytes = line[1] == '1' ? 2 : line[1] == '2' ? 3 : 4;
  if (bytes->size() < address_bytes + 2) return "too short";
  Segment segment;
  for (std::size_t i = 1; i <= address_bytes; ++i) {
    segment.address = segment.address << 8 | bytes->at(i);
  }
  segment.bytes.assign(bytes->begin() + static_cast<std::ptrdiff_t>(1 + address_bytes),
                       bytes->end() - 1);
  if (segment.address + segment.bytes.size() > 0x10000 || segment.address > 0xFFFF) {
    return "address above FFFF";
  }
  segments.push_back(std::move(segment));
  return nullptr;
}

}  // namespace

SRecords ParseSRecords(std::string_view text) {
  SRecords result;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    if (line.empty()) continue;
    if (const char* wrong = ParseRecord(line, result.segments)) {
      result.error = "line " + std::to_string(number) + ": " + wrong;
      return result;
    }
  }
  if (result.segments.empty()) result.error = "no data records";
  return result;
}

}  // namespace brevant::target
