// SPDX-License-Identifier: MIT
#include "eval/names.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/file_names.h"
#include "base/text_format.h"
#include "symbols/places.h"

namespace brevant::eval {
namespace {

using base::Address;
using symbols::Function;
using symbols::Storage;
using symbols::Type;
using symbols::Variable;

struct RegisterRow {
  std::string_view name;
  int size;
  std::uint32_t (*value)(const Registers& registers);
};
constexpr std::array<RegisterRow, 7> kRegisters{{
    {"PC", 2, [](const Registers& r) { return static_cast<std::uint32_t>(r.pc); }},
    {"SP", 2, [](const Registers& r) { return static_cast<std::uint32_t>(r.sp); }},
    {"HX", 2, [](const Registers& r) { return r.hx; }},
    {"H", 1, [](const Registers& r) { return r.hx >> 8; }},
    {"X", 1, [](const Registers& r) { return r.hx & 0xFF; }},
    {"A", 1, [](const Registers& r) { return r.a; }},
    {"CCR", 1, [](const Registers& r) { return r.ccr; }},
}};

enum class Spelling { Exact, AnyCase };

bool Matches(std::string_view known, std::string_view wanted, Spelling spelling) {
  return spelling == Spelling::Exact ? known == wanted : base::EqualIgnoringCase(known, wanted);
}

// Which of the variables come before the others.
enum class Level { Function, Module, File, Program, OtherModules };

// file is as a user may write it.
bool IsOfModule(std::string_view module, std::string_view file) {
  return !module.empty() && (base::EqualIgnoringCase(module, file) ||
                             base::EqualIgnoringCase(module, symbols::ModuleOf(file)));
}

// The assembler's name of a module may have the folders of its file before it: "drivers_clock".
bool IsOwnModule(std::string_view module, std::string_view own) {
  return !module.empty() && (module == own || own.ends_with("_" + std::string(module)));
}

std::vector<const Variable*> Find(std::string_view name, std::string_view module, Level level,
                                  Spelling spelling, const Context& context) {
  std::vector<const Variable*> found;
  const auto add = [&](const std::vector<Variable>& variables, auto fits) {
    for (const Variable& variable : variables) {
      if (Matches(variable.name, name, spelling) && fits(variable)) found.push_back(&variable);
    }
  };
  const std::vector<Variable>& all = context.info().variables;
  switch (level) {
    case Level::Function:
      if (context.function() != nullptr) {
        add(context.function()->locals, [](const Variable&) { return true; });
      }
      break;
    case Level::Module:
      add(all, [&](const Variable& v) { return IsOwnModule(v.module, module); });
      break;
    case Level::File:
      add(all, [&](const Variable& v) { return IsOfModule(v.module, module); });
      break;
    case Level::Program:
      add(all, [](const Variable& v) { return v.module.empty(); });
      break;
    case Level::OtherModules:
      add(all, [](const Variable& v) { return !v.module.empty(); });
      break;
  }
  return found;
}

std::vector<const Function*> FunctionsNamed(std::string_view name, std::string_view module,
                                            const Context& context) {
  std::vector<const Function*> found;
  for (const Spelling spelling : {Spelling::Exact, Spelling::AnyCase}) {
    for (const Function& function : context.info().functions) {
      const bool named = Matches(function.name, name, spelling) ||
                         Matches(symbols::PlainName(function.name), name, spelling);
      if (named && (module.empty() || IsOfModule(function.module, module))) {
        found.push_back(&function);
      }
    }
    if (!found.empty()) break;
  }
  return found;
}

Value Unavailable(const Variable& variable, std::string why, const Context& context) {
  return {.type = context.info().types[variable.type],
          .id = variable.type,
          .unavailable = std::move(why)};
}

// Another local whose place lies in this one's: where the compiler keeps only a part of a variable
// on the stack it still writes its whole size, and of two in one place only one can be there.
const Variable* InsideOf(const Variable& variable, const Function& function) {
  const auto other = std::ranges::find_if(function.locals, [&](const Variable& local) {
    return &local != &variable && local.storage == Storage::Stack &&
           local.offset >= variable.offset &&
           local.offset + local.size <= variable.offset + variable.size;
  });
  return other == function.locals.end() ? nullptr : &*other;
}

std::string RegistersText(const Variable& variable) {
  std::string text;
  // The least significant byte is named first.
  for (auto name = variable.registers.rbegin(); name != variable.registers.rend(); ++name) {
    text += (text.empty() ? "" : ":") + base::UpperCase(*name);
  }
  return text;
}

// What the registers hold now may be the variable or something else: both is said.
std::string RegistersReason(const Variable& variable, const Context& context) {
  std::string reason =
      "kept in register " + RegistersText(variable) + " for a part of the function";
  if (!context.innermost()) return reason;
  std::uint64_t number = 0;
  for (auto name = variable.registers.rbegin(); name != variable.registers.rend(); ++name) {
    const auto value = FindRegister(*name, context);
    if (!value) return reason;
    number = number << 8 | static_cast<std::uint64_t>(value->number);
  }
  const Type& type = context.info().types[variable.type];
  const std::int64_t shown = Wrapped(static_cast<std::int64_t>(number), type);
  return reason + base::Format(", which holds %lld now", static_cast<long long>(shown));
}

Value FunctionValue(const Function& function) {
  return {.type = {.kind = Type::Kind::Function, .target = function.result},
          .place = Place{function.first},
          .number = function.first};
}

// A symbol that has no type is a byte, unless its size is that of another number.
Value SymbolValue(const symbols::Symbol& symbol, const Context& context) {
  // Where the variables are told with their types, what lies in flash without one is code.
  const bool is_code = symbol.size == 0 && !context.info().functions.empty() &&
                       context.memory().KindOf(symbol.address) == devices::MemoryKind::Flash;
  if (is_code) {
    return {.type = {.kind = Type::Kind::Function},
            .place = Place{symbol.address},
            .number = static_cast<std::int64_t>(symbol.address)};
  }
  const bool is_number = symbol.size == 2 || symbol.size == 4;
  return {.type = IntegerType(is_number ? symbol.size : 1, false), .place = Place{symbol.address}};
}

Named FromVariables(std::string_view name, const std::vector<const Variable*>& found,
                    const Context& context) {
  if (found.size() == 1) return {ValueOf(*found.front(), context), {}};
  const bool locals = std::ranges::all_of(found, [&](const Variable* variable) {
    return context.function() != nullptr && !context.function()->locals.empty() &&
           variable >= &context.function()->locals.front() &&
           variable <= &context.function()->locals.back();
  });
  if (locals) {
    return {Unavailable(*found.front(), "several blocks of the function have one", context), {}};
  }
  std::string modules;
  for (const Variable* variable : found) {
    modules += (modules.empty() ? "" : ", ") + variable->module;
  }
  return {{},
          base::Format("%s is there in %s: put the file and : before the name", std::string(name),
                       modules)};
}

}  // namespace

Value ValueOf(const Variable& variable, const Context& context) {
  Value value{.type = context.info().types[variable.type], .id = variable.type};
  // What the type does not tell is a number of that size.
  const bool is_number = variable.size == 1 || variable.size == 2 || variable.size == 4;
  if (value.type.kind == Type::Kind::Unknown && is_number) {
    value.type = IntegerType(variable.size, false);
  }
  switch (variable.storage) {
    case Storage::Memory:
      value.place = Place{variable.address};
      break;
    case Storage::Stack: {
      const auto entry = context.EntrySp();
      if (!entry) {
        value.unavailable = "how much the function has on the stack is not known";
        break;
      }
      const Address address = base::Low16(*entry + 1 + static_cast<Address>(variable.offset));
      if (const Variable* const other = InsideOf(variable, *context.function())) {
        value.unavailable = "the debug file gives it a place that it shares with " + other->name;
        break;
      }
      if (address <= context.sp()) {
        value.unavailable = "it has no place on the stack yet, or no longer";
        break;
      }
      // The compiler may keep it elsewhere until then.
      if (variable.offset < 0 && !context.Written().MayHold(variable.offset + 1, variable.size)) {
        value.unavailable = "nothing has been written to its place on the stack so far";
        break;
      }
      value.place = Place{address};
      break;
    }
    case Storage::Registers:
      value.unavailable = RegistersReason(variable, context);
      break;
    case Storage::Nowhere:
      value.unavailable = "the compiler does not say where it keeps it";
      break;
  }
  return value;
}

std::optional<Value> FindRegister(std::string_view name, const Context& context) {
  const auto* const row = std::ranges::find_if(kRegisters, [name](const RegisterRow& known) {
    return base::EqualIgnoringCase(known.name, name);
  });
  if (row == kRegisters.end()) return std::nullopt;
  return Value{.type = IntegerType(row->size, false),
               .number = row->value(context.registers()),
               .register_name = std::string(row->name)};
}

namespace {

struct Wanted {
  std::string_view name;
  std::string_view scope;  // a file, a module or a function; empty: none
  const Context& context;

  std::string Whole() const {
    return (scope.empty() ? "" : std::string(scope) + ":") + std::string(name);
  }
};
// What a name means in one of the ways below; nothing where it does not mean that.
using Found = std::optional<Named>;

// The name as it is written, and without the compiler's "_".
template <typename Find>
Found BestSpelling(const Wanted& wanted, Find find) {
  for (const Spelling spelling : {Spelling::Exact, Spelling::AnyCase}) {
    for (const std::string_view spelt : {wanted.name, symbols::PlainName(wanted.name)}) {
      if (auto found = find(spelt, spelling)) return found;
    }
  }
  return std::nullopt;
}

Found LocalOfFunction(const Wanted& wanted) {
  if (wanted.scope.empty()) return std::nullopt;
  const auto functions = FunctionsNamed(wanted.scope, {}, wanted.context);
  return BestSpelling(wanted, [&](std::string_view spelt, Spelling spelling) -> Found {
    for (const Function* const function : functions) {
      for (const Variable& local : function->locals) {
        if (!Matches(local.name, spelt, spelling)) continue;
        // Of another function only what has a place of its own can be told.
        const bool here = function == wanted.context.function() || local.storage == Storage::Memory;
        return Named{
            here ? ValueOf(local, wanted.context)
                 : Unavailable(local, "the program is not in that function", wanted.context),
            {}};
      }
    }
    return std::nullopt;
  });
}

Found VariableInSight(const Wanted& wanted) {
  if (!wanted.scope.empty()) return std::nullopt;
  const std::string module = wanted.context.module();
  return BestSpelling(wanted, [&](std::string_view spelt, Spelling spelling) -> Found {
    for (const Level level :
         {Level::Function, Level::Module, Level::Program, Level::OtherModules}) {
      const auto found = Find(spelt, module, level, spelling, wanted.context);
      if (!found.empty()) return FromVariables(wanted.name, found, wanted.context);
    }
    return std::nullopt;
  });
}

Found VariableOfFile(const Wanted& wanted) {
  if (wanted.scope.empty()) return std::nullopt;
  return BestSpelling(wanted, [&](std::string_view spelt, Spelling spelling) -> Found {
    const auto statics = Find(spelt, wanted.scope, Level::File, spelling, wanted.context);
    if (!statics.empty()) return FromVariables(wanted.name, statics, wanted.context);
    // What is global in a file is told without it; the symbols know.
    const auto globals = Find(spelt, {}, Level::Program, spelling, wanted.context);
    if (globals.empty()) return std::nullopt;
    const std::string whole = std::string(wanted.scope) + ":" + std::string(spelt);
    if (symbols::FindNamed(whole, wanted.context.info()).empty()) return std::nullopt;
    return Named{ValueOf(*globals.front(), wanted.context), {}};
  });
}

Found FunctionItself(const Wanted& wanted) {
  const auto functions = FunctionsNamed(wanted.name, wanted.scope, wanted.context);
  if (functions.empty()) return std::nullopt;
  return Named{FunctionValue(*functions.front()), {}};
}

Found RegisterItself(const Wanted& wanted) {
  const bool is_symbol = wanted.context.info().SymbolTable.FindSymbol(wanted.name) != nullptr;
  if (!wanted.scope.empty() || is_symbol) return std::nullopt;
  auto value = FindRegister(wanted.name, wanted.context);
  if (!value) return std::nullopt;
  return Named{std::move(value), {}};
}

// Of tool chains that tell no variables, of libraries and of the linker.
Found SymbolItself(const Wanted& wanted) {
  const symbols::DebugInfo& info = wanted.context.info();
  const auto named = symbols::FindNamed(wanted.Whole(), info);
  if (named.empty()) return std::nullopt;
  const symbols::Place place = symbols::FindPlace(wanted.Whole(), info);
  if (named.size() > 1 && !place.address) return Named{{}, place.problem};
  // "_main.i" answers to i: a local of a function that the program is not in.
  const std::string_view whole = named.front()->name;
  const std::size_t dot = whole.rfind('.');
  const bool is_local =
      named.front()->scope == symbols::Scope::Function && dot != std::string_view::npos;
  if (is_local && wanted.scope.empty()) {
    return FindName(whole.substr(dot + 1), symbols::PlainName(whole.substr(0, dot)),
                    wanted.context);
  }
  return Named{SymbolValue(*named.front(), wanted.context), {}};
}

Found RegisterOfChip(const Wanted& wanted) {
  if (!wanted.scope.empty()) return std::nullopt;
  const devices::Register* const row =
      devices::FindRegister(wanted.context.memory().device(), wanted.name);
  if (row == nullptr) return std::nullopt;
  return Named{Value{.type = IntegerType(1, false), .place = Place{row->address}, .of_chip = row},
               {}};
}

// What comes first is meant.
constexpr std::array kWays{LocalOfFunction, VariableInSight, VariableOfFile, FunctionItself,
                           RegisterItself,  SymbolItself,    RegisterOfChip};

}  // namespace

Named FindName(std::string_view name, std::string_view scope, const Context& context) {
  const Wanted wanted{name, scope, context};
  for (const auto way : kWays) {
    if (auto found = way(wanted)) return *std::move(found);
  }
  return {{}, base::Format("there is no %s", wanted.Whole())};
}

}  // namespace brevant::eval
