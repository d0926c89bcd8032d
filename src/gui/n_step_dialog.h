// SPDX-License-Identifier: MIT
// The "N Step Setup" dialog: it shows the form, whose rules are the engine's.
#pragma once

#include <QFont>
#include <functional>

#include "control/n_step_form.h"

class QWidget;

namespace brevant::gui {

enum class NStepEnd { Cancelled, Stored, Start };

// store commits the form; it is called before the dialog ends with Ok or Go.
NStepEnd AskForNStep(QWidget* parent, const QFont& font, control::NStepForm form,
                     const std::function<void(const control::NStepForm&)>& store);

}  // namespace brevant::gui
