// SPDX-License-Identifier: MIT
#include "views/source_index.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "base/file_names.h"
#include "views/source_characters.h"

namespace brevant::views {
namespace {

constexpr std::size_t kBlock = 1 << 16;
constexpr int kMostBytesACharacter = 4;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Reads up to size bytes at the file's place into the block.
bool ReadBlock(std::ifstream& file, std::string& block, std::size_t size) {
  block.resize(size);
  file.read(block.data(), static_cast<std::streamsize>(size));
  block.resize(static_cast<std::size_t>(file.gcount()));
  return !block.empty();
}

void DropLineEnd(std::string& line) {
  if (line.empty() || line.back() != '\n') return;
  line.pop_back();
  if (!line.empty() && line.back() == '\r') line.pop_back();
}

constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

SourceIndex::SourceIndex(const std::string& path)
    : path_(path), why_(), language_(LanguageOf(path)), stamp_(base::StampOf(path)) {
  if (stamp_ && stamp_->size > kMostBytes) {
    why_ = "too large for a source file";
    return;
  }
  Scan();
}

void SourceIndex::Scan() {
  errno = 0;
  std::ifstream file(path_, std::ios::binary);
  if (!file) {
    why_ = std::system_category().message(errno != 0 ? errno : EIO);
    return;
  }
  std::string block;
  std::uint64_t offset = 0;
  SyntaxState state = SyntaxState::Code;
  in_comment_.push_back(false);
  while (ReadBlock(file, block, kBlock)) {
    if (offset == 0 && block.starts_with(kByteOrderMark)) starts_[0] = kByteOrderMark.size();
    for (std::size_t i = 0; i < block.size(); ++i) {
      if (language_ == SourceLanguage::C) state = AfterCharacter(state, block[i], language_);
      if (block[i] != '\n') continue;
      starts_.push_back(offset + i + 1);
      in_comment_.push_back(state == SyntaxState::BlockComment);
    }
    offset += block.size();
  }
  if (file.bad()) why_ = std::system_category().message(EIO);
  if (offset > starts_.back()) starts_.push_back(offset);
}

bool SourceIndex::Current() const {
  return base::StampOf(path_) == stamp_;
}

std::optional<std::vector<SourceIndex::Line>> SourceIndex::Read(int first, int count,
                                                                int most_characters) const {
  if (!ok() || !Current()) return std::nullopt;
  std::ifstream file(path_, std::ios::binary);
  const auto most = static_cast<std::uint64_t>(most_characters + 1) * kMostBytesACharacter;
  std::vector<Line> lines;
  for (int n = std::max(first, 0); n < std::min(first + count, line_count()); ++n) {
    const auto line = static_cast<std::size_t>(n);
    const std::uint64_t length = starts_[line + 1] - starts_[line];
    std::string bytes;
    file.seekg(static_cast<std::streamoff>(starts_[line]));
    ReadBlock(file, bytes, std::min(length, most));
    if (bytes.size() != std::min(length, most)) return std::nullopt;
    DropLineEnd(bytes);
    const std::string_view whole = length > most ? WholeCharacters(bytes) : bytes;
    lines.push_back({ToUtf8(whole), in_comment_[line]});
  }
  return lines;
}

int SourceIndex::LineAt(std::uint64_t offset) const {
  const auto behind = std::upper_bound(starts_.begin(), starts_.end(), offset);
  return static_cast<int>(behind - starts_.begin()) - 1;
}

std::optional<int> SourceIndex::Find(std::string_view utf8, int first, bool match_case) const {
  if (!ok() || !Current() || utf8.empty() || first >= line_count()) return std::nullopt;
  std::vector<std::string> wanted{std::string(utf8)};
  if (const auto latin1 = ToLatin1(utf8); latin1 && *latin1 != utf8) wanted.push_back(*latin1);
  if (!match_case) {
    for (std::string& text : wanted) text = base::UpperCase(text);
  }
  std::ifstream file(path_, std::ios::binary);
  std::uint64_t offset = starts_[static_cast<std::size_t>(std::max(first, 0))];
  file.seekg(static_cast<std::streamoff>(offset));
  // What may be the beginning of a match stays for the next block.
  std::string kept;
  for (std::string block; ReadBlock(file, block, kBlock);) {
    if (!match_case) std::ranges::transform(block, block.begin(), Upper);
    kept += block;
    std::size_t found = std::string::npos;
    for (const std::string& text : wanted) found = std::min(found, kept.find(text));
    if (found != std::string::npos) return LineAt(offset + found);
    const std::size_t done = kept.size() - std::min(kept.size(), utf8.size() - 1);
    kept.erase(0, done);
    offset += done;
  }
  return std::nullopt;
}

}  // namespace brevant::views
