// SPDX-License-Identifier: MIT
#include "images/record_walk.h"

#include <algorithm>
#include <variant>

#include "images/hex_record.h"
#include "images/s_record.h"

namespace brevant::images {
namespace {

constexpr base::Address kLastAddress = 0xFFFF;

bool Deliver(base::Address address, base::Bytes data, RecordSink& sink, ReadReport& report) {
  if (!sink.Data(address, data)) {
    report.cancelled = true;
    return false;
  }
  ++report.records;
  report.bytes += static_cast<long>(data.size());
  return true;
}

long BytesBeyond(base::Address address, std::size_t count) {
  const std::size_t below = address > kLastAddress ? 0 : kLastAddress + 1 - address;
  return static_cast<long>(count - std::min(count, below));
}

}  // namespace

void ReadReport::CountSkipped(const RecordToken& token, RecordFault reason) {
  if (skipped++ > 0) return;
  first_skipped_line = token.line;
  first_skipped_reason = reason;
}

ReadReport WalkSRecords(std::string_view text, RecordSink& sink) {
  ReadReport report;
  RecordTokens tokens(text);
  while (const auto token = tokens.Next()) {
    const auto parsed = ParseSRecord(*token);
    if (const auto* fault = std::get_if<RecordFault>(&parsed)) {
      report.CountSkipped(*token, *fault);
      continue;
    }
    const auto& record = std::get<SRecord>(parsed);
    if (record.kind == SRecordKind::EndOfImage) {
      report.stopped_at_line = token->line;
      break;
    }
    if (record.kind == SRecordKind::Entry) {
      report.entry = record.address;
      sink.Entry(record.address);
    }
    if (record.kind == SRecordKind::Data && !Deliver(record.address, record.data, sink, report)) {
      break;
    }
  }
  return report;
}

ReadReport WalkIntelHex(std::string_view text, RecordSink& sink) {
  ReadReport report;
  RecordTokens tokens(text);
  base::Address base_address = 0;
  while (const auto token = tokens.Next()) {
    const auto parsed = ParseHexRecord(*token);
    if (const auto* fault = std::get_if<RecordFault>(&parsed)) {
      report.CountSkipped(*token, *fault);
      continue;
    }
    const auto& record = std::get<HexRecord>(parsed);
    if (record.kind == HexRecordKind::EndOfFile) {
      report.stopped_at_line = token->line;
      break;
    }
    if (record.kind == HexRecordKind::Base) base_address = record.address;
    if (record.kind != HexRecordKind::Data) continue;
    const base::Address address = base_address + record.address;
    if (!Deliver(address, record.data, sink, report)) break;
    report.beyond_16_bits += BytesBeyond(address, record.data.size());
  }
  return report;
}

}  // namespace brevant::images
