// SPDX-License-Identifier: MIT
#include "gui/dialog_buttons.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <utility>

namespace brevant::gui {

QPushButton* AddOkAndCancel(QDialog& dialog, QBoxLayout& layout, std::function<void()> accept) {
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  const auto add = [buttons](const char* text, const char* name) {
    auto* const button = new QPushButton(text);
    button->setObjectName(name);
    buttons->addWidget(button);
    return button;
  };
  QPushButton* const ok = add("Ok", "ok");
  ok->setDefault(true);
  QObject::connect(ok, &QPushButton::clicked, &dialog, std::move(accept));
  QObject::connect(add("Cancel", "cancel"), &QPushButton::clicked, &dialog, &QDialog::reject);
  layout.addLayout(buttons);
  return ok;
}

}  // namespace brevant::gui
