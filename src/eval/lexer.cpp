// SPDX-License-Identifier: MIT
#include "eval/lexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>

#include "base/text_format.h"

namespace brevant::eval {
namespace {

using Kind = Token::Kind;

constexpr std::array<std::string_view, 12> kLongSigns{
    "->", "<<", ">>", "<=", ">=", "==", "!=", "&&", "||", "::", "++", "--"};
constexpr std::string_view kSigns = "+-*/%<>&^|!~()[].=";
constexpr std::uint64_t kMostNumber = std::numeric_limits<std::uint64_t>::max();

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsNamePart(char c) {
  return IsNameStart(c) || IsDigit(c);
}

std::optional<int> DigitOf(char c, int base) {
  int digit = base;
  if (IsDigit(c)) digit = c - '0';
  if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
  if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
  if (digit < base) return digit;
  return std::nullopt;
}

// A file's name or path that ends at a ':' before a name: "src/io.c" of "src/io.c:count".
std::size_t ScopeLength(std::string_view text) {
  const std::size_t end =
      std::ranges::find_if(
          text,
          [](char c) { return !IsNamePart(c) && c != '.' && c != '/' && c != '\\' && c != '-'; }) -
      text.begin();
  const bool scope = end + 1 < text.size() && text[end] == ':' && IsNameStart(text[end + 1]);
  return scope ? end : 0;
}

// Of UTF-8, all its bytes.
std::string FirstCharacter(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
    ++length;
  return std::string(text.substr(0, length));
}

class Lexer {
 public:
  explicit Lexer(std::string_view text) : rest_(text) {}

  Tokens Run() {
    while (tokens_.problem.empty()) {
      while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t')) Skip(1);
      if (rest_.empty()) break;
      Next();
    }
    tokens_.list.emplace_back();
    return std::move(tokens_);
  }

 private:
  void Skip(std::size_t count) { rest_.remove_prefix(count); }
  void Fail(std::string problem) { tokens_.problem = std::move(problem); }

  void Next() {
    const char c = rest_.front();
    if (c == '$') {
      Skip(1);
      return TakeNumber(16, true);
    }
    if (IsDigit(c)) {
      const bool hex = rest_.starts_with("0x") || rest_.starts_with("0X");
      if (hex) Skip(2);
      return TakeNumber(hex ? 16 : 10, hex);
    }
    if (IsNameStart(c)) return TakeName();
    if (c == '@') {
      Skip(1);
      return TakeRegister();
    }
    if (c == '\'') return TakeCharacter();
    TakeSign();
  }

  // 3.5, 1e3: what stands before a '.' with a digit, or an 'e' with digits, is decimal.
  bool TakeReal() {
    const std::size_t whole = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    const std::string_view behind = rest_.substr(whole);
    const auto digit_at = [behind](std::size_t n) {
      return n < behind.size() && IsDigit(behind[n]);
    };
    const bool point = behind.starts_with('.') && digit_at(1);
    const bool exponent = behind.starts_with('e') || behind.starts_with('E');
    const bool sign = behind.size() > 1 && (behind[1] == '-' || behind[1] == '+');
    if (!point && !(exponent && digit_at(sign ? 2 : 1))) return false;
    Token token{.kind = Kind::Number, .is_real = true};
    const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), token.real);
    if (read.ec != std::errc()) {
      Fail("the number is too large");
      return true;
    }
    Skip(static_cast<std::size_t>(read.ptr - rest_.data()));
    if (!rest_.empty() && (rest_.front() == 'f' || rest_.front() == 'F')) Skip(1);
    tokens_.list.push_back(token);
    return true;
  }

  // Nothing without a digit, and when it does not fit 64 bits.
  std::optional<std::uint64_t> TakeDigits(int base) {
    std::uint64_t number = 0;
    bool any = false;
    while (!rest_.empty()) {
      const auto digit = DigitOf(rest_.front(), base);
      if (!digit) break;
      const auto value = static_cast<std::uint64_t>(*digit);
      const auto factor = static_cast<std::uint64_t>(base);
      if (number > (kMostNumber - value) / factor) {
        Fail("the number is too large");
        return std::nullopt;
      }
      number = number * factor + value;
      any = true;
      Skip(1);
    }
    if (any) return number;
    Fail("a hexadecimal digit is missing");
    return std::nullopt;
  }

  void TakeNumber(int base, bool hexadecimal) {
    if (base == 10 && TakeReal()) return;
    if (base == 10 && rest_.size() > 1 && rest_[0] == '0' && IsDigit(rest_[1])) {
      return Fail("a leading 0 makes a number octal in C: write it without, or 0x before it");
    }
    const auto number = TakeDigits(base);
    if (!number) return;
    Token token{.kind = Kind::Number, .number = static_cast<std::int64_t>(*number)};
    token.may_be_unsigned = hexadecimal || token.number < 0;
    while (!rest_.empty() &&
           std::string_view("uUlL").find(rest_.front()) != std::string_view::npos) {
      token.is_unsigned = token.is_unsigned || rest_.front() == 'u' || rest_.front() == 'U';
      Skip(1);
    }
    if (!rest_.empty() && IsNamePart(rest_.front())) {
      return Fail(base == 10 ? "a hexadecimal number begins with 0x or $"
                             : base::Format("\"%c\" is no hexadecimal digit", rest_.front()));
    }
    tokens_.list.push_back(token);
  }

  std::string TakeWord() {
    const auto* const end = std::ranges::find_if(rest_, [](char c) { return !IsNamePart(c); });
    std::string word(rest_.begin(), end);
    Skip(word.size());
    return word;
  }

  void TakeName() {
    Token token{.kind = Kind::Name};
    if (const std::size_t length = ScopeLength(rest_); length > 0) {
      token.scope = rest_.substr(0, length);
      Skip(length + 1);
    }
    token.text = TakeWord();
    tokens_.list.push_back(token);
  }

  void TakeRegister() {
    const std::string name = TakeWord();
    if (name.empty()) return Fail("a register's name is expected behind @");
    tokens_.list.push_back({.kind = Kind::Register, .text = name});
  }

  void TakeCharacter() {
    const bool escaped = rest_.size() > 1 && rest_[1] == '\\';
    const std::size_t at = escaped ? 2 : 1;
    if (rest_.size() < at + 2 || rest_[at + 1] != '\'') {
      return Fail("a character stands between two ' as in 'a'");
    }
    char c = rest_[at];
    if (escaped) {
      constexpr std::string_view kLetters = "ntr0\\'", kMeant("\n\t\r\0\\'", 6);
      const std::size_t place = kLetters.find(c);
      if (place == std::string_view::npos)
        return Fail("of \\ only \\n \\t \\r \\0 \\\\ \\' are known");
      c = kMeant[place];
    }
    tokens_.list.push_back({.kind = Kind::Number, .number = static_cast<unsigned char>(c)});
    Skip(at + 2);
  }

  void TakeSign() {
    const auto* const sign = std::ranges::find_if(
        kLongSigns, [this](std::string_view known) { return rest_.starts_with(known); });
    const std::size_t length = sign != kLongSigns.end() ? 2 : 1;
    if (length == 1 && kSigns.find(rest_.front()) == std::string_view::npos) {
      return Fail(base::Format("\"%s\" has no meaning in an expression", FirstCharacter(rest_)));
    }
    tokens_.list.push_back({.kind = Kind::Sign, .text = std::string(rest_.substr(0, length))});
    Skip(length);
  }

  std::string_view rest_;
  Tokens tokens_;
};

}  // namespace

Tokens Split(std::string_view text) {
  return Lexer(text).Run();
}

}  // namespace brevant::eval
