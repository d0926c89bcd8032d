// SPDX-License-Identifier: MIT
#include "scenario/target_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>

extern char** environ;

namespace brevant::scenario {

using std::chrono::milliseconds;

TargetProcess::TargetProcess(const std::vector<std::string>& options) {
  std::string program = std::string(BREVANT_BIN) + "/brevant-target";
  std::vector<std::string> words = options;
  std::vector<char*> arguments{program.data()};
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  std::array<int, 2> output{};
  if (pipe2(output.data(), O_CLOEXEC) != 0) return;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn(&pid_, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(output[1]);
  for (char c = 0; read(output[0], &c, 1) == 1 && c != '\n';) device_ += c;
  close(output[0]);
}

TargetProcess::~TargetProcess() {
  End(SIGKILL);
}

std::optional<int> TargetProcess::End(int signal) {
  if (pid_ <= 0) return std::nullopt;
  if (signal != 0) kill(pid_, signal);
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  if (!WIFEXITED(status)) return std::nullopt;
  return WEXITSTATUS(status);
}

milliseconds TargetProcess::ProcessorTime() const {
  std::ifstream file("/proc/" + std::to_string(pid_) + "/stat");
  std::string skipped;
  for (int i = 0; i < 13; ++i) file >> skipped;
  long user = 0;
  long system = 0;
  file >> user >> system;
  return milliseconds((user + system) * 1000 / sysconf(_SC_CLK_TCK));
}

}  // namespace brevant::scenario
