// SPDX-License-Identifier: MIT
#include "frontend/report.h"

#include <gtest/gtest.h>

namespace brevant::frontend {
namespace {

using link::Secrets;

TEST(Report, LeavesTheSecurityCodesOut) {
  const std::string settings =
      "[config]\nSecurity0=0102030405060708\n security4 = 1112131415161718\nSecurity=2122\n"
      "SecurityCheck=1\nCOMPort=COM1\n";
  EXPECT_EQ(SettingsForReport(settings, Secrets::Show), settings);
  EXPECT_EQ(SettingsForReport(settings, Secrets::Hide),
            "[config]\nSecurity0=--\n security4 =--\nSecurity=--\nSecurityCheck=1\nCOMPort=COM1\n");
  // Without an answer the log has the code's first byte in its place.
  const std::string log = "debug  d1  5a\ndebug  0  5a\n";
  EXPECT_EQ(DiagnosticsForReport(log, Secrets::Show), log);
  EXPECT_EQ(DiagnosticsForReport(log, Secrets::Hide), "debug  --  5a\ndebug  0  5a\n");
}

}  // namespace
}  // namespace brevant::frontend
