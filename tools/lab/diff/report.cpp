#include "tools/lab/diff/report.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "tools/lab/view/text.h"

namespace diff {
namespace {

std::string OrNone(const std::string& text) {
  return text.empty() ? "none" : text;
}

// How many changes from `first` on are the same of LUNs in a row.
std::size_t LunRun(const std::vector<Change>& changes, std::size_t first) {
  const Change& head = changes[first];
  if (!head.place.lun) return 1;
  std::size_t count = 1;
  for (; first + count < changes.size(); ++count) {
    const Change& next = changes[first + count];
    Place expected = head.place;
    expected.lun = *head.place.lun + static_cast<unsigned>(count);
    if (next.place != expected || next.sentence != head.sentence) break;
  }
  return count;
}

std::string LunTitle(unsigned first, std::size_t count) {
  if (count == 1) return "LUN " + std::to_string(first);
  return "LUNs " + std::to_string(first) + " to " + std::to_string(first + count - 1);
}

// Writes the headings that differ from those of the change before.
void AppendHeadings(std::string& text, const Place& last, const Place& place) {
  const bool new_adapter = place.adapter != last.adapter;
  const bool new_port = new_adapter || place.port_title != last.port_title;
  const bool new_target = new_port || place.target != last.target;
  if (new_adapter && !place.adapter.empty()) text += "Adapter " + place.adapter + '\n';
  if (new_port && !place.port_title.empty()) text += "  " + place.port_title + '\n';
  if (new_target && !place.target.empty()) text += "    Target " + place.target + '\n';
}

std::size_t Depth(const Place& place) {
  if (!place.target.empty()) return 3;
  if (!place.port_title.empty()) return 2;
  return place.adapter.empty() ? 0 : 1;
}

std::string JsonOrNull(const std::string& text) {
  return text.empty() ? "null" : view::JsonText(text);
}

std::string JsonValue(const OptionalText& value, bool is_number) {
  if (!value) return "null";
  return is_number ? *value : view::JsonText(*value);
}

std::string JsonObject(const Change& change) {
  const Place& place = change.place;
  return "{\"adapter\": " + JsonOrNull(place.adapter) + ", \"port\": " + JsonOrNull(place.port) +
         ", \"target\": " + JsonOrNull(place.target) +
         ", \"lun\": " + (place.lun ? std::to_string(*place.lun) : "null") +
         ", \"what\": " + view::JsonText(change.what) +
         ", \"before\": " + JsonValue(change.before, change.is_number) +
         ", \"after\": " + JsonValue(change.after, change.is_number) + "}";
}

}  // namespace

void Report::AddValue(std::string_view what, const std::string& before, const std::string& after) {
  Add(what, before, after,
      std::string(what) + " changed from " + OrNone(before) + " to " + OrNone(after) + ".");
}

void Report::AddCounter(std::string_view what, std::uint64_t before, std::uint64_t after) {
  const std::string name(what);
  std::string sentence =
      after > before
          ? name + " rose by " + view::Grouped(after - before) + " to " + view::Grouped(after) + "."
          : name + " was reset: it was " + view::Grouped(before) + ", it is " + view::Grouped(after) + ".";
  Add(what, std::to_string(before), std::to_string(after), std::move(sentence));
  changes_.back().is_number = true;
}

void Report::Add(std::string_view what, OptionalText before, OptionalText after, std::string sentence) {
  changes_.push_back({.place = place_,
                      .what = std::string(what),
                      .before = std::move(before),
                      .after = std::move(after),
                      .sentence = std::move(sentence)});
}

void Report::AddOtherBytes(std::string_view record) {
  const std::string what = "Other bytes of " + std::string(record);
  Add(what, std::nullopt, std::nullopt, what + " differ.");
}

void Report::TakeOthers(const Report& from, const Report& skips, std::string_view prefix) {
  for (const Change& change : from.changes_) {
    const bool known = std::any_of(skips.changes_.begin(), skips.changes_.end(),
                                   [&](const Change& skip) { return skip.sentence == change.sentence; });
    if (known) continue;
    Change& added = changes_.emplace_back(change);
    added.what = std::string(prefix) + added.what;
    added.sentence = std::string(prefix) + added.sentence;
  }
}

void Report::Take(const Report& from) {
  changes_.insert(changes_.end(), from.changes_.begin(), from.changes_.end());
}

std::string Report::Text() const {
  std::string text;
  Place last;
  for (std::size_t at = 0; at < changes_.size();) {
    const Change& change = changes_[at];
    AppendHeadings(text, last, change.place);
    last = change.place;
    text.append(2 * Depth(change.place), ' ');
    const std::size_t count = LunRun(changes_, at);
    if (change.place.lun) text += LunTitle(*change.place.lun, count) + ": ";
    text += change.sentence + '\n';
    at += count;
  }
  return text;
}

std::string Report::Json() const {
  std::string text = "[";
  const char* separator = "\n  ";
  for (const Change& change : changes_) {
    text += separator + JsonObject(change);
    separator = ",\n  ";
  }
  return text + (changes_.empty() ? "]\n" : "\n]\n");
}

}  // namespace diff
