// SPDX-License-Identifier: MIT
// "Compare": where a file and the target differ, a line each. Stays open beside the other windows;
// choosing a line shows the place in a data window.
#pragma once

#include <QDialog>
#include <functional>
#include <span>

#include "load/verify.h"

namespace brevant::gui {

class CompareDialog final : public QDialog {
 public:
  // text says what the comparison came to; go_to is called with the address of a line that was
  // chosen by Enter or a double click.
  CompareDialog(QWidget* parent, const QFont& font, const QString& text,
                std::span<const load::Difference> differences,
                std::function<void(base::Address)> go_to);
};

}  // namespace brevant::gui
