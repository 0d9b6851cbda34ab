// Reads fields of a module's image, by place or by name, and shows all of them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/report_text.h"
#include "port/sfp/sfp_field.h"
#include "port/sfp/sfp_image.h"

// The texts of the rows whose bits are set in `byte`, in the order of the table, joined by `separator`. A
// text that is only blanks adds nothing.
std::string BitTexts(std::span<const SfpCode> table, std::uint8_t byte, std::string_view separator);

// The text of the row with this value, empty when there is none.
std::string_view TextOfValue(std::span<const SfpCode> table, std::uint8_t value);

// What DisplayField shows of such a field, without a code table, between its label and the line end, without
// trailing blanks: "0x01f4" for FIELD_HEX2. Empty when the field reaches past the image.
std::string GetFieldText(SfpImage image, std::uint16_t offset, std::uint16_t size, SfpFieldType type);

// Reads a text of GetFieldText such as "0x01f4"; 0 for any text that is no such number of at most 32 bits.
std::uint32_t HexTextToInt(std::string_view text);

// The last byte of the first field of the image's table that has this name; 0 when there is none, and when
// the field reaches past the image.
std::uint8_t GetFieldValue(SfpImage image, std::string_view name);

// Whether that byte has a bit of `mask` set.
bool GetSFPTableBitValue(SfpImage image, std::string_view name, std::uint8_t mask);

// Appends one field. A field that reaches past the image shows nothing.
void DisplayField(ReportText& text, SfpImage image, const SfpField& field);

// Appends all fields of the image's table.
void DisplayFieldTable(ReportText& text, SfpImage image);
