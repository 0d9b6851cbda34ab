#include "config/hba_params/hba_option_rules.h"

#include "config/hba_params/hba_parameters.h"
#include "config/hba_params/hba_values.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/table.h"

namespace {

constexpr CheckResult kUnknownText = {kInvalidParameter, "no value of this option"};
constexpr CheckResult kNoLoop = {kInvalidParameter, "this model has no loop"};
constexpr CheckResult kTooFastForLoop = {kTooFastForLoopOnly, "loop and a data rate of 16 Gbps or more"};
constexpr CheckResult kFixedRate = {kReadOnlyParameter, "the data rate is fixed"};
constexpr CheckResult kDelayNotUsed = {kDelayNotAllowed, "the operation mode has no delay"};

void Change(HbaChecks& checks, HbaParam id, std::uint32_t number) {
  checks.changes[KeyOf(id)] = std::to_string(number);
}

// True for the adapters whose fast data rates exclude a loop. Slower families have no such rate.
bool LoopExcludesFastRates(const PciIdentity& pci) {
  return IsAnyOf(pci, kElmOnly | kHazel | kIris | kDahlia);
}

// The checks of each value are in the order in which they decide.

CheckResult CheckLoopOnly(const HbaChecks& checks) {
  if (IsNoLoopDeviceElm(checks.Pci())) return kNoLoop;
  if (IsSupported(checks.fc.supported_speeds, k64Gbps)) return kTooFastForLoop;
  if (IsSixtyFourGigAdapter(checks.Pci())) return kTooFastForLoop;
  // Intended: the file's data rate counts even when the same command asks for a slower one.
  std::uint32_t data_rate = 0;
  if (LoopExcludesFastRates(checks.Pci()) && checks.file.FindNumber(KeyOf(HbaParam::kDataRate), data_rate) &&
      data_rate >= k16Gbps.data_rate) {
    return kTooFastForLoop;
  }
  return {};
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
  for (const MezzRates& rates : TableOf<kMezzRates>()) {
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
  return checks.file.FindNumber(KeyOf(HbaParam::kConnectionOptions), connection) && connection == kLoopOnly;
}

// The operation mode that a delay has to get along with: the command's own, else the low 8 bits of the
// file's.
std::optional<std::uint8_t> OperationModeInForce(const HbaChecks& checks) {
  if (checks.operation_mode.has_value()) return checks.operation_mode;
  std::uint32_t mode = 0;
  if (!checks.file.FindNumber(KeyOf(HbaParam::kOperationMode), mode)) return std::nullopt;
  return static_cast<std::uint8_t>(mode);
}

}  // namespace

CheckResult TakeConnection(HbaChecks& checks, const std::string& value) {
  const CodeText* const connection = FindCode(kConnectionOptions, value);
  if (connection == nullptr) return kUnknownText;
  if (connection->code == kLoopPreferred && IsNoLoopDeviceElm(checks.Pci())) return kNoLoop;
  if (connection->code == kLoopOnly) {
    if (const CheckResult result = CheckLoopOnly(checks); result.status != kSuccess) return result;
  }
  checks.connection = static_cast<std::uint8_t>(connection->code);
  Change(checks, HbaParam::kConnectionOptions, connection->code);
  return {};
}

CheckResult TakeDataRate(HbaChecks& checks, const std::string& value) {
  if (IsDeviceGroupCedar(checks.Pci()) || IsFixedRateDeviceElm(checks.Pci())) return kFixedRate;
  const std::optional<std::uint32_t> rate = RateOf(value, SpeedsToChoose(checks.fc));
  if (!rate.has_value()) return kUnknownText;
  if (LoopExcludesFastRates(checks.Pci()) && *rate >= k16Gbps.data_rate && IsLoopOnly(checks)) {
    return kTooFastForLoop;
  }
  Change(checks, HbaParam::kDataRate, *rate);
  return {};
}

CheckResult TakeOperationMode(HbaChecks& checks, const std::string& value) {
  const CodeText* const mode = FindCode(kOperationModes, value);
  if (mode == nullptr) return kUnknownText;
  checks.operation_mode = static_cast<std::uint8_t>(mode->code);
  Change(checks, HbaParam::kOperationMode, mode->code);
  if (mode->code == kInterruptPerCompletion) Change(checks, HbaParam::kInterruptDelayTimer, 0);
  return {};
}

CheckResult TakeFrameSize(HbaChecks& checks, const std::string& value) {
  const auto size = ReadNumber(value, {.only = kFrameSizes});
  if (!size.has_value()) return kOutOfRange;
  if (*size == kLargestFrameSize && !IsEncryptionAdapter(checks.Pci())) return kOutOfRange;
  Change(checks, HbaParam::kFrameSize, *size);
  return {};
}

CheckResult TakeInterruptDelay(HbaChecks& checks, const std::string& value) {
  const auto delay = ReadNumber(value, HbaParameterOf(HbaParam::kInterruptDelayTimer).staged.rule);
  if (!delay.has_value()) return kOutOfRange;
  if (OperationModeInForce(checks) == kInterruptPerCompletion) {
    // A delay of 0 is what the mode has anyway: nothing is stored.
    return *delay == 0 ? CheckResult{} : kDelayNotUsed;
  }
  Change(checks, HbaParam::kInterruptDelayTimer, *delay);
  return {};
}
