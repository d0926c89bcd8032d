// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <variant>
#include <vector>

#include "images/hex_record.h"
#include "images/record_tokens.h"
#include "images/s_record.h"

namespace brevant::images {
namespace {

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

// Rows of a token and its meaning.
void CheckRows(const char* name, int rows, std::string (*meaning_of)(const std::string&)) {
  std::ifstream file(std::string(BREVANT_TEST_DATA "/images/") + name);
  std::string token;
  for (std::string meaning; std::getline(file, token, '\t') && std::getline(file, meaning);
       --rows) {
    EXPECT_EQ(meaning_of(token), meaning) << token;
  }
  EXPECT_EQ(rows, 0);
}

TEST(SRecord, MeansWhatItsFieldsSay) {
  CheckRows("s_records.tsv", 29, MeaningOfS);
  EXPECT_EQ(MeaningOfS("S1" + std::string(254, '0')), "longer than 255 characters");
  EXPECT_EQ(MeaningOfS("Q1" + std::string(254, '0')), "no record");
}

TEST(HexRecord, MeansWhatItsFieldsSay) {
  CheckRows("hex_records.tsv", 14, MeaningOfHex);
  EXPECT_EQ(MeaningOfHex(":" + std::string(255, '0')), "longer than 255 characters");
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
