// The operational parameters of a port, whatever its memory holds, against a second implementation.
//
// The first byte of an input chooses the form of the document, the second one the family; the rest is what
// the command reads.
#include "config/physical_port_hba_params_cmds_processor.h"
#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "reference/hba_params_reference.h"

namespace {

constexpr Region kRecordRegions[] = {{0, 28},  {32, 8},  {44, 16}, {68, 12},
                                     {100, 4}, {208, 8}, {236, 4}, {286, 1}};

constexpr Region kRecordCodes[] = {{0, 4}, {4, 4}, {68, 4}};

std::uint8_t record[sizeof(HBAParamsInfo)];

}  // namespace

LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle*, HBAParamsInfo* out, HBAParamsExtra* extra) {
  std::memcpy(static_cast<void*>(out), record, sizeof record);
  std::memset(static_cast<void*>(extra), record[0], sizeof *extra);
  return kLibrarySuccess;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const bool xml = (choice & 1) == 0;
  DeviceHost& host = Host();
  ChoosePciIdentity(*host.fc, input.SpreadByte());
  host.fc->interface_type = choice == 0xFF ? PortInterfaceType::kNpivVirtual : PortInterfaceType::kPhysical;
  FillRecord(input, record, sizeof record, kRecordRegions);
  ChooseCodes(input, record, kRecordCodes, 9);
  RequireSame(RunCommand(&PhysicalPortHBAParamsCmdsProcessor, "get", {PortIdentifier()}, xml),
              reference::HbaParamsDocument(xml, host.fc, record));
  return 0;
}
