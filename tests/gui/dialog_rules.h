// SPDX-License-Identifier: MIT
// What holds for each dialog, so that it can be used by keyboard alone.
#pragma once

#include <QDialog>

namespace brevant::gui {

// Of one that has just opened: where typing begins, that Tab goes as the eye does, that a key of
// its own leads to each field, and that no two have the same.
void ExpectUsableByKeys(const QDialog& dialog);

}  // namespace brevant::gui
