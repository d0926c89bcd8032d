// SPDX-License-Identifier: MIT
// The dialog for the settings of a watched variable, as the engine's form describes it.
#pragma once

#include <QFont>
#include <optional>

#include "base/user_interface.h"
#include "views/watch_form.h"

class QWidget;

namespace brevant::gui {

// What it comes to; nothing when it was cancelled.
std::optional<views::WatchItem> AskForWatch(QWidget* parent, const QFont& font,
                                            views::WatchForm form, const views::WatchNames& names,
                                            base::UserInterface& ui);

}  // namespace brevant::gui
