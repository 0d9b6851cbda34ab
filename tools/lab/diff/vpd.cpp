#include "tools/lab/diff/vpd.h"

#include <cstddef>
#include <optional>
#include <string_view>

#include "tools/lab/view/text.h"

namespace diff {
namespace {

using Octets = std::span<const std::uint8_t>;

constexpr std::uint8_t kIdentifierString = 0x82;
constexpr std::uint8_t kReadOnlyItems = 0x90;
constexpr std::uint8_t kReadWriteItems = 0x91;
constexpr std::uint8_t kLargeResource = 0x80;

std::string TextOf(Octets octets) {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

// Takes so many octets off the front; none when there are fewer.
std::optional<Octets> Take(Octets& octets, std::size_t count) {
  if (octets.size() < count) return std::nullopt;
  const Octets taken = octets.first(count);
  octets = octets.subspan(count);
  return taken;
}

bool ReadItems(Octets octets, Vpd& vpd) {
  while (!octets.empty()) {
    const auto head = Take(octets, 3);
    if (!head) return false;
    const auto value = Take(octets, (*head)[2]);
    if (!value) return false;
    const std::string keyword = TextOf(head->first(2));
    // The check sum follows from the rest, the reserved space is none.
    if (keyword != "RV" && keyword != "RW") vpd.items[keyword] = TextOf(*value);
  }
  return true;
}

bool ReadResources(Octets octets, Vpd& vpd) {
  while (!octets.empty() && (octets[0] & kLargeResource) != 0) {
    const auto head = Take(octets, 3);
    if (!head) return false;
    const auto content = Take(octets, static_cast<std::size_t>((*head)[1] | (*head)[2] << 8));
    if (!content) return false;
    const std::uint8_t tag = (*head)[0];
    if (tag == kIdentifierString) {
      vpd.name = TextOf(*content);
    } else if (tag == kReadOnlyItems || tag == kReadWriteItems) {
      if (!ReadItems(*content, vpd)) return false;
    } else {
      vpd.rest += TextOf(*head) + TextOf(*content);
    }
  }
  vpd.rest += TextOf(octets);
  return true;
}

}  // namespace

Vpd ReadVpd(std::span<const std::uint8_t> image) {
  Vpd vpd;
  vpd.whole = ReadResources(image, vpd);
  return vpd;
}

bool CompareVpd(Report& report, const Vpd& before, const Vpd& after) {
  const std::size_t known = report.Changes().size();
  const auto say = [&report](const std::string& what, const std::string& was, const std::string& is) {
    const std::string old_text = view::CleanText(was);
    const std::string new_text = view::CleanText(is);
    if (old_text != new_text) report.AddValue(what, old_text, new_text);
  };
  say("VPD name", before.name, after.name);
  auto items = before.items;
  items.insert(after.items.begin(), after.items.end());
  for (const auto& [keyword, value] : items) {
    const auto was = before.items.find(keyword);
    const auto is = after.items.find(keyword);
    say("VPD item " + view::CleanText(keyword), was == before.items.end() ? "" : was->second,
        is == after.items.end() ? "" : is->second);
  }
  return before.whole && after.whole && before.rest == after.rest && report.Changes().size() > known;
}

}  // namespace diff
