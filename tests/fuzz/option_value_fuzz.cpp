// The options of `setFile`. An input is up to three commands with a zero byte between two. The first bytes of
// a command choose the node and make the adapter, the others are the words, with a line end between two.
// Whatever passes the checks must come back from the file without a failure.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "config_host.h"

namespace {

// Devices of several families, some of which have models with rules of their own.
constexpr std::uint16_t kDevices[] = {0x3A02, 0x3B40, 0x7102, 0x7122, 0x7132,
                                      0x3432, 0x3522, 0x3150, 0x3640, 0x3648};
constexpr std::uint16_t kSubsystems[] = {0x0001, 0x0A11, 0x0A12, 0x0A13, 0x0A14, 0x0A15, 0x0B01, 0x0B11};

struct Header {
  std::uint8_t node;
  std::uint8_t device;
  std::uint8_t subsystem;
  std::uint8_t partner;
  std::uint8_t speeds;
};

Words WordsOf(std::string_view text) {
  Words words = {kPort, ""};
  for (const char c : text) {
    if (c == '\n') {
      words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  return words;
}

bool IsKnown(StatusCode status) {
  constexpr StatusCode kKnown[] = {kBootModeNeeded,      kInvalidParameter,   kBootModeNotSupported,
                                   kDelayNotAllowed,     kTooFastForLoopOnly, kFeatureNotSupported,
                                   kNotSupportedForNvme, kReadOnlyParameter,  kFcpTargetOptions,
                                   kNvmeTargetOptions};
  return std::find(std::begin(kKnown), std::end(kKnown), status) != std::end(kKnown);
}

template <class Settings>
void Check(const Words& words) {
  const StagedFile file(g_file.Path(), Settings::kNode.value_size);
  g_file.Write("Data_Rate=2\nConnection_Options=1\nOperation_Mode=6\n");
  TestRun test(words);
  Settings settings(g_host.fc);
  StagedValues values;
  StatusCode status = settings.Open(test.run, StagedCommand::kSetFile);
  if (status == kSuccess) status = settings.TakeOptions(test.run, file, values);
  if (status != kSuccess) {
    Require(IsKnown(status));
    return;
  }
  for (const auto& [key, value] : values) {
    Require(!key.empty() && value.size() < 256 && value.find_first_of(" \t\n\v\f\r#") == std::string::npos);
  }
  Require(file.Write(test.run, values) == kSuccess);
  for (const auto& [key, value] : values) {
    std::string found = "nothing";
    Require(file.Find(key, found) && found == value);
  }
  Require(settings.ReadFile(test.run, file) == kSuccess);
}

void RunCommand(const Header& header, std::string_view text) {
  PciIdentity& pci = g_host.fc.pci;
  pci.device_id = kDevices[header.device % std::size(kDevices)];
  pci.subsystem_device_id = kSubsystems[header.subsystem % std::size(kSubsystems)];
  pci.subsystem_vendor_id = (header.partner & 1) != 0 ? 0x1D4A : 0x1C9E;
  g_host.fc.supported_speeds = header.speeds;
  const Words words = WordsOf(text);
  switch (header.node % 4) {
    case 0:
      Check<HbaParams>(words);
      break;
    case 1:
      pci.device_id = 0x3522;  // of a family that has it
      Check<Bbcr>(words);
      break;
    case 2:
      Check<BootConfig>(words);
      break;
    default:
      Check<BootConfigExt>(words);
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Header header = {};
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  for (int commands = 0; commands < 3 && rest.size() >= sizeof header; ++commands) {
    std::memcpy(&header, rest.data(), sizeof header);
    rest.remove_prefix(sizeof header);
    const std::size_t end = std::min(rest.find('\0'), rest.size());
    RunCommand(header, rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return 0;
}
