// SPDX-License-Identifier: MIT
// The ten buttons under the menu bar. Those whose command this version does not carry out are
// hidden.
#pragma once

#include <QToolBar>
#include <functional>
#include <map>

#include "workspace/command_rows.h"

namespace brevant::gui {

class ToolBar final : public QToolBar {
 public:
  explicit ToolBar(const std::function<void(int id)>& send);

  void Update(const workspace::CommandConditions& conditions);

 private:
  std::map<int, QAction*> actions_;
};

}  // namespace brevant::gui
