// SPDX-License-Identifier: MIT
#include "load/verify.h"

#include "load/target_range.h"

namespace brevant::load {
namespace {

void Compare(const images::Image& image, base::Address address, base::Bytes found,
             VerifyResult& result) {
  for (std::size_t i = 0; i < found.size(); ++i) {
    const base::Address at = address + static_cast<base::Address>(i);
    const std::uint8_t expected = image.At(at).value_or(found[i]);
    ++result.compared;
    if (expected == found[i]) continue;
    ++result.different;
    if (!result.first) result.first = Difference{base::Low16(at), expected, found[i]};
  }
}

VerifyOutcome OutcomeOf(RangeResult range) {
  return range == RangeResult::LinkLost ? VerifyOutcome::LinkLost : VerifyOutcome::Cancelled;
}

}  // namespace

VerifyResult Verify(memory::Memory& memory, const images::Image& image, Progress progress) {
  VerifyResult result;
  const auto compare = [&](base::Address address, base::Bytes found) {
    Compare(image, address, found, result);
    return progress(result.compared, image.size());
  };
  for (const images::Block& block : image.Blocks()) {
    const RangeResult range = ReadRange(memory, block.address, block.bytes.size(), compare);
    if (range != RangeResult::Complete) {
      result.outcome = OutcomeOf(range);
      return result;
    }
  }
  if (result.different > 0) result.outcome = VerifyOutcome::Different;
  return result;
}

}  // namespace brevant::load
