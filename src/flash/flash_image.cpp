// SPDX-License-Identifier: MIT
#include "flash/flash_image.h"

#include <algorithm>
#include <utility>

#include "devices/hc08.h"
#include "flash/verdicts.h"

namespace brevant::flash {
namespace {

constexpr const char* kTitle = "Flash image";
constexpr const char* kComparingWithImage = "Comparing flash with the image...";
constexpr const char* kErasing = "Erasing the pages that differ...";
constexpr const char* kVerifying = "Verifying flash...";

bool Contains(const std::vector<devices::MemoryRange>& ranges, base::Address address) {
  return std::ranges::any_of(ranges, [address](const devices::MemoryRange& range) {
    return address >= range.first && address <= range.last;
  });
}

void AddPage(std::vector<devices::MemoryRange>& pages, base::Address first, base::Address last) {
  if (!pages.empty() && first <= pages.back().last + 1) {
    pages.back().last = last;
  } else {
    pages.push_back({first, last, devices::MemoryKind::Flash});
  }
}

images::Image Only(const images::Image& image, const PagePart& part) {
  images::Image only;
  for (base::Address at = part.first; at <= part.last(); ++at) {
    if (const auto byte = image.At(at)) only.Put(at, base::Bytes(&*byte, 1));
  }
  return only;
}

void PutAll(const images::Image& from, images::Image& to) {
  for (const images::Block& block : from.Blocks()) to.Put(block.address, block.bytes);
}

}  // namespace

FlashImage::FlashImage(const FlashSurroundings& surroundings, control::TargetCrc& crc)
    : with_(surroundings),
      crc_(crc),
      driver_(surroundings.memory, surroundings.frame),
      runner_(surroundings.memory, surroundings.link, surroundings.security),
      blank_check_(surroundings.memory, surroundings.link, surroundings.frame) {}

FlashImageResult FlashImage::Run(const images::Image& image) {
  if (!with_.security.passed()) {
    with_.ui.ShowMessage(ToMessage(messages::kImageNotCompared));
    return {.outcome = FlashOutcome::NotSeen};
  }
  with_.activity.AbandonOperation();
  with_.memory.TakeDamage();  // of what came before
  code_before_ = with_.security.accepted();
  image_ = image;
  result_.bytes = image.size();
  text_ = kComparingWithImage;
  with_.ui.BeginProgress(kTitle, text_, true);
  result_.outcome = Work();
  with_.ui.EndProgress();
  Tell(result_.outcome);
  return result_;
}

FlashOutcome FlashImage::Work() {
  using Stage = End (FlashImage::*)();
  static constexpr Stage kStages[] = {&FlashImage::Compare, &FlashImage::Decide,
                                      &FlashImage::Erase,   &FlashImage::PutTrimBack,
                                      &FlashImage::Program, &FlashImage::Verify};
  for (const Stage stage : kStages) {
    if (const End end = (this->*stage)()) return *end;
    if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
  }
  return FlashOutcome::Done;
}

bool FlashImage::Show(long done, long total) {
  return with_.ui.UpdateProgress(text_, done, total);
}

FlashImage::End FlashImage::Refuse(const base::Message& why) {
  said_.push_back(why);
  return FlashOutcome::Refused;
}

FlashImage::End FlashImage::Unseen(Comparison::End end) {
  if (end == Comparison::End::Complete) return std::nullopt;
  if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
  return end == Comparison::End::Cancelled ? FlashOutcome::Cancelled : FlashOutcome::NotSeen;
}

FlashImage::End FlashImage::Compare() {
  const devices::FlashGeometry& flash = with_.memory.device().flash;
  const auto show = [this](long done, long total) { return Show(done, total); };
  Comparison found = CompareWithFlash(crc_, flash, image_, show);
  if (found.end == Comparison::End::NotSeen && !with_.memory.LinkError()) {
    // A program that was stopped deep in its calls leaves no room in RAM; the end is a reset
    // anyway.
    with_.reset_target();
    found = CompareWithFlash(crc_, flash, image_, show);
  }
  if (const End end = Unseen(found.end)) return end;
  parts_ = std::move(found.parts);
  base::Address page = base::kAddressSpace;
  for (const PagePart& part : parts_) {
    if (std::exchange(page, part.first & ~flash.page_mask()) != page) ++result_.pages;
    if (part.holds == Holds::Other) AddPage(to_erase_, page, page | flash.page_mask());
  }
  return std::nullopt;
}

// What is erased and what is programmed; from here on the image is what it comes to.
FlashImage::End FlashImage::Decide() {
  const devices::FlashGeometry& flash = with_.memory.device().flash;
  if (Contains(to_erase_, flash.flbpr)) {
    return Refuse(ToMessage(messages::kImageInProtectPage, flash.flbpr & ~flash.page_mask(),
                            flash.flbpr | flash.page_mask()));
  }
  if (const End end = KeepTrim()) return end;
  if (const End end = ReadKept()) return end;
  base::Address spared_page = base::kAddressSpace;
  for (const PagePart& part : parts_) {
    const bool erased = Contains(to_erase_, part.first);
    if (erased || part.holds == Holds::Nothing) {
      PutAll(Only(image_, part), different_);
      continue;
    }
    result_.spared += static_cast<long>(part.count);
    const base::Address page = part.first & ~flash.page_mask();
    if (std::exchange(spared_page, page) != page) ++result_.pages_spared;
  }
  return std::nullopt;
}

// The factory has set it, and it goes with its page.
FlashImage::End FlashImage::KeepTrim() {
  const base::Address at = with_.memory.device().flash.trim;
  if (at == 0 || !Contains(to_erase_, at)) return std::nullopt;
  const std::uint8_t trim = with_.memory.AskByte(at);
  const auto wanted = image_.At(at);
  if (trim == devices::kBlank || wanted == trim) return std::nullopt;
  if (wanted && *wanted != devices::kBlank) {
    said_.push_back(ToMessage(messages::kTrimReplaced, at, trim));
    return std::nullopt;
  }
  // An image of a whole part may hold a place that it says nothing of as blank.
  if (wanted &&
      with_.ui.ShowMessage(ToMessage(messages::kTrimAtStake, at, trim)) != base::Answer::Yes) {
    return std::nullopt;
  }
  trim_ = trim;
  image_.Put(at, base::Bytes(&trim, 1));
  return std::nullopt;
}

FlashImage::End FlashImage::ReadKept() {
  const devices::Device& device = with_.memory.device();
  for (const devices::MemoryRange& pages : to_erase_) {
    for (const auto& range : devices::FlashWithin(device, pages.first, pages.last)) {
      for (base::Address at = range.first; at <= range.last; ++at) {
        if (image_.At(at)) continue;
        base::Address end = at;
        while (end <= range.last && !image_.At(end)) ++end;
        std::vector<std::uint8_t> bytes(end - at), again(end - at);
        with_.memory.AskChecked(bytes, at);
        with_.memory.AskChecked(again, at);
        if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
        if (bytes != again) return Refuse(ToMessage(messages::kKeptNotRead, at));
        for (std::size_t i = 0; i < bytes.size(); ++i) {
          const base::Address where = at + static_cast<base::Address>(i);
          if (bytes[i] != devices::kBlank) kept_.Put(where, base::Bytes(&bytes[i], 1));
        }
        at = end;
      }
    }
  }
  if (const auto damaged = with_.memory.TakeDamage()) {
    return Refuse(ToMessage(messages::kKeptNotRead, *damaged));
  }
  return std::nullopt;
}

FlashImage::End FlashImage::Erase() {
  if (different_.empty()) return std::nullopt;
  with_.debug_info.DebugInfoLoaded = false;  // what it was loaded for is about to go
  if (to_erase_.empty()) return std::nullopt;
  text_ = kErasing;
  if (!Show(0, 0)) return FlashOutcome::Cancelled;
  erase_begun_ = true;
  for (const devices::MemoryRange& pages : to_erase_) {
    const FlashPlan plan = PlanEraseRange(with_.memory.device(), pages.first, pages.last);
    driver_.Prepare(plan);
    if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
    if (const auto damaged = runner_.LetRun(plan, nullptr)) {
      said_.push_back(ToMessage(messages::kLineDamaged, *damaged, 0L));
      return FlashOutcome::LinkLost;
    }
    if (!runner_.AwaitEnd()) return FlashOutcome::LinkLost;
  }
  return LookWhetherErased();
}

FlashImage::End FlashImage::LookWhetherErased() {
  std::vector<devices::MemoryRange> to_look_at;
  for (const devices::MemoryRange& pages : to_erase_) {
    const auto flash = devices::FlashWithin(with_.memory.device(), pages.first, pages.last);
    to_look_at.insert(to_look_at.end(), flash.begin(), flash.end());
  }
  auto report = blank_check_.Look(to_look_at);
  if (!report && !with_.memory.LinkError()) report = blank_check_.Look(to_look_at);
  if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
  if (!report) return FlashOutcome::NotSeen;
  if (!report->blank()) {
    said_.push_back(NotErasedMessage(with_.memory.device().flash, *report));
    return FlashOutcome::NotErased;
  }
  result_.erased = to_look_at;
  if (Contains(to_erase_, devices::kSecurityCode)) with_.security.Erased();
  return std::nullopt;
}

FlashImage::End FlashImage::PutTrimBack() {
  if (!trim_) return std::nullopt;
  ++result_.kept;
  if (runner_.WriteTrim(driver_, *trim_)) return std::nullopt;
  said_.push_back(ToMessage(messages::kTrimNotWritten, with_.memory.device().flash.trim, *trim_));
  return with_.memory.LinkError() ? FlashOutcome::LinkLost : FlashOutcome::VerifyFailed;
}

// What was there before goes first, and cannot be cancelled.
FlashImage::End FlashImage::Program() {
  const devices::FlashGeometry& flash = with_.memory.device().flash;
  images::Image content = different_;
  // It stands already, and no byte is programmed twice.
  if (trim_ && content.At(flash.trim)) content.Put(flash.trim, base::Bytes(&devices::kBlank, 1));
  FlashPlan plan = PlanImage(flash, kept_);
  const std::size_t kept_blocks = plan.blocks.size();
  FlashPlan of_image = PlanImage(flash, content);
  plan.blocks.insert(plan.blocks.end(), of_image.blocks.begin(), of_image.blocks.end());
  if (!plan.blocks.empty()) driver_.Prepare(plan);
  const long total = plan.bytes();
  long done = 0;
  for (std::size_t n = 0; n < plan.blocks.size(); ++n) {
    const bool of_kept = n < kept_blocks;
    const FlashBlock& block = plan.blocks[n];
    reached_ = block.address;
    text_ = BlockText(block);
    if (!Show(done, total) && !of_kept) return FlashOutcome::Cancelled;
    if (const End end = ProgramBlock(plan, block)) return end;
    const auto bytes = static_cast<long>(block.bytes.size());
    done += bytes;
    (of_kept ? result_.kept : result_.programmed) += bytes;
  }
  // Blocks that are blank were left out.
  result_.programmed = different_.size();
  return std::nullopt;
}

FlashImage::End FlashImage::ProgramBlock(const FlashPlan& plan, const FlashBlock& block) {
  driver_.SendBlock(plan, block);
  if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
  if (const auto damaged = runner_.LetRun(plan, &block)) {
    said_.push_back(ToMessage(messages::kLineDamaged, *damaged, result_.programmed));
    return FlashOutcome::LinkLost;
  }
  runner_.AwaitBlock();
  const bool failed = driver_.VerifyFailed();
  if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
  if (failed) return SayWhatIsWrong({{block.address, block.bytes.size()}});
  runner_.Programmed(block);
  return std::nullopt;
}

FlashImage::End FlashImage::Verify() {
  if (!Touched()) return std::nullopt;
  text_ = kVerifying;
  const Comparison found =
      CompareWithFlash(crc_, with_.memory.device().flash, Wanted(), [this](long done, long total) {
        Show(done, total);
        return true;
      });
  if (const End end = Unseen(found.end)) return end;
  std::vector<PagePart> wrong = found.parts;
  std::erase_if(wrong, [](const PagePart& part) { return part.holds == Holds::TheImage; });
  if (wrong.empty()) return std::nullopt;
  // Nothing of it is claimed then.
  result_.programmed = result_.kept = 0;
  reached_ = wrong.front().first;
  return SayWhatIsWrong(wrong);
}

// Of what was touched.
images::Image FlashImage::Wanted() const {
  images::Image wanted = kept_;
  PutAll(different_, wanted);
  if (trim_) wanted.Put(with_.memory.device().flash.trim, base::Bytes(&*trim_, 1));
  return wanted;
}

FlashImage::End FlashImage::SayWhatIsWrong(const std::vector<PagePart>& parts) {
  const images::Image wanted = Wanted();
  WrongBytes wrong{.was_blank = true};
  for (const PagePart& part : parts) {
    std::vector<std::uint8_t> found(part.count);
    with_.memory.AskBytes(found, part.first);
    if (with_.memory.LinkError()) return FlashOutcome::LinkLost;
    for (std::size_t i = 0; i < found.size(); ++i) {
      const base::Address at = part.first + static_cast<base::Address>(i);
      const std::uint8_t expected = wanted.At(at).value_or(found[i]);
      ++wrong.compared;
      if (expected == found[i]) continue;
      if (wrong.different++ == 0) wrong.first = {at, expected, found[i]};
    }
  }
  const std::string text = wrong.different > 0 ? DifferenceText(with_.memory, wrong)
                                               : "what was read back did not show where";
  said_.push_back(ToMessage(messages::kImageWrong, text));
  return FlashOutcome::VerifyFailed;
}

void FlashImage::Tell(FlashOutcome outcome) {
  const bool reset = outcome == FlashOutcome::Done || Touched();
  if (reset && !with_.memory.LinkError()) {
    ResetAndKeepCode(with_.reset_target, with_.security, code_before_, with_.ui);
  }
  switch (outcome) {
    case FlashOutcome::LinkLost:
      said_.push_back(ToMessage(messages::kImageLinkLost, HowFar()));
      break;
    case FlashOutcome::Cancelled:
      said_.push_back(ToMessage(messages::kImageCancelled, HowFar()));
      break;
    case FlashOutcome::NotSeen:
      said_.push_back(erase_begun_ ? ToMessage(messages::kEraseNotSeen)
                                   : ToMessage(messages::kImageNotCompared));
      [[fallthrough]];
    default:
      if (outcome != FlashOutcome::Done && Touched()) said_.back().text += '\n' + HowFar();
      break;
  }
  for (const base::Message& message : said_) with_.ui.ShowMessage(message);
}

std::string FlashImage::HowFar() const {
  if (!Touched()) return "Nothing was erased or programmed.";
  std::string text;
  if (erase_begun_ && result_.erased.empty()) {
    text = base::Format("The pages from %04x on were being erased and are in doubt.",
                        to_erase_.front().first);
  } else {
    if (!result_.erased.empty()) text = ErasedText(result_.erased) + ".\n";
    text += base::Format(
        "%ld of the %ld bytes of the image that were not there are programmed and verified",
        result_.programmed, different_.size());
    text += result_.programmed < different_.size()
                ? base::Format("; those from %04x on are not, or are in doubt.", reached_)
                : ". Only the comparison of the whole and the reset are missing.";
  }
  if (result_.kept < kept_.size()) {
    text += "\nThese bytes, which the image does not hold, stood in the pages and may be lost:";
    for (const images::Block& block : kept_.Blocks()) {
      text += base::Format("\n%04x:", block.address);
      for (const std::uint8_t byte : block.bytes) text += base::Format(" %02x", byte);
    }
  }
  return text;
}

}  // namespace brevant::flash
