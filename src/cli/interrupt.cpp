// SPDX-License-Identifier: MIT
#include "cli/interrupt.h"

#include <csignal>
#include <initializer_list>

namespace brevant::cli {
namespace {

// A signal handler can reach nothing but flags of its own.
volatile std::sig_atomic_t interrupts = 0;
volatile std::sig_atomic_t leaving = 0;  // the signal that ends the program

constexpr int kMostInterrupts = 3;
constexpr int kSignalStatus = 128;

extern "C" void NoteSignal(int signal) {
  const int count = interrupts + 1;
  interrupts = count;
  if (signal != SIGINT || count > 1) leaving = signal;
  if (count < kMostInterrupts || signal != SIGINT) return;
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

void WatchForInterrupt() {
  struct sigaction action {};
  action.sa_handler = NoteSignal;
  sigemptyset(&action.sa_mask);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

bool Interrupted() {
  return interrupts != 0;
}

bool Leaving() {
  return leaving != 0;
}

void ClearInterrupt() {
  if (!Leaving()) interrupts = 0;
}

int InterruptStatus() {
  return kSignalStatus + (Leaving() ? leaving : SIGINT);
}

}  // namespace brevant::cli
