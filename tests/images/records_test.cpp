// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "images/hex_record.h"
#include "images/record_tokens.h"
#include "images/s_record.h"

namespace brevant::images {
namespace {

struct Case {
  std::string token;
  std::string meaning;
};

std::string Text(const std::vector<std::uint8_t>& data) {
  std::string text;
  for (const std::uint8_t byte : data) {
    text += " ";
    text += "0123456789ABCDEF"[byte >> 4];
    text += "0123456789ABCDEF"[byte & 15];
  }
  return text;
}

RecordToken Token(const std::string& text) {
  RecordTokens tokens(text);
  return *tokens.Next();
}

std::string MeaningOfS(const std::string& text) {
  const auto parsed = ParseSRecord(Token(text));
  if (const auto* fault = std::get_if<RecordFault>(&parsed)) return std::string(Describe(*fault));
  const auto& record = std::get<SRecord>(parsed);
  switch (record.kind) {
    case SRecordKind::Header:
      return "header";
    case SRecordKind::Data:
      return "data at " + std::to_string(record.address) + Text(record.data);
    case SRecordKind::Entry:
      return "entry " + std::to_string(record.address);
    case SRecordKind::End:
      return "end";
    case SRecordKind::NoRecord:
      return "no record";
  }
  return "";
}

std::string MeaningOfHex(const std::string& text) {
  const auto parsed = ParseHexRecord(Token(text));
  if (const auto* fault = std::get_if<RecordFault>(&parsed)) return std::string(Describe(*fault));
  const auto& record = std::get<HexRecord>(parsed);
  switch (record.kind) {
    case HexRecordKind::Data:
      return "data at " + std::to_string(record.address) + Text(record.data);
    case HexRecordKind::EndOfFile:
      return "end";
    case HexRecordKind::NoRecord:
      return "no record";
    case HexRecordKind::Base:
      return "base " + std::to_string(record.address);
    case HexRecordKind::Other:
      return "other";
  }
  return "";
}

TEST(SRecord, MeansWhatItsFieldsSay) {
  const std::vector<Case> cases = {
      {"S00600004844521B", "header"},
      {"S0", "header"},
      {"S1060100A1b2C300", "data at 256 A1 B2 C3"},
      {"s1060100A1b2C300", "data at 256 A1 B2 C3"},
      {"S1030100FB", "data at 256"},
      {"S1060100A1B2C300trailing", "data at 256 A1 B2 C3"},
      {"S205018000AA00", "data at 98304 AA"},
      {"S30601000080AA00", "data at 16777344 AA"},
      {"S90380007C", "entry 32768"},
      {"s9ZZ8000", "entry 32768"},
      {"x9038000", "entry 32768"},
      {"S5030001FB", "end"},
      {"S70500008000", "end"},
      {"SF030000", "end"},
      {":00000001FF", "no record"},
      {"x9", "no record"},
      {"Q", "no record"},
      {"S", "fewer characters than the count says"},
      {"S1", "fewer characters than the count says"},
      {"S1060100A1B2C3", "fewer characters than the count says"},
      {"S1060100A1B2", "fewer characters than the count says"},
      {"S9030", "fewer characters than the count says"},
      {"SZ030000FC", "a field is not hexadecimal"},
      {"S1G60100A1B2C300", "a field is not hexadecimal"},
      {"S10601x0A1B2C300", "a field is not hexadecimal"},
      {"S1060100A1-2C300", "a field is not hexadecimal"},
      {"S903zzzz7C", "a field is not hexadecimal"},
      {"S1020100", "the count is too small for the address and the checksum"},
      {"S30501000080AA", "data at 16777344"},
      {"S1" + std::string(254, '0'), "longer than 255 characters"},
      {"Q1" + std::string(254, '0'), "no record"},
  };
  for (const Case& c : cases) EXPECT_EQ(MeaningOfS(c.token), c.meaning) << c.token;
}

TEST(HexRecord, MeansWhatItsFieldsSay) {
  const std::vector<Case> cases = {
      {":0300300002337A1E", "data at 48 02 33 7A"},
      {":03fffe0002337aAA", "data at 65534 02 33 7A"},
      {":0000000000", "data at 0"},
      {":00000001FF", "end"},
      {"S1060100A1B2C300", "no record"},
      {":020000021200EA", "base 73728"},
      {":020000040001F9", "base 65536"},
      {":0400000300003800C1", "other"},
      {":04000005000000CD2A", "other"},
      {":0300300002337A", "fewer characters than the count says"},
      {":0300", "fewer characters than the count says"},
      {":03003x0002337A1E", "a field is not hexadecimal"},
      {":0300300002!37A1E", "a field is not hexadecimal"},
      {":0100000212EB", "the count is too small for the address and the checksum"},
      {":" + std::string(255, '0'), "longer than 255 characters"},
  };
  for (const Case& c : cases) EXPECT_EQ(MeaningOfHex(c.token), c.meaning) << c.token;
}

TEST(RecordTokens, IgnoresLineEndsAndCountsLines) {
  RecordTokens tokens("\r\n a b\r\nc\r\rd\n\n\te\v");
  std::string seen;
  while (const auto token = tokens.Next()) {
    seen += std::string(token->text) + std::to_string(token->line) + " ";
  }
  EXPECT_EQ(seen, "a2 b2 c3 d5 e7 ");
}

TEST(RecordTokens, CutsALongWordAndGoesOnBehindIt) {
  const std::string text = std::string(255, 'x') + " " + std::string(10'000'000, 'y') + "\nz";
  RecordTokens tokens(text);
  EXPECT_FALSE(tokens.Next()->too_long);
  const auto cut = tokens.Next();
  EXPECT_TRUE(cut->too_long);
  EXPECT_EQ(cut->text.size(), kMaxRecordLength);
  EXPECT_EQ(tokens.Next()->text, "z");
  EXPECT_FALSE(tokens.Next());
}

}  // namespace
}  // namespace brevant::images
