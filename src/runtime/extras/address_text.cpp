#include "runtime/extras/address_text.h"

#include <arpa/inet.h>

namespace {

template <typename Address>
std::string ToText(int family, const Address& address) {
  char text[INET6_ADDRSTRLEN];
  return inet_ntop(family, &address, text, sizeof text) == nullptr ? std::string() : std::string(text);
}

template <typename Address>
bool FromText(int family, const char* text, Address& address) {
  Address read{};
  if (text == nullptr || inet_pton(family, text, &read) != 1) return false;
  address = read;
  return true;
}

}  // namespace

std::string Ipv4ToText(const in_addr& address) {
  return ToText(AF_INET, address);
}

std::string Ipv6ToText(const in6_addr& address) {
  return ToText(AF_INET6, address);
}

bool Ipv4FromText(const char* text, in_addr& address) {
  return FromText(AF_INET, text, address);
}

bool Ipv6FromText(const char* text, in6_addr& address) {
  return FromText(AF_INET6, text, address);
}
