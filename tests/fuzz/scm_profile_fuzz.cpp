// The congestion profile of a port, whatever the library answers and whatever words come with `set`, against
// a second implementation of `port scmprofile get` and `set`: the document, the calls, and the record that
// the library is given.
//
// The first byte of an input chooses the form of the document, the command and the first word, the second one
// the family, the third the results of the calls; then come what the commands read of the port, the two
// records that the library has, and the words.
#include <algorithm>
#include <iterator>
#include <string>

#include "congestion/physical_port_scm_profile_cmds_processor.h"
#include "device/device_command.h"
#include "framework/device_library/calls.h"
#include "reference/congestion_reference.h"

namespace {

constexpr Region kPortRegions[] = {{0, 16}, {20, 4}, {160, 4}, {462, 2}, {608, 5}};
constexpr Region kPortCodes[] = {{612, 1}, {462, 2}};
constexpr std::size_t kProfileBytes = sizeof(SCMRProfile);
constexpr std::size_t kMostWords = 8;

std::uint8_t profiles[2][kProfileBytes];  // before the change and after it
std::uint8_t written[kProfileBytes];
std::string calls;
reference::ProfileAnswers answers;

LibraryStatus Answer(const DeviceHandle* handle, char call) {
  Require(handle == &Host().fc->handle && calls.size() < std::size(answers.results));
  calls += call;
  return answers.results[calls.size() - 1];
}

// Successes mostly. What a failure is that is not maintenance mode makes no difference.
void ChooseResults(std::uint8_t choice) {
  constexpr std::uint32_t kFailures[] = {1, 13, 151, 0xFFFFFFFF};
  for (std::uint32_t& result : answers.results) {
    constexpr std::uint8_t kMaintenance = 2;
    constexpr std::uint8_t kFails = 3;
    const std::uint8_t kind = choice & 3;
    result = kind == kMaintenance ? 150 : kind == kFails ? kFailures[choice >> 2 & 3] : kLibrarySuccess;
    choice = static_cast<std::uint8_t>(choice >> 2);
  }
}

// One of the words that mean something here, in another case now and then, or any text.
std::string Word(Input& input) {
  constexpr const char* kWords[] = {
      "--restore", "-r",         "Driver_Settings", "--activation", "-a",    "Monitor_Only",  "Conservative",
      "Moderate",  "Aggressive", "Defensive",       "Unknown",      "NVRAM", "Driver_Setting"};
  const std::uint8_t choice = input.Byte();
  if (const std::size_t place = choice & 15; place < std::size(kWords)) {
    std::string word = kWords[place];
    for (std::size_t i = 0; i < word.size(); ++i) {
      const bool is_letter = (word[i] >= 'a' && word[i] <= 'z') || (word[i] >= 'A' && word[i] <= 'Z');
      if (is_letter && (choice >> (4 + i % 4) & 1) != 0) word[i] = static_cast<char>(word[i] ^ 0x20);
    }
    return word;
  }
  std::string word(choice >> 4, '\0');
  input.Fill(word.data(), word.size());
  word.resize(std::min(word.find('\0'), word.size()));
  return word;
}

Words MakeWords(Input& input, std::uint8_t choice) {
  Words words;
  switch (choice) {
    case 0:
      return words;
    case 1:
      words.emplace_back("/HELP");
      break;
    case 2:
      words.push_back(PortIdentifier() + "_");
      break;
    case 3:
      words.emplace_back("-a");
      break;
    default:
      words.push_back(PortIdentifier());
  }
  while (input.Size() > 0 && words.size() < kMostWords) words.push_back(Word(input));
  return words;
}

}  // namespace

LibraryStatus TORPI_GetSCMRProfile(const DeviceHandle* handle, SCMRProfile* out) {
  constexpr std::uint8_t kZeros[kProfileBytes] = {};
  const bool is_first = calls.empty();
  Require(!is_first || std::memcmp(out, kZeros, kProfileBytes) == 0);
  std::memcpy(static_cast<void*>(out), profiles[is_first ? 0 : 1], kProfileBytes);  // of a failure too
  return Answer(handle, 'r');
}
LibraryStatus TORPI_SetSCMRProfile(const DeviceHandle* handle, const SCMRProfile* profile) {
  std::memcpy(written, profile, kProfileBytes);
  return Answer(handle, 'w');
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint16_t kManaged[] = {0x3522, 0x3D62, 0x3150, 0x3850, 0x3640, 0x3748, 0x3E48};
  Input input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::uint8_t family = input.SpreadByte();
  const bool xml = (choice & 1) == 0;
  const bool changes = (choice & 2) == 0;
  ChooseResults(input.Byte());
  DeviceHost& host = Host();
  FillRecord(input, host.fc, sizeof *host.fc, kPortRegions);
  ChooseCodes(input, host.fc, kPortCodes, 5);
  for (auto& profile : profiles) {
    input.Fill(profile, sizeof profile);
    profile[2] = profile[2] < 0xC0 ? profile[2] % 8 : profile[2];
  }
  ChoosePciIdentity(*host.fc, family);
  // Most of the time a port that has a profile.
  if ((choice & 4) == 0) host.fc->pci.device_id = kManaged[family % std::size(kManaged)];
  if ((choice & 8) == 0) host.fc->capabilities |= 1U << 26;
  host.Link();
  const Words words = MakeWords(input, choice >> 4);
  answers.first = profiles[0];
  answers.second = profiles[1];
  calls.clear();

  const std::string identifier = PortIdentifier();
  const std::string_view found =
      RunCommand(&PhysicalPortSCMProfileCmdsProcessor, changes ? "set" : "get", words, xml);
  const reference::ProfileOutcome expected =
      changes ? reference::ChangeProfile(xml, host.fc, identifier, words, answers)
              : reference::ShowProfile(xml, host.fc, identifier, words, answers);
  RequireSame(found, expected.document);
  Require(calls == expected.calls);
  Require(calls.size() < 2 || std::memcmp(written, expected.written.data(), kProfileBytes) == 0);
  return 0;
}
