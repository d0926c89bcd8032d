// SPDX-License-Identifier: MIT
// The window tests run without a display, on the platform that Qt offers for that.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  QApplication desktop(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  // The test opens and answers every dialog itself.
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  return RUN_ALL_TESTS();
}
