// The options of `hbaparams setFile`: which adapter has them, which values they take, and what they store.
#include <optional>

#include "config/hba_params.h"
#include "config/hba_params_values.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"

namespace {

// Also what the options given so far have chosen, for the rules that tie two options together.
struct HbaChecks : OptionChecks {
  std::optional<std::uint8_t> connection = {};
  std::optional<std::uint8_t> operation_mode = {};

  const PciIdentity& Pci() const { return fc.pci; }
};

using Option = StagedOption<HbaChecks>;

constexpr CheckResult kUnknownText = {kInvalidParameter, "no value of this option"};
constexpr CheckResult kNoLoop = {kInvalidParameter, "this model has no loop"};
constexpr CheckResult kTooFastForLoop = {kTooFastForLoopOnly, "loop and a data rate of 16 Gbps or more"};
constexpr CheckResult kFixedRate = {kReadOnlyParameter, "the data rate is fixed"};
constexpr CheckResult kDelayNotUsed = {kDelayNotAllowed, "the operation mode has no delay"};

void Store(HbaChecks& checks, const char* key, std::uint32_t number) {
  checks.values[key] = std::to_string(number);
}

// True for the adapters whose fast data rates exclude a loop. Slower families have no such rate.
bool LoopExcludesFastRates(const PciIdentity& pci) {
  return IsAnyOf(pci, kElmOnly | kHazel | kIris | kDahlia);
}

// Tests of the adapter.

template <FamilySet families>
CheckResult Unless(const HbaChecks& checks) {
  return IsAnyOf(checks.Pci(), families) ? kNotThisAdapter : CheckResult{};
}

template <bool (*has)(const PciIdentity&)>
CheckResult Only(const HbaChecks& checks) {
  return has(checks.Pci()) ? CheckResult{} : kNotThisAdapter;
}

// Values. The checks of each stand in the order in which they decide.

CheckResult CheckLoopOnly(const HbaChecks& checks) {
  if (IsNoLoopDeviceElm(checks.Pci())) return kNoLoop;
  if (IsSupported(checks.fc.supported_speeds, k64Gbps)) return kTooFastForLoop;
  if (IsSixtyFourGigAdapter(checks.Pci())) return kTooFastForLoop;
  // The file's data rate counts, deliberately even when the same command asks for a slower one.
  std::uint32_t data_rate = 0;
  if (LoopExcludesFastRates(checks.Pci()) && checks.file.FindNumber("Data_Rate", data_rate) &&
      data_rate >= k16Gbps.data_rate) {
    return kTooFastForLoop;
  }
  return {};
}

CheckResult TakeConnection(HbaChecks& checks, const Option& option, const std::string& value) {
  for (const CodeText& row : kConnectionOptions) {
    if (!EqualNoCase(value, row.text)) continue;
    if (row.code == kLoopPreferred && IsNoLoopDeviceElm(checks.Pci())) return kNoLoop;
    if (row.code == kLoopOnly) {
      if (const CheckResult result = CheckLoopOnly(checks); result.status != kSuccess) return result;
    }
    checks.connection = static_cast<std::uint8_t>(row.code);
    Store(checks, option.key, row.code);
    return {};
  }
  return kUnknownText;
}

// The data rates of the mezzanine cards, which are fewer than their ports support.
struct MezzRates {
  bool (*is_model)(const PciIdentity& pci);
  std::uint8_t speed_bits;
};

constexpr MezzRates kMezzRates[] = {
    {&IsMezzDeviceElm, k16Gbps.supported_bit | k8Gbps.supported_bit},
    {&IsMezz32DeviceHazel, k32Gbps.supported_bit | k16Gbps.supported_bit},
    {&IsMezz16DeviceHazel, k16Gbps.supported_bit},
};

std::uint8_t SpeedsToChoose(const FCProtocolEntry& fc) {
  for (const MezzRates& rates : kMezzRates) {
    if (rates.is_model(fc.pci)) return fc.supported_speeds & rates.speed_bits;
  }
  return fc.supported_speeds;
}

std::optional<std::uint32_t> RateOf(const std::string& value, std::uint8_t speeds) {
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (IsSupported(speeds, speed) && EqualNoCase(value, speed.word)) return speed.data_rate;
  }
  if (EqualNoCase(value, kDataRateAutoText)) return kDataRateAuto;
  return std::nullopt;
}

// The connection that a data rate has to get along with: the command's own, else the file's.
bool IsLoopOnly(const HbaChecks& checks) {
  if (checks.connection.has_value()) return *checks.connection == kLoopOnly;
  std::uint32_t connection = 0;
  return checks.file.FindNumber("Connection_Options", connection) && connection == kLoopOnly;
}

CheckResult TakeDataRate(HbaChecks& checks, const Option& option, const std::string& value) {
  if (IsDeviceGroupCedar(checks.Pci()) || IsFixedRateDeviceElm(checks.Pci())) return kFixedRate;
  const std::optional<std::uint32_t> rate = RateOf(value, SpeedsToChoose(checks.fc));
  if (!rate.has_value()) return kUnknownText;
  if (LoopExcludesFastRates(checks.Pci()) && *rate >= k16Gbps.data_rate && IsLoopOnly(checks)) {
    return kTooFastForLoop;
  }
  Store(checks, option.key, *rate);
  return {};
}

CheckResult TakeOperationMode(HbaChecks& checks, const Option& option, const std::string& value) {
  for (const CodeText& row : kOperationModes) {
    if (!EqualNoCase(value, row.text)) continue;
    checks.operation_mode = static_cast<std::uint8_t>(row.code);
    Store(checks, option.key, row.code);
    if (row.code == kInterruptPerCompletion) Store(checks, "Interrupt_Delay_Timer", 0);
    return {};
  }
  return kUnknownText;
}

CheckResult TakeFrameSize(HbaChecks& checks, const Option& option, const std::string& value) {
  const std::uint32_t size = NumberOf(value);
  const bool allowed =
      size == 512 || size == 1024 || size == 2048 || (size == 2112 && IsEncryptionAdapter(checks.Pci()));
  if (!allowed) return kOutOfRange;
  Store(checks, option.key, size);
  return {};
}

// The operation mode that a delay has to get along with: the command's own, else the low 8 bits of the
// file's.
std::optional<std::uint8_t> OperationMode(const HbaChecks& checks) {
  std::uint32_t mode = 0;
  if (checks.operation_mode.has_value()) return checks.operation_mode;
  if (!checks.file.FindNumber("Operation_Mode", mode)) return std::nullopt;
  return static_cast<std::uint8_t>(mode);
}

CheckResult TakeInterruptDelay(HbaChecks& checks, const Option& option, const std::string& value) {
  const std::uint32_t delay = NumberOf(value);
  if (delay > option.parameter) return kOutOfRange;
  if (OperationMode(checks) == kInterruptPerCompletion) {
    // A delay of 0 is what the mode has anyway: nothing is stored.
    return delay == 0 ? CheckResult{} : kDelayNotUsed;
  }
  Store(checks, option.key, delay);
  return {};
}

// In the order of the checks: the first one that fails decides what the user reads.
constexpr Option kOptions[] = {
    {"--connection-options", "-c", "Connection_Options", nullptr, &TakeConnection},
    {"--data-rate", "-d", "Data_Rate", nullptr, &TakeDataRate},
    {"--operation-mode", "-m", "Operation_Mode", &Unless<kGinkgo>, &TakeOperationMode},
    {"--frame-size", "-z", "Frame_Size", nullptr, &TakeFrameSize},
    {"--hard-loop-id", "-l", "Hard_Loop_ID", &Unless<kCedar>, &TakeNumber, 125},
    {"--loop-reset-delay", "-r", "Loop_Reset_Delay", nullptr, &TakeNumber, 255},
    {"--interrupt-delay-timer", "-e", "Interrupt_Delay_Timer", &Unless<kGinkgo>, &TakeInterruptDelay, 255},
    {"--execution-throttle", "-x", "Execution_Throttle", &Unless<kElm | kHazel | kIris | kDahlia>,
     &TakeNumber, 65535},
    {"--login-retry-count", "-u", "Login_Retry_Count", nullptr, &TakeNumber, 255},
    {"--port-down-retry-count", "-w", "Port_Down_Retry_Count", nullptr, &TakeNumber, 255},
    {"--link-down-timeout", "-o", "Link_Down_Timeout", nullptr, &TakeNumber, 240},
    {"--luns-per-target", "-y", "Luns_Per_Target", nullptr, &TakeNumber, 256},
    {"--enable-bios", "-b", "Disable_BIOS", nullptr, &TakeTrueFalse, 0},
    {"--enable-hard-loop-id", "-p", "Enable_Hard_Loop_Id", &Unless<kCedar>, &TakeTrueFalse, 1},
    {"--enable-fc-tape", "-f", "Enable_Fibre_Channel_Tape_Support", nullptr, &TakeTrueFalse, 1},
    {"--enable-lip-full-login", "-g", "Enable_Lip_Full_Login", &Unless<kCedar>, &TakeTrueFalse, 1},
    {"--enable-target-reset", "-a", "Enable_Target_Reset", nullptr, &TakeTrueFalse, 1},
    {"--enable-lr", "-k", "Enable_LR", &Unless<kAster | kGinkgo>, &TakeTrueFalse, 1},
    {"--enable-fabric-assigned-wwn", "-n", "Enable_Fabric_Assign_WWN", &Only<HasFabricAssignment>,
     &TakeTrueFalse, 1},
    {"--enable-vclm", "-q", "Disable_SCM", &Only<HasCongestionManagement>, &TakeTrueFalse, 0},
    {"--virtual-lane", "-j", "Enable_Virtual_Lane", &Only<IsDeviceGroupDahlia>, &TakeTrueFalse, 1},
};

}  // namespace

StatusCode HbaParams::CheckOptions(const Words& words, const StagedFile& file, StagedValues& values) const {
  HbaChecks checks = {{Fc(), file, values}};
  return TakeOptions<HbaChecks>(kOptions, words, checks);
}
