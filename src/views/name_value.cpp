// SPDX-License-Identifier: MIT
#include "views/name_value.h"

#include "eval/evaluate.h"
#include "eval/format.h"
#include "symbols/text_lines.h"

namespace brevant::views {

std::string NameValueText(const std::string& word, const eval::Context& context) {
  if (word.empty() || (!symbols::IsLetter(word.front()) && word.front() != '_')) return {};
  const eval::Result found = eval::Evaluate(word, context);
  // A register is on the screen anyway, and most words that look like one are none.
  if (!found.ok() || !found.value.register_name.empty()) return {};
  const eval::Value value = eval::Loaded(found.value, context);
  if (!value.unavailable.empty()) return word + " is " + eval::UnavailableText(value);
  const std::string shown = eval::ValueText(value, context);
  if (value.type.kind == symbols::Type::Kind::Function) return word + " is at " + shown;
  return eval::TypeText(value, context) + " " + word + " = " + shown;
}

}  // namespace brevant::views
