// SPDX-License-Identifier: MIT
// One window onto the code in the target: an instruction a line, the line at PC and the lines with
// breakpoints marked, scrolled in both directions. Rests on the lines of code, the registers and
// the breakpoints. The window that shows it only paints what Lines() holds.
//
// Requests are carried out by the next Update: reading anew first, then the last scroll request, so
// that under key repeat lines are skipped rather than queued. The target is read only in Update and
// never while a program runs, when the monitor does not listen.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/user_interface.h"
#include "control/activity.h"
#include "control/breakpoint_table.h"
#include "control/register_frame.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/code_lines.h"
#include "views/scroll_range.h"

namespace brevant::views {

// What a program view shows and asks; borrowed.
struct ProgramSources {
  memory::Memory& memory;
  const symbols::DebugInfo& debug_info;
  const control::RegisterFrame& frame;
  control::BreakpointTable& breakpoints;
  const control::Activity& activity;
  base::UserInterface& ui;
};

// What holds for all program views at once.
struct ProgramConditions {
  ScrollRange range;
  bool fileIoActive = false;
};

struct ProgramViewState {
  base::Address top = 0;  // of the first line
  int lineCount = 0;      // lines that fit in the window
  int cursorLine = 0;     // from 0
};

struct ProgramLine {
  std::string text;  // with tabs; see ExpandTabs
  base::Address address = 0;
  bool is_pc = false;
  bool is_cursor = false;
  bool has_breakpoint = false;
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

struct CellSize {
  int width = 1;  // in pixels
  int height = 1;
};

// What a click with the left button means.
struct ClickMeaning {
  enum class Kind { Nothing, ToggleBreakpoint, MoveCursor };
  Kind kind = Kind::Nothing;
  int line = 0;
  base::Address address = 0;  // of that line
  bool operator==(const ClickMeaning&) const = default;
};

enum class Toggled { Added, Removed, Refused };

class ProgramView {
 public:
  ProgramView(const ProgramSources& sources, const ProgramConditions& conditions,
              base::Address first);
  ProgramView(const ProgramView&) = delete;
  ProgramView& operator=(const ProgramView&) = delete;

  const ProgramViewState& state() const { return state_; }
  // Called whenever there is something to repaint (after an Update).
  void SetInvalidate(std::function<void()> invalidate) { invalidate_ = std::move(invalidate); }

  // As many lines as fit; a line that shows by more than half counts.
  void Resize(int client_height, int line_height);
  // Ignored while a program runs and during file I/O. position goes with ThumbTrack.
  void Scroll(ScrollCode code, int position = 0);
  void GoToAddress(base::Address address);
  // Reads all lines anew: memory may have changed.
  void RequestRedraw();
  // Nothing has to be read: marks or the cursor have changed.
  void RequestRepaint() { Invalidate(); }
  // The target has stopped: keeps its place when PC is among the lines, else begins at PC.
  void ShowPc();
  // Carries out what was requested.
  void Update();

  // The lines within the program range, as of the last Update.
  std::vector<ProgramLine> Lines() const;
  int DrawableCount() const;
  int ScrollPosition() const { return conditions_.range.Position(state_.top); }

  void MoveCursor(int line);
  // The cursor line's text and address; nothing when no line is shown.
  std::optional<CodeLine> CursorLine() const;

  // Pure; x and y in pixels.
  ClickMeaning HitTest(int x, int y, CellSize cell) const;
  // Acts on it. True when breakpoint marks have changed, which other views show too.
  bool Click(int x, int y, CellSize cell);
  // Refused with a message when there are as many as there can be, and with a beep while a program
  // runs whose code holds the breakpoints.
  Toggled ToggleBreakpoint(base::Address address);

  // A program runs: the monitor does not listen.
  bool Running() const;

 private:
  void Invalidate();
  void Redraw();
  bool Shows(base::Address address) const;

  const ProgramSources& sources_;
  const ProgramConditions& conditions_;
  std::function<void()> invalidate_;
  ProgramViewState state_;
  CodeLines lines_;
  bool redraw_ = true;
  ScrollCode scroll_ = ScrollCode::RepaintOnly;
  int thumb_ = 0;
  bool follow_pc_ = false;
};

}  // namespace brevant::views
