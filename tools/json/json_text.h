// JSON's way of writing texts.
#pragma once

#include <string>
#include <string_view>

namespace zfc_json {

// How the bytes of a value count as characters.
enum class Encoding {
  kUtf8,
  kLatin1,  // byte N is the character U+00N: what is no UTF-8, and no byte is lost
};

// kUtf8 for a text that is well-formed UTF-8 (RFC 3629), else kLatin1.
Encoding EncodingOf(std::string_view text);

// Appends the text as a JSON string with its quotes. Quotes, backslashes and all control characters, those
// from U+007F to U+009F too, are escaped. A text that counts as UTF-8 must be well-formed, or a part of one
// that is.
void AppendJsonString(std::string& json, std::string_view text, Encoding encoding);

}  // namespace zfc_json
