// SPDX-License-Identifier: MIT
// One window onto the registers of the MCU: groups unfold to registers, registers to their fields.
// Only registers in sight are read, and those that change on being read only when the user asks for
// each; what was read then holds until the next stop. Rests on the device's table and the door to
// memory.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "control/activity.h"
#include "memory/memory.h"
#include "memory/register_access.h"
#include "views/rows_view.h"
#include "views/shown_bytes.h"

namespace brevant::views {

class ChipView final : public RowsView {
 public:
  // Borrowed.
  ChipView(OpenViews& open, memory::Memory& memory, const control::Activity& activity)
      : RowsView(open), memory_(memory), activity_(activity) {}

  int count() const override { return static_cast<int>(rows_.size()); }
  FoldedRow At(int row) const override;

  // Asks the target anew for what may be read by the way.
  void Refresh();
  // Reads the register under the cursor, whatever reading does.
  void ReadNow();
  // Of the row under the cursor: where it lies, what touching it does.
  std::string Explain() const;

  // What the cursor stands on, if it is a register or one of its fields.
  const devices::Register* RegisterAtCursor() const;
  // The name of what can be changed there; empty where nothing can.
  std::string Editable() const;
  // Its value in hexadecimal; empty while it is not read.
  std::string EditableText() const;
  // Gives it the value of hexadecimal digits.
  memory::RegisterWrite Assign(std::string_view digits);

 protected:
  bool ReadsTarget() const override { return !activity_.FileIoActive(); }
  void Pull(const base::Generations& before, const base::Generations& now) override;
  bool UnfoldPath(const std::string& path, bool unfolded) override;
  void Moved() override { Request(); }

 private:
  // A group alone, a register of it, or a field of that.
  struct Row {
    std::string_view group;
    const devices::Register* of_chip = nullptr;
    const devices::Field* field = nullptr;
  };

  void MakeRows();
  void ReadInSight();
  // The host has written to a register, or dropped what was known of them.
  bool Outdated() const;
  static std::string PathOf(const Row& row);
  std::string ValueText(const Row& row) const;
  bool Changed(const Row& row) const;
  const Row* AtCursor() const;
  std::optional<std::uint8_t> ValueOf(const devices::Register& row) const;

  memory::Memory& memory_;
  const control::Activity& activity_;
  std::vector<Row> rows_;
  std::set<std::string> unfolded_;                // paths
  std::map<base::Address, std::uint8_t> values_;  // as read since the last stop
  ShownBytes shown_;
  long drawn_from_ = 0;  // generation of the memory
};

}  // namespace brevant::views
