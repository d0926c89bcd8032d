// SPDX-License-Identifier: MIT
#include "load/transfer.h"

namespace brevant::load {

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
    memory.WriteBytes(address, record.bytes);
    done += static_cast<long>(record.bytes.size());
  }
  return true;
}

}  // namespace brevant::load
