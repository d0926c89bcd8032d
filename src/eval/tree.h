// SPDX-License-Identifier: MIT
// Expressions as C writes them, as a tree. The text is looked at here alone; names mean nothing
// yet.
//
//   i   list->next->value   table[i + 1]   s.flags   *p   &buf   (unsigned char)x   a < b && !c
//   12 is decimal; 0x1F and $1F are hexadecimal; 'a' is a character
//   io.c:count, isqrt.bit: a name of one file, of one function
//   PC SP HX H X A CCR: registers, unless a variable has that name; @A is always the register
//
// Rests on nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brevant::eval {

enum class Op {
  Number,
  Name,      // text; scope before ':' or empty
  Register,  // text
  Member,    // text; of the first child
  Arrow,     // text; of what the first child points at
  Index,     // [ ]
  Dereference,
  AddressOf,
  Plus,
  Minus,
  Not,
  Complement,
  Cast,  // text is the type's name, stars how many '*' follow it
  SizeOf,
  Multiply,
  Divide,
  Modulo,
  Add,
  Subtract,
  ShiftLeft,
  ShiftRight,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  Equal,
  Unequal,
  BitAnd,
  BitXor,
  BitOr,
  And,
  Or,
};

struct Tree {
  Op op = Op::Number;
  std::string text = {};
  std::string scope = {};
  int stars = 0;
  std::int64_t number = 0;
  bool is_unsigned = false;      // of a number: written with a U
  bool may_be_unsigned = false;  // of a number: hexadecimal, or too large for another
  bool is_real = false;          // of a number: real is it
  double real = 0;
  std::vector<Tree> children = {};
};

struct Parsed {
  Tree tree = {};
  std::string problem = {};  // for people; empty when the tree is whole
  bool ok() const { return problem.empty(); }
};

Parsed Parse(std::string_view text);

}  // namespace brevant::eval
