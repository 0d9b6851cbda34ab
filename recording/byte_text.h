// Bytes of a record as text, which people read and compare:
//
//   8: 2100f4c7aa0b3dff  # port name 21:00:f4:c7:aa:0b:3d:ff
//   28: 9c1e a5*12 "ZX320"
//
// A number with a colon moves to that offset, in decimal; digit pairs are bytes; "aa*N" is one byte N times;
// a quoted text, which holds neither quote nor backslash escapes, is its characters; "#" begins a comment
// that ends with the line. What is not written is zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "recording/fields.h"

namespace recording {

// Appends the bytes of a record that are not zero, one line for a field or a part of a gap, each with
// `indent` blanks in front and a line end. Nothing is appended for a record of zeros.
void AppendRecord(std::string& text, std::size_t indent, std::span<const std::uint8_t> bytes,
                  std::span<const Field> fields);

// Appends, as one line without its end, where `bytes` differ from `before`, which are as many; nothing when
// they do not.
void AppendChange(std::string& text, std::span<const std::uint8_t> bytes,
                  std::span<const std::uint8_t> before);

// Writes what `text` holds over `bytes`. Returns null, or what is wrong; `line` is then its line within the
// text, from 0.
const char* ReadBytes(std::string_view text, std::span<std::uint8_t> bytes, std::size_t& line);

// Lower-case digit pairs.
void AppendHex(std::string& text, std::span<const std::uint8_t> bytes);

}  // namespace recording
