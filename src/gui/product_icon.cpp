// SPDX-License-Identifier: MIT
#include "gui/product_icon.h"

#include <QPainter>
#include <QPixmap>

namespace brevant::gui {
namespace {

// Measures are of a drawing 16 units wide.
constexpr int kUnits = 16;
constexpr QRectF kBody(3, 1, 10, 14);
constexpr int kPins = 4;
const QColor kPinColour(150, 150, 160);
const QColor kBodyColour(38, 70, 120);
const QColor kMarkColour(0, 255, 255);

QPixmap Draw(int size) {
  QPixmap picture(size, size);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.scale(static_cast<double>(size) / kUnits, static_cast<double>(size) / kUnits);
  painter.setPen(Qt::NoPen);
  painter.setBrush(kPinColour);
  for (int pin = 0; pin < kPins; ++pin) painter.drawRect(QRectF(1, 2.5 + 3 * pin, 14, 1.5));
  painter.setBrush(kBodyColour);
  painter.drawRect(kBody);
  painter.setBrush(kMarkColour);
  painter.drawPolygon(QPolygonF({{6, 5}, {11, 8}, {6, 11}}));
  return picture;
}

}  // namespace

QIcon ProductIcon() {
  QIcon icon;
  for (const int size : {16, 32, 48, 128}) icon.addPixmap(Draw(size));
  return icon;
}

}  // namespace brevant::gui
