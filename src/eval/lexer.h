// SPDX-License-Identifier: MIT
// The words of an expression. Rests on nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brevant::eval {

struct Token {
  enum class Kind { End, Number, Name, Register, Sign };
  Kind kind = Kind::End;
  std::string text = {};         // of a name or a sign: "->", "<=", "("
  std::string scope = {};        // of a name: the file before its ':'
  std::int64_t number = 0;       // 64 bits, of a larger one those of the unsigned number
  bool is_unsigned = false;      // written with a U
  bool may_be_unsigned = false;  // hexadecimal, or too large for another
  bool is_real = false;          // then real is the number
  double real = 0;
};

struct Tokens {
  std::vector<Token> list;  // ends with End
  std::string problem;      // empty when all is well
};

Tokens Split(std::string_view text);

}  // namespace brevant::eval
