// SPDX-License-Identifier: MIT
// Flash from the menus: erasing, programming, backing up and what is said of it.
#include <QCheckBox>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <filesystem>
#include <fstream>

#include "gui/desktop.h"
#include "images/image_file.h"

namespace brevant::gui {
namespace {

namespace commands = workspace::commands;

class Flash : public Desktop {
 protected:
  simulator::Mcu& mcu() { return session().simulated()->board().mcu(); }
  images::Image Content() {
    images::Image image;
    for (const simulator::Range& range : mcu().device().flash) {
      for (base::Address at = range.first; at <= range.last; ++at) {
        image.Put(at, std::vector{mcu().Peek(at)});
      }
    }
    return image;
  }
  bool IsBlank(base::Address first, base::Address last) {
    for (base::Address at = first; at <= last; ++at) {
      if (mcu().Peek(at) != 0xFF) return false;
    }
    return true;
  }
  QString Notice() { return window().statusBar()->currentMessage(); }
  // The next message says that, and is answered so.
  void Answer(const QString& text, QMessageBox::StandardButton button) {
    OnDialog("message", [text, button](QDialog& dialog) {
      auto& message = static_cast<QMessageBox&>(dialog);
      EXPECT_TRUE(message.text().contains(text)) << qPrintable(message.text());
      QTest::mouseClick(message.button(button), Qt::LeftButton);
    });
  }
  std::filesystem::path Backup() {
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      if (entry.path().filename().string().find("-backup-") != std::string::npos) return entry;
    }
    return {};
  }
};

TEST_F(Flash, ErasesPagesAndSaysWhichOnesAreBlank) {
  Start();
  ASSERT_FALSE(IsBlank(0x8000, 0x807F));
  OnDialog("FEEPERASE", [this](QDialog& dialog) {
    EXPECT_EQ(Field(dialog, "from").text(), "8000");
    EXPECT_EQ(Field(dialog, "to").text(), "FFFF");
    Field(dialog, "to").setText("8X");
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "that is no address";
    Field(dialog, "to").setText("8081");
    Answer("It is going to erase flash EEPROM, please confirm.", QMessageBox::Ok);
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  Choose(commands::kEraseFlash);
  EXPECT_TRUE(IsBlank(0x8000, 0x80FF));
  EXPECT_EQ(Notice(), "erased 8000 to 80ff, all blank");
  EXPECT_FALSE(debugger().Busy());
}

TEST_F(Flash, BacksUpBeforeAMassEraseAndPutsItBack) {
  Start();
  const images::Image before = Content();
  OnDialog("message", [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
  Choose(commands::kMassErase);
  EXPECT_EQ(Content(), before) << "Enter erases nothing";
  OnDialog("message", [this](QDialog& dialog) {
    EXPECT_EQ(static_cast<QMessageBox&>(dialog).text(),
              "Do you really want to mass erase flash EEPROM");
    dialog.findChild<QCheckBox*>("backUp")->setChecked(true);
    QTest::mouseClick(static_cast<QMessageBox&>(dialog).button(QMessageBox::Yes), Qt::LeftButton);
    Answer("The security code of the part is now", QMessageBox::Ok);
  });
  Choose(commands::kMassErase);
  EXPECT_TRUE(IsBlank(0x8000, 0xFDFF));
  const std::filesystem::path backup = Backup();
  ASSERT_FALSE(backup.empty());
  EXPECT_EQ(images::ReadImageFile(backup).ToImage(), before);

  OnDialog("FEEPROM", [&](QDialog& dialog) {
    ChooseInDialog(backup.string());
    Push(dialog, "browse");
    EXPECT_EQ(Field(dialog, "fileName").text(), Text(backup.string()));
    Answer("The security code of the part is now", QMessageBox::Ok);
    Push(dialog, "start");
  });
  Choose(commands::kProgramFlash);
  EXPECT_EQ(Content(), before);
}

TEST_F(Flash, ProgramsLocationsAndRefusesWhatIsNoData) {
  Start();
  OnDialog("PROGLOCATION", [this](QDialog& dialog) {
    Answer("Not a correct HEX address", QMessageBox::Ok);
    Push(dialog, "ok");
    Field(dialog, "address").setText("9000");
    Answer("No data to program", QMessageBox::Ok);
    Push(dialog, "ok");
    EXPECT_TRUE(dialog.isVisible());
    Field(dialog, "content").setText("12 34,56 ; three bytes");
    Push(dialog, "ok");
  });
  Choose(commands::kProgramLocations);
  EXPECT_EQ(mcu().Peek(0x9002), 0x56);
  EXPECT_TRUE(Notice().startsWith("programmed 3 bytes")) << qPrintable(Notice());

  Choose(commands::kGo);
  RunFor(30);
  window().Send(commands::kEraseFlash);
  EXPECT_TRUE(Notice().contains("press Break")) << "a routine in RAM would meet the program";
}

// A program of SDCC from its file to its main, by keys and menus alone; and again after a change.
TEST_F(Flash, FlashesAnImageAndRunsItToMain) {
  UseToolChain(symbols::ToolChain::Sdcc);
  Start();
  Choose(commands::kRunToMain);
  const auto flash_it = [this](const std::string& path) {
    OnDialog("FEEPROM", [path](QDialog& dialog) {
      Field(dialog, "fileName").setText(Text(path));
      QTest::keyClick(&dialog, Qt::Key_Return);
    });
    Press(Qt::Key_F7, Qt::ControlModifier);
    Settle();
  };
  const std::string source = std::string(BREVANT_TEST_DATA) + "/programs/counters";
  const std::string path = (folder_ / "counters.s19").string();
  for (const char* extension : {".s19", ".cdb", ".map", ".rst"}) {
    std::filesystem::copy_file(source + extension, (folder_ / "counters").string() + extension);
  }
  flash_it(path);
  const images::Image image = images::ReadImageFile(path).ToImage();
  for (const images::Block& block : image.Blocks()) {
    for (base::Address i = 0; i < block.bytes.size(); ++i) {
      ASSERT_EQ(mcu().Peek(block.address + i), block.bytes[i]) << block.address + i;
    }
  }
  EXPECT_TRUE(Notice().contains("all verified")) << qPrintable(Notice());
  EXPECT_EQ(window().windowTitle(), Text(path));
  EXPECT_EQ(debugger().frame.PC, 0x8029u) << "main";
  flash_it(path);
  EXPECT_TRUE(Notice().startsWith(QString("%1 of %1 bytes stood there").arg(image.size())))
      << qPrintable(Notice());
}

TEST_F(Flash, SaysWhereAndHowWhenFlashIsNotBlank) {
  Start();
  const std::string path = (folder_ / "used.s19").string();
  std::ofstream(path) << "S1058000123434\n";
  OnDialog("FEEPROM", [this, path](QDialog& dialog) {
    Field(dialog, "fileName").setText(Text(path));
    OnDialog("message", [this](QDialog& question) {
      EXPECT_TRUE(static_cast<QMessageBox&>(question).text().startsWith("Flash is not blank"));
      static_cast<QMessageBox&>(question).button(QMessageBox::Yes)->click();
      OnDialog("message", [this](QDialog& message) {
        EXPECT_EQ(static_cast<QMessageBox&>(message).text(),
                  "Flash EEPROM not blank or an error found in programming");
        message.accept();
        Answer("it was not blank before", QMessageBox::Ok);
      });
    });
    Push(dialog, "start");
  });
  Choose(commands::kProgramFlash);
}

}  // namespace
}  // namespace brevant::gui
