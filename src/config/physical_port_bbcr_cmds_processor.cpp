#include "config/physical_port_bbcr_cmds_processor.h"

#include "config/bbcr.h"
#include "framework/table.h"

namespace {

constexpr StatusMessage kMessages[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, NVRAM read failed"},
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, NVRAM update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    kMemoryError,
    {kReadOnlyParameter, "Failed, Read-Only parameter"},
    kVirtualPort,
    kMaintenanceMode,
};

constexpr CommandRow kCommands[] = {
    {"get", "get Sorvex adapter's Buffer-to-Buffer Credit information", "Usage: get\r\n",
     &CmdGetCommon<Bbcr>},
    {"setFile", "set Sorvex adapter's Buffer-to-Buffer Credit information in a local cache file",
     "Usage: setFile\r\n", &CmdSetFileCommon<Bbcr>},
    {"set", "set Sorvex adapter's Buffer-to-Buffer Credit information", "Usage: set\r\n",
     &CmdSetCommon<Bbcr>},
};

}  // namespace

NodeClass PhysicalPortBBCRCmdsProcessor() {
  return {
      .name = "PhysicalPortBBCRCmdsProcessor",
      .help_words = "BBCR",
      .commands = TableOf<kCommands>(),
      .frame = {"BBCRInfo", "BBCR", "BBCRList"},
      .messages = TableOf<kMessages>(),
  };
}
