// SPDX-License-Identifier: MIT
// The icon of the program and its windows: a chip with its pins.
#pragma once

#include <QIcon>

namespace brevant::gui {

QIcon ProductIcon();

}  // namespace brevant::gui
