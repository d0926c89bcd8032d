// SPDX-License-Identifier: MIT
// The buttons that end a dialog.
#pragma once

#include <functional>

class QBoxLayout;
class QDialog;
class QPushButton;

namespace brevant::gui {

// "Ok", which is the default and is returned, and "Cancel", in a row of their own below what the
// layout holds. accept is called by Ok and ends the dialog where it shall end.
QPushButton* AddOkAndCancel(QDialog& dialog, QBoxLayout& layout, std::function<void()> accept);

}  // namespace brevant::gui
