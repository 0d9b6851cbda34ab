// Any bytes as host file, and what follows a line of kStateMark as state file, through the whole library: bad
// ones have a report of plain lines, good ones are served by all calls that read.
//
// Oracle: capture(play(x)) = x. What is captured of a good host is a snapshot that plays back: captured of
// that, it is the same text. Beside it, what the report and the lists may hold.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "framework/device_library/calls.h"
#include "framework/device_library/target_records.h"
#include "host_answers.h"
#include "host_file/host_keys.h"
#include "lab.h"
#include "played_host.h"
#include "state/state_check.h"

namespace {

constexpr std::string_view kStateMark = "\n=== state\n";

// So small that one input takes a moment.
constexpr lab::Limits kSmall = [] {
  lab::Limits limits;
  limits.file_bytes = 16384;
  limits.values = 4096;
  limits.image_bytes = 65536;
  limits.adapters = limits.ports = limits.virtual_ports = 4;
  limits.targets = 16;
  limits.luns = 64;
  limits.host_ports = 16;
  limits.host_targets = 64;
  limits.host_luns = 512;
  return limits;
}();
constexpr std::uint32_t kLargestDump = 65536;
constexpr std::uint32_t kMostDeparted = 100;

// Each mistake is one line with the name of the file and without anything that a terminal obeys.
void CheckReport(const std::string& report) {
  std::string_view rest = report;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    Require(line.starts_with("lab.yaml:"));
    for (const char c : line) Require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7f);
    rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : rest.size());
  }
}

// Whether a good host answers quickly, which its numbers decide.
bool IsQuick(const lab::Host& host) {
  for (const lab::Adapter& adapter : host.adapters) {
    for (const lab::Port& port : adapter.ports) {
      for (const lab::Entry& entry : port.entries) {
        if (entry.reports.dump.size > kLargestDump || entry.congestion.departed > kMostDeparted) return false;
      }
    }
  }
  return true;
}

void ReadFlash(const DeviceHandle& handle) {
  FlashComponentVersions versions{};
  FlashMemoBlock memo{};
  std::uint8_t byte = 0;
  TORPI_GetFlashComponentVersion(&handle, &versions);
  TORPI_GetAdapterFlashMemoBlock(&handle, &memo);
  TORPI_CheckOrindaPersonalityChangeOption(&handle);
  TORPI_GetPersonalityType(&handle, &byte);
  TORPI_IsMezzAdapter(&handle, &byte);
}

void ReadReports(const DeviceHandle& handle) {
  BoardTemperature temperature{};
  LockdownStatus lockdown{};
  TORPI_GetAdapterAsicBoardTemperature(&handle, &temperature);
  TORPI_GetLockdownStatus(&handle, &lockdown);
  std::vector<std::uint8_t> bytes(1024);
  std::uint32_t size = 1024;
  TORPI_GetVpd(&handle, 0, bytes.data(), &size);
  size = 508;
  TORPI_DiagnosticsRDPTest(&handle, bytes.data(), &size);
  for (const std::uint32_t mode : {0u, 1u, 3u}) TORPI_GetSFPDataEx(&handle, bytes.data(), mode, 0);
  void* dump = nullptr;
  TORPI_SDGetFwDump2(handle.sd_handle, 0, &dump, &size);
  std::free(dump);
}

void ReadConfigurationOf(const DeviceHandle& handle) {
  HBAParamsInfo parameters{};
  HBAParamsExtra extra{};
  NVMeBootRecord nvme{};
  FWPrivateStats* statistics = nullptr;
  std::uint8_t bytes[4] = {};
  char reason[64] = {};
  std::uint32_t word = 0;
  TORPI_GetHBAParamsInfo(&handle, &parameters, &extra);
  TORPI_GetBootDeviceInfo(&handle, &parameters, 0);
  TORPI_GetNVMeBootDeviceEntries(&handle, &nvme);
  TORPI_FCGetBBCSupportInfoEx(&handle, &bytes[0], &bytes[1], &bytes[2], &bytes[3], reason, sizeof reason);
  TORPI_FCGetFECSupportInfo(&handle, &word);
  TORPI_GetFWPrivateStats(&handle, &statistics, &word);
  std::free(statistics);
  TORPI_GetAdapterBeaconStatus(&handle, &word);
  TORPI_CheckAdapterDPortOption(&handle);
  TORPI_GetNVMeHostNQNStatus(&handle, bytes);
}

void ReadCongestionOf(const DeviceHandle& handle) {
  std::uint8_t enabled = 0;
  SCMRProfile profile{};
  SCMRStatisticsEntry* head = nullptr;
  TORPI_IsVCLMFeatureEnabled(&handle, &enabled);
  TORPI_GetSCMRProfile(&handle, &profile);
  if (TORPI_GetSCMRStatisticsList(&handle, &head) == 0 && head != nullptr) TORPI_FreeSCMRStatisticsList(head);
}

void ReadTargets(const FCProtocolEntry& port) {
  std::uint32_t targets = 0;
  for (const TargetEntry* target = port.first_target; target != nullptr; target = target->next) {
    ++targets;
    for (const LunEntry* lun = target->first_lun; lun != nullptr; lun = lun->next) {
      Require(lun->fcp_unique_id_length <= sizeof lun->unique_id);
    }
    TargetStatisticsAddress address{};
    TargetPortStatistics statistics{};
    std::uint32_t speed = 0;
    TORPI_GetPortStatisticsFC(port.handle.sd_handle, 0, &address, &statistics);
    TORPI_GetTargetLinkSpeed(&port.handle, target->number, &speed);
  }
  Require(targets == port.target_count);
}

void ReadHost() {
  const AdapterList* const list = TORPI_GetAdapterList();
  std::uint8_t required = 0;
  TORPI_IsRebootRequired(&required);
  TORPI_GetBfsConfigMode();
  for (const AdapterEntry* adapter = list != nullptr ? list->first : nullptr; adapter;
       adapter = adapter->next) {
    if (adapter->ports == nullptr) continue;
    for (const PhyPortEntry* port = adapter->ports->first; port != nullptr; port = port->next) {
      if (port->protocols == nullptr) continue;
      for (const FCProtocolEntry* entry = port->protocols->first; entry != nullptr; entry = entry->next) {
        ReadFlash(entry->handle);
        ReadReports(entry->handle);
        ReadConfigurationOf(entry->handle);
        ReadCongestionOf(entry->handle);
        ReadTargets(*entry);
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const NamedFile host_file("TORPI_LAB_HOST");
  static const NamedFile state_file("TORPI_LAB_STATE");
  setenv("TORPI_LAB_CHATTER", "0", 1);  // whatever the host file says
  setenv("TORPI_LAB_QUIET", "1", 1);

  const std::string input(reinterpret_cast<const char*>(data), size);
  if (input.find("/dev/") != std::string::npos) return 0;  // a device as image can wait for somebody
  const std::size_t mark = input.find(kStateMark);
  const std::string host_text = input.substr(0, mark);
  const std::string state_text = mark == std::string::npos ? "" : input.substr(mark + kStateMark.size());

  lab::Host host;
  lab::StateContent content;
  const std::string mistakes = lab::ReadHost("lab.yaml", host_text, host, kSmall);
  const std::string state_mistakes =
      state_text.empty() ? "" : lab::CheckState("lab.yaml", state_text, content);
  CheckReport(mistakes);
  CheckReport(state_mistakes);
  if (!mistakes.empty() || !state_mistakes.empty() || !IsQuick(host)) return 0;

  host_file.Hold(host_text);
  state_file.Hold(state_text);
  lab::Lab::Reset();
  ReadHost();
  const AdapterList* const list = TORPI_GetAdapterList();
  Require(list == nullptr || list->count == host.adapters.size());
  lab::Lab::Reset();
  const std::string snapshot = CapturedText();
  lab::Lab::Reset();
  Answers of_host;
  ReadAll(of_host);
  state_file.Forget();
  host_file.Hold(snapshot);
  lab::Lab::Reset();
  Require(CapturedText() == snapshot);
  lab::Lab::Reset();
  Answers of_snapshot;
  ReadAll(of_snapshot);
  Require(of_snapshot.Text() == of_host.Text());
  lab::Lab::Reset();
  return 0;
}
