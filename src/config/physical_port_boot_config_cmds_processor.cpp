#include "config/physical_port_boot_config_cmds_processor.h"

#include "config/boot/boot_config.h"
#include "framework/table.h"

namespace {

constexpr StatusMessage kMessages[] = {
    {kBootModeNeeded, "Failed, Boot parameter requires UEFI boot mode option"},
    kInvalidParameter,
    {kBootModeNotSupported, "Failed, UEFI boot mode not supported for this adapter"},
    kBootReadFailed,
    kHostNotFound,
    kNotWithUefi,
    kBootUpdateFailed,
    kAdapterNotFound,
    kFeatureNotSupported,
    kNotSupportedForNvme,
    kMemoryError,
    kBootReadOnly,
    kVirtualPort,
    kNoRomBios,
    kNoRomUefi,
    kMaintenanceMode,
};

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex HBA Boot Config information", "Usage: get\r\n", &CmdGetCommon<BootConfig>},
    {"setFile", "set Sorvex HBA Boot Config information in a local cache file", "Usage: setFile\r\n",
     &CmdSetFileCommon<BootConfig>},
    {"set", "set Sorvex HBA Boot Config information", "Usage: set\r\n", &CmdSetCommon<BootConfig>},
};

}  // namespace

NodeClass PhysicalPortBootConfigCmdsProcessor() {
  return {
      .name = "PhysicalPortBootConfigCmdsProcessor",
      .help_words = "Boot Config",
      .commands = TableOf<kCommands>(),
      .frame = kBootFrame,
      .messages = TableOf<kMessages>(),
  };
}
