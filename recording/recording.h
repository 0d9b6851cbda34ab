// What a host's device library answered: its lists, record by record, and one answer for each reading call.
// A snapshot writes it to a file, the simulated library plays it back, `diff` and `map` read it.
//
// Records are kept as the library wrote them, their unnamed gaps included. Only the addresses in them are
// null: what they led to is in the vectors here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/congestion_records.h"
#include "framework/device_library/flash_records.h"
#include "framework/device_library/library_answers.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/port_records.h"
#include "framework/device_library/target_records.h"
#include "framework/device_library/target_statistics_records.h"

namespace recording {

using Bytes = std::vector<std::uint8_t>;

enum class Asked : std::uint8_t {
  kNo,       // nobody asked: the call was not wanted, or its port was out of reach
  kYes,      // `result` and `record` are the answer
  kMissing,  // the library lacks the call
};

// The answer of a call that fills a record. A refusal keeps what the call has written all the same.
template <class Record>
struct Answer {
  Asked asked = Asked::kNo;
  LibraryStatus result = 0;
  Record record{};

  bool Good() const { return asked == Asked::kYes && result == kLibrarySuccess; }
};

// The most entries of one list. The device library's chains end by themselves, but nothing vouches for it.
inline constexpr std::size_t kMostAdapters = 256;
inline constexpr std::size_t kMostPorts = 64;           // of an adapter
inline constexpr std::size_t kMostProtocols = 1024;     // on a port: itself and its virtual ports
inline constexpr std::size_t kMostTargets = 4096;       // of a protocol entry
inline constexpr std::size_t kMostLuns = 16384;         // of a target
inline constexpr std::size_t kMostStatistics = 131072;  // elements for one port

// How much more a recording takes, so that a file of a few lines can't ask for all memory: entries of the
// named lists in the whole host.
struct Room {
  std::size_t protocols = 16384;
  std::size_t targets = 131072;
  std::size_t luns = 524288;
  std::size_t statistics = 131072;
};

// A buffer as a call left it, without its trailing zeros, and the size that the call reported, which may be
// more than the buffer ever held.
struct SizedBytes {
  std::uint32_t size = 0;
  Bytes bytes;
};

// The block of TORPI_GetFWPrivateStats: as much of it as FWPrivateStats shows.
struct StatisticsBlock {
  bool is_null = false;    // the call succeeds and gives no block
  std::uint32_t size = 0;  // as reported
  FWPrivateStats block{};
};

// The list of TORPI_GetSCMRStatisticsList, whose `next` are null here, and how it was taken back.
struct StatisticsList {
  std::vector<SCMRStatisticsEntry> elements;  // empty: a null list
  LibraryStatus free_result = 0;              // of TORPI_FreeSCMRStatisticsList
};

// What TORPI_FCGetBBCSupportInfoEx writes.
struct CreditRecoveryAnswer {
  std::uint8_t status = 0;
  std::uint8_t configured = 0;
  std::uint8_t state = 0;
  std::uint8_t negotiated = 0;
  FixedText<64> reason{};
};

// Both results of TORPI_GetHBAParamsInfo.
struct HbaParamsAnswer {
  HBAParamsInfo info{};
  HBAParamsExtra extra{};
};

// The image of a module: 512 bytes, A0 ahead of A2 (SFF-8472).
struct SfpImage {
  std::uint8_t bytes[512];
};

// True for an entry that the program serves, Fibre Channel over Ethernet or not. Nothing is asked about the
// others, and only their record is kept.
inline bool IsServed(const FCProtocolEntry& entry) {
  return entry.protocol_type == ProtocolType::kFc || entry.protocol_type == ProtocolType::kFcoe;
}

struct TargetRecording {
  TargetEntry record{};
  std::vector<LunEntry> luns;
  Answer<TargetPortStatistics> statistics;
  Answer<std::uint32_t> link_speed;  // LinkSpeed::code
};

struct ProtocolRecording {
  FCProtocolEntry record{};
  std::vector<TargetRecording> targets;

  Answer<FlashComponentVersions> flash_versions;
  Answer<FlashMemoBlock> memo_block;
  Answer<std::uint32_t> personality_change;  // the value is the answer, there is no status
  Answer<std::uint8_t> personality;
  Answer<BoardTemperature> temperature;
  Answer<LockdownStatus> lockdown;
  Answer<SizedBytes> vpd;
  Answer<SizedBytes> rdp;         // asked only when a snapshot may run a link diagnostic
  Answer<SfpImage> sfp;           // as the port has read it
  Answer<SfpImage> sfp_straight;  // read anew for one call
  Answer<HbaParamsAnswer> hba_params;
  Answer<CreditRecoveryAnswer> credit_recovery;
  Answer<std::uint32_t> error_correction;
  Answer<StatisticsBlock> firmware_statistics;
  Answer<std::uint8_t> mezzanine;
  Answer<HBAParamsInfo> boot;
  Answer<NVMeBootRecord> nvme_boot;
  Answer<std::uint32_t> beacon;
  Answer<std::uint32_t> diagnostic_port;  // the value is the answer
  Answer<std::uint8_t> host_nqn_registered;
  Answer<std::uint8_t> congestion_enabled;
  Answer<StatisticsList> congestion_statistics;
  Answer<SCMRProfile> congestion_profile;
};

struct PhyPortRecording {
  PhyPortEntry record{};
  bool has_protocols = false;
  ProtocolList protocol_list{};
  std::vector<ProtocolRecording> protocols;
};

struct AdapterRecording {
  AdapterEntry record{};
  bool has_ports = false;
  PortList port_list{};
  std::vector<PhyPortRecording> ports;
};

struct HostRecording {
  bool has_list = false;
  AdapterList list{};
  std::vector<AdapterRecording> adapters;
  Answer<std::uint8_t> reboot_required;
  Answer<std::uint32_t> boot_mode;  // the value is the answer
};

// Calls visit(key, call, answer) for every answer of a port, in the order of the file. `key` names the answer
// in the file, `call` is the library's.
template <class Protocol, class Visit>
requires requires(Protocol port) {
  port.targets;
}
void VisitAnswers(Protocol& port, Visit visit) {
  visit("flash-versions", "TORPI_GetFlashComponentVersion", port.flash_versions);
  visit("memo-block", "TORPI_GetAdapterFlashMemoBlock", port.memo_block);
  visit("personality-change", "TORPI_CheckOrindaPersonalityChangeOption", port.personality_change);
  visit("personality", "TORPI_GetPersonalityType", port.personality);
  visit("temperature", "TORPI_GetAdapterAsicBoardTemperature", port.temperature);
  visit("lockdown", "TORPI_GetLockdownStatus", port.lockdown);
  visit("vpd", "TORPI_GetVpd", port.vpd);
  visit("rdp", "TORPI_DiagnosticsRDPTest", port.rdp);
  visit("sfp", "TORPI_GetSFPDataEx", port.sfp);
  visit("sfp-straight", "TORPI_GetSFPDataEx", port.sfp_straight);
  visit("hba-params", "TORPI_GetHBAParamsInfo", port.hba_params);
  visit("credit-recovery", "TORPI_FCGetBBCSupportInfoEx", port.credit_recovery);
  visit("error-correction", "TORPI_FCGetFECSupportInfo", port.error_correction);
  visit("firmware-statistics", "TORPI_GetFWPrivateStats", port.firmware_statistics);
  visit("mezzanine", "TORPI_IsMezzAdapter", port.mezzanine);
  visit("boot", "TORPI_GetBootDeviceInfo", port.boot);
  visit("nvme-boot", "TORPI_GetNVMeBootDeviceEntries", port.nvme_boot);
  visit("beacon", "TORPI_GetAdapterBeaconStatus", port.beacon);
  visit("diagnostic-port", "TORPI_CheckAdapterDPortOption", port.diagnostic_port);
  visit("host-nqn-registered", "TORPI_GetNVMeHostNQNStatus", port.host_nqn_registered);
  visit("congestion-enabled", "TORPI_IsVCLMFeatureEnabled", port.congestion_enabled);
  visit("congestion-statistics", "TORPI_GetSCMRStatisticsList", port.congestion_statistics);
  visit("congestion-profile", "TORPI_GetSCMRProfile", port.congestion_profile);
}

// The same for the answers about a target.
template <class Target, class Visit>
requires requires(Target target) {
  target.luns;
}
void VisitAnswers(Target& target, Visit visit) {
  visit("statistics", "TORPI_GetPortStatisticsFC", target.statistics);
  visit("link-speed", "TORPI_GetTargetLinkSpeed", target.link_speed);
}

}  // namespace recording
