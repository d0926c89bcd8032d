// SPDX-License-Identifier: MIT
// The desktop's file dialog for a chooser of the workspace.
#pragma once

#include <optional>
#include <string>

#include "base/user_interface.h"
#include "workspace/file_choosers.h"

class QWidget;

namespace brevant::gui {

// The chosen path as the engine takes it; nothing when the dialog was cancelled. A path that the
// chooser does not accept is told, and asked for again.
std::optional<std::string> ChooseFile(QWidget* parent, base::UserInterface& ui,
                                      const workspace::FileChooser& chooser);

}  // namespace brevant::gui
