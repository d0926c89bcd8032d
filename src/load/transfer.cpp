// SPDX-License-Identifier: MIT
#include "load/transfer.h"

namespace brevant::load {
namespace {

void WriteWritable(memory::Memory& memory, base::Address address, base::Bytes bytes) {
  if (bytes.empty()) memory.WriteBytes(address, bytes);  // a READ all the same
  while (!bytes.empty()) {
    const bool writable = memory.Writable(address);
    std::size_t count = 1;
    while (count < bytes.size() &&
           memory.Writable(address + static_cast<base::Address>(count)) == writable) {
      ++count;
    }
    if (writable) memory.WriteBytes(address, bytes.first(count));
    bytes = bytes.subspan(count);
    address = base::Low16(address + static_cast<base::Address>(count));
  }
}

}  // namespace

bool Transfer(const images::ImageFile& file, memory::Memory& memory, control::RegisterFrame& frame,
              StartAddress& start, Progress progress) {
  start.EntryFromImage = false;
  long done = 0;
  for (const images::ImageRecord& record : file.records) {
    const base::Address address = base::Low16(record.address);
    if (record.kind == images::ImageRecord::Kind::Entry) {
      frame.SetPC(address);
      start.LoadEntryAddress = address;
      start.EntryFromImage = true;
      continue;
    }
    if (!progress(done, file.report.bytes)) return false;
    WriteWritable(memory, address, record.bytes);
    done += static_cast<long>(record.bytes.size());
  }
  return true;
}

}  // namespace brevant::load
