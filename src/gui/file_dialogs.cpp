// SPDX-License-Identifier: MIT
#include "gui/file_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>

#include "gui/messages.h"
#include "gui/qt_user_interface.h"

namespace brevant::gui {
namespace {

// "S19 file (*.S19) (*.S19 *.s19)": what stands in the last parentheses is the pattern.
QStringList NameFilters(const workspace::FileChooser& chooser) {
  QStringList filters;
  for (const workspace::FileFilter& filter : chooser.filters) {
    QStringList patterns;
    for (const std::string& pattern : workspace::BothCases(filter.pattern)) {
      // Here "*.*" would leave out names without a dot.
      patterns << (pattern == "*.*" ? QString("*") : Text(pattern));
    }
    filters << Text(filter.description) + " (" + patterns.join(' ') + ')';
  }
  return filters;
}

// Completes a name that was typed without its extension, unless there is a file of just that name.
class Chooser final : public QFileDialog {
 public:
  Chooser(QWidget* parent, const workspace::FileChooser& chooser)
      : QFileDialog(parent, chooser.title, Text(chooser.start_directory)),
        extension_(Text(chooser.default_extension)) {}

 protected:
  void accept() override {
    setDefaultSuffix({});
    const QString typed = selectedFiles().value(0);
    if (!QFileInfo::exists(typed)) setDefaultSuffix(extension_);
    QFileDialog::accept();
  }

 private:
  QString extension_;
};

}  // namespace

std::optional<std::string> ChooseFile(QWidget* parent, base::UserInterface& ui,
                                      const workspace::FileChooser& chooser) {
  Chooser dialog(parent, chooser);
  dialog.setObjectName("chooser");
  dialog.setAcceptMode(chooser.kind == workspace::ChooserKind::Open ? QFileDialog::AcceptOpen
                                                                    : QFileDialog::AcceptSave);
  dialog.setFileMode(chooser.must_exist() ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite,
                   chooser.kind != workspace::ChooserKind::SaveConfirming);
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  dialog.setNameFilters(NameFilters(chooser));
  while (dialog.exec() == QDialog::Accepted) {
    const QStringList chosen = dialog.selectedFiles();
    if (chosen.isEmpty()) break;
    std::string path = Bytes(chosen.first());
    if (chooser.any_length || workspace::FileChooser::Accepts(path)) return path;
    ui.ShowMessage(
        base::ToMessage(messages::kPathTooLong, workspace::FileChooser::kMaxPathLength, path));
  }
  return std::nullopt;
}

}  // namespace brevant::gui
