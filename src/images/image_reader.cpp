// SPDX-License-Identifier: MIT
#include "images/image_reader.h"

#include "base/files.h"

namespace brevant::images {
namespace {

class ImageSink final : public RecordSink {
 public:
  explicit ImageSink(Image& image) : image_(image) {}
  bool Data(base::Address address, base::Bytes bytes) override {
    image_.Put(address, bytes);
    return true;
  }
  void Entry(base::Address) override {}

 private:
  Image& image_;
};

class CountingSink final : public RecordSink {
 public:
  bool Data(base::Address, base::Bytes) override { return true; }
  void Entry(base::Address) override {}
};

class TargetSink final : public RecordSink {
 public:
  TargetSink(link::Monitor& monitor, control::RegisterFrame& frame, StartAddress& start,
             Progress progress, long total)
      : monitor_(monitor), frame_(frame), start_(start), progress_(progress), total_(total) {}

  bool Data(base::Address address, base::Bytes bytes) override {
    if (!progress_(done_, total_)) return false;
    monitor_.WriteBlock(base::Low16(address), bytes);
    done_ += static_cast<long>(bytes.size());
    return true;
  }
  void Entry(base::Address address) override {
    frame_.SetPC(address);
    start_.LoadEntryAddress = address;
    start_.EntryFromImage = true;
  }

 private:
  link::Monitor& monitor_;
  control::RegisterFrame& frame_;
  StartAddress& start_;
  Progress progress_;
  long total_;
  long done_ = 0;
};

}  // namespace

ReadReport ImageReader::Transfer(const std::filesystem::path& path, Walk walk, Progress progress) {
  const base::FileText file = base::ReadFile(path);
  if (!file.ok()) {
    ReadReport report;
    report.file_error = file.error;
    return report;
  }
  start_.EntryFromImage = false;
  CountingSink counter;
  const long total = walk(file.text, counter).bytes;
  TargetSink target(monitor_, frame_, start_, progress, total);
  return walk(file.text, target);
}

ReadReport ImageReader::LoadSRecordFile(const std::filesystem::path& path, Progress progress) {
  return Transfer(path, WalkSRecords, progress);
}

ReadReport ImageReader::ScanIntelHexFile(const std::filesystem::path& path, Progress progress) {
  return Transfer(path, WalkIntelHex, progress);
}

ImageFile ParseImage(std::string_view text) {
  ImageFile file;
  ImageSink sink(file.image);
  const auto first = RecordTokens(text).Next();
  const bool intel_hex = first && first->text.front() == ':';
  file.report = intel_hex ? WalkIntelHex(text, sink) : WalkSRecords(text, sink);
  return file;
}

ImageFile ReadImageFile(const std::filesystem::path& path) {
  const base::FileText text = base::ReadFile(path);
  if (text.ok()) return ParseImage(text.text);
  ImageFile file;
  file.report.file_error = text.error;
  return file;
}

}  // namespace brevant::images
