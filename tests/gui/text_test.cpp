// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "gui/options.h"
#include "gui/progress_dialog.h"
#include "gui/status_text.h"
#include "gui/theme.h"

namespace brevant::gui {
namespace {

TEST(StatusText, SaysWhatToDoWhenTheLinkIsLost) {
  ConnectionState state{.port = "COM2", .device = "/dev/ttyUSB0", .target = "MC68HC908QL"};
  EXPECT_EQ(StatusText(state), "COM2 /dev/ttyUSB0 MC68HC908QL: stopped");
  state.security_passed = false;
  state.damage = 2;
  EXPECT_EQ(StatusText(state),
            "COM2 /dev/ttyUSB0 MC68HC908QL: stopped (line damaged 2 times) (security not passed, "
            "RAM only)");
  state.running = state.link_lost = true;
  EXPECT_EQ(StatusText(state),
            "COM2 /dev/ttyUSB0 MC68HC908QL: link lost; check cable and power, then press ReStart");
  EXPECT_EQ(StatusText({}), "not connected: press ReStart");
}

TEST(ProgressDialog, EstimatesTheTimeLeftOnlyWhenSomethingCanBeSaid) {
  EXPECT_EQ(TimeLeftText(500, 10, 100), "");
  EXPECT_EQ(TimeLeftText(2000, 0, 100), "");
  EXPECT_EQ(TimeLeftText(2000, 100, 0), "");
  EXPECT_EQ(TimeLeftText(2000, 20, 100), "about 8 s left");
  EXPECT_EQ(TimeLeftText(60000, 10, 100), "about 9 minutes left");
}

TEST(Theme, SuitsTheDesktopUntilOneIsNamed) {
  const QPalette light(Qt::lightGray, Qt::white);
  QPalette dark(Qt::darkGray, Qt::black);
  dark.setColor(QPalette::Base, Qt::black);
  EXPECT_EQ(FindTheme("", light).name, "classic");
  EXPECT_EQ(FindTheme("", dark).name, "quiet");
  EXPECT_EQ(FindTheme("classic", dark).name, "classic");
  EXPECT_EQ(FindTheme("classic", dark).Colour(ColourRole::CursorLine, dark), QColor(0, 255, 255));
  EXPECT_EQ(FindTheme("quiet", dark).Colour(ColourRole::Background, dark), QColor(Qt::black));
}

TEST(Options, SimulateIsTheSimulatedTargetBehindAPort) {
  const auto parse = [](std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "brevant");
    return ParseOptions(static_cast<int>(arguments.size()), arguments.data(), "1.2");
  };
  const ParsedOptions parsed = parse({"--simulate", "--connect", "a.s19"});
  EXPECT_FALSE(parsed.leave_with);
  EXPECT_EQ(parsed.options.port, "sim");
  EXPECT_TRUE(parsed.options.connect);
  EXPECT_EQ(parsed.options.image, "a.s19");
  EXPECT_EQ(parse({"--simulate", "--port", "COM1"}).leave_with, 2);
  EXPECT_EQ(parse({"--no-such-option"}).leave_with, 2);
  const ParsedOptions styled =
      parse({"-style", "fusion", "--stylesheet=a.qss", "-p", "COM2", "-reverse", "b.s19"});
  EXPECT_FALSE(styled.leave_with);
  EXPECT_EQ(styled.options.port, "COM2");
  EXPECT_EQ(styled.options.image, "b.s19");
}

}  // namespace
}  // namespace brevant::gui
