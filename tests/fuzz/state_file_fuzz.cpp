// Any bytes as the state file of the built-in host: through every reading call, one change and its saving.
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "base/file.h"
#include "framework/device_library/calls.h"
#include "lab.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// A file of this process, in memory where the machine has such a place: it is synchronised to the disk each
// time.
const std::string& Path() {
  static const std::string path = [] {
    std::string folder = access("/dev/shm", W_OK) == 0 ? "/dev/shm/" : "/tmp/";
    folder += "state_fuzz.XXXXXX";
    Require(mkdtemp(folder.data()) != nullptr);
    return folder + "/state.yaml";
  }();
  return path;
}

void RemoveFiles() {
  unlink(Path().c_str());
  unlink((Path() + ".lock").c_str());
  rmdir(Path().substr(0, Path().rfind('/')).c_str());
}

std::string Content() {
  std::string text;
  Require(lab::ReadFile(Path().c_str(), text) == lab::FileResult::kRead);
  return text;
}

void ReadPort(const DeviceHandle* handle) {
  HBAParamsInfo parameters{};
  HBAParamsExtra extra{};
  TORPI_GetHBAParamsInfo(handle, &parameters, &extra);
  NVMeBootRecord boot{};
  TORPI_GetNVMeBootDeviceEntries(handle, &boot);
  std::uint8_t status, configured, state, negotiated;
  char reason[64];
  TORPI_FCGetBBCSupportInfoEx(handle, &status, &configured, &state, &negotiated, reason, sizeof reason);
  std::uint32_t number;
  TORPI_FCGetFECSupportInfo(handle, &number);
  TORPI_GetAdapterBeaconStatus(handle, &number);
  TORPI_CheckAdapterDPortOption(handle);
  std::uint8_t flag;
  TORPI_GetNVMeHostNQNStatus(handle, &flag);
  TORPI_IsVCLMFeatureEnabled(handle, &flag);
  TORPI_GetPersonalityType(handle, &flag);
  SCMRProfile profile{};
  TORPI_GetSCMRProfile(handle, &profile);
  SCMRStatisticsEntry* statistics = nullptr;
  if (TORPI_GetSCMRStatisticsList(handle, &statistics) == 0) TORPI_FreeSCMRStatisticsList(statistics);
  FlashComponentVersions versions{};
  TORPI_GetFlashComponentVersion(handle, &versions);
  FlashMemoBlock memo{};
  TORPI_GetAdapterFlashMemoBlock(handle, &memo);
  std::uint8_t bytes[1024];
  TORPI_GetSFPDataEx(handle, bytes, 0, 0);
  std::uint32_t size = sizeof bytes;
  TORPI_GetVpd(handle, 0, bytes, &size);
  size = 508;
  TORPI_DiagnosticsRDPTest(handle, bytes, &size);
  std::uint32_t speed;
  for (std::uint16_t target = 0; target < 4; ++target) TORPI_GetTargetLinkSpeed(handle, target, &speed);
}

// Reads everything that a state can change. Returns the first port, or null for a host without adapters,
// which a mistake in the file gives.
const DeviceHandle* ReadAll() {
  const DeviceHandle* first = nullptr;
  std::uint8_t reboot;
  TORPI_IsRebootRequired(&reboot);
  for (const AdapterEntry* adapter = TORPI_GetAdapterList()->first; adapter != nullptr;
       adapter = adapter->next) {
    for (const PhyPortEntry* port = adapter->ports->first; port != nullptr; port = port->next) {
      for (const FCProtocolEntry* entry = port->protocols->first; entry != nullptr; entry = entry->next) {
        if (first == nullptr) first = &entry->handle;
        ReadPort(&entry->handle);
      }
    }
  }
  return first;
}

void Start() {
  lab::Lab::Reset();
  static std::FILE* const nowhere = std::fopen("/dev/null", "w");
  stderr = nowhere;  // the mistakes, of which there are many
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("TORPI_LAB_QUIET", "1", 1);
  setenv("TORPI_LAB_STATE", Path().c_str(), 1);
  for (const char* name : {"TORPI_LAB_HOST", "TORPI_LAB_FAULTS", "TORPI_LAB_TRACE", "TORPI_LAB_CHATTER"})
    unsetenv(name);
  return std::atexit(RemoveFiles);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Require(lab::WriteFile(Path().c_str(), bytes) == 0);
  Start();
  const DeviceHandle* port = ReadAll();
  if (port == nullptr || TORPI_UpdateAdapterBeaconStatus(port, 1) != 0) {
    Require(Content() == bytes);  // a file that is no state is left as it is
    return 0;
  }
  const std::string saved = Content();
  Start();
  port = ReadAll();
  Require(port != nullptr);
  std::uint32_t beacon = 9;
  Require(TORPI_GetAdapterBeaconStatus(port, &beacon) == 0 && beacon == 1);
  Require(TORPI_UpdateAdapterBeaconStatus(port, 1) == 0 && Content() == saved);
  return 0;
}
