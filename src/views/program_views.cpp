// SPDX-License-Identifier: MIT
#include "views/program_views.h"

namespace brevant::views {

std::unique_ptr<ProgramView> ProgramViews::Open(base::Address first) {
  return std::make_unique<ProgramView>(open_, sources_, *this, first);
}

void ProgramViews::Enter(ProgramView& view) {
  views_.push_back(&view);
  main_ = &view;
}

void ProgramViews::Leave(ProgramView& view) {
  std::erase(views_, &view);
  if (main_ == &view) main_ = views_.empty() ? nullptr : views_.front();
}

void ProgramViews::SetRange(const ScrollRange& range) {
  range_ = range;
  ++generation_;
}

void ProgramViews::ShowSource(bool shown) {
  shows_source_ = shown;
  ++generation_;
}

void ProgramViews::ReadRange(const base::SettingsFile& settings) {
  SetRange(ProgramScrollRange(settings.String(base::keys::kProgramRange)));
}

}  // namespace brevant::views
