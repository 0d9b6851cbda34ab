#include "diag/remote_test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/unit_host_records.h"

namespace {

std::string NameOf(const char* word) {
  return ReadDestination({word}, 0).name.Text();
}

TEST(ReadDestination, ReadsOctetsInAnyCase) {
  EXPECT_EQ(NameOf("50:01:43:80:2e:5f:a0:6c"), "50:01:43:80:2e:5f:a0:6c");
  EXPECT_EQ(NameOf("50:01:43:80:2E:5F:A0:6C"), "50:01:43:80:2e:5f:a0:6c");
  EXPECT_EQ(NameOf("0:1:2:3:4:5:6:7"), "00:01:02:03:04:05:06:07");
}

TEST(ReadDestination, MissingOctetsAreZero) {
  EXPECT_EQ(NameOf(""), "00:00:00:00:00:00:00:00");
  EXPECT_EQ(NameOf("x"), "00:00:00:00:00:00:00:00");
  EXPECT_EQ(NameOf("50"), "50:00:00:00:00:00:00:00");
  EXPECT_EQ(NameOf("50:01:"), "50:01:00:00:00:00:00:00");
  EXPECT_EQ(NameOf("50:01:43:80:2e:5f:a0"), "50:01:43:80:2e:5f:a0:00");
  EXPECT_EQ(ReadDestination({}, 0).name.Text(), "00:00:00:00:00:00:00:00");
}

TEST(ReadDestination, ATextThatDepartsFromTheFormEndsThere) {
  EXPECT_EQ(NameOf("50-01:43:80:2e:5f:a0:6c"), "50:00:00:00:00:00:00:00");
  EXPECT_EQ(NameOf("50:01:zz:80:2e:5f:a0:6c"), "50:01:00:00:00:00:00:00");
  EXPECT_EQ(NameOf("50:01:43:80:2e:5f:a0:6c:7d and more"), "50:01:43:80:2e:5f:a0:6c");
  EXPECT_EQ(NameOf(std::string(5000, ':').c_str()), "00:00:00:00:00:00:00:00");
}

TEST(ReadDestination, TextHasZerosBehindIt) {
  const Destination destination = ReadDestination({"50:01:43:80:2E:5F:A0:6C"}, 0);
  EXPECT_EQ(destination.text.View(), "50:01:43:80:2e:5f:a0:6c");
  EXPECT_EQ(std::count(destination.text.bytes, destination.text.bytes + 32, '\0'), 32 - 23);
}

TEST(IsTarget, LooksThroughTheWholeList) {
  HostRecords host;
  FCProtocolEntry& fc = host.AddFcPort(host.AddAdapter("ZX320", "HZ1"), 0);
  const auto names = [&](const char* word) { return IsTarget(fc, ReadDestination({word}, 0)); };
  EXPECT_FALSE(names("50:00:00:00:00:00:00:01"));
  for (std::uint8_t last = 1; last <= 3; ++last) host.AddTarget(fc, last);
  EXPECT_TRUE(names("50:00:00:00:00:00:00:01"));
  EXPECT_TRUE(names("50:0:0:0:0:0:0:3"));
  EXPECT_FALSE(names("50:00:00:00:00:00:00:04"));
}

}  // namespace
