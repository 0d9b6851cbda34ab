// A device library in plain C, built on the host on which it is tried: two adapters, each with a port, a SCSI
// target and an NVMe target. It answers every call, so that every report has content, and says on standard
// output which call it got and what was handed to it; the program keeps that in a file of its own. It builds
// with any C compiler, without a file of the repository. The offsets are those of the library's records.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum {
  kAdapterSize = 400,
  kProtocolSize = 2688,
  kTargetSize = 1496,
  kLunSize = 392,
  kParametersSize = 512,
  kNvmeBootSize = 2560,
  kStatisticsSize = 976,
  kLinkTestSize = 240,
  kLoopbackSize = 420,
  kReadWriteSize = 4744,
  kRequestSize = 144,
};

typedef struct {
  char bytes[kLinkTestSize];
} LinkTest;
typedef struct {
  char bytes[kLoopbackSize];
} Loopback;

static void Put(char* record, size_t offset, uint64_t value, size_t size) {
  for (size_t i = 0; i < size; ++i) record[offset + i] = (char)(value >> (8 * i));
}

static void PutText(char* record, size_t offset, const char* text) {
  memcpy(record + offset, text, strlen(text));
}

static void PutPointer(char* record, size_t offset, const void* pointer) {
  memcpy(record + offset, &pointer, sizeof pointer);
}

static void PutName(char* record, size_t offset, uint64_t name) {
  for (size_t i = 0; i < 8; ++i) record[offset + i] = (char)(name >> (8 * (7 - i)));
}

// Different bytes in every place, so that a report shows where each came from.
static void Fill(char* record, size_t size) {
  for (size_t i = 0; i < size; ++i) record[i] = (char)(i * 37 + 11);
}

static uint32_t Called(const char* call) {
  printf("%s\n", call);
  return 0;
}

// The same with a sum over what the program handed in.
static uint32_t CalledWith(const char* call, const void* record, size_t size) {
  const unsigned char* bytes = record;
  uint32_t sum = 2166136261u;
  for (size_t i = 0; i < size; ++i) sum = (sum ^ bytes[i]) * 16777619u;
  printf("%s %08x\n", call, (unsigned)sum);
  return 0;
}

// The host.

typedef struct {
  char adapter[kAdapterSize];
  char port_list[16];
  char port[24];
  char protocol_list[16];
  char protocol[kProtocolSize];
  char targets[2][kTargetSize];
  char luns[2][2][kLunSize];
} Adapter;

static Adapter adapters[2];
static char adapter_list[16];

static void MakeLun(char* lun, unsigned number, const char* next) {
  Put(lun, 0, number, 2);
  PutText(lun, 14, "VENDOR");
  PutText(lun, 22, "DISK ARRAY");
  Put(lun, 38, 1048576 + number, 4);
  Fill(lun + 43, 32);
  Put(lun, 75, 16, 1);
  PutText(lun, 80, "1.4");
  PutText(lun, 88, "0301");
  Put(lun, 364, 8, 1);
  Put(lun, 365, 2097152 + number, 8);
  PutPointer(lun, 384, next);
}

static void MakeTarget(char* target, uint64_t name, int is_nvme, char luns[2][kLunSize], const char* next) {
  PutName(target, 0, name | 0x2000000000000000u);
  PutName(target, 8, name);
  Put(target, 16, 0x030201, 3);
  Put(target, 22, 5, 2);
  Put(target, 30, 0x000f, 2);
  Put(target, 32, 3, 2);
  Put(target, 36, 1000, 4);
  Put(target, 40, 1, 2);
  Put(target, 42, 2, 2);
  Put(target, 44, 500, 4);
  Put(target, 52, 3600, 4);
  PutText(target, 164, "VENDOR");
  PutText(target, 172, "DISK ARRAY");
  PutText(target, 188, "0301");
  Put(target, 192, 0x40, 1);
  Put(target, 194, 0x02, 1);
  Put(target, 196, 0x01, 1);
  Put(target, 197, is_nvme ? 0x08 : 0, 1);
  Put(target, 224, 2, 4);
  PutPointer(target, 232, luns[0]);
  PutText(target, 260, "SERIAL-0001");
  Put(target, 400, 0x010203, 4);
  Put(target, 404, 0x02, 1);
  PutName(target, 408, name);
  Put(target, 432, 7, 4);
  PutText(target, 528, "1.4");
  Put(target, 542, 0x1234, 2);
  PutText(target, 560, "nqn.2014-08.org.nvmexpress:old-host");
  PutPointer(target, 1488, next);
  MakeLun(luns[0], 0, luns[1]);
  MakeLun(luns[1], 3, NULL);
}

static void MakeProtocol(Adapter* adapter, uint64_t name, unsigned device) {
  char* fc = adapter->protocol;
  PutName(fc, 0, name & ~0x0100000000000000u);
  PutName(fc, 8, name);
  Put(fc, 20, 17, 4);
  Put(fc, 28, 0x1C9E, 2);
  Put(fc, 30, device, 2);
  Put(fc, 32, 0x1C9E, 2);
  Put(fc, 34, 0x0B01, 2);
  Put(fc, 78, 0x0084, 2);
  Put(fc, 80, 0x0084, 2);
  PutText(fc, 108, "5.4.81.2-k");
  Put(fc, 160, 0x24800000, 4);
  Put(fc, 180, 0x07, 1);
  PutText(fc, 396, "9.12.01");
  PutText(fc, 428, "3.65");
  Put(fc, 462, 1, 2);
  Put(fc, 472, 0x0a, 4);
  Put(fc, 476, 0x00010c09, 4);
  Put(fc, 480, 0x00001307, 4);
  Put(fc, 484, 0x00000204, 4);
  Put(fc, 488, 0x00030201, 4);
  Put(fc, 492, 0x00060504, 4);
  Put(fc, 608, 0x010203, 3);
  Put(fc, 611, 1, 1);
  Put(fc, 612, 1, 1);
  Put(fc, 613, 1, 1);
  Put(fc, 652, 50, 4);
  Put(fc, 660, 0x8000, 2);
  Put(fc, 664, 0xff, 1);
  PutName(fc, 668, 0x100000051e0a0b0cu);
  PutName(fc, 676, 0x100000051e0a0b0du);
  Put(fc, 684, 0x000f, 2);
  Fill(fc + 686, 25);
  Fill(fc + 752, 48);
  Put(fc, 840, 12345678901u, 8);
  Put(fc, 848, 98765432109u, 8);
  Put(fc, 1992, 2, 4);
  PutPointer(fc, 2000, adapter->targets[0]);
  Fill(fc + 2160, 16);
  PutText(fc, 2176, "nqn.2014-08.org.nvmexpress:uuid:0001");
  Put(fc, 2672, 0x3b, 1);
  Put(fc, 2674, 1, 1);
}

static void MakeAdapter(Adapter* adapter, const char* model, const char* serial, uint64_t name,
                        unsigned device, const Adapter* next) {
  PutText(adapter->adapter, 0, serial);
  PutText(adapter->adapter, 36, "Sorvex");
  Put(adapter->adapter, 116, 0x1C9E, 2);
  Put(adapter->adapter, 118, 0x1C9E, 2);
  Put(adapter->adapter, 120, 0x0B01, 2);
  Put(adapter->adapter, 122, 0x3b, 2);
  PutText(adapter->adapter, 156, model);
  PutText(adapter->adapter, 188, "3.65");
  PutText(adapter->adapter, 220, "4.02");
  PutText(adapter->adapter, 252, "7.19");
  PutText(adapter->adapter, 284, "9.12.01");
  PutText(adapter->adapter, 316, "02.01.63");
  Put(adapter->adapter, 348, 2, 4);
  PutPointer(adapter->adapter, 384, adapter->port_list);
  PutPointer(adapter->adapter, 392, next);
  PutPointer(adapter->port_list, 8, adapter->port);
  PutPointer(adapter->port, 8, adapter->protocol_list);
  PutPointer(adapter->protocol_list, 8, adapter->protocol);
  MakeProtocol(adapter, name, device);
  const uint64_t target = 0x5006016000000000u | (name & 0xffff);
  MakeTarget(adapter->targets[0], target, 0, adapter->luns[0], adapter->targets[1]);
  MakeTarget(adapter->targets[1], target | 0x10000, 1, adapter->luns[1], NULL);
}

const void* TORPI_GetAdapterList(void) {
  if (adapter_list[0] == 0) {
    MakeAdapter(&adapters[0], "ZX640", "OLD0001", 0x210000000a000001u, 0x3640, &adapters[1]);
    MakeAdapter(&adapters[1], "ZX100", "OLD0002", 0x210000000a000002u, 0x3432, NULL);
    Put(adapter_list, 0, 2, 4);
    PutPointer(adapter_list, 8, &adapters[0]);
  }
  return adapter_list;
}

// Start and end.

uint32_t TORPI_Initialize(uint32_t level, uint32_t zero) {
  return level & zero;
}
uint32_t TORPI_SetToolID(uint32_t tool) {
  return tool & 0;
}
uint32_t TORPI_SetToolVersion(uint32_t major, uint32_t minor, uint32_t a, uint32_t b) {
  return (major | minor | a | b) & 0;
}
uint32_t TORPI_Uninitialize(void) {
  return 0;
}

// Calls that read: the buffer, and what it is filled with.

static uint32_t Filled(const char* call, void* out, size_t size) {
  Fill(out, size);
  return Called(call);
}

static uint32_t Answered(const char* call, void* out, uint64_t value, size_t size) {
  Put(out, 0, value, size);
  return Called(call);
}

uint32_t TORPI_IsRebootRequired(uint8_t* out) {
  return Answered("IsRebootRequired", out, 1, 1);
}
uint32_t TORPI_GetFlashComponentVersion(const void* handle, void* out) {
  (void)handle;
  return Filled("GetFlashComponentVersion", out, 256);
}
uint32_t TORPI_GetAdapterFlashMemoBlock(const void* handle, char* out) {
  (void)handle;
  memset(out, 0, 48);
  PutText(out, 0, "FMBS");
  Put(out, 16, 0x010c09, 3);
  Put(out, 20, 0x3f0102, 3);
  PutText(out, 24, "20260114");
  PutText(out, 32, "MFGT");
  Put(out, 36, 2026, 2);
  Put(out, 38, 0x0e020201, 4);
  Put(out, 44, 0x00000102, 4);
  return Called("GetAdapterFlashMemoBlock");
}
uint32_t TORPI_CheckOrindaPersonalityChangeOption(const void* handle) {
  (void)handle;
  return Called("CheckPersonalityChangeOption") + 1;
}
uint32_t TORPI_GetPersonalityType(const void* handle, uint8_t* out) {
  (void)handle;
  return Answered("GetPersonalityType", out, 1, 1);
}
uint32_t TORPI_GetAdapterAsicBoardTemperature(const void* handle, void* out) {
  (void)handle;
  return Answered("GetAdapterAsicBoardTemperature", out, 47, 2);
}
uint32_t TORPI_GetLockdownStatus(const void* handle, char* out) {
  (void)handle;
  memset(out, 0, 40);
  return Answered("GetLockdownStatus", out, 1, 1);
}
uint32_t TORPI_GetVpd(const void* handle, uint32_t zero, char* out, uint32_t* size) {
  (void)handle;
  // An identifier text, and one field in the read-only part.
  static const char kVpd[] = "\x82\x0b\x00ZX Adapter!\x90\x0e\x00PN\x0bZX640-OLD01\x78";
  const uint32_t length = sizeof kVpd - 1 < *size ? (uint32_t)sizeof kVpd - 1 : *size;
  memcpy(out, kVpd, length);
  return Called("GetVpd") & zero;
}
uint32_t TORPI_DiagnosticsRDPTest(const void* handle, void* out, uint32_t* size) {
  (void)handle;
  return Filled("DiagnosticsRDPTest", out, *size < 512 ? *size : 512);
}
uint32_t TORPI_SDGetFwDump2(uint32_t handle, uint32_t zero, void** out, uint32_t* size) {
  *size = 4096;
  *out = malloc(*size);
  if (*out == NULL) return 0x20000064;
  return Filled("SDGetFwDump2", *out, *size) & handle & zero;
}
uint32_t TORPI_GetSFPDataEx(const void* handle, char* out, uint32_t mode, uint32_t zero) {
  (void)handle;
  Fill(out, 512);
  // An SFP module with a calibrated monitor.
  Put(out, 0, 0x030403, 3);
  PutText(out, 20, "VENDOR          ");
  PutText(out, 40, "OPTIC-32G       ");
  PutText(out, 68, "SN0001          ");
  PutText(out, 84, "260114  ");
  Put(out, 92, 0x68, 1);
  return Called("GetSFPDataEx") & mode & zero;
}
static uint32_t WriteFile(const char* call, const char* path) {
  FILE* file = fopen(path, "w");
  if (file == NULL) return 1;
  fprintf(file, "written by %s\n", call);
  fclose(file);
  return Called(call);
}
uint32_t TORPI_SaveSFPDataToFile(const void* handle, const char* path) {
  (void)handle;
  return WriteFile("SaveSFPDataToFile", path);
}
uint32_t TORPI_SaveSFPDataToTextFile(const void* handle, const char* path) {
  (void)handle;
  return WriteFile("SaveSFPDataToTextFile", path);
}
uint32_t TORPI_SaveSingleAdapterNVRAMToFile(const void* handle, const char* path) {
  (void)handle;
  return WriteFile("SaveSingleAdapterNVRAMToFile", path);
}

static void FillParameters(char* out) {
  static const uint16_t kNumbers[][2] = {
      {0, 6},   {4, 1},   {8, 1},   {12, 128},   {20, 17}, {24, 2048}, {32, 1},
      {44, 5},  {48, 8},  {52, 30}, {56, 65535}, {68, 6},  {72, 100},  {76, 29},
      {104, 1}, {128, 1}, {148, 1}, {212, 1},    {236, 1},
  };
  memset(out, 0, kParametersSize);
  for (size_t i = 0; i < sizeof kNumbers / sizeof *kNumbers; ++i) Put(out, kNumbers[i][0], kNumbers[i][1], 4);
  PutName(out, 116, 0x5006016000000001u);
  PutName(out, 168, 0x5006016000010001u);
  Put(out, 176, 3, 2);
}
uint32_t TORPI_GetHBAParamsInfo(const void* handle, char* out, void* extra) {
  (void)handle;
  FillParameters(out);
  return Filled("GetHBAParamsInfo", extra, 96);
}
uint32_t TORPI_GetBootDeviceInfo(const void* handle, char* out, uint32_t zero) {
  (void)handle;
  FillParameters(out);
  return Called("GetBootDeviceInfo") & zero;
}
uint32_t TORPI_GetNVMeBootDeviceEntries(const void* handle, char* out) {
  (void)handle;
  memset(out, 0, kNvmeBootSize);
  PutName(out, 16, 0x5006016000010001u);
  PutName(out, 24, 0x7006016000010001u);
  Put(out, 32, 1, 4);
  Put(out, 36, 0x1234, 2);
  Put(out, 40, 1, 1);
  PutText(out, 44, "nqn.2014-08.org.nvmexpress:old-host");
  return Called("GetNVMeBootDeviceEntries");
}
uint32_t TORPI_FCGetBBCSupportInfoEx(const void* handle, uint8_t* status, uint8_t* configured, uint8_t* state,
                                     uint8_t* negotiated, char* reason, uint32_t size) {
  (void)handle;
  *status = *configured = *negotiated = 3;
  *state = 1;
  if (size != 0) reason[0] = '\0';
  return Called("FCGetBBCSupportInfoEx");
}
uint32_t TORPI_FCGetFECSupportInfo(const void* handle, uint32_t* out) {
  (void)handle;
  return Answered("FCGetFECSupportInfo", out, 1, 4);
}
uint32_t TORPI_GetFWPrivateStats(const void* handle, char** out, uint32_t* size) {
  (void)handle;
  *size = 1024;
  *out = malloc(*size);
  return *out == NULL ? 1 : Filled("GetFWPrivateStats", *out, *size);
}
uint32_t TORPI_IsMezzAdapter(const void* handle, uint8_t* out) {
  (void)handle;
  return Answered("IsMezzAdapter", out, 0, 1);
}
uint32_t TORPI_GetBfsConfigMode(void) {
  return Called("GetBfsConfigMode") + 1;
}
uint32_t TORPI_GetAdapterBeaconStatus(const void* handle, uint32_t* out) {
  (void)handle;
  return Answered("GetAdapterBeaconStatus", out, 1, 4);
}
uint32_t TORPI_GetNVMeHostNQNStatus(const void* handle, uint8_t* out) {
  (void)handle;
  return Answered("GetNVMeHostNQNStatus", out, 1, 1);
}
uint32_t TORPI_IsVCLMFeatureEnabled(const void* handle, uint8_t* out) {
  (void)handle;
  return Answered("IsVCLMFeatureEnabled", out, 1, 1);
}
uint32_t TORPI_GetSCMRStatisticsList(const void* handle, char** out) {
  static char elements[2][kStatisticsSize];
  (void)handle;
  Fill(elements[0], kStatisticsSize);
  Fill(elements[1], kStatisticsSize);
  PutName(elements[0], 8, 0x210000000a000001u);
  PutName(elements[1], 8, 0x5006016000000001u);
  Put(elements[0], 16, 0x80, 4);
  Put(elements[1], 16, 0x81, 4);
  PutPointer(elements[0], 968, elements[1]);
  PutPointer(elements[1], 968, NULL);
  *out = elements[0];
  return Called("GetSCMRStatisticsList");
}
uint32_t TORPI_GetSCMRProfile(const void* handle, void* out) {
  (void)handle;
  memset(out, 0, 16);
  return Answered("GetSCMRProfile", out, 0x020000, 3);
}
uint32_t TORPI_GetPortStatisticsFC(uint32_t handle, uint32_t zero, const void* address, void* out) {
  CalledWith("GetPortStatisticsFC", address, 12);
  return Filled("GetPortStatisticsFC", out, 184) & handle & zero;
}
uint32_t TORPI_GetTargetLinkSpeed(const void* handle, uint16_t number, uint32_t* out) {
  (void)handle;
  return Answered("GetTargetLinkSpeed", out, 4, 4) & number;
}

// Calls that test.

uint32_t TORPI_CheckAdapterDPortOption(const void* handle) {
  (void)handle;
  return Called("CheckAdapterDPortOption") + 1;
}
static void FillLinkTest(char* out) {
  memset(out, 0, kLinkTestSize);
  Put(out, 8, 0xe8030000, 4);   // 1,000 ns, big-endian
  Put(out, 12, 0x64000000, 4);  // 100 m, big-endian
  Put(out, 52, 0x1234, 4);
  for (size_t i = 56; i < 63; ++i) out[i] = 1;
  PutText(out, 64, "Fri Nov 21 10:00:00 2026\n");
  PutText(out, 128, "Fri Nov 21 10:00:05 2026\n");
  // Powers whose logarithms C libraries round differently, big-endian: 277, 4,575, 10,075 and 43,721.
  Put(out, 196, 0x1501, 2);
  Put(out, 198, 0xdf11, 2);
  Put(out, 202, 0x5b27, 2);
  Put(out, 204, 0xc9aa, 2);
}
LinkTest TORPI_DiagnosticDPortTest(const void* handle, const void* zeroed) {
  LinkTest result;
  (void)handle;
  CalledWith("DiagnosticDPortTest", zeroed, kLinkTestSize);
  FillLinkTest(result.bytes);
  return result;
}
uint32_t TORPI_DiagnosticDPortTestV2(const void* handle, char* out) {
  (void)handle;
  FillLinkTest(out);
  return Called("DiagnosticDPortTestV2");
}
static uint32_t RemoteTest(const char* call, const char* name, uint32_t count, uint32_t stop, uint32_t* value,
                           void* buffer, uint32_t size) {
  printf("%s %s %u %u\n", call, name, (unsigned)count, (unsigned)stop);
  *value = count;
  Fill(buffer, size);
  return 0;
}
uint32_t TORPI_DiagnosticsCTCommand(const void* handle, const char* name, uint32_t count, uint32_t stop,
                                    uint32_t* value, void* buffer, uint32_t size, uint32_t type) {
  (void)handle;
  return RemoteTest("DiagnosticsCTCommand", name, count, stop, value, buffer, size) & type;
}
uint32_t TORPI_DiagnosticsFCPingTest(const void* handle, const char* name, uint32_t count, uint32_t stop,
                                     uint32_t* value, void* buffer, uint32_t size) {
  (void)handle;
  return RemoteTest("DiagnosticsFCPingTest", name, count, stop, value, buffer, size);
}
uint32_t TORPI_DiagnosticsEchoElsTest(const void* handle, const char* name, uint32_t count, uint32_t stop,
                                      uint32_t kind, char* out) {
  (void)handle;
  const float milliseconds = 0.1875F;
  printf("DiagnosticsEchoElsTest %s %u %u %u\n", name, (unsigned)count, (unsigned)stop, (unsigned)kind);
  memset(out, 0, 92);
  Put(out, 0, 1, 4);
  Put(out, 4, 1, 4);
  Put(out, 8, 252, 4);
  PutText(out, 16, "Success");
  memcpy(out + 88, &milliseconds, sizeof milliseconds);
  return 0;
}
Loopback TORPI_DiagnosticsLoopBackTest(const void* handle, const void* request) {
  Loopback result;
  (void)handle;
  CalledWith("DiagnosticsLoopBackTest", request, kRequestSize);
  memset(&result, 0, sizeof result);
  PutText(result.bytes, 4, "Success");
  return result;
}
void* TORPI_DiagnosticsReadWriteBufferTest(const void* handle, const void* request) {
  static char result[kReadWriteSize];
  (void)handle;
  CalledWith("DiagnosticsReadWriteBufferTest", request, kRequestSize);
  PutText(result, 4, "Success");
  Put(result, 264, 0x030201, 3);
  return result;
}

// Calls that change something, each with what it is handed.

#define CHANGE(call)                          \
  uint32_t TORPI_##call(const void* handle) { \
    (void)handle;                             \
    return Called(#call);                     \
  }
CHANGE(ResetDeviceStats)
CHANGE(RestoreDefaultNVRAM)
CHANGE(ResetFECCounters)
CHANGE(FreeSCMRStatisticsList)
CHANGE(FreeRWBufferTestResultList)
CHANGE(SANCongMgmtResetStatistics)

#define CHANGE_TO(call, number)                             \
  uint32_t TORPI_##call(const void* handle, number value) { \
    (void)handle;                                           \
    return CalledWith(#call, &value, sizeof value);         \
  }
CHANGE_TO(ChangePersonalityType, uint8_t)
CHANGE_TO(FCSetFECSupportInfo, uint32_t)
CHANGE_TO(UpdateAdapterBeaconStatus, uint32_t)
CHANGE_TO(RegisterDeregisterNVMeHostNQN, uint8_t)

#define CHANGE_RECORD(call, size)                                 \
  uint32_t TORPI_##call(const void* handle, const void* record) { \
    (void)handle;                                                 \
    return CalledWith(#call, record, size);                       \
  }
CHANGE_RECORD(UpdateHBAParameters, kParametersSize)
CHANGE_RECORD(SetBootDeviceInfo, kParametersSize)
CHANGE_RECORD(SetNVMeBootDeviceEntries, kNvmeBootSize)
CHANGE_RECORD(SetSCMRProfile, 16)

#define CHANGE_FROM_FILE(call)                                  \
  uint32_t TORPI_##call(const void* handle, const char* path) { \
    (void)handle;                                               \
    return CalledWith(#call, path, strlen(path));               \
  }
CHANGE_FROM_FILE(UpdateSpecificFlashRegionFromFile)
CHANGE_FROM_FILE(UpdateAdapterFirmwareTableFromFile)
CHANGE_FROM_FILE(UpdateAdapterPEPCfgFromFile)
CHANGE_FROM_FILE(UpdateAdapterNVRAMFromFile)

uint32_t TORPI_doOptionROMUpdate(const void* handle, const char* path, uint32_t zero) {
  (void)handle;
  return CalledWith("doOptionROMUpdate", path, strlen(path)) & zero;
}
uint32_t TORPI_SfpModuleFirmwareUpdate(const void* handle, const char* path, uint32_t two) {
  (void)handle;
  return CalledWith("SfpModuleFirmwareUpdate", path, strlen(path)) & two;
}
uint32_t TORPI_FCSetBBCSupportInfo(const void* handle, uint8_t status, uint8_t configured) {
  (void)handle;
  printf("FCSetBBCSupportInfo %u %u\n", status, configured);
  return 0;
}
uint32_t TORPI_SetBfsConfigMode(uint32_t mode) {
  return CalledWith("SetBfsConfigMode", &mode, sizeof mode);
}
uint32_t TORPI_ConfigureAdapterDPortSettings(const void* handle, uint8_t enable, uint32_t zero) {
  (void)handle;
  return CalledWith("ConfigureAdapterDPortSettings", &enable, sizeof enable) & zero;
}
uint32_t TORPI_SetTargetLinkSpeed(const void* handle, uint16_t number, uint32_t speed) {
  (void)handle;
  printf("SetTargetLinkSpeed %u %u\n", number, (unsigned)speed);
  return 0;
}
