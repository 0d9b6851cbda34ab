#include "config/hba_params.h"

#include "config/hba_params_values.h"
#include "config/record_fields.h"
#include "framework/device_library/families.h"
#include "framework/device_library/speeds.h"
#include "framework/library_call.h"

namespace {

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, NVRAM read failed"},
    kHostNotFound,
    {kDelayNotAllowed,
     "Failed, Interrupt Delay Timer value > 0 not supported for Operation Mode value "
     "Interrupt_For_Every_I/O_Completion"},
    {kTooFastForLoopOnly,
     "Failed, Connection Options value Loop_Only not supported for data rate value 16 Gbps and above"},
    {kUpdateFailed, "Failed, NVRAM update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    {kReadOnlyParameter, "Failed, Read-Only parameter"},
    kVirtualPort,
    kMaintenanceMode,
};

constexpr std::uint32_t kOperationModeValues[] = {kInterruptPerCompletion, kInterruptOnTimer,
                                                  kInterruptOnTimerOrIdle};
constexpr std::uint32_t kFrameSizes[] = {512, 1024, 2048, 2112};

constexpr RecordField Number(const char* key, std::size_t offset, NumberRule rule) {
  return {key, offset, sizeof(std::uint32_t), FieldKind::kSigned, rule};
}

constexpr RecordField Flag(const char* key, std::size_t offset) {
  return Number(key, offset, {.limit = 1});
}

// In the order in which a file's values are checked.
constexpr RecordField kFields[] = {
    Number("Connection_Options", offsetof(HBAParamsInfo, connection_options), {.limit = 2}),
    Number("Data_Rate", offsetof(HBAParamsInfo, data_rate), {.limit = 7}),
    Number("Operation_Mode", offsetof(HBAParamsInfo, operation_mode), {.only = kOperationModeValues}),
    Number("Frame_Size", offsetof(HBAParamsInfo, frame_size), {.only = kFrameSizes}),
    Number("Hard_Loop_ID", offsetof(HBAParamsInfo, hard_loop_id), {.limit = 125}),
    Number("Loop_Reset_Delay", offsetof(HBAParamsInfo, loop_reset_delay), {.limit = 255}),
    Number("Interrupt_Delay_Timer", offsetof(HBAParamsInfo, interrupt_delay_timer), {.limit = 255}),
    Number("Execution_Throttle", offsetof(HBAParamsInfo, execution_throttle), {.limit = 65535}),
    Number("Login_Retry_Count", offsetof(HBAParamsInfo, login_retry_count), {.limit = 255}),
    Number("Port_Down_Retry_Count", offsetof(HBAParamsInfo, port_down_retry_count), {.limit = 255}),
    Number("Link_Down_Timeout", offsetof(HBAParamsInfo, link_down_timeout), {.limit = 240}),
    Number("Luns_Per_Target", offsetof(HBAParamsInfo, max_luns_per_target), {.limit = 256}),
    Flag("Disable_BIOS", offsetof(HBAParamsInfo, disable_bios)),
    Flag("Enable_Hard_Loop_Id", offsetof(HBAParamsInfo, enable_hard_loop_id)),
    Flag("Enable_Fibre_Channel_Tape_Support", offsetof(HBAParamsInfo, enable_fc_tape)),
    Flag("Enable_Lip_Full_Login", offsetof(HBAParamsInfo, enable_lip_full_login)),
    Flag("Enable_Target_Reset", offsetof(HBAParamsInfo, enable_target_reset)),
    Flag("Enable_Receive_Out_Of_Order_Frames", offsetof(HBAParamsInfo, receive_out_of_order)),
    Flag("Enable_LR", offsetof(HBAParamsInfo, enable_lr)),
    Flag("Enable_Fabric_Assign_WWN", offsetof(HBAParamsInfo, enable_fabric_assign_wwn)),
    Flag("Disable_SCM", offsetof(HBAParamsInfo, disable_scm)),
    {"Enable_Virtual_Lane",
     offsetof(HBAParamsInfo, enable_virtual_lane),
     sizeof(std::uint8_t),
     FieldKind::kSigned,
     {.limit = 1}},
};

const char* DataRateText(std::uint32_t value, const PciIdentity& pci) {
  if (value == kDataRateAuto) return kDataRateAutoText;
  if (value == k16Gbps.data_rate && IsDeviceGroupFernOnly(pci)) return k10Gbps.word;
  for (const LinkSpeed& speed : kSettableSpeeds) {
    if (speed.data_rate == value) return speed.word;
  }
  return "Unknown";
}

// Writes the fields of the answer. An adapter that lacks a parameter shows "NA" or 0 in its place.
class Parameters {
 public:
  explicit Parameters(Serializer& out) : out_(out) {}

  void Text(const char* label, const char* text, bool shown = true) {
    out_.WriteStringField(label, shown ? text : "NA");
  }
  void Flag(const char* label, bool flag, bool shown = true) { Text(label, BoolText(flag), shown); }
  void Number(const char* label, std::uint32_t number, bool shown = true) {
    out_.WriteIntField(label, shown ? number : 0, kUnsigned32);
  }

 private:
  Serializer& out_;
};

void WriteParameters(Serializer& out, const HBAParamsInfo& record, const PciIdentity& pci) {
  const bool interrupts = !IsDeviceGinkgo(pci);
  const bool loop = !IsDeviceGroupCedar(pci);
  Parameters fields(out);
  fields.Text("Connection Options", TextOfCode(kConnectionOptions, record.connection_options));
  fields.Text("Data Rate", DataRateText(record.data_rate, pci));
  fields.Text("Operation Mode", TextOfCode(kOperationModes, record.operation_mode), interrupts);
  fields.Number("Frame Size", record.frame_size);
  fields.Flag("Enable Hard Loop Id", record.enable_hard_loop_id != 0, loop);
  fields.Number("Hard Loop Id", record.hard_loop_id, loop);
  fields.Number("Loop Reset Delay In Seconds", record.loop_reset_delay);
  fields.Number("Interrupt Delay Timer In 100us", record.interrupt_delay_timer, interrupts);
  // Deliberately shown on adapters that refuse the option for it.
  fields.Number("Execution Throttle", record.execution_throttle, !IsDeviceGroupFernOnly(pci));
  fields.Number("Login Retry Count", record.login_retry_count);
  fields.Number("Port Down Retry Count", record.port_down_retry_count);
  fields.Number("Link Down Timeout In Seconds", record.link_down_timeout);
  fields.Number("Luns Per Target", record.max_luns_per_target);
  fields.Flag("Enable LR", record.enable_lr != 0, !IsAnyOf(pci, kAster | kGinkgo));
  fields.Flag("Enable Host Hba Bios", record.disable_bios == 0);
  fields.Flag("Enable Fc Tape Support", record.enable_fc_tape != 0);
  fields.Flag("Enable Lip Full Login", record.enable_lip_full_login != 0, loop);
  fields.Flag("Enable Target Reset", record.enable_target_reset != 0);
  fields.Flag("Enable Fabric Assigned WWN", record.enable_fabric_assign_wwn != 0, HasFabricAssignment(pci));
  fields.Flag("Enable VCLM", record.disable_scm == 0, HasCongestionManagement(pci));
  fields.Flag("Virtual Lane", record.enable_virtual_lane != 0, IsDeviceGroupDahlia(pci));
}

}  // namespace

const StagedNode kHbaParamsNode = {"PhysicalPortHBAParamsCmdsProcessor",
                                   "HBAParams",
                                   {"HBAParametersInfo", "HBAParameters", "HBAParametersList"},
                                   kMessages};

StatusCode HbaParams::ReadDevice() {
  record_ = {};
  HBAParamsExtra extra = {};
  return CallLibrary(node_.class_name, "Get HBA params", kReadFailed,
                     [&] { return TORPI_GetHBAParamsInfo(&Fc().handle, &record_, &extra); });
}

StagedValues HbaParams::AllValues() const {
  StagedValues values;
  AddFieldValues(kFields, &record_, values);
  return values;
}

// Rules between fields are deliberately not checked here: a file edited by hand can break them.
StatusCode HbaParams::ReadFile(const StagedFile& file) {
  return ReadFieldValues(kFields, file, &record_);
}

StatusCode HbaParams::WriteDevice() {
  return CallLibrary(node_.class_name, "Update HBA params", kUpdateFailed,
                     [&] { return TORPI_UpdateHBAParameters(&Fc().handle, &record_); });
}

StatusCode HbaParams::Display(Serializer& out, OutputMode mode, RebootField reboot) const {
  const Document document(out, mode, node_.frame.structure, "Success", reboot);
  const ListField list(out, node_.frame.field);
  const ListStructure element(out, node_.frame.list_structure);
  WriteParameters(out, record_, Fc().pci);
  return kSuccess;
}
