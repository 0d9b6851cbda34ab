#include "port/vpd_map.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "runtime/debug_log.h"
#include "runtime/text.h"

namespace {

enum ResourceTag : std::uint8_t {
  kEnd = 0x78,
  kIdentifierString = 0x82,
  kReadOnlyHeader = 0x90,
  kReadWriteHeader = 0x91,
};

constexpr std::size_t kHeaderBytes = 3;  // of a resource as of an item: what precedes the data
constexpr std::size_t kKeywordBytes = 2;
constexpr std::size_t kDebugLineBytes = 512;

using Bytes = std::span<const std::uint8_t>;

// The byte at `index`; what lies outside reads as 0.
std::uint8_t ByteAt(Bytes bytes, std::size_t index) {
  return index < bytes.size() ? bytes[index] : 0;
}

// The text at the start of `bytes`, up to its terminator and at most `length` bytes.
std::string_view TextOf(Bytes bytes, std::size_t length) {
  const auto* const text = reinterpret_cast<const char*>(bytes.data());
  return {text, strnlen(text, std::min(length, bytes.size()))};
}

int SizeOf(std::string_view text) {
  return static_cast<int>(text.size());
}

// Logs a field, cut to the length that its line has room for.
[[gnu::format(printf, 1, 2)]] void LogField(const char* format, ...) {
  if (!IsDebugLevelOn(kDebugTrace)) return;
  char line[kDebugLineBytes];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  DebugLogLevel(kDebugTrace, "%s", line);
}

// Stores what one resource or item holds. `item` begins at its first byte and ends with the image.
void MapFieldData(CommandRun& run, VpdMap& map, Bytes item, std::size_t length) {
  const FunctionScope function(run, __func__);
  const std::uint8_t tag = item[0];
  const Bytes data = item.subspan(std::min(kHeaderBytes, item.size()));
  const std::string_view value = TextOf(data, length);
  const std::string_view first_bytes = TextOf(item, kKeywordBytes);
  std::string keyword;
  FormatString(keyword, "%2.*s", SizeOf(first_bytes), first_bytes.data());

  if (tag == kIdentifierString) {
    LogField(" 0x%02x  \"%.*s\"\n", tag, SizeOf(value), value.data());
    map["PI"] = value;
  } else if (tag == kReadOnlyHeader || tag == kReadWriteHeader || tag == kEnd) {
    LogField(" 0x%02x\n", tag);
  } else if (keyword == "RV" || keyword == "RW") {
    LogField(" \"%s\"  %02x\n", keyword.c_str(), ByteAt(data, 0));
    FormatString(map[keyword], "%02x", ByteAt(data, 0));
  } else {
    LogField(" \"%s\"  \"%.*s\"\n", keyword.c_str(), SizeOf(value), value.data());
    map[keyword] = value;
  }
}

}  // namespace

VpdMap MapVpdData(CommandRun& run, std::span<const std::uint8_t> image) {
  const FunctionScope function(run, __func__);
  VpdMap map;
  for (Bytes rest = image; !rest.empty();) {
    std::size_t length = 0;
    switch (rest[0]) {
      case kEnd:
        MapFieldData(run, map, rest, length);
        return map;
      case kReadOnlyHeader:
      case kReadWriteHeader:
        break;  // no data of its own: the items inside are walked one by one
      case kIdentifierString:
        length = ByteAt(rest, 1) | static_cast<std::size_t>(ByteAt(rest, 2)) << 8;
        break;
      default:
        length = ByteAt(rest, 2);
        break;
    }
    MapFieldData(run, map, rest, length);
    rest = rest.subspan(std::min(kHeaderBytes + length, rest.size()));
  }
  return map;
}
