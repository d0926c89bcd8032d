// SPDX-License-Identifier: MIT
// SESSIONS [SEED]: runs so many sessions, of the seeds SEED, SEED + 1 and so on, and prints each
// violation with its seed. A single session is shown in full. The exit status is 1 where there was
// a violation.
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "campaign/session.h"

namespace {

// Longer than any session takes.
constexpr unsigned kMostSeconds = 60;

// For the handler, which may use nothing that allocates.
char going_on[80];

void Died(int signal) {
  const char* const how = signal == SIGALRM ? ": no end\n" : ": crash\n";
  for (const char* text : {static_cast<const char*>(going_on), how}) {
    if (write(STDOUT_FILENO, text, std::strlen(text)) < 0) break;
  }
  _exit(2);
}

}  // namespace

int main(int argc, char** argv) {
  const int sessions = argc > 1 ? std::atoi(argv[1]) : 50;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : 1;
  for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL, SIGALRM}) {
    ::signal(signal, Died);
  }
  std::string folder =
      (std::filesystem::temp_directory_path() / "brevant_campaign_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 2;
  // Where the trace leaves its log.
  std::filesystem::current_path(folder);

  long claims = 0, with_violations = 0;
  long long longest = 0;
  for (int n = 0; n < sessions; ++n) {
    const unsigned number = seed + static_cast<unsigned>(n);
    std::snprintf(going_on, sizeof going_on, "session %u", number);
    alarm(kMostSeconds);
    const auto report = brevant::campaign::RunSession(number, folder, sessions == 1);
    claims += report.claims;
    longest = std::max(longest, report.longest_ms);
    if (!report.violations.empty()) ++with_violations;
    for (const std::string& violation : report.violations) {
      std::printf("session %u, faults%s: %s\n", number, report.faults.c_str(), violation.c_str());
    }
    std::fflush(stdout);
  }
  alarm(0);
  std::filesystem::remove_all(folder);
  std::printf(
      "%d sessions, %ld claims compared, longest act %lld ms, %ld sessions with violations\n",
      sessions, claims, longest, with_violations);
  return with_violations == 0 ? 0 : 1;
}
