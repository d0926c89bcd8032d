// SPDX-License-Identifier: MIT
#include "scenario/target_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <thread>

extern char** environ;

namespace brevant::scenario {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

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

TerminalClient::TerminalClient(const std::string& device)
    : descriptor_(open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}

TerminalClient::~TerminalClient() {
  if (descriptor_ >= 0) close(descriptor_);
}

void TerminalClient::SetRts(bool high) const {
  termios settings{};
  tcgetattr(descriptor_, &settings);
  settings.c_cflag &= ~CRTSCTS;
  if (high) settings.c_cflag |= CRTSCTS;
  tcsetattr(descriptor_, TCSANOW, &settings);
}

void TerminalClient::SetBreak(bool held) const {
  termios settings{};
  tcgetattr(descriptor_, &settings);
  cfsetospeed(&settings, held ? B75 : B9600);
  tcsetattr(descriptor_, TCSANOW, &settings);
}

void TerminalClient::Send(const ByteList& bytes) const {
  if (write(descriptor_, bytes.data(), bytes.size()) < 0) perror("write");
}

ByteList TerminalClient::Read(std::size_t count, milliseconds timeout) const {
  ByteList bytes;
  const auto deadline = steady_clock::now() + timeout;
  while (bytes.size() < count) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
    pollfd watched{descriptor_, POLLIN, 0};
    if (left <= 0 || poll(&watched, 1, static_cast<int>(left)) <= 0) break;
    std::uint8_t byte = 0;
    if (read(descriptor_, &byte, 1) == 1) bytes.push_back(byte);
  }
  return bytes;
}

ByteList TerminalClient::Exchange(const ByteList& bytes, std::size_t replies) const {
  ByteList all;
  for (const std::uint8_t byte : bytes) {
    Send({byte});
    for (const std::uint8_t copy : Read(2, milliseconds(120))) all.push_back(copy);
  }
  for (const std::uint8_t data : Read(replies, milliseconds(120))) all.push_back(data);
  return all;
}

ByteList TerminalClient::PowerUp(const ByteList& code) const {
  SetRts(true);
  std::this_thread::sleep_for(milliseconds(50));
  SetRts(false);
  std::this_thread::sleep_for(milliseconds(50));
  ByteList all = Exchange(code, 1);
  all.erase(all.begin(),
            all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), 2 * code.size())));
  return all;
}

}  // namespace brevant::scenario
