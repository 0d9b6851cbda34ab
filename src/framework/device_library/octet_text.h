// Octets as text: two lower-case hexadecimal digits each.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Appends the octets, with `separator` between them.
void AppendOctets(std::string& text, std::span<const std::uint8_t> octets, std::string_view separator = ":");

std::string OctetText(std::span<const std::uint8_t> octets, std::string_view separator = ":");
