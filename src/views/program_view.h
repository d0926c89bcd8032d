// SPDX-License-Identifier: MIT
// One window onto the code in the target: an instruction a line, the line at PC and the lines with
// breakpoints marked, scrolled in both directions. Rests on the lines of code, the registers and
// the breakpoints. The window that shows it only paints what Lines() holds.
//
// Requests are carried out by the next Follow: reading anew first, then the last scroll request, so
// that under key repeat lines are skipped rather than queued.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/settings_file.h"
#include "base/user_interface.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/breakpoint_toggle.h"
#include "views/cell_size.h"
#include "views/code_lines.h"
#include "views/open_views.h"
#include "views/scroll_range.h"
#include "views/source_files.h"

namespace brevant::views {

// What a program view shows and asks; borrowed.
struct ProgramSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  control::BreakpointTable& breakpoints;
  const control::Activity& activity;
  base::SettingsFile& settings;
  base::UserInterface& ui;
  // Of the source lines between the instructions; none without it.
  SourceFiles* source_files = nullptr;
};

class ProgramViews;

struct ProgramViewState {
  base::Address top = 0;  // of the first line
  int lineCount = 0;      // lines that fit in the window
  int cursorLine = 0;     // from 0
};

struct ProgramLine {
  std::string text;  // with tabs; see ExpandTabs and AlignedText
  base::Address address = 0;
  int length = 0;  // of the instruction; 0 when it is not known
  bool is_pc = false;
  bool is_cursor = false;
  bool has_breakpoint = false;
  // The source lines that made it, each a row above it: "count.c:30  sum++;".
  std::vector<std::string> source = {};
};

// How a line is painted, in character cells: the address, the PC marker in the column behind it,
// and from the bytes on the colours of the cursor line and the PC line.
inline constexpr int kAddressColumns = 6;
inline constexpr int kPcMarkerColumn = 6;
inline constexpr int kHighlightColumn = 7;
inline constexpr int kDrawnCharacters = 100;
inline constexpr int kTabStops[] = {22, 30};

// Tabs replaced by blanks up to the next tab stop, at least one.
std::string ExpandTabs(std::string_view text);

// What a click with the left button means.
struct ClickMeaning {
  enum class Kind { Nothing, ToggleBreakpoint, MoveCursor };
  Kind kind = Kind::Nothing;
  int line = 0;
  base::Address address = 0;  // of that line
  bool operator==(const ClickMeaning&) const = default;
};

class ProgramView final : public View {
 public:
  // siblings are all program views, which it enters and leaves by itself.
  ProgramView(OpenViews& open, const ProgramSources& sources, ProgramViews& siblings,
              base::Address first);
  ~ProgramView() override;

  const ProgramViewState& state() const { return state_; }

  // As many lines as fit; a line that shows by more than half counts.
  void Resize(int client_height, int line_height);
  // Ignored while a program runs and during file I/O. position goes with ThumbTrack.
  void Scroll(ScrollCode code, int position = 0);
  void GoToAddress(base::Address address);
  // Reads all lines anew: memory may have changed.
  void RequestRedraw();
  // Asks the target for everything that is shown, whatever is kept of it.
  void Refresh();

  // The lines within the program range, as of the last Follow.
  std::vector<ProgramLine> Lines() const;
  int DrawableCount() const;
  // Rows of the window: of the instruction of a line, which has its source lines above it; and the
  // line whose instruction stands in a row, nothing for a source line and below the last.
  int RowOfLine(int line) const;
  std::optional<int> LineAtRow(int row) const;
  int ScrollPosition() const;

  void MoveCursor(int line);
  // To the instruction in that row; nothing where there is none.
  void PlaceCursor(int row);
  // The cursor line's text and address; nothing when no line is shown.
  std::optional<CodeLine> CursorLine() const;

  // Pure; x and y in pixels.
  ClickMeaning HitTest(int x, int y, CellSize cell) const;
  // Acts on it.
  void Click(int x, int y, CellSize cell);
  Toggled ToggleBreakpoint(base::Address address);

  // A program runs: the monitor does not listen.
  bool Running() const;

 protected:
  bool ReadsTarget() const override { return !FileIoActive(); }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  bool FileIoActive() const { return sources_.activity.FileIoActive(); }
  void Redraw();
  bool ShowsSource() const;
  std::vector<std::string> SourceAbove(base::Address address) const;
  // Keeps as many instructions as have room with the source lines above them. Going a page up the
  // last ones are those that stay.
  void FitSource(ScrollCode scrolled);
  bool Shows(base::Address address) const;
  // The host has changed bytes that are shown, or how they are named.
  bool Outdated(const base::Generations& before, const base::Generations& now) const;

  const ProgramSources& sources_;
  ProgramViews& siblings_;
  ProgramViewState state_;
  CodeLines lines_;
  std::vector<std::vector<std::string>> source_;  // above each of the lines; empty without
  bool redraw_ = true;
  ScrollCode scroll_ = ScrollCode::RepaintOnly;
  int thumb_ = 0;
  long drawn_from_ = 0;  // generation of the memory
};

}  // namespace brevant::views
