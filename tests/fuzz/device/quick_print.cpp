// The C library's printing of texts, which is most of what commands print, without its reading of each text
// byte by byte under the sanitizer. Texts and places are checked as before, by strlen and memcpy.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

extern "C" {
// The sanitizer's own, for all other formats. NOLINTBEGIN(bugprone-reserved-identifier)
int __interceptor_vfprintf(std::FILE* stream, const char* format, va_list arguments);
int __interceptor_vsnprintf(char* buffer, std::size_t size, const char* format, va_list arguments);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

bool HasOnlyTexts(const char* format) {
  for (const char* percent = std::strchr(format, '%'); percent != nullptr;
       percent = std::strchr(percent + 2, '%')) {
    if (percent[1] != 's') return false;
  }
  return true;
}

// Gives `put` the pieces of a format that has only texts, in order.
template <class Put>
void PutTexts(const char* format, va_list arguments, Put put) {
  std::string_view rest = format;
  for (std::size_t percent = rest.find('%'); percent != std::string_view::npos; percent = rest.find('%')) {
    put(rest.substr(0, percent));
    const char* const text = va_arg(arguments, const char*);
    put(text != nullptr ? std::string_view(text) : std::string_view("(null)"));
    rest.remove_prefix(percent + 2);
  }
  put(rest);
}

}  // namespace

extern "C" {
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): those of the C library are reserved.

int vfprintf(std::FILE* stream, const char* format, va_list arguments) {
  if (!HasOnlyTexts(format)) return __interceptor_vfprintf(stream, format, arguments);
  std::size_t length = 0;
  PutTexts(format, arguments, [&](std::string_view piece) {
    fwrite_unlocked(piece.data(), 1, piece.size(), stream);
    length += piece.size();
  });
  return static_cast<int>(length);
}

int vsnprintf(char* buffer, std::size_t size, const char* format, va_list arguments) noexcept {
  if (!HasOnlyTexts(format)) return __interceptor_vsnprintf(buffer, size, format, arguments);
  std::size_t length = 0;
  PutTexts(format, arguments, [&](std::string_view piece) {
    const std::size_t room = length + 1 < size ? size - 1 - length : 0;
    if (room > 0) std::memcpy(buffer + length, piece.data(), std::min(piece.size(), room));
    length += piece.size();
  });
  if (size > 0) buffer[std::min(length, size - 1)] = '\0';
  return static_cast<int>(length);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
}
