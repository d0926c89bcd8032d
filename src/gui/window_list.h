// SPDX-License-Identifier: MIT
// The open windows at the end of the Window menu, numbered for the keyboard, the active one marked.
#pragma once

class QMdiArea;
class QMenu;

namespace brevant::gui {

// Keeps the list at the end of menu up to date. Both must live equally long.
void ListWindows(QMenu& menu, QMdiArea& area);

}  // namespace brevant::gui
