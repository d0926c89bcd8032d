// SPDX-License-Identifier: MIT
// The window onto one source file of the loaded program: a line a row with its number, the line of
// PC, the lines with breakpoints and those that made code marked. Rests on the line table, the
// source files, the registers and the breakpoints; the window only paints what Rows() holds. The
// target is never read.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/address.h"
#include "control/run_control.h"
#include "symbols/debug_info.h"
#include "views/breakpoint_toggle.h"
#include "views/cell_size.h"
#include "views/open_views.h"
#include "views/scroll_code.h"
#include "views/source_files.h"

namespace brevant::views {

// What the source view shows and asks; borrowed.
struct SourceSources {
  SourceFiles& files;
  const control::RegisterFrame& frame;
  const control::RunControl& run_control;
  BreakpointPlaces places;
  // The image that the program was loaded from; empty for none.
  std::function<std::string()> image;
};

struct SourceViewState {
  bool loaded = false;            // the file's lines are known
  std::uint32_t currentFile = 0;  // in the line table's list
  std::string path;               // of it, or where it is expected
  int lineCount = 0;
  int top = 0;     // first line shown, from 0
  int left = 0;    // first character shown of the lines
  int cursor = 0;  // row, from 0
  int rows = 0;    // that fit in the window
  int columns = 0;
  int paintedRows = 0;
  std::string searchText;
  int searchLine = 0;  // where the next search begins
  bool matchCase = false;
  int tabSize = 8;
};

struct SourceRow {
  int number = 0;               // of the line, from 1
  std::string text;             // UTF-8, tabs expanded, from its first character on
  std::vector<TextSpan> spans;  // of that
  bool is_pc = false;
  bool is_cursor = false;
  bool has_code = false;
  bool has_breakpoint = false;
};

enum class FileUse {
  Used,
  OtherName,   // not the name that the line table has
  OtherFound,  // the folder is remembered, but a file that has more of the name comes before it
  NotStored,
};

class SourceView final : public View {
 public:
  static constexpr int kMostSearchText = 99;  // characters
  static constexpr int kMostTabSize = 8;

  SourceView(OpenViews& open, const SourceSources& sources);

  const SourceViewState& state() const { return state_; }
  std::vector<SourceRow> Rows() const;
  // In place of the rows, when the file cannot be shown.
  const std::vector<std::string>& problem() const { return problem_; }
  // Of the line under the cursor; and why it may not be the one that was compiled.
  std::string Explain() const;

  // In characters: where the marks of a row stand, and where its text begins.
  int MarkColumn() const;
  int TextColumn() const { return MarkColumn() + 1; }

  // A row that shows by half counts.
  void Resize(int client_width, int client_height, CellSize cell);
  void Scroll(ScrollCode code, int position = 0);
  void ScrollSideways(int characters);
  // Beyond the first and the last row the window scrolls.
  void MoveCursor(int row);
  // Looks whether the file is still what is shown.
  void CheckFile();
  // Looks for the file and reads it anew.
  void Refresh();

  // A click into the text moves the cursor, one left of the marks toggles the line's breakpoint; x
  // and y in pixels.
  void Click(int x, int y, CellSize cell);
  // Of the cursor's line. Nothing when the line made no code.
  std::optional<Toggled> ToggleBreakpoint();
  // Where the code of the cursor's line begins.
  std::optional<base::Address> CursorAddress() const;

  // False when PC has no line.
  bool ShowPcLine();
  // False when no line begins exactly there.
  bool GoToCode(base::Address address);
  // From 1; past the end the last one.
  void GoToLine(int number);
  // By its number in the line table's list.
  void OpenFile(std::uint32_t file);
  // As the line table names the current one; empty when it names none.
  std::string FileName() const;
  // Takes the chosen file for the current one and remembers its folder.
  FileUse UseFile(const std::string& chosen);

  // Remembers what is looked for, and where to begin.
  void SetSearch(std::string_view text, bool match_case);
  // Shows the next line that holds the text; a message when there is none, and the next search then
  // begins at the first line. False without something to look for or to look through.
  bool Search();
  // "4"; 0 and 9 are 8. False when the text is no digit.
  bool SetTabSize(std::string_view text);

  // The name or number under the pointer; empty when there is none.
  std::string WordAt(int x, int y, CellSize cell) const;

 protected:
  bool ReadsTarget() const override { return false; }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  const symbols::DebugInfo& info() const { return sources_.files.info(); }
  std::optional<symbols::SourceLine> PcLine() const;
  // Where a breakpoint stands on the line, else where its code begins.
  std::optional<base::Address> AddressOfLine(int number) const;
  bool HasBreakpoint(int number) const;
  // The first that is there.
  std::uint32_t FirstFile() const;
  // At PC's line, else at the beginning of the first file.
  void Synchronise();
  void Load(std::uint32_t file);
  void ReadRows();
  void ShowTop(int top);
  void Show(int number);
  std::vector<std::string> Problem(const SourceFiles::File& file) const;
  std::string NewerThanImage() const;

  SourceSources sources_;
  SourceViewState state_;
  std::vector<SourceIndex::Line> lines_;
  int lines_from_ = 0;  // the top when they were read
  std::vector<std::string> problem_;
  std::string newer_;  // than the image
  SourceLanguage language_ = SourceLanguage::Plain;
  long of_file_ = -1;  // generation of the files
  bool synchronised_ = false;
  base::Address pc_ = 0;
  std::optional<symbols::SourceLine> pc_line_;
};

}  // namespace brevant::views
