// SPDX-License-Identifier: MIT
#include "link/connect_form.h"

#include <cctype>

#include "base/file_names.h"
#include "base/text_format.h"
#include "base/text_number.h"
#include "devices/device.h"
#include "link/messages.h"

namespace brevant::link {

namespace {

using namespace base::keys;

std::string PortName(int index) {
  return base::Format("COM%d", index + 1);
}

// "c3c3..." -> "C3    C3    ...", each pair followed by four blanks.
std::string ListText(const std::string& entry) {
  const std::string digits = base::UpperCase(entry);
  std::string text;
  for (std::size_t pair = 0; pair < 8 && 2 * pair < digits.size(); ++pair) {
    text += digits.substr(2 * pair, 2) + "    ";
  }
  return text;
}

// A field holds one hexadecimal number and nothing else but blanks.
std::optional<std::uint8_t> ParseCodeField(std::string_view field) {
  field = field.substr(0, kCodeFieldLimit);
  const auto value = base::ScanHex(field, kCodeFieldLimit);
  if (!value || field.find_first_not_of(' ') != std::string_view::npos) return std::nullopt;
  return base::LowByte(*value);
}

std::optional<SecurityCode> ParseCodeFields(const std::array<std::string, 8>& fields) {
  SecurityCode code{};
  for (std::size_t i = 0; i < code.size(); ++i) {
    const auto byte = ParseCodeField(fields[i]);
    if (!byte) return std::nullopt;
    code[i] = *byte;
  }
  return code;
}

}  // namespace

PortChoice* ConnectForm::FindPort(std::string_view name) {
  const std::string upper = base::UpperCase(name);
  return IsLogicalPort(upper) ? &ports[upper.back() - '1'] : nullptr;
}

ConnectForm OpenConnectForm(const base::SettingsFile& settings, const SecurityKeeper& security,
                            const std::vector<SerialDevice>& found) {
  ConnectForm form;
  SelectRecentCode(form, security, 0);
  form.port = settings.String(kPort);
  form.verify_security = settings.Integer(kSecurityCheck) != 0;
  for (int n = 0; n < kRecentCodes; ++n) {
    form.recent_codes[n] = ListText(settings.String(kRecentSecurity, n));
  }
  form.device = devices::BySettingsNumber(settings.Integer(kDevice)).settings_number;
  for (int i = 0; i < kLogicalPorts; ++i) {
    form.ports[i].device = DeviceBehind(PortName(i), settings, found).value_or("");
  }
  return form;
}

void SelectRecentCode(ConnectForm& form, const SecurityKeeper& security, int n) {
  const SecurityCode code = security.Recent(n);
  for (std::size_t i = 0; i < code.size(); ++i) {
    form.code_fields[i] = base::Format("%02X", code[i]);
  }
}

bool PasteCode(ConnectForm& form, std::string_view text) {
  std::string digits;
  for (const char c : text) {
    if (base::IsHexDigit(c)) {
      digits += c;
    } else if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      return false;
    }
  }
  if (digits.size() != 2 * form.code_fields.size()) return false;
  for (std::size_t i = 0; i < form.code_fields.size(); ++i) {
    form.code_fields[i] = base::UpperCase(digits.substr(2 * i, 2));
  }
  return true;
}

std::optional<base::Message> CommitConnectForm(const ConnectForm& form,
                                               base::SettingsFile& settings,
                                               SecurityKeeper& security) {
  const auto code = ParseCodeFields(form.code_fields);
  if (!code) return ToMessage(kCodeNotCorrect);
  const bool remembered = security.Remember(*code) || security.Recent(0) == *code;

  const std::string port = base::UpperCase(form.port);
  if (!IsLogicalPort(port)) return ToMessage(kPortNotCorrect);
  base::SettingsFile::Change change;
  change.Store(kPort, port);
  change.Store(kSecurityCheck, form.verify_security ? 1L : 0L);
  change.Store(kDevice, static_cast<long>(form.device));
  for (int i = 0; i < kLogicalPorts; ++i) {
    if (form.ports[i].chosen) StoreDeviceBehind(PortName(i), form.ports[i].device, change);
  }
  const bool stored = settings.Apply(change) || settings.Holds(change);
  if (!remembered || !stored) return ToMessage(kSettingsNotStored, settings.path().string());
  return std::nullopt;
}

}  // namespace brevant::link
