// SPDX-License-Identifier: MIT
// A dialog of hexadecimal fields, as the engine describes it.
#pragma once

#include <QFont>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/function_ref.h"
#include "views/hex_fields.h"

class QWidget;

namespace brevant::gui {

// What becomes of the texts when "Ok" is chosen. Nothing: accepted; else what is shown below the
// fields while the dialog stays open.
using AcceptTexts =
    base::FunctionRef<std::optional<views::FieldRefusal>(std::span<const std::string> texts)>;

// True when the texts were accepted, false when the dialog was cancelled. Fields without a text in
// initial start empty.
bool AskForFields(QWidget* parent, const QFont& font, const views::HexDialog& request,
                  const std::vector<std::string>& initial, AcceptTexts accept);

}  // namespace brevant::gui
