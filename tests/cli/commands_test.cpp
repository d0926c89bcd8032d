// SPDX-License-Identifier: MIT
// Every command of the console, right and wrong, on the simulated target: the rows of commands.tsv.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "cli/command_table.h"
#include "cli/options.h"
#include "cli/session.h"

namespace brevant::cli {
namespace {

struct Row {
  int line = 0;
  std::vector<std::string> options;
  std::vector<std::string> commands;
  int status = 0;
  std::string out;
  std::string said;
};

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  for (std::size_t at; (at = text.find(separator, from)) != std::string::npos;) {
    parts.push_back(text.substr(from, at - from));
    from = at + separator.size();
  }
  parts.push_back(text.substr(from));
  return parts;
}

std::string Unescaped(std::string text) {
  for (const auto& [escape, c] : {std::pair{"\\n", "\n"}, {"\\t", "\t"}}) {
    for (std::size_t at; (at = text.find(escape)) != std::string::npos;) text.replace(at, 2, c);
  }
  return text;
}

std::vector<Row> Rows() {
  std::vector<Row> rows;
  std::ifstream file(BREVANT_TEST_DATA "/cli/commands.tsv");
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.starts_with("#")) continue;
    const auto fields = Split(line, "\t");
    EXPECT_EQ(fields.size(), 4u) << "line " << number;
    Row row{number, {}, {}, std::stoi(fields[1]), Unescaped(fields[2]), Unescaped(fields[3])};
    std::string commands = fields[0];
    while (commands.starts_with("--")) {
      // The only option with a value.
      std::size_t end = commands.find(' ');
      if (commands.starts_with("--timeout ")) end = commands.find(' ', end + 1);
      for (const std::string& word : Split(commands.substr(0, end), " ")) {
        row.options.push_back(word);
      }
      commands.erase(0, end + 1);
    }
    row.commands = Split(commands, " ; ");
    rows.push_back(std::move(row));
  }
  return rows;
}

Options OptionsOf(const Row& row) {
  // Quiet: what is said is looked at here and need not be shown as well.
  std::vector<const char*> argv{"brevant-cli", "-q", "-p", "sim", "--pace", "instant"};
  for (const std::string& option : row.options) argv.push_back(option.c_str());
  return ParseOptions(static_cast<int>(argv.size()), argv.data(), "test").options;
}

void ExpectText(const std::string& text, const std::string& expected) {
  if (expected == "~") return;
  if (expected == "-") {
    EXPECT_EQ(text, "");
  } else {
    EXPECT_THAT(text, testing::HasSubstr(expected));
  }
}

// Errors and notices of a command, as they appear on standard error.
std::string SaidBy(const Result& result) {
  std::string said = result.error;
  if (!result.fields.contains("messages")) return said;
  for (const auto& notice : result.fields["messages"]) said += '\n' + notice.get<std::string>();
  return said;
}

void Check(const Row& row) {
  SCOPED_TRACE("commands.tsv:" + std::to_string(row.line));
  std::filesystem::remove("brevant.ini");
  Session session(OptionsOf(row), false);
  ASSERT_TRUE(session.Connect().ok());
  std::string out;
  Result result;
  for (const std::string& command : row.commands) {
    ASSERT_TRUE(result.ok()) << result.error;
    result = session.Execute(command);
    out += result.text;
  }
  EXPECT_EQ(static_cast<int>(result.status), row.status) << result.error;
  EXPECT_EQ(result.quit, row.commands.back() == "quit");
  ExpectText(out, row.out);
  // "stop=word: text": why the target has stopped, for programs and for people.
  if (row.said.starts_with("stop=")) {
    const std::string word = result.fields.value("stop", "");
    EXPECT_EQ("stop=" + word + (result.ok() ? ": " + result.note : ""), row.said);
  } else {
    ExpectText(SaidBy(result), row.said);
  }
}

class Commands : public testing::Test {
 protected:
  void SetUp() override {
    namespace fs = std::filesystem;
    folder_ = fs::temp_directory_path() / ("brevant_commands_" + std::to_string(getpid()));
    fs::remove_all(folder_);
    fs::copy(BREVANT_TEST_DATA "/../examples", folder_);
    fs::current_path(folder_);
    std::ofstream("junk.s19") << "\x7f\x45LF\xff";
    std::ofstream("empty.s19");
    std::ofstream("mixed.s19") << "S1049000115A\ns104900122EA\n";
    std::ofstream("ram.s19") << "S10501004C4C61 S105FFFE0100FC S9030000FC";
    std::ofstream("end.s19") << "S9030000FC";
    std::ofstream("program.txt") << "S9030000FC";
    std::ofstream("names.lst") << "\nsetup 80D6\nloop 8021\n";
    std::ofstream("prepare.mac") << "DMM.B 120 5A\nPC 8021\n";
  }
  void TearDown() override {
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder_);
  }
  std::filesystem::path folder_;
};

TEST_F(Commands, DoWhatTheirRowsSay) {
  for (const Row& row : Rows()) Check(row);
}

TEST_F(Commands, AreAllInTheRowsRightAndWrong) {
  std::set<std::string> right;
  std::set<std::string> wrong;
  for (const Row& row : Rows()) {
    for (const std::string& command : row.commands) {
      const bool fails = &command == &row.commands.back() && row.status != 0;
      (fails ? wrong : right).insert(Split(command, " ").front());
    }
  }
  for (const Command& command : cli::Commands()) {
    EXPECT_TRUE(right.contains(std::string(command.name))) << command.name;
    EXPECT_TRUE(wrong.contains(std::string(command.name))) << command.name;
  }
}

}  // namespace
}  // namespace brevant::cli
