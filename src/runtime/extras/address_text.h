#pragma once

#include <netinet/in.h>

#include <string>

// Return the usual text of an address, as "192.0.2.1" and "2001:db8::1".
std::string Ipv4ToText(const in_addr& address);
std::string Ipv6ToText(const in6_addr& address);

// Read the text of an address. Return false, with `address` unchanged, for null and for text that is no such
// address.
bool Ipv4FromText(const char* text, in_addr& address);
bool Ipv6FromText(const char* text, in6_addr& address);
