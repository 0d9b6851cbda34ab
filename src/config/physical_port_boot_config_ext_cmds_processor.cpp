#include "config/physical_port_boot_config_ext_cmds_processor.h"

#include "config/boot/boot_config_ext.h"
#include "framework/table.h"

namespace {

constexpr StatusMessage kMessages[] = {
    {kBootModeNeeded, "Failed, Boot parameter requires valid boot mode option"},
    kInvalidParameter,
    {kBootModeNotSupported, "Failed, UEFI/NVME boot mode not supported for this adapter"},
    kBootReadFailed,
    kHostNotFound,
    {kNoNvmeBootEntries, "Failed, NVMe Boot Config not present"},
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
    kFcpTargetOptions,
    kNvmeTargetOptions,
    kMaintenanceMode,
};

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex HBA Boot Config information", "Usage: get\r\n", &CmdGetCommon<BootConfigExt>},
    {"setFile", "set Sorvex HBA Boot Config information in a local cache file", "Usage: setFile\r\n",
     &CmdSetFileCommon<BootConfigExt>},
    {"set", "set Sorvex HBA Boot Config information", "Usage: set\r\n", &CmdSetCommon<BootConfigExt>},
};

}  // namespace

NodeClass PhysicalPortBootConfigExtCmdsProcessor() {
  return {
      .name = "PhysicalPortBootConfigExtCmdsProcessor",
      .help_words = "Boot Config",
      .commands = TableOf<kCommands>(),
      .frame = kBootFrame,
      .messages = TableOf<kMessages>(),
  };
}
