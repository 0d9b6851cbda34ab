#include "config/hba_params/hba_parameters.h"

#include <algorithm>
#include <cstddef>

#include "config/hba_params/hba_values.h"
#include "framework/code_text.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/table.h"

namespace {

// Adapters.

template <FamilySet families>
bool IsOutside(const PciIdentity& pci) {
  return !IsAnyOf(pci, families);
}

// Words.

const char* ConnectionWord(std::uint32_t value, const PciIdentity&) {
  return TextOfCode(kConnectionOptions, value);
}

const char* OperationModeWord(std::uint32_t value, const PciIdentity&) {
  return TextOfCode(kOperationModes, value);
}

const char* DataRateWord(std::uint32_t value, const PciIdentity& pci) {
  if (value == kDataRateAuto) return kDataRateAutoText;
  if (value == k16Gbps.data_rate && IsDeviceGroupFernOnly(pci)) return k10Gbps.word;
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (speed.data_rate == value) return speed.word;
  }
  return "Unknown";
}

// Fields of the record. A staged file holds all numbers as signed ones.

consteval StagedParameter Number(ParameterName key, ParameterName log_name, std::size_t offset,
                                 NumberRule rule, OptionName option) {
  return {key,   log_name, offset, sizeof(std::uint32_t), ParameterForm::kNumber, rule, NumberSign::kSigned,
          option};
}

consteval StagedParameter Flag(ParameterName key, ParameterName log_name, std::size_t offset,
                               OptionName option) {
  return {key,   log_name, offset, sizeof(std::uint32_t), ParameterForm::kFlag, {}, NumberSign::kSigned,
          option};
}

// A field that says "disable" for an option that says "enable".
consteval StagedParameter InverseFlag(ParameterName key, ParameterName log_name, std::size_t offset,
                                      OptionName option) {
  StagedParameter parameter = Flag(key, log_name, offset, option);
  parameter.form = ParameterForm::kInverseFlag;
  return parameter;
}

consteval StagedParameter ByteFlag(ParameterName key, ParameterName log_name, std::size_t offset,
                                   OptionName option) {
  StagedParameter parameter = Flag(key, log_name, offset, option);
  parameter.width = sizeof(std::uint8_t);
  return parameter;
}

constexpr std::uint32_t kOperationModeValues[] = {kInterruptPerCompletion, kInterruptOnTimer,
                                                  kInterruptOnTimerOrIdle};

using Record = HBAParamsInfo;

constexpr HbaParameter kParameters[] = {
    {.id = HbaParam::kConnectionOptions,
     .staged = Number("Connection_Options", "ConnetionOptions", offsetof(Record, connection_options),
                      {.limit = kLoopPreferred}, {"--connection-options", "-c"}),
     .take = &TakeConnection,
     .label = "Connection Options",
     .word = &ConnectionWord},
    {.id = HbaParam::kDataRate,
     .staged = Number("Data_Rate", "DataRate", offsetof(Record, data_rate), {.limit = k64Gbps.data_rate},
                      {"--data-rate", "-d"}),
     .take = &TakeDataRate,
     .label = "Data Rate",
     .word = &DataRateWord},
    {.id = HbaParam::kOperationMode,
     .staged = Number("Operation_Mode", "OperationMode", offsetof(Record, operation_mode),
                      {.only = kOperationModeValues}, {"--operation-mode", "-m"}),
     .has = &IsOutside<kGinkgo>,
     .take = &TakeOperationMode,
     .label = "Operation Mode",
     .word = &OperationModeWord},
    {.id = HbaParam::kFrameSize,
     .staged = Number("Frame_Size", "FrameSize", offsetof(Record, frame_size), {.only = kFrameSizes},
                      {"--frame-size", "-z"}),
     .take = &TakeFrameSize,
     .label = "Frame Size"},
    {.id = HbaParam::kHardLoopId,
     .staged = Number("Hard_Loop_ID", "HardLoopId", offsetof(Record, hard_loop_id), {.limit = 125},
                      {"--hard-loop-id", "-l"}),
     .has = &IsOutside<kCedar>,
     .label = "Hard Loop Id"},
    {.id = HbaParam::kLoopResetDelay,
     .staged = Number("Loop_Reset_Delay", "LoopResetDelay", offsetof(Record, loop_reset_delay),
                      {.limit = 255}, {"--loop-reset-delay", "-r"}),
     .label = "Loop Reset Delay In Seconds"},
    {.id = HbaParam::kInterruptDelayTimer,
     .staged = Number("Interrupt_Delay_Timer", "InterruptDelayTimer", offsetof(Record, interrupt_delay_timer),
                      {.limit = 255}, {"--interrupt-delay-timer", "-e"}),
     .has = &IsOutside<kGinkgo>,
     .take = &TakeInterruptDelay,
     .label = "Interrupt Delay Timer In 100us"},
    // Intended: shown on adapters that refuse the option for it.
    {.id = HbaParam::kExecutionThrottle,
     .staged = Number("Execution_Throttle", "ExecutionThrottle", offsetof(Record, execution_throttle),
                      {.limit = 65535}, {"--execution-throttle", "-x"}),
     .has = &IsOutside<kElm | kHazel | kIris | kDahlia>,
     .shows = &IsOutside<kFernOnly>,
     .label = "Execution Throttle"},
    {.id = HbaParam::kLoginRetryCount,
     .staged = Number("Login_Retry_Count", "LoginRetryCount", offsetof(Record, login_retry_count),
                      {.limit = 255}, {"--login-retry-count", "-u"}),
     .label = "Login Retry Count"},
    {.id = HbaParam::kPortDownRetryCount,
     .staged = Number("Port_Down_Retry_Count", "PortDownRetryCount", offsetof(Record, port_down_retry_count),
                      {.limit = 255}, {"--port-down-retry-count", "-w"}),
     .label = "Port Down Retry Count"},
    {.id = HbaParam::kLinkDownTimeout,
     .staged = Number("Link_Down_Timeout", "LinkDownTimeout", offsetof(Record, link_down_timeout),
                      {.limit = 240}, {"--link-down-timeout", "-o"}),
     .label = "Link Down Timeout In Seconds"},
    {.id = HbaParam::kLunsPerTarget,
     .staged = Number("Luns_Per_Target", "MaxLunsPerTarget", offsetof(Record, max_luns_per_target),
                      {.limit = 256}, {"--luns-per-target", "-y"}),
     .label = "Luns Per Target"},
    {.id = HbaParam::kHostBios,
     .staged =
         InverseFlag("Disable_BIOS", "DisableBIOS", offsetof(Record, disable_bios), {"--enable-bios", "-b"}),
     .label = "Enable Host Hba Bios"},
    {.id = HbaParam::kEnableHardLoopId,
     .staged = Flag("Enable_Hard_Loop_Id", "EnableHardLoopId", offsetof(Record, enable_hard_loop_id),
                    {"--enable-hard-loop-id", "-p"}),
     .has = &IsOutside<kCedar>,
     .label = "Enable Hard Loop Id"},
    {.id = HbaParam::kFcTape,
     .staged = Flag("Enable_Fibre_Channel_Tape_Support", "EnableFibreChannelTapeSupport",
                    offsetof(Record, enable_fc_tape), {"--enable-fc-tape", "-f"}),
     .label = "Enable Fc Tape Support"},
    {.id = HbaParam::kLipFullLogin,
     .staged = Flag("Enable_Lip_Full_Login", "EnableLipFullLogin", offsetof(Record, enable_lip_full_login),
                    {"--enable-lip-full-login", "-g"}),
     .has = &IsOutside<kCedar>,
     .label = "Enable Lip Full Login"},
    {.id = HbaParam::kTargetReset,
     .staged = Flag("Enable_Target_Reset", "EnableTargetReset", offsetof(Record, enable_target_reset),
                    {"--enable-target-reset", "-a"}),
     .label = "Enable Target Reset"},
    // Has no option and is not shown: only a file edited by hand changes it.
    {.id = HbaParam::kOutOfOrderFrames,
     .staged = Flag("Enable_Receive_Out_Of_Order_Frames", "RecvOutOfOrderDataBit",
                    offsetof(Record, receive_out_of_order), {})},
    {.id = HbaParam::kLr,
     .staged = Flag("Enable_LR", "EnableLRBit", offsetof(Record, enable_lr), {"--enable-lr", "-k"}),
     .has = &IsOutside<kAster | kGinkgo>,
     .label = "Enable LR"},
    {.id = HbaParam::kFabricAssignedWwn,
     .staged = Flag("Enable_Fabric_Assign_WWN", "EnableFabricAssignWWN",
                    offsetof(Record, enable_fabric_assign_wwn), {"--enable-fabric-assigned-wwn", "-n"}),
     .has = &HasFabricAssignment,
     .label = "Enable Fabric Assigned WWN"},
    {.id = HbaParam::kVclm,
     .staged =
         InverseFlag("Disable_SCM", "DisableSCM", offsetof(Record, disable_scm), {"--enable-vclm", "-q"}),
     .has = &HasCongestionManagement,
     .label = "Enable VCLM"},
    {.id = HbaParam::kVirtualLane,
     .staged = ByteFlag("Enable_Virtual_Lane", "EnableVirtualLane", offsetof(Record, enable_virtual_lane),
                        {"--virtual-lane", "-j"}),
     .has = &IsDeviceGroupDahlia,
     .label = "Virtual Lane"},
};

constexpr bool InOrderOfIds() {
  for (std::size_t i = 0; i < std::size(kParameters); ++i) {
    if (static_cast<std::size_t>(kParameters[i].id) != i) return false;
  }
  return true;
}
static_assert(InOrderOfIds());

constexpr HbaParam kShown[] = {
    HbaParam::kConnectionOptions,  HbaParam::kDataRate,
    HbaParam::kOperationMode,      HbaParam::kFrameSize,
    HbaParam::kEnableHardLoopId,   HbaParam::kHardLoopId,
    HbaParam::kLoopResetDelay,     HbaParam::kInterruptDelayTimer,
    HbaParam::kExecutionThrottle,  HbaParam::kLoginRetryCount,
    HbaParam::kPortDownRetryCount, HbaParam::kLinkDownTimeout,
    HbaParam::kLunsPerTarget,      HbaParam::kLr,
    HbaParam::kHostBios,           HbaParam::kFcTape,
    HbaParam::kLipFullLogin,       HbaParam::kTargetReset,
    HbaParam::kFabricAssignedWwn,  HbaParam::kVclm,
    HbaParam::kVirtualLane,
};

constexpr bool EachLabelIsShownOnce() {
  return std::all_of(std::begin(kParameters), std::end(kParameters), [](const HbaParameter& parameter) {
    const auto times = std::count(std::begin(kShown), std::end(kShown), parameter.id);
    return times == (parameter.label.Empty() ? 0 : 1);
  });
}
static_assert(EachLabelIsShownOnce());

}  // namespace

Table<HbaParameter> HbaParameters() {
  return TableOf<kParameters>();
}

HbaParameter HbaParameterOf(HbaParam id) {
  return HbaParameters()[static_cast<std::size_t>(id)];
}

std::string KeyOf(HbaParam id) {
  const HbaParameter parameter = HbaParameterOf(id);
  return {parameter.staged.key.CString()};
}

std::span<const HbaParam> ShownHbaParameters() {
  return kShown;
}
