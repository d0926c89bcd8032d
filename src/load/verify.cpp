// SPDX-License-Identifier: MIT
#include "load/verify.h"

#include <algorithm>

#include "base/crc16.h"
#include "load/target_range.h"

namespace brevant::load {
namespace {

// 0.4 s for each that is the same, 3 s for each that has to be read, at 9600 baud.
constexpr std::size_t kVerifyPiece = 1024;

bool Differs(const images::Image& image, base::Address address, base::Bytes found) {
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (image.At(address + static_cast<base::Address>(i)).value_or(found[i]) != found[i]) {
      return true;
    }
  }
  return false;
}

// What differs does so in both readings.
void Compare(const images::Image& image, base::Address address, base::Bytes found,
             base::Bytes again, VerifyResult& result) {
  for (std::size_t i = 0; i < found.size(); ++i) {
    const base::Address at = address + static_cast<base::Address>(i);
    const std::uint8_t expected = image.At(at).value_or(found[i]);
    ++result.compared;
    result.last = base::Low16(at);
    if (expected == found[i] || expected == again[i]) continue;
    ++result.different;
    const Difference difference{base::Low16(at), expected, again[i]};
    if (!result.first) result.first = difference;
    if (result.listed.size() < VerifyResult::kMostListed) result.listed.push_back(difference);
  }
}

RangeResult Told(bool go_on) {
  return go_on ? RangeResult::Complete : RangeResult::Stopped;
}

// Whether the target's CRC of the stretch is that of the bytes. False also when it cannot tell.
bool SameCrc(control::TargetCrc* crc, base::Address address, base::Bytes bytes) {
  if (crc == nullptr || bytes.size() < control::TargetCrc::kWorthwhile) return false;
  return crc->Of(address, bytes.size()) == base::Crc16(bytes);
}

}  // namespace

VerifyResult Verify(memory::Memory& memory, const images::Image& image, Progress progress,
                    control::TargetCrc* crc) {
  VerifyResult result;
  const auto compare = [&](base::Address address, base::Bytes found) {
    std::vector<std::uint8_t> again(found.begin(), found.end());
    if (Differs(image, address, found)) memory.AskBytes(again, address);
    if (memory.LinkError()) return false;
    Compare(image, address, found, again, result);
    return progress(result.compared, image.size());
  };
  const auto same = [&](base::Address address, base::Bytes bytes) {
    if (!SameCrc(crc, address, bytes)) return false;
    result.compared += static_cast<long>(bytes.size());
    result.last = base::Low16(address + static_cast<base::Address>(bytes.size()) - 1);
    return true;
  };
  // A piece that differs is read, to tell where and how.
  const auto look_at_pieces = [&](base::Address address, base::Bytes bytes) {
    for (std::size_t done = 0; done < bytes.size(); done += kVerifyPiece) {
      const base::Bytes piece = bytes.subspan(done, std::min(kVerifyPiece, bytes.size() - done));
      const base::Address at = address + static_cast<base::Address>(done);
      const bool known = bytes.size() <= kVerifyPiece;  // to differ
      const RangeResult range = !known && same(at, piece)
                                    ? Told(progress(result.compared, image.size()))
                                    : ReadRange(memory, at, piece.size(), compare);
      if (range != RangeResult::Complete) return range;
    }
    return RangeResult::Complete;
  };
  for (const images::Block& block : image.Blocks()) {
    const RangeResult range = same(block.address, block.bytes)
                                  ? Told(progress(result.compared, image.size()))
                                  : look_at_pieces(block.address, block.bytes);
    if (range != RangeResult::Complete) {
      result.outcome = memory.LinkError() ? VerifyOutcome::LinkLost : VerifyOutcome::Cancelled;
      return result;
    }
  }
  if (result.different > 0) result.outcome = VerifyOutcome::Different;
  return result;
}

}  // namespace brevant::load
