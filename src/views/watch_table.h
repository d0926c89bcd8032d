// SPDX-License-Identifier: MIT
// The list of watched variables, with the highlighted line and what of it is in sight: the rules of
// the list alone. Whoever reads the target stores the values here. It outlives the window onto it.
// Rests on how values become rows.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/address.h"
#include "views/scroll_code.h"
#include "views/value_rows.h"

namespace brevant::views {

// Codes as the configuration file spells them.
namespace watch_codes {
inline constexpr char kHex = 'H', kDecimal = 'D', kBinary = 'B', kString = 'S';  // display
inline constexpr char kLong = 'L', kWord = 'W', kByte = 'B';                     // width
inline constexpr char kSigned = 'S', kUnsigned = 'U';                            // sign
}  // namespace watch_codes

// Whether the value that is held was read, and still could be when it was asked for last.
enum class Held : std::uint8_t { Nothing, Old, Current };

struct WatchItem {
  static constexpr std::size_t kMostName = 39;
  static constexpr int kMostString = 16;

  base::Address address = 0;
  // How many bytes of a string are shown; else the value that was read last.
  std::int32_t lengthOrValue = 0;
  bool changed = false;         // by the last refresh
  std::string name = {};        // the address in hexadecimal where none was given
  std::string lastString = {};  // the bytes of a string that were read last
  char display = watch_codes::kHex;
  char width = watch_codes::kWord;
  char sign = watch_codes::kSigned;
  std::uint8_t reserved = 0;  // comes from the file and goes back there
  bool resolved = false;      // address is that of the symbol called name
  Held held = Held::Nothing;
  std::string problem = {};  // why there is no value
  // Of a name that C knows.
  bool has_parts = false;  // that can be unfolded
  bool computed = false;   // the value is no bytes of memory
  bool is_larger = false;  // than what the entry covers: shown as C, and not edited as a whole
  std::string as_c = {};   // the value as C writes it, where that is to be shown
  ValueRows values = {};   // itself and what is unfolded below it; empty while folded

  bool IsString() const { return display == watch_codes::kString; }
  // How many bytes of the target it stands for.
  int bytes() const;
  // Lines that are unfolded under it.
  int RowsBelow() const;
  // "      count(H) ": 13 characters, the last one '*' for a name that is no symbol, '+' or '-' for
  // a value with parts.
  std::string Label() const;
  // What was read last, as it is to be shown; kNotKnown when it could not be read. A zero byte of a
  // string is character 1.
  std::string ValueText() const;
  // By width and sign, whatever the display is.
  std::string DecimalText() const;
};
inline constexpr int kWatchLabelWidth = 13;
inline constexpr const char* kNotKnown = "--";
inline constexpr char kShownZero = '\1';
// Zero bytes as kShownZero.
std::string ShownString(std::string_view bytes);

class WatchTable {
 public:
  static constexpr int kMost = 35;

  const std::vector<WatchItem>& items() const { return items_; }
  int count() const { return static_cast<int>(items_.size()); }
  bool full() const { return count() >= kMost; }
  // Lines: an entry takes one, and those that are unfolded below it.
  int LineCount() const;
  int top() const { return top_; }        // the line on the window's first
  int cursor() const { return cursor_; }  // row of the highlighted line, from the first in sight
  int rows() const { return rows_; }      // whole lines that fit in the window
  int last_position() const;              // of the scroll bar
  // Where a line belongs: its entry, and its place below it, 0 for the entry itself.
  struct Place {
    int entry = 0;
    int below = 0;
  };
  Place PlaceOf(int line) const;
  int LineOf(int entry) const;
  // Nothing for an empty list.
  std::optional<Place> HighlightedPlace() const;
  const WatchItem* Highlighted() const;
  // Moves when the list changes; not for values and what of it is in sight.
  long generation() const { return generation_; }

  void Clear() { Assign({}); }
  // The list of a file, no more than there is room for; shown from its first line on.
  void Assign(std::vector<WatchItem> items);
  // Behind the highlighted one, which stays so. False for a full list.
  bool Insert(WatchItem item);
  // In the place of the highlighted one.
  void Replace(WatchItem item);
  void Delete();
  bool CanMoveUp() const;
  bool CanMoveDown() const;
  void MoveUp();
  void MoveDown();

  void SetRows(int rows);
  // As the scroll bar does; position goes with ThumbTrack.
  void Scroll(ScrollCode code, int position);
  // The row in sight; nothing where no line is shown.
  void PlaceCursor(int row);
  // By so many lines; what is highlighted then is in sight.
  void MoveCursor(int lines);

  // The values of an entry, but for what is unfolded below it.
  std::span<WatchItem> values() { return items_; }
  void SetValues(int entry, ValueRows values);

 private:
  void Swap(int upper, int highlighted);
  void Highlight(int line);
  void Changed() { ++generation_; }

  std::vector<WatchItem> items_;
  int top_ = 0, cursor_ = 0, rows_ = 0;
  long generation_ = 0;
};

}  // namespace brevant::views
