// SPDX-License-Identifier: MIT
#include "views/watched_name.h"

#include <algorithm>

#include "base/address.h"
#include "base/file_names.h"
#include "symbols/places.h"

namespace brevant::views {
namespace {

bool IsWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

bool HasName(const eval::Tree& tree) {
  return tree.op == eval::Op::Name || std::ranges::any_of(tree.children, HasName);
}

bool IsLocal(std::string_view name, const symbols::DebugInfo& info) {
  return std::ranges::any_of(info.functions, [name](const symbols::Function& function) {
    return std::ranges::any_of(function.locals, [name](const symbols::Variable& local) {
      return base::EqualIgnoringCase(local.name, name);
    });
  });
}

}  // namespace

std::optional<base::Address> FindWatched(std::string_view name, const symbols::DebugInfo& info) {
  if (name.empty()) return std::nullopt;
  if (const auto known = info.SymbolTable.FindSymbolAddress(name)) return known;
  const auto named = symbols::FindNamed(name, info);
  return named.size() == 1 ? std::optional(named.front()->address) : std::nullopt;
}

bool IsExpression(std::string_view name, const symbols::DebugInfo& info) {
  if (FindWatched(name, info)) return false;
  if (std::ranges::all_of(name, IsWordCharacter)) return IsLocal(name, info);
  const eval::Parsed parsed = eval::Parse(name);
  return parsed.ok() && HasName(parsed.tree);
}

bool IsSpeltSo(std::string_view name, const symbols::DebugInfo& info) {
  const auto is_so = [name](const symbols::Variable& variable) { return variable.name == name; };
  return std::ranges::any_of(info.variables, is_so) ||
         std::ranges::any_of(info.functions, [&](const symbols::Function& function) {
           return std::ranges::any_of(function.locals, is_so);
         });
}

std::optional<eval::Result> EvaluateWatched(std::string_view name, const eval::Context& context) {
  const auto symbol = FindWatched(name, context.info());
  if (!symbol && !IsExpression(name, context.info())) return std::nullopt;
  eval::Result result = eval::Evaluate(name, context);
  if (!symbol) return result;
  // The symbol is what is meant, even where a variable of the function hides it.
  const bool is_symbol =
      result.ok() && result.value.place && result.value.place->address == base::Low16(*symbol);
  return is_symbol ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace brevant::views
