// The calls of the targets:
//
//   HOSTILE_TARGET_STATISTICS
//                     bytes, as hexadecimal digits, that the statistics begin with; the rest stays as it was
//   HOSTILE_LINK_SPEED
//                     the speed code at the start; without it the read leaves the caller's number alone
#include <cstdlib>
#include <cstring>
#include <optional>

#include "hostile_library.h"

using hostile::Answer;
using hostile::BufferText;
using hostile::Fill;
using hostile::Format;
using hostile::NameOf;
using hostile::Setting;

namespace {

std::optional<std::uint32_t>& LinkSpeed() {
  static std::optional<std::uint32_t> speed = []() -> std::optional<std::uint32_t> {
    const std::string text = Setting("HOSTILE_LINK_SPEED");
    if (text.empty()) return std::nullopt;
    return static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 0));
  }();
  return speed;
}

// All bytes of the address, as hexadecimal digits.
std::string Digits(const TargetStatisticsAddress& address) {
  unsigned char bytes[sizeof address];
  std::memcpy(bytes, &address, sizeof address);
  std::string digits;
  for (const unsigned char byte : bytes) digits += Format("%02x", byte);
  return digits;
}

}  // namespace

extern "C" {

LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t sd_handle, std::uint32_t zero,
                                        const TargetStatisticsAddress* address, TargetPortStatistics* out) {
  const LibraryStatus result =
      Answer("TORPI_GetPortStatisticsFC", Format("0x%08x, %u, ", sd_handle, zero) + Digits(*address) + ", " +
                                              BufferText(out, sizeof *out));
  if (result == 0) Fill("HOSTILE_TARGET_STATISTICS", out, sizeof *out);
  return result;
}

LibraryStatus TORPI_GetTargetLinkSpeed(const DeviceHandle* handle, std::uint16_t target_number,
                                       std::uint32_t* out_speed) {
  const LibraryStatus result =
      Answer("TORPI_GetTargetLinkSpeed", NameOf(handle) + Format(", %u", target_number));
  if (result == 0 && LinkSpeed().has_value()) *out_speed = *LinkSpeed();
  return result;
}

LibraryStatus TORPI_SetTargetLinkSpeed(const DeviceHandle* handle, std::uint16_t target_number,
                                       std::uint32_t speed) {
  const LibraryStatus result =
      Answer("TORPI_SetTargetLinkSpeed", NameOf(handle) + Format(", %u, %u", target_number, speed));
  if (result == 0) LinkSpeed() = speed;
  return result;
}

}  // extern "C"
