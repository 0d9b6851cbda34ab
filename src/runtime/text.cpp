#include "runtime/text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::string_view kFlags = "-+ #0'";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kConversions = "diouxXeEfFgGaAcspnmCS";

// A text that is cut from the front as its parts are recognised.
class ConversionScanner {
 public:
  explicit ConversionScanner(std::string_view rest) : rest_(rest) {}

  // Skips a conversion whose percent sign is gone already. Returns whether it is complete and valid.
  bool SkipConversion() {
    SkipAll(kFlags);
    SkipNumber();
    if (Skip(".")) SkipNumber();
    SkipLengthModifier();
    return SkipOne(kConversions);
  }

  std::string_view Rest() const { return rest_; }

 private:
  bool Skip(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  bool SkipOne(std::string_view characters) {
    if (rest_.empty() || characters.find(rest_.front()) == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void SkipAll(std::string_view characters) {
    while (SkipOne(characters)) {
    }
  }

  void SkipNumber() {
    if (!Skip("*")) SkipAll(kDigits);
  }

  void SkipLengthModifier() {
    for (std::string_view modifier : {"hh", "h", "ll", "l", "j", "z", "t", "L"}) {
      if (Skip(modifier)) return;
    }
  }

  std::string_view rest_;
};

}  // namespace

void FormatString(std::string& target, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  FormatStringV(target, format, arguments);
  va_end(arguments);
}

void FormatStringV(std::string& target, const char* format, std::va_list arguments) {
  // On the stack, so that an argument of a megabyte is cut before any memory is taken for it.
  char buffer[kFormatLimit + 1];
  const int length = format == nullptr ? -1 : std::vsnprintf(buffer, sizeof buffer, format, arguments);
  if (length < 0) {
    target.clear();
    return;
  }
  target.assign(buffer, std::min(static_cast<std::size_t>(length), kFormatLimit));
}

int BoundedAppend(char* buffer, std::size_t size, const char* text) {
  if (buffer == nullptr || text == nullptr || size == 0) return kInvalidArgument;
  const std::size_t used = strnlen(buffer, size);
  if (used == size) return kInvalidArgument;
  const std::size_t room = size - used;
  const std::size_t length = strnlen(text, room);
  if (length == room) return kRangeError;
  std::memmove(buffer + used, text, length);
  buffer[used + length] = '\0';
  return kTextDone;
}

int BoundedCopy(char* target, std::size_t size, const char* text, std::size_t count) {
  if (target == nullptr || text == nullptr || size == 0 || count == 0) return kInvalidArgument;
  // The count itself must fit, not only the characters there are: this is deliberate.
  const std::size_t needed = count == kWholeText ? strnlen(text, size) : count;
  if (needed >= size) {
    target[0] = '\0';
    return kInvalidArgument;
  }
  const std::size_t length = strnlen(text, needed);
  std::memmove(target, text, length);
  target[length] = '\0';
  return kTextDone;
}

std::string DropConversions(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (true) {
    const std::size_t percent = text.find('%');
    result.append(text.substr(0, percent));
    if (percent == std::string_view::npos) return result;
    text.remove_prefix(percent + 1);
    ConversionScanner scanner(text);
    if (scanner.SkipConversion()) {
      text = scanner.Rest();
      continue;
    }
    result.push_back('%');
    if (text.starts_with('%')) text.remove_prefix(1);
  }
}
