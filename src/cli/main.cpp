// SPDX-License-Identifier: MIT
#include <cstdio>

int main() {
  std::puts("brevant-cli " BREVANT_VERSION);
  return 0;
}
