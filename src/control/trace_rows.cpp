// SPDX-License-Identifier: MIT
#include "control/trace_rows.h"

#include <algorithm>
#include <map>

#include "base/text_format.h"
#include "frames/function_at.h"
#include "frames/source_line.h"
#include "isa/disassembler.h"
#include "isa/step_effects.h"
#include "symbols/places.h"

namespace brevant::control {
namespace {

using base::Address;
using base::Format;
using base::Low16;

constexpr Address kProgramSP = 5;  // above the frame base
constexpr const char* kElsewhere = "(elsewhere)";

// Empty where none is known. Without functions a label names what follows it.
std::string FunctionText(Address address, const symbols::DebugInfo& info) {
  if (const auto* const function = frames::FunctionAt(address, info)) {
    return std::string(symbols::PlainName(function->name));
  }
  if (!info.functions.empty()) return {};
  const symbols::Symbol* const label = symbols::NearestBelow(address, info);
  return label == nullptr ? std::string() : label->name;
}

std::string LineText(Address address, const symbols::DebugInfo& info) {
  const auto line = info.DebugInfoLoaded ? frames::LineAt(address, info) : std::nullopt;
  return line ? symbols::LineName(*line, info.LineTable) : std::string();
}

std::string Quoted(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string quoted = "\"";
  for (const char c : field) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

// "LDA #12" of "000100 a6 12 \tLDA\t#12".
std::string InstructionText(const isa::Instruction& instruction, const isa::SymbolNames& symbols) {
  const std::string line = isa::Disassemble(instruction, symbols);
  std::string text = line.substr(std::min(line.find('\t'), line.size() - 1) + 1);
  std::ranges::replace(text, '\t', ' ');
  return text;
}

std::string BytesText(const isa::Instruction& instruction) {
  std::string text;
  for (const std::uint8_t byte : instruction.code()) {
    text += Format(text.empty() ? "%02x" : " %02x", byte);
  }
  return text;
}

std::string CsvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) line += (line.empty() ? "" : ",") + Quoted(field);
  return line + "\r\n";
}

class Sums {
 public:
  void Add(const std::string& name, const TraceRecord& record) {
    ProfileRow& row =
        rows_.try_emplace(name, ProfileRow{name, record.instruction.address}).first->second;
    row.address = std::min(row.address, record.instruction.address);
    ++row.steps;
    row.cycles += record.instruction.cycles();
  }
  std::vector<ProfileRow> Sorted() const {
    std::vector<ProfileRow> rows;
    for (const auto& [name, row] : rows_) rows.push_back(row);
    std::ranges::stable_sort(rows, std::greater(), &ProfileRow::cycles);
    return rows;
  }

 private:
  std::map<std::string, ProfileRow> rows_;
};

}  // namespace

std::string WritesText(const TraceRecord& record) {
  const isa::StepEffects effects = isa::PredictEffects(record.before, record.instruction);
  if (effects.count == 0) return {};
  std::string text = Format("%04x", effects.first);
  if (effects.count > 1) {
    text += Format("-%04x", Low16(effects.first + static_cast<Address>(effects.count) - 1));
  }
  const auto value = isa::WrittenValue(record.before, record.instruction);
  return value ? text + Format("=%0*x", 2 * effects.count, *value) : text;
}

std::string FormatTraceCsv(const TraceRing& ring, long steps, const symbols::DebugInfo& info,
                           const isa::SymbolNames& names) {
  std::string csv = CsvLine({"number", "address", "bytes", "instruction", "cycles", "total cycles",
                             "PC", "SP", "HX", "A", "CCR", "function", "line", "writes"});
  long cycles = 0;
  for (int n = 0; n < ring.size(); ++n) {
    const TraceRecord& record = ring.At(n);
    const isa::Instruction& instruction = record.instruction;
    cycles += instruction.cycles();
    csv +=
        CsvLine({std::to_string(steps - ring.size() + n + 1), Format("%04x", instruction.address),
                 BytesText(instruction), InstructionText(instruction, names),
                 std::to_string(instruction.cycles()), std::to_string(cycles),
                 Format("%04x", record.PC), Format("%04x", Low16(record.SP + kProgramSP)),
                 Format("%04x", record.HX), Format("%02x", record.A), Format("%02x", record.CCR),
                 FunctionText(instruction.address, info), LineText(instruction.address, info),
                 WritesText(record)});
  }
  return csv;
}

TraceProfile ProfileOf(const TraceRing& ring, const symbols::DebugInfo& info) {
  Sums functions, lines;
  TraceProfile profile;
  const auto named = [](const std::string& name) { return name.empty() ? kElsewhere : name; };
  for (int n = 0; n < ring.size(); ++n) {
    const TraceRecord& record = ring.At(n);
    functions.Add(named(FunctionText(record.instruction.address, info)), record);
    lines.Add(named(LineText(record.instruction.address, info)), record);
    ++profile.steps;
    profile.cycles += record.instruction.cycles();
  }
  profile.functions = functions.Sorted();
  profile.lines = lines.Sorted();
  return profile;
}

double ShareOf(const ProfileRow& row, const TraceProfile& profile) {
  return static_cast<double>(row.cycles) / static_cast<double>(std::max(profile.cycles, 1L));
}

std::string ProfileRowText(const ProfileRow& row, const TraceProfile& profile) {
  return Format("%-24s %9ld %9ld %6.1f %%", row.name, row.cycles, row.steps,
                100 * ShareOf(row, profile));
}

std::string ProfileHeading(const char* what) {
  return Format("%-24s %9s %9s %8s", what, "cycles", "steps", "share");
}

std::string ProfileTotal(const TraceProfile& profile) {
  return Format("%ld cycles in %ld steps", profile.cycles, profile.steps);
}

}  // namespace brevant::control
