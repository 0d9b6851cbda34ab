// Small readers and writers of texts, shared by the host file, flash images and the trace.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "framework/device_library/fixed_text.h"
#include "framework/device_library/flash_records.h"

namespace lab {

// "0x1f" or "31", nothing else around it; false for any other text and for numbers above `limit`.
bool ReadNumber(std::string_view text, std::uint64_t limit, std::uint64_t& out);

// "36.5" or "-4": digits with at most one point, nothing else around them.
bool ReadDecimalNumber(std::string_view text, double& out);

// "9.12.01" or "3.62": two or three numbers of at most 255. False, and `out` all zero, for any other text.
bool ReadVersion(std::string_view text, ComponentVersion& out);

// Pairs of hexadecimal digits joined by ':', exactly as many as `out` holds.
bool ReadOctets(std::string_view text, std::span<std::uint8_t> out);

// "2026-03-14 09:26:53" into the update time of a memo block; false for any other text.
bool ReadTime(std::string_view text, FlashMemoBlock& out);

// "2026-03-14" into eight digits; false for any other text.
bool ReadDate(std::string_view text, char (&out)[8]);

// "1.9.0.0": four numbers of at most 255.
bool ReadToolVersion(std::string_view text, std::uint8_t (&out)[4]);

std::string VersionText(ComponentVersion version);
std::string TimeText(const FlashMemoBlock& memo);

// Lower-case octets joined by ':'.
std::string OctetText(std::span<const std::uint8_t> octets);

// With everything outside printable ASCII as \n, \r, \t or \xNN and a backslash before quotes and
// backslashes: one line whatever the text holds, and nothing that a terminal obeys.
std::string Escaped(std::string_view text);

// The same in double quotes.
std::string Quoted(std::string_view text);

// As a message shows it: what HarmlessLength() refuses is escaped, and it is cut short after 64 characters.
std::string ShownText(std::string_view text);

// Without the blanks and tabs at both ends.
std::string_view Trimmed(std::string_view text);

// Writes `text` into a fixed field and zeroes the rest. The caller has checked the length.
template <std::size_t N>
void StoreText(FixedText<N>& field, std::string_view text) {
  std::memset(field.bytes, 0, N);
  std::memcpy(field.bytes, text.data(), text.size() < N ? text.size() : N);
}

}  // namespace lab
