#include "tools/snapshot/images.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>

#include "tools/snapshot/made_up.h"

namespace snapshot {
namespace {

using Bytes = std::span<std::uint8_t>;

struct Range {
  std::size_t begin;
  std::size_t end;  // the first byte that is not in it
};

// Where a memory map keeps what matters here. `known` are the parts that a standard or the reports name.
struct ModuleMap {
  Range serial;
  Range summed;  // what the check sum is of
  std::size_t sum;
  std::span<const Range> known;
};

// Without vendor specific bytes, passwords and the user's memory.
constexpr Range kSfpKnown[] = {{0, 96},    {149, 155}, {249, 254}, {256, 376}, {386, 387},
                               {389, 390}, {480, 485}, {496, 498}, {500, 512}};
constexpr Range kQsfpKnown[] = {{0, 119}, {127, 224}};
constexpr ModuleMap kSfpMap = {{68, 84}, {64, 95}, 95, kSfpKnown};
constexpr ModuleMap kQsfpMap = {{196, 212}, {192, 223}, 223, kQsfpKnown};

// Identifiers of SFF-8024 whose modules follow SFF-8636: QSFP, QSFP+, QSFP28, CXP2.
bool FollowsSff8636(std::uint8_t identifier) {
  return identifier == 0x0c || identifier == 0x0d || identifier == 0x11 || identifier == 0x12;
}

std::uint8_t SumOf(Bytes bytes) {
  return static_cast<std::uint8_t>(std::accumulate(bytes.begin(), bytes.end(), 0u));
}

Bytes Part(Bytes bytes, Range range) {
  return bytes.subspan(range.begin, range.end - range.begin);
}

void Zero(Bytes bytes) {
  std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
}

// The bytes at `begin`, as many as there are.
Bytes Cut(Bytes bytes, std::size_t begin, std::size_t length) {
  begin = std::min(begin, bytes.size());
  return bytes.subspan(begin, std::min(length, bytes.size() - begin));
}

// Resources and items of Vital Product Data.
constexpr std::uint8_t kEnd = 0x78;
constexpr std::uint8_t kIdentifierString = 0x82;
constexpr std::uint8_t kReadOnlyHeader = 0x90;
constexpr std::uint8_t kReadWriteHeader = 0x91;
constexpr std::size_t kHeaderBytes = 3;

// Items that say nothing about whose adapter it is: part number, engineering level, manufacturer, power and
// the versions that are on the flash.
constexpr std::string_view kHarmlessItems[] = {"PN", "EC", "MN", "V0", "V1", "V3", "V4", "V5", "V9"};

std::uint32_t WordAt(Bytes bytes, std::size_t at) {
  std::uint32_t word = 0;
  for (const std::uint8_t byte : Cut(bytes, at, 4)) word = word << 8 | byte;
  return word;
}

// Descriptors of a response.
constexpr std::uint32_t kLinkServiceRequest = 0x00000001;
constexpr std::uint32_t kPortNames = 0x00010003;
constexpr std::uint32_t kProduct = 0x00010008;
constexpr std::uint32_t kMeasurements[] = {0x00010000, 0x00010001, 0x00010002,
                                           0x00010005, 0x00010006, 0x00010007};
constexpr Range kProductSerial = {32, 48};

void AnonymiseDescriptor(std::uint32_t tag, Bytes payload, MadeUp& made_up) {
  if (tag == kPortNames) {
    for (std::size_t at = 0; at < payload.size(); at += 8) MakeUpName(Cut(payload, at, 8), made_up);
  } else if (tag == kProduct) {
    made_up.Text(Cut(payload, kProductSerial.begin, kProductSerial.end - kProductSerial.begin));
  } else if (tag != kLinkServiceRequest &&
             std::find(std::begin(kMeasurements), std::end(kMeasurements), tag) == std::end(kMeasurements)) {
    Zero(payload);
  }
}

}  // namespace

void MakeUpName(Bytes name, MadeUp& made_up) {
  constexpr std::size_t kFormat = 2;
  made_up.Octets(name.subspan(std::min(kFormat, name.size())));
}

void AnonymiseSfp(recording::SfpImage& image, MadeUp& made_up) {
  const Bytes bytes(image.bytes);
  const ModuleMap& map = FollowsSff8636(bytes[0]) ? kQsfpMap : kSfpMap;
  const std::uint8_t before = SumOf(Part(bytes, map.summed));
  made_up.Text(Part(bytes, map.serial));
  // Right when it was right, and wrong by as much as it was wrong.
  bytes[map.sum] = static_cast<std::uint8_t>(bytes[map.sum] + SumOf(Part(bytes, map.summed)) - before);
  std::size_t end = 0;
  for (const Range& known : map.known) {
    Zero(Part(bytes, {end, known.begin}));
    end = known.end;
  }
  Zero(bytes.subspan(end));
}

void AnonymiseVpd(Bytes image, MadeUp& made_up) {
  std::uint8_t moved = 0;  // how much more all bytes up to the check sum add up to
  Bytes rest = image;
  while (!rest.empty() && rest[0] != kEnd) {
    const std::uint8_t tag = rest[0];
    const bool is_header = tag == kReadOnlyHeader || tag == kReadWriteHeader;
    std::size_t length = rest.size() > 2 && !is_header ? rest[2] : 0;
    if (tag == kIdentifierString && rest.size() > 2) length = rest[1] | std::size_t{rest[2]} << 8;
    const Bytes data = Cut(rest, kHeaderBytes, length);
    const std::string_view keyword(reinterpret_cast<const char*>(rest.data()),
                                   std::min<std::size_t>(2, rest.size()));
    const auto before = SumOf(data);
    const bool harmless =
        std::find(std::begin(kHarmlessItems), std::end(kHarmlessItems), keyword) != std::end(kHarmlessItems);
    if (keyword == "RV") {
      if (!data.empty()) data[0] = static_cast<std::uint8_t>(data[0] - moved);
      Zero(data.subspan(std::min<std::size_t>(1, data.size())));
    } else if (keyword == "RW") {
      Zero(data);
    } else if (!is_header && !harmless && tag != kIdentifierString) {
      made_up.Text(data);
    }
    moved = static_cast<std::uint8_t>(moved + SumOf(data) - before);
    rest = rest.subspan(std::min(kHeaderBytes + length, rest.size()));
  }
  if (!rest.empty()) Zero(rest.subspan(1));
}

void AnonymiseRdp(Bytes response, MadeUp& made_up) {
  constexpr std::size_t kHead = 8;  // of a descriptor: tag and length
  std::size_t at = 4;               // past the length of the list
  const std::size_t end = std::min(at + WordAt(response, 0), response.size());
  while (at + kHead <= end) {
    const std::size_t length = WordAt(response, at + 4);
    AnonymiseDescriptor(WordAt(response, at), Cut(response.first(end), at + kHead, length), made_up);
    at += kHead + length;
  }
  if (end < response.size()) Zero(response.subspan(end));
}

}  // namespace snapshot
