#include "tools/json/plain_number.h"

#include <algorithm>
#include <cstddef>

namespace zfc_json {
namespace {

// Units as the reports have them.
constexpr std::string_view kUnits[] = {
    "C", "V", "mA", "mW", "dBm", "Gbps", "Gtps", "ns", "ms", "meters", "MB", "Bytes", "MBytes/Sec",
};

struct LabelUnit {
  std::string_view ending;
  std::string_view unit;
};

constexpr LabelUnit kLabelUnits[] = {{" In Celsius", "C"}, {" In MB", "MB"}};

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool AllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// "4" of "4.50": digits without a leading zero.
bool IsWholePart(std::string_view text) {
  return AllDigits(text) && (text.size() == 1 || text[0] != '0');
}

bool IsDecimal(std::string_view text) {
  constexpr std::size_t kMostDigits = 18;  // ahead of the point and after it
  if (text.starts_with('-')) text.remove_prefix(1);
  const std::size_t point = text.find('.');
  if (point > kMostDigits) return false;  // also without a point
  const std::string_view after = text.substr(point + 1);
  return IsWholePart(text.substr(0, point)) && AllDigits(after) && after.size() <= kMostDigits;
}

// "C" of "(C)".
std::string_view WithoutParentheses(std::string_view text) {
  if (text.size() > 2 && text.front() == '(' && text.back() == ')') return text.substr(1, text.size() - 2);
  return text;
}

std::string_view UnitOfLabel(std::string_view label) {
  for (const LabelUnit& row : kLabelUnits) {
    if (label.ends_with(row.ending)) return row.unit;
  }
  return {};
}

}  // namespace

bool IsWholeNumber(std::string_view text) {
  constexpr std::string_view kMost = "18446744073709551615";
  constexpr std::string_view kMostNegative = "9223372036854775808";
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::string_view most = negative ? kMostNegative : kMost;
  if (!IsWholePart(text) || text.size() > most.size()) return false;
  if (negative && text == "0") return false;
  return text.size() < most.size() || text <= most;
}

PlainNumber PlainNumberOf(std::string_view label, std::string_view value) {
  const std::size_t blank = value.find(' ');
  const std::string_view number = value.substr(0, blank);
  if (!IsWholeNumber(number) && !IsDecimal(number)) return {};
  if (blank == std::string_view::npos) return {number, UnitOfLabel(label)};
  const std::string_view unit = WithoutParentheses(value.substr(blank + 1));
  const bool known = std::find(std::begin(kUnits), std::end(kUnits), unit) != std::end(kUnits);
  return known ? PlainNumber{number, unit} : PlainNumber{};
}

}  // namespace zfc_json
