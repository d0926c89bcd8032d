// SPDX-License-Identifier: MIT
#include "link/connect_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "link/messages.h"
#include "link/settings_in_folder.h"

namespace brevant::link {
namespace {

using testing::Each;
using testing::ElementsAre;

ConnectForm Open(SettingsInFolder& file) {
  return OpenConnectForm(file.settings, SecurityKeeper(file.settings));
}

std::string RefusalOf(const ConnectForm& form, base::SettingsFile& settings) {
  SecurityKeeper security(settings);
  const auto refusal = CommitConnectForm(form, settings, security);
  return refusal ? refusal->text : "";
}

TEST(ConnectForm, OpensWithTheSettings) {
  SettingsInFolder file;
  ConnectForm form = Open(file);
  EXPECT_THAT(form.code_fields, Each("C3"));
  EXPECT_EQ(form.port, "COM1");
  EXPECT_TRUE(form.verify_security);
  EXPECT_EQ(form.device, 0);
  EXPECT_THAT(form.recent_codes, Each("C3    C3    C3    C3    C3    C3    C3    C3    "));
  EXPECT_EQ(form.ports[0].device, kSimulator);
  EXPECT_EQ(form.ports[1].device, "");

  file.Set("Security0", "0102030405060708");
  file.Set("Security1", "a1b2c3d4e5f60718");
  file.Set("Security2", "12xy");
  file.Set("port", "com3");
  file.Set("SecurityCheck", "0");
  file.Set("HC08Devices", "1");
  form = Open(file);
  EXPECT_THAT(form.code_fields, ElementsAre("01", "02", "03", "04", "05", "06", "07", "08"));
  EXPECT_EQ(form.recent_codes[1], "A1    B2    C3    D4    E5    F6    07    18    ");
  EXPECT_EQ(form.port, "com3");
  EXPECT_FALSE(form.verify_security);
  EXPECT_EQ(form.device, 1);

  SelectRecentCode(form, SecurityKeeper(file.settings), 1);
  EXPECT_THAT(form.code_fields, ElementsAre("A1", "B2", "C3", "D4", "E5", "F6", "07", "18"));
  SelectRecentCode(form, SecurityKeeper(file.settings), 2);
  EXPECT_THAT(form.code_fields, Each("C3"));
}

TEST(ConnectForm, RefusesWhatIsNoCodeOrNoPort) {
  for (const char* field : {"", " ", "G1", "1G", "-1", "0x"}) {
    SettingsInFolder file;
    ConnectForm form = Open(file);
    form.code_fields[5] = field;
    EXPECT_EQ(RefusalOf(form, file.settings), "Security string not correct") << field;
    EXPECT_FALSE(std::filesystem::exists(file.settings.path()));
  }
  for (const char* port : {"COM5", "COM0", "", "COM", "COM10", "LPT1"}) {
    SettingsInFolder file;
    ConnectForm form = Open(file);
    form.code_fields.fill("fF");
    form.port = port;
    EXPECT_EQ(RefusalOf(form, file.settings), "Not a correct COM port number") << port;
    EXPECT_EQ(SecurityKeeper(file.settings).Recent(0), kBlankSecurityCode) << "it is remembered";
    EXPECT_FALSE(file.settings.Has("config", "port"));
  }
}

TEST(ConnectForm, OkStoresEveryChoice) {
  SettingsInFolder file;
  ConnectForm form = Open(file);
  form.code_fields = {"1", "02", "3", "4", "5", "6", "7", "aB"};
  form.port = "com2";
  form.verify_security = false;
  form.device = 1;
  *form.FindPort("com2") = {"/dev/ttyUSB7", true};
  EXPECT_EQ(RefusalOf(form, file.settings), "");
  const base::SettingsFile& stored = file.settings;
  EXPECT_EQ(stored.ReadString("config", "Security0", "", 100), "01020304050607ab");
  EXPECT_EQ(stored.ReadString("config", "Security1", "", 100), "c3c3c3c3c3c3c3c3");
  EXPECT_EQ(stored.ReadString("config", "port", "", 100), "COM2");
  EXPECT_EQ(stored.ReadString("config", "SecurityCheck", "", 100), "0");
  EXPECT_EQ(stored.ReadString("config", "HC08Devices", "", 100), "1");
  EXPECT_EQ(stored.ReadString("ports", "COM2", "", 100), "/dev/ttyUSB7");
  EXPECT_FALSE(stored.Has("ports", "COM1")) << "nobody chose the simulated target for good";
}

TEST(ConnectForm, AnUnwritableSettingsFileIsInTheWayOnlyOfNewChoices) {
  SettingsInFolder file;
  file.MakeUnwritable();
  ConnectForm form = Open(file);
  EXPECT_EQ(RefusalOf(form, file.settings), "");
  form.port = "COM2";
  EXPECT_THAT(RefusalOf(form, file.settings), testing::HasSubstr("cannot be written"));
}

}  // namespace
}  // namespace brevant::link
