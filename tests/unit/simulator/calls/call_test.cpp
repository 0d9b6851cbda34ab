#include <cstring>
#include <string>

#include "base/text.h"
#include "unit/simulator/lab_fixture.h"

namespace {

using Calls = LabTest;

TEST_F(Calls, EveryServedCallLeavesOneLine) {
  UseHost("adapters:\n  - {family: elm, ports: [{wwpn: 21:00:00:0e:1e:11:22:33}]}\n");
  TORPI_Initialize(31, 0);
  TORPI_SetToolID(11);
  TORPI_SetToolVersion(1, 9, 0, 0);
  const DeviceHandle* handle = HandleAt(0);
  std::uint8_t value = 0;
  FlashComponentVersions versions{};
  FlashMemoBlock memo{};
  TORPI_IsRebootRequired(&value);
  TORPI_doOptionROMUpdate(handle, "/none/a \"b\"\\\n\x01\xc3.img", 0);
  TORPI_UpdateSpecificFlashRegionFromFile(handle, "/none/b");
  TORPI_UpdateAdapterFirmwareTableFromFile(handle, "/none/c");
  TORPI_UpdateAdapterPEPCfgFromFile(handle, nullptr);
  TORPI_GetFlashComponentVersion(handle, &versions);
  TORPI_GetAdapterFlashMemoBlock(handle, &memo);
  TORPI_CheckOrindaPersonalityChangeOption(handle);
  TORPI_GetPersonalityType(handle, &value);
  TORPI_ChangePersonalityType(handle, 1);
  TORPI_Uninitialize();
  EXPECT_EQ(Read("trace"),
            "TORPI_Initialize(31, 0) -> 0\n"
            "TORPI_SetToolID(11) -> 0\n"
            "TORPI_SetToolVersion(1, 9, 0, 0) -> 0\n"
            "TORPI_GetAdapterList() -> list adapters=1\n"
            "TORPI_IsRebootRequired() -> 0 required=0\n"
            "TORPI_doOptionROMUpdate(port=FC_21:00:00:0e:1e:11:22:33, "
            "\"/none/a \\\"b\\\"\\\\\\n\\x01\\xc3.img\", 0) -> 3\n"
            "TORPI_UpdateSpecificFlashRegionFromFile(port=FC_21:00:00:0e:1e:11:22:33, \"/none/b\") -> 3\n"
            "TORPI_UpdateAdapterFirmwareTableFromFile(port=FC_21:00:00:0e:1e:11:22:33, \"/none/c\") -> 3\n"
            "TORPI_UpdateAdapterPEPCfgFromFile(port=FC_21:00:00:0e:1e:11:22:33, null) -> 903\n"
            "TORPI_GetFlashComponentVersion(port=FC_21:00:00:0e:1e:11:22:33) -> 0\n"
            "TORPI_GetAdapterFlashMemoBlock(port=FC_21:00:00:0e:1e:11:22:33) -> 0\n"
            "TORPI_CheckOrindaPersonalityChangeOption(port=FC_21:00:00:0e:1e:11:22:33) -> 1\n"
            "TORPI_GetPersonalityType(port=FC_21:00:00:0e:1e:11:22:33) -> 0 personality=0\n"
            "TORPI_ChangePersonalityType(port=FC_21:00:00:0e:1e:11:22:33, 1) -> 0\n"
            "TORPI_Uninitialize() -> 0\n");
}

TEST_F(Calls, SessionCallsDoNotLoadTheHost) {
  UseHost("not a host\n");
  testing::internal::CaptureStderr();
  TORPI_Initialize(0, 0);
  TORPI_SetToolID(11);
  TORPI_SetToolVersion(1, 9, 0, 0);
  TORPI_Uninitialize();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Calls, HandleIsKnownByItsContent) {
  std::uint8_t personality = 0;
  const DeviceHandle copy = *HandleAt(0);
  EXPECT_EQ(TORPI_GetPersonalityType(&copy, &personality), 0u);
}

TEST_F(Calls, UnknownHandlesAreRefused) {
  std::uint8_t value = 0xEE;
  const DeviceHandle good = *HandleAt(0);
  DeviceHandle zero{}, garbage, other = good;
  std::memset(&garbage, 0xA5, sizeof garbage);
  other.sd_handle += 1;
  for (const DeviceHandle* handle :
       {static_cast<const DeviceHandle*>(nullptr), static_cast<const DeviceHandle*>(&zero),
        static_cast<const DeviceHandle*>(&garbage), static_cast<const DeviceHandle*>(&other)}) {
    EXPECT_EQ(TORPI_GetPersonalityType(handle, &value), 901u);
    EXPECT_EQ(TORPI_doOptionROMUpdate(handle, "x", 0), 901u);
    EXPECT_EQ(TORPI_CheckOrindaPersonalityChangeOption(handle), 0u);
    EXPECT_EQ(TORPI_GetVpd(handle, 0, nullptr, nullptr), 901u);
    EXPECT_EQ(TORPI_SDGetFwDump2(1, 0, nullptr, nullptr), 0x20000000u + 901);
  }
  EXPECT_EQ(value, 0xEE);
  EXPECT_NE(Read("trace").find("TORPI_doOptionROMUpdate(port=unknown, \"x\", 0) -> 901\n"),
            std::string::npos);
}

TEST_F(Calls, HandleOfALargerHostIsUnknownToASmallerOne) {
  const DeviceHandle stale = *HandleAt(5);
  NextRun();
  UseHost("adapters:\n  - {family: elm, ports: [{}]}\n");
  std::uint8_t value = 0;
  EXPECT_EQ(TORPI_GetPersonalityType(&stale, &value), 901u);
}

TEST_F(Calls, NullResultsAreRefused) {
  EXPECT_EQ(TORPI_IsRebootRequired(nullptr), 903u);
  EXPECT_EQ(TORPI_GetPersonalityType(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_GetFlashComponentVersion(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_GetAdapterFlashMemoBlock(HandleAt(0), nullptr), 903u);
  EXPECT_EQ(TORPI_SDGetFwDump2(HandleAt(0)->sd_handle, 0, nullptr, nullptr), 0x20000000u + 903);
}

TEST_F(Calls, MemoBlockIsRefusedByFamiliesWithoutOne) {
  FlashMemoBlock memo{};
  EXPECT_EQ(TORPI_GetAdapterFlashMemoBlock(HandleAt(5), &memo), 121u);
}

TEST_F(Calls, PortInMaintenanceModeAnswers150) {
  UseHost("adapters:\n  - {family: elm, ports: [{maintenance: true}]}\n");
  std::uint8_t value = 0;
  FlashComponentVersions versions{};
  EXPECT_EQ(TORPI_GetPersonalityType(HandleAt(0), &value), 150u);
  EXPECT_EQ(TORPI_GetFlashComponentVersion(HandleAt(0), &versions), 150u);
}

TEST_F(Calls, QuietByDefault) {
  testing::internal::CaptureStdout();
  TORPI_IsRebootRequired(nullptr);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Calls, ChatterGoesToTheStreamThatIsStandardOutputNow) {
  setenv("TORPI_LAB_CHATTER", "1", 1);
  const DeviceHandle* handle = HandleAt(0);
  std::uint8_t personality = 0;
  std::FILE* real = stdout;
  testing::internal::CaptureStdout();
  stdout = std::fopen(Path("chatter").c_str(), "a+");
  TORPI_GetPersonalityType(handle, &personality);
  std::fclose(stdout);
  stdout = real;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(Read("chatter"), "TORPI_GetPersonalityType: enter\nTORPI_GetPersonalityType: exit, status 0\n");
}

TEST_F(Calls, ChatterOfPortCallsAlone) {
  UseHost("chatter: ports\nadapters:\n  - {family: elm, ports: [{}]}\n");
  testing::internal::CaptureStdout();
  FlashComponentVersions versions{};
  TORPI_GetFlashComponentVersion(HandleAt(0), &versions);
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "TORPI_GetFlashComponentVersion: enter\nTORPI_GetFlashComponentVersion: exit, status 0\n");
}

TEST_F(Calls, EnvironmentSilencesTheHostFilesChatter) {
  UseHost("chatter: true\nadapters:\n  - {family: elm, ports: [{}]}\n");
  setenv("TORPI_LAB_CHATTER", "0", 1);
  testing::internal::CaptureStdout();
  TORPI_GetAdapterList();
  std::fflush(stdout);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Calls, TraceThatCannotBeWrittenIsReportedAndServesOn) {
  setenv("TORPI_LAB_TRACE", Path("no/such/folder").c_str(), 1);
  testing::internal::CaptureStderr();
  EXPECT_NE(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("no/such/folder") + ": can't be written: No such file or directory\n");
}

}  // namespace
