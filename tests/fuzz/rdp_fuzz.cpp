// The answer to a Read Diagnostic Parameters ELS, whatever the switch says, against a second implementation.
//
// The first byte of an input chooses the form of the document; bit 1 makes the rest descriptors, each of a
// kind, a number of words and these words, so that most of them are whole. Without it the rest is the
// response itself.
#include <string>

#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "port/physical_port_rdp_cmds_processor.h"
#include "reference/rdp_reference.h"

namespace {

constexpr std::size_t kResponseBytes = 508;

std::uint8_t response[kResponseBytes];

void PutWord(std::size_t at, std::uint32_t word) {
  for (std::size_t i = 0; i < 4 && at + i < kResponseBytes; ++i) {
    response[at + i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
  }
}

void MakeDescriptors(Input& input) {
  const std::uint8_t list_length = input.Byte();
  PutWord(0, list_length == 0xFF ? 0xFFFFFFFF : list_length * 4U);
  std::size_t at = 4;
  while (input.Size() > 0 && at < kResponseBytes) {
    const std::uint8_t kind = input.Byte();
    const std::uint8_t choice = input.Byte();
    const std::uint32_t words = choice % 32U;
    const std::size_t taken =
        std::min<std::size_t>(std::size_t{words} * 4, kResponseBytes - std::min(kResponseBytes, at + 8));
    PutWord(at, kind % 16 == 15 ? 1 : 0x00010000 | kind % 16);
    PutWord(at + 4, choice == 0xFF ? 0xFFFFFFFF : words * 4 + choice / 64);
    if (taken > 0) input.Fill(response + at + 8, taken);
    at += 8 + taken;
  }
}

}  // namespace

LibraryStatus TORPI_DiagnosticsRDPTest(const DeviceHandle*, std::uint8_t* out, std::uint32_t* size) {
  Require(*size == kResponseBytes);
  std::memcpy(out, response, kResponseBytes);
  *size = response[1];  // bounds nothing
  return kLibrarySuccess;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const bool xml = (choice & 1) == 0;
  Host().fc->port_state = PortState::kLinkUp;
  std::memset(response, 0, sizeof response);
  if ((choice & 2) != 0) {
    MakeDescriptors(input);
  } else {
    input.Fill(response, std::min(input.Size(), kResponseBytes));
  }
  RequireSame(RunCommand(&PhysicalPortRDPCmdsProcessor, "get", {PortIdentifier()}, xml),
              reference::RdpDocument(xml, response));
  return 0;
}
