// The calls of the closed device library, grouped as the commands use them.
//
// Unless a call says otherwise its first argument is the address of the port's handle block, and its result
// is one of library_answers.h. "out" marks what the library writes. The program binds lazily, so a library
// that lacks a call still serves every command that does not make it: never store the address of a call in
// static data.
#pragma once

#include <cstdint>

#include "framework/device_library/adapter_records.h"
#include "framework/device_library/config_records.h"
#include "framework/device_library/congestion_records.h"
#include "framework/device_library/device_handle.h"
#include "framework/device_library/diag_records.h"
#include "framework/device_library/flash_records.h"
#include "framework/device_library/library_answers.h"
#include "framework/device_library/port_records.h"
#include "framework/device_library/target_statistics_records.h"

// What an adapter with a personality works as.
enum AdapterPersonality : std::uint8_t { kFcPersonality = 0, kCnaPersonality = 1 };

#pragma GCC visibility push(default)
extern "C" {

// Start and end.
LibraryStatus TORPI_Initialize(std::uint32_t debug_level, std::uint32_t zero);  // 31: trace; 0: quiet
LibraryStatus TORPI_SetToolID(std::uint32_t tool);
LibraryStatus TORPI_SetToolVersion(std::uint32_t major, std::uint32_t minor, std::uint32_t zero_1,
                                   std::uint32_t zero_2);
LibraryStatus TORPI_Uninitialize();
const AdapterList* TORPI_GetAdapterList();                         // null: the host has no list
LibraryStatus TORPI_IsRebootRequired(std::uint8_t* out_required);  // 1: required

// Flash. Files are named by a terminated path.
LibraryStatus TORPI_doOptionROMUpdate(const DeviceHandle*, const char* file, std::uint32_t zero);
LibraryStatus TORPI_UpdateSpecificFlashRegionFromFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_UpdateAdapterFirmwareTableFromFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_UpdateAdapterPEPCfgFromFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_GetFlashComponentVersion(const DeviceHandle*, FlashComponentVersions* out);
LibraryStatus TORPI_GetAdapterFlashMemoBlock(const DeviceHandle*, FlashMemoBlock* out);

// AdapterPersonality. The check answers 1, in its low 8 bits, when the user may change it.
std::uint32_t TORPI_CheckOrindaPersonalityChangeOption(const DeviceHandle*);
LibraryStatus TORPI_GetPersonalityType(const DeviceHandle*, std::uint8_t* out_personality);
LibraryStatus TORPI_ChangePersonalityType(const DeviceHandle*, std::uint8_t personality);

// Port reports. Sizes are in bytes, preset to the buffer's size.
LibraryStatus TORPI_GetAdapterAsicBoardTemperature(const DeviceHandle*, BoardTemperature* out);
LibraryStatus TORPI_GetLockdownStatus(const DeviceHandle*, LockdownStatus* out);
LibraryStatus TORPI_ResetDeviceStats(const DeviceHandle*);
LibraryStatus TORPI_GetVpd(const DeviceHandle*, std::uint32_t zero, std::uint8_t* out, std::uint32_t* size);
LibraryStatus TORPI_DiagnosticsRDPTest(const DeviceHandle*, std::uint8_t* out, std::uint32_t* size);
// Takes the handle's sd_handle; the caller releases the buffer with free(). Failures are kDump*.
LibraryStatus TORPI_SDGetFwDump2(std::uint32_t sd_handle, std::uint32_t zero, void** out_buffer,
                                 std::uint32_t* out_size);

// SFP module: an image of 512 bytes, A0 ahead of A2.
LibraryStatus TORPI_GetSFPDataEx(const DeviceHandle*, std::uint8_t* out, std::uint32_t read_mode,
                                 std::uint32_t zero);
LibraryStatus TORPI_SaveSFPDataToFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_SaveSFPDataToTextFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_SfpModuleFirmwareUpdate(const DeviceHandle*, const char* file, std::uint32_t two);

// Non-volatile configuration.
LibraryStatus TORPI_GetHBAParamsInfo(const DeviceHandle*, HBAParamsInfo* out, HBAParamsExtra* out_extra);
LibraryStatus TORPI_UpdateHBAParameters(const DeviceHandle*, const HBAParamsInfo*);
LibraryStatus TORPI_RestoreDefaultNVRAM(const DeviceHandle*);
LibraryStatus TORPI_SaveSingleAdapterNVRAMToFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_UpdateAdapterNVRAMFromFile(const DeviceHandle*, const char* file);
LibraryStatus TORPI_FCGetBBCSupportInfoEx(const DeviceHandle*, std::uint8_t* out_status,
                                          std::uint8_t* out_configured, std::uint8_t* out_state,
                                          std::uint8_t* out_negotiated, char* out_reason,
                                          std::uint32_t reason_size);
LibraryStatus TORPI_FCSetBBCSupportInfo(const DeviceHandle*, std::uint8_t status, std::uint8_t configured);
LibraryStatus TORPI_FCGetFECSupportInfo(const DeviceHandle*, std::uint32_t* out_setting);
LibraryStatus TORPI_FCSetFECSupportInfo(const DeviceHandle*, std::uint32_t setting);
LibraryStatus TORPI_GetFWPrivateStats(const DeviceHandle*, FWPrivateStats** out, std::uint32_t* out_size);
LibraryStatus TORPI_ResetFECCounters(const DeviceHandle*);
LibraryStatus TORPI_IsMezzAdapter(const DeviceHandle*, std::uint8_t* out_is_mezz);
std::uint32_t TORPI_GetBfsConfigMode();  // BootMode, in the low 8 bits
LibraryStatus TORPI_SetBfsConfigMode(std::uint32_t mode);
LibraryStatus TORPI_GetBootDeviceInfo(const DeviceHandle*, HBAParamsInfo* out, std::uint32_t zero);
LibraryStatus TORPI_SetBootDeviceInfo(const DeviceHandle*, const HBAParamsInfo*);
LibraryStatus TORPI_GetNVMeBootDeviceEntries(const DeviceHandle*, NVMeBootRecord* out);
LibraryStatus TORPI_SetNVMeBootDeviceEntries(const DeviceHandle*, const NVMeBootRecord*);
LibraryStatus TORPI_GetAdapterBeaconStatus(const DeviceHandle*, std::uint32_t* out_state);
LibraryStatus TORPI_UpdateAdapterBeaconStatus(const DeviceHandle*, std::uint32_t state);

// Diagnostics. Destination names are terminated texts of eight hexadecimal octets with colons.
std::uint32_t TORPI_CheckAdapterDPortOption(const DeviceHandle*);  // low 8 bits nonzero: diagnostic port
LibraryStatus TORPI_ConfigureAdapterDPortSettings(const DeviceHandle*, std::uint8_t enable,
                                                  std::uint32_t zero);
DPortResultRecord TORPI_DiagnosticDPortTest(const DeviceHandle*, DPortResultRecord* zeroed);
LibraryStatus TORPI_DiagnosticDPortTestV2(const DeviceHandle*, DPortResultRecord* out);
LibraryStatus TORPI_DiagnosticsCTCommand(const DeviceHandle*, const char* port_name, std::uint32_t count,
                                         std::uint32_t stop_on_error, std::uint32_t* out_value,
                                         std::uint8_t* out_buffer, std::uint32_t buffer_size,
                                         std::uint32_t test_type);
LibraryStatus TORPI_DiagnosticsFCPingTest(const DeviceHandle*, const char* port_name, std::uint32_t count,
                                          std::uint32_t stop_on_error, std::uint32_t* out_value,
                                          std::uint8_t* out_buffer, std::uint32_t buffer_size);
LibraryStatus TORPI_DiagnosticsEchoElsTest(const DeviceHandle*, const char* port_name, std::uint32_t count,
                                           std::uint32_t stop_on_error, std::uint32_t destination_kind,
                                           EchoElsResult* out);
LoopbackResult TORPI_DiagnosticsLoopBackTest(const DeviceHandle*, const DiagTestRequest*);
RWBufferResult* TORPI_DiagnosticsReadWriteBufferTest(const DeviceHandle*, const DiagTestRequest*);
LibraryStatus TORPI_FreeRWBufferTestResultList(RWBufferResult* list);
LibraryStatus TORPI_GetNVMeHostNQNStatus(const DeviceHandle*, std::uint8_t* out_registered);
LibraryStatus TORPI_RegisterDeregisterNVMeHostNQN(const DeviceHandle*, std::uint8_t action);

// Congestion management.
LibraryStatus TORPI_IsVCLMFeatureEnabled(const DeviceHandle*, std::uint8_t* out_enabled);
LibraryStatus TORPI_GetSCMRStatisticsList(const DeviceHandle*, SCMRStatisticsEntry** out_head);
LibraryStatus TORPI_FreeSCMRStatisticsList(SCMRStatisticsEntry* head);
LibraryStatus TORPI_SANCongMgmtResetStatistics(const DeviceHandle*);
LibraryStatus TORPI_GetSCMRProfile(const DeviceHandle*, SCMRProfile* out);
LibraryStatus TORPI_SetSCMRProfile(const DeviceHandle*, const SCMRProfile*);

// Targets.
LibraryStatus TORPI_GetPortStatisticsFC(std::uint32_t sd_handle, std::uint32_t zero,
                                        const TargetStatisticsAddress*, TargetPortStatistics* out);
LibraryStatus TORPI_GetTargetLinkSpeed(const DeviceHandle*, std::uint16_t target_number,
                                       std::uint32_t* out_speed);
LibraryStatus TORPI_SetTargetLinkSpeed(const DeviceHandle*, std::uint16_t target_number, std::uint32_t speed);

}  // extern "C"
#pragma GCC visibility pop
