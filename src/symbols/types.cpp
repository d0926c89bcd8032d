// SPDX-License-Identifier: MIT
#include "symbols/types.h"

#include <utility>

namespace brevant::symbols {

TypeId Types::Add(Type type) {
  types_.push_back(std::move(type));
  return static_cast<TypeId>(types_.size() - 1);
}

std::string Types::Text(TypeId id) const {
  std::string declarator;
  while ((*this)[id].target != kUnknownType) {
    const Type& type = (*this)[id];
    if (type.kind == Type::Kind::Pointer) {
      declarator.insert(0, "*");
    } else {
      if (declarator.starts_with('*')) declarator = "(" + declarator + ")";
      declarator += type.kind == Type::Kind::Array ? "[" + std::to_string(type.count) + "]" : "()";
    }
    id = type.target;
  }
  std::string text = (*this)[id].name;
  if (text.empty()) return text;
  if (!declarator.empty() && declarator.front() != '[') text += ' ';
  return text + declarator;
}

}  // namespace brevant::symbols
