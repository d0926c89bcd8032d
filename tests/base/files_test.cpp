// SPDX-License-Identifier: MIT
#include "base/files.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "base/temporary_folder.h"

namespace brevant::base {
namespace {

namespace fs = std::filesystem;

TEST(Files, ReplacesAndReadsBackAnyBytes) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / "a.bin";
  const std::string bytes("one\0two\r\n\xFF", 10);
  EXPECT_EQ(ReplaceFile(file, bytes), "");
  EXPECT_EQ(ReadFile(file).text, bytes);
  EXPECT_EQ(ReplaceFile(file, ""), "");
  EXPECT_TRUE(ReadFile(file).ok());
  EXPECT_EQ(ReadFile(file).text, "");
  EXPECT_EQ(folder.FileCount(), 1);
}

TEST(Files, SaysWhyAFileCannotBeReadOrReplaced) {
  const TemporaryFolder folder;
  EXPECT_EQ(ReadFile(folder.path()).error, "Is a directory");
  EXPECT_EQ(ReadFile(folder.path() / "none").error, "No such file or directory");
  EXPECT_EQ(ReplaceFile(folder.path(), "x"), "Is a directory");
  EXPECT_EQ(ReplaceFile(folder.path() / "none/a", "x"), "No such file or directory");
  fs::create_symlink("loop", folder.path() / "loop");
  EXPECT_NE(ReplaceFile(folder.path() / "loop", "x"), "");
  EXPECT_EQ(folder.FileCount(), 1) << "no temporary file stays behind";
  EXPECT_EQ(ReplaceFile("/dev/full", "x"), "No space left on device");
}

TEST(Files, KeepsPermissionsAndSymbolicLinks) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path() / "real");
  const fs::path file = folder.path() / "real/a";
  const fs::path link = folder.path() / "link";
  fs::create_symlink("real/a", link);
  EXPECT_EQ(ReplaceFile(link, "through a link to nothing"), "");
  EXPECT_EQ(ReadFile(file).text, "through a link to nothing");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  EXPECT_EQ(ReplaceFile(link, "again"), "");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(ReadFile(file).text, "again");
  EXPECT_EQ(fs::status(file).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
}

TEST(Files, TellsTheModificationTime) {
  const TemporaryFolder folder;
  EXPECT_FALSE(ModificationTime(folder.path() / "none"));
  ASSERT_EQ(ReplaceFile(folder.path() / "a", "x"), "");
  EXPECT_GT(ModificationTime(folder.path() / "a").value_or(0), 1'600'000'000);
}

// One letter 200,000 times over: any mixture of two writes shows.
std::string Letters(int n) {
  return std::string(200'000, static_cast<char>('a' + n % 26));
}

bool IsOneWholeWrite(const std::string& text) {
  return text.size() == 200'000 && text.find_first_not_of(text[0]) == std::string::npos;
}

// Another process that replaces the file as long as it lives.
class Writer {
 public:
  explicit Writer(const fs::path& file) : child_(::fork()) {
    for (int n = 0; child_ == 0; ++n) {
      if (!ReplaceFile(file, Letters(n)).empty()) ::_exit(1);
    }
  }
  // False when it had failed before.
  bool Kill() const {
    ::kill(child_, SIGKILL);
    int status = 0;
    return ::waitpid(child_, &status, 0) == child_ && WIFSIGNALED(status);
  }

 private:
  pid_t child_;
};

TEST(Files, ShowAWholeContentWheneverTheWriterIsKilled) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / "a";
  ASSERT_EQ(ReplaceFile(file, Letters(0)), "");
  std::mt19937 random(1);
  int killed_between = 0;
  for (int round = 0; round < 60; ++round) {
    const Writer writer(file);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
    const std::string during = ReadFile(file).text;
    ASSERT_TRUE(writer.Kill());
    ASSERT_TRUE(IsOneWholeWrite(during));
    ASSERT_TRUE(IsOneWholeWrite(ReadFile(file).text)) << "after the kill";
    ASSERT_LE(folder.FileCount(), 2) << "at most one temporary file";
    killed_between += folder.FileCount() == 2 ? 1 : 0;
  }
  EXPECT_GT(killed_between, 0) << "no kill has hit a write: this test has tested nothing";
  EXPECT_EQ(ReplaceFile(file, "last"), "");
  EXPECT_EQ(folder.FileCount(), 1) << "the leftover is cleaned up";
}

TEST(Files, TwoWritersNeverMixTheirContents) {
  const TemporaryFolder folder;
  const fs::path file = folder.path() / "a";
  ASSERT_EQ(ReplaceFile(file, Letters(0)), "");
  const Writer other(file);
  for (int n = 0; n < 40; ++n) {
    EXPECT_EQ(ReplaceFile(file, Letters(n)), "");
    EXPECT_TRUE(IsOneWholeWrite(ReadFile(file).text));
  }
  EXPECT_TRUE(other.Kill());
}

}  // namespace
}  // namespace brevant::base
