// The library calls that a target does not define: a command that makes one ends the run.
#include <cstdlib>

extern "C" {

[[noreturn]] void UnexpectedCall();
void UnexpectedCall() {
  std::abort();
}

[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_Initialize();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetToolID();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetToolVersion();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_Uninitialize();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_doOptionROMUpdate();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_UpdateSpecificFlashRegionFromFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_UpdateAdapterFirmwareTableFromFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_UpdateAdapterPEPCfgFromFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetFlashComponentVersion();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetAdapterFlashMemoBlock();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_CheckOrindaPersonalityChangeOption();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetPersonalityType();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_ChangePersonalityType();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetAdapterAsicBoardTemperature();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetLockdownStatus();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_ResetDeviceStats();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetVpd();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticsRDPTest();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SDGetFwDump2();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetSFPDataEx();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SaveSFPDataToFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SaveSFPDataToTextFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SfpModuleFirmwareUpdate();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetHBAParamsInfo();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_UpdateHBAParameters();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_RestoreDefaultNVRAM();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SaveSingleAdapterNVRAMToFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_UpdateAdapterNVRAMFromFile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_FCGetBBCSupportInfoEx();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_FCSetBBCSupportInfo();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_FCGetFECSupportInfo();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_FCSetFECSupportInfo();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetFWPrivateStats();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_ResetFECCounters();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_IsMezzAdapter();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetBfsConfigMode();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetBfsConfigMode();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetBootDeviceInfo();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetBootDeviceInfo();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetNVMeBootDeviceEntries();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetNVMeBootDeviceEntries();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetAdapterBeaconStatus();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_UpdateAdapterBeaconStatus();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_CheckAdapterDPortOption();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_ConfigureAdapterDPortSettings();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticDPortTest();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticDPortTestV2();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticsCTCommand();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticsFCPingTest();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticsEchoElsTest();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticsLoopBackTest();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_DiagnosticsReadWriteBufferTest();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_FreeRWBufferTestResultList();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetNVMeHostNQNStatus();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_RegisterDeregisterNVMeHostNQN();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_IsVCLMFeatureEnabled();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetSCMRStatisticsList();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_FreeSCMRStatisticsList();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SANCongMgmtResetStatistics();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetSCMRProfile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetSCMRProfile();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetPortStatisticsFC();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_GetTargetLinkSpeed();
[[gnu::weak, gnu::alias("UnexpectedCall")]] void TORPI_SetTargetLinkSpeed();

}  // extern "C"
