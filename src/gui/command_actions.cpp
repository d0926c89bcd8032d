// SPDX-License-Identifier: MIT
#include "gui/command_actions.h"

#include <algorithm>

#include "gui/window_kinds.h"
#include "workspace/command_rows.h"

namespace brevant::gui {

const CommandAction* FindAction(int id) {
  const workspace::CommandRow* const row = workspace::FindCommand(id);
  if (row == nullptr) return nullptr;
  const int own = row->same_as != 0 ? row->same_as : id;
  for (const auto group : {FileActions(), RunActions(), FileIoActions(), TraceActions(),
                           ProgramActions(), DataActions(), SourceActions(), WatchActions(),
                           ChipActions(), BlockActions(), ClipboardActions(), MemoryFileActions(),
                           FlashActions(), ConfigureActions(), WindowActions()}) {
    const auto found = std::ranges::find(group, own, &CommandAction::id);
    if (found != group.end()) return &*found;
  }
  return nullptr;
}

bool IsBuilt(int id) {
  return FindAction(id) != nullptr || KindOpenedBy(id) != nullptr;
}

}  // namespace brevant::gui
