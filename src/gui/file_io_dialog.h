// SPDX-License-Identifier: MIT
// The dialog that binds a file to a slot of the program: it shows the form, whose rules are the
// engine's.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "control/file_io_form.h"

class QWidget;

namespace brevant::gui {

// browse lets the user choose a file, starting from the name given. accept is called by "Ok", which
// ends the dialog where it returns true. False when the dialog was cancelled.
bool AskForFileIo(
    QWidget* parent, control::FileIoForm form,
    const std::function<std::optional<std::string>(QWidget*, const std::string&)>& browse,
    const std::function<bool(const control::FileIoForm&)>& accept);

}  // namespace brevant::gui
