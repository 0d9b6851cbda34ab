#include "host_file/yaml_value.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/file.h"
#include "base/nearest_word.h"
#include "base/text.h"

namespace lab {
namespace {

std::vector<std::string_view> NamesOf(std::span<const NamedNumber> choices) {
  std::vector<std::string_view> names;
  for (const NamedNumber& choice : choices) names.emplace_back(choice.name);
  return names;
}

std::string Joined(std::span<const std::string_view> words) {
  std::string joined;
  for (const std::string_view word : words) {
    if (!joined.empty()) joined += ", ";
    joined += word;
  }
  return joined;
}

}  // namespace

std::string Value::Found() const {
  if (IsText()) return "'" + ShownText(Word()) + "'";
  if (IsList()) return "a list";
  if (IsMap()) return "a map";
  return "nothing";
}

void Value::Expected(const std::string& what, std::span<const std::string_view> known) const {
  Wrong(ShownText(*key_) + ": expected " + what + ", got " + Found() + DidYouMean(Word(), known));
}

void Value::WrongKey(const std::string& what) const {
  file_->mistakes.Add(key_place_, ShownText(*key_) + ": expected " + what);
}

void Value::UnknownKey(std::span<const std::string_view> known) const {
  WrongKey("one of the keys " + Joined(known) + DidYouMean(*key_, known));
}

Value Value::AtOrHere(std::string_view key) const {
  for (const YamlPair& pair : item_.node->pairs) {
    if (pair.key == key) return {pair.value, pair.key, pair.key_place, *file_};
  }
  return *this;
}

std::string Value::Text(std::size_t limit) const {
  if (IsText() && Word().size() <= limit) return Word();
  Expected("a text of at most " + std::to_string(limit) + " bytes");
  return {};
}

std::uint64_t Value::Number(std::uint64_t low, std::uint64_t high) const {
  std::uint64_t number = 0;
  if (IsText() && ReadNumber(Word(), high, number) && number >= low) return number;
  Expected("a number from " + std::to_string(low) + " to " + std::to_string(high));
  return low;
}

double Value::Decimal(double low, double high) const {
  double number = 0;
  if (IsText() && ReadDecimalNumber(Word(), number) && number >= low && number <= high) return number;
  char range[64];
  std::snprintf(range, sizeof range, "a number from %g to %g", low, high);
  Expected(range);
  return low;
}

std::int16_t Value::SignedWord() const {
  double number = 0;
  const bool good =
      IsText() && ReadDecimalNumber(Word(), number) && number >= INT16_MIN && number <= INT16_MAX;
  const auto whole = good ? static_cast<std::int16_t>(number) : std::int16_t{0};
  if (!good || whole != number) Expected("a whole number from -32768 to 32767");
  return whole;
}

std::string Value::Path() const {
  std::string path = Text(4096);
  const std::size_t slash = file_->name.rfind('/');
  if (path.empty() || path.starts_with('/') || slash == std::string::npos) return path;
  return file_->name.substr(0, slash + 1) + path;
}

std::optional<std::string> Value::FileBytes(std::size_t limit) const {
  const std::string path = Path();
  std::string bytes;
  if (!IsText()) return std::nullopt;
  if (file_->image_bytes > GetLimits().image_bytes) {
    Wrong(*key_ + ": expected at most " + std::to_string(GetLimits().image_bytes) +
          " bytes in all files together");
  } else if (IsNoRegularFile(path)) {
    Expected("a regular file");
  } else if (ReadFile(path.c_str(), bytes) != FileResult::kRead) {
    Expected("a file that can be read (" + std::string(std::strerror(errno)) + ")");
  } else if (bytes.size() > limit) {
    Expected("a file of at most " + std::to_string(limit) + " bytes");
  } else {
    file_->image_bytes += bytes.size();
    return bytes;
  }
  return std::nullopt;
}

bool Value::Bool() const {
  constexpr NamedNumber kWords[] = {{"true", 1}, {"false", 0}};
  if (Is("true") || Is("false")) return Is("true");
  Expected("true or false", NamesOf(kWords));
  return false;
}

ComponentVersion Value::Version() const {
  ComponentVersion version{};
  if (!Is("none") && (!IsText() || !ReadVersion(Word(), version)))
    Expected("a version like 9.12.01, or none");
  return version;
}

void Value::Octets(std::span<std::uint8_t> out) const {
  if (IsText() && ReadOctets(Word(), out)) return;
  Expected(std::to_string(out.size()) + " hexadecimal octets joined by ':'");
}

std::uint32_t Value::Choice(std::span<const NamedNumber> choices) const {
  for (const NamedNumber& choice : choices) {
    if (Is(choice.name)) return choice.number;
  }
  const std::vector<std::string_view> names = NamesOf(choices);
  Expected("one of " + Joined(names), names);
  return 0;
}

std::uint32_t Value::ChoiceOrNumber(std::span<const NamedNumber> choices, std::uint32_t limit) const {
  for (const NamedNumber& choice : choices) {
    if (Is(choice.name)) return choice.number;
  }
  std::uint64_t number = 0;
  if (IsText() && ReadNumber(Word(), limit, number)) return static_cast<std::uint32_t>(number);
  const std::vector<std::string_view> names = NamesOf(choices);
  Expected("one of " + Joined(names) + ", or a number up to " + std::to_string(limit), names);
  return 0;
}

std::uint32_t Value::Mask(std::span<const NamedNumber> bits) const {
  std::uint32_t mask = 0;
  EachItem([&](const Value& item) { mask |= item.Choice(bits); });
  return mask;
}

std::string ReadDocument(const std::string& name, const std::string& text,
                         const std::function<void(const Value&)>& read, const Limits& limits) {
  static const std::string kWholeFile = "file";
  YamlFile file{name, limits, {}, 0};
  YamlTree tree;
  if (tree.Read(text, limits, file.mistakes)) read(Value(tree.Root(), kWholeFile, {1, 1}, file));
  return file.mistakes.Report(name);
}

}  // namespace lab
