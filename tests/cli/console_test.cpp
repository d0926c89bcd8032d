// SPDX-License-Identifier: MIT
// The console as its user sees it: the program is run with its arguments, and its output and exit
// status are looked at. The target is the simulated one.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

std::string Slurp(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

class Console : public testing::Test {
 protected:
  void SetUp() override {
    folder_ =
        std::filesystem::temp_directory_path() / ("brevant_console_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  // Runs brevant-cli in a folder of its own.
  Outcome Run(std::vector<std::string> arguments, const std::string& input = "") {
    Put("stdin", input);
    const pid_t child = fork();
    if (child == 0) {
      if (chdir(folder_.c_str()) != 0) _exit(99);
      Redirect("stdin", O_RDONLY, STDIN_FILENO);
      Redirect("stdout", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
      Redirect("stderr", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
      std::vector<char*> argv;
      std::string program = BREVANT_BIN "/brevant-cli";
      argv.push_back(program.data());
      for (std::string& argument : arguments) argv.push_back(argument.data());
      argv.push_back(nullptr);
      execv(program.c_str(), argv.data());
      _exit(98);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(folder_ / "stdout"),
            Slurp(folder_ / "stderr")};
  }
  // The same on a simulated target.
  Outcome Sim(std::vector<std::string> commands) {
    commands.insert(commands.begin(), {"-p", "sim"});
    return Run(std::move(commands));
  }
  void Put(const std::string& name, const std::string& text) {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }
  std::string Example(const std::string& name) {
    return std::string(BREVANT_TEST_DATA) + "/../examples/" + name;
  }

  std::filesystem::path folder_;

 private:
  void Redirect(const char* name, int flags, int descriptor) {
    const int file = open((folder_ / name).c_str(), flags, 0600);
    if (file < 0 || dup2(file, descriptor) < 0) _exit(97);
  }
};

TEST_F(Console, DebugsTheDemoProgram) {
  const Outcome outcome =
      Sim({"load " + Example("demo.s19"), "break 0120", "go", "regs", "step 5", "disasm 0120 1"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("entry 0100\n"));
  EXPECT_THAT(outcome.out, HasSubstr("PC=0120 SP="));
  EXPECT_THAT(outcome.out, HasSubstr("\n000120 "));
  EXPECT_THAT(Slurp(folder_ / "brevant.ini"), testing::Not(HasSubstr("port")))
      << "what the command line says is for this run only";
}

TEST_F(Console, ReadsWhatItWrote) {
  const Outcome outcome = Sim({"write 80 12 34 ff", "read 80 3", "fill 90 9f abcd", "read 90",
                               "move 90 93 b0", "read b0 4", "set HX 1234", "set A 56", "set PC 90",
                               "set SP 00e0", "set CCR 00", "regs"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "000080 12 34 ff\n"
            "000090 ab cd ab cd ab cd ab cd ab cd ab cd ab cd ab cd\n"
            "0000b0 ab cd ab cd\n"
            "PC=0090 SP=00e0 HX=1234 A=56 CCR=60 V11H=0110 INZC=0000\n");
}

TEST_F(Console, BadInputIsNamedAndStopsTheScript) {
  Put("junk.s19", std::string("\x7f\x45\x4c\x46\x00\xff", 6));
  Put("empty.s19", "");
  Put("program.txt", "S9030000FC");
  const struct {
    std::vector<std::string> commands;
    int status;
    const char* message;
  } rows[] = {
      {{"break nonsense"}, 2, "nonsense"},
      {{"break 12345"}, 2, "beyond FFFF"},
      {{"read 80 -1"}, 2, "count"},
      {{"read ffff 2"}, 2, "end of memory"},
      {{"write 80 100"}, 2, "beyond FF"},
      {{"step -5"}, 2, "count"},
      {{"step 99999999999"}, 2, "count"},
      {{"frobnicate"}, 2, "no command"},
      {{"read"}, 2, "usage: read ADDR [COUNT]"},
      {{"load missing.s19"}, 3, "File missing.s19 is not found"},
      {{"load program.txt"}, 3, "Use only S19 or HEX format"},
      {{"load ."}, 3, ""},
      {{"verify junk.s19"}, 3, "no S-record"},
      {{"verify empty.s19"}, 3, "no S-record"},
      {{"save 80 8f out.txt"}, 3, ".s19"},
      {{"delete 0120"}, 1, "no breakpoint"},
      {{"break 100", "break 102"}, 1, "You can setup only 1 breakpoints"},
      {{"mode software", "break 8000"}, 1, "mode hardware"},
      {{"-x", "missing.txt"}, 3, "missing.txt"},
      {{"--pace", "slow"}, 2, "pace"},
      {{"-s", "1234"}, 2, "16 hexadecimal digits"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> commands = row.commands;
    commands.push_back("write 90 99");
    const Outcome outcome = Sim(commands);
    EXPECT_EQ(outcome.status, row.status) << row.commands.back() << "\n" << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(row.message)) << row.commands.back();
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out.txt"));
}

TEST_F(Console, StopsAtTheFirstFailure) {
  const Outcome outcome = Sim({"read 80 1", "delete 0120", "read 90 1"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.out, StartsWith("000080 "));
  EXPECT_THAT(outcome.out, testing::Not(HasSubstr("000090")));
}

TEST_F(Console, AnEndlessProgramIsStoppedWhenTheTimeIsUp) {
  // BRA to itself, with the IRQ vector of the demo flash, which answers the break signal.
  const Outcome stopped =
      Run({"-p", "sim", "--demo", "--timeout", "1", "write 100 20 fe", "go 100"});
  EXPECT_EQ(stopped.status, 5);
  EXPECT_THAT(stopped.err, HasSubstr("the target was stopped at 0100"));
  // A program that masks interrupts cannot be stopped, and the console says so.
  const Outcome lost = Sim({"write 100 9b 20 fe", "run 100", "stop"});
  EXPECT_EQ(lost.status, 1);
  EXPECT_THAT(lost.err, HasSubstr("still running"));
  EXPECT_THAT(lost.err, HasSubstr("FE27"));
}

TEST_F(Console, SavesAndVerifies) {
  const Outcome outcome = Sim({"write 80 01 02 03 04", "save 80 83 out.s19", "verify out.s19",
                               "write 82 ff", "verify out.s19"});
  EXPECT_EQ(outcome.status, 7);
  EXPECT_THAT(outcome.out, HasSubstr("saved 4 bytes\nverified 4 bytes\n"));
  EXPECT_THAT(outcome.out, HasSubstr("0082: expected 03, found ff\n"));
  EXPECT_THAT(outcome.err, HasSubstr("1 of 4 bytes differ"));
}

TEST_F(Console, AssemblesIntoRamAndSaysWhatFlashDidNotTake) {
  Outcome outcome = Sim({"asm 100 LDA #12 # twelve", "asm 102 MOV #5,80", "# nothing"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("000100 a6 12 \tLDA\t#12\n000102 6e 05 80 \tMOV\t#5,80\n"));
  outcome = Sim({"write 8000 12", "asm 8000 NOP"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("8000 holds ff and not 12"));
  EXPECT_THAT(outcome.err, HasSubstr("did not take the instruction"));
}

TEST_F(Console, PrintsOneObjectACommandAsJson) {
  const Outcome outcome = Run({"--json", "-p", "sim", "regs", "read 80 2", "delete 5"});
  EXPECT_EQ(outcome.status, 1);
  std::istringstream lines(outcome.out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_THAT(line, StartsWith(R"({"ok":true,"command":"regs","PC":")"));
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_THAT(line, HasSubstr(R"("bytes":")"));
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_THAT(line, StartsWith(R"({"ok":false,"command":"delete")"));
  EXPECT_FALSE(std::getline(lines, line));
}

TEST_F(Console, RunsCommandsFromFilesAndStandardInput) {
  Put("script", "# a comment\nwrite 80 aa\n\nread 80 1 # and another\n");
  EXPECT_EQ(Sim({"-x", "script"}).out, "000080 aa\n");
  EXPECT_EQ(Run({"-p", "sim", "-x", "-"}, "read 0 1\nquit\nread 1 1\n").status, 0);
  EXPECT_EQ(Run({"-p", "sim"}, "step x\n").status, 2);
}

TEST_F(Console, APortThatIsNotThereIsSaidWithWhatToDo) {
  const Outcome outcome = Run({"-p", "/dev/nothing_here", "regs"});
  EXPECT_EQ(outcome.status, 4);
  EXPECT_THAT(outcome.err, HasSubstr("is not available. Please try another port"));
  EXPECT_THAT(outcome.err, HasSubstr("/dev/nothing_here"));
}

TEST_F(Console, AWrongSecurityCodeLeavesRamAndIsTold) {
  const Outcome outcome =
      Run({"-p", "sim", "-s", "0011223344556677", "info", "write 80 12", "read 80 1"});
  EXPECT_EQ(outcome.status, 6);
  EXPECT_THAT(outcome.out, HasSubstr("security not passed"));
  EXPECT_THAT(outcome.out, HasSubstr("000080 12"));
}

}  // namespace
