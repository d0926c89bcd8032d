// SPDX-License-Identifier: MIT
#include "images/image_file.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "base/files.h"
#include "images/hex_record.h"
#include "images/record_tokens.h"
#include "images/s_record.h"

namespace brevant::images {
namespace {

void AddData(ImageRecord record, ImageFile& file) {
  file.report.CountData(record.line, record.bytes.size(), record.checksum_right);
  file.records.push_back(std::move(record));
}

long BytesBeyond(base::Address address, std::size_t count) {
  const std::size_t below = address < base::kAddressSpace ? base::kAddressSpace - address : 0;
  return static_cast<long>(count - std::min(count, below));
}

}  // namespace

Image ImageFile::ToImage() const {
  Image image;
  for (const ImageRecord& record : records) image.Put(record.address, record.bytes);
  return image;
}

ImageFile ParseSRecords(std::string_view text) {
  return ParseSRecords(text, [](std::string_view) { return false; });
}

ImageFile ParseSRecords(std::string_view text, bool (*ends_file)(std::string_view word)) {
  using Kind = ImageRecord::Kind;
  ImageFile file;
  RecordTokens tokens(text);
  while (const auto token = tokens.Next()) {
    if (ends_file(token->text)) {
      if (token->text.front() != 'S') file.report.no_record_line = token->line;
      break;
    }
    auto parsed = ParseSRecord(*token);
    if (const auto* fault = std::get_if<RecordFault>(&parsed)) {
      file.report.CountSkipped(token->line, *fault);
      continue;
    }
    auto& [kind, address, data, checksum_right] = std::get<SRecord>(parsed);
    switch (kind) {
      case SRecordKind::Header:
        break;
      case SRecordKind::Data:
        AddData({Kind::Data, address, std::move(data), token->line, checksum_right}, file);
        break;
      case SRecordKind::Entry:
        file.report.entry = address;
        file.records.push_back({Kind::Entry, address, {}, token->line, checksum_right});
        break;
      case SRecordKind::NoRecord:
        file.report.no_record_line = token->line;
        return file;
      case SRecordKind::End:
        return file;
    }
  }
  return file;
}

ImageFile ParseIntelHex(std::string_view text) {
  ImageFile file;
  RecordTokens tokens(text);
  base::Address base_address = 0;
  while (const auto token = tokens.Next()) {
    auto parsed = ParseHexRecord(*token);
    if (const auto* fault = std::get_if<RecordFault>(&parsed)) {
      file.report.CountSkipped(token->line, *fault);
      continue;
    }
    auto& [kind, offset, data, checksum_right] = std::get<HexRecord>(parsed);
    const base::Address address = base_address + offset;
    switch (kind) {
      case HexRecordKind::Data:
        file.report.beyond_16_bits += BytesBeyond(address, data.size());
        AddData({ImageRecord::Kind::Data, address, std::move(data), token->line, checksum_right},
                file);
        break;
      case HexRecordKind::Base:
        base_address = offset;
        break;
      case HexRecordKind::Other:
        break;
      case HexRecordKind::NoRecord:
        file.report.no_record_line = token->line;
        return file;
      case HexRecordKind::EndOfFile:
        return file;
    }
  }
  file.report.no_end_record = true;
  return file;
}

ImageFile ParseImage(std::string_view text) {
  const auto first = RecordTokens(text).Next();
  const bool intel_hex = first && first->text.front() == ':';
  return intel_hex ? ParseIntelHex(text) : ParseSRecords(text);
}

ImageFile ReadImageFile(const std::filesystem::path& path, ImageParser parse) {
  const base::FileText text = base::ReadFile(path);
  if (text.ok()) return parse(text.text);
  ImageFile file;
  file.report.file_error = text.error;
  return file;
}

}  // namespace brevant::images
