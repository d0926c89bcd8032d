// SPDX-License-Identifier: MIT
// The six cells of the registers window: their texts, which of them changed, where they stand, and
// the editor of the selected one. Rests on the register frame.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/user_interface.h"
#include "control/register_frame.h"
#include "views/open_views.h"

namespace brevant::views {

// Which registers differ from the time before.
struct ChangeFlags {
  bool pc = false, sp = false, hx = false, a = false, ccr_high = false, ccr_low = false;
};

struct RegisterCell {
  std::string text;  // at most 14 characters
  bool changed = false;
};

struct CellPosition {
  int column = 0;
  int row = 0;
  bool operator==(const CellPosition&) const = default;
};

// The one-line editor of a cell, as a form.
class RegisterEditor {
 public:
  // key is the character that opened the editor; 0 when the mouse did.
  RegisterEditor(control::RegisterFrame& frame, base::UserInterface& ui, int cell, char key);

  const std::string& caption() const { return caption_; }
  const std::string& initial_text() const { return initial_text_; }
  int max_length() const { return max_length_; }
  // Typing goes on after the initial text, instead of replacing it.
  bool typing_continues() const { return typing_continues_; }
  // What Accept takes, as a text.
  const char* expected() const;
  // Stores the value. False, after a beep, when the text is not of the cell's form; the editor then
  // stays open. A stack pointer that the target did not take is told in a message.
  bool Accept(std::string_view text);

 private:
  control::RegisterFrame& frame_;
  base::UserInterface& ui_;
  int cell_;
  std::string caption_;
  std::string initial_text_;
  int max_length_;
  bool typing_continues_;
};

class RegisterCells final : public View {
 public:
  static constexpr int kCells = 6;
  static constexpr int kCellWidth = 11;  // in characters, one line high
  static constexpr int kCaretColumn = 5;
  static constexpr int kCaretWidth = 4;

  RegisterCells(OpenViews& open, control::RegisterFrame& frame, base::UserInterface& ui)
      : View(open), frame_(frame), ui_(ui) {}

  std::array<RegisterCell, kCells> Cells() const;
  // What the register is and its value in decimal, or its flags by name, a line each.
  std::string Explain(int cell) const;
  // After each stop and each edit: marks what differs from the time before. Reads nothing.
  void UpdateChangeFlags();

  // In pixels; at least one cell a row.
  void Resize(int client_width, int character_width);
  int cells_per_row() const { return cells_per_row_; }
  // That all cells need in a window of that width.
  static int RowsIn(int client_width, int character_width);
  CellPosition PositionOf(int cell) const { return {cell % cells_per_row_, cell / cells_per_row_}; }

  int selected() const { return selected_; }
  void Select(int cell);
  // The cell at the pixel, be it over its name or its value; nothing beside them.
  std::optional<int> CellAt(int x, int y, int character_width, int line_height) const;
  // The cell whose value stands at the pixel; nothing over its name and beside it.
  std::optional<int> HitTest(int x, int y, int character_width, int line_height) const;

  // The selected cell's editor. Its opener asks first whether the target may be touched, and calls
  // UpdateChangeFlags when it has closed, whatever the answer.
  RegisterEditor OpenEditor(char key = 0) { return {frame_, ui_, selected_, key}; }

 protected:
  bool ReadsTarget() const override { return false; }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  control::RegisterFrame& frame_;
  base::UserInterface& ui_;
  struct Values {
    base::Address pc = 0, sp = 0;
    std::uint32_t hx = 0, a = 0, ccr = 0;
  };
  Values previous_;
  ChangeFlags changes_;
  long compared_ = 0;  // generation of the frame
  int selected_ = 0;
  int cells_per_row_ = 1;
};

}  // namespace brevant::views
