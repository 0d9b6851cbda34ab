#include "tools/snapshot/made_up.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace snapshot {
namespace {

// Characters that replace each other.
struct Class {
  std::uint8_t first;
  std::uint16_t count;
};

constexpr Class kOctet[] = {{0, 256}};
constexpr Class kTextClasses[] = {{'0', 10}, {'A', 26}, {'a', 26}, {0x80, 128}};
// The digits of a UUID: ten, six and six.
constexpr Class kHexClasses[] = {{'0', 10}, {'A', 6}, {'a', 6}};

// How often another value is tried when one is taken. More values than a short form has can't all differ.
constexpr unsigned kAttempts = 1000;

// Numbers that follow from a text alone (FNV-1a, then the steps of splitmix64).
class Numbers {
 public:
  Numbers(std::string_view text, unsigned attempt) : state_(0xcbf29ce484222325 + attempt) {
    for (const char character : text) {
      state_ = (state_ ^ static_cast<std::uint8_t>(character)) * 0x100000001b3;
    }
  }

  std::size_t Below(std::size_t count) {
    state_ += 0x9e3779b97f4a7c15;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ mixed >> 30) * 0xbf58476d1ce4e5b9;
    mixed = (mixed ^ mixed >> 27) * 0x94d049bb133111eb;
    return static_cast<std::size_t>((mixed ^ mixed >> 31) % count);
  }

 private:
  std::uint64_t state_;
};

std::string Invent(const std::string& original, std::span<const Class> classes, unsigned attempt) {
  Numbers numbers(original, attempt);
  std::string made(original);
  for (std::size_t i = 1; i < made.size(); ++i) {  // past the kind
    const auto byte = static_cast<std::uint8_t>(made[i]);
    for (const Class& row : classes) {
      if (byte < row.first || byte - row.first >= row.count) continue;
      made[i] = static_cast<char>(row.first + numbers.Below(row.count));
      break;
    }
  }
  return made;
}

// How much of a name is "nqn.", a year and a month: "nqn.2026-01."; 0 for any other beginning.
std::size_t AuthorityLength(std::string_view name) {
  constexpr std::string_view kForm = "nqn.0000-00.";
  if (name.size() < kForm.size()) return 0;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool fits = kForm[i] == '0' ? name[i] >= '0' && name[i] <= '9' : name[i] == kForm[i];
    if (!fits) return 0;
  }
  return kForm.size();
}

}  // namespace

void MadeUp::Replace(Kind kind, Bytes bytes) {
  if (bytes.empty()) return;
  std::string original(1, static_cast<char>(kind));
  original.append(bytes.begin(), bytes.end());
  const auto [place, is_new] = by_original_.try_emplace(original);
  if (is_new) {
    const std::span<const Class> classes = kind == Kind::kText  ? std::span<const Class>(kTextClasses)
                                           : kind == Kind::kHex ? std::span<const Class>(kHexClasses)
                                                                : std::span<const Class>(kOctet);
    std::string made;
    for (unsigned attempt = 0; attempt < kAttempts; ++attempt) {
      made = Invent(original, classes, attempt);
      if (made != original && used_.insert(made).second) break;
    }
    place->second = made;
  }
  std::copy(place->second.begin() + 1, place->second.end(), bytes.begin());
}

void MadeUp::Text(Bytes text) {
  // One serial number fills its fields in several ways.
  while (!text.empty() && (text.back() == ' ' || text.back() == 0)) text = text.first(text.size() - 1);
  Replace(Kind::kText, text);
}

void MadeUp::Nqn(Bytes name) {
  // Of the NVMe base specification: names made of a UUID, and the one name of every discovery service.
  constexpr std::string_view kUuid = "nqn.2014-08.org.nvmexpress:uuid:";
  constexpr std::string_view kDiscovery = "nqn.2014-08.org.nvmexpress.discovery";
  const std::string_view text(reinterpret_cast<const char*>(name.data()), name.size());
  if (text == kDiscovery) return;
  if (text.starts_with(kUuid)) return Replace(Kind::kHex, name.subspan(kUuid.size()));
  Replace(Kind::kText, name.subspan(AuthorityLength(text)));
}

void MadeUp::Octets(Bytes octets) {
  while (!octets.empty() && octets.back() == 0) octets = octets.first(octets.size() - 1);
  Replace(Kind::kOctets, octets);
}

}  // namespace snapshot
