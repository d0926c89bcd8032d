// SPDX-License-Identifier: MIT
#include "views/watch_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/files.h"
#include "base/temporary_folder.h"

namespace brevant::views {
namespace {

class WatchFileTest : public testing::Test {
 protected:
  WatchFileTest() {
    info.SymbolTable.Assign({{"_count", 0x1234, 0, ""}});
    info.DebugInfoLoaded = true;
  }
  void Write(const std::string& text) { std::ofstream(path) << text; }
  WatchFile Load() { return LoadWatchFile(path, info); }
  // Each entry's fields, so that a test reads at a glance.
  std::string Loaded(const std::string& text) {
    Write(text);
    std::string result;
    for (const WatchItem& item : Load().items) {
      result += item.name + ' ' + item.display + item.width + item.sign + ' ' +
                std::to_string(item.lengthOrValue) + ' ' + std::to_string(item.reserved) + ' ' +
                std::to_string(item.address) + (item.resolved ? "" : "*") + '\n';
    }
    return result;
  }
  base::TemporaryFolder folder;
  const std::string path = folder.path() / "demo.cfg";
  symbols::DebugInfo info;
};

TEST_F(WatchFileTest, KeepsTheListInItsSectionAlone) {
  Write(
      "[other]\nkey=1\n[WATCH]\nnwatch=3\nws0=old@HWS0000@000000\n\nws2=stale\n\n[last]\nws0=2\n");
  const std::vector<WatchItem> items{
      {.address = 0x80, .lengthOrValue = 0x1FE, .name = "count", .reserved = 0xAB},
      {.address = 0xFFFF, .lengthOrValue = -5, .name = "80", .display = 'D', .width = 'L'},
      {.address = 0x90, .lengthOrValue = 40, .name = "text", .display = 'S', .sign = 'U'}};
  ASSERT_TRUE(SaveWatchFile(path, items));
  EXPECT_EQ(base::ReadFile(path).text,
            "[other]\nkey=1\n[WATCH]\nnwatch=3\n"
            "ws0=count@HWSfeab@000080\n\n"
            "ws1=80@DLS1000@00ffff\n\n"
            "ws2=text@SWU1000@000090\n\n"
            "[last]\nws0=2\n");
  const WatchFile loaded = Load();
  EXPECT_TRUE(loaded.found);
  ASSERT_EQ(loaded.items.size(), 3u);
  EXPECT_EQ(loaded.items[0].address, 0x1234u) << "the program knows the name, spelt as in C";
  EXPECT_EQ(loaded.items[0].reserved, 0xAB);
  EXPECT_EQ(loaded.items[2].bytes(), 16);
  info.DebugInfoLoaded = false;
  EXPECT_EQ(Load().items[0].address, 0x80u);
  EXPECT_FALSE(Load().items[0].resolved);
  // The same again changes nothing, and an empty list is a list.
  const std::string before = base::ReadFile(path).text;
  ASSERT_TRUE(SaveWatchFile(path, items));
  EXPECT_EQ(base::ReadFile(path).text, before);
  ASSERT_TRUE(SaveWatchFile(path, {}));
  EXPECT_EQ(base::ReadFile(path).text, "[other]\nkey=1\n[WATCH]\nnwatch=0\n[last]\nws0=2\n");
}

TEST_F(WatchFileTest, BrokenFilesGiveSensibleEntries) {
  EXPECT_EQ(Loaded("[watch]\nnwatch=2\nws0=_COUNT@dbu00ff@\n"),
            "_COUNT DBU 0 255 4660\n HWS 0 0 0*\n");
  EXPECT_EQ(Loaded("[watch]\nnwatch=4\nws0=name only\nws1=@\nws2=a@?x\nws3=b@S@@ff12@80@80\n"),
            "name only HWS 0 0 0*\n HWS 0 0 0*\na HWS 0 0 0*\nb SWS 16 18 128*\n");
  EXPECT_EQ(Loaded("[watch]\nnwatch=1\nws0=" + std::string(60, 'n') + "@HBS0000@000080\n"),
            std::string(39, 'n') + " HBS 0 0 128*\n");
  EXPECT_EQ(Loaded("[watch]\nnwatch=1\nws0=a\tb\xFF\x01@HBS0000@fffffff\n"),
            "a?b\xFF? HBS 0 0 16777215*\n");
  EXPECT_EQ(Loaded("[watch]\nnwatch=-1\nws0=a@HBS0000@000080\n"), "");
  EXPECT_EQ(Loaded("[watch]\nnwatch=many\n"), "");
  EXPECT_EQ(Loaded("nwatch=1\n"), "");
  EXPECT_FALSE(Load().found);
  std::string any = "[watch]\nnwatch=40\n";
  for (int i = 0; i < 3000; ++i) any += static_cast<char>(i * 37 % 251);
  Write(any);
  EXPECT_EQ(Load().items.size(), 35u);
}

TEST_F(WatchFileTest, SaysWhatCannotBeReadOrWritten) {
  EXPECT_EQ(Load().problem, "") << "a program without a list is nothing to speak of";
  std::filesystem::create_directory(path);
  EXPECT_NE(Load().problem.find("demo.cfg cannot be read: "), std::string::npos);
  EXPECT_FALSE(SaveWatchFile(path, {}));
  EXPECT_FALSE(SaveWatchFile(folder.path() / "none" / "demo.cfg", {}));
}

TEST_F(WatchFileTest, StandsBesideTheProgram) {
  EXPECT_EQ(WatchFilePath(""), "");
  EXPECT_EQ(WatchFilePath("C:\\work\\demo.s19"), "C:\\work\\demo.cfg");
  EXPECT_EQ(WatchFilePath("/v1.2/demo.release.s19"), "/v1.2/demo.cfg");
}

}  // namespace
}  // namespace brevant::views
