// SPDX-License-Identifier: MIT
#include "images/record_tokens.h"

#include <algorithm>

namespace brevant::images {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

}  // namespace

void RecordTokens::SkipWhiteSpace() {
  for (; at_ < text_.size() && kWhiteSpace.find(text_[at_]) != std::string_view::npos; ++at_) {
    const bool carriage_return_alone =
        text_[at_] == '\r' && (at_ + 1 == text_.size() || text_[at_ + 1] != '\n');
    if (text_[at_] == '\n' || carriage_return_alone) ++line_;
  }
}

std::optional<RecordToken> RecordTokens::Next() {
  SkipWhiteSpace();
  if (at_ == text_.size()) return std::nullopt;
  const std::size_t end = std::min(text_.find_first_of(kWhiteSpace, at_), text_.size());
  const std::size_t length = end - at_;
  const RecordToken token{text_.substr(at_, std::min(length, kMaxRecordLength)),
                          length > kMaxRecordLength, line_};
  at_ = end;
  return token;
}

}  // namespace brevant::images
