// SPDX-License-Identifier: MIT
// Reads image files: into the target, record by record through the monitor, or into an Image.
#pragma once

#include <filesystem>

#include "control/register_frame.h"
#include "images/image.h"
#include "images/progress.h"
#include "images/record_walk.h"
#include "images/start_address.h"
#include "link/monitor.h"

namespace brevant::images {

// Each data record costs a READ of the address below it, then one IWRITE a byte; nothing is read
// back. While LinkError is set the files are still walked, and the report counts what would have
// been written.
class ImageReader {
 public:
  ImageReader(link::Monitor& monitor, control::RegisterFrame& frame, StartAddress& start)
      : monitor_(monitor), frame_(frame), start_(start) {}

  // S-records. Clears EntryFromImage first; each S9 sets PC in the frame and the start address.
  ReadReport LoadSRecordFile(const std::filesystem::path& path, Progress progress);
  // Intel HEX, which carries no entry address for this CPU: EntryFromImage ends cleared.
  ReadReport ScanIntelHexFile(const std::filesystem::path& path, Progress progress);

 private:
  using Walk = ReadReport (*)(std::string_view, RecordSink&);
  ReadReport Transfer(const std::filesystem::path& path, Walk walk, Progress progress);

  link::Monitor& monitor_;
  control::RegisterFrame& frame_;
  StartAddress& start_;
};

struct ImageFile {
  Image image;
  ReadReport report;
};
// S-records or Intel HEX, told apart by the first character.
ImageFile ReadImageFile(const std::filesystem::path& path);
ImageFile ParseImage(std::string_view text);

}  // namespace brevant::images
