#include "port/sfp/field_text.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "framework/table.h"
#include "port/sfp/qsfp_field_table.h"
#include "port/sfp/sfp_field_table.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

// Labels are right-aligned. A value of several lines continues below its beginning.
constexpr std::size_t kLabelWidth = 30;
constexpr std::size_t kFlagsLabelWidth = 31;
constexpr std::string_view kNextFlag = "\n                               ";
constexpr std::string_view kNextDumpLine = "\n                                ";
constexpr std::size_t kDumpedBytesPerLine = 8;

constexpr std::string_view kHexPrefix = "0x";
constexpr std::string_view kHexDigits = "0123456789abcdef";

// These append to a line.

void AppendRightAligned(std::string& line, std::string_view text, std::size_t width) {
  if (text.size() < width) line.append(width - text.size(), ' ');
  line += text;
}

void AppendTwoDigits(std::string& line, std::uint8_t byte) {
  line += kHexDigits[byte >> 4];
  line += kHexDigits[byte & 0xF];
}

// "0x5" for 5.
void AppendShortHex(std::string& line, std::uint8_t byte) {
  line += kHexPrefix;
  if (byte > 0xF) line += kHexDigits[byte >> 4];
  line += kHexDigits[byte & 0xF];
}

void AppendBitList(std::string& line, std::span<const SfpCode> table, std::uint8_t byte) {
  JoinedTexts texts(", ");
  texts.AddBits(table, byte);
  if (texts.Text().empty()) return AppendShortHex(line, byte);
  line += texts.Text();
}

void AppendBitFlags(std::string& line, std::span<const SfpCode> table, std::uint8_t byte) {
  std::string_view separator;
  for (const SfpCode& row : table) {
    line += separator;
    line += " -";
    line += row.text;
    line += (byte & row.value) != 0 ? ": 0x1" : ": 0x0";
    separator = kNextFlag;
  }
}

void AppendNumber(std::string& line, Bytes bytes) {
  line += kHexPrefix;
  for (const std::uint8_t byte : bytes) AppendTwoDigits(line, byte);
}

void AppendHexDump(std::string& line, Bytes bytes) {
  std::size_t dumped = 0;
  for (const std::uint8_t byte : bytes) {
    if (dumped > 0 && dumped % kDumpedBytesPerLine == 0) line += kNextDumpLine;
    line += kHexPrefix;
    AppendTwoDigits(line, byte);
    line += ' ';
    ++dumped;
  }
}

// A letter or digit of ASCII, whatever the locale.
bool IsLetterOrDigit(std::uint8_t byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

// A text ends at the first null byte or with its field.
void AppendAscii(std::string& line, Bytes bytes) {
  const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
  if (std::any_of(bytes.begin(), end, IsLetterOrDigit)) {
    line.append(bytes.begin(), end);
  } else {
    line += '0';
  }
  line += ' ';
}

// What is between the label and the line end. `bytes` is not empty.
void AppendValue(std::string& line, SfpFieldType type, std::span<const SfpCode> table, Bytes bytes) {
  switch (type) {
    case FIELD_BIT_LIST:
      return AppendBitList(line, table, bytes.front());
    case FIELD_BIT_FLAGS:
      return AppendBitFlags(line, table, bytes.front());
    case FIELD_BYTE_CODE:
      line += TextOfValue(table, bytes.front());
      return;
    case FIELD_HEX4:
    case FIELD_HEX2:
      return AppendNumber(line, bytes);
    case FIELD_HEX_DUMP:
      return AppendHexDump(line, bytes);
    case FIELD_ASCII:
      return AppendAscii(line, bytes);
    case FIELD_HEADING:
    case FIELD_SKIP:
      return;
  }
  line += "Incorrect Data Type";
}

// A field of an unknown type has no label.
void AppendLabel(std::string& line, const SfpField& field) {
  if (field.type == FIELD_BIT_FLAGS) return AppendRightAligned(line, field.name, kFlagsLabelWidth);
  if (field.type < FIELD_BIT_LIST || field.type > FIELD_ASCII) return;
  AppendRightAligned(line, field.name, kLabelWidth);
  line += ": ";
}

void AppendField(std::string& line, SfpImage image, const SfpField& field) {
  if (field.type == FIELD_SKIP) return;
  if (field.type == FIELD_HEADING) {
    line += field.name;
  } else {
    const Bytes bytes = image.Bytes(RangeOf(field));
    if (bytes.empty()) return;
    AppendLabel(line, field);
    AppendValue(line, field.type, field.table, bytes);
  }
  line += '\n';
}

Table<SfpField> FieldsOf(SfpImage image) {
  return IsQsfp(image) ? TableOf<QsfpFieldTable>() : TableOf<SfpFieldTable>();
}

}  // namespace

std::string GetFieldText(SfpImage image, SfpRange range, SfpFieldType type) {
  const Bytes bytes = image.Bytes(range);
  std::string text;
  if (bytes.empty()) return text;
  AppendValue(text, type, {}, bytes);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::uint32_t HexTextToInt(std::string_view text) {
  if (!text.starts_with(kHexPrefix)) return 0;
  text.remove_prefix(kHexPrefix.size());
  const char* const text_end = text.data() + text.size();
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text_end, number, 16);
  return error == std::errc() && end == text_end ? number : 0;
}

std::uint8_t GetFieldValue(SfpImage image, std::string_view name) {
  for (const SfpField& field : FieldsOf(image)) {
    if (name != field.name) continue;
    const Bytes bytes = image.Bytes(RangeOf(field));
    return bytes.empty() ? std::uint8_t{0} : bytes.back();
  }
  return 0;
}

bool GetSFPTableBitValue(SfpImage image, std::string_view name, std::uint8_t mask) {
  return (GetFieldValue(image, name) & mask) != 0;
}

void DisplayField(ReportText& text, SfpImage image, const SfpField& field) {
  std::string line;
  AppendField(line, image, field);
  text.Append(line.c_str());
}

void DisplayFieldTable(ReportText& text, SfpImage image) {
  std::string line;  // one for all fields, so that they share its memory
  for (const SfpField& field : FieldsOf(image)) {
    line.clear();
    AppendField(line, image, field);
    text.Append(line.c_str());
  }
}
