// What every row of a field table must keep, whatever it says.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <span>
#include <string>

#include "port/sfp/sfp_field.h"

inline std::size_t WidthOf(SfpFieldType type, std::size_t size) {
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

// Its rows are in the order of the image, within the bytes from `first` to before `end`, and of the width
// that their type reads.
inline void CheckTable(std::span<const SfpField> table, std::size_t first, std::size_t end) {
  std::size_t passed = first;
  for (const SfpField& field : table) {
    SCOPED_TRACE(std::string(field.name) + " at " + std::to_string(field.offset));
    EXPECT_EQ(field.type == FIELD_HEADING, field.offset == kNoOffset);
    if (field.type == FIELD_HEADING) continue;
    EXPECT_GE(field.offset, passed) << "rows are in the order of the image";
    passed = field.offset + std::size_t{field.size};
    EXPECT_LE(passed, end);
    EXPECT_EQ(field.size, WidthOf(field.type, field.size));
    const bool has_bits = field.type == FIELD_BIT_LIST || field.type == FIELD_BIT_FLAGS;
    EXPECT_TRUE(field.type == FIELD_BYTE_CODE || field.table.empty() == !has_bits);
    std::set<unsigned> values;
    for (const SfpCode& row : field.table) {
      EXPECT_LE(row.value, 0xFF);
      EXPECT_TRUE(values.insert(row.value).second) << row.text << " is there twice";
      EXPECT_TRUE(!has_bits || (row.value & (row.value - 1)) == 0) << row.text << " is no single bit";
    }
  }
}
