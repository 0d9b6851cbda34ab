#include "device/config_fields.h"

namespace lab {
namespace {

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

std::span<const ConfigField> ParameterFields() {
  return kParameterFields;
}

std::span<const ConfigField> BootFields() {
  return kBootFields;
}

}  // namespace lab
