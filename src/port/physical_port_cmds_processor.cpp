#include "port/physical_port_cmds_processor.h"

#include <string>

#include "config/physical_port_bbcr_cmds_processor.h"
#include "config/physical_port_beacon_cmds_processor.h"
#include "config/physical_port_boot_config_cmds_processor.h"
#include "config/physical_port_boot_config_ext_cmds_processor.h"
#include "config/physical_port_fec_cmds_processor.h"
#include "config/physical_port_hba_params_cmds_processor.h"
#include "congestion/physical_port_scm_chk_cmds_processor.h"
#include "congestion/physical_port_scm_profile_cmds_processor.h"
#include "congestion/physical_port_scm_stats_cmds_processor.h"
#include "diag/physical_port_ct_diag_cmds_processor.h"
#include "diag/physical_port_dport_diag_cmds_processor.h"
#include "diag/physical_port_fc_echo_cmds_processor.h"
#include "diag/physical_port_fc_ping_cmds_processor.h"
#include "diag/physical_port_host_nqn_cmds_processor.h"
#include "diag/physical_port_loopback_cmds_processor.h"
#include "diag/physical_port_rw_buffer_cmds_processor.h"
#include "discovery/host_walk.h"
#include "discovery/identifiers.h"
#include "discovery/listing.h"
#include "discovery/port_lookup.h"
#include "framework/files.h"
#include "framework/library_call.h"
#include "framework/report.h"
#include "framework/table.h"
#include "port/physical_port_dmi_cmds_processor.h"
#include "port/physical_port_fc_stats_cmds_processor.h"
#include "port/physical_port_fw_dump_cmds_processor.h"
#include "port/physical_port_info_cmds_processor.h"
#include "port/physical_port_rdp_cmds_processor.h"
#include "port/physical_port_vpd_cmds_processor.h"

namespace {

constexpr StatusMessage kMessages[] = {
    kSuccess,
    kInvalidParameter,
    kHostNotFound,
    kFileNotFound,
    {kUpdateFailed, "Failed, NVRAM update failed"},
    kAdapterNotFound,
    kFeatureNotSupported,
    kVirtualPort,
    kMaintenanceMode,
};

StatusCode CmdListCommon(CommandRun& run) {
  const AdapterList* list = nullptr;
  if (const StatusCode status = OpenListing(run, list); status != kSuccess) return status;
  IdentifierList identifiers(run, "PortList", "Ports");
  VisitFcEntries(*list, [&](const auto&, const auto&, const FCProtocolEntry& entry) {
    identifiers.Write(PortIdentifier(entry));
    return false;
  });
  return kSuccess;
}

// Writes the document of a success or a failure and returns its code.
StatusCode DisplayUpdateNvram(CommandRun& run, StatusCode code, bool reboot_required) {
  const FunctionScope function(run, __func__);
  const Document document(run, "UpdateNVRAM", run.MessageFor(code),
                          {RebootField::kBeforeMessage, reboot_required});
  return code;
}

StatusCode CmdUpdateNvramCommon(CommandRun& run) {
  const auto fail = [&](StatusCode code) { return DisplayUpdateNvram(run, code, false); };

  PortSelection selected;
  if (const StatusCode status = SelectPhysicalPort(run, selected); status != kSuccess) return fail(status);
  const std::string file(WordAt(run.words, 1));
  if (!FileExists(file.c_str())) {
    return fail(run.Refuse(kFileNotFound, "NVRAM file [%s] does not exist", file.c_str()));
  }
  const StatusCode status = CallLibrary(run, "Update NVRAM from File", kUpdateFailed, [&] {
    return TORPI_UpdateAdapterNVRAMFromFile(&selected.fc->handle, file.c_str());
  });
  if (status != kSuccess) return fail(status);
  return DisplayUpdateNvram(run, kSuccess, IsRebootRequired(run));
}

constexpr CommandRow kCommands[] = {
    {"list", "Discover list of Sorvex physical ports", "Usage: list\r\n", &CmdListCommon},
    {.word = "updatenvram",
     .description = "Update NVRAM of Sorvex physical port",
     .usage = nullptr,
     .run = &CmdUpdateNvramCommon,
     .function = "UpdateNvram"},
};

constexpr SubNode kSubNodes[] = {
    {"info", "-s", "use this command to get Sorvex Fibre Channel Port's info",
     &MakeNode<PhysicalPortInfoCmdsProcessor>},
    {"stats", "-s", "use this command to get Sorvex Fibre Chanel Port Statistics",
     &MakeNode<PhysicalPortFCStatsCmdsProcessor>},
    {"dmi", "-s", "use this command to get Sorvex Fibre Channel Port's SFP DMI info",
     &MakeNode<PhysicalPortDMICmdsProcessor>},
    {"vpd", "-s", "use this command to get Sorvex Fibre Channel Port's VPD info",
     &MakeNode<PhysicalPortVPDCmdsProcessor>},
    {"hbaparams", "-s", "use this command to get/set Sorvex Fibre Channel Port's HBA parameters",
     &MakeNode<PhysicalPortHBAParamsCmdsProcessor>},
    {"bbcr", "-s", "use this command to get/set Sorvex Fibre Channel Port's BBCR info",
     &MakeNode<PhysicalPortBBCRCmdsProcessor>},
    {"fec", "-s", "use this command to get/set Sorvex Fibre Channel Port's FEC info",
     &MakeNode<PhysicalPortFECCmdsProcessor>},
    {"bootconfig", "-s", "use this command to get/set Sorvex Fibre Channel Port's Boot Config info",
     &MakeNode<PhysicalPortBootConfigCmdsProcessor>},
    {"bootconfigext", "-s", "use this command to get/set Sorvex Fibre Channel Port's Boot Config info",
     &MakeNode<PhysicalPortBootConfigExtCmdsProcessor>},
    {"fwdump", "-s", "use this command to get Sorvex Fibre Channel Port's Firmware Dump info",
     &MakeNode<PhysicalPortFwDumpCmdsProcessor>},
    {"beacon", "-s", "use this command to get/set Sorvex Fibre Channel Port's Beacon info",
     &MakeNode<PhysicalPortBeaconCmdsProcessor>},
    {"scmstats", "-s",
     "use this command to get Sorvex Fibre Channel Port's Variable Credit Load Mitigation (VCLM) Statistics",
     &MakeNode<PhysicalPortSCMStatsCmdsProcessor>},
    {"scmchk", "-s",
     "use this command to check Sorvex Fibre Channel Port's Variable Credit Load Mitigation (VCLM) Status",
     &MakeNode<PhysicalPortSCMChkCmdsProcessor>},
    {"scmprofile", "-s",
     "use this command to check Sorvex Fibre Channel Port's Variable Credit Load Mitigation (VCLM) Profile",
     &MakeNode<PhysicalPortSCMProfileCmdsProcessor>},
    {"dportdiag", "-s",
     "use this command to get/set/run Diagnostic Port (DPort) on Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortDPortDiagCmdsProcessor>},
    {"ctdiag", "-s", "use this command to run CT diagnostic through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortCTDiagCmdsProcessor>},
    {"fcping", "-s", "use this command to run FC Ping diagnostic through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortFCPingCmdsProcessor>},
    {"fcecho", "-s", "use this command to run FC Echo ELS diagnostic through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortFCEchoCmdsProcessor>},
    {"rdp", "-s",
     "use this command to get Read Diagnostic Parameters ELS info through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortRDPCmdsProcessor>},
    {"loopback", "-s", "use this command to run loopback diagnostic test through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortLoopbackCmdsProcessor>},
    {"rwbuffer", "-s",
     "use this command to run Read/Write Buffer Diagnostic test through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortRWBufferCmdsProcessor>},
    {"hnqn", "-s",
     "use this command to register/deregister NVMe Host NQN to FC switch through Sorvex Fibre Channel Port",
     &MakeNode<PhysicalPortHostNQNCmdsProcessor>},
};

}  // namespace

NodeClass PhysicalPortCmdsProcessor() {
  return {
      .name = "PhysicalPortCmdsProcessor",
      .help_words = "Port",
      .commands = TableOf<kCommands>(),
      .sub_nodes = TableOf<kSubNodes>(),
      .messages = TableOf<kMessages>(),
  };
}
