#include "framework/table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

int Twice(int number) {
  return 2 * number;
}

int Negated(int number) {
  return -number;
}

struct Row {
  const char* text;
  int (*function)(int number);
  const char* extra = nullptr;
};

constexpr Row kRows[] = {{"twice", &Twice}, {"negated", &Negated, "extra"}, {"none", nullptr}};
constexpr Row kOneRow[] = {{"only", &Twice}};

TEST(Table, GivesEachRow) {
  constexpr Table<Row> kTable = TableOf<kRows>();
  ASSERT_EQ(kTable.size(), 3u);
  EXPECT_STREQ(kTable[0].text, "twice");
  EXPECT_EQ(kTable[0].function(4), 8);
  EXPECT_EQ(kTable[0].extra, nullptr);
  EXPECT_STREQ(kTable[1].text, "negated");
  EXPECT_EQ(kTable[1].function(4), -4);
  EXPECT_STREQ(kTable[1].extra, "extra");
  EXPECT_STREQ(kTable[2].text, "none");
  EXPECT_EQ(kTable[2].function, nullptr);
}

TEST(Table, GoesThroughItsRowsInTheirOrder) {
  std::vector<std::string> texts;
  for (const Row& row : TableOf<kRows>()) texts.emplace_back(row.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"twice", "negated", "none"}));
}

TEST(Table, MayHaveOneRowOrNone) {
  EXPECT_EQ(TableOf<kOneRow>().size(), 1u);
  EXPECT_STREQ(TableOf<kOneRow>()[0].text, "only");
  int rows = 0;
  for ([[maybe_unused]] const Row& row : Table<Row>()) ++rows;
  EXPECT_EQ(rows, 0);
}

}  // namespace
