// Any bytes as the state file of a small host: through every reading call, one change and its saving.
//
// Oracle: print(parse(x)) is its own print. A file that is no state stays as it is, byte by byte. Of any
// other, what the calls answer before a save is what they answer after it to a host that starts with the
// saved file, and one that saves the same again writes the same file.
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "base/file.h"
#include "framework/device_library/calls.h"
#include "lab.h"

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

std::string HostPath() {
  return Path().substr(0, Path().rfind('/')) + "/host.yaml";
}

void RemoveFiles() {
  unlink(HostPath().c_str());
  unlink(Path().c_str());
  unlink((Path() + ".lock").c_str());
  rmdir(Path().substr(0, Path().rfind('/')).c_str());
}

std::string Content() {
  std::string text;
  Require(lab::ReadFile(Path().c_str(), text) == lab::FileResult::kRead);
  return text;
}

// What the calls answer, all in one text.
class Answers {
 public:
  template <class Answer>
  void Add(const Answer& answer) {
    Add(&answer, sizeof answer);
  }
  void Add(const void* bytes, std::size_t size) { text_.append(static_cast<const char*>(bytes), size); }

  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

// Calls with room for an answer, which is zero ahead of the call, and adds its result and the answer.
template <class Answer, class Call>
void Ask(Answers& answers, Call call) {
  auto answer = std::make_unique<Answer>();
  answers.Add(call(answer.get()));
  answers.Add(*answer);
}

struct CreditRecovery {
  std::uint8_t numbers[4];
  char reason[64];
};

void ReadConfiguration(const DeviceHandle* handle, Answers& answers) {
  Ask<HBAParamsInfo>(answers, [=](auto* info) {
    HBAParamsExtra extra{};
    return TORPI_GetHBAParamsInfo(handle, info, &extra);
  });
  Ask<HBAParamsInfo>(answers, [=](auto* info) { return TORPI_GetBootDeviceInfo(handle, info, 0); });
  Ask<NVMeBootRecord>(answers, [=](auto* boot) { return TORPI_GetNVMeBootDeviceEntries(handle, boot); });
  Ask<CreditRecovery>(answers, [=](auto* state) {
    std::uint8_t(&numbers)[4] = state->numbers;
    return TORPI_FCGetBBCSupportInfoEx(handle, &numbers[0], &numbers[1], &numbers[2], &numbers[3],
                                       state->reason, sizeof state->reason);
  });
  Ask<std::uint32_t>(answers, [=](auto* number) { return TORPI_FCGetFECSupportInfo(handle, number); });
  Ask<std::uint32_t>(answers, [=](auto* number) { return TORPI_GetAdapterBeaconStatus(handle, number); });
  Ask<std::uint8_t>(answers, [=](auto* flag) { return TORPI_GetNVMeHostNQNStatus(handle, flag); });
  Ask<std::uint8_t>(answers, [=](auto* flag) { return TORPI_GetPersonalityType(handle, flag); });
  answers.Add(TORPI_CheckAdapterDPortOption(handle));
}

void ReadCongestion(const DeviceHandle* handle, Answers& answers) {
  Ask<std::uint8_t>(answers, [=](auto* flag) { return TORPI_IsVCLMFeatureEnabled(handle, flag); });
  Ask<SCMRProfile>(answers, [=](auto* profile) { return TORPI_GetSCMRProfile(handle, profile); });
  SCMRStatisticsEntry* statistics = nullptr;
  if (TORPI_GetSCMRStatisticsList(handle, &statistics) != 0) return;
  for (SCMRStatisticsEntry* entry = statistics; entry != nullptr; entry = entry->next) {
    SCMRStatisticsEntry copy = *entry;
    copy.next = nullptr;
    answers.Add(copy);
  }
  TORPI_FreeSCMRStatisticsList(statistics);
}

void ReadImages(const DeviceHandle* handle, Answers& answers) {
  Ask<FlashComponentVersions>(
      answers, [=](auto* versions) { return TORPI_GetFlashComponentVersion(handle, versions); });
  Ask<FlashMemoBlock>(answers, [=](auto* memo) { return TORPI_GetAdapterFlashMemoBlock(handle, memo); });
  using Image = std::array<std::uint8_t, 1024>;
  Ask<Image>(answers, [=](auto* image) { return TORPI_GetSFPDataEx(handle, image->data(), 0, 0); });
  Ask<Image>(answers, [=](auto* image) {
    std::uint32_t size = image->size();
    return TORPI_GetVpd(handle, 0, image->data(), &size);
  });
  Ask<Image>(answers, [=](auto* image) {
    std::uint32_t size = 508;
    return TORPI_DiagnosticsRDPTest(handle, image->data(), &size);
  });
}

// Reads everything that a state can change. Returns the first port, or null for a host without adapters,
// which a mistake in the file gives.
const DeviceHandle* ReadAll(Answers& answers) {
  const DeviceHandle* first = nullptr;
  Ask<std::uint8_t>(answers, &TORPI_IsRebootRequired);
  for (const AdapterEntry* adapter = TORPI_GetAdapterList()->first; adapter != nullptr;
       adapter = adapter->next) {
    for (const PhyPortEntry* port = adapter->ports->first; port != nullptr; port = port->next) {
      for (const FCProtocolEntry* entry = port->protocols->first; entry != nullptr; entry = entry->next) {
        const DeviceHandle* const handle = &entry->handle;
        if (first == nullptr) first = handle;
        ReadConfiguration(handle, answers);
        ReadCongestion(handle, answers);
        ReadImages(handle, answers);
        for (std::uint16_t target = 0; target < 4; ++target) {
          Ask<std::uint32_t>(answers,
                             [=](auto* speed) { return TORPI_GetTargetLinkSpeed(handle, target, speed); });
        }
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
  Require(lab::WriteFile(HostPath().c_str(), kHost) == 0);
  setenv("TORPI_LAB_HOST", HostPath().c_str(), 1);
  setenv("TORPI_LAB_QUIET", "1", 1);
  setenv("TORPI_LAB_STATE", Path().c_str(), 1);
  for (const char* name : {"TORPI_LAB_FAULTS", "TORPI_LAB_TRACE", "TORPI_LAB_CHATTER"}) unsetenv(name);
  return std::atexit(RemoveFiles);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Require(lab::WriteFile(Path().c_str(), bytes) == 0);
  Start();
  Answers ignored;
  const DeviceHandle* port = ReadAll(ignored);
  if (port == nullptr || TORPI_UpdateAdapterBeaconStatus(port, 1) != 0) {
    Require(Content() == bytes);  // a file that is no state is left as it is
    return 0;
  }
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
  return 0;
}
