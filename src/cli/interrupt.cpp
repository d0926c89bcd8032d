// SPDX-License-Identifier: MIT
#include "cli/interrupt.h"

#include <csignal>

namespace brevant::cli {
namespace {

// A signal handler can reach nothing but a flag of its own.
volatile std::sig_atomic_t interrupted = 0;

extern "C" void NoteInterrupt(int signal) {
  if (interrupted != 0) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
  }
  interrupted = 1;
  std::signal(signal, NoteInterrupt);
}

}  // namespace

void WatchForInterrupt() {
  std::signal(SIGINT, NoteInterrupt);
}

bool Interrupted() {
  return interrupted != 0;
}

void ClearInterrupt() {
  interrupted = 0;
}

}  // namespace brevant::cli
