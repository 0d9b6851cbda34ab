// A reader of XML (its fifth edition, sections 2 and 3) for what the targets check: elements, attributes and
// character data. It refuses what is not well-formed, and also what it does not need: comments, sections,
// further declarations.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace xml {

// The length of the character at the front of the text; 0 for bytes that are no UTF-8 or no character of XML.
inline std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(text[at]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return lead >= 0x20 || lead == '\t' || lead == '\n' || lead == '\r' ? 1 : 0;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  std::uint32_t code = lead & (0x7FU >> length);
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0) != 0x80) return 0;
    code = code << 6 | (byte(at) & 0x3FU);
  }
  constexpr std::uint32_t kLeast[] = {0x80, 0x800, 0x10000};
  const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLeast[length - 2] || code > 0x10FFFF || is_surrogate || code == 0xFFFE || code == 0xFFFF)
    return 0;
  return length;
}

struct Element {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;
  std::string text;  // of all character data in it, without that of its children
  std::vector<Element> children;
};

// The root of a document, which ends with its end or a line end; nothing for one that is not well-formed.
class Reader {
 public:
  static std::optional<Element> Read(std::string_view document) {
    Reader reader(document);
    Element root;
    if (reader.Take("<?xml version=\"1.0\"")) {
      reader.Take(" encoding=\"utf-8\"");
      if (!reader.Take("?>")) return std::nullopt;
      reader.Take("\n");
    }
    if (!reader.TakeElement(root, 0)) return std::nullopt;
    reader.Take("\n");
    return reader.rest_.empty() ? std::optional(root) : std::nullopt;
  }

 private:
  explicit Reader(std::string_view text) : rest_(text) {}

  bool Take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  bool TakeName(std::string& name) {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-:_";
    const std::size_t length = std::min(rest_.find_first_not_of(kLetters), rest_.size());
    name = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return length > 0;
  }

  // Text up to `end` or, in character data, up to a tag.
  bool TakeText(char end, std::string& text) {
    constexpr std::pair<std::string_view, char> kEntities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    while (!rest_.empty() && rest_.front() != end) {
      if (rest_.front() == '<' || rest_.starts_with("]]>")) return false;
      if (rest_.front() == '&') {
        bool taken = false;
        for (const auto& [entity, character] : kEntities) {
          if (taken || !Take(entity)) continue;
          text += character;
          taken = true;
        }
        if (!taken) return false;
        continue;
      }
      const std::size_t length = CharacterLength(rest_);
      if (length == 0) return false;
      text += rest_.substr(0, length);
      rest_.remove_prefix(length);
    }
    return !rest_.empty();
  }

  bool TakeAttributes(Element& element) {
    while (Take(" ")) {
      std::string name;
      std::string value;
      if (!TakeName(name) || !Take("=\"") || !TakeText('"', value) || !Take("\"")) return false;
      for (const auto& attribute : element.attributes) {
        if (attribute.first == name) return false;
      }
      element.attributes.emplace_back(std::move(name), std::move(value));
    }
    return true;
  }

  bool TakeElement(Element& element, int depth) {
    constexpr int kDeepest = 64;
    if (depth > kDeepest || !Take("<") || !TakeName(element.name) || !TakeAttributes(element)) return false;
    if (Take("/>")) return true;
    if (!Take(">")) return false;
    for (;;) {
      if (!TakeText('<', element.text)) return false;
      if (rest_.starts_with("</")) break;
      if (!TakeElement(element.children.emplace_back(), depth + 1)) return false;
    }
    std::string name;
    return Take("</") && TakeName(name) && name == element.name && Take(">");
  }

  std::string_view rest_;
};

}  // namespace xml
