// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>

#include "gui/icons.h"

namespace brevant::gui {
namespace {

// A desktop shows the installed pictures in its menu and the drawn icon on the window.
TEST(Icon, InstalledPictureIsTheDrawnOne) {
  constexpr int kSize = 48;
  const QImage drawn =
      ProductIcon().pixmap(kSize).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const QImage installed = QImage(BREVANT_TEST_DATA "/../packaging/icons/brevant-48.png")
                               .convertToFormat(drawn.format());
  ASSERT_EQ(installed.size(), drawn.size());
  int different = 0;
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      const QColor one = drawn.pixelColor(x, y);
      const QColor other = installed.pixelColor(x, y);
      const int distance =
          std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
          std::abs(one.blue() - other.blue()) + std::abs(one.alpha() - other.alpha());
      different += distance > 128 ? 1 : 0;
    }
  }
  // Edges that one of them smooths.
  EXPECT_LT(different, kSize * kSize / 20);
}

}  // namespace
}  // namespace brevant::gui
