// SPDX-License-Identifier: MIT
#include "gui/compare_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "base/text_format.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

constexpr int kCompareWidth = 420;
constexpr int kHeight = 360;
constexpr int kAddressColumn = 0;

QTreeWidgetItem* LineOf(const load::Difference& byte) {
  auto* const line = new QTreeWidgetItem({Text(base::Format("%04x", byte.address)),
                                          Text(base::Format("%02x", byte.expected)),
                                          Text(base::Format("%02x", byte.found))});
  line->setData(kAddressColumn, Qt::UserRole, byte.address);
  return line;
}

}  // namespace

CompareDialog::CompareDialog(QWidget* parent, const QFont& font, const QString& text,
                             std::span<const load::Difference> differences,
                             std::function<void(base::Address)> go_to)
    : QDialog(parent) {
  setObjectName("COMPARE");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle("Compare with file");
  auto* const layout = new QVBoxLayout(this);
  auto* const summary = new QLabel(text);
  summary->setObjectName("summary");
  summary->setTextFormat(Qt::PlainText);
  summary->setWordWrap(true);
  layout->addWidget(summary);

  auto* const list = new QTreeWidget;
  list->setObjectName("differences");
  list->setFont(font);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setHeaderLabels({"Address", "File", "Target"});
  for (const load::Difference& byte : differences) list->addTopLevelItem(LineOf(byte));
  list->setCurrentItem(list->topLevelItem(0));
  connect(list, &QTreeWidget::itemActivated, this,
          [go_to = std::move(go_to)](QTreeWidgetItem* line) {
            go_to(line->data(kAddressColumn, Qt::UserRole).toUInt());
          });
  layout->addWidget(list, 1);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  auto* const close = new QPushButton("Close");
  close->setObjectName("close");
  close->setAutoDefault(false);  // Enter chooses a line
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  buttons->addWidget(close);
  layout->addLayout(buttons);
  list->setFocus();
  resize(kCompareWidth, kHeight);
}

}  // namespace brevant::gui
