#include "port/sfp/qsfp_field_table.h"

#include <gtest/gtest.h>

#include <iterator>

#include "field_table_check.h"

namespace {

TEST(QsfpFieldTable, RowsLieInUpperPage0) {
  EXPECT_EQ(std::size(QsfpFieldTable), 40U);
  CheckTable(QsfpFieldTable, 128, 256);
}

}  // namespace
