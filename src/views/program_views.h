// SPDX-License-Identifier: MIT
// What the program views have in common beside all views: their scroll range, and the main one
// among them, which was active last and follows PC.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "base/settings_file.h"
#include "views/program_view.h"

namespace brevant::views {

class ProgramViews {
 public:
  ProgramViews(OpenViews& open, const ProgramSources& sources) : open_(open), sources_(sources) {}
  ProgramViews(const ProgramViews&) = delete;
  ProgramViews& operator=(const ProgramViews&) = delete;

  // A new view becomes active, and so the main one.
  std::unique_ptr<ProgramView> Open(base::Address first = 0);
  void Activate(ProgramView& view) { main_ = &view; }
  // In the order in which they were opened.
  const std::vector<ProgramView*>& views() const { return views_; }
  // At each stop it keeps its place when PC is among its lines, else begins at PC. nullptr when
  // none is open.
  ProgramView* main() const { return main_; }

  const ScrollRange& range() const { return range_; }
  // At start-up and when the setting has changed.
  void SetRange(const ScrollRange& range);
  void ReadRange(const base::SettingsFile& settings);
  // Source lines between the instructions of all of them.
  bool shows_source() const { return shows_source_; }
  void ShowSource(bool shown);
  // Moves with the range and the source lines.
  long generation() const { return generation_; }

 private:
  friend class ProgramView;
  void Enter(ProgramView& view);
  void Leave(ProgramView& view);

  OpenViews& open_;
  ProgramSources sources_;
  ScrollRange range_;
  bool shows_source_ = false;
  std::vector<ProgramView*> views_;
  ProgramView* main_ = nullptr;
  long generation_ = 0;
};

}  // namespace brevant::views
