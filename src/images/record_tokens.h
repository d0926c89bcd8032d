// SPDX-License-Identifier: MIT
// Image files are read as records separated by white space, whatever the line ends and however many
// blank lines there are. This walks over them in one pass without copying.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace brevant::images {

// A record of more characters is malformed.
inline constexpr std::size_t kMaxRecordLength = 255;

struct RecordToken {
  std::string_view text;  // at most kMaxRecordLength characters of it
  bool too_long = false;  // there were more
  long line = 1;          // counted from 1; CR, LF and CR LF each end a line
};

class RecordTokens {
 public:
  // The text outlives the walk.
  explicit RecordTokens(std::string_view text) : text_(text) {}
  // Nothing at the end of the text.
  std::optional<RecordToken> Next();

 private:
  void SkipWhiteSpace();

  std::string_view text_;
  std::size_t at_ = 0;
  long line_ = 1;
};

}  // namespace brevant::images
