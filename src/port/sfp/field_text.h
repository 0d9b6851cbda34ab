// Shows the fields of a module's image, and looks fields up by place or by name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "framework/report_text.h"
#include "port/sfp/sfp_field.h"
#include "port/sfp/sfp_image.h"

// What DisplayField shows of such a field, without a code table, between its label and the line end, without
// trailing blanks: "0x01f4" for FIELD_HEX2. Empty when the range reaches past the image.
std::string GetFieldText(SfpImage image, SfpRange range, SfpFieldType type);

// Reads a text of GetFieldText such as "0x01f4"; 0 for any text that is no such number of at most 32 bits.
std::uint32_t HexTextToInt(std::string_view text);

// The last byte of the first field of the image's table that has this name; 0 when there is none, and when
// the field reaches past the image. For names known at compile time there is NumberNamed.
std::uint8_t GetFieldValue(SfpImage image, std::string_view name);

// Whether that byte has a bit of `mask` set.
bool GetSFPTableBitValue(SfpImage image, std::string_view name, std::uint8_t mask);

// Appends one field. A field that reaches past the image shows nothing.
void DisplayField(ReportText& text, SfpImage image, const SfpField& field);

// Appends all fields of the image's table.
void DisplayFieldTable(ReportText& text, SfpImage image);
