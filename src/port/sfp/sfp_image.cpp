#include "port/sfp/sfp_image.h"

bool IsQsfp(SfpImage image) {
  switch (ByteAt(image, 0)) {
    case 0x0c:
    case 0x0d:
    case 0x11:
    case 0x12:
      return true;
    default:
      return false;
  }
}

std::size_t PageBase(SfpImage image) {
  return IsQsfp(image) ? 128 : 0;
}

SfpImage BytesAt(SfpImage image, std::size_t offset, std::size_t size) {
  if (offset > image.size() || size > image.size() - offset) return {};
  return image.subspan(offset, size);
}

std::uint8_t ByteAt(SfpImage image, std::size_t offset) {
  return offset < image.size() ? image[offset] : std::uint8_t{0};
}
