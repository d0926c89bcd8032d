// SPDX-License-Identifier: MIT
#include "gui/n_step_dialog.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

using control::NStepForm;
using control::ScrollStep;

constexpr int kPage = 10;
constexpr int kBarWidth = 180;

struct BarAction {
  int action;
  ScrollStep step;
};
constexpr std::array<BarAction, 6> kBarActions{
    {{QAbstractSlider::SliderSingleStepSub, ScrollStep::LineBack},
     {QAbstractSlider::SliderSingleStepAdd, ScrollStep::LineForward},
     {QAbstractSlider::SliderPageStepSub, ScrollStep::PageBack},
     {QAbstractSlider::SliderPageStepAdd, ScrollStep::PageForward},
     {QAbstractSlider::SliderToMinimum, ScrollStep::Home},
     {QAbstractSlider::SliderToMaximum, ScrollStep::End}}};

class NStepDialog final : public QDialog {
 public:
  NStepDialog(QWidget* parent, const QFont& font, NStepForm form,
              const std::function<void(const NStepForm&)>& store)
      : QDialog(parent), form_(std::move(form)), store_(store) {
    setObjectName("NSTEPDLG");
    setWindowTitle("N Step Setup");
    auto* const columns = new QHBoxLayout(this);
    auto* const left = new QVBoxLayout;
    columns->addLayout(left);
    left->addWidget(MakeCondition(font));
    into_ = Box("&Go through Subroutine", "into", [this] { form_.ClickIntoSubroutines(); });
    left->addWidget(into_);
    left->addWidget(MakeRate());
    columns->addLayout(MakeButtons());
    Show();
    count_->selectAll();
    count_->setFocus();
  }

  NStepEnd end() const { return end_; }

 private:
  QCheckBox* Box(const char* text, const char* name, const std::function<void()>& clicked) {
    auto* const box = new QCheckBox(text);
    box->setObjectName(name);
    connect(box, &QCheckBox::clicked, this, [this, clicked] {
      clicked();
      Show();
    });
    return box;
  }

  QScrollBar* Bar(const char* name, int minimum, int maximum,
                  const std::function<void(ScrollStep)>& step,
                  const std::function<void(int)>& drag) {
    auto* const bar = new QScrollBar(Qt::Horizontal);
    bar->setObjectName(name);
    bar->setRange(minimum, maximum);
    bar->setPageStep(maximum > kPage ? kPage : 1);
    bar->setMinimumWidth(kBarWidth);
    bar->setFocusPolicy(Qt::TabFocus);
    connect(bar, &QScrollBar::actionTriggered, this, [this, bar, step, drag](int action) {
      const auto* const row = std::ranges::find(kBarActions, action, &BarAction::action);
      if (row != kBarActions.end()) {
        step(row->step);
      } else {
        drag(bar->sliderPosition());
      }
      Show();
      bar->setSliderPosition(bar->value());
    });
    return bar;
  }

  QGroupBox* MakeCondition(const QFont& font) {
    auto* const group = new QGroupBox("Condition");
    auto* const rows = new QVBoxLayout(group);
    forever_ = Box("NStep &forever", "forever", [this] { form_.ClickForever(); });
    statement_ = Box("Stop at &C statement", "statement", [this] { form_.ClickAtStatement(); });
    rows->addWidget(forever_);
    rows->addWidget(statement_);
    auto* const steps = new QHBoxLayout;
    auto* const label = new QLabel("Ste&ps");
    count_ = new QLineEdit;
    count_->setObjectName("count");
    count_->setFont(font);
    label->setBuddy(count_);
    steps->addWidget(label);
    steps->addWidget(count_);
    rows->addLayout(steps);
    connect(count_, &QLineEdit::textEdited, this, [this](const QString& text) {
      form_.TypeCount(Bytes(text));
      Show();
    });
    count_bar_ = Bar(
        "countBar", control::kMinNStepCount, control::kMaxNStepCount,
        [this](ScrollStep step) { form_.ScrollCount(step); },
        [this](int position) { form_.DragCount(position); });
    auto* const ends = new QHBoxLayout;
    ends->addWidget(new QLabel("0"));
    ends->addWidget(count_bar_, 1);
    ends->addWidget(new QLabel(QString::number(control::kMaxNStepCount)));
    rows->addLayout(ends);
    return group;
  }

  QGroupBox* MakeRate() {
    auto* const group = new QGroupBox("Update rate");
    auto* const ends = new QHBoxLayout(group);
    rate_bar_ = Bar(
        "rateBar", 0, control::kMaxNStepRate, [this](ScrollStep step) { form_.ScrollRate(step); },
        [this](int position) { form_.DragRate(position); });
    ends->addWidget(new QLabel("Fast"));
    ends->addWidget(rate_bar_, 1);
    auto* const slow = new QLabel("&Slow");
    slow->setBuddy(rate_bar_);
    ends->addWidget(slow);
    return group;
  }

  QVBoxLayout* MakeButtons() {
    auto* const buttons = new QVBoxLayout;
    const auto add = [&](const char* text, const char* name, NStepEnd end) {
      auto* const button = new QPushButton(text);
      button->setObjectName(name);
      button->setAutoDefault(false);
      buttons->addWidget(button);
      connect(button, &QPushButton::clicked, this, [this, end] {
        end_ = end;
        if (end != NStepEnd::Cancelled) store_(form_);
        done(end == NStepEnd::Cancelled ? Rejected : Accepted);
      });
      return button;
    };
    add("G&o", "go", NStepEnd::Start);
    add("O&k", "ok", NStepEnd::Stored)->setDefault(true);
    add("Cancel", "cancel", NStepEnd::Cancelled);
    auto* const help = new QPushButton("&Help");
    help->setObjectName("help");
    help->setAutoDefault(false);
    buttons->addWidget(help);
    connect(help, &QPushButton::clicked, this, [this] {
      QCoreApplication::postEvent(this,
                                  new QKeyEvent(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier));
    });
    buttons->addStretch(1);
    return buttons;
  }

  // As the form has it now.
  void Show() {
    forever_->setChecked(form_.forever());
    statement_->setChecked(form_.at_statement());
    into_->setChecked(form_.into_subroutines);
    count_->setEnabled(form_.count_enabled());
    count_bar_->setEnabled(form_.count_enabled());
    if (Bytes(count_->text()) != form_.count_text) count_->setText(Text(form_.count_text));
    const QSignalBlocker count_quiet(count_bar_), rate_quiet(rate_bar_);
    count_bar_->setValue(form_.count_position);
    rate_bar_->setValue(form_.update_rate);
  }

  NStepForm form_;
  std::function<void(const NStepForm&)> store_;
  NStepEnd end_ = NStepEnd::Cancelled;
  QCheckBox *forever_ = nullptr, *statement_ = nullptr, *into_ = nullptr;
  QLineEdit* count_ = nullptr;
  QScrollBar *count_bar_ = nullptr, *rate_bar_ = nullptr;
};

}  // namespace

NStepEnd AskForNStep(QWidget* parent, const QFont& font, NStepForm form,
                     const std::function<void(const NStepForm&)>& store) {
  NStepDialog dialog(parent, font, std::move(form), store);
  dialog.exec();
  return dialog.end();
}

}  // namespace brevant::gui
