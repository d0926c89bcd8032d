// SPDX-License-Identifier: MIT
#include "base/settings_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/files.h"
#include "base/temporary_folder.h"

namespace brevant::base {
namespace {

class SettingsFileTest : public ::testing::Test {
 protected:
  void Put(std::string_view text) { ASSERT_EQ(ReplaceFile(settings_.path(), text), ""); }
  std::string Text() const { return ReadFile(settings_.path()).text; }
  std::string Read(std::string_view key) const {
    return settings_.ReadString("config", key, "(default)", 100);
  }

  TemporaryFolder folder_;
  SettingsFile settings_{folder_.path() / "brevant.ini"};
};

TEST_F(SettingsFileTest, ReadsAllDefaultsWithoutAFileAndCreatesItOnTheFirstWrite) {
  for (const SettingsKey& row : AllSettingsKeys()) {
    EXPECT_EQ(settings_.String(row, row.first),
              std::string(row.default_text.substr(0, row.buffer_size ? 999 : 0)))
        << row.key;
    EXPECT_FALSE(settings_.Has(row.section, NumberedKey(row, row.first)));
  }
  EXPECT_EQ(settings_.Integer(keys::kNStepCount), 10);
  EXPECT_TRUE(settings_.Store(keys::kRecentSecurity, "0011223344556677", 3));
  EXPECT_EQ(Text(), "[config]\nSecurity3=0011223344556677\n");
  EXPECT_EQ(settings_.String(keys::kRecentSecurity, 3), "0011223344556677");
  EXPECT_EQ(settings_.String(keys::kRecentSecurity, 2), "c3c3c3c3c3c3c3c3");
}

TEST_F(SettingsFileTest, ReadsAsPrivateProfilesDo) {
  Put("stray=1\n"
      "[ Config ]\r\n"
      "  Port \t=  COM2 \t\r\n"
      "port=COM3\n"
      ";font=7\n"
      "quoted=\" two  blanks \"\n"
      "single='x'\nhalf=\"x\nempty=\nequals=a=b;c\n"
      "[other]\nlate=1\n[CONFIG]\nlate=2\nport=COM4");
  EXPECT_EQ(Read("PORT"), "COM2") << "the first of two, whatever the case";
  EXPECT_EQ(Read("quoted"), " two  blanks ");
  EXPECT_EQ(Read("single"), "x");
  EXPECT_EQ(Read("half"), "\"x");
  EXPECT_EQ(Read("empty"), "");
  EXPECT_TRUE(settings_.Has("config", "empty"));
  EXPECT_EQ(Read("equals"), "a=b;c");
  EXPECT_EQ(Read("stray"), "(default)");
  EXPECT_EQ(Read("font"), "(default)");
  EXPECT_EQ(Read("late"), "(default)") << "only the first section of a name counts";
  EXPECT_EQ(settings_.ReadString("config", "port", "", 3), "CO") << "cut to the reader's buffer";
}

TEST_F(SettingsFileTest, ReadsIntegersFromLeadingDigits) {
  Put("[config]\na=12px\nb=x1\nc=-3\nd=\ne=99999999999\n");
  const std::pair<const char*, int> rows[] = {{"a", 12}, {"b", 0},          {"c", 0},
                                              {"d", 0},  {"e", 2147483647}, {"absent", 7}};
  for (const auto& [key, value] : rows) EXPECT_EQ(settings_.ReadInteger("config", key, 7), value);
}

TEST_F(SettingsFileTest, KeepsEverythingElseWhenItWrites) {
  Put("\xEF\xBB\xBF[config]\r\n; mine\r\nPort = COM1 \r\nnonsense\r\n\r\n[next]\r\na=1");
  EXPECT_TRUE(settings_.WriteString("CONFIG", "port", "COM2"));
  EXPECT_TRUE(settings_.WriteInteger("config", "Font", 24));
  EXPECT_TRUE(settings_.WriteInteger("next", "b", -2));
  EXPECT_TRUE(settings_.WriteString("path", "loadfile0", "/x"));
  EXPECT_EQ(Text(),
            "\xEF\xBB\xBF[config]\r\n; mine\r\nPort = COM2\r\nFont=24\r\nnonsense\r\n\r\n"
            "[next]\r\na=1\r\nb=-2\r\n\r\n[path]\r\nloadfile0=/x");
}

TEST_F(SettingsFileTest, GivesBackWhatWasWritten) {
  for (const char* text : {"", " outer blanks ", "\"quoted\"", "'", "\"", "a\"b", ";x", "=", "[x]",
                           "\ttab", "/home/user/\xC3\xA9t\xC3\xA9.s19"}) {
    EXPECT_TRUE(settings_.WriteString("config", "key", text));
    EXPECT_EQ(Read("key"), text);
  }
}

TEST_F(SettingsFileTest, RefusesWhatItCannotKeep) {
  Put("[config]\nport=COM2\n");
  EXPECT_FALSE(settings_.WriteString("config", "port", "COM3\n[window]"));
  EXPECT_FALSE(settings_.WriteString("config", "port", std::string_view("a\0b", 3)));
  EXPECT_EQ(Text(), "[config]\nport=COM2\n");
  SettingsFile in_no_folder(folder_.path() / "none/brevant.ini");
  EXPECT_FALSE(in_no_folder.WriteInteger("config", "Font", 1));
  SettingsFile a_folder(folder_.path());
  EXPECT_FALSE(a_folder.WriteInteger("config", "Font", 1));
}

// Whatever stands in the file, a write is read back and no line of the rest is lost.
TEST_F(SettingsFileTest, SurvivesJunk) {
  std::mt19937 random(7);
  const std::string alphabet("[]=;\"'\n\n\r \tconfigport\0\x1A\xFF", 24);
  for (int round = 0; round < 300; ++round) {
    std::string junk;
    for (auto i = random() % 60; i > 0; --i) junk += alphabet[random() % alphabet.size()];
    if (round % 3 == 0) junk += "\n[config]\n" + junk;
    Put(junk);
    ASSERT_TRUE(settings_.WriteString("config", "port", "COM9"));
    ASSERT_EQ(Read("port"), "COM9");
    const std::string text = Text();
    ASSERT_GE(std::count(text.begin(), text.end(), 0x0A),
              std::count(junk.begin(), junk.end(), 0x0A));
    ASSERT_TRUE(settings_.WriteString("config", "port", "COM9"));
    ASSERT_EQ(Text(), text);
  }
}

// What a command line says holds for the run and leaves the file alone.
TEST_F(SettingsFileTest, OverridesShadowTheFileUntilTheKeyIsStored) {
  Put("[config]\nport=COM2\n");
  settings_.Override(keys::kPort, "COM1");
  settings_.Override(keys::kPortDevice, "/dev/ttyUSB0", 1);
  EXPECT_EQ(settings_.String(keys::kPort), "COM1");
  EXPECT_EQ(settings_.ReadString("Ports", "com1", "", 99), "/dev/ttyUSB0");
  EXPECT_TRUE(settings_.Has("ports", "COM1"));
  EXPECT_EQ(Text(), "[config]\nport=COM2\n");
  ASSERT_TRUE(settings_.Store(keys::kPort, "COM1"));
  EXPECT_TRUE(settings_.Overridden(keys::kPort)) << "it was only shown";
  EXPECT_EQ(Text(), "[config]\nport=COM2\n");
  ASSERT_TRUE(settings_.Store(keys::kPort, "COM4"));
  EXPECT_EQ(settings_.String(keys::kPort), "COM4");
  EXPECT_EQ(Text(), "[config]\nport=COM4\n");
}

TEST_F(SettingsFileTest, AChangeIsStoredWholeOrNotAtAll) {
  Put("[config]\nport=COM2\n");
  settings_.Override(keys::kDevice, "1");
  SettingsFile::Change change;
  change.Store(keys::kPort, "COM3");
  change.Store(keys::kRecentFile, "/a.s19", 1);
  change.Store(keys::kDevice, 1L);
  EXPECT_FALSE(settings_.Holds(change));
  EXPECT_TRUE(settings_.Apply(change));
  EXPECT_TRUE(settings_.Holds(change));
  const std::string stored = "[config]\nport=COM3\n\n[path]\nloadfile1=/a.s19\n";
  EXPECT_EQ(Text(), stored);

  change.Store(keys::kPort, "COM4");
  change.Store(keys::kDevice, 0L);
  change.Store(keys::kProgramFile, "two\nlines");
  EXPECT_FALSE(settings_.Apply(change));
  EXPECT_EQ(Text(), stored);
  EXPECT_EQ(settings_.Integer(keys::kDevice), 1);

  SettingsFile nowhere("/nonexistent/brevant.ini");
  nowhere.Override(keys::kPort, "COM3");
  EXPECT_FALSE(nowhere.Store(keys::kPort, "COM4"));
  EXPECT_EQ(nowhere.String(keys::kPort), "COM3") << "what could not be stored changes nothing";
}

}  // namespace
}  // namespace brevant::base
