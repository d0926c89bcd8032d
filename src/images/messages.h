// SPDX-License-Identifier: MIT
// What is said of image files, whoever reads them.
#pragma once

#include "base/message_text.h"

namespace brevant::images {

using base::MessageText;
using base::ToMessage;

namespace messages {

inline constexpr MessageText kRecordsSkipped{
    "load.records-skipped", base::Severity::Warning,
    "%ld malformed records of\n%s\nwere skipped. The first is in line %ld: %s.",
    base::captions::kForYourInformation, base::Icon::Warning};

inline constexpr const MessageText* kAll[] = {&kRecordsSkipped};

}  // namespace messages
}  // namespace brevant::images
