// SPDX-License-Identifier: MIT
// The types of a program's variables as values: what a pointer points at, how many elements an
// array has, where the members of a structure lie. Rests on nothing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brevant::symbols {

// Of one table; structures name themselves through the pointers in them.
using TypeId = std::uint32_t;
inline constexpr TypeId kUnknownType = 0;

struct Member {
  std::string name;
  int offset = 0;  // bytes from the structure's start
  int bit = 0;     // of a bit-field: its lowest bit in the byte at offset
  int bits = 0;    // how many there are; 0: no bit-field
  TypeId type = kUnknownType;
};

struct Type {
  enum class Kind { Unknown, Void, Bool, Integer, Float, Pointer, Array, Function, Struct, Union };

  Kind kind = Kind::Unknown;
  int size = 0;  // bytes; 0: not known, or none (void, functions)
  bool is_signed = false;
  std::string name = {};  // "unsigned char", "struct point"; empty for derived types
  TypeId target =
      kUnknownType;  // what a pointer points at, an array's element, a function's result
  int count = 0;     // an array's elements
  std::vector<Member> members = {};
};

class Types {
 public:
  const Type& operator[](TypeId id) const { return types_[id < types_.size() ? id : kUnknownType]; }
  // Ids are below this.
  TypeId size() const { return static_cast<TypeId>(types_.size()); }
  TypeId Add(Type type);
  // For a structure that its own members name: added first, completed then.
  Type& Complete(TypeId id) { return types_[id]; }

  // As C writes it: "int (*)[4]". Empty for an unknown type.
  std::string Text(TypeId id) const;

 private:
  std::vector<Type> types_ = std::vector<Type>(1);
};

}  // namespace brevant::symbols
