// SPDX-License-Identifier: MIT
// A simulated board whose host is the client of a pseudo-terminal, in real time. Clients may come
// and go; the board keeps its power and goes on running meanwhile.
#pragma once

#include "simulator/board.h"
#include "simulator/real_time.h"
#include "target/pseudo_terminal.h"

namespace brevant::target {

class BoardServer {
 public:
  // Both outlive the server. The board's wire decides whether bytes take their time.
  BoardServer(simulator::Board& board, PseudoTerminal& terminal)
      : board_(board), terminal_(terminal) {}
  BoardServer(const BoardServer&) = delete;
  BoardServer& operator=(const BoardServer&) = delete;

  // Serves until the descriptor becomes readable.
  void Serve(int stop);

 private:
  using Clock = simulator::RealTime::Clock;

  void CatchUp();
  void ClientLeft();
  void FollowLines();
  void TakeHostBytes();
  void GiveReceived();
  void WaitWithClient(int stop);

  simulator::Board& board_;
  PseudoTerminal& terminal_;
  simulator::RealTime real_time_;
  Clock::time_point lines_read_{};
};

}  // namespace brevant::target
