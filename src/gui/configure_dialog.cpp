// SPDX-License-Identifier: MIT
#include "gui/configure_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialog>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "base/files.h"
#include "gui/dialog_buttons.h"
#include "gui/file_dialogs.h"
#include "gui/qt_user_interface.h"
#include "load/macro_page.h"
#include "symbols/importers.h"
#include "workspace/configuration.h"
#include "workspace/file_choosers.h"

namespace brevant::gui {
namespace {

constexpr const char* kWhatFollows =
    "A page is stored when it is left. When this dialog closes, all breakpoints are cleared and "
    "the target is reset.";
constexpr int kTextWidth = 420;
constexpr int kFieldWidth = 320;

class Page : public QWidget {
 public:
  // Stores what is shown. False when that could not be written.
  virtual bool Leave() = 0;
};

struct Choice {
  int value;
  const char* text;
  const char* name;
};

// Radio buttons of one choice, one below the other.
QButtonGroup* AddChoices(QBoxLayout& layout, QWidget& page, std::span<const Choice> choices,
                         int chosen) {
  auto* const group = new QButtonGroup(&page);
  for (const Choice& choice : choices) {
    auto* const button = new QRadioButton(choice.text);
    button->setObjectName(choice.name);
    group->addButton(button, choice.value);
    layout.addWidget(button);
    button->setChecked(choice.value == chosen);
  }
  return group;
}

constexpr auto Number(symbols::ToolChain tool_chain) {
  return static_cast<int>(tool_chain);
}

constexpr std::array kToolChains{
    Choice{Number(symbols::ToolChain::FreeAssembler), "&Free assembler", "free"},
    Choice{Number(symbols::ToolChain::MotorolaAssembler), "&Motorola assembler", "motorola"},
    Choice{Number(symbols::ToolChain::McuezAssembler), "MCUE&Z assembler", "mcuez"},
    Choice{Number(symbols::ToolChain::Imagecraft), "&Imagecraft C compiler", "imagecraft"},
    Choice{Number(symbols::ToolChain::Introl), "I&ntrol C compiler", "introl"},
    Choice{Number(symbols::ToolChain::Sdcc), "&SDCC", "sdcc"},
};

class CompilerTab final : public Page {
 public:
  explicit CompilerTab(const ConfigureLinks& links) : links_(links), form_(links.tool_chain) {
    auto* const layout = new QVBoxLayout(this);
    QButtonGroup* const group =
        AddChoices(*layout, *this, kToolChains, Number(workspace::CompilerPage::kOpensOn));
    auto* const in_force = new QLabel(Text(form_.InForceText()));
    in_force->setObjectName("inForce");
    layout->addWidget(in_force);
    layout->addStretch(1);
    // Clicked, also where it was selected before: that is a choice.
    connect(group, &QButtonGroup::idClicked, this, [this](int number) {
      form_.Choose(static_cast<symbols::ToolChain>(number));
      if (form_.selected() == symbols::ToolChain::Introl)
        stored_ = AskForIntrolDirectory(this, links_.settings) && stored_;
    });
  }

  bool Leave() override { return form_.Commit(links_.settings, links_.ui) && stored_; }

 private:
  const ConfigureLinks& links_;
  workspace::CompilerPage form_;
  bool stored_ = true;
};

class MacroTab final : public Page {
 public:
  explicit MacroTab(const ConfigureLinks& links)
      : links_(links), form_(load::MacroPage::Open(links.settings)) {
    setWindowTitle(Text(load::MacroPage::kCaption));
    auto* const layout = new QVBoxLayout(this);
    before_ = AddFile(*layout, load::MacroPage::kBeforeLoadLabel, "beforeLoad", "&Browse",
                      form_.before_load, form_.before_load_file);
    after_ = AddFile(*layout, load::MacroPage::kAfterResetLabel, "afterReset", "B&rowse",
                     form_.after_reset, form_.after_reset_file);
    layout->addStretch(1);
  }

  bool Leave() override {
    form_.before_load = before_.box->isChecked();
    form_.before_load_file = Bytes(before_.field->text());
    form_.after_reset = after_.box->isChecked();
    form_.after_reset_file = Bytes(after_.field->text());
    form_.Commit(links_.settings, links_.ui, links_.start_up_directory);
    return true;
  }

 private:
  struct File {
    QCheckBox* box;
    QLineEdit* field;
  };

  File AddFile(QBoxLayout& layout, std::string_view label, const QString& name,
               const char* browse_text, bool checked, const std::string& file) {
    auto* const box = new QCheckBox(Text(label));
    box->setObjectName(name);
    box->setChecked(checked);
    auto* const row = new QHBoxLayout;
    auto* const field = new QLineEdit(Text(file));
    field->setObjectName(name + "File");
    field->setAccessibleName(Text(label));
    field->setMaxLength(static_cast<int>(load::MacroPage::kMaxNameLength));
    field->setMinimumWidth(kFieldWidth);
    auto* const browse = new QPushButton(browse_text);
    browse->setObjectName(name + "Browse");
    connect(browse, &QPushButton::clicked, this, [this, field, box] {
      const auto chosen =
          ChooseFile(this, links_.ui,
                     workspace::PrepareChooser(workspace::Chooser::MacroFile, Bytes(field->text()),
                                               links_.tool_chain, base::WorkingDirectory()));
      if (!chosen) return;
      field->setText(Text(*chosen));
      box->setFocus();
    });
    row->addWidget(field);
    row->addWidget(browse);
    layout.addWidget(box);
    layout.addLayout(row);
    return {box, field};
  }

  const ConfigureLinks& links_;
  load::MacroPage form_;
  File before_{};
  File after_{};
};

class MiscTab final : public Page {
 public:
  explicit MiscTab(const ConfigureLinks& links) : links_(links) {
    auto* const layout = new QVBoxLayout(this);
    auto* const box = new QGroupBox("Breakpoint");
    auto* const rows = new QVBoxLayout(box);
    const bool hardware = workspace::MiscPage::Open(links.settings).hardware_breakpoints;
    constexpr std::array kKinds{Choice{1, "&Hardware", "hardware"},
                                Choice{0, "&Software", "software"}};
    kinds_ = AddChoices(*rows, *this, kKinds, hardware ? 1 : 0);
    rows->addWidget(new QLabel("Hardware: one breakpoint, in flash too. Software: many, in RAM."));
    layout->addWidget(box);
    layout->addStretch(1);
  }

  bool Leave() override {
    return workspace::MiscPage{kinds_->checkedId() == 1}.Commit(links_.settings);
  }

 private:
  const ConfigureLinks& links_;
  QButtonGroup* kinds_;
};

class FontTab final : public Page {
 public:
  explicit FontTab(const ConfigureLinks& links)
      : links_(links), opened_(workspace::FontPage::Open(links.settings)) {
    auto* const layout = new QVBoxLayout(this);
    auto* const columns = new QHBoxLayout;
    auto* const faces = new QGroupBox("Font");
    auto* const face_rows = new QVBoxLayout(faces);
    const auto* const face = std::ranges::find(kNames, opened_.font.face);
    faces_ = AddChoices(*face_rows, *this, kFaces, static_cast<int>(face - kNames.begin()));
    auto* const sizes = new QGroupBox("Breakpoint for B32");
    sizes->setAccessibleName("Size");
    auto* const size_rows = new QVBoxLayout(sizes);
    sizes_ = AddChoices(*size_rows, *this, kSizes, opened_.font.points);
    columns->addWidget(faces);
    columns->addWidget(sizes);
    layout->addLayout(columns);
    layout->addStretch(1);
  }

  bool Leave() override {
    const workspace::ViewFont font{kNames[static_cast<std::size_t>(faces_->checkedId())],
                                   sizes_->checkedId()};
    return workspace::FontPage{font}.Commit(links_.settings);
  }

 private:
  static constexpr std::array<std::string_view, 3> kNames{"fixedsys", "courier", "courier new"};
  static constexpr std::array kFaces{Choice{0, "&Fixedsys", "fixedsys"},
                                     Choice{1, "&Courier", "courier"},
                                     Choice{2, "Courier &new", "courierNew"}};
  static constexpr std::array kSizes{Choice{8, "&8 points", "points8"},
                                     Choice{10, "&10 points", "points10"},
                                     Choice{12, "1&2 points", "points12"}};

  const ConfigureLinks& links_;
  workspace::FontPage opened_;
  QButtonGroup* faces_;
  QButtonGroup* sizes_;
};

template <typename Tab>
Page* Make(const ConfigureLinks& links) {
  return new Tab(links);
}

struct PageRow {
  const char* title;
  const char* name;
  Page* (*make)(const ConfigureLinks&);
};
constexpr std::array kPages{
    PageRow{"Compiler", "PGCOMPILER", Make<CompilerTab>},
    PageRow{"Macro files", "PGMACROFILE", Make<MacroTab>},
    PageRow{"Misc", "PGDEVICE", Make<MiscTab>},
    PageRow{"Font", "PGFONT", Make<FontTab>},
};

class ConfigureDialog final : public QDialog {
 public:
  explicit ConfigureDialog(const ConfigureLinks& links) : QDialog(links.parent), links_(links) {
    setObjectName("ConfigDlg");
    setWindowTitle("Configure");
    auto* const layout = new QVBoxLayout(this);
    tabs_ = new QTabWidget;
    tabs_->setObjectName("tabs");
    for (const PageRow& row : kPages) {
      auto* const frame = new QWidget;
      (new QVBoxLayout(frame))->setContentsMargins(0, 0, 0, 0);
      tabs_->addTab(frame, row.title);
    }
    layout->addWidget(tabs_);
    auto* const follows = new QLabel(kWhatFollows);
    follows->setWordWrap(true);
    follows->setMinimumWidth(kTextWidth);
    layout->addWidget(follows);
    auto* const row = new QHBoxLayout;
    row->addStretch(1);
    ok_ = new QPushButton("Ok");
    ok_->setObjectName("ok");
    ok_->setDefault(true);
    row->addWidget(ok_);
    layout->addLayout(row);
    connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
    connect(tabs_, &QTabWidget::currentChanged, this, [this](int index) { Turn(index); });
    ShowPage(0);
  }

  // However it is closed, the page in front is stored.
  void done(int result) override {
    LeavePage();
    QDialog::done(result);
  }

  bool stored() const { return stored_; }

 private:
  void LeavePage() {
    Page* const left = std::exchange(page_, nullptr);
    if (left == nullptr) return;
    stored_ = left->Leave() && stored_;
    delete left;
  }

  void Turn(int index) {
    LeavePage();
    ShowPage(index);
  }

  void ShowPage(int index) {
    const PageRow& row = kPages[static_cast<std::size_t>(index)];
    page_ = row.make(links_);
    page_->setObjectName(row.name);
    tabs_->widget(index)->layout()->addWidget(page_);
    // Tab goes from the page to the button below it.
    QWidget* last = previousInFocusChain();
    while (last->focusPolicy() == Qt::NoFocus) last = last->previousInFocusChain();
    setTabOrder(last, ok_);
  }

  const ConfigureLinks& links_;
  QTabWidget* tabs_;
  QPushButton* ok_;
  Page* page_ = nullptr;
  bool stored_ = true;
};

}  // namespace

bool ShowConfiguration(const ConfigureLinks& links) {
  ConfigureDialog dialog(links);
  dialog.exec();
  return dialog.stored();
}

bool AskForIntrolDirectory(QWidget* parent, base::SettingsFile& settings) {
  using workspace::IntrolDialog;
  QDialog dialog(parent);
  dialog.setObjectName(Text(IntrolDialog::kTemplate));
  dialog.setWindowTitle("Introl LIBRARIES directory");
  auto* const layout = new QVBoxLayout(&dialog);
  auto* const text = new QLabel(Text(IntrolDialog::kText));
  text->setWordWrap(true);
  text->setMinimumWidth(kTextWidth);
  layout->addWidget(text);
  auto* const row = new QHBoxLayout;
  auto* const field = new QLineEdit(Text(IntrolDialog::InitialText(settings)));
  field->setObjectName("directory");
  field->setAccessibleName("Introl LIBRARIES directory");
  field->setMaxLength(IntrolDialog::kMaxLength);
  auto* const browse = new QPushButton("&Browse");
  browse->setObjectName("browse");
  QObject::connect(browse, &QPushButton::clicked, &dialog, [&dialog, field] {
    const QString chosen = QFileDialog::getExistingDirectory(&dialog, {}, field->text());
    if (!chosen.isEmpty()) field->setText(chosen);
  });
  row->addWidget(field);
  row->addWidget(browse);
  layout->addLayout(row);
  AddOkAndCancel(dialog, *layout, [&dialog] { dialog.accept(); });
  field->setFocus();
  if (dialog.exec() != QDialog::Accepted) return true;
  return IntrolDialog::Commit(settings, Bytes(field->text()));
}

}  // namespace brevant::gui
