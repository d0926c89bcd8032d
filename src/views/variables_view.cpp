// SPDX-License-Identifier: MIT
#include "views/variables_view.h"

#include <algorithm>
#include <utility>

#include "base/text_format.h"
#include "control/program_context.h"
#include "eval/evaluate.h"
#include "eval/format.h"
#include "eval/names.h"
#include "frames/call_stack.h"

namespace brevant::views {
namespace {

using symbols::Variable;

constexpr const char* kNoFunction = "%04x: no function whose variables are known";
constexpr const char* kLocals = "%s: parameters and locals";
constexpr const char* kStatics = "%s: statics of the module";
constexpr const char* kGlobals = "globals";
constexpr const char* kNone = "%s: none";

std::string Heading(const std::string& text, bool any) {
  return any ? text : base::Format(kNone, text);
}

}  // namespace

FoldedRow VariablesView::At(int row) const {
  const ValueRow& shown = rows()[static_cast<std::size_t>(row)];
  return {.left = shown.Left(),
          .text = shown.text,
          .path = shown.path,
          .mark_column = shown.has_parts ? shown.MarkColumn() : -1,
          .unfolded = shown.unfolded,
          .changed = shown.changed};
}

void VariablesView::Refresh() {
  for (const ValueRow& row : rows()) {
    if (!row.value.place) continue;
    sources_.memory.Drop(
        {row.value.place->address, static_cast<base::Address>(std::max(row.value.type.size, 1))});
  }
  on_request_ = true;
  Request();
}

void VariablesView::Pull(const base::Generations& before, const base::Generations& now) {
  if (sources_.activity.FileIoActive()) return;
  if (before.stops != now.stops) values_.BeginStop();
  MakeRows(control::ContextOf(
      sources_.memory, sources_.debug_info, sources_.frame,
      std::exchange(on_request_, false) ? eval::Reading::Everything : eval::Reading::Sparing));
  KeepInSight();
}

void VariablesView::MakeRows(const eval::Context& context) {
  values_.Begin();
  const symbols::Function* const function = context.function();
  const auto add = [&](const Variable& variable, const std::string& scope) {
    values_.Add(scope, variable.name, eval::ValueOf(variable, context), context);
  };
  const std::vector<Variable>& all = sources_.debug_info.variables;
  const auto any = [&](std::string_view module) {
    return std::ranges::find(all, module, &Variable::module) != all.end();
  };
  if (function == nullptr) {
    values_.AddHeading(base::Format(kNoFunction, sources_.frame.PC));
  } else {
    const frames::Frame here{.pc = sources_.frame.PC, .function = function};
    const std::string name = frames::FunctionName(here, sources_.debug_info);
    values_.AddHeading(Heading(base::Format(kLocals, name), !function->locals.empty()));
    for (const Variable& local : function->locals) add(local, name);
  }
  const std::string module = context.module();
  if (!module.empty() && any(module)) {
    values_.AddHeading(base::Format(kStatics, module));
    for (const Variable& variable : all) {
      if (variable.module == module) add(variable, module);
    }
  }
  values_.AddHeading(Heading(kGlobals, any("")));
  for (const Variable& variable : all) {
    if (variable.module.empty()) add(variable, "");
  }
}

std::string VariablesView::Explain() const {
  const auto n = static_cast<std::size_t>(cursor());
  if (n >= rows().size() || rows()[n].is_heading) return {};
  const ValueRow& row = rows()[n];
  const eval::Context context = control::ContextOf(sources_.memory, sources_.debug_info,
                                                   sources_.frame, eval::Reading::Sparing);
  std::string text = eval::TypeText(row.value, context) + ' ' + row.name;
  if (row.value.place) text = base::Format("%04x ", row.value.place->address) + text;
  return text + " = " + row.text;
}

const ValueRow* VariablesView::Editable() const {
  const auto n = static_cast<std::size_t>(cursor());
  if (n >= rows().size()) return nullptr;
  return CanChange(rows()[n]) ? &rows()[n] : nullptr;
}

std::string VariablesView::Assign(std::string_view text) {
  const ValueRow* const row = Editable();
  if (row == nullptr) return "it cannot be changed";
  return views::Assign(*row, text,
                       control::ContextOf(sources_.memory, sources_.debug_info, sources_.frame,
                                          eval::Reading::Everything));
}

}  // namespace brevant::views
