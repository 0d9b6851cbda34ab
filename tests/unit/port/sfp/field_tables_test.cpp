// What every row of the tables must keep, whatever it says.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "port/sfp/field_text.h"
#include "sfp_test_image.h"

namespace {

std::size_t SizeOf(SfpFieldType type, std::size_t size) {
  switch (type) {
    case FIELD_BIT_LIST:
    case FIELD_BIT_FLAGS:
    case FIELD_BYTE_CODE:
      return 1;
    case FIELD_HEX2:
      return 2;
    case FIELD_HEX4:
      return 4;
    default:
      return size;
  }
}

void CheckTable(std::span<const SfpField> table, std::size_t first, std::size_t end) {
  std::size_t behind = first;
  for (const SfpField& field : table) {
    SCOPED_TRACE(std::string(field.name) + " at " + std::to_string(field.offset));
    EXPECT_EQ(field.type == FIELD_HEADING, field.offset == kNoOffset);
    if (field.type == FIELD_HEADING) continue;
    EXPECT_GE(field.offset, behind) << "rows stand in the order of the image";
    behind = field.offset + std::size_t{field.size};
    EXPECT_LE(behind, end);
    EXPECT_EQ(field.size, SizeOf(field.type, field.size));
    const bool has_bits = field.type == FIELD_BIT_LIST || field.type == FIELD_BIT_FLAGS;
    EXPECT_TRUE(field.type == FIELD_BYTE_CODE || field.table.empty() == !has_bits);
    std::set<unsigned> values;
    for (const SfpCode& row : field.table) {
      EXPECT_LE(row.value, 0xFF);
      EXPECT_TRUE(values.insert(row.value).second) << row.text << " stands twice";
      EXPECT_TRUE(!has_bits || (row.value & (row.value - 1)) == 0) << row.text << " is no single bit";
    }
  }
}

TEST(SfpFieldTable, RowsLieInTheImageInOrder) {
  EXPECT_EQ(SfpFieldTable.size(), 127U);
  CheckTable(SfpFieldTable, 0, 512);
}

TEST(QsfpFieldTable, RowsLieInUpperPage0) {
  EXPECT_EQ(QsfpFieldTable.size(), 40U);
  CheckTable(QsfpFieldTable, 128, 256);
}

// Byte 129 of SFF-8636: power class in bits 7 and 6, or in bits 1 and 0 for the classes 5 to 7; CDR in Rx in
// bit 2, in Tx in bit 3.
TEST(ExtendedIdentifierCodesQsfp, SaysWhatTheBitsSay) {
  const char* const classes[] = {"Power Class 1 (1.5 W max)", "Power Class 2 (2.0 W max)",
                                 "Power Class 3 (2.5 W max)", "Power Class 4 (3.5 W max)",
                                 "Power Class 5 (4.0 W max)", "Power Class 6 (4.5 W max)",
                                 "Power Class 7 (5.0 W max)"};
  const char* const recovery[] = {"", ", CDR in Rx", ", CDR in Tx", ", CDR in Tx and Rx"};
  for (unsigned byte = 0; byte < 256; ++byte) {
    const unsigned high = byte >> 6;
    const unsigned low = byte & 3;
    const unsigned cdr = byte >> 2 & 3;
    const bool other_bits = (byte & 0x30) != 0;
    std::string expected;
    if (!other_bits && low == 0) expected = std::string(classes[high]) + recovery[cdr];
    if (!other_bits && low != 0 && high == 3 && (cdr == 0 || cdr == 3))
      expected = std::string(classes[3 + low]) + recovery[cdr];
    TestImage image = TestImage::Qsfp();
    image.Set(129, {static_cast<std::uint8_t>(byte)});
    const std::string shown = Displayed([&](ReportText& text) { DisplayFieldTable(text, image); });
    EXPECT_NE(shown.find("           Extended Identifier: " + expected + "\n"), std::string::npos) << byte;
  }
}

}  // namespace
