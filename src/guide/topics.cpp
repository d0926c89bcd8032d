// SPDX-License-Identifier: MIT
#include "guide/topics.h"

#include <algorithm>
#include <sstream>

#include "base/file_names.h"
#include "base/text_number.h"

namespace brevant::guide {
namespace {

constexpr std::string_view kOpens = "<!-- topic";
constexpr std::string_view kCloses = "-->";

std::string Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}

std::vector<std::string> Divide(const std::string& text, char at) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, at);) {
    if (std::string trimmed = Trimmed(part); !trimmed.empty()) parts.push_back(std::move(trimmed));
  }
  return parts;
}

std::vector<int> Numbers(const std::string& text) {
  std::vector<int> numbers;
  for (const std::string& word : Divide(text, ' '))
    numbers.push_back(base::ParseLeadingDecimal(word));
  return numbers;
}

// Each takes what stands behind its key.
struct KeyRow {
  std::string_view key;
  void (*take)(const std::string& value, Topic& topic);
};
constexpr KeyRow kKeys[] = {
    {"commands", [](const std::string& value, Topic& topic) { topic.commands = Numbers(value); }},
    {"windows", [](const std::string& value, Topic& topic) { topic.windows = Divide(value, ' '); }},
    {"dialogs", [](const std::string& value, Topic& topic) { topic.dialogs = Divide(value, ' '); }},
    {"keywords",
     [](const std::string& value, Topic& topic) { topic.keywords = Divide(value, ','); }},
};

void ReadComment(const std::string& comment, Topic& topic) {
  for (const std::string& line : Divide(comment, '\n')) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    const auto* const row = std::ranges::find(kKeys, line.substr(0, colon), &KeyRow::key);
    if (row != std::end(kKeys)) row->take(Trimmed(line.substr(colon + 1)), topic);
  }
}

template <typename Value, typename Wanted>
bool Has(const std::vector<Value>& values, const Wanted& wanted) {
  return std::ranges::find(values, wanted) != values.end();
}

bool HoldsAll(const std::string& upper_text, const std::vector<std::string>& upper_words) {
  return std::ranges::all_of(upper_words, [&](const std::string& word) {
    return upper_text.find(word) != std::string::npos;
  });
}

// The pictures stay in the folder of the guide.
std::string WithoutPictures(const std::string& markdown) {
  std::string text;
  std::istringstream stream(markdown);
  for (std::string line; std::getline(stream, line);) {
    if (!line.starts_with("![")) text += line + '\n';
  }
  return text;
}

std::string TitleAndKeywords(const Topic& topic) {
  std::string text = topic.title;
  for (const std::string& keyword : topic.keywords) text += ' ' + keyword;
  return base::UpperCase(text);
}

}  // namespace

Topic ParseTopic(const Page& page) {
  Topic topic;
  topic.file = page.file;
  std::string_view text = page.text;
  const std::size_t end = text.find(kCloses);
  if (text.starts_with(kOpens) && end != std::string_view::npos) {
    ReadComment(std::string(text.substr(kOpens.size(), end - kOpens.size())), topic);
    text.remove_prefix(end + kCloses.size());
  }
  topic.markdown = WithoutPictures(Trimmed(text));
  if (topic.markdown.starts_with("# "))
    topic.title =
        Trimmed(std::string_view(topic.markdown).substr(2, topic.markdown.find('\n') - 2));
  return topic;
}

Guide::Guide(std::span<const Page> pages) {
  for (const Page& page : pages) topics_.push_back(ParseTopic(page));
  const auto contents = std::ranges::find(topics_, kContents, &Topic::file);
  if (contents == topics_.end()) return;
  const std::string order = contents->markdown;
  std::ranges::stable_sort(topics_, {}, [&](const Topic& topic) {
    if (topic.file == kContents) return std::size_t{0};
    return order.find("(" + topic.file);
  });
}

const Topic* Guide::Find(std::string_view file) const {
  const auto found = std::ranges::find(topics_, file, &Topic::file);
  return found == topics_.end() ? nullptr : &*found;
}

const Topic* Guide::OfCommand(int id) const {
  const auto found =
      std::ranges::find_if(topics_, [id](const Topic& topic) { return Has(topic.commands, id); });
  return found == topics_.end() ? nullptr : &*found;
}

const Topic* Guide::OfWindow(std::string_view name) const {
  const auto found = std::ranges::find_if(
      topics_, [name](const Topic& topic) { return Has(topic.windows, name); });
  return found == topics_.end() ? nullptr : &*found;
}

const Topic* Guide::OfDialog(std::string_view name) const {
  const auto found = std::ranges::find_if(
      topics_, [name](const Topic& topic) { return Has(topic.dialogs, name); });
  return found == topics_.end() ? nullptr : &*found;
}

std::vector<const Topic*> Guide::Search(std::string_view text) const {
  const std::vector<std::string> words = Divide(base::UpperCase(text), ' ');
  std::vector<const Topic*> found;
  for (const Topic& topic : topics_) {
    if (HoldsAll(TitleAndKeywords(topic) + ' ' + base::UpperCase(topic.markdown), words))
      found.push_back(&topic);
  }
  std::stable_partition(found.begin(), found.end(), [&](const Topic* topic) {
    return HoldsAll(TitleAndKeywords(*topic), words);
  });
  return found;
}

}  // namespace brevant::guide
