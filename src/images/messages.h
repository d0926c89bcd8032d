// SPDX-License-Identifier: MIT
// What is said of image files, whoever reads them.
#pragma once

#include "base/message_text.h"

namespace brevant::images {

using base::MessageText;
using base::ToMessage;

namespace messages {

// Nothing of such a file goes to the target.
inline constexpr MessageText kDamaged{
    "image.damaged", base::Severity::Error,
    "%s\nis damaged, and nothing of it was used. Line %ld: %s (%ld such records).",
    base::captions::kError, base::Icon::Error};
inline constexpr MessageText kNoRecords{
    "image.no-records", base::Severity::Error,
    "%s\nholds no S-records and no Intel HEX records: there is nothing in it for the target.",
    base::captions::kError, base::Icon::Error};

// The rest is taken, and that is said.
inline constexpr MessageText kRestNotRead{
    "image.rest-not-read", base::Severity::Warning,
    "Line %ld of\n%s\nis no record: it and what follows it were not read.",
    base::captions::kForYourInformation, base::Icon::Warning};
inline constexpr MessageText kWrongChecksums{"image.wrong-checksums", base::Severity::Warning,
                                             "%ld records of\n%s\nhave a wrong checksum, the first "
                                             "in line %ld. They were taken as they are.",
                                             base::captions::kForYourInformation,
                                             base::Icon::Warning};
inline constexpr MessageText kNoEndRecord{
    "image.no-end-record", base::Severity::Warning,
    "%s\nhas no end record. If it was cut short, what is missing was not read.",
    base::captions::kForYourInformation, base::Icon::Warning};

inline constexpr const MessageText* kAll[] = {&kDamaged, &kNoRecords, &kRestNotRead,
                                              &kWrongChecksums, &kNoEndRecord};

}  // namespace messages
}  // namespace brevant::images
