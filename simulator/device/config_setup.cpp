#include "device/config_setup.h"

namespace lab {
namespace {

constexpr std::uint32_t kAutoRate = 2;
constexpr std::uint32_t kPointToPoint = 1;
constexpr std::uint32_t kLoopPreferred = 2;
constexpr std::uint32_t kTimerOrIdle = 6;

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

}  // namespace lab
