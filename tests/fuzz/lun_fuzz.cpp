// The record of a LUN or a namespace, whatever the library fills in, against a second implementation.
//
// The first byte of an input chooses the form of the document and the kind of the target; the rest is what
// the command reads of the LUN.
#include "device/device_command.h"
#include "reference/lun_reference.h"
#include "target/fc_lun_info_cmds_processor.h"

namespace {

constexpr Region kLunRegions[] = {{0, 2}, {14, 28}, {43, 33}, {80, 12}, {364, 9}};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const bool xml = (choice & 1) == 0;
  const bool nvme = (choice & 2) != 0;
  DeviceHost& host = Host();
  host.target->state_flags[5] = nvme ? choice | 0x08 : choice & 0xF7;
  FillRecord(input, host.lun, sizeof *host.lun, kLunRegions);
  host.Link();
  RequireSame(RunCommand(&FCLunInfoCmdsProcessor, "get", {LunIdentifier()}, xml),
              reference::LunDocument(xml, host.lun, nvme));
  return 0;
}
