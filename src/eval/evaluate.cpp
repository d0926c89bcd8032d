// SPDX-License-Identifier: MIT
#include "eval/evaluate.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/text_format.h"
#include "eval/names.h"
#include "eval/operators.h"
#include "eval/stored.h"

namespace brevant::eval {
namespace {

using base::Address;
using symbols::Type;
using Kind = Type::Kind;

Result Problem(std::string problem) {
  return {.problem = std::move(problem)};
}

const Type& TargetOf(const Type& type, const Context& context) {
  return context.info().types[type.target];
}

// What lies at an address, of a type that the program has.
Value At(Address address, symbols::TypeId id, const Context& context) {
  return {.type = context.info().types[id], .id = id, .place = Place{base::Low16(address)}};
}

class Evaluator {
 public:
  explicit Evaluator(const Context& context) : context_(context) {}

  Result Of(const Tree& tree) const {
    switch (tree.op) {
      case Op::Number:
        if (tree.is_real) return {Value{.type = FloatType(), .real = tree.real}, {}};
        return {NumberValue(tree.number, tree.is_unsigned       ? Signs::Unsigned
                                         : tree.may_be_unsigned ? Signs::Either
                                                                : Signs::Signed),
                {}};
      case Op::Name:
        return Name(tree);
      case Op::Register:
        return Register(tree);
      case Op::Member:
        return MemberOf(tree);
      case Op::Arrow:
        return Through(tree);
      case Op::Index:
        return Index(tree);
      case Op::Dereference:
        return Dereferenced(Of(tree.children[0]), tree.children[0]);
      case Op::AddressOf:
        return AddressOf(tree);
      case Op::SizeOf:
        return SizeOf(tree);
      case Op::Cast:
        return Cast(tree);
      default:
        return Operate(tree);
    }
  }

 private:
  Result Name(const Tree& tree) const {
    Named named = FindName(tree.text, tree.scope, context_);
    if (!named.value) return Problem(std::move(named.problem));
    return {*std::move(named.value), {}};
  }

  Result Register(const Tree& tree) const {
    auto value = FindRegister(tree.text, context_);
    if (value) return {*std::move(value), {}};
    return Problem(base::Format("there is no register %s", tree.text));
  }

  Result MemberOf(const Tree& tree) const {
    const Tree& whole = tree.children[0];
    // "isqrt.bit": the variable of a function.
    if (whole.op == Op::Name && whole.scope.empty()) {
      const Named named = FindName(whole.text, {}, context_);
      if (named.value && named.value->type.kind == Kind::Function) {
        Named local = FindName(tree.text, whole.text, context_);
        if (!local.value) return Problem(std::move(local.problem));
        return {*std::move(local.value), {}};
      }
    }
    return MemberNamed(Of(whole), tree.text, Written(whole));
  }

  Result Through(const Tree& tree) const {
    return MemberNamed(Dereferenced(Of(tree.children[0]), tree.children[0]), tree.text,
                       "*" + Written(tree.children[0]));
  }

  Result MemberNamed(Result whole, const std::string& name, const std::string& written) const {
    if (!whole.ok() || !whole.value.unavailable.empty()) return whole;
    if (const devices::Register* const row = RegisterOf(whole.value)) {
      return FieldNamed(whole.value, *row, name);
    }
    const Type& type = whole.value.type;
    if (type.kind != Kind::Struct && type.kind != Kind::Union) {
      return Problem(written + " is no structure");
    }
    const auto member = std::ranges::find(type.members, name, &symbols::Member::name);
    if (member == type.members.end()) {
      return Problem(base::Format("%s has no member %s", written, name));
    }
    return {MemberValue(whole.value, *member, context_), {}};
  }

  // The program may have a name of its own for a register: a byte at its address.
  const devices::Register* RegisterOf(const Value& whole) const {
    const bool is_byte =
        whole.place && whole.place->bits == 0 && IsInteger(whole.type) && whole.type.size == 1;
    return is_byte ? devices::FindRegister(context_.memory().device(), whole.place->address)
                   : nullptr;
  }

  static Result FieldNamed(const Value& whole, const devices::Register& row,
                           const std::string& name) {
    const devices::Field* const field = devices::FindField(row, name);
    if (field == nullptr) {
      return Problem(base::Format("%s has no field %s", std::string(row.name), name));
    }
    Value value = whole;
    value.type = IntegerType(1, false);
    value.of_chip = &row;
    value.chip_field = field;
    value.place->bit = field->low;
    value.place->bits = field->high - field->low + 1;
    return {std::move(value), {}};
  }

  Result Index(const Tree& tree) const {
    Result whole = Of(tree.children[0]);
    if (!whole.ok() || !whole.value.unavailable.empty()) return whole;
    const Kind kind = whole.value.type.kind;
    if (kind != Kind::Array && kind != Kind::Pointer) {
      return Problem(Written(tree.children[0]) + " is neither array nor pointer");
    }
    Result index = Of(tree.children[1]);
    if (!index.ok()) return index;
    Value number = Loaded(std::move(index.value), context_);
    if (!number.unavailable.empty()) return {std::move(number), {}};
    if (!IsInteger(number.type)) return Problem("an index is a whole number");
    return Element(whole.value, number.number);
  }

  Result Element(const Value& whole, std::int64_t index) const {
    const Value pointer = Decayed(whole);
    if (!pointer.unavailable.empty()) return {pointer, {}};
    const int size = TargetOf(whole.type, context_).size;
    if (size <= 0) return Problem("what it points at has no size that is known");
    return {At(static_cast<Address>(pointer.number + index * size), whole.type.target, context_),
            {}};
  }

  // An array as a pointer to its first element; everything else loaded.
  Value Decayed(const Value& value) const {
    if (value.type.kind != Kind::Array || !value.unavailable.empty()) {
      return Loaded(value, context_);
    }
    return {.type = PointerTo(value.type.target),
            .number = static_cast<std::int64_t>(value.place ? value.place->address : 0)};
  }

  Result Dereferenced(Result pointer, const Tree& tree) const {
    if (!pointer.ok() || !pointer.value.unavailable.empty()) return pointer;
    if (pointer.value.type.kind == Kind::Function) return pointer;
    const Value loaded = Decayed(pointer.value);
    if (!loaded.unavailable.empty()) return {loaded, {}};
    if (loaded.type.kind != Kind::Pointer) return Problem(Written(tree) + " is no pointer");
    const auto address = static_cast<Address>(loaded.number);
    if (const auto made = MadeTarget(loaded)) {
      return {Value{.type = *made, .place = Place{base::Low16(address)}}, {}};
    }
    const Type& target = TargetOf(loaded.type, context_);
    if (target.kind == Kind::Void || target.kind == Kind::Unknown) {
      return Problem("what " + Written(tree) + " points at has no type that is known");
    }
    Value value = At(address, loaded.type.target, context_);
    if (target.kind == Kind::Function) value.number = loaded.number;
    return {std::move(value), {}};
  }

  Result AddressOf(const Tree& tree) const {
    Result of = Of(tree.children[0]);
    if (!of.ok() || !of.value.unavailable.empty()) return of;
    if (!of.value.place || of.value.place->bits > 0) {
      return Problem(Written(tree.children[0]) + " has no address");
    }
    Value pointer{.type = PointerTo(of.value.id),
                  .number = static_cast<std::int64_t>(of.value.place->address)};
    // Of a type that no table has.
    if (of.value.id == symbols::kUnknownType) pointer.type.name = of.value.type.name;
    return {std::move(pointer), {}};
  }

  Result SizeOf(const Tree& tree) const {
    if (tree.children.empty()) {
      const auto type = TypeNamed(tree.text, tree.stars, context_);
      if (!type) return Problem("there is no type " + tree.text);
      return {NumberValue(type->size, Signs::Unsigned), {}};
    }
    Result of = Of(tree.children[0]);
    if (!of.ok()) return of;
    if (of.value.type.size <= 0) return Problem("its size is not known");
    return {NumberValue(of.value.type.size, Signs::Unsigned), {}};
  }

  Result Cast(const Tree& tree) const {
    const auto type = TypeNamed(tree.text, tree.stars, context_);
    if (!type) return Problem("there is no type " + tree.text);
    Result of = Of(tree.children[0]);
    if (!of.ok()) return of;
    const Value value = Decayed(of.value);
    if (!value.unavailable.empty()) return {value, {}};
    const bool castable = IsScalar(value.type) || value.type.kind == Kind::Function;
    if (!castable || !IsScalar(*type)) {
      return Problem(base::Format("%s cannot become %s", Written(tree.children[0]), tree.text));
    }
    return {Converted(value, *type), {}};
  }

  Result Operate(const Tree& tree) const {
    std::vector<Value> operands;
    for (const Tree& child : tree.children) {
      Result of = Of(child);
      if (!of.ok()) return of;
      Value value = Decayed(of.value);
      if (!value.unavailable.empty()) return {std::move(value), {}};
      if (value.type.kind == Kind::Function) {
        value = {.type = IntegerType(2, false), .number = value.number};
      }
      if (!IsScalar(value.type)) {
        return Problem(Written(child) + " is no number: name one of its parts");
      }
      operands.push_back(std::move(value));
      // C does not look at the right side when the left one decides.
      if (tree.op == Op::And && !IsTrue(operands.front())) break;
      if (tree.op == Op::Or && IsTrue(operands.front())) break;
    }
    return Applied(tree.op, operands, context_);
  }

  // For problems: short trees as they were written.
  static std::string Written(const Tree& tree) {
    switch (tree.op) {
      case Op::Name:
        return (tree.scope.empty() ? "" : tree.scope + ":") + tree.text;
      case Op::Register:
        return "@" + tree.text;
      case Op::Number:
        return tree.is_real ? base::Format("%g", tree.real) : std::to_string(tree.number);
      case Op::Member:
        return Written(tree.children[0]) + "." + tree.text;
      case Op::Arrow:
        return Written(tree.children[0]) + "->" + tree.text;
      case Op::Index:
        return Written(tree.children[0]) + "[...]";
      default:
        return "it";
    }
  }

  const Context& context_;
};

}  // namespace

Result Evaluate(const Tree& tree, const Context& context) {
  return Evaluator(context).Of(tree);
}

Result Evaluate(std::string_view text, const Context& context) {
  Parsed parsed = Parse(text);
  if (!parsed.ok()) return Problem(std::move(parsed.problem));
  return Evaluate(parsed.tree, context);
}

bool HasParts(const Value& value, const Context& context) {
  if (!value.unavailable.empty()) return false;
  switch (value.type.kind) {
    case Kind::Array:
      return value.type.count > 0 && TargetOf(value.type, context).size > 0;
    case Kind::Struct:
    case Kind::Union:
      return !value.type.members.empty();
    case Kind::Pointer: {
      const Type& target = TargetOf(value.type, context);
      return target.size > 0 && target.kind != Kind::Unknown;
    }
    default:
      return false;
  }
}

std::vector<Part> PartsOf(const Value& value, const Context& context, int most) {
  std::vector<Part> parts;
  if (!HasParts(value, context)) return parts;
  if (value.type.kind == Kind::Pointer) {
    const Value pointer = Loaded(value, context);
    if (!pointer.unavailable.empty()) return parts;
    const Value target = At(static_cast<Address>(pointer.number), value.type.target, context);
    // A structure's members at once: nobody wants to unfold twice.
    const bool whole = target.type.kind == Kind::Struct || target.type.kind == Kind::Union;
    if (whole) return PartsOf(target, context, most);
    parts.push_back({"*", target});
  } else if (value.type.kind == Kind::Array && value.place) {
    const int size = TargetOf(value.type, context).size;
    for (int i = 0; i < std::min(value.type.count, most); ++i) {
      parts.push_back(
          {base::Format("[%d]", i),
           At(value.place->address + static_cast<Address>(i * size), value.type.target, context)});
    }
  } else {
    for (const symbols::Member& member : value.type.members) {
      if (static_cast<int>(parts.size()) >= most) break;
      // The compiler's name for padding bits.
      if (member.bits > 0 && member.name.starts_with("__0000")) continue;
      parts.push_back({member.name, MemberValue(value, member, context)});
    }
  }
  return parts;
}

}  // namespace brevant::eval
