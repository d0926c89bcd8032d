// SPDX-License-Identifier: MIT
#include "views/value_rows.h"

#include <utility>

#include "eval/evaluate.h"
#include "eval/format.h"

namespace brevant::views {

std::string ValueRow::Left() const {
  if (is_heading) return name;
  const char* const mark = !has_parts ? "  " : unfolded ? "- " : "+ ";
  return std::string(static_cast<std::size_t>(MarkColumn()), ' ') + mark + name + " = ";
}

bool CanChange(const ValueRow& row) {
  return row.value.unavailable.empty() && row.value.place && eval::IsScalar(row.value.type);
}

std::string Assign(const ValueRow& row, std::string_view text, const eval::Context& context) {
  const eval::Result what = eval::Evaluate(text, context);
  return what.ok() ? eval::Assign(row.value, what.value, context) : what.problem;
}

void ValueRows::BeginStop() {
  before_ = std::exchange(now_, {});
}

void ValueRows::AddHeading(const std::string& text) {
  rows_.push_back({.path = text, .name = text, .is_heading = true});
}

void ValueRows::Add(const std::string& scope, const std::string& name, const eval::Value& value,
                    const eval::Context& context) {
  AddRow({.path = PathOf(scope, name), .name = name, .value = value}, context);
}

void ValueRows::AddRow(ValueRow row, const eval::Context& context) {
  row.text = eval::ValueText(row.value, context);
  row.has_parts = eval::HasParts(row.value, context);
  row.unfolded = row.has_parts && unfolded_.contains(row.path);
  if (row.value.unavailable.empty()) {
    now_[row.path] = row.text;
    row.changed = before_.try_emplace(row.path, row.text).first->second != row.text;
  }
  rows_.push_back(row);
  if (!row.unfolded) return;
  const std::vector<eval::Part> parts = eval::PartsOf(row.value, context, kMostParts + 1);
  int shown = 0;
  for (const eval::Part& part : parts) {
    if (shown++ == kMostParts) {
      rows_.push_back(
          {.depth = row.depth + 1, .path = row.path + "/...", .name = "...", .text = "more"});
      break;
    }
    AddRow({.depth = row.depth + 1,
            .path = row.path + '/' + part.name,
            .name = part.name,
            .value = part.value},
           context);
  }
}

bool ValueRows::Unfold(const std::string& path, bool unfolded) {
  return unfolded ? unfolded_.insert(path).second : unfolded_.erase(path) > 0;
}

}  // namespace brevant::views
