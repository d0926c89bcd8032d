// SPDX-License-Identifier: MIT
#include "gui/block_progress.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/command_actions.h"
#include "gui/main_window.h"
#include "gui/progress_dialog.h"
#include "gui/session.h"

namespace brevant::gui {
namespace {

constexpr int kFollowEveryMs = 20;
constexpr int kBarWidth = 320;

}  // namespace

BlockProgress::BlockProgress(const CommandContext& context)
    : QDialog(&context.window),
      session_(context.session),
      window_(context.window),
      text_(new QLabel),
      bar_(new QProgressBar),
      time_left_(new QLabel) {
  setObjectName("UpdateDlg");
  setAttribute(Qt::WA_DeleteOnClose);
  setMinimumWidth(kBarWidth);
  const views::BlockOperation& operation = *session_.debugger.block.operation();
  setWindowTitle(Text(operation.Title()));
  bar_->setMaximum(static_cast<int>(operation.words_total()));
  auto* const layout = new QVBoxLayout(this);
  text_->setObjectName("text");
  layout->addWidget(text_);
  layout->addWidget(bar_);
  auto* const bottom = new QHBoxLayout;
  bottom->addWidget(time_left_, 1);
  auto* const cancel = new QPushButton("Cancel");
  cancel->setObjectName("cancel");
  connect(cancel, &QPushButton::clicked, this, &BlockProgress::reject);
  bottom->addWidget(cancel);
  layout->addLayout(bottom);
  since_start_.start();
  connect(&timer_, &QTimer::timeout, this, &BlockProgress::Follow);
  timer_.start(kFollowEveryMs);
  Follow();
}

void BlockProgress::reject() {
  cancel_wanted_ = true;
  Follow();
}

void BlockProgress::Follow() {
  views::BlockJob& block = session_.debugger.block;
  // Between two slices; during one the gate is shut.
  if (cancel_wanted_) session_.gate.Run([&block] { block.Cancel(); });
  const views::BlockOperation& operation = *block.operation();
  text_->setText(Text(operation.ProgressText()));
  bar_->setValue(static_cast<int>(operation.words_done()));
  time_left_->setText(
      TimeLeftText(since_start_.elapsed(), operation.words_done(), operation.words_total()));
  if (block.running()) return;
  timer_.stop();
  accept();
  Tell();
}

void BlockProgress::Tell() {
  const views::BlockOperation& operation = *session_.debugger.block.operation();
  const base::Message message = views::BlockMessage(operation, session_.debugger.memory);
  if (operation.outcome() == views::BlockOutcome::Done) {
    window_.status().ShowNotice(message.text);
  } else {
    session_.ui.ShowMessage(message);
  }
}

}  // namespace brevant::gui
