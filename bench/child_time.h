// SPDX-License-Identifier: MIT
// What other programs take, to be set beside what we take for the same work.
#pragma once

#include <sys/resource.h>

#include <cstdlib>
#include <string>

namespace brevant {

// Processor seconds of all children that have ended.
inline double ChildSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Processor seconds of a shell command; less than 0 when it fails.
inline double SecondsOf(const std::string& command) {
  const double before = ChildSeconds();
  return std::system(command.c_str()) == 0 ? ChildSeconds() - before : -1;
}

}  // namespace brevant
