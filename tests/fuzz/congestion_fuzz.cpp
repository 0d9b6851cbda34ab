// What the library says about congestion, against second implementations of `port scmstats get`, `port scmchk
// get`, `target scmstats get` and `target scmchk get`.
//
// The first byte of an input chooses the form of the document and the command, the second one the family, the
// third the failures, the fourth the length of the statistics list; the rest is what the commands read.
#include "congestion/fc_target_scm_chk_cmds_processor.h"
#include "congestion/fc_target_scm_stats_cmds_processor.h"
#include "congestion/physical_port_scm_chk_cmds_processor.h"
#include "congestion/physical_port_scm_stats_cmds_processor.h"
#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "reference/congestion_reference.h"

namespace {

constexpr Region kPortRegions[] = {{0, 16},  {20, 4},   {160, 4},  {462, 2},
                                   {608, 5}, {684, 27}, {776, 24}, {840, 16}};
constexpr Region kTargetRegions[] = {{0, 19}, {22, 2}, {30, 4}, {36, 20}};
constexpr Region kElementRegions[] = {{0, 20}, {48, 216}};
constexpr Region kPortCodes[] = {{612, 1}, {684, 2}, {686, 2}, {692, 2},
                                 {694, 2}, {702, 1}, {703, 1}, {710, 1}};
constexpr Region kTargetCodes[] = {{30, 2}, {32, 2}, {40, 2}, {42, 2}, {48, 1}, {50, 1}, {51, 1}};
constexpr std::size_t kMostElements = 4;

std::uint8_t counters[sizeof(TargetPortStatistics)];
const void* elements[kMostElements];
reference::CongestionAnswers answers;
bool list_is_out;

// A failure or a success by two bits of a byte.
std::uint32_t Result(std::uint8_t failures, int shift) {
  constexpr std::uint32_t kResults[] = {0, 0, 1, 150};
  return kResults[failures >> shift & 3];
}

// Elements in blocks of their own, which the release of the list takes back. Some are the target's.
SCMRStatisticsEntry* MakeList(Input& input, std::size_t count) {
  SCMRStatisticsEntry* first = nullptr;
  SCMRStatisticsEntry** link = &first;
  for (std::size_t i = 0; i < count; ++i) {
    static SCMRStatisticsEntry* kept[kMostElements];
    if (kept[i] == nullptr) {
      kept[i] = static_cast<SCMRStatisticsEntry*>(std::calloc(1, sizeof(SCMRStatisticsEntry)));
    }
    SCMRStatisticsEntry* const element = kept[i];
    FillRecord(input, element, sizeof *element, kElementRegions);
    const std::uint8_t choice = input.Byte();
    if ((choice & 1) != 0) element->kind = StatisticsElementKind::kPhysicalPort;
    if ((choice & 2) != 0) element->node_name = Host().target->node_name;
    if ((choice & 4) != 0) element->port_name = Host().target->port_name;
    element->next = nullptr;
    elements[i] = element;
    *link = element;
    link = &element->next;
  }
  return first;
}

SCMRStatisticsEntry* list;

}  // namespace

LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle*, std::uint8_t* out) {
  *out = answers.enabled;
  return answers.enabled_result;
}
LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle*, SCMRStatisticsEntry** out) {
  Require(*out == nullptr);
  // A failed call leaves no list.
  if (answers.list_result == kLibrarySuccess) *out = list;
  list_is_out = answers.list_result == kLibrarySuccess && list != nullptr;
  return answers.list_result;
}
LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head) {
  Require(list_is_out && head == list);
  list_is_out = false;
  return answers.free_result;
}
LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t handle, std::uint32_t,
                                        const TargetStatisticsAddress* address, TargetPortStatistics* out) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(address);
  Require(handle == Host().fc->handle.sd_handle && bytes[0] == 2 && bytes[1] == 0 && bytes[10] == 0 &&
          bytes[11] == 0);
  Require(std::memcmp(bytes + 2, &Host().target->port_name, 8) == 0);
  std::memcpy(static_cast<void*>(out), counters, sizeof counters);
  return answers.counters_result;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint16_t kManaged[] = {0x3522, 0x3D62, 0x3150, 0x3850, 0x3640, 0x3748, 0x3E48};
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::uint8_t family = input.SpreadByte();
  const std::uint8_t failures = input.Byte();
  const std::uint8_t count = input.Byte();
  const bool xml = (choice & 1) == 0;
  DeviceHost& host = Host();
  FillRecord(input, host.fc, sizeof *host.fc, kPortRegions);
  FillRecord(input, host.target, sizeof *host.target, kTargetRegions);
  ChoosePciIdentity(*host.fc, family);
  // Most of the time one of the families that have these commands, with a driver that has them.
  if ((choice & 8) == 0) host.fc->pci.device_id = kManaged[family % (sizeof kManaged / sizeof kManaged[0])];
  if ((choice & 16) == 0) host.fc->capabilities |= (choice & 32) != 0 ? 1U << 26 : 1U << 23;
  ChooseCodes(input, host.fc, kPortCodes, 17);
  ChooseCodes(input, host.target, kTargetCodes, 17);
  host.Link();
  const std::size_t length = count % (kMostElements + 1);
  list = MakeList(input, length);
  input.Fill(counters, sizeof counters);
  answers = {.enabled_result = Result(failures, 0),
             .enabled = static_cast<std::uint8_t>((choice & 64) != 0 ? 0 : family | 1),
             .list_result = Result(failures, 2),
             .list = {elements, length},
             .free_result = Result(failures, 4),
             .counters_result = Result(failures, 6),
             .counters = counters};
  list_is_out = false;

  const Words port = {PortIdentifier()};
  const Words target = {TargetIdentifier()};
  switch (choice >> 1 & 3) {
    case 0:
      RequireSame(RunCommand(&PhysicalPortSCMStatsCmdsProcessor, "get", port, xml),
                  reference::PortCongestionStatistics(xml, host.fc, answers));
      break;
    case 1:
      RequireSame(RunCommand(&PhysicalPortSCMChkCmdsProcessor, "get", port, xml),
                  reference::PortCongestion(xml, host.fc, answers));
      break;
    case 2:
      RequireSame(RunCommand(&FCTargetSCMStatsCmdsProcessor, "get", target, xml),
                  reference::TargetCongestionStatistics(xml, host.fc, host.target, answers));
      break;
    default:
      RequireSame(RunCommand(&FCTargetSCMChkCmdsProcessor, "get", target, xml),
                  reference::TargetCongestion(xml, host.fc, host.target, answers));
  }
  Require(!list_is_out);  // the list was given back
  return 0;
}
