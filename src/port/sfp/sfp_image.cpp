#include "port/sfp/sfp_image.h"

namespace {

constexpr SfpNumber<std::uint8_t> kIdentifier = {0};

// SFF-8024 table 4-1.
enum Identifier : std::uint8_t { kQsfp = 0x0c, kQsfpPlus = 0x0d, kQsfp28 = 0x11, kCxp2 = 0x12 };

}  // namespace

bool IsQsfp(SfpImage image) {
  switch (image.Read(kIdentifier)) {
    case kQsfp:
    case kQsfpPlus:
    case kQsfp28:
    case kCxp2:
      return true;
    default:
      return false;
  }
}
