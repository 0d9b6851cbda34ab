#include "runtime/extras/address_text.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(AddressText, Ipv4ToText) {
  in_addr address{};
  address.s_addr = htonl(0xc0000201);
  EXPECT_EQ(Ipv4ToText(address), "192.0.2.1");
}

TEST(AddressText, Ipv4FromText) {
  in_addr address{};
  EXPECT_TRUE(Ipv4FromText("192.0.2.1", address));
  EXPECT_EQ(ntohl(address.s_addr), 0xc0000201U);
}

TEST(AddressText, Ipv4FromTextRefusesWhatIsNone) {
  in_addr address{};
  address.s_addr = 7;
  for (const char* text : {"", "192.0.2", "192.0.2.256", "192.0.2.1 ", "::1", "host"}) {
    EXPECT_FALSE(Ipv4FromText(text, address)) << text;
  }
  EXPECT_FALSE(Ipv4FromText(nullptr, address));
  EXPECT_EQ(address.s_addr, 7U);
}

TEST(AddressText, Ipv6ToText) {
  in6_addr address{};
  address.s6_addr[0] = 0x20;
  address.s6_addr[1] = 0x01;
  address.s6_addr[2] = 0x0d;
  address.s6_addr[3] = 0xb8;
  address.s6_addr[15] = 1;
  EXPECT_EQ(Ipv6ToText(address), "2001:db8::1");
}

TEST(AddressText, LongestIpv6Text) {
  in6_addr address{};
  std::memset(&address, 0xfe, sizeof address);
  EXPECT_EQ(Ipv6ToText(address), "fefe:fefe:fefe:fefe:fefe:fefe:fefe:fefe");
}

TEST(AddressText, Ipv6FromText) {
  in6_addr address{};
  EXPECT_TRUE(Ipv6FromText("fe80::a:b", address));
  const unsigned char expected[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x0a, 0, 0x0b};
  EXPECT_EQ(std::memcmp(&address, expected, sizeof expected), 0);
}

TEST(AddressText, Ipv6FromTextRefusesWhatIsNone) {
  in6_addr address{};
  address.s6_addr[0] = 7;
  for (const char* text : {"", "192.0.2.1", "1::2::3", "fe80::12345", "fe80::1%eth0"}) {
    EXPECT_FALSE(Ipv6FromText(text, address)) << text;
  }
  EXPECT_FALSE(Ipv6FromText(nullptr, address));
  EXPECT_EQ(address.s6_addr[0], 7);
}

}  // namespace
