// The records of an adapter and a port, whatever the library fills in, against second implementations of
// `port info get`, `adapter info get` and `port stats get`.
//
// The first byte of an input chooses the form of the document and the command, the second one the family; the
// rest is what the commands read, record by record.
#include "adapter/adapter_info_cmds_processor.h"
#include "device/device_command.h"
#include "discovery/adapter_lookup.h"
#include "framework/device_library/calls.h"
#include "port/physical_port_fc_stats_cmds_processor.h"
#include "port/physical_port_info_cmds_processor.h"
#include "reference/port_reference.h"
#include "reference/text.h"

namespace {

constexpr Region kPortRegions[] = {{0, 16},   {32, 4},    {78, 4},     {108, 52}, {396, 64}, {462, 2},
                                   {476, 20}, {608, 6},   {652, 4},    {660, 2},  {664, 1},  {668, 16},
                                   {752, 48}, {2160, 16}, {2176, 256}, {2672, 8}};
constexpr Region kAdapterRegions[] = {{0, 124}, {156, 196}};
constexpr Region kPhysicalPortRegions[] = {{0, 4}};
constexpr Region kTemperatureRegions[] = {{0, 2}};
constexpr Region kLockdownRegions[] = {{0, 16}};
constexpr Region kComponentRegions[] = {{19, 45}};
constexpr Region kPortCodes[] = {{611, 1}, {652, 4}};
constexpr Region kAdapterCodes[] = {{32, 4}};
constexpr Region kLockdownCodes[] = {{4, 4}, {8, 4}, {12, 4}};
constexpr Region kMemoRegions[] = {{0, 4}, {16, 3}};

std::uint8_t temperature[sizeof(BoardTemperature)];
std::uint8_t lockdown[sizeof(LockdownStatus)];
std::uint8_t components[sizeof(FlashComponentVersions)];
std::uint8_t memo[sizeof(FlashMemoBlock)];
std::uint8_t failing_calls;  // a bit for each of the four

// Answers a read with these bytes, which a failure leaves in the buffer too.
LibraryStatus Answer(int call, void* out, const std::uint8_t* bytes, std::size_t size) {
  std::memcpy(out, bytes, size);
  return (failing_calls >> call & 1) != 0 ? 1 : kLibrarySuccess;
}

// What a failed call has filled does not show.
void ClearFailed() {
  if ((failing_calls & 1) != 0) std::memset(temperature, 0, sizeof temperature);
  if ((failing_calls & 2) != 0) std::memset(lockdown, 0, sizeof lockdown);
  if ((failing_calls & 4) != 0) std::memset(components, 0, sizeof components);
  if ((failing_calls & 8) != 0) std::memset(memo, 0, sizeof memo);
}

}  // namespace

LibraryStatus TORPI_GetAdapterAsicBoardTemperature(const DeviceHandle*, BoardTemperature* out) {
  return Answer(0, out, temperature, sizeof temperature);
}
LibraryStatus TORPI_GetLockdownStatus(const DeviceHandle*, LockdownStatus* out) {
  return Answer(1, out, lockdown, sizeof lockdown);
}
LibraryStatus TORPI_GetFlashComponentVersion(const DeviceHandle*, FlashComponentVersions* out) {
  return Answer(2, out, components, sizeof components);
}
LibraryStatus TORPI_GetAdapterFlashMemoBlock(const DeviceHandle*, FlashMemoBlock* out) {
  return Answer(3, out, memo, sizeof memo);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::uint8_t family = input.SpreadByte();
  const bool xml = (choice & 1) == 0;
  failing_calls = (choice & 8) != 0 ? choice >> 4 : 0;
  DeviceHost& host = Host();
  FillRecord(input, host.fc, sizeof *host.fc, kPortRegions);
  FillRecord(input, host.adapter, sizeof *host.adapter, kAdapterRegions);
  FillRecord(input, host.port, sizeof *host.port, kPhysicalPortRegions);
  FillRecord(input, temperature, sizeof temperature, kTemperatureRegions);
  FillRecord(input, lockdown, sizeof lockdown, kLockdownRegions);
  FillRecord(input, components, sizeof components, kComponentRegions);
  FillRecord(input, memo, sizeof memo, kMemoRegions);
  ChooseCodes(input, host.fc, kPortCodes, 101);
  ChooseCodes(input, host.adapter, kAdapterCodes, 10);
  ChooseCodes(input, lockdown, kLockdownCodes, 0x88);
  constexpr std::uint8_t kSignature[] = {'F', 'M', 'B', 'S'};
  if (family % 4 == 0) std::memcpy(memo, kSignature, sizeof kSignature);
  ChoosePciIdentity(*host.fc, family);
  host.Link();

  const reference::PortBytes bytes = {host.adapter, host.port, host.fc,    lockdown,
                                      components,   memo,      temperature};
  const Words port = {PortIdentifier()};
  switch (choice >> 1 & 3) {
    case 0:
    case 1: {
      const std::string_view found = RunCommand(&PhysicalPortInfoCmdsProcessor, "get", port, xml);
      ClearFailed();
      RequireSame(found, reference::PortDocument(xml, bytes));
      break;
    }
    case 2: {
      const std::string_view found =
          RunCommand(&AdapterInfoCmdsProcessor, "get", {AdapterIdentifier(*host.adapter)}, xml);
      ClearFailed();
      // Some models and serial numbers make no identifier.
      const std::string refusal = reference::ErrorDocument(
          xml, {"AdapterInformation", "General Parameters", ""}, "Failed, Invalid parameter");
      if (found != refusal) RequireSame(found, reference::AdapterDocument(xml, bytes));
      break;
    }
    default: {
      const bool firmware = (family & 1) != 0;
      RequireSame(RunCommand(&PhysicalPortFCStatsCmdsProcessor, "get",
                             {port[0], firmware ? "Firmware" : "Driver"}, xml),
                  reference::PortStatisticsDocument(xml, bytes, firmware));
    }
  }
  return 0;
}
