// SPDX-License-Identifier: MIT
#include "control/number_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <system_error>

#include "base/files.h"
#include "base/text_number.h"

namespace brevant::control {
namespace {

constexpr long kLeast = -0x8000, kMost = 0xFFFF;
constexpr int kMaxHexDigits = 4;
constexpr std::string_view kBlanks = " \t\r";

std::string SystemError() {
  return std::system_category().message(errno);
}

std::string_view Trimmed(std::string_view line) {
  const auto first = line.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

std::optional<std::uint16_t> ParseNumberLine(std::string_view line) {
  const std::string_view text = Trimmed(line);
  if (text.size() == 3 && text.front() == '\'' && text.back() == '\'') {
    return static_cast<std::uint8_t>(text[1]);
  }
  if (text.starts_with("0x") || text.starts_with("0X")) {
    const auto value = base::ParseHexExactly(text.substr(2), kMaxHexDigits);
    return value ? std::optional(static_cast<std::uint16_t>(*value)) : std::nullopt;
  }
  long value = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || behind != end || value < kLeast || value > kMost) return std::nullopt;
  return static_cast<std::uint16_t>(value);
}

std::string NumberInput::Open(const std::string& path) {
  base::FileText file = base::ReadFile(path);
  text_ = std::move(file.text);
  // Spreadsheets put the mark of UTF-8 at the beginning.
  next_ = text_.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  line_ = 0;
  return file.error;
}

NumberInput::Found NumberInput::Next() {
  while (next_ < text_.size()) {
    const std::size_t end = std::min(text_.find('\n', next_), text_.size());
    const std::string_view line = std::string_view(text_).substr(next_, end - next_);
    next_ = end + 1;
    ++line_;
    const std::string_view content = Trimmed(line);
    if (content.empty() || content.front() == '#') continue;
    const auto number = ParseNumberLine(content);
    number_ = number.value_or(0);
    return number ? Found::Number : Found::Nothing;
  }
  return Found::End;
}

std::string NumberOutput::Open(const std::string& path) {
  file_.reset(std::fopen(path.c_str(), "we"));
  return file_ ? std::string() : SystemError();
}

std::string NumberOutput::Append(std::uint16_t number) {
  const bool done =
      std::fprintf(file_.get(), "%u\n", unsigned{number}) > 0 && std::fflush(file_.get()) == 0;
  return done ? std::string() : SystemError();
}

std::string NumberOutput::Close() {
  if (!file_) return {};
  return std::fclose(file_.release()) == 0 ? std::string() : SystemError();
}

}  // namespace brevant::control
