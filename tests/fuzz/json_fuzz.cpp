// Documents as JSON, of any bytes. What is read back of documents that the program prints is in
// document_fuzz.cpp.
//
// Oracle: a reader of JSON of its own. Whatever bytes come in, what goes out is one valid JSON value a line,
// as many as there were complete documents; a document that can't be followed leaves nothing. In pieces of
// any size the bytes mean the same.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tools/json/conversion.h"

namespace {

using zfc_json::Conversion;
using zfc_json::WriterOptions;

void Require(bool condition) {
  if (!condition) std::abort();
}

// A JSON reader of its own (RFC 8259), that ends the run at the first mistake. Also what the format leaves to
// the reader is refused: bytes that are no UTF-8, control characters of any kind, two fields of one name.
class Validator {
 public:
  explicit Validator(std::string_view text) : text_(text) {}

  // One value and nothing else.
  void Value() {
    AnyValue();
    Require(text_.empty());
  }

 private:
  static bool IsDigit(char character) { return character >= '0' && character <= '9'; }

  char Front() const {
    Require(!text_.empty());
    return text_.front();
  }

  char Take() {
    const char character = Front();
    text_.remove_prefix(1);
    return character;
  }

  void Take(std::string_view word) {
    for (const char character : word) Require(Take() == character);
  }

  bool TakeIf(char character) {
    const bool is_next = !text_.empty() && text_.front() == character;
    if (is_next) text_.remove_prefix(1);
    return is_next;
  }

  void AnyValue() {
    switch (Front()) {
      case '{':
        return Object();
      case '[':
        return Array();
      case '"':
        String();
        return;
      case 't':
        return Take("true");
      case 'f':
        return Take("false");
      case 'n':
        return Take("null");
      default:
        return Number();
    }
  }

  void Object() {
    Take("{");
    if (TakeIf('}')) return;
    std::vector<std::string_view> names;
    do {
      names.push_back(String());
      Require(std::count(names.begin(), names.end(), names.back()) == 1);
      Take(":");
      AnyValue();
    } while (TakeIf(','));
    Take("}");
  }

  void Array() {
    Take("[");
    if (TakeIf(']')) return;
    do AnyValue();
    while (TakeIf(','));
    Take("]");
  }

  void Digits() {
    Require(IsDigit(Take()));
    while (!text_.empty() && IsDigit(text_.front())) Take();
  }

  void Number() {
    TakeIf('-');
    if (!TakeIf('0')) Digits();
    if (TakeIf('.')) Digits();
  }

  // The string between its quotes, as it is written.
  std::string_view String() {
    Take("\"");
    const std::string_view begin = text_;
    while (Front() != '"') Character();
    const std::string_view string = begin.substr(0, begin.size() - text_.size());
    Take("\"");
    return string;
  }

  void Character() {
    const auto lead = static_cast<std::uint8_t>(Take());
    if (lead == '\\') return Escape();
    Require(lead >= 0x20 && lead != 0x7F);
    if (lead < 0x80) return;
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    std::uint32_t code = lead & (0x3FU >> following);
    for (int i = 0; i < following; ++i) {
      const auto byte = static_cast<std::uint8_t>(Take());
      Require((byte & 0xC0) == 0x80);
      code = code << 6 | (byte & 0x3FU);
    }
    constexpr std::uint32_t kLeast[] = {0xA0, 0x800, 0x10000};
    Require(code >= kLeast[following - 1] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF));
  }

  void Escape() {
    constexpr std::string_view kShort = "\"\\ntr";
    const char character = Take();
    if (kShort.find(character) != std::string_view::npos) return;
    Require(character == 'u');
    for (int i = 0; i < 4; ++i)
      Require(std::string_view("0123456789abcdef").find(Take()) != std::string_view::npos);
  }

  std::string_view text_;
};

struct Converted {
  std::string json;
  Conversion conversion;
};

Converted Run(std::string_view input, std::size_t piece, const WriterOptions& options) {
  zfc_json::TextSource source(input, piece);
  zfc_json::TextSink sink;
  const Conversion conversion = Convert(source, sink, options);
  return {sink.Text(), conversion};
}

// How many lines there are, each of which must be a value.
std::uint64_t ValidLines(std::string_view json) {
  std::uint64_t lines = 0;
  while (!json.empty()) {
    const std::size_t end = json.find('\n');
    Require(end != std::string_view::npos);
    Validator(json.substr(0, end)).Value();
    json.remove_prefix(end + 1);
    ++lines;
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t piece = data[0] + std::size_t{1};
  const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
  const WriterOptions all;
  const Converted whole = Run(input, size, all);
  Require(ValidLines(whole.json) == whole.conversion.documents);
  Require(whole.conversion.documents > 0 || whole.conversion.Result(false) == zfc_json::kNoDocument);

  const Converted pieces = Run(input, piece, all);
  Require(pieces.json == whole.json && pieces.conversion.problem == whole.conversion.problem);

  const WriterOptions half = piece % 2 == 0 ? WriterOptions{.raw = false} : WriterOptions{.parsed = false};
  Require(ValidLines(Run(input, size, half).json) == whole.conversion.documents);
  const Converted stream = Run(input, piece, {.stream = true});
  ValidLines(stream.json);
  Require(stream.conversion.documents == whole.conversion.documents);
  Require(stream.conversion.Result(true) == whole.conversion.Result(true));
  return 0;
}
