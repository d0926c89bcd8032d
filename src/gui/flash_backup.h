// SPDX-License-Identifier: MIT
// "Back up first": all flash of the device as an image file, before anything of it goes.
#pragma once

#include <string>

#include "gui/command_actions.h"

namespace brevant::gui {

// Saves to a new file with the date in its name, beside the image of that path, else beside the
// settings. False when what was to follow must not; the user has been told. Blank flash needs no
// file.
bool BackUpFlash(const CommandContext& context, const std::string& image_path);

}  // namespace brevant::gui
