// SPDX-License-Identifier: MIT
#include "gui/icons.h"

#include <QPainter>
#include <QPixmap>

namespace brevant::gui {
namespace {

// Measures are of a drawing 16 units wide.
constexpr int kUnits = 16;
constexpr QRectF kBody(3, 1, 10, 14);
constexpr QRectF kSheet(1, 1, 14, 14);
constexpr int kPins = 4;
constexpr int kRows = 4;
constexpr double kRowDistance = 3.25;
const QColor kPinColour(150, 150, 160);
const QColor kBodyColour(38, 70, 120);
const QColor kMarkColour(0, 255, 255);
const QColor kInkColour(120, 130, 145);
const QColor kChangedColour(215, 40, 40);

using Drawing = void (*)(QPainter&);

void DrawChip(QPainter& painter) {
  painter.setBrush(kPinColour);
  for (int pin = 0; pin < kPins; ++pin) painter.drawRect(QRectF(1, 2.5 + 3 * pin, 14, 1.5));
  painter.setBrush(kBodyColour);
  painter.drawRect(kBody);
  painter.setBrush(kMarkColour);
  painter.drawPolygon(QPolygonF({{6, 5}, {11, 8}, {6, 11}}));
}

void DrawSheet(QPainter& painter) {
  painter.setBrush(kBodyColour);
  painter.drawRect(kSheet);
  painter.setBrush(Qt::white);
  painter.drawRect(kSheet.adjusted(1, 1, -1, -1));
}

void DrawCells(QPainter& painter) {
  DrawSheet(painter);
  for (int row = 0; row < kRows - 1; ++row) {
    for (int column = 0; column < 2; ++column) {
      painter.setBrush(row == 1 && column == 0 ? kChangedColour : kInkColour);
      painter.drawRect(QRectF(3 + 5.5 * column, 3.5 + kRowDistance * row, 4.5, 2));
    }
  }
}

void DrawCode(QPainter& painter) {
  DrawSheet(painter);
  for (int row = 0; row < kRows; ++row) {
    const double top = 3 + kRowDistance * row - 0.5 * row;
    painter.setBrush(row == 1 ? kChangedColour : kInkColour);
    painter.drawRect(QRectF(6.5, top, row % 2 == 0 ? 4 : 6, 1.5));
  }
  painter.setBrush(kChangedColour);
  painter.drawPolygon(QPolygonF({{3, 4.5}, {5.5, 6.5}, {3, 8.5}}));
}

void DrawBytes(QPainter& painter) {
  DrawSheet(painter);
  painter.setBrush(kInkColour);
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < 3; ++column) {
      painter.drawRect(QRectF(3 + 3.6 * column, 3 + 2.7 * row, 2.4, 1.5));
    }
  }
}

void DrawPile(QPainter& painter) {
  DrawSheet(painter);
  for (int row = 0; row < kRows; ++row) {
    painter.setBrush(row == 0 ? kChangedColour : kInkColour);
    painter.drawRect(QRectF(4, 3 + 2.7 * row, 8, 1.5));
  }
}

void DrawText(QPainter& painter) {
  DrawSheet(painter);
  constexpr double kIndents[] = {0, 2, 2, 0};
  for (int row = 0; row < kRows; ++row) {
    painter.setBrush(row == 1 ? kChangedColour : kInkColour);
    painter.drawRect(QRectF(3 + kIndents[row], 3 + 2.7 * row, row == 3 ? 3 : 7, 1.5));
  }
}

void DrawValues(QPainter& painter) {
  DrawSheet(painter);
  for (int row = 0; row < kRows; ++row) {
    const double top = 3 + 2.7 * row;
    painter.setBrush(kInkColour);
    painter.drawRect(QRectF(3, top, 4, 1.5));
    painter.setBrush(row == 1 ? kChangedColour : kInkColour);
    painter.drawRect(QRectF(9, top, row % 2 == 0 ? 3 : 4, 1.5));
  }
}

void DrawTree(QPainter& painter) {
  DrawSheet(painter);
  painter.setBrush(kBodyColour);
  painter.drawRect(QRectF(3, 3, 8, 1.5));
  painter.setBrush(kInkColour);
  for (int row = 1; row < kRows; ++row) painter.drawRect(QRectF(6, 3 + 2.7 * row, 7, 1.5));
}

QIcon Draw(Drawing draw) {
  QIcon icon;
  for (const int size : {16, 32, 48, 128}) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(static_cast<double>(size) / kUnits, static_cast<double>(size) / kUnits);
    painter.setPen(Qt::NoPen);
    draw(painter);
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace

QIcon ProductIcon() {
  return Draw(DrawChip);
}

QIcon RegsIcon() {
  return Draw(DrawCells);
}

QIcon ProgIcon() {
  return Draw(DrawCode);
}

QIcon DataIcon() {
  return Draw(DrawBytes);
}

QIcon StackIcon() {
  return Draw(DrawPile);
}

QIcon SourceIcon() {
  return Draw(DrawText);
}

QIcon VariablesIcon() {
  return Draw(DrawTree);
}

QIcon WatchIcon() {
  return Draw(DrawValues);
}

}  // namespace brevant::gui
