// SPDX-License-Identifier: MIT
#include "eval/value.h"

#include <array>

namespace brevant::eval {
namespace {

using symbols::Type;

constexpr int kPointerSize = 2, kFloatSize = 4, kWidest = 8;

struct IntegerName {
  int size;
  const char* name;
};
constexpr std::array<IntegerName, 4> kIntegerNames{
    {{1, "char"}, {2, "int"}, {4, "long"}, {8, "long long"}}};

}  // namespace

std::string UnavailableText(const Value& value) {
  return "not available here (" + value.unavailable + ")";
}

Type IntegerType(int size, bool is_signed) {
  Type type{.kind = Type::Kind::Integer, .size = size, .is_signed = is_signed};
  for (const IntegerName& row : kIntegerNames) {
    if (row.size != size) continue;
    type.name = is_signed ? (size == 1 ? "signed " : "") : "unsigned ";
    type.name += row.name;
  }
  return type;
}

Type FloatType() {
  return {.kind = Type::Kind::Float, .size = kFloatSize, .is_signed = true, .name = "float"};
}

Type PointerTo(symbols::TypeId target) {
  return {.kind = Type::Kind::Pointer, .size = kPointerSize, .target = target};
}

bool IsInteger(const Type& type) {
  return type.kind == Type::Kind::Integer || type.kind == Type::Kind::Bool;
}

bool IsScalar(const Type& type) {
  return IsInteger(type) || type.kind == Type::Kind::Float || type.kind == Type::Kind::Pointer;
}

std::int64_t Wrapped(std::int64_t number, const Type& type) {
  if (type.kind == Type::Kind::Bool) return number != 0 ? 1 : 0;
  if (type.size <= 0 || type.size >= kWidest) return number;
  const int bits = 8 * type.size;
  const auto low = static_cast<std::uint64_t>(number) & ((std::uint64_t{1} << bits) - 1);
  const std::uint64_t sign = std::uint64_t{1} << (bits - 1);
  if (!type.is_signed || (low & sign) == 0) return static_cast<std::int64_t>(low);
  return static_cast<std::int64_t>(low - (std::uint64_t{1} << bits));
}

}  // namespace brevant::eval
