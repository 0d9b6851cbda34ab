// What the second implementations share: fields of records by their offsets, and the pieces of a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>

namespace reference {

// Little-endian fields of a record, by their offset in bytes.
class Record {
 public:
  explicit Record(const void* bytes) : bytes_(static_cast<const std::uint8_t*>(bytes)) {}

  std::uint8_t U8(std::size_t at) const { return bytes_[at]; }
  std::uint16_t U16(std::size_t at) const { return static_cast<std::uint16_t>(Number(at, 2)); }
  std::uint32_t U32(std::size_t at) const { return static_cast<std::uint32_t>(Number(at, 4)); }
  std::uint64_t U64(std::size_t at) const { return Number(at, 8); }
  bool Bit(std::size_t at, int bit) const { return (bytes_[at] >> bit & 1) != 0; }
  bool AllAre(std::size_t at, std::size_t size, std::uint8_t byte) const;
  // The text up to its terminator or the end of its field.
  std::string_view Text(std::size_t at, std::size_t size) const;
  // Octets in hexadecimal with `separator` between two.
  std::string Octets(std::size_t at, std::size_t size, std::string_view separator) const;
  std::string Name(std::size_t at) const { return Octets(at, 8, ":"); }
  std::string PortId(std::size_t at) const { return Octets(at, 3, ":"); }

 private:
  std::uint64_t Number(std::size_t at, std::size_t size) const;

  const std::uint8_t* bytes_;
};

std::string Decimal(std::uint64_t number, std::size_t digits = 1);
std::string Hex(std::uint64_t number, std::size_t digits = 1);
std::string UpperHex(std::uint64_t number, std::size_t digits);
inline const char* TrueFalse(bool value) {
  return value ? "true" : "false";
}

// A long text made of many short pieces, at most kMost characters. It copies them by itself: the program's
// std::string, which its objects share, has sanitizers.
class Pieces {
 public:
  static constexpr std::size_t kMost = 32768;

  void operator+=(char c) {
    if (size_ == kMost) std::abort();
    text_[size_++] = c;
  }
  void operator+=(std::string_view piece) {
    std::size_t at = size_;
    if (piece.size() > kMost - at) std::abort();
    for (const char c : piece) text_[at++] = c;
    size_ = at;
  }
  void operator+=(const char* piece) {
    while (*piece != '\0') *this += *piece++;
  }
  void Add(std::size_t count, char c) {
    for (; count > 0; --count) *this += c;
  }
  void AddHexByte(std::uint8_t byte) {
    *this += "0123456789abcdef"[byte >> 4];
    *this += "0123456789abcdef"[byte & 15];
  }
  std::size_t Size() const { return size_; }
  std::string Text() const { return {text_, size_}; }

 private:
  std::size_t size_ = 0;
  char text_[kMost];
};

// A report of at most `size` - 1 characters; what does not fit is left out whole.
class Report {
 public:
  explicit Report(std::size_t size) : size_(size) {}

  // Pieces that fit together or not at all.
  void Add(std::initializer_list<std::string_view> pieces);
  void Add(std::string_view piece) { Add({piece}); }
  // "label: value", the second form with six blanks in front.
  void First(std::string_view label, std::string_view value) { Add({label, ": ", value, "\n"}); }
  void Line(std::string_view label, std::string_view value) { Add({"      ", label, ": ", value, "\n"}); }
  void Number(std::string_view label, std::uint64_t value) { Line(label, Decimal(value)); }

  std::string Text() const { return text_.Text(); }

 private:
  std::size_t size_;
  Pieces text_;
};

// The names of a document, as the report's frame has them.
struct Frame {
  const char* structure;
  const char* field;
  const char* list_structure;
  const char* data_field = "Data";
};

// What a user reads of a text that counts as a format without arguments.
std::string WithoutConversions(std::string_view text);

// Whole documents in one of the two forms.
std::string ReportDocument(bool xml, const Frame& frame, std::string_view text);
std::string ErrorDocument(bool xml, const Frame& frame, std::string_view message);

// The parts of a document.
class Writer {
 public:
  // `room`: how much data is to come, for one piece of memory.
  explicit Writer(bool xml, std::size_t room = 0);

  void BeginStructure(std::string_view name);
  void BeginField(std::string_view name);
  void BeginList();
  void End(std::string_view what);  // "structure", "field" or "list"
  void StringField(std::string_view name, std::string_view value);
  void IntField(std::string_view name, std::uint32_t value);  // unsigned
  void Data(std::string_view text);
  // Ends the document.
  std::string Text();

 private:
  bool xml_;
  std::string text_;
};

}  // namespace reference
