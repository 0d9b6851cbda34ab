// Any bytes as a snapshot: bad ones have a report, good ones are written as they are read, are anonymised,
// and are played back by all calls that read.
//
// Oracle: print(parse(x)) is its own print, also of what is anonymised, and capture(play(x)) is its own
// capture.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "framework/device_library/calls.h"
#include "host_answers.h"
#include "lab.h"
#include "played_host.h"
#include "recorded/recorded_file.h"
#include "recording/recording_text.h"
#include "tools/snapshot/anonymise.h"

namespace {

recording::HostRecording Read(const std::string& text) {
  recording::HostRecording host;
  Require(lab::ReadRecording("lab.yaml", text, host).empty());
  return host;
}

void Play(const FCProtocolEntry& entry) {
  const DeviceHandle* const handle = &entry.handle;
  std::vector<std::uint8_t> bytes(4096);
  std::uint32_t size = 1024;
  std::uint32_t number = 0;
  std::uint8_t byte = 0;
  TORPI_GetVpd(handle, 0, bytes.data(), &size);
  size = 508;
  TORPI_DiagnosticsRDPTest(handle, bytes.data(), &size);
  for (const std::uint32_t mode : {0u, 1u, 2u, 3u}) TORPI_GetSFPDataEx(handle, bytes.data(), mode, 0);
  FWPrivateStats* block = nullptr;
  TORPI_GetFWPrivateStats(handle, &block, &number);
  std::free(block);
  char reason[64];
  TORPI_FCGetBBCSupportInfoEx(handle, &byte, &byte, &byte, &byte, reason, sizeof reason);
  SCMRStatisticsEntry* list = nullptr;
  TORPI_GetSCMRStatisticsList(handle, &list);
  if (list != nullptr) TORPI_FreeSCMRStatisticsList(list);
  for (const TargetEntry* target = entry.first_target; target != nullptr; target = target->next) {
    TargetStatisticsAddress address{};
    address.kind = kTargetByPortName;
    address.port_name = target->port_name;
    TargetPortStatistics statistics{};
    TORPI_GetPortStatisticsFC(handle->sd_handle, 0, &address, &statistics);
    TORPI_GetTargetLinkSpeed(handle, target->number, &number);
    for (const LunEntry* lun = target->first_lun; lun != nullptr; lun = lun->next) byte ^= lun->unique_id[31];
  }
}

void PlayHost() {
  const AdapterList* const list = TORPI_GetAdapterList();
  for (const AdapterEntry* adapter = list ? list->first : nullptr; adapter; adapter = adapter->next) {
    for (const PhyPortEntry* port = adapter->ports ? adapter->ports->first : nullptr; port;
         port = port->next) {
      const ProtocolList* const protocols = port->protocols;
      for (const FCProtocolEntry* entry = protocols ? protocols->first : nullptr; entry;
           entry = entry->next) {
        Play(*entry);
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  recording::HostRecording host;
  if (!lab::ReadRecording("lab.yaml", text, host).empty()) return 0;

  const std::string written = recording::ToText(host);
  Require(recording::ToText(Read(written)) == written);
  snapshot::Anonymise(host);
  const std::string hidden = recording::ToText(host);
  Require(recording::ToText(Read(hidden)) == hidden);

  static const NamedFile host_file("TORPI_LAB_HOST");
  setenv("TORPI_LAB_QUIET", "1", 1);
  host_file.Hold(written);
  lab::Lab::Reset();
  PlayHost();
  Answers of_snapshot;
  ReadAll(of_snapshot);
  const std::string captured = CapturedText();
  host_file.Hold(captured);
  lab::Lab::Reset();
  Answers of_captured;
  ReadAll(of_captured);
  Require(of_captured.Text() == of_snapshot.Text());
  Require(CapturedText() == captured);
  lab::Lab::Reset();
  return 0;
}
