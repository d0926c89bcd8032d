// SPDX-License-Identifier: MIT
// The open program views, in the order in which they were opened, and the main one among them: the
// one that was active last, which follows PC. Rests on the program view.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "base/settings_file.h"
#include "views/program_view.h"

namespace brevant::views {

class ProgramViews {
 public:
  explicit ProgramViews(const ProgramSources& sources) : sources_(sources) {}
  ProgramViews(const ProgramViews&) = delete;
  ProgramViews& operator=(const ProgramViews&) = delete;

  // A new view becomes active, and so the main one. The reference is good until Close.
  ProgramView& Open(base::Address first = 0);
  void Close(const ProgramView& view);
  // It reads its lines anew, unless it was the main one all along.
  void Activate(ProgramView& view);
  // nullptr when none is open.
  ProgramView* main() const { return main_; }
  const std::vector<std::unique_ptr<ProgramView>>& views() const { return views_; }

  // Memory may have changed.
  void RefreshProgramWindows();
  // Marks or the cursor have changed.
  void RepaintProgramWindows();
  // The target has stopped: the main view shows PC.
  void ShowPc();

  const ScrollRange& range() const { return conditions_.range; }
  // At start-up and when the setting has changed; every view adopts it.
  void SetRange(const ScrollRange& range);
  void ReadRange(const base::SettingsFile& settings);
  bool fileIoActive() const { return conditions_.fileIoActive; }
  void SetFileIoActive(bool active);

 private:
  ProgramSources sources_;
  ProgramConditions conditions_;
  std::vector<std::unique_ptr<ProgramView>> views_;
  ProgramView* main_ = nullptr;
};

}  // namespace brevant::views
