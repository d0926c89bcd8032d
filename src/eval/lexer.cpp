// SPDX-License-Identifier: MIT
#include "eval/lexer.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/text_format.h"

namespace brevant::eval {
namespace {

using Kind = Token::Kind;

constexpr std::array<std::string_view, 10> kLongSigns{
    "->", "<<", ">>", "<=", ">=", "==", "!=", "&&", "||", "::"};
constexpr std::string_view kSigns = "+-*/%<>&^|!~()[].=";
constexpr int kMostDigits = 16;

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

  void TakeNumber(int base, bool is_unsigned) {
    Token token{.kind = Kind::Number, .is_unsigned = is_unsigned};
    int digits = 0;
    if (rest_.empty() || !DigitOf(rest_.front(), base))
      return Fail("a hexadecimal digit is missing");
    while (!rest_.empty()) {
      const auto digit = DigitOf(rest_.front(), base);
      if (!digit) break;
      token.number = token.number * base + *digit;
      if (token.number != 0) ++digits;
      Skip(1);
      if (digits > kMostDigits - 1) return Fail("the number is too large");
    }
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
      return Fail(
          base::Format("\"%s\" has no meaning in an expression", std::string(rest_.substr(0, 1))));
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
