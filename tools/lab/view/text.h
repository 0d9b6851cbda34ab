// Texts for people and files, of values that come from a device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace view {

// A device's text as it may be shown anywhere: valid UTF-8 without blanks around it. What is no character,
// steers a terminal, or turns the direction of writing becomes U+FFFD.
std::string CleanText(std::string_view text);

// A clean text within XML, in content and in attributes.
std::string XmlText(std::string_view clean);

// A clean text as a JSON string, quotes included.
std::string JsonText(std::string_view clean);

// The number of characters of a clean text.
std::size_t CharacterCount(std::string_view clean);

// 16384 as "16,384".
std::string Grouped(std::uint64_t number);

// "1 target", "16,384 targets".
std::string Counted(std::uint64_t count, std::string_view noun);

// "0x05" for 5 and 2 digits.
std::string HexNumber(std::uint64_t number, int digits);

// A value with so many decimals: "36.5".
std::string Decimal(double value, int decimals);

// Joins what is not empty.
std::string Joined(std::span<const std::string> parts, std::string_view separator);

}  // namespace view
