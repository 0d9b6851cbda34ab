// The calls of congestion management:
//
//   HOSTILE_VCLM_ENABLED      the feature flag; 1 without it
//   HOSTILE_SCMR_LIST         file with the elements of the statistics list, one after the other, whose
//                             pointers are set here; without it the list is null. A caller that writes to an
//                             element, or reads one that it has handed back, dies
//   HOSTILE_SCMR_ELEMENTS     the elements themselves, as hexadecimal digits, with semicolons between them
//   HOSTILE_SCMR_PROFILE      bytes, as hexadecimal digits, of the profile in force at the start
//   HOSTILE_SCMR_READ_AGAIN   the result of the second read of the profile and of those after it
#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "hostile_library.h"

using hostile::Answer;
using hostile::Fill;
using hostile::Format;
using hostile::Hex;
using hostile::NameOf;
using hostile::Setting;

namespace {

struct StatisticsList {
  SCMRStatisticsEntry* first = nullptr;
  std::size_t size = 0;  // bytes
};

std::string Content(const std::string& path) {
  std::string content;
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) std::abort();
  char piece[65536];
  for (std::size_t count; (count = std::fread(piece, 1, sizeof piece, file)) > 0;)
    content.append(piece, count);
  std::fclose(file);
  return content;
}

// The bytes of digits; what lies between the elements is passed over.
std::string Bytes(const std::string& digits) {
  std::string bytes;
  for (std::size_t at = 0; at + 1 < digits.size(); at += digits[at] == ';' ? 1 : 2) {
    if (digits[at] != ';')
      bytes += static_cast<char>(std::strtoul(digits.substr(at, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

StatisticsList LoadList() {
  const std::string path = Setting("HOSTILE_SCMR_LIST");
  const std::string content = path.empty() ? Bytes(Setting("HOSTILE_SCMR_ELEMENTS")) : Content(path);
  const std::size_t count = content.size() / sizeof(SCMRStatisticsEntry);
  if (count == 0) return {};
  void* const memory =
      mmap(nullptr, content.size(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) std::abort();
  std::memcpy(memory, content.data(), content.size());
  auto* const first = static_cast<SCMRStatisticsEntry*>(memory);
  for (std::size_t i = 0; i < count; ++i) first[i].next = i + 1 < count ? first + i + 1 : nullptr;
  if (mprotect(memory, content.size(), PROT_READ) != 0) std::abort();
  return {first, content.size()};
}

const StatisticsList& List() {
  static const StatisticsList list = LoadList();
  return list;
}

SCMRProfile& Profile() {
  static SCMRProfile profile = [] {
    SCMRProfile start = {};
    Fill("HOSTILE_SCMR_PROFILE", &start, sizeof start);
    return start;
  }();
  return profile;
}

// The result of a read that has been answered: its own from the second one on.
LibraryStatus ResultOfRead(LibraryStatus result) {
  static bool again = false;
  const std::string setting = again ? Setting("HOSTILE_SCMR_READ_AGAIN") : "";
  again = true;
  return setting.empty() ? result : static_cast<LibraryStatus>(std::strtoul(setting.c_str(), nullptr, 0));
}

}  // namespace

extern "C" {

LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle* handle, std::uint8_t* out_enabled) {
  const LibraryStatus result =
      Answer("TORPI_IsVCLMFeatureEnabled", NameOf(handle) + Format(", %u", *out_enabled));
  const std::string enabled = Setting("HOSTILE_VCLM_ENABLED");
  const unsigned long flag = enabled.empty() ? 1 : std::strtoul(enabled.c_str(), nullptr, 0);
  if (result == 0) *out_enabled = static_cast<std::uint8_t>(flag);
  return result;
}

LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle* handle, SCMRStatisticsEntry** out_head) {
  const LibraryStatus result = Answer("TORPI_GetSCMRStatisticsList",
                                      NameOf(handle) + (*out_head != nullptr ? ", used head" : ", null"));
  if (result != 0) return result;
  *out_head = List().first;
  // Handed back before, it is the caller's again.
  if (List().size > 0 && mprotect(List().first, List().size, PROT_READ) != 0) std::abort();
  return result;
}

LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head) {
  const char* const what = head == nullptr ? "null" : head == List().first ? "the list" : "something else";
  const LibraryStatus result = Answer("TORPI_FreeSCMRStatisticsList", what);
  if (head == List().first && mprotect(head, List().size, PROT_NONE) != 0) std::abort();
  return result;
}

LibraryStatus TORPI_SANCongMgmtResetStatistics(const DeviceHandle* handle) {
  return Answer("TORPI_SANCongMgmtResetStatistics", NameOf(handle));
}

LibraryStatus TORPI_GetSCMRProfile(const DeviceHandle* handle, SCMRProfile* out) {
  const LibraryStatus result = ResultOfRead(Answer("TORPI_GetSCMRProfile", NameOf(handle)));
  if (result == 0) *out = Profile();
  return result;
}

LibraryStatus TORPI_SetSCMRProfile(const DeviceHandle* handle, const SCMRProfile* profile) {
  const LibraryStatus result =
      Answer("TORPI_SetSCMRProfile", NameOf(handle) + ", " + Hex(profile, sizeof *profile));
  if (result == 0) Profile() = *profile;
  return result;
}

}  // extern "C"
