#include "tools/snapshot/capture.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>

#include "framework/device_library/calls.h"
#include "framework/device_library/families.h"

// A library that lacks one of these still gives everything else: the address of what it lacks is null. The
// other calls are those of every session; they also keep the library among those that the loader brings in.
#pragma weak TORPI_IsRebootRequired
#pragma weak TORPI_GetFlashComponentVersion
#pragma weak TORPI_GetAdapterFlashMemoBlock
#pragma weak TORPI_CheckOrindaPersonalityChangeOption
#pragma weak TORPI_GetPersonalityType
#pragma weak TORPI_GetAdapterAsicBoardTemperature
#pragma weak TORPI_GetLockdownStatus
#pragma weak TORPI_GetVpd
#pragma weak TORPI_DiagnosticsRDPTest
#pragma weak TORPI_GetSFPDataEx
#pragma weak TORPI_GetHBAParamsInfo
#pragma weak TORPI_FCGetBBCSupportInfoEx
#pragma weak TORPI_FCGetFECSupportInfo
#pragma weak TORPI_GetFWPrivateStats
#pragma weak TORPI_IsMezzAdapter
#pragma weak TORPI_GetBfsConfigMode
#pragma weak TORPI_GetBootDeviceInfo
#pragma weak TORPI_GetNVMeBootDeviceEntries
#pragma weak TORPI_GetAdapterBeaconStatus
#pragma weak TORPI_CheckAdapterDPortOption
#pragma weak TORPI_GetNVMeHostNQNStatus
#pragma weak TORPI_IsVCLMFeatureEnabled
#pragma weak TORPI_GetSCMRStatisticsList
#pragma weak TORPI_FreeSCMRStatisticsList
#pragma weak TORPI_GetSCMRProfile
#pragma weak TORPI_GetPortStatisticsFC
#pragma weak TORPI_GetTargetLinkSpeed

namespace snapshot {
namespace {

using recording::AdapterRecording;
using recording::Answer;
using recording::Asked;
using recording::HostRecording;
using recording::PhyPortRecording;
using recording::ProtocolRecording;
using recording::TargetRecording;

// What the program names itself by, and its buffers. A library may answer by them.
constexpr std::uint32_t kToolId = 11;
constexpr std::uint32_t kToolMajor = 1;
constexpr std::uint32_t kToolMinor = 9;
constexpr std::uint32_t kVpdBytes = 1024;
constexpr std::uint32_t kRdpBytes = 508;
constexpr std::uint32_t kSfpAsKnown = 0;
constexpr std::uint32_t kSfpStraight = 3;  // in between is 1, which makes the port read its module anew

// One sweep through a host.
class Reader {
 public:
  Reader(const CaptureOptions& options, std::vector<std::string>& cut) : options_(options), cut_(cut) {}

  HostRecording Read();

 private:
  AdapterRecording ReadAdapter(const AdapterEntry& adapter);
  PhyPortRecording ReadPort(const PhyPortEntry& port);
  ProtocolRecording ReadProtocol(const FCProtocolEntry& entry);
  TargetRecording ReadTarget(const FCProtocolEntry& entry, const TargetEntry& target);

  // Calls visit(entry) for the entries of a chain, up to `most` and each once.
  template <class Entry, class Visit>
  void EachOf(const char* list, const Entry* first, std::size_t most, Visit visit);

  // The same within the room that the whole host has for such entries.
  template <class Entry, class Visit>
  void EachOf(const char* list, const Entry* first, std::size_t most, std::size_t& room, Visit visit) {
    EachOf(list, first, std::min(most, room), [&](const Entry& entry) {
      --room;
      visit(entry);
    });
  }

  void Cut(const char* list, const std::string& why) {
    cut_.push_back(place_ + std::string(list) + ": " + why + "; the rest is left out");
  }

  const CaptureOptions& options_;
  std::vector<std::string>& cut_;
  std::string place_;  // for sentences: "port 21:00:...: ", or empty
  recording::Room room_;
};

template <class Entry, class Visit>
void Reader::EachOf(const char* list, const Entry* first, std::size_t most, Visit visit) {
  std::set<const Entry*> seen;
  for (const Entry* entry = first; entry != nullptr; entry = entry->next) {
    if (!seen.insert(entry).second) return Cut(list, "the list leads back into itself");
    if (seen.size() > most) return Cut(list, "more than " + std::to_string(most));
    visit(*entry);
  }
}

// Notes the result of make(call), which gets the call and the record that it fills.
template <class Function, class Record, class Make>
void Ask(Function* call, Answer<Record>& answer, Make make) {
  if (call == nullptr) {
    answer.asked = Asked::kMissing;
    return;
  }
  answer.asked = Asked::kYes;
  answer.result = make(answer.record);
}

// A call that takes the handle and the record to fill.
template <class Record>
void AskRecord(LibraryStatus (*call)(const DeviceHandle*, Record*), const DeviceHandle& handle,
               Answer<Record>& answer) {
  Ask(call, answer, [&](Record& record) { return call(&handle, &record); });
}

// A call whose value is the answer.
void AskValue(std::uint32_t (*call)(const DeviceHandle*), const DeviceHandle& handle,
              Answer<std::uint32_t>& answer) {
  Ask(call, answer, [&](std::uint32_t& value) {
    value = call(&handle);
    return LibraryStatus{kLibrarySuccess};
  });
}

// Fills a zeroed buffer of `room` bytes by fill(buffer, size) and keeps what is in it.
template <class Fill>
LibraryStatus FillSized(recording::SizedBytes& sized, std::uint32_t room, Fill fill) {
  sized.bytes.assign(room, 0);
  sized.size = room;
  const LibraryStatus result = fill(sized.bytes.data(), &sized.size);
  while (!sized.bytes.empty() && sized.bytes.back() == 0) sized.bytes.pop_back();
  return result;
}

void AskSfp(const DeviceHandle& handle, std::uint32_t mode, Answer<recording::SfpImage>& answer) {
  Ask(&TORPI_GetSFPDataEx, answer,
      [&](recording::SfpImage& image) { return TORPI_GetSFPDataEx(&handle, image.bytes, mode, 0); });
}

// The block that a library hands out may be shorter than the program reads of it: no byte past its end is
// read here. What it reports as the size says nothing.
LibraryStatus ReadFirmwareStatistics(const DeviceHandle& handle, recording::StatisticsBlock& statistics) {
  FWPrivateStats* block = nullptr;
  const LibraryStatus result = TORPI_GetFWPrivateStats(&handle, &block, &statistics.size);
  if (result != kLibrarySuccess) return result;  // and the block, if there is one, is nobody's
  statistics.is_null = block == nullptr;
  if (block == nullptr) return result;
  std::memcpy(&statistics.block, block, std::min(sizeof statistics.block, malloc_usable_size(block)));
  std::free(block);
  return result;
}

// Presets are those of the program, so that a call that succeeds without an answer is kept as what the
// program would show.
void AskPort(const FCProtocolEntry& entry, const CaptureOptions& options, ProtocolRecording& port) {
  const DeviceHandle& handle = entry.handle;
  AskRecord(&TORPI_GetFlashComponentVersion, handle, port.flash_versions);
  AskRecord(&TORPI_GetAdapterFlashMemoBlock, handle, port.memo_block);
  AskValue(&TORPI_CheckOrindaPersonalityChangeOption, handle, port.personality_change);
  port.personality.record = IsAnyOf(entry.pci, kCedarDevice | kGinkgo) ? kCnaPersonality : kFcPersonality;
  AskRecord(&TORPI_GetPersonalityType, handle, port.personality);
  AskRecord(&TORPI_GetAdapterAsicBoardTemperature, handle, port.temperature);
  AskRecord(&TORPI_GetLockdownStatus, handle, port.lockdown);
  Ask(&TORPI_GetVpd, port.vpd, [&](recording::SizedBytes& vpd) {
    return FillSized(vpd, kVpdBytes, [&](std::uint8_t* out, std::uint32_t* size) {
      return TORPI_GetVpd(&handle, 0, out, size);
    });
  });
  if (options.with_rdp) {
    Ask(&TORPI_DiagnosticsRDPTest, port.rdp, [&](recording::SizedBytes& rdp) {
      return FillSized(rdp, kRdpBytes, [&](std::uint8_t* out, std::uint32_t* size) {
        return TORPI_DiagnosticsRDPTest(&handle, out, size);
      });
    });
  }
  AskSfp(handle, kSfpAsKnown, port.sfp);
  AskSfp(handle, kSfpStraight, port.sfp_straight);
  Ask(&TORPI_GetHBAParamsInfo, port.hba_params, [&](recording::HbaParamsAnswer& params) {
    return TORPI_GetHBAParamsInfo(&handle, &params.info, &params.extra);
  });
  Ask(&TORPI_FCGetBBCSupportInfoEx, port.credit_recovery, [&](recording::CreditRecoveryAnswer& credit) {
    return TORPI_FCGetBBCSupportInfoEx(&handle, &credit.status, &credit.configured, &credit.state,
                                       &credit.negotiated, credit.reason.bytes, sizeof credit.reason);
  });
  AskRecord(&TORPI_FCGetFECSupportInfo, handle, port.error_correction);
  Ask(&TORPI_GetFWPrivateStats, port.firmware_statistics,
      [&](recording::StatisticsBlock& statistics) { return ReadFirmwareStatistics(handle, statistics); });
  AskRecord(&TORPI_IsMezzAdapter, handle, port.mezzanine);
  Ask(&TORPI_GetBootDeviceInfo, port.boot,
      [&](HBAParamsInfo& boot) { return TORPI_GetBootDeviceInfo(&handle, &boot, 0); });
  AskRecord(&TORPI_GetNVMeBootDeviceEntries, handle, port.nvme_boot);
  AskRecord(&TORPI_GetAdapterBeaconStatus, handle, port.beacon);
  AskValue(&TORPI_CheckAdapterDPortOption, handle, port.diagnostic_port);
  AskRecord(&TORPI_GetNVMeHostNQNStatus, handle, port.host_nqn_registered);
  AskRecord(&TORPI_IsVCLMFeatureEnabled, handle, port.congestion_enabled);
  AskRecord(&TORPI_GetSCMRProfile, handle, port.congestion_profile);
}

HostRecording Reader::Read() {
  HostRecording host;
  TORPI_Initialize(0, 0);
  TORPI_SetToolID(kToolId);
  TORPI_SetToolVersion(kToolMajor, kToolMinor, 0, 0);

  const AdapterList* const list = TORPI_GetAdapterList();
  host.has_list = list != nullptr;
  if (list != nullptr) {
    host.list = *list;
    host.list.first = nullptr;
    EachOf("adapters", list->first, recording::kMostAdapters,
           [&](const AdapterEntry& adapter) { host.adapters.push_back(ReadAdapter(adapter)); });
  }
  host.reboot_required.record = 1;
  Ask(&TORPI_IsRebootRequired, host.reboot_required,
      [](std::uint8_t& required) { return TORPI_IsRebootRequired(&required); });
  Ask(&TORPI_GetBfsConfigMode, host.boot_mode, [](std::uint32_t& mode) {
    mode = TORPI_GetBfsConfigMode();
    return LibraryStatus{kLibrarySuccess};
  });
  TORPI_Uninitialize();
  return host;
}

AdapterRecording Reader::ReadAdapter(const AdapterEntry& adapter) {
  AdapterRecording kept;
  kept.record = adapter;
  kept.record.ports = nullptr;
  kept.record.next = nullptr;
  kept.has_ports = adapter.ports != nullptr;
  if (!kept.has_ports) return kept;
  kept.port_list = *adapter.ports;
  kept.port_list.first = nullptr;
  EachOf("ports of an adapter", adapter.ports->first, recording::kMostPorts,
         [&](const PhyPortEntry& port) { kept.ports.push_back(ReadPort(port)); });
  return kept;
}

PhyPortRecording Reader::ReadPort(const PhyPortEntry& port) {
  PhyPortRecording kept;
  kept.record = port;
  kept.record.protocols = nullptr;
  kept.record.next = nullptr;
  kept.has_protocols = port.protocols != nullptr;
  if (!kept.has_protocols) return kept;
  kept.protocol_list = *port.protocols;
  kept.protocol_list.first = nullptr;
  EachOf("entries of a port", port.protocols->first, recording::kMostProtocols, room_.protocols,
         [&](const FCProtocolEntry& entry) { kept.protocols.push_back(ReadProtocol(entry)); });
  return kept;
}

ProtocolRecording Reader::ReadProtocol(const FCProtocolEntry& entry) {
  ProtocolRecording kept;
  kept.record = entry;
  kept.record.first_target = nullptr;
  kept.record.next = nullptr;
  if (!recording::IsServed(entry)) return kept;
  place_ = "port " + entry.port_name.Text() + ": ";
  AskPort(entry, options_, kept);
  Ask(&TORPI_GetSCMRStatisticsList, kept.congestion_statistics, [&](recording::StatisticsList& statistics) {
    SCMRStatisticsEntry* list = nullptr;
    const LibraryStatus result = TORPI_GetSCMRStatisticsList(&entry.handle, &list);
    if (result != kLibrarySuccess || list == nullptr) return result;
    EachOf("congestion statistics", static_cast<const SCMRStatisticsEntry*>(list), recording::kMostStatistics,
           room_.statistics, [&](const SCMRStatisticsEntry& element) {
             statistics.elements.push_back(element);
             statistics.elements.back().next = nullptr;
           });
    if (&TORPI_FreeSCMRStatisticsList != nullptr) {
      statistics.free_result = TORPI_FreeSCMRStatisticsList(list);
    }
    return result;
  });
  EachOf("targets", entry.first_target, recording::kMostTargets, room_.targets,
         [&](const TargetEntry& target) { kept.targets.push_back(ReadTarget(entry, target)); });
  place_.clear();
  return kept;
}

TargetRecording Reader::ReadTarget(const FCProtocolEntry& entry, const TargetEntry& target) {
  TargetRecording kept;
  kept.record = target;
  kept.record.first_lun = nullptr;
  kept.record.next = nullptr;
  EachOf("LUNs of a target", target.first_lun, recording::kMostLuns, room_.luns, [&](const LunEntry& lun) {
    kept.luns.push_back(lun);
    kept.luns.back().next = nullptr;
  });
  Ask(&TORPI_GetPortStatisticsFC, kept.statistics, [&](TargetPortStatistics& statistics) {
    TargetStatisticsAddress address{};
    address.kind = kTargetByPortName;
    address.port_name = target.port_name;
    return TORPI_GetPortStatisticsFC(entry.handle.sd_handle, 0, &address, &statistics);
  });
  Ask(&TORPI_GetTargetLinkSpeed, kept.link_speed,
      [&](std::uint32_t& speed) { return TORPI_GetTargetLinkSpeed(&entry.handle, target.number, &speed); });
  return kept;
}

}  // namespace

HostRecording Capture(const CaptureOptions& options, std::vector<std::string>& cut) {
  return Reader(options, cut).Read();
}

}  // namespace snapshot
