// SPDX-License-Identifier: MIT
// What is asked before a report is saved.
#pragma once

#include <optional>

#include "link/recording_text.h"

class QWidget;

namespace brevant::gui {

// Whether security codes are to stand in the report; nothing when the dialog was cancelled.
std::optional<link::Secrets> AskForReport(QWidget* parent);

}  // namespace brevant::gui
