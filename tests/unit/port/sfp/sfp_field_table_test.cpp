#include "port/sfp/sfp_field_table.h"

#include <gtest/gtest.h>

#include <iterator>

#include "field_table_check.h"

namespace {

TEST(SfpFieldTable, RowsLieInTheImageInOrder) {
  EXPECT_EQ(std::size(SfpFieldTable), 127U);
  CheckTable(SfpFieldTable, 0, 512);
}

}  // namespace
