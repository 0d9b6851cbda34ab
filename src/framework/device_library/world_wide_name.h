// World Wide Names, and the three ways in which a text gives one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "framework/device_library/octet_text.h"

// A name of eight octets in wire order, as the device library's records hold it.
struct WorldWideName {
  static constexpr std::size_t kTextLength = 23;  // eight octets of two digits, colons between them

  std::uint8_t octets[8];

  constexpr std::uint8_t& operator[](std::size_t i) { return octets[i]; }
  constexpr std::uint8_t operator[](std::size_t i) const { return octets[i]; }
  friend constexpr bool operator==(const WorldWideName&, const WorldWideName&) = default;

  // True for the name of all zeros, which names no port.
  constexpr bool IsZero() const { return *this == WorldWideName{}; }

  // "21:00:f4:c7:aa:0b:3d:ff", lower-case.
  std::string Text() const { return OctetText(octets); }
  void AppendTo(std::string& text) const { AppendOctets(text, octets); }
};
static_assert(sizeof(WorldWideName) == 8);

// Takes a name off the front of `text`, in the very form that Text() gives. False, with `name` unusable, for
// a text that does not begin so.
bool TakeName(std::string_view& text, WorldWideName& name);

// Reads eight hexadecimal octets with colons between them, as scanf reads "%hhx": leading blanks, a sign,
// "0x" and any number of digits pass, and only the low 8 bits of each count. Returns where the name ends;
// null, and `name` unusable, for a text that does not begin with a complete name.
const char* ReadName(const char* text, WorldWideName& name);

// Reads up to eight octets of the same form. The first one that does not read, and all that follow, are 0.
WorldWideName ReadLeadingOctets(const char* text);
