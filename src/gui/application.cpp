// SPDX-License-Identifier: MIT
#include "gui/application.h"

#include <QElapsedTimer>
#include <filesystem>

#include "gui/connect_dialog.h"
#include "gui/window_layout.h"
#include "link/native/serial_devices.h"

namespace brevant::gui {
namespace {

constexpr int kTickMs = 10;

}  // namespace

bool Application::Start() {
  const Options& options = session_.options;
  const auto ask = [&](Leaving leaving) {
    return AskForConnection(nullptr, session_.settings, session_.debugger.security, session_.ui,
                            link::FindSerialDevices(), options.version, leaving);
  };
  if (!options.connect && !ask(Leaving::ByOk)) return false;
  window_ = std::make_unique<MainWindow>(session_, help_);
  RestoreLayout(*window_, session_.settings);
  while (!session_.Connect()) {
    if (!ask(Leaving::ByQuitToo)) return false;
  }
  window_->show();
  window_->Refresh();
  if (!session_.notice().empty()) window_->status().ShowNotice(session_.notice());
  QObject::connect(&timer_, &QTimer::timeout, window_.get(), [this] {
    QElapsedTimer taken;
    taken.start();
    window_->Tick();
    // What is due already would come before keys and clicks.
    if (taken.hasExpired(kTickMs)) timer_.start(kTickMs);
  });
  timer_.setTimerType(Qt::PreciseTimer);
  timer_.start(kTickMs);
  // In full, since it is remembered for starts from other folders.
  if (!options.image.empty()) window_->LoadFile(std::filesystem::absolute(options.image).string());
  return true;
}

}  // namespace brevant::gui
