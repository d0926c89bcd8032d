// SPDX-License-Identifier: MIT
// Values of the program as rows of text, of which those that have parts can be unfolded: members
// below a structure, elements below an array, what it points at below a pointer. Shared by the
// windows onto variables. Rests on evaluation.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "eval/context.h"
#include "eval/value.h"

namespace brevant::views {

struct ValueRow {
  int depth = 0;          // below the value that was added
  std::string path = {};  // tells the row from all others
  std::string name = {};  // "count", "[3]", "*"; all there is of a heading
  std::string text = {};  // the value, as C writes it
  bool is_heading = false;
  bool has_parts = false, unfolded = false;
  bool changed = false;  // since the stop before
  eval::Value value = {};

  // Where the mark of a row with parts stands, in characters.
  int MarkColumn() const { return 2 * depth; }
  // "  + next = ", what stands before the value.
  std::string Left() const;
};

// The value stands in the target and is no structure, so that another can be written over it.
bool CanChange(const ValueRow& row);
// Evaluates the text and writes what it comes to. Empty once that has been looked at; else why not.
std::string Assign(const ValueRow& row, std::string_view text, const eval::Context& context);

class ValueRows {
 public:
  static constexpr int kMostParts = 64;  // of one value

  const std::vector<ValueRow>& rows() const { return rows_; }
  // The target has come to rest anew: what is shown from now on is compared with what was shown.
  void BeginStop();
  // The rows are made anew: first this, then a call for each.
  void Begin() { rows_.clear(); }
  void AddHeading(const std::string& text);
  // The value and what is unfolded below it. scope tells it from others of the same name.
  void Add(const std::string& scope, const std::string& name, const eval::Value& value,
           const eval::Context& context);
  // To take effect when the rows are made anew. False where nothing changes.
  bool Unfold(const std::string& path, bool unfolded);
  static std::string PathOf(const std::string& scope, const std::string& name) {
    return scope + '/' + name;
  }
  bool IsUnfolded(const std::string& path) const { return unfolded_.contains(path); }

 private:
  void AddRow(ValueRow row, const eval::Context& context);

  std::vector<ValueRow> rows_;
  std::set<std::string> unfolded_;                   // paths
  std::map<std::string, std::string> before_, now_;  // texts by path
};

}  // namespace brevant::views
