#include "reference/text.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace reference {

namespace {

constexpr const char* kLower = "0123456789abcdef";
constexpr const char* kUpper = "0123456789ABCDEF";
constexpr const char* kStars = "****************************************************\n";

std::string Digits(std::uint64_t number, unsigned base, const char* alphabet, std::size_t least) {
  char reversed[24];
  std::size_t count = 0;
  do {
    reversed[count++] = alphabet[number % base];
    number /= base;
  } while (number != 0);
  while (count < least) reversed[count++] = '0';
  std::string text(count, '0');
  for (std::size_t i = 0; i < count; ++i) text[i] = reversed[count - 1 - i];
  return text;
}

bool IsOneOf(char c, const char* set) {
  return c != '\0' && std::strchr(set, c) != nullptr;
}

// The length of the conversion at the front of `text`, which begins with a percent sign; 0 where there is
// none.
std::size_t ConversionLength(std::string_view text) {
  const auto at = [text](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
  const auto skip_number = [&at](std::size_t i) {
    if (at(i) == '*') return i + 1;
    while (at(i) >= '0' && at(i) <= '9') ++i;
    return i;
  };
  std::size_t i = 1;
  while (IsOneOf(at(i), "-+ #0'")) ++i;
  i = skip_number(i);
  if (at(i) == '.') i = skip_number(i + 1);
  if ((at(i) == 'h' || at(i) == 'l') && at(i + 1) == at(i)) {
    i += 2;
  } else if (IsOneOf(at(i), "hljztL")) {
    ++i;
  }
  return IsOneOf(at(i), "dioxXuceEfFgGaAspnmCS") ? i + 1 : 0;
}

}  // namespace

bool Record::AllAre(std::size_t at, std::size_t size, std::uint8_t byte) const {
  for (std::size_t i = 0; i < size; ++i) {
    if (bytes_[at + i] != byte) return false;
  }
  return true;
}

std::string_view Record::Text(std::size_t at, std::size_t size) const {
  std::size_t length = 0;
  while (length < size && bytes_[at + length] != 0) ++length;
  return {reinterpret_cast<const char*>(bytes_) + at, length};
}

std::string Record::Octets(std::size_t at, std::size_t size, std::string_view separator) const {
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    if (i > 0) text += separator;
    text += kLower[bytes_[at + i] >> 4];
    text += kLower[bytes_[at + i] & 15];
  }
  return text;
}

std::uint64_t Record::Number(std::size_t at, std::size_t size) const {
  std::uint64_t number = 0;
  for (std::size_t i = size; i-- > 0;) number = number * 256 + bytes_[at + i];
  return number;
}

std::string Decimal(std::uint64_t number, std::size_t digits) {
  return Digits(number, 10, kLower, digits);
}

std::string Hex(std::uint64_t number, std::size_t digits) {
  return Digits(number, 16, kLower, digits);
}

std::string UpperHex(std::uint64_t number, std::size_t digits) {
  return Digits(number, 16, kUpper, digits);
}

void Report::Add(std::initializer_list<std::string_view> pieces) {
  std::size_t size = text_.Size();
  for (const std::string_view piece : pieces) size += piece.size();
  if (size >= size_) return;
  for (const std::string_view piece : pieces) text_ += piece;
}

std::string WithoutConversions(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t percent = std::min(text.find('%', i), text.size());
    result += text.substr(i, percent - i);
    i = percent;
    if (i == text.size()) break;
    if (text.substr(i, 2) == "%%") {
      result += '%';
      i += 2;
    } else if (const std::size_t length = ConversionLength(text.substr(i)); length > 0) {
      i += length;
    } else {
      result += text[i++];
    }
  }
  return result;
}

Writer::Writer(bool xml, std::size_t room) : xml_(xml) {
  constexpr std::size_t kFrame = 600;
  text_.reserve(room + kFrame);
  text_ = xml ? "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n" : kStars;
}

void Writer::BeginStructure(std::string_view name) {
  text_ += xml_ ? "<structure typeName=\"" : "";
  text_ += name;
  text_ += xml_ ? "\">\n" : ":\n";
}

void Writer::BeginField(std::string_view name) {
  text_ += xml_ ? "<field name=\"" : "";
  text_ += name;
  text_ += xml_ ? "\">\n" : ": ";
}

void Writer::BeginList() {
  if (xml_) text_ += "<list type=\"structure\">\n";
}

void Writer::End(std::string_view what) {
  if (!xml_) return;
  text_ += "</";
  text_ += what;
  text_ += ">\n";
}

void Writer::StringField(std::string_view name, std::string_view value) {
  BeginField(name);
  text_ += xml_ ? "<string>" : "";
  text_ += value;
  text_ += xml_ ? "</string></field>\n" : "\n";
}

void Writer::IntField(std::string_view name, std::uint32_t value) {
  BeginField(name);
  text_ += xml_ ? "<int>" : "";
  text_ += Decimal(value);
  text_ += xml_ ? "</int></field>\n" : "\n";
}

void Writer::Data(std::string_view text) {
  text_ += xml_ ? "<string>" : "";
  text_ += text;
  text_ += xml_ ? "</string>" : "";
}

std::string Writer::Text() {
  text_ += xml_ ? "</output>\n" : kStars;
  return std::move(text_);
}

std::string ReportDocument(bool xml, const Frame& frame, std::string_view text) {
  Writer writer(xml, text.size());
  writer.BeginStructure(frame.structure);
  writer.StringField("Message", "Success");
  writer.BeginField(frame.field);
  writer.BeginList();
  writer.BeginStructure(frame.list_structure);
  writer.BeginField(frame.data_field);
  writer.Data(WithoutConversions(text));
  writer.End("field");
  writer.End("structure");
  writer.End("list");
  writer.End("field");
  writer.End("structure");
  return writer.Text();
}

std::string ErrorDocument(bool xml, const Frame& frame, std::string_view message) {
  Writer writer(xml);
  writer.BeginStructure(frame.structure);
  writer.StringField("Message", message);
  writer.BeginField(frame.field);
  writer.BeginList();
  writer.End("list");
  writer.End("field");
  writer.End("structure");
  return writer.Text();
}

}  // namespace reference
