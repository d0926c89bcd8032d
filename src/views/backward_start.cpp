// SPDX-License-Identifier: MIT
#include "views/backward_start.h"

#include <cstddef>

namespace brevant::views {
namespace {

// The longest chain of bytes that is looked at for one instruction.
constexpr int kReach = 6;

class Lengths {
 public:
  explicit Lengths(std::span<const int> lengths) : lengths_(lengths) {}
  int operator[](int j) const { return j < size() ? lengths_[static_cast<std::size_t>(j)] : 0; }
  int size() const { return static_cast<int>(lengths_.size()); }

 private:
  std::span<const int> lengths_;
};

// The instruction that begins j + 1 bytes before the address ends right there.
bool EndsAtAddress(const Lengths& length, int j) {
  return length[j] == j + 1;
}

// Some instruction ends i bytes before the address, and none ends i + 1 bytes before it.
bool EndsAt(const Lengths& length, int i) {
  bool found = false;
  for (int c = 1; c <= kReach; ++c) {
    if (length[i + c] == c) return false;
    if (length[i + c - 1] == c) found = true;
  }
  return found;
}

// Whether a longer instruction that begins before the one-byte instruction at k may cover it.
bool MayBeCovered(const Lengths& length, int k) {
  for (int i = 0; i < kReach; ++i) {
    if (length[k + i] > i + 1 && !EndsAt(length, i)) return true;
  }
  return false;
}

}  // namespace

int ChooseBackwardStart(std::span<const int> lengths) {
  const Lengths length(lengths);
  int candidates = 0;
  int largest = 0;
  for (int j = 0; j < kReach; ++j) {
    if (!EndsAtAddress(length, j)) continue;
    ++candidates;
    largest = j;
  }
  if (candidates == 1) return largest;
  for (int k = kReach; k < kBackwardBytes; ++k) {
    if (length[k] == 1 && !MayBeCovered(length, k)) return k;
  }
  return largest;
}

int BackwardStart(std::span<const int> lengths) {
  const Lengths length(lengths);
  int start = ChooseBackwardStart(lengths);
  while (start - length[start] >= 0) start -= length[start];
  return start;
}

std::optional<int> StartFrom(std::span<const int> lengths, base::FunctionRef<bool(int j)> known) {
  const Lengths length(lengths);
  int start = 0;
  while (start < length.size() && !known(start)) ++start;
  if (start == length.size()) return std::nullopt;
  while (start - length[start] >= 0) start -= length[start];
  if (!EndsAtAddress(length, start)) return std::nullopt;
  return start;
}

}  // namespace brevant::views
