#include "runtime/local_time.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

// 1,700,000,000 seconds are 2023-11-14 22:13:20 UTC.

TEST(FormatLocalTime, KeepsWithinItsBuffer) {
  setenv("TZ", "UTC0", 1);
  tzset();
  char text[12] = "xxxxxxxxxxx";
  EXPECT_EQ(FormatLocalTime(timeval{1700000000, 0}, text, sizeof text), 11);
  EXPECT_STREQ(text, "11/14/2023 ");
  EXPECT_EQ(FormatLocalTime(timeval{1700000000, 0}, text, 0), 0);
  EXPECT_STREQ(text, "11/14/2023 ");
}

TEST(FormatLocalTime, OfATimeBeyondTheCalendarIsEmpty) {
  char text[64] = "before";
  EXPECT_EQ(FormatLocalTime(timeval{INT64_MAX, 0}, text, sizeof text), 0);
  EXPECT_STREQ(text, "");
}

}  // namespace
