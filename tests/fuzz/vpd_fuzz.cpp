// A Vital Product Data image, whatever the adapter says, against a second implementation.
//
// The first byte of an input chooses the form of the document; bit 1 makes the library answer a size that its
// buffer does not have. The rest is the image.
#include <algorithm>
#include <string>

#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "port/physical_port_vpd_cmds_processor.h"
#include "reference/vpd_reference.h"

namespace {

constexpr std::size_t kVpdBytes = 1024;

std::uint8_t image[kVpdBytes];
std::uint32_t image_size;

}  // namespace

LibraryStatus TORPI_GetVpd(const DeviceHandle*, std::uint32_t, std::uint8_t* out, std::uint32_t* size) {
  Require(*size == kVpdBytes);
  std::memcpy(out, image, kVpdBytes);
  *size = image_size;
  return kLibrarySuccess;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const bool xml = (choice & 1) == 0;
  const std::size_t given = std::min(input.Size(), kVpdBytes);
  image_size = static_cast<std::uint32_t>(given);
  if ((choice & 2) != 0) image_size = (choice & 4) != 0 ? 0xFFFFFFFF : kVpdBytes + choice;
  std::memset(image, 0, sizeof image);
  input.Fill(image, given);
  RequireSame(RunCommand(&PhysicalPortVPDCmdsProcessor, "get", {PortIdentifier()}, xml),
              reference::VpdDocument(xml, image, std::min<std::size_t>(image_size, kVpdBytes)));
  return 0;
}
