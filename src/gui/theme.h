// SPDX-License-Identifier: MIT
// The colours and marks of all text views: one table, a row for each thing that has a colour, a
// column for each theme. Nothing else names a colour.
#pragma once

#include <QColor>
#include <QPalette>
#include <string_view>

namespace brevant::gui {

enum class ColourRole {
  Text,
  Stale,  // text that is no longer known to be so
  Background,
  CursorText,
  CursorLine,  // behind it
  PcText,
  PcLine,
  PcTextOnCursorLine,
  Changed,  // since the last stop
  ChangedOnCursorLine,
  OnRequest,  // read only when the user asks for it
  PcMark,
  BreakpointMark,
  CodeMark,    // of a source line that made code
  SourceLine,  // between instructions
  Keyword,
  Comment,
  Number,
  String,
};

// So that nothing is told by its colour alone.
enum class Face { Plain, Bold, Italic };
// The same in all themes.
Face FaceOf(ColourRole role);

struct Theme {
  std::string_view name;  // as the settings know it
  int command;            // chooses it
  // Breakpoints are dots and PC is an arrow in columns of their own, left of the addresses;
  // otherwise the address of a breakpoint is inverted.
  bool gutter;
  // Labels have a column of their own, so that all mnemonics begin in one.
  bool aligned_labels;
  QColor (*colour)(ColourRole role, const QPalette& palette);

  QColor Colour(ColourRole role, const QPalette& palette) const { return colour(role, palette); }
};

extern const Theme& kClassicTheme;

// The one of that name; for any other what suits the desktop: "Classic" on a light one, "Quiet" on
// a dark one.
const Theme& FindTheme(std::string_view name, const QPalette& desktop);
// nullptr for a command that chooses none.
const Theme* ThemeChosenBy(int command);

}  // namespace brevant::gui
