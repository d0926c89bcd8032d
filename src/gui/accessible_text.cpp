// SPDX-License-Identifier: MIT
#include "gui/accessible_text.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>

#include "gui/text_view.h"

namespace brevant::gui {
namespace {

class AccessibleText final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit AccessibleText(TextView& view)
      : QAccessibleWidget(&view, QAccessible::Document), view_(view) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    return state;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? Contents() : QAccessibleWidget::text(kind);
  }

  QString text(int start, int end) const override { return Contents().mid(start, end - start); }
  int characterCount() const override { return static_cast<int>(Contents().size()); }
  int cursorPosition() const override {
    const QStringList lines = view_.TextLines();
    qsizetype offset = 0;
    for (int i = 0; i < std::min<qsizetype>(view_.TextCursorLine(), lines.size()); ++i) {
      offset += lines[i].size() + 1;
    }
    return static_cast<int>(offset);
  }
  QRect characterRect(int offset) const override {
    const QString before = Contents().left(offset);
    const auto row = static_cast<int>(before.count('\n'));
    const auto column = static_cast<int>(before.size() - before.lastIndexOf('\n') - 1);
    const views::CellSize cell = view_.cell();
    const QPoint at(column * cell.width, row * cell.height);
    return {view_.viewport()->mapToGlobal(at), QSize(cell.width, cell.height)};
  }
  int offsetAtPoint(const QPoint& point) const override {
    const QPoint at = view_.viewport()->mapFromGlobal(point);
    const QStringList lines = view_.TextLines();
    const int row = at.y() / view_.cell().height;
    if (at.y() < 0 || row >= lines.size()) return -1;
    qsizetype offset = 0;
    for (int i = 0; i < row; ++i) offset += lines[i].size() + 1;
    return static_cast<int>(
        offset + std::clamp<qsizetype>(at.x() / view_.cell().width, 0, lines[row].size()));
  }
  QString attributes(int, int* start, int* end) const override {
    *start = 0;
    *end = characterCount();
    return {};
  }

  // Nothing can be selected, and the cursor moves by the view's own keys.
  int selectionCount() const override { return 0; }
  void selection(int, int* start, int* end) const override { *start = *end = 0; }
  void addSelection(int, int) override {}
  void removeSelection(int) override {}
  void setSelection(int, int, int) override {}
  void setCursorPosition(int) override {}
  void scrollToSubstring(int, int) override {}

 private:
  QString Contents() const { return view_.TextLines().join('\n'); }

  TextView& view_;
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  auto* const view = dynamic_cast<TextView*>(object);
  return view != nullptr ? new AccessibleText(*view) : nullptr;
}

}  // namespace

void MakeTextViewsAccessible() {
  QAccessible::installFactory(MakeInterface);
}

void TellReaders(TextView& view) {
  if (!QAccessible::isActive()) return;
  QAccessibleInterface* const shown = QAccessible::queryAccessibleInterface(&view);
  if (shown == nullptr || shown->textInterface() == nullptr) return;
  QAccessibleTextCursorEvent moved(&view, shown->textInterface()->cursorPosition());
  QAccessible::updateAccessibility(&moved);
}

}  // namespace brevant::gui
