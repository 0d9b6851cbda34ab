// The options of `setFile`. An input is up to three commands with a zero byte between two. The first bytes of
// a command choose the node and make the adapter, the others are the words, with a line end between two.
//
// Oracles. A second implementation: what each option stores, by the tables below and the readers of
// text_model.h; a command that passes has stored exactly that, and a wrong value never passes. A round trip:
// the stored values come back from the file as they were, and the record that they make is printed as the
// same values.
#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "config_host.h"
#include "text_model.h"

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

// What an option of `hbaparams` or of the boot nodes stores under its key.
struct Option {
  const char* long_name;
  const char* short_name;
  const char* key;
  std::optional<std::string> (*stored)(std::string_view value);  // nothing: a wrong value
};

template <std::uint32_t kLimit>
std::optional<std::string> UpTo(std::string_view value) {
  const std::uint32_t number = model::NumberOf(value);
  return number <= kLimit ? std::optional(std::to_string(number)) : std::nullopt;
}

std::optional<std::string> Flag(std::string_view value) {
  if (model::SameWord(value, "true")) return "1";
  return model::SameWord(value, "false") ? std::optional<std::string>("0") : std::nullopt;
}

std::optional<std::string> InverseFlag(std::string_view value) {
  if (model::SameWord(value, "true")) return "0";
  return model::SameWord(value, "false") ? std::optional<std::string>("1") : std::nullopt;
}

struct Word {
  std::string_view word;
  const char* stored;
};

template <std::size_t kCount>
std::optional<std::string> StoredFor(std::string_view value, const Word (&words)[kCount]) {
  for (const Word& row : words) {
    if (model::SameWord(value, row.word)) return row.stored;
  }
  return std::nullopt;
}

std::optional<std::string> Connection(std::string_view value) {
  return StoredFor(
      value,
      {{"Loop_Only", "0"}, {"Point_To_Point_Only", "1"}, {"Loop_Preferred_Otherwise_Point_To_Point", "2"}});
}

std::optional<std::string> DataRate(std::string_view value) {
  return StoredFor(value, {{"1_Gbps", "0"},
                           {"2_Gbps", "1"},
                           {"Auto", "2"},
                           {"4_Gbps", "3"},
                           {"8_Gbps", "4"},
                           {"16_Gbps", "5"},
                           {"32_Gbps", "6"},
                           {"64_Gbps", "7"}});
}

std::optional<std::string> OperationMode(std::string_view value) {
  return StoredFor(value, {{"Interrupt_For_Every_I/O_Completion", "0"},
                           {"Interrupt_When_Interrupt_Delay_Timer_Expires", "5"},
                           {"Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O", "6"}});
}

std::optional<std::string> FrameSize(std::string_view value) {
  const std::uint32_t size = model::NumberOf(value);
  const bool is_one = size == 512 || size == 1024 || size == 2048 || size == 2112;
  return is_one ? std::optional(std::to_string(size)) : std::nullopt;
}

constexpr Option kHbaOptions[] = {
    {"--connection-options", "-c", "Connection_Options", &Connection},
    {"--data-rate", "-d", "Data_Rate", &DataRate},
    {"--operation-mode", "-m", "Operation_Mode", &OperationMode},
    {"--frame-size", "-z", "Frame_Size", &FrameSize},
    {"--hard-loop-id", "-l", "Hard_Loop_ID", &UpTo<125>},
    {"--loop-reset-delay", "-r", "Loop_Reset_Delay", &UpTo<255>},
    {"--interrupt-delay-timer", "-e", "Interrupt_Delay_Timer", &UpTo<255>},
    {"--execution-throttle", "-x", "Execution_Throttle", &UpTo<65535>},
    {"--login-retry-count", "-u", "Login_Retry_Count", &UpTo<255>},
    {"--port-down-retry-count", "-w", "Port_Down_Retry_Count", &UpTo<255>},
    {"--link-down-timeout", "-o", "Link_Down_Timeout", &UpTo<240>},
    {"--luns-per-target", "-y", "Luns_Per_Target", &UpTo<256>},
    {"--enable-bios", "-b", "Disable_BIOS", &InverseFlag},
    {"--enable-hard-loop-id", "-p", "Enable_Hard_Loop_Id", &Flag},
    {"--enable-fc-tape", "-f", "Enable_Fibre_Channel_Tape_Support", &Flag},
    {"--enable-lip-full-login", "-g", "Enable_Lip_Full_Login", &Flag},
    {"--enable-target-reset", "-a", "Enable_Target_Reset", &Flag},
    {"--enable-lr", "-k", "Enable_LR", &Flag},
    {"--enable-fabric-assigned-wwn", "-n", "Enable_Fabric_Assign_WWN", &Flag},
    {"--enable-vclm", "-q", "Disable_SCM", &InverseFlag},
    {"--virtual-lane", "-j", "Enable_Virtual_Lane", &Flag},
};

constexpr Option kBbcrOptions[] = {
    {"--bbcr-status", "-b", "BBCR_Status", &Flag},
    {"--bbcr-configured", "-c", "BBCR_Count", &UpTo<15>},
};

constexpr Option kBootFlags[] = {
    {"--enable-bfs", "-a", "Disable_BIOS", &InverseFlag},
    {"--fabric-assigned-boot-lun", "-f", "Fabric_Assigned_Boot_Lun", &Flag},
    {"--selectable-boot", "-d", "Selectable_Boot", &Flag},
    {"--selective-login", "-e", "Selective_Login", &Flag},
    {"--selective-lun-login", "-c", "Selective_LUN_Login", &Flag},
    {"--world-login", "-g", "World_Login", &Flag},
};

std::optional<std::string> Mode(std::string_view value) {
  return StoredFor(value, {{"BIOS", "0"}, {"UEFI", "1"}});
}

std::optional<std::string> ExtMode(std::string_view value) {
  return StoredFor(value, {{"BIOS", "1"}, {"UEFI", "2"}, {"NVME", "4"}});
}

// The word after the first one that names the option.
std::optional<std::string> Given(const Words& words, std::string_view long_name,
                                 std::string_view short_name) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (!model::SameWord(words[i], long_name) && !model::SameWord(words[i], short_name)) continue;
    return i + 1 < words.size() ? std::optional(words[i + 1]) : std::nullopt;
  }
  return std::nullopt;
}

std::string NameText(const std::array<std::uint8_t, 8>& name) {
  std::string text;
  for (const std::uint8_t octet : name) {
    text += text.empty() ? "" : ":";
    text += "0123456789abcdef"[octet >> 4];
    text += "0123456789abcdef"[octet & 15];
  }
  return text;
}

// Adds what the options store. False for a wrong value, with which no command passes.
bool Store(const Words& words, std::span<const Option> options, StagedValues& stored) {
  for (const Option& option : options) {
    const auto value = Given(words, option.long_name, option.short_name);
    if (!value.has_value()) continue;
    const auto text = option.stored(*value);
    if (!text.has_value()) return false;
    stored[option.key] = *text;
  }
  return true;
}

bool StoreMode(const Words& words, const Option& option, StagedValues& stored) {
  const auto text = option.stored(Given(words, option.long_name, option.short_name).value_or("BIOS"));
  if (text.has_value()) stored[option.key] = *text;
  return text.has_value();
}

// "WWPN-LUN", with nothing after it; the name of all zeros clears the drive.
bool StoreDrive(const std::string& value, const std::string& key, StagedValues& stored) {
  std::string_view rest = value;
  const auto name = model::TakeName(rest);
  if (!name.has_value() || !rest.starts_with('-')) return false;
  rest.remove_prefix(1);
  const auto lun = model::TakeNumber(rest, 10);
  if (!lun.has_value() || !rest.empty()) return false;
  stored[key + "_WWPN"] = NameText(*name);
  stored[key + "_LUN"] = NameText(*name) == "00:00:00:00:00:00:00:00" ? "0" : std::to_string(*lun);
  return true;
}

bool Expect(const Words& words, const HbaParams&, StagedValues& stored) {
  if (!Store(words, kHbaOptions, stored)) return false;
  const auto mode = Given(words, "--operation-mode", "-m");
  // Of a mode without a delay only the delay 0 passes.
  const bool no_delay = mode.has_value() && stored["Operation_Mode"] == "0";
  if (!no_delay) return true;
  const bool passes = !stored.contains("Interrupt_Delay_Timer") || stored["Interrupt_Delay_Timer"] == "0";
  stored["Interrupt_Delay_Timer"] = "0";
  return passes;
}

bool Expect(const Words& words, const Bbcr&, StagedValues& stored) {
  return Store(words, kBbcrOptions, stored);
}

bool Expect(const Words& words, const BootConfig&, StagedValues& stored) {
  constexpr const char* kDriveOptions = "jklmnopq";
  if (!StoreMode(words, {"--boot-mode", "-b", "Boot_Mode", &Mode}, stored)) return false;
  if (!Store(words, kBootFlags, stored)) return false;
  for (std::size_t drive = 0; drive < 8; ++drive) {
    const std::string number = std::to_string(drive);
    const auto value = Given(words, "--drive-" + number, std::string("-") + kDriveOptions[drive]);
    const std::string key = drive == 0 ? "Primary_Boot_Target" : "Alternate_Boot_Target_" + number;
    if (value.has_value() && !StoreDrive(*value, key, stored)) return false;
  }
  return true;
}

// The keys of the one entry that four options address.
void StoreEntry(const Words& words, StagedValues& stored) {
  const auto number = Given(words, "--boot-target-num", "-n");
  const auto target = Given(words, "--boot-target-wwpn", "-p");
  const auto disk = Given(words, "--boot-disk-num", "-o");
  const auto enable = Given(words, "--boot-target-enable", "-l");
  const bool is_nvme = stored["Boot_Mode"] == "4";
  if (!number.has_value() && !target.has_value() && !disk.has_value() && !(is_nvme && enable.has_value()))
    return;
  Require(number.has_value() && target.has_value() && disk.has_value() && (!is_nvme || enable.has_value()));
  const std::string entry = std::to_string(model::NumberOf(*number));
  const auto name = model::NameOf(*target);
  Require(name.has_value());
  const std::string name_text = NameText(*name);
  const bool clears = name_text == "00:00:00:00:00:00:00:00";
  const std::string disk_text = clears ? "0" : std::to_string(model::NumberOf(*disk));
  if (!is_nvme) {
    const std::string key = entry == "0" ? "Primary_Boot_Target" : "Alternate_Boot_Target_" + entry;
    stored[key + "_WWPN"] = name_text;
    stored[key + "_LUN"] = disk_text;
    return;
  }
  const std::string key = "NVME_" + entry + "_";
  stored[key + "WWPN"] = name_text;
  stored[key + "NamespaceID"] = disk_text;
  stored[key + "Enable"] = Flag(*enable).value_or("nothing");
  stored[key + "WWNN"] = "00:00:00:00:00:00:00:00";  // as the host's targets have them
  stored[key + "ControllerID"] = "0";
  stored[key + "NQN"] = clears ? "" : "nqn.x";
}

bool Expect(const Words& words, const BootConfigExt&, StagedValues& stored) {
  constexpr Option kNvme[] = {{"--fc-nvme", "-m", "NVMe_Enable", &Flag}};
  if (!StoreMode(words, {"--boot-mode", "-b", "Boot_Mode", &ExtMode}, stored)) return false;
  return Store(words, kBootFlags, stored) && Store(words, kNvme, stored);
}

void ExpectEntry(const Words&, const auto&, StagedValues&) {}
void ExpectEntry(const Words& words, const BootConfigExt&, StagedValues& stored) {
  StoreEntry(words, stored);
}

template <class Settings>
void Check(const Words& words) {
  const StagedFile file(ScratchFile::Path(), Settings::kNode.value_size);
  ScratchFile::Write("Data_Rate=2\nConnection_Options=1\nOperation_Mode=6\n");
  TestRun test(words);
  Settings settings(g_host.fc);
  StagedValues expected;
  const bool can_pass = Expect(words, settings, expected);
  StagedValues values;
  StatusCode status = settings.Open(test.run, StagedCommand::kSetFile);
  if (status == kSuccess) status = settings.TakeOptions(test.run, file, values);
  if (status != kSuccess) {
    Require(IsKnown(status));
    return;
  }
  Require(can_pass);
  ExpectEntry(words, settings, expected);
  Require(values == expected);
  Require(file.Write(test.run, values) == kSuccess);
  for (const auto& [key, value] : values) {
    std::string found = "nothing";
    Require(file.Find(key, found) && found == value);
  }
  Require(settings.ReadFile(test.run, file) == kSuccess);
  StagedValues printed;
  settings.AddAll(printed);
  for (const auto& [key, value] : values) Require(printed[key] == value);
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
