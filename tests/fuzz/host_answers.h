// What all reading calls of the simulated library answer, as one text to compare.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/calls.h"
#include "framework/device_library/port_entry.h"
#include "framework/device_library/target_records.h"

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

// Calls with room for an answer, which is zero ahead of the call, and adds its result; of a success the
// answer too.
template <class Answer, class Call>
void Ask(Answers& answers, Call call) {
  auto answer = std::make_unique<Answer>();
  const LibraryStatus result = call(answer.get());
  answers.Add(result);
  if (result == kLibrarySuccess) answers.Add(*answer);
}

struct CreditRecovery {
  std::uint8_t numbers[4];
  char reason[64];
};

inline void ReadConfiguration(const DeviceHandle* handle, Answers& answers) {
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

inline void ReadCongestion(const DeviceHandle* handle, Answers& answers) {
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

inline void ReadImages(const DeviceHandle* handle, Answers& answers) {
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

// The records, which point to each other.

inline void AddRecord(AdapterEntry record, Answers& answers) {
  record.ports = nullptr;
  record.next = nullptr;
  answers.Add(record);
}

inline void AddRecord(LunEntry record, Answers& answers) {
  record.next = nullptr;
  answers.Add(record);
}

inline void AddRecord(TargetEntry record, Answers& answers) {
  for (const LunEntry* lun = record.first_lun; lun != nullptr; lun = lun->next) AddRecord(*lun, answers);
  record.first_lun = nullptr;
  record.next = nullptr;
  answers.Add(record);
}

inline void AddRecord(FCProtocolEntry record, Answers& answers) {
  for (const TargetEntry* target = record.first_target; target != nullptr; target = target->next) {
    AddRecord(*target, answers);
  }
  record.first_target = nullptr;
  record.next = nullptr;
  answers.Add(record);
}

// Reads everything that a state file can change, of every port. Returns the first port, or null for a host
// without adapters, which a mistake in the file gives.
inline const DeviceHandle* ReadAll(Answers& answers) {
  const DeviceHandle* first = nullptr;
  Ask<std::uint8_t>(answers, &TORPI_IsRebootRequired);
  const AdapterList* const list = TORPI_GetAdapterList();
  for (const AdapterEntry* adapter = list != nullptr ? list->first : nullptr; adapter != nullptr;
       adapter = adapter->next) {
    AddRecord(*adapter, answers);
    if (adapter->ports == nullptr) continue;
    for (const PhyPortEntry* port = adapter->ports->first; port != nullptr; port = port->next) {
      if (port->protocols == nullptr) continue;
      for (const FCProtocolEntry* entry = port->protocols->first; entry != nullptr; entry = entry->next) {
        const DeviceHandle* const handle = &entry->handle;
        if (first == nullptr) first = handle;
        AddRecord(*entry, answers);
        ReadConfiguration(handle, answers);
        ReadCongestion(handle, answers);
        ReadImages(handle, answers);
        for (const TargetEntry* target = entry->first_target; target != nullptr; target = target->next) {
          Ask<std::uint32_t>(
              answers, [=](auto* speed) { return TORPI_GetTargetLinkSpeed(handle, target->number, speed); });
        }
      }
    }
  }
  return first;
}
