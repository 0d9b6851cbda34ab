#include "yaml/mistakes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using lab::Mistakes;

TEST(Mistakes, AreInTheOrderOfTheirPlaces) {
  Mistakes mistakes;
  mistakes.Add({7, 2}, "last");
  mistakes.Add({3, 9}, "second");
  mistakes.Add({3, 1}, "first");
  mistakes.Add({}, "of the whole file");
  EXPECT_EQ(mistakes.Report("a.yaml"),
            "a.yaml: of the whole file\na.yaml:3:1: first\na.yaml:3:9: second\na.yaml:7:2: last");
}

TEST(Mistakes, NoneIsAnEmptyReport) {
  EXPECT_EQ(Mistakes().Report("a.yaml"), "");
}

TEST(Mistakes, TheSameOneIsShownOnce) {
  Mistakes mistakes;
  mistakes.Add({1, 1}, "wrong");
  mistakes.Add({1, 1}, "wrong");
  mistakes.Add({1, 1}, "also wrong");
  EXPECT_EQ(mistakes.Report("a.yaml"), "a.yaml:1:1: also wrong\na.yaml:1:1: wrong");
}

// The reports of a file with this many mistakes.
std::string ReportOf(int count) {
  Mistakes mistakes;
  for (int line = 1; line <= count; ++line) mistakes.Add({line, 1}, "wrong");
  return mistakes.Report("a.yaml");
}

TEST(Mistakes, AHundredAreShownAndTheOthersCounted) {
  EXPECT_TRUE(ReportOf(100).ends_with("\na.yaml:100:1: wrong"));
  EXPECT_TRUE(ReportOf(101).ends_with("\na.yaml:100:1: wrong\na.yaml: and 1 more"));
  const std::string report = ReportOf(1234);
  EXPECT_TRUE(report.ends_with("\na.yaml: and 1134 more")) << report;
  EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 100);
}

TEST(Mistakes, AtSomeNumberThereAreEnough) {
  Mistakes mistakes;
  int count = 0;
  while (!mistakes.Enough() && count < 1000000) mistakes.Add({++count, 1}, "wrong");
  EXPECT_LT(count, 100000);
  EXPECT_NE(mistakes.Report("a.yaml").find("\na.yaml: and at least "), std::string::npos);
}

}  // namespace
