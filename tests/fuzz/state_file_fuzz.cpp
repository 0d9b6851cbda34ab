// Any bytes as the state file of a small host: through every reading call, changes and their saving.
//
// Oracle: print(parse(x)) is its own print. A file that is no state stays as it is, byte by byte. Of any
// other, what the calls answer before a save is what they answer after it to a host that starts with the
// saved file, and one that saves the same again writes the same file.
#include <stdlib.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "host_answers.h"
#include "lab.h"
#include "memory_descriptors.h"

namespace {

// Of the family that has most to keep; the corpus names this adapter and this port.
constexpr const char* kHost = R"(
adapters:
  - family: dahlia
    serial: DH64003
    ports:
      - wwpn: 21:00:f4:c7:aa:64:00:10
        port-id: 01:21:00
        congestion:
          state: congested
          profile: {management: nvram, activation: aggressive}
          statistics:
            port: {congestion-alarms: 2}
            targets: {50:06:0b:00:3b:20:40:00: {throttled-down: 9}}
            departed-targets: 2
        configuration:
          nvme-boot: [{enabled: true, wwpn: 50:06:0b:00:3b:20:40:10, nqn: nqn.x, namespace: 4}]
          fec: {enabled: true, correctable-errors: 41}
        targets:
          - {wwpn: 50:06:0b:00:3b:20:40:00, port-id: 01:21:80, luns: 0}
          - {type: nvme, wwpn: 50:06:0b:00:3b:20:40:10, port-id: 01:21:81, namespaces: 1}
)";

void Require(bool condition) {
  if (!condition) std::abort();
}

constexpr const char* kHostPath = "/in-memory/host.yaml";
constexpr const char* kStatePath = "/in-memory/state.yaml";
constexpr const char* kLockPath = "/in-memory/state.yaml.lock";

const std::string& Content() {
  const MemoryFiles::Content content = MemoryFiles::Get().Find(kStatePath);
  Require(content != nullptr);
  return *content;
}

// Only what belongs there is left, and nothing is open.
void CheckFiles() {
  MemoryFiles& files = MemoryFiles::Get();
  Require(files.OpenFiles() == 0 && MemoryDescriptors::Get().Count() == 0);
  Require(files.Count() == (files.Find(kLockPath) != nullptr ? 3 : 2));
}

// Changes one setting of each record that a state file keeps.
void ChangeSettings(const DeviceHandle* port) {
  HBAParamsInfo parameters{};
  HBAParamsExtra extra{};
  Require(TORPI_GetHBAParamsInfo(port, &parameters, &extra) == 0);
  parameters.frame_size = parameters.frame_size == 512 ? 1024 : 512;
  parameters.hard_loop_id ^= 1;
  Require(TORPI_UpdateHBAParameters(port, &parameters) == 0);
  Require(TORPI_GetBootDeviceInfo(port, &parameters, 0) == 0);
  parameters.alternate_drive_7.lun ^= 0x101;
  Require(TORPI_SetBootDeviceInfo(port, &parameters) == 0);
  Require(TORPI_FCSetBBCSupportInfo(port, 1, 7) == 0);
  Require(TORPI_FCSetFECSupportInfo(port, 0) == 0);
}

void Start() {
  lab::Lab::Reset();
  static std::FILE* const nowhere = std::fopen("/dev/null", "w");
  stderr = nowhere;  // the mistakes, of which there are many
}

void Check(const std::string& bytes) {
  Start();
  Answers ignored;
  const DeviceHandle* port = ReadAll(ignored);
  if (port == nullptr || TORPI_UpdateAdapterBeaconStatus(port, 1) != 0) {
    Require(Content() == bytes);  // a file that is no state is left as it is
    return CheckFiles();
  }
  ChangeSettings(port);
  Answers before;
  ReadAll(before);
  const std::string saved = Content();
  Start();
  Answers after;
  port = ReadAll(after);
  Require(port != nullptr && after.Text() == before.Text());
  std::uint32_t beacon = 9;
  Require(TORPI_GetAdapterBeaconStatus(port, &beacon) == 0 && beacon == 1);
  Require(TORPI_UpdateAdapterBeaconStatus(port, 1) == 0 && Content() == saved);
  CheckFiles();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  *MemoryFiles::Get().Make(kHostPath) = kHost;
  setenv("TORPI_LAB_HOST", kHostPath, 1);
  setenv("TORPI_LAB_QUIET", "1", 1);
  setenv("TORPI_LAB_STATE", kStatePath, 1);
  for (const char* name : {"TORPI_LAB_FAULTS", "TORPI_LAB_TRACE", "TORPI_LAB_CHATTER"}) unsetenv(name);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  *MemoryFiles::Get().Make(kStatePath) = bytes;
  Check(bytes);
  // What is kept until the next input looks like a leak, and has the input run again.
  lab::Lab::Reset();
  MemoryFiles::Get().Remove(kStatePath);
  return 0;
}
