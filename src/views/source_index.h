// SPDX-License-Identifier: MIT
// Where the lines of a source file start. The file is read once for that and not held: the lines
// that are shown are read when they are, and never from another version of the file.
//
// A line ends with a line feed, or a carriage return and a line feed, or with the file; it may be
// as long as it likes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "views/source_syntax.h"

namespace brevant::views {

class SourceIndex {
 public:
  struct Line {
    std::string text;  // UTF-8, with tabs, without its end
    bool begins_in_comment = false;
  };
  // What is larger is no source.
  static constexpr long long kMostBytes = 1LL << 28;

  // No file.
  SourceIndex() = default;
  explicit SourceIndex(const std::string& path);

  bool ok() const { return why_.empty(); }
  // Why there are no lines, in the system's words.
  const std::string& why() const { return why_; }
  const std::string& path() const { return path_; }
  SourceLanguage language() const { return language_; }
  int line_count() const { return static_cast<int>(starts_.size()) - 1; }
  // The file is still, or still not, there as it was.
  bool Current() const;

  // Up to count lines from first on (from 0), of each at least most_characters as far as it has
  // them. Nothing when the file cannot be read any more or is another version.
  std::optional<std::vector<Line>> Read(int first, int count, int most_characters) const;
  // The first line from first on that holds the text. Letters of ASCII count in either case unless
  // match_case. Nothing also when the file cannot be read any more.
  std::optional<int> Find(std::string_view utf8, int first, bool match_case) const;

 private:
  void Scan();
  int LineAt(std::uint64_t offset) const;

  std::string path_;
  std::string why_ = "no file";
  SourceLanguage language_ = SourceLanguage::Plain;
  std::optional<base::FileStamp> stamp_;
  std::vector<std::uint64_t> starts_{0};  // and where the last line ends
  std::vector<bool> in_comment_;          // where a line starts
};

}  // namespace brevant::views
