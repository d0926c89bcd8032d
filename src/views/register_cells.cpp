// SPDX-License-Identifier: MIT
#include "views/register_cells.h"

#include <algorithm>
#include <span>

#include "base/text_format.h"
#include "base/text_number.h"
#include "views/messages.h"

namespace brevant::views {
namespace {

constexpr std::size_t kMaxTypedCharacters = 10;
constexpr int kHalfBits = 4;  // CCR is shown in two halves

std::string Hex4(std::uint32_t value) {
  return base::Format("%04x", value);
}
std::string Hex2(std::uint32_t value) {
  return base::Format("%02x", value);
}
std::string HighHalf(std::uint32_t ccr) {
  return base::FormatBinary(ccr >> kHalfBits, kHalfBits);
}
std::string LowHalf(std::uint32_t ccr) {
  return base::FormatBinary(ccr, kHalfBits);
}

struct CellRow {
  control::Register which;
  const char* name;
  const char* format;  // of the cell
  bool binary;
  std::string (*value)(const control::RegisterFrame& frame);
  bool ChangeFlags::*changed;
  std::string (*explain)(const control::RegisterFrame& frame);
};

std::string Explained(const char* what, unsigned value) {
  return base::Format("%s\n%u decimal", what, value);
}

std::string ExplainHX(const control::RegisterFrame& frame) {
  return Explained("Index register", frame.HX) +
         base::Format("\nH %02x, X %02x", frame.HX >> 8 & 0xFF, frame.HX & 0xFF);
}

std::string ExplainA(const control::RegisterFrame& frame) {
  const unsigned a = frame.A & 0xFF;
  return Explained("Accumulator", a) +
         base::Format(", %d signed", static_cast<int>(a) - (a < 0x80 ? 0 : 0x100));
}

struct Flag {
  const char* name;
  unsigned bit;
};
constexpr Flag kHighFlags[] = {{"V, two's complement overflow", 7},
                               {"1, always set", 6},
                               {"1, always set", 5},
                               {"H, half carry", 4}};
constexpr Flag kLowFlags[] = {
    {"I, interrupts masked", 3}, {"N, negative", 2}, {"Z, zero", 1}, {"C, carry or borrow", 0}};

std::string ExplainFlags(std::span<const Flag> flags, unsigned ccr) {
  std::string text;
  for (const Flag& flag : flags) {
    text += base::Format(text.empty() ? "%s: %u" : "\n%s: %u", flag.name, ccr >> flag.bit & 1);
  }
  return text;
}

constexpr std::array<CellRow, RegisterCells::kCells> kRows{{
    {control::Register::PC, "PC", "  PC %s", false, [](const auto& f) { return Hex4(f.PC); },
     &ChangeFlags::pc, [](const auto& f) { return Explained("Program counter", f.PC); }},
    {control::Register::SP, "SP", "  SP %s", false,
     [](const auto& f) { return Hex4(f.ProgramSP()); }, &ChangeFlags::sp,
     [](const auto& f) { return Explained("Stack pointer", f.ProgramSP()); }},
    {control::Register::HX, "HX", "  HX %s", false, [](const auto& f) { return Hex4(f.HX); },
     &ChangeFlags::hx, ExplainHX},
    {control::Register::A, "A", "   A   %s", false, [](const auto& f) { return Hex2(f.A); },
     &ChangeFlags::a, ExplainA},
    {control::Register::CcrHigh, "V11H", "V11H %s", true,
     [](const auto& f) { return HighHalf(f.CCR); }, &ChangeFlags::ccr_high,
     [](const auto& f) { return ExplainFlags(kHighFlags, f.CCR); }},
    {control::Register::CcrLow, "INZC", "INZC %s", true,
     [](const auto& f) { return LowHalf(f.CCR); }, &ChangeFlags::ccr_low,
     [](const auto& f) { return ExplainFlags(kLowFlags, f.CCR); }},
}};

int CellsARow(int client_width, int character_width) {
  return std::max(client_width / (RegisterCells::kCellWidth * character_width), 1);
}

const CellRow& Row(int cell) {
  return kRows.at(static_cast<std::size_t>(cell));
}

}  // namespace

RegisterEditor::RegisterEditor(control::RegisterFrame& frame, base::UserInterface& ui, int cell,
                               char key)
    : frame_(frame),
      ui_(ui),
      cell_(cell),
      caption_(std::string("EDIT: ") + Row(cell).name),
      initial_text_(Row(cell).value(frame)),
      max_length_(static_cast<int>(initial_text_.size())),
      typing_continues_(key != 0) {
  if (key != 0) initial_text_ = std::string(1, key);
}

const char* RegisterEditor::expected() const {
  return Row(cell_).binary ? messages::kExpectBinary : messages::kExpectHex;
}

bool RegisterEditor::Accept(std::string_view text) {
  const CellRow& row = Row(cell_);
  const std::string_view typed = text.substr(0, kMaxTypedCharacters);
  if (!(row.binary ? base::IsBinaryField(typed) : base::IsHexField(typed))) {
    ui_.Beep();
    return false;
  }
  if (!frame_.Edit(row.which, typed))
    ui_.ShowMessage(base::ToMessage(messages::kStackPointerNotSet));
  return true;
}

void RegisterCells::UpdateChangeFlags() {
  const std::uint32_t ccr_bits = previous_.ccr ^ frame_.CCR;
  changes_ = {
      .pc = previous_.pc != frame_.PC,
      .sp = previous_.sp != frame_.SP,
      .hx = previous_.hx != frame_.HX,
      .a = previous_.a != frame_.A,
      .ccr_high = (ccr_bits & 0xF0) != 0,
      .ccr_low = (ccr_bits & 0x0F) != 0,
  };
  previous_ = {frame_.PC, frame_.SP, frame_.HX, frame_.A, frame_.CCR};
  compared_ = frame_.generation();
  Repaint();
}

void RegisterCells::Pull(const base::Generations&, const base::Generations&) {
  if (compared_ != frame_.generation()) UpdateChangeFlags();
}

std::array<RegisterCell, RegisterCells::kCells> RegisterCells::Cells() const {
  std::array<RegisterCell, kCells> cells;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const CellRow& row = kRows[i];
    cells[i] = {base::Format(row.format, row.value(frame_)), changes_.*row.changed};
  }
  return cells;
}

std::string RegisterCells::Explain(int cell) const {
  return Row(cell).explain(frame_);
}

void RegisterCells::Resize(int client_width, int character_width) {
  if (character_width <= 0) return;
  cells_per_row_ = CellsARow(client_width, character_width);
}

int RegisterCells::RowsIn(int client_width, int character_width) {
  const int a_row = CellsARow(client_width, character_width);
  return (kCells + a_row - 1) / a_row;
}

void RegisterCells::Select(int cell) {
  selected_ = std::clamp(cell, 0, kCells - 1);
}

std::optional<int> RegisterCells::CellAt(int x, int y, int character_width, int line_height) const {
  if (x < 0 || y < 0 || character_width <= 0 || line_height <= 0) return std::nullopt;
  const int column = x / character_width / kCellWidth;
  const int cell = y / line_height * cells_per_row_ + column;
  // The cells end at the last column of a row; beyond it the count would run into the next one.
  if (column >= cells_per_row_ || cell >= kCells) return std::nullopt;
  return cell;
}

std::optional<int> RegisterCells::HitTest(int x, int y, int character_width,
                                          int line_height) const {
  const auto cell = CellAt(x, y, character_width, line_height);
  if (!cell) return std::nullopt;
  const int character = x / character_width % kCellWidth;
  if (character < kCaretColumn || character >= kCaretColumn + 5) return std::nullopt;
  return cell;
}

}  // namespace brevant::views
