#include "tools/lab/map/text_width.h"

#include <cstdint>

namespace map {
namespace {

constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

// Hundredths of the size, from the blank to the tilde.
constexpr std::uint8_t kWidths[] = {
    32, 40, 46, 84, 64, 95, 78, 27, 39,  39, 50, 84, 32, 36, 32, 34, 64, 64, 64, 64, 64, 64, 64, 64,
    64, 64, 34, 34, 84, 84, 84, 53, 100, 68, 69, 70, 77, 63, 58, 77, 75, 29, 29, 66, 56, 86, 75, 79,
    60, 79, 69, 63, 61, 73, 68, 99, 69,  61, 69, 39, 34, 39, 84, 50, 50, 61, 63, 55, 63, 62, 35, 63,
    63, 28, 28, 58, 28, 97, 63, 61, 63,  63, 41, 52, 39, 63, 59, 82, 59, 59, 52, 64, 34, 64, 84};
static_assert(sizeof kWidths == '~' - ' ' + 1);
constexpr int kMonoWidth = 61;
constexpr int kOtherWidth = 104;   // beyond ASCII
constexpr int kWidestWidth = 140;  // beyond the first plane: pictures

std::size_t CharacterSize(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc0 ? 2 : 1;
  return size < text.size() ? size : text.size();
}

int HundredthsOf(std::string_view character, Face face) {
  if (character.size() > 1) return character.size() == 4 ? kWidestWidth : kOtherWidth;
  if (face == Face::kMono) return kMonoWidth;
  if (character[0] < ' ' || character[0] > '~') return kOtherWidth;
  const int plain = kWidths[character[0] - ' '];
  return face == Face::kBold ? plain * 6 / 5 : plain;
}

int Hundredths(std::string_view text, Face face) {
  int width = 0;
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    width += HundredthsOf(text.substr(0, size), face);
    text.remove_prefix(size);
  }
  return width;
}

}  // namespace

int TextWidth(std::string_view clean, Face face, int size) {
  return (Hundredths(clean, face) * size + 99) / 100;
}

std::string Fitted(std::string_view clean, Face face, int size, int width) {
  if (TextWidth(clean, face, size) <= width) return std::string(clean);
  const int room = width * 100 / size - Hundredths(kEllipsis, face);
  std::string fitted;
  int used = 0;
  while (!clean.empty()) {
    const std::string_view character = clean.substr(0, CharacterSize(clean));
    used += HundredthsOf(character, face);
    if (used > room) break;
    fitted += character;
    clean.remove_prefix(character.size());
  }
  fitted.erase(fitted.find_last_not_of(' ') + 1);
  fitted += kEllipsis;
  return fitted;
}

std::vector<std::string> Wrapped(std::string_view clean, Face face, int size, int width, std::size_t lines) {
  std::vector<std::string> wrapped;
  while (!clean.empty()) {
    if (wrapped.size() + 1 == lines || TextWidth(clean, face, size) <= width) {
      wrapped.push_back(Fitted(clean, face, size, width));
      return wrapped;
    }
    std::size_t end = std::string_view::npos;  // the last blank that a line can end at
    for (std::size_t at = clean.find(' '); at != std::string_view::npos; at = clean.find(' ', at + 1)) {
      if (TextWidth(clean.substr(0, at), face, size) > width) break;
      end = at;
    }
    if (end == std::string_view::npos) end = clean.find(' ');
    wrapped.push_back(Fitted(clean.substr(0, end), face, size, width));
    if (end == std::string_view::npos) return wrapped;
    clean.remove_prefix(end + 1);
  }
  return wrapped;
}

}  // namespace map
