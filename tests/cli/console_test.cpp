// SPDX-License-Identifier: MIT
// The console as its user sees it: the program is run with its arguments, and its output and exit
// status are looked at. The target is the simulated one.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
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
    return EndOf(Start(std::move(arguments)));
  }
  pid_t Start(std::vector<std::string> arguments) {
    for (const char* name : {"stdout", "stderr"}) std::filesystem::remove(folder_ / name);
    const pid_t child = fork();
    if (child == 0) {
      Redirect("stdin", O_RDONLY, STDIN_FILENO);
      Redirect(output_, O_WRONLY | O_CREAT | O_APPEND, STDOUT_FILENO);
      Redirect(merged_ ? output_ : "stderr", O_WRONLY | O_CREAT | O_APPEND, STDERR_FILENO);
      Become(std::move(arguments));
    }
    return child;
  }
  [[noreturn]] void Become(std::vector<std::string> arguments) {
    if (chdir(folder_.c_str()) != 0) _exit(99);
    std::vector<char*> argv;
    std::string program = BREVANT_BIN "/brevant-cli";
    argv.push_back(program.data());
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(98);
  }
  Outcome EndOf(pid_t child) {
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
  const char* output_ = "stdout";
  bool merged_ = false;  // both outputs in one, as on a terminal

 private:
  void Redirect(const char* name, int flags, int descriptor) {
    const int file = open((folder_ / name).c_str(), flags, 0600);
    if (file < 0 || dup2(file, descriptor) < 0) _exit(97);
  }
};

// Whether the text is as shown, where "..." stands for anything.
bool IsAsShown(std::string_view text, std::string_view shown) {
  const std::size_t gap = std::min(shown.find("..."), shown.size());
  if (!text.starts_with(shown.substr(0, gap))) return false;
  if (gap == shown.size()) return text.size() == gap;
  for (text.remove_prefix(gap), shown.remove_prefix(gap + 3);; text.remove_prefix(1)) {
    if (IsAsShown(text, shown)) return true;
    if (text.empty()) return false;
  }
}

// examples/fileio.c: the mean of the last four numbers; without files it runs on and does no harm.
TEST_F(Console, RunsAFileThroughAProgram) {
  const std::vector<std::string> load{"--demo", "--timeout", "1", "toolchain sdcc",
                                      "load " + Example("fileio.s19")};
  std::vector<std::string> filtered = load;
  filtered.insert(filtered.end(), {"fileio in input_slot " + Example("fileio.txt"),
                                   "fileio out output_slot out.txt", "fileio start"});
  const Outcome done = Sim(filtered);
  EXPECT_EQ(done.status, 0) << done.err;
  EXPECT_EQ(Slurp(folder_ / "out.txt"), "25\n51\n75\n100\n300\n299\n299\n299\n100\n");

  std::vector<std::string> alone = load;
  alone.emplace_back("go");
  EXPECT_NE(Sim(alone).err.find("no stop within 1 s; the target was stopped at "),
            std::string::npos);

  // A program that does not come to its slot.
  const Outcome lost = Sim({"--demo", "--timeout", "1", "write 150 20 fe fc 9d", "set PC 150",
                            "fileio in 152 " + Example("fileio.txt"), "fileio start"});
  EXPECT_EQ(lost.status, 5);
  EXPECT_NE(lost.out.find("read 0 numbers, wrote 0\n"), std::string::npos);
  EXPECT_NE(lost.err.find("no stop within 1 s; the target was stopped at 0150"), std::string::npos);
}

// The sessions of the README: what is typed, and what is shown behind it.
TEST_F(Console, PrintsWhatTheReadmeShows) {
  constexpr std::string_view kStart = "    $ scripts/run ", kPrompt = "    brevant> ";
  std::filesystem::create_directory_symlink(Example(""), folder_ / "examples");
  std::istringstream readme(Slurp(BREVANT_TEST_DATA "/../README.md"));
  merged_ = true;
  int sessions = 0;
  std::string typed, shown;
  for (std::string line; std::getline(readme, line);) {
    if (line.starts_with("    brevant-cli -p sim ")) {
      EXPECT_EQ(std::system(("cd " + folder_.string() + " && " BREVANT_BIN "/" + line.substr(4) +
                             " >script.out 2>&1")
                                .c_str()),
                0)
          << Slurp(folder_ / "script.out");
    } else if (line.starts_with(kStart)) {
      ASSERT_EQ(line.substr(kStart.size()), "-p sim --demo");
      typed = "info\n";  // as the prompt begins
      shown.clear();
    } else if (typed.empty() || !line.starts_with("    ")) {
      continue;
    } else if (line.starts_with(kPrompt)) {
      typed += line.substr(kPrompt.size()) + '\n';
    } else if (!line.starts_with("    Connected.")) {
      shown += line.substr(4) + '\n';
    }
    if (!typed.ends_with("\nquit\n")) continue;
    const Outcome outcome = Run({"-p", "sim", "--demo", "-x", "-"}, std::exchange(typed, ""));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(IsAsShown(outcome.out, shown)) << outcome.out << "-- is shown as\n" << shown;
    ++sessions;
  }
  EXPECT_EQ(sessions, 2);
}

TEST_F(Console, DebugsTheDemoProgram) {
  const Outcome outcome =
      Sim({"load " + Example("demo.s19"), "break 0120", "go", "regs", "step 5", "disasm 0120 1"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("PC=0120 SP="));
  EXPECT_THAT(Slurp(folder_ / "brevant.ini"), testing::Not(HasSubstr("port")))
      << "what the command line says is for this run only";
}

TEST_F(Console, BadInputIsNamedAndStopsTheScript) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char* message;
  } rows[] = {
      {{"read 80 1", "delete 0120"}, 1, "delete: there is no breakpoint at 0120"},
      {{"break nonsense"}, 2, "break: \"nonsense\" is no address"},
      {{"load missing.s19"}, 3, "File missing.s19 is not found"},
      {{"-x", "missing.txt"}, 3, "missing.txt"},
      {{"--pace", "slow"}, 2, "pace"},
      {{"-s", "1234"}, 2, "16 hexadecimal digits"},
      {{"-s", "@missing.s19"}, 3, "no security code from missing.s19"},
      {{"--timeout", "nan"}, 2, "\"nan\" is no time-out"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments = row.arguments;
    // Commands come before files.
    if (arguments.front() != "-x") arguments.push_back("read 90 1");
    const Outcome outcome = Sim(arguments);
    EXPECT_EQ(outcome.status, row.status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(row.message));
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("000090")));
    EXPECT_EQ(outcome.out.starts_with("000080"), row.status == 1) << "what came before is done";
  }
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
  Put("script", "\xEF\xBB\xBF# a comment\nwrite 80 aa\n\nread 80 1 # and another\n");
  EXPECT_EQ(Sim({"-x", "script"}).out, "000080 aa\n");
  EXPECT_EQ(Run({"-p", "sim", "-x", "-"}, "read 0 1\nquit\nread 1 1\n").status, 0);
  EXPECT_EQ(Run({"-p", "sim"}, "step x\n").status, 2);
}

TEST_F(Console, ASignalEndsAnyCommandAndStopsTheTarget) {
  const struct {
    std::string command;
    int signal;
    int status;
    const char* message;
  } rows[] = {
      {"go 100", SIGINT, 130, "go: interrupted; the target was stopped at 0100"},
      {"go 102", SIGTERM, 143, "go: interrupted; a break had no effect, so the target was reset"},
      {"step 1000000", SIGINT, 130, "of 1000000 steps, at 8"},
      {"read 0 8000", SIGHUP, 129, "of 8000 bytes"},
  };
  for (const auto& row : rows) {
    Put("stdin", "");
    // A loop, and one that no break reaches.
    const pid_t child =
        Start({"-p", "sim", "--demo", "--pace", row.command[0] == 'g' ? "bus" : "wire", "--timeout",
               "60", "write 100 20 fe 9b 20 fe", "read 100 1", row.command, "read 90 1"});
    while (Slurp(folder_ / "stdout").empty()) usleep(1000);
    usleep(100'000);  // so that the command has begun
    kill(child, row.signal);
    const Outcome outcome = EndOf(child);
    EXPECT_EQ(outcome.status, row.status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(row.message));
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("\n000090")));
  }
}

TEST_F(Console, ThePromptTakesUtf8AnswersAndCtrlC) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    setenv("XDG_STATE_HOME", folder_.c_str(), 1);
    setenv("TERM", "dumb", 1);
    Become({"-p", "sim", "--demo"});
  }
  const struct {
    const char* typed;
    const char* awaited;
  } rows[] = {
      {"", "brevant> "},
      {"lookup \xC3\xB6l\r", "there is no symbol \xC3\xB6l"},
      {"", "brevant> "},
      {"erase 9000 9001\r", "[y/N] "},
      {"n\r", "erase: nothing was done"},
      {"", "brevant> "},
      {"erase 9000 9001\r", "[y/N] "},
      {"y\r", "erased 9000 to 907f, all blank"},
      {"", "brevant> "},
      {"run\r", "run\r\nbrevant> "},
      {"\x03", "user's break at 80"},
      {"", "brevant> "},
      {"read 8", "read 8"},
      {"\x03", "brevant> "},
      {"regs\r", "PC=80"},
      {"", "brevant> "},
      {"\x03", "Ctrl-C once more"},
      {"", "brevant> "},
  };
  std::string shown;
  for (const auto& row : rows) {
    ASSERT_GE(write(terminal, row.typed, std::strlen(row.typed)), 0);
    std::array<char, 256> portion{};
    std::size_t at = 0;
    for (pollfd input{terminal, POLLIN, 0}; (at = shown.find(row.awaited)) == std::string::npos;) {
      ASSERT_EQ(poll(&input, 1, 20000), 1) << row.awaited << " is not in " << shown;
      const auto count = read(terminal, portion.data(), portion.size());
      ASSERT_GT(count, 0) << row.awaited << " is not in " << shown;
      shown.append(portion.data(), static_cast<std::size_t>(count));
    }
    shown.erase(0, at + std::strlen(row.awaited));
  }
  ASSERT_EQ(write(terminal, "\x03", 1), 1);
  EXPECT_EQ(EndOf(child).status, 130);
  close(terminal);
}

TEST_F(Console, AResultThatNobodyReceivesIsAFailure) {
  output_ = "/dev/full";
  const Outcome outcome = Sim({"read 80"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_THAT(outcome.err, HasSubstr("cannot write the results: No space left on device"));
}

TEST_F(Console, ARecordedSessionPlaysBackWithTheSameOutputs) {
  const std::vector<std::string> commands{
      "regs", "read 8000 20", "step 3", "break 80C8", "write 100 1 2 3", "run",
      "wait", "stop",         "reset",  "regs",       "read FFF0",       "regs"};
  int lost = 0;
  for (const char* fault : {"", "flip-reply@60:3", "drop-echo@150", "lose@230", "cut@300"}) {
    SCOPED_TRACE(fault);
    std::vector<std::string> recorded{"-p", "sim", "--demo", "--timeout", "1", "--record", "a.rec"};
    if (*fault != '\0') recorded.insert(recorded.end(), {"--fault", fault});
    std::vector<std::string> replayed{"--timeout", "1", "replay", "a.rec"};
    for (auto* line : {&recorded, &replayed}) {
      line->insert(line->end(), commands.begin(), commands.end());
    }
    const Outcome then = Run(recorded);
    const Outcome now = Run(replayed);
    EXPECT_EQ(now.out, then.out) << now.err;
    EXPECT_EQ(now.err, then.err);
    EXPECT_EQ(now.status, then.status);
    EXPECT_TRUE(then.status == 0 || *fault != '\0') << then.err;
    if (then.status != 0) ++lost;
  }
  EXPECT_GE(lost, 2);
  EXPECT_THAT(Run({"replay", "a.rec", "read 100"}).err, HasSubstr("The recording expects "));
  EXPECT_EQ(Run({"-p", "sim", "replay", "a.rec"}).status, 2);
}

TEST_F(Console, AReportHasTheSessionAndNotTheCode) {
  const std::string code = "FFFFFFFFFFFFFFFF";
  ASSERT_EQ(Run({"-p", "sim", "-s", code, "regs", "report hidden.txt"}).status, 0);
  const std::string hidden = Slurp(folder_ / "hidden.txt");
  EXPECT_THAT(hidden, HasSubstr("security passed: yes"));
  EXPECT_THAT(hidden, HasSubstr(" > --\n"));
  EXPECT_EQ(Run({"replay", "hidden.txt", "regs"}).status, 0);
  ASSERT_EQ(Run({"-p", "sim", "-s", code, "report shown.txt --with-security"}).status, 0);
  // Beside the code, addresses have such bytes.
  const auto sent = [](const std::string& text) {
    int count = 0;
    for (std::size_t at = 0; (at = text.find(" > ff\n", at)) != std::string::npos; ++at) ++count;
    return count;
  };
  EXPECT_GE(sent(Slurp(folder_ / "shown.txt")), sent(hidden) + 8);
  EXPECT_EQ(Run({"-p", "sim", "report no/folder"}).status, 3);
}

TEST_F(Console, ARecordingThatCannotBeWrittenIsSaidOnce) {
  const Outcome outcome = Run({"-q", "-p", "sim", "--record", "/dev/full", "regs", "regs"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err,
            "/dev/full cannot be written any more, so the recording ends here: No space left on "
            "device.\n");
  EXPECT_THAT(Run({"-p", "sim", "--record", "no/folder", "regs"}).err,
              StartsWith("no/folder cannot be written, so nothing is recorded: "));
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
  const Outcome of_image = Run({"-p", "sim", "--demo", "-s", "@" + Example("blink.s19"), "info"});
  EXPECT_THAT(of_image.out, HasSubstr("security passed"));
  const Outcome verify = Run({"-p", "sim", "-s", "0011223344556677",
                              "verify " BREVANT_TEST_DATA "/programs/counters.s19"});
  EXPECT_EQ(verify.status, 6);
  EXPECT_THAT(verify.err, HasSubstr("flash cannot be read"));
}

}  // namespace
