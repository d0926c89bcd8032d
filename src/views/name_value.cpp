// SPDX-License-Identifier: MIT
#include "views/name_value.h"

#include "base/text_format.h"
#include "base/text_number.h"
#include "eval/evaluate.h"
#include "eval/format.h"
#include "symbols/text_lines.h"

namespace brevant::views {
namespace {

std::string RegisterText(const devices::Register& row, std::int64_t number) {
  const auto byte = static_cast<std::uint8_t>(number);
  return base::Format("%04x %s (%s) = %02x %%%s", row.address, std::string(row.name),
                      std::string(row.what), byte, base::FormatBinary(byte, 8));
}

}  // namespace

std::string NameValueText(const std::string& word, const eval::Context& context) {
  if (word.empty() || (!symbols::IsLetter(word.front()) && word.front() != '_')) return {};
  const eval::Result found = eval::Evaluate(word, context);
  // A register is on the screen anyway, and most words that look like one are none.
  if (!found.ok() || !found.value.register_name.empty()) return {};
  const eval::Value value = eval::Loaded(found.value, context);
  if (!value.unavailable.empty()) return word + " is " + eval::UnavailableText(value);
  if (value.of_chip != nullptr) return RegisterText(*value.of_chip, value.number);
  const std::string shown = eval::ValueText(value, context);
  if (value.type.kind == symbols::Type::Kind::Function) return word + " is at " + shown;
  return eval::TypeText(value, context) + " " + word + " = " + shown;
}

}  // namespace brevant::views
