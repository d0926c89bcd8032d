// SPDX-License-Identifier: MIT
// Text files of numbers, one a line: what file I/O hands to a program and takes from it. Never
// touches the target.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brevant::control {

// A number as an input line may hold it, blanks around it: decimal from -32768 to 65535, 0x and
// hexadecimal digits, or a character in quotes.
std::optional<std::uint16_t> ParseNumberLine(std::string_view line);
inline constexpr const char* kNumberExpected =
    "a number from -32768 to 65535, 0x0 to 0xFFFF or a character in quotes";

class NumberInput {
 public:
  enum class Found { Number, Nothing, End };

  // Empty, or why the file cannot be read. It is read here, as a whole.
  std::string Open(const std::string& path);
  // Goes to the next line that is neither blank nor begins with #. Nothing: it holds no number.
  Found Next();
  // The number found.
  std::uint16_t number() const { return number_; }
  // The line that Next came to last, from 1.
  int line() const { return line_; }

 private:
  std::string text_;
  std::size_t next_ = 0;
  int line_ = 0;
  std::uint16_t number_ = 0;
};

class NumberOutput {
 public:
  // Empties the file. Empty, or why it cannot be written.
  std::string Open(const std::string& path);
  // A line of its own, handed to the system at once. Empty, or why that failed.
  std::string Append(std::uint16_t number);
  // Empty, or what went wrong only then. Nothing for one that is not open.
  std::string Close();

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace brevant::control
