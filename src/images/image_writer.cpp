// SPDX-License-Identifier: MIT
#include "images/image_writer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "base/file_names.h"
#include "base/text_format.h"

namespace brevant::images {
namespace {

struct FormatRow {
  std::string_view extension;
  FileFormat format;
};
constexpr std::array<FormatRow, 4> kFormats{{{"s19", FileFormat::SRecord},
                                             {"sx", FileFormat::SRecord},
                                             {"hex", FileFormat::IntelHex},
                                             {"bin", FileFormat::Binary}}};

constexpr std::size_t kBytesPerRecord = 16;

std::uint8_t Sum(const std::vector<std::uint8_t>& bytes) {
  unsigned sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return base::LowByte(sum);
}

std::string HexDigits(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += base::Format("%02X", byte);
  return text;
}

std::string SRecordLine(char type, base::Address address, base::Bytes data) {
  std::vector<std::uint8_t> fields{static_cast<std::uint8_t>(data.size() + 3),
                                   base::HighByte(address), base::LowByte(address)};
  fields.insert(fields.end(), data.begin(), data.end());
  fields.push_back(static_cast<std::uint8_t>(~Sum(fields)));
  return std::string("S") + type + HexDigits(fields) + "\n";
}

std::string IntelHexLine(base::Address address, base::Bytes data) {
  std::vector<std::uint8_t> fields{static_cast<std::uint8_t>(data.size()), base::HighByte(address),
                                   base::LowByte(address), 0};
  fields.insert(fields.end(), data.begin(), data.end());
  fields.push_back(static_cast<std::uint8_t>(-Sum(fields)));
  return ":" + HexDigits(fields) + "\n";
}

template <typename Line>
std::string DataLines(base::Address first, base::Bytes bytes, Line line) {
  std::string text;
  while (!bytes.empty()) {
    const base::Address address = base::Low16(first);
    const std::size_t to_end = base::kAddressSpace - address;
    const std::size_t count = std::min({bytes.size(), kBytesPerRecord, to_end});
    text += line(address, bytes.first(count));
    bytes = bytes.subspan(count);
    first += static_cast<base::Address>(count);
  }
  return text;
}

}  // namespace

std::optional<FileFormat> FormatOfPath(std::string_view path) {
  const std::string extension = base::ExtensionOf(path);
  for (const FormatRow& row : kFormats) {
    if (base::EqualIgnoringCase(extension, row.extension)) return row.format;
  }
  return std::nullopt;
}

std::string SRecordText(base::Address first, base::Bytes bytes) {
  Image image;
  image.Put(first, bytes);
  return SRecordText(image);
}

std::string SRecordText(const Image& image) {
  base::Address records = 0;
  const auto data = [&](base::Address address, base::Bytes part) {
    ++records;
    return SRecordLine('1', address, part);
  };
  std::string lines;
  for (const Block& block : image.Blocks()) lines += DataLines(block.address, block.bytes, data);
  return SRecordLine('0', 0, {}) + lines + SRecordLine('5', records, {}) + SRecordLine('9', 0, {});
}

std::string IntelHexText(base::Address first, base::Bytes bytes) {
  return DataLines(first, bytes, IntelHexLine) + ":00000001FF\n";
}

std::string BinaryText(base::Bytes bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string ImageText(FileFormat format, base::Address first, base::Bytes bytes) {
  switch (format) {
    case FileFormat::SRecord:
      return SRecordText(first, bytes);
    case FileFormat::IntelHex:
      return IntelHexText(first, bytes);
    case FileFormat::Binary:
      return BinaryText(bytes);
  }
  return {};
}

}  // namespace brevant::images
