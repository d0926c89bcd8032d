// SPDX-License-Identifier: MIT
// What goes wrong on the line of a session, as its number decides.
#pragma once

#include <random>
#include <string>

#include "simulator/fault_plan.h"

namespace brevant::campaign {

// Draws that are the same wherever they are made.
class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  // 0 to below - 1.
  int Pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  bool OneIn(int n) { return Pick(n) == 0; }

 private:
  std::mt19937 random_;
};

// None in one of ten sessions; else one to three single faults, a line that is noisy throughout, or
// a target that falls silent for a while.
simulator::FaultPlan DrawFaults(Dice& dice);
std::string FaultsText(const simulator::FaultPlan& plan);
bool Holds(const simulator::FaultPlan& plan, simulator::FaultKind kind);

}  // namespace brevant::campaign
