#include "device/config_setup.h"

namespace lab {
namespace {

constexpr std::uint32_t kAutoRate = 2;
constexpr std::uint32_t kPointToPoint = 1;
constexpr std::uint32_t kLoopPreferred = 2;
constexpr std::uint32_t kTimerOrIdle = 6;

constexpr NamedNumber kDataRates[] = {{"1", 0}, {"2", 1},  {"auto", 2}, {"4", 3},
                                      {"8", 4}, {"16", 5}, {"32", 6},   {"64", 7}};
constexpr NamedNumber kConnections[] = {{"loop", 0}, {"point-to-point", 1}, {"loop-preferred", 2}};
constexpr NamedNumber kOperationModes[] = {{"every-completion", 0}, {"timer", 5}, {"timer-or-idle", 6}};

using Record = HBAParamsInfo;

constexpr ConfigField kParameterFields[] = {
    {"data-rate", &Record::data_rate, ConfigField::kNumber, kDataRates},
    {"connection", &Record::connection_options, ConfigField::kNumber, kConnections},
    {"operation-mode", &Record::operation_mode, ConfigField::kNumber, kOperationModes},
    {"interrupt-delay", &Record::interrupt_delay_timer},
    {"frame-size", &Record::frame_size},
    {"hard-loop-id", &Record::hard_loop_id},
    {"use-hard-loop-id", &Record::enable_hard_loop_id, ConfigField::kFlag},
    {"loop-reset-delay", &Record::loop_reset_delay},
    {"execution-throttle", &Record::execution_throttle},
    {"login-retries", &Record::login_retry_count},
    {"port-down-retries", &Record::port_down_retry_count},
    {"link-down-timeout", &Record::link_down_timeout},
    {"luns-per-target", &Record::max_luns_per_target},
    {"fc-tape", &Record::enable_fc_tape, ConfigField::kFlag},
    {"lip-full-login", &Record::enable_lip_full_login, ConfigField::kFlag},
    {"target-reset", &Record::enable_target_reset, ConfigField::kFlag},
    {"out-of-order-frames", &Record::receive_out_of_order, ConfigField::kFlag},
    {"lr", &Record::enable_lr, ConfigField::kFlag},
    {"fabric-assigned-wwn", &Record::enable_fabric_assign_wwn, ConfigField::kFlag},
    {"vclm", &Record::disable_scm, ConfigField::kInverseFlag},
};

constexpr ConfigField kBootFields[] = {
    {"enabled", &Record::disable_bios, ConfigField::kInverseFlag},
    {"selectable", &Record::enable_selectable_boot, ConfigField::kFlag},
    {"selective-login", &Record::enable_selective_login, ConfigField::kFlag},
    {"selective-lun-login", &Record::enable_selective_lun, ConfigField::kFlag},
    {"world-login", &Record::force_world_login, ConfigField::kFlag},
    {"fabric-assigned-lun", &Record::enable_fabric_assign_boot_lun, ConfigField::kFlag},
};

}  // namespace

ConfigSetup MakeConfig(const Family& family) {
  ConfigSetup setup;
  HBAParamsInfo& nvram = setup.nvram;
  nvram.data_rate = kAutoRate;
  nvram.connection_options = family.fcoe ? kPointToPoint : kLoopPreferred;
  nvram.operation_mode = kTimerOrIdle;
  nvram.frame_size = 2048;
  nvram.loop_reset_delay = 5;
  nvram.execution_throttle = family.nvme ? 65535 : 32;
  nvram.login_retry_count = 8;
  nvram.port_down_retry_count = 30;
  nvram.link_down_timeout = 30;
  nvram.max_luns_per_target = family.nvme ? 256 : 128;
  nvram.enable_fc_tape = 1;
  nvram.enable_lip_full_login = 1;
  nvram.enable_target_reset = 1;
  nvram.disable_scm = family.nvme ? 0 : 1;
  nvram.disable_bios = 1;
  setup.nvme_present = family.nvme;
  return setup;
}

std::span<const ConfigField> ParameterFields() {
  return kParameterFields;
}

std::span<const ConfigField> BootFields() {
  return kBootFields;
}

}  // namespace lab
