// Calls on the module in a port's cage.
#include <filesystem>
#include <string>

#include "unit/simulator/sfp_fixture.h"

namespace {

using SfpCalls = SfpTest;

TEST_F(SfpCalls, EmptyCageReadsAsZeros) {
  for (const std::uint32_t mode : {kAsKnown, kRefreshed, kStraight})
    EXPECT_EQ(Composed("none", mode), Memory{});
}

TEST_F(SfpCalls, EmptyCageIsNeitherSavedNorUpdated) {
  Composed("none");
  EXPECT_EQ(TORPI_SaveSFPDataToFile(HandleAt(0), Path("saved").c_str()), 114u);
  EXPECT_EQ(TORPI_SaveSFPDataToTextFile(HandleAt(0), Path("saved").c_str()), 114u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), Firmware("vendor: WTD\nversion: 2.8\n").c_str(), 2),
            114u);
  EXPECT_FALSE(std::filesystem::exists(Path("saved")));
}

TEST_F(SfpCalls, VirtualPortsShareTheModuleAndOnlyReadIt) {
  UseHost(HostWithModule("{serial: SHARED}\n        npiv: [{}]"));
  const DeviceHandle* const own = HandleAt(0);
  const DeviceHandle* const other = &EntryAt(0, 0, 1)->handle;
  EXPECT_EQ(MemoryOf(other), MemoryOf(own));
  EXPECT_EQ(TORPI_SaveSFPDataToFile(other, Path("saved").c_str()), 100u);
  const std::string firmware = Firmware("vendor: WTD\nversion: 2.8\n");
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(other, firmware.c_str(), 2), 113u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(own, firmware.c_str(), 2), 0u);
  EXPECT_EQ(Bytes(MemoryOf(other), 149, 2), (Octets{2, 8}));
}

TEST_F(SfpCalls, ReadModesShowWhatIsKnownOrRefreshed) {
  const Memory before = Composed("{measured: {temperature: 30}, after-refresh: {temperature: 40, bias: 8}}");
  EXPECT_EQ(Bytes(before, 352, 2), (Octets{30, 0}));
  const Memory straight = MemoryOf(HandleAt(0), kStraight);
  EXPECT_EQ(Bytes(straight, 352, 2), (Octets{40, 0}));
  EXPECT_EQ(Bytes(straight, 354, 2), Bytes(before, 354, 2)) << "what a refresh does not name stays";
  EXPECT_EQ(MemoryOf(HandleAt(0), kAsKnown), before) << "a straight read leaves what the port knows";
  EXPECT_EQ(MemoryOf(HandleAt(0), kRefreshed), straight);
  EXPECT_EQ(MemoryOf(HandleAt(0), kAsKnown), straight);
}

TEST_F(SfpCalls, RefreshLastsWithAStateFile) {
  UseState();
  const Memory before = Composed("{after-refresh: {temperature: 40}}");
  NextRun();
  EXPECT_EQ(MemoryOf(HandleAt(0)), before);
  const Memory refreshed = MemoryOf(HandleAt(0), kRefreshed);
  NextRun();
  EXPECT_EQ(MemoryOf(HandleAt(0)), refreshed);
  EXPECT_NE(refreshed, before);
}

TEST_F(SfpCalls, BadArgumentsAreRefused) {
  Composed("");
  Memory memory{};
  EXPECT_EQ(TORPI_GetSFPDataEx(HandleAt(0), nullptr, 0, 0), 903u);
  EXPECT_EQ(TORPI_GetSFPDataEx(HandleAt(0), memory.data(), 2, 0), 903u);
  EXPECT_EQ(TORPI_GetSFPDataEx(HandleAt(0), memory.data(), 4, 0), 903u);
  EXPECT_EQ(memory, Memory{});
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), nullptr, 2), 903u);
  EXPECT_EQ(TORPI_SfpModuleFirmwareUpdate(HandleAt(0), "file", 1), 903u);
}

TEST_F(SfpCalls, CallsAreTraced) {
  Composed("{part: \"X\\\"1\"}");
  TORPI_SaveSFPDataToFile(HandleAt(0), "none/x");
  TORPI_SfpModuleFirmwareUpdate(HandleAt(0), "none/y", 2);
  const std::string trace = Read("trace");
  EXPECT_NE(trace.find("TORPI_GetSFPDataEx(port=FC_21:00:00:0e:1e:11:22:33, 0, 0) -> 0 part=\"X\\\"1\"\n"),
            std::string::npos)
      << trace;
  EXPECT_NE(trace.find("TORPI_SaveSFPDataToFile(port=FC_21:00:00:0e:1e:11:22:33, \"none/x\") -> 3\n"),
            std::string::npos)
      << trace;
  EXPECT_NE(
      trace.find("TORPI_SfpModuleFirmwareUpdate(port=FC_21:00:00:0e:1e:11:22:33, \"none/y\", 2) -> 101\n"),
      std::string::npos)
      << trace;
}

}  // namespace
