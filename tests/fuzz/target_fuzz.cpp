// The record of a target, whatever the library fills in, against second implementations of `target info get`,
// `target stats get` and `target tlsd get`.
//
// The first byte of an input chooses the form of the document and the command, the second one the family, the
// third the number of LUNs; the rest is what the commands read.
#include <vector>

#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "reference/target_reference.h"
#include "target/fc_target_info_cmds_processor.h"
#include "target/fc_target_stats_cmds_processor.h"
#include "target/fc_target_tlsd_cmds_processor.h"

namespace {

constexpr Region kTargetRegions[] = {{0, 19},  {22, 2},   {48, 4},   {164, 34}, {224, 4},
                                     {248, 4}, {260, 64}, {328, 15}, {400, 16}, {432, 4},
                                     {528, 8}, {542, 2},  {560, 256}};
constexpr Region kTargetCodes[] = {{50, 1}, {51, 1}, {248, 4}, {340, 1}, {341, 1}, {342, 1}, {432, 4}};
constexpr Region kPortRegions[] = {{8, 8}, {20, 4}, {160, 4}, {180, 1}, {462, 2}, {664, 1}};
constexpr std::size_t kMostLuns = 640;

std::uint8_t counters[sizeof(TargetPortStatistics)];
std::uint32_t speed;

// A chain of LUNs with these numbers, which outlives the run.
void MakeLuns(const std::vector<std::uint16_t>& numbers) {
  static auto* const luns = static_cast<LunEntry*>(std::calloc(kMostLuns, sizeof(LunEntry)));
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    luns[i].number = numbers[i];
    luns[i].next = i + 1 < numbers.size() ? &luns[i + 1] : nullptr;
  }
  Host().target->first_lun = numbers.empty() ? nullptr : luns;
}

// Now and then one of the remote-port records is the target's.
void MakeRemotePort(TargetEntry& target, std::uint8_t choice) {
  const std::uint32_t id =
      target.port_id.octets[0] | target.port_id.octets[1] << 8U | target.port_id.octets[2] << 16U;
  if ((choice & 1) != 0) {
    target.remote_port_name = target.port_name;
    target.remote_port_id = id | static_cast<std::uint32_t>(choice) << 24;
  }
  if ((choice & 2) != 0) {
    target.old_port_name = target.port_name;
    target.old_port_id = id | static_cast<std::uint32_t>(choice) << 24;
  }
}

}  // namespace

LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t handle, std::uint32_t,
                                        const TargetStatisticsAddress* address, TargetPortStatistics* out) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(address);
  Require(handle == Host().fc->handle.sd_handle && bytes[0] == 2 && bytes[1] == 0 && bytes[10] == 0 &&
          bytes[11] == 0);
  Require(std::memcmp(bytes + 2, &Host().target->port_name, 8) == 0);
  std::memcpy(static_cast<void*>(out), counters, sizeof counters);
  return kLibrarySuccess;
}
LibraryStatus TORPI_GetTargetLinkSpeed(const DeviceHandle*, std::uint16_t number, std::uint32_t* out) {
  Require(number == Host().target->number);
  *out = speed;
  return kLibrarySuccess;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint32_t kSpeeds[] = {1, 2, 4, 8, 16, 22, 50, 100};
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::uint8_t family = input.SpreadByte();
  const std::uint8_t lun_count = input.Byte();
  const bool xml = (choice & 1) == 0;
  DeviceHost& host = Host();
  FillRecord(input, host.target, sizeof *host.target, kTargetRegions);
  FillRecord(input, host.fc, sizeof *host.fc, kPortRegions);
  ChoosePciIdentity(*host.fc, family);
  ChooseCodes(input, host.target, kTargetCodes, 15);
  host.Link();
  MakeRemotePort(*host.target, choice >> 4);
  std::vector<std::uint16_t> luns(lun_count == 0xFF ? kMostLuns : lun_count % 8);
  for (std::uint16_t& lun : luns)
    lun = static_cast<std::uint16_t>(input.Byte() * std::size_t{257} + luns.size());
  MakeLuns(luns);

  const Words words = {TargetIdentifier()};
  switch (choice >> 1 & 3) {
    case 0:
    case 1:
      RequireSame(RunCommand(&FCTargetInfoCmdsProcessor, "get", words, xml),
                  reference::TargetDocument(xml, host.fc, host.target, luns));
      break;
    case 2:
      input.Fill(counters, sizeof counters);
      RequireSame(RunCommand(&FCTargetStatsCmdsProcessor, "get", words, xml),
                  reference::TargetStatisticsDocument(xml, host.target, counters));
      break;
    default:
      input.Fill(&speed, sizeof speed);
      if (speed % 16 != 15) speed = kSpeeds[speed % 8];
      RequireSame(RunCommand(&FCTargetTLSDCmdsProcessor, "get", words, xml),
                  reference::TargetSpeedDocument(xml, host.fc, host.target, speed));
  }
  return 0;
}
