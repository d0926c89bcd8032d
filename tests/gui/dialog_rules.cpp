// SPDX-License-Identifier: MIT
#include "gui/dialog_rules.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QPushButton>
#include <algorithm>
#include <vector>

namespace brevant::gui {
namespace {

QString NameOf(const QWidget& widget) {
  return widget.objectName().isEmpty() ? widget.metaObject()->className() : widget.objectName();
}

// Ended by Enter or Escape.
bool HasAKeyAnyway(const QWidget& widget) {
  return widget.objectName() == "ok" || widget.objectName() == "cancel";
}

// Each that Tab can reach, in its order.
std::vector<const QWidget*> TabOrder(const QDialog& dialog) {
  std::vector<const QWidget*> order;
  for (const QWidget* at = dialog.nextInFocusChain(); at != &dialog; at = at->nextInFocusChain()) {
    const bool reached = (at->focusPolicy() & Qt::TabFocus) != 0 && at->focusProxy() == nullptr;
    if (reached && at->isVisible() && at->isEnabled() && at->window() == &dialog)
      order.push_back(at);
  }
  return order;
}

// Columns are read one after the other, and each from above.
bool ReadBefore(const QRect& a, const QRect& b) {
  const bool a_row_above = b.bottom() < a.top(),
             same_row = b.bottom() >= a.top() && b.top() <= a.bottom();
  if (a_row_above) return b.left() > a.right();
  return !same_row || b.left() > a.left();
}

void ExpectTabFollowsTheEye(const QDialog& dialog) {
  const std::vector<const QWidget*> order = TabOrder(dialog);
  for (std::size_t i = 1; i < order.size(); ++i) {
    const auto place = [&](const QWidget& widget) {
      return QRect(widget.mapTo(&dialog, QPoint(0, 0)), widget.size());
    };
    EXPECT_TRUE(ReadBefore(place(*order[i - 1]), place(*order[i])))
        << qPrintable(dialog.objectName()) << ": from " << qPrintable(NameOf(*order[i - 1]))
        << " to " << qPrintable(NameOf(*order[i]));
  }
}

// It gets the focus when the desktop activates the dialog, unless another was chosen.
const QWidget* FirstFocus(const QDialog& dialog) {
  return dialog.focusWidget() != nullptr ? dialog.focusWidget() : TabOrder(dialog).front();
}

void ExpectTypingBeginsSomewhere(const QDialog& dialog) {
  const QWidget* const focus = FirstFocus(dialog);
  const auto* const button = qobject_cast<const QPushButton*>(focus);
  EXPECT_TRUE(button == nullptr || button->isDefault())
      << qPrintable(dialog.objectName()) << " begins on " << qPrintable(NameOf(*focus));
}

void ExpectKeysOfTheirOwn(const QDialog& dialog) {
  QMap<QKeySequence, QString> keys;
  std::vector<const QWidget*> reached;
  const auto add = [&](const QWidget& widget, const QString& text, const QWidget& leads_to) {
    const QKeySequence key = QKeySequence::mnemonic(text);
    if (key.isEmpty() || !widget.isVisible()) return;
    EXPECT_FALSE(keys.contains(key)) << qPrintable(dialog.objectName()) << ": " << qPrintable(text)
                                     << " and " << qPrintable(keys.value(key));
    keys[key] = text;
    reached.push_back(&leads_to);
  };
  for (const auto* const button : dialog.findChildren<QAbstractButton*>())
    add(*button, button->text(), *button);
  for (const auto* const label : dialog.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) add(*label, label->text(), *label->buddy());
  }
  // One that typing begins in needs none, nor has each of several fields in a row.
  const QWidget* before = nullptr;
  for (const QWidget* const widget : TabOrder(dialog)) {
    const bool field = qobject_cast<const QLineEdit*>(widget) != nullptr ||
                       qobject_cast<const QComboBox*>(widget) != nullptr ||
                       qobject_cast<const QAbstractButton*>(widget) != nullptr;
    const bool goes_on = before != nullptr && qobject_cast<const QLineEdit*>(before) != nullptr &&
                         qobject_cast<const QLineEdit*>(widget) != nullptr &&
                         before->y() == widget->y();
    before = widget;
    EXPECT_TRUE(!field || HasAKeyAnyway(*widget) || goes_on || widget == FirstFocus(dialog) ||
                std::ranges::find(reached, widget) != reached.end())
        << qPrintable(dialog.objectName()) << ": no key leads to " << qPrintable(NameOf(*widget));
  }
}

}  // namespace

void ExpectUsableByKeys(const QDialog& dialog) {
  if (TabOrder(dialog).empty()) return;  // progress that cannot be cancelled
  ExpectTypingBeginsSomewhere(dialog);
  ExpectTabFollowsTheEye(dialog);
  ExpectKeysOfTheirOwn(dialog);
}

}  // namespace brevant::gui
