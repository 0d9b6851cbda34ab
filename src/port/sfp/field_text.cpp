#include "port/sfp/field_text.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>

#include "runtime/text.h"

namespace {

// Labels are right-aligned; what continues a field on a new line stands below its value.
constexpr const char* kLabel = "%30s: ";
constexpr const char* kFlagsLabel = "%31s";
constexpr std::string_view kNextFlag = "\n                               ";
constexpr std::string_view kNextDumpLine = "\n                                ";
constexpr std::size_t kDumpedBytesPerLine = 8;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

// A letter or digit of ASCII, whatever the locale.
bool IsLetterOrDigit(std::uint8_t byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

[[gnu::format(printf, 1, 2)]] std::string Formatted(const char* format, ...) {
  std::string text;
  va_list arguments;
  va_start(arguments, format);
  FormatStringV(text, format, arguments);
  va_end(arguments);
  return text;
}

std::string BitList(std::span<const SfpCode> table, std::uint8_t byte) {
  const std::string texts = BitTexts(table, byte, ", ");
  return texts.empty() ? Formatted("0x%x", byte) : texts;
}

std::string BitFlags(std::span<const SfpCode> table, std::uint8_t byte) {
  std::string flags;
  for (const SfpCode& row : table) {
    if (!flags.empty()) flags += kNextFlag;
    flags += Formatted(" -%s: 0x%x", row.text, (byte & row.value) != 0 ? 1U : 0U);
  }
  return flags;
}

std::string Number(SfpImage bytes) {
  std::string number = "0x";
  for (const std::uint8_t byte : bytes) number += Formatted("%02x", byte);
  return number;
}

std::string HexDump(SfpImage bytes) {
  std::string dump;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0 && i % kDumpedBytesPerLine == 0) dump += kNextDumpLine;
    dump += Formatted("0x%02x ", bytes[i]);
  }
  return dump;
}

// The bytes up to the first null byte or the end of the field.
std::string Ascii(SfpImage bytes) {
  const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
  if (std::none_of(bytes.begin(), end, IsLetterOrDigit)) return "0 ";
  return std::string(bytes.begin(), end) + ' ';
}

// What stands between the label and the line end. `bytes` is not empty.
std::string ValueText(const SfpField& field, SfpImage bytes) {
  switch (field.type) {
    case FIELD_BIT_LIST:
      return BitList(field.table, bytes.front());
    case FIELD_BIT_FLAGS:
      return BitFlags(field.table, bytes.front());
    case FIELD_BYTE_CODE:
      return std::string(TextOfValue(field.table, bytes.front()));
    case FIELD_HEX4:
    case FIELD_HEX2:
      return Number(bytes);
    case FIELD_HEX_DUMP:
      return HexDump(bytes);
    case FIELD_ASCII:
      return Ascii(bytes);
    case FIELD_HEADING:
    case FIELD_SKIP:
      return {};
  }
  return "Incorrect Data Type";
}

// The label with its padding; a field of an unknown type has none.
std::string LabelText(const SfpField& field) {
  if (field.type == FIELD_BIT_FLAGS) return Formatted(kFlagsLabel, field.name);
  const bool known = field.type >= FIELD_BIT_LIST && field.type <= FIELD_ASCII;
  return known ? Formatted(kLabel, field.name) : std::string();
}

std::span<const SfpField> TableOf(SfpImage image) {
  return IsQsfp(image) ? QsfpFieldTable : SfpFieldTable;
}

}  // namespace

std::string BitTexts(std::span<const SfpCode> table, std::uint8_t byte, std::string_view separator) {
  std::string texts;
  for (const SfpCode& row : table) {
    if ((byte & row.value) == 0 || IsBlank(row.text)) continue;
    if (!texts.empty()) texts += separator;
    texts += row.text;
  }
  return texts;
}

std::string_view TextOfValue(std::span<const SfpCode> table, std::uint8_t value) {
  for (const SfpCode& row : table) {
    if (row.value == value) return row.text;
  }
  return {};
}

std::string GetFieldText(SfpImage image, std::uint16_t offset, std::uint16_t size, SfpFieldType type) {
  const SfpImage bytes = BytesAt(image, offset, size);
  if (bytes.empty()) return {};
  std::string text = ValueText({offset, size, type, ""}, bytes);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::uint32_t HexTextToInt(std::string_view text) {
  constexpr std::string_view kPrefix = "0x";
  if (!text.starts_with(kPrefix)) return 0;
  text.remove_prefix(kPrefix.size());
  const char* const text_end = text.data() + text.size();
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text_end, number, 16);
  return error == std::errc() && end == text_end ? number : 0;
}

std::uint8_t GetFieldValue(SfpImage image, std::string_view name) {
  for (const SfpField& field : TableOf(image)) {
    if (name != field.name) continue;
    const SfpImage bytes = BytesAt(image, field.offset, field.size);
    return bytes.empty() ? std::uint8_t{0} : bytes.back();
  }
  return 0;
}

bool GetSFPTableBitValue(SfpImage image, std::string_view name, std::uint8_t mask) {
  return (GetFieldValue(image, name) & mask) != 0;
}

void DisplayField(ReportText& text, SfpImage image, const SfpField& field) {
  if (field.type == FIELD_HEADING) {
    text.Append(field.name);
    return text.Append("\n");
  }
  const SfpImage bytes = BytesAt(image, field.offset, field.size);
  if (field.type == FIELD_SKIP || bytes.empty()) return;
  text.Append(LabelText(field).c_str());
  text.Append(ValueText(field, bytes).c_str());
  text.Append("\n");
}

void DisplayFieldTable(ReportText& text, SfpImage image) {
  for (const SfpField& field : TableOf(image)) DisplayField(text, image, field);
}
