#include "host_file/yaml_value.h"

#include <cstdio>

#include "base/text.h"

namespace lab {
namespace {

std::string NamesOf(std::span<const NamedNumber> choices) {
  std::string names;
  for (const NamedNumber& choice : choices) names += (names.empty() ? "" : ", ") + std::string(choice.name);
  return names;
}

}  // namespace

std::string Value::Found() const {
  if (node_.IsScalar()) return "'" + node_.Scalar() + "'";
  if (node_.IsSequence()) return "a list";
  if (node_.IsMap()) return "a map";
  return "nothing";
}

void Value::Expected(const std::string& what) const {
  throw Mistake{line_, key_ + ": expected " + what + ", got " + Found()};
}

std::string Value::Text(std::size_t limit) const {
  if (!node_.IsScalar() || node_.Scalar().size() > limit) {
    Expected("a text of at most " + std::to_string(limit) + " bytes");
  }
  return node_.Scalar();
}

std::uint64_t Value::Number(std::uint64_t low, std::uint64_t high) const {
  std::uint64_t number = 0;
  if (!node_.IsScalar() || !ReadNumber(node_.Scalar(), high, number) || number < low) {
    Expected("a number from " + std::to_string(low) + " to " + std::to_string(high));
  }
  return number;
}

double Value::Decimal(double low, double high) const {
  double number = 0;
  if (!node_.IsScalar() || !ReadDecimalNumber(node_.Scalar(), number) || number < low || number > high) {
    char range[64];
    std::snprintf(range, sizeof range, "a number from %g to %g", low, high);
    Expected(range);
  }
  return number;
}

std::string Value::Path() const {
  std::string path = Text(4096);
  const std::size_t slash = document_.rfind('/');
  if (path.starts_with('/') || slash == std::string_view::npos) return path;
  return std::string(document_.substr(0, slash + 1)) + path;
}

std::int16_t Value::SignedWord() const {
  const double number = Decimal(INT16_MIN, INT16_MAX);
  const auto whole = static_cast<std::int16_t>(number);
  if (whole != number) Expected("a whole number from -32768 to 32767");
  return whole;
}

bool Value::Bool() const {
  if (Is("true")) return true;
  if (!Is("false")) Expected("true or false");
  return false;
}

ComponentVersion Value::Version() const {
  ComponentVersion version{};
  if (!Is("none") && (!node_.IsScalar() || !ReadVersion(node_.Scalar(), version))) {
    Expected("a version like 9.12.01, or none");
  }
  return version;
}

void Value::Octets(std::span<std::uint8_t> out) const {
  if (!node_.IsScalar() || !ReadOctets(node_.Scalar(), out)) {
    Expected(std::to_string(out.size()) + " hexadecimal octets joined by ':'");
  }
}

std::uint32_t Value::Choice(std::span<const NamedNumber> choices) const {
  for (const NamedNumber& choice : choices) {
    if (Is(choice.name)) return choice.number;
  }
  Expected("one of " + NamesOf(choices));
}

std::uint32_t Value::ChoiceOrNumber(std::span<const NamedNumber> choices, std::uint32_t limit) const {
  for (const NamedNumber& choice : choices) {
    if (Is(choice.name)) return choice.number;
  }
  std::uint64_t number = 0;
  if (!node_.IsScalar() || !ReadNumber(node_.Scalar(), limit, number)) {
    Expected("one of " + NamesOf(choices) + ", or a number up to " + std::to_string(limit));
  }
  return static_cast<std::uint32_t>(number);
}

std::uint32_t Value::Mask(std::span<const NamedNumber> bits) const {
  std::uint32_t mask = 0;
  EachItem([&](const Value& item) { mask |= item.Choice(bits); });
  return mask;
}

}  // namespace lab
