// SPDX-License-Identifier: MIT
#include "eval/operators.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <vector>

namespace brevant::eval {
namespace {

using symbols::Type;
using Kind = Type::Kind;

constexpr int kIntSize = 2;
constexpr std::array kIntegerSizes{2, 4, 8};

Result Problem(std::string problem) {
  return {.problem = std::move(problem)};
}

Value Integer(std::int64_t number, const Type& type) {
  return {.type = type, .number = Wrapped(number, type)};
}

Value Truth(bool truth) {
  return Integer(truth ? 1 : 0, IntegerType(kIntSize, true));
}

Value Real(double real) {
  return {.type = FloatType(), .real = real};
}

double RealOf(const Value& value) {
  if (value.type.kind == Kind::Float) return value.real;
  return static_cast<double>(value.number);
}

// The integral promotions.
Type Promoted(const Type& type) {
  return type.size < kIntSize || type.kind == Kind::Bool ? IntegerType(kIntSize, true) : type;
}

// The usual arithmetic conversions, of integers.
Type Common(const Type& left, const Type& right) {
  const Type a = Promoted(left), b = Promoted(right);
  if (a.size != b.size)
    return IntegerType(std::max(a.size, b.size), (a.size > b.size ? a : b).is_signed);
  return IntegerType(a.size, a.is_signed && b.is_signed);
}

template <typename T>
std::optional<bool> Compared(Op op, T a, T b) {
  switch (op) {
    case Op::Less:
      return a < b;
    case Op::LessEqual:
      return a <= b;
    case Op::Greater:
      return a > b;
    case Op::GreaterEqual:
      return a >= b;
    case Op::Equal:
      return a == b;
    case Op::Unequal:
      return a != b;
    default:
      return std::nullopt;
  }
}

Result OfReals(Op op, double a, double b) {
  if (const auto truth = Compared(op, a, b)) return {Truth(*truth), {}};
  switch (op) {
    case Op::Multiply:
      return {Real(a * b), {}};
    case Op::Divide:
      return {Real(a / b), {}};
    case Op::Add:
      return {Real(a + b), {}};
    case Op::Subtract:
      return {Real(a - b), {}};
    default:
      return Problem("this operator takes whole numbers");
  }
}

// Of 64 bits, with the wrapping of unsigned arithmetic; the caller cuts the result to its type.
std::int64_t Wrapping(Op op, std::int64_t a, std::int64_t b) {
  const auto x = static_cast<std::uint64_t>(a), y = static_cast<std::uint64_t>(b);
  switch (op) {
    case Op::Multiply:
      return static_cast<std::int64_t>(x * y);
    case Op::Add:
      return static_cast<std::int64_t>(x + y);
    case Op::Subtract:
      return static_cast<std::int64_t>(x - y);
    case Op::BitAnd:
      return a & b;
    case Op::BitXor:
      return a ^ b;
    default:
      return a | b;
  }
}

Result Shifted(Op op, const Value& left, std::int64_t by) {
  const Type type = Promoted(left.type);
  if (by < 0 || by >= 8 * type.size) return Problem("a shift by this many bits has no result in C");
  const auto bits = static_cast<std::uint64_t>(left.number);
  const std::int64_t shifted =
      op == Op::ShiftLeft ? static_cast<std::int64_t>(bits << by) : left.number >> by;
  return {Integer(shifted, type), {}};
}

Result OfIntegers(Op op, const Value& left, const Value& right) {
  if (op == Op::ShiftLeft || op == Op::ShiftRight) return Shifted(op, left, right.number);
  const Type type = Common(left.type, right.type);
  const std::int64_t a = Wrapped(left.number, type), b = Wrapped(right.number, type);
  const bool whole_word = !type.is_signed && type.size == kIntegerSizes.back();
  const auto x = static_cast<std::uint64_t>(a), y = static_cast<std::uint64_t>(b);
  if (const auto truth = whole_word ? Compared(op, x, y) : Compared(op, a, b)) {
    return {Truth(*truth), {}};
  }
  if (op == Op::Divide || op == Op::Modulo) {
    if (whole_word && y != 0) {
      return {Integer(static_cast<std::int64_t>(op == Op::Divide ? x / y : x % y), type), {}};
    }
    if (b == 0) return Problem("division by 0");
    if (b == -1) return {Integer(op == Op::Divide ? Wrapping(Op::Subtract, 0, a) : 0, type), {}};
    return {Integer(op == Op::Divide ? a / b : a % b, type), {}};
  }
  return {Integer(Wrapping(op, a, b), type), {}};
}

int TargetSize(const Value& pointer, const Context& context) {
  if (const auto made = MadeTarget(pointer)) return made->size;
  return context.info().types[pointer.type.target].size;
}

Result OfPointers(Op op, const Value& left, const Value& right, const Context& context) {
  const bool left_points = left.type.kind == Kind::Pointer;
  const bool right_points = right.type.kind == Kind::Pointer;
  const Type address = IntegerType(2, false);
  const std::int64_t a = Wrapped(left.number, address), b = Wrapped(right.number, address);
  if (const auto truth = Compared(op, a, b)) return {Truth(*truth), {}};
  const Value& pointer = left_points ? left : right;
  const int size = TargetSize(pointer, context);
  const bool adds = op == Op::Add || op == Op::Subtract;
  if (!adds || (op == Op::Add && left_points && right_points) ||
      (op == Op::Subtract && !left_points)) {
    return Problem("this operator does not take pointers");
  }
  if (size <= 0) return Problem("what it points at has no size that is known");
  if (left_points && right_points && TargetSize(left, context) != TargetSize(right, context)) {
    return Problem("pointers to different things have no difference");
  }
  if (left_points && right_points) return {Integer((a - b) / size, IntegerType(2, true)), {}};
  Value moved = pointer;
  const std::int64_t by = (left_points ? right : left).number * size;
  moved.number = Wrapped(pointer.number + (op == Op::Add ? by : -by), address);
  moved.place.reset();
  return {std::move(moved), {}};
}

Result OfOne(Op op, const Value& value) {
  if (op == Op::Not) return {Truth(!IsTrue(value)), {}};
  const bool real = value.type.kind == Kind::Float;
  if (!real && !IsInteger(value.type)) return Problem("this operator does not take pointers");
  if (real && op == Op::Complement) return Problem("this operator takes whole numbers");
  if (real) return {Real(op == Op::Minus ? -value.real : value.real), {}};
  const Type type = Promoted(value.type);
  switch (op) {
    case Op::Minus:
      return {Integer(Wrapping(Op::Subtract, 0, value.number), type), {}};
    case Op::Complement:
      return {Integer(~value.number, type), {}};
    default:
      return {Integer(value.number, type), {}};
  }
}

struct NamedType {
  std::string_view name;
  int size;
  bool is_signed;
};
// As they are written, without "int" behind short and long.
constexpr std::array kIntegerTypes{
    NamedType{"char", 1, false},
    NamedType{"signed char", 1, true},
    NamedType{"unsigned char", 1, false},
    NamedType{"short", 2, true},
    NamedType{"unsigned short", 2, false},
    NamedType{"int", 2, true},
    NamedType{"signed", 2, true},
    NamedType{"signed int", 2, true},
    NamedType{"unsigned", 2, false},
    NamedType{"unsigned int", 2, false},
    NamedType{"long", 4, true},
    NamedType{"signed long", 4, true},
    NamedType{"unsigned long", 4, false},
    NamedType{"long long", 8, true},
    NamedType{"unsigned long long", 8, false},
};

std::optional<Type> OwnType(std::string_view name) {
  if (name == "float" || name == "double") return FloatType();
  if (name == "_Bool" || name == "bool") {
    return Type{.kind = Kind::Bool, .size = 1, .name = "_Bool"};
  }
  const bool redundant = name.ends_with(" int") && name != "unsigned int" && name != "signed int";
  if (redundant) name.remove_suffix(4);
  const auto* const row = std::ranges::find(kIntegerTypes, name, &NamedType::name);
  if (row == kIntegerTypes.end()) return std::nullopt;
  return IntegerType(row->size, row->is_signed);
}

}  // namespace

Value NumberValue(std::int64_t number, Signs signs) {
  for (const int size : kIntegerSizes) {
    for (const bool is_signed : {true, false}) {
      if (signs == (is_signed ? Signs::Unsigned : Signs::Signed)) continue;
      const Type type = IntegerType(size, is_signed);
      if (number >= 0 && Wrapped(number, type) == number) return Integer(number, type);
    }
  }
  return Integer(number, IntegerType(kIntegerSizes.back(), false));
}

bool IsTrue(const Value& value) {
  return value.type.kind == Kind::Float ? value.real != 0 : value.number != 0;
}

Value Converted(const Value& value, const Type& type) {
  if (type.kind == Kind::Float) {
    Value real = Real(RealOf(value));
    real.type = type;
    return real;
  }
  std::int64_t number = value.number;
  if (value.type.kind == Kind::Float) {
    constexpr double kMost = 9e18;
    number = static_cast<std::int64_t>(std::clamp(value.real, -kMost, kMost));
    if (type.kind == Kind::Bool) number = value.real != 0 ? 1 : 0;
  }
  Value converted = Integer(number, type);
  return converted;
}

Result Applied(Op op, std::span<const Value> operands, const Context& context) {
  if (op == Op::And || op == Op::Or) {
    return {Truth(op == Op::And ? std::ranges::all_of(operands, IsTrue)
                                : std::ranges::any_of(operands, IsTrue)),
            {}};
  }
  const Value& left = operands.front();
  if (operands.size() == 1) return OfOne(op, left);
  const Value& right = operands.back();
  if (left.type.kind == Kind::Pointer || right.type.kind == Kind::Pointer) {
    if (left.type.kind == Kind::Float || right.type.kind == Kind::Float) {
      return Problem("this operator does not take pointers");
    }
    return OfPointers(op, left, right, context);
  }
  if (left.type.kind == Kind::Float || right.type.kind == Kind::Float) {
    return OfReals(op, RealOf(left), RealOf(right));
  }
  return OfIntegers(op, left, right);
}

std::optional<Type> TypeNamed(std::string_view name, int stars, const Context& context) {
  if (const auto own = OwnType(name)) {
    if (stars == 0) return own;
    // Its target is told by its name: no table of the program has it.
    Type pointer = PointerTo(symbols::kUnknownType);
    if (stars == 1) pointer.name = own->name;
    return pointer;
  }
  if (name == "void" && stars > 0) return PointerTo(symbols::kUnknownType);
  const symbols::Types& types = context.info().types;
  for (symbols::TypeId id = 1; id < types.size(); ++id) {
    if (types[id].name != name) continue;
    return stars == 0 ? types[id] : PointerTo(stars == 1 ? id : symbols::kUnknownType);
  }
  return std::nullopt;
}

std::optional<Type> MadeTarget(const Value& pointer) {
  if (pointer.type.target != symbols::kUnknownType || pointer.type.name.empty()) {
    return std::nullopt;
  }
  return OwnType(pointer.type.name);
}

}  // namespace brevant::eval
