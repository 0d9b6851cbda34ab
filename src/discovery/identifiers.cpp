#include "discovery/identifiers.h"

#include <charconv>
#include <limits>

namespace {

constexpr std::string_view kPortWord = "FC_";
constexpr std::string_view kTargetWord = "_Target_";
constexpr std::string_view kLunWord = "_LUN_";
constexpr std::string_view kNamespaceWord = "_NSID_";

constexpr std::size_t kMostDigits = std::numeric_limits<decltype(LunEntry::number)>::digits10 + 1;

bool TakeWord(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

}  // namespace

std::string PortIdentifier(const FCProtocolEntry& entry) {
  std::string text;
  text.reserve(kPortWord.size() + WorldWideName::kTextLength);
  text += kPortWord;
  entry.port_name.AppendTo(text);
  return text;
}

std::string TargetIdentifier(const FCProtocolEntry& entry, const TargetEntry& target) {
  std::string text = PortIdentifier(entry);
  text.reserve(text.size() + kTargetWord.size() + WorldWideName::kTextLength);
  text += kTargetWord;
  target.port_name.AppendTo(text);
  return text;
}

LunIdentifiers::LunIdentifiers(const FCProtocolEntry& entry, const TargetEntry& target)
    : text_(TargetIdentifier(entry, target)) {
  text_ += IsNvmeTarget(target) ? kNamespaceWord : kLunWord;
  common_length_ = text_.size();
  text_.resize(common_length_ + kMostDigits);
}

std::string_view LunIdentifiers::Of(const LunEntry& lun) {
  char* const text = text_.data();
  return {text, std::to_chars(text + common_length_, text + text_.size(), lun.number).ptr};
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
