#include "discovery/identifiers.h"

#include <charconv>

namespace {

constexpr std::string_view kPortWord = "FC_";
constexpr std::string_view kTargetWord = "_Target_";
constexpr std::string_view kLunWord = "_LUN_";
constexpr std::string_view kNamespaceWord = "_NSID_";

constexpr char kDigits[] = "0123456789abcdef";

void AppendName(std::string& text, const WorldWideName& name) {
  for (std::size_t i = 0; i < sizeof name; ++i) {
    if (i > 0) text += ':';
    text += kDigits[name[i] >> 4];
    text += kDigits[name[i] & 0x0fu];
  }
}

void AppendNumber(std::string& text, std::uint32_t number) {
  char digits[10];
  char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  text.append(digits, end);
}

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

bool TakeWord(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

bool TakeName(std::string_view& text, WorldWideName& name) {
  if (text.size() < kNameTextLength) return false;
  for (std::size_t i = 0; i < sizeof name; ++i) {
    const char* const octet = text.data() + 3 * i;
    const int high = DigitValue(octet[0]);
    const int low = DigitValue(octet[1]);
    if (high < 0 || low < 0 || (i + 1 < sizeof name && octet[2] != ':')) return false;
    name[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  text.remove_prefix(kNameTextLength);
  return true;
}

}  // namespace

std::string NameText(const WorldWideName& name) {
  std::string text;
  text.reserve(kNameTextLength);
  AppendName(text, name);
  return text;
}

std::string PortIdentifier(const FCProtocolEntry& entry) {
  std::string text;
  text.reserve(kPortWord.size() + kNameTextLength);
  text += kPortWord;
  AppendName(text, entry.port_name);
  return text;
}

std::string TargetIdentifier(const FCProtocolEntry& entry, const TargetEntry& target) {
  std::string text = PortIdentifier(entry);
  text.reserve(text.size() + kTargetWord.size() + kNameTextLength);
  text += kTargetWord;
  AppendName(text, target.port_name);
  return text;
}

LunIdentifiers::LunIdentifiers(const FCProtocolEntry& entry, const TargetEntry& target)
    : text_(TargetIdentifier(entry, target)) {
  text_ += IsNvmeTarget(target) ? kNamespaceWord : kLunWord;
  common_length_ = text_.size();
}

const std::string& LunIdentifiers::Of(const LunEntry& lun) {
  text_.resize(common_length_);
  AppendNumber(text_, lun.number);
  return text_;
}

bool TakePort(std::string_view& text, WorldWideName& port_name) {
  return TakeWord(text, kPortWord) && TakeName(text, port_name);
}

bool TakeTarget(std::string_view& text, WorldWideName& target_name) {
  return TakeWord(text, kTargetWord) && TakeName(text, target_name);
}

bool TakeLun(std::string_view& text, bool& is_namespace, std::uint32_t& number) {
  is_namespace = TakeWord(text, kNamespaceWord);
  if (!is_namespace && !TakeWord(text, kLunWord)) return false;
  const char* const begin = text.data();
  const auto [end, error] = std::from_chars(begin, begin + text.size(), number);
  if (error != std::errc()) return false;
  const auto length = static_cast<std::size_t>(end - begin);
  if (length > 1 && *begin == '0') return false;  // no number prints with a leading zero
  text.remove_prefix(length);
  return true;
}
