// SPDX-License-Identifier: MIT
// One window onto the bytes in the target: lines of 8 or 16 bytes, shown as bytes or as words with
// a column of characters, and a cursor on one cell. Bytes that differ from what the view showed at
// the stop before are marked. Registers that change on being read are read only by Refresh, and
// show what was read of them last. Rests on the door to memory, which keeps what was read: another
// view of the same place, scrolling back and a repaint read nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/address.h"
#include "base/settings_file.h"
#include "control/activity.h"
#include "memory/memory.h"
#include "symbols/debug_info.h"
#include "views/cell_size.h"
#include "views/open_views.h"
#include "views/scroll_code.h"
#include "views/shown_bytes.h"

namespace brevant::views {

enum class DataUnit { Bytes, Words };

// What all data views share.
struct DataSettings {
  DataUnit unit = DataUnit::Words;
  int bytes_per_line = 16;  // or 8
  bool characters = true;
  base::Address range = base::kAddressSpace;  // bytes that can be shown, from address 0
  bool operator==(const DataSettings&) const = default;

  int cell_width() const { return unit == DataUnit::Bytes ? 3 : 5; }  // with the blank behind it
  int cell_bytes() const { return unit == DataUnit::Bytes ? 1 : 2; }
  int cells() const { return bytes_per_line / cell_bytes(); }
  int total_lines() const {
    return static_cast<int>(range / static_cast<unsigned>(bytes_per_line));
  }
  // Scroll bars have at most 32768 positions; position p stands for line p << shift.
  int scroll_shift() const;
  int last_position() const;
  // Where byte n of a line is shown, in characters; and its character.
  int ByteColumn(int n) const;
  int CharacterColumn(int n) const;
};
// Keys "WordByte", "DataPerLine", "DisPlayAscii" and "DataAddrRange".
DataSettings ReadDataSettings(const base::SettingsFile& settings);
// All but the range. False when the settings file could not be written.
bool StoreDataSettings(const DataSettings& wanted, base::SettingsFile& settings);

struct DataViewState {
  int topLine = 0;    // counted in lines from address 0
  int lineCount = 0;  // lines that fit in the window
  int cursorColumn = 0;
  int cursorRow = 0;
};

enum class DataMark : std::uint8_t {
  None,
  Changed,    // since the stop before, by the program or by the user
  OnRequest,  // not read by itself; see devices::FindReadEffect
};
struct DataByte {
  std::optional<std::uint8_t> value = {};  // nothing: not known
  DataMark mark = DataMark::None;
};
struct DataLine {
  std::string text;
  base::Address address = 0;
  std::vector<DataByte> bytes = {};
};
struct DataCell {
  int column = 0;
  int row = 0;
  bool operator==(const DataCell&) const = default;
};

// The first cell of a line stands here.
inline constexpr int kFirstCellColumn = 7;
inline constexpr int kByteDigits = 2;

class DataView final : public View {
 public:
  // All is borrowed; the settings hold for all data views at once.
  DataView(OpenViews& open, memory::Memory& memory, const control::Activity& activity,
           const DataSettings& settings, int top_line = 0);

  const DataViewState& state() const { return state_; }
  const DataSettings& settings() const { return settings_; }
  // As of the last Follow.
  const std::vector<DataLine>& lines() const { return lines_; }
  int ScrollPosition() const { return state_.topLine >> settings_.scroll_shift(); }

  // As many lines as fit; a line that shows by half counts.
  void Resize(int client_height, int line_height);
  // The line that holds the address becomes the first, the cursor goes to its cell.
  void GoToDataAddress(base::Address address);
  base::Address CursorCellAddress() const;
  // position goes with ThumbTrack. Ignored during file I/O.
  void Scroll(ScrollCode code, int position = 0);
  void MoveCursor(int column, int row);
  // The cell at the pixel; nothing beside the cells.
  std::optional<DataCell> HitTest(int x, int y, CellSize character) const;
  // What is known of the cell, for the status bar: address, symbol, character, its byte and the
  // word there as numbers. Empty where no cell is shown.
  std::string Explain(const DataCell& cell, const symbols::DebugInfo& info) const;
  DataCell cursor() const { return {state_.cursorColumn, state_.cursorRow}; }
  // Asks the target for everything that is shown, whatever is kept of it.
  void Refresh();

 protected:
  bool ReadsTarget() const override { return !activity_.FileIoActive(); }
  void Pull(const base::Generations& before, const base::Generations& now) override;

 private:
  int ShownLines() const;
  int ClampedTop(int line) const;
  void SetTop(int line);
  // What is shown may no longer be so.
  bool Outdated(const base::Generations& before, const base::Generations& now) const;
  enum class Held { Good, Outdated };
  void ReadLines(Held lines, bool on_request);
  base::Address AddressOf(int line) const;
  DataLine MakeLine(base::Address address, base::Bytes bytes);
  // Of a line that cannot be read now.
  DataLine Unavailable(base::Address address) const;
  DataByte MakeByte(base::Address address, std::uint8_t byte);
  // What is shown at the address; nullptr when it is not among the lines.
  const DataByte* ByteAt(base::Address address) const;

  memory::Memory& memory_;
  const control::Activity& activity_;
  const DataSettings& settings_;
  DataViewState state_;
  DataSettings drawn_with_;
  std::vector<DataLine> lines_;
  ShownBytes shown_;
  long drawn_from_ = 0;  // generation of the memory
  bool moved_ = true;
  bool refresh_ = false;
};

}  // namespace brevant::views
