#include <string>

#include "unit/simulator/lab_fixture.h"

namespace {

using State = LabTest;

std::uint8_t PersonalityOf(const DeviceHandle* handle) {
  std::uint8_t personality = 0xEE;
  EXPECT_EQ(TORPI_GetPersonalityType(handle, &personality), 0u);
  return personality;
}

std::uint8_t RebootRequired() {
  std::uint8_t required = 0xEE;
  EXPECT_EQ(TORPI_IsRebootRequired(&required), 0u);
  return required;
}

TEST_F(State, PersonalityIsReadBackAndAsksForAReboot) {
  EXPECT_EQ(PersonalityOf(HandleAt(0)), 0);
  EXPECT_EQ(RebootRequired(), 0);
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 0u);
  EXPECT_EQ(PersonalityOf(HandleAt(0)), 1);
  EXPECT_EQ(RebootRequired(), 1);
}

TEST_F(State, WithoutAStateFileItEndsWithTheRun) {
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 0u);
  NextRun();
  EXPECT_EQ(PersonalityOf(HandleAt(0)), 0);
  EXPECT_EQ(RebootRequired(), 0);
}

TEST_F(State, WithAStateFileItLastsFromRunToRun) {
  UseState();
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 0u);
  NextRun();
  EXPECT_EQ(PersonalityOf(HandleAt(0)), 1);
  EXPECT_EQ(RebootRequired(), 1);
}

TEST_F(State, ReadingWritesNoFile) {
  UseState();
  PersonalityOf(HandleAt(0));
  EXPECT_FALSE(std::filesystem::exists(Path("state.yaml")));
}

TEST_F(State, AdaptersOfAnotherHostAreKept) {
  UseState();
  Write("state.yaml", "reboot-required: false\nadapters:\n  ZX999/OTHER:\n    personality: 1\n");
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 0u);
  const std::string state = Read("state.yaml");
  EXPECT_NE(state.find("ZX999/OTHER:\n    personality: 1\n"), std::string::npos) << state;
  EXPECT_NE(state.find("ZX100/AB12345:\n    personality: 1\n"), std::string::npos) << state;
  EXPECT_NE(state.find("reboot-required: true\n"), std::string::npos) << state;
}

TEST_F(State, EmptiedTextsAndMissingComponentsComeBackAsTheyWere) {
  UseState();
  UseHost(
      "adapters:\n"
      "  - family: elm\n"
      "    serial: \"12\"\n"
      "    versions: {bios: \"\", efi: not a version}\n"
      "    flash: {fc-board-config: 255.255.255}\n"
      "    memo-block: none\n"
      "    ports: [{}]\n");
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 0u);
  NextRun();
  EXPECT_EQ(AdapterAt(0)->flash_bios_version.View(), "");
  EXPECT_EQ(AdapterAt(0)->flash_efi_version.View(), "not a version");
  FlashComponentVersions versions{};
  EXPECT_EQ(TORPI_GetFlashComponentVersion(HandleAt(0), &versions), 0u);
  EXPECT_TRUE(versions.fc_board_config.AllOnes());
  FlashMemoBlock memo{};
  EXPECT_EQ(TORPI_GetAdapterFlashMemoBlock(HandleAt(0), &memo), 0u);
  EXPECT_EQ(memo.signature[0], '\0');
}

TEST_F(State, AdaptersOfOneNameHaveStatesOfTheirOwn) {
  UseState();
  UseHost(
      "adapters:\n"
      "  - {family: elm, model: M, serial: S, ports: [{}]}\n"
      "  - {family: elm, model: M, serial: S, ports: [{}]}\n");
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(1), 1), 0u);
  NextRun();
  EXPECT_EQ(PersonalityOf(HandleAt(0)), 0);
  EXPECT_EQ(PersonalityOf(HandleAt(1)), 1);
}

TEST_F(State, MistakeInTheFileIsReportedAndGivesAnEmptyList) {
  UseState();
  Write("state.yaml", "adapters:\n  ZX100/AB12345:\n    personality: both\n");
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("state.yaml") +
                ":3:18: personality: expected one of fc, cna, or a number up to 255, got 'both'\n");
}

TEST_F(State, UnreadableFileIsReportedAndGivesAnEmptyList) {
  setenv("TORPI_LAB_STATE", Path("").c_str(), 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_NE(testing::internal::GetCapturedStderr().find(": can't be read: "), std::string::npos);
}

TEST_F(State, FileThatCannotBeWrittenIsReported) {
  setenv("TORPI_LAB_STATE", Path("no/such/folder").c_str(), 1);
  const DeviceHandle* handle = HandleAt(0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_ChangePersonalityType(handle, 1), 904u);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            Path("no/such/folder") + ": can't be written: " + Path("no/such/folder.lock") +
                ": can't be made or opened: No such file or directory\n");
  EXPECT_EQ(PersonalityOf(handle), 1);
}

TEST_F(State, WritingLeavesTheLockFileAloneAndKeepsTheMode) {
  UseState();
  Write("state.yaml", "");
  std::filesystem::permissions(Path("state.yaml"), std::filesystem::perms{0600});
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 0u);
  EXPECT_EQ(std::filesystem::status(Path("state.yaml")).permissions(), std::filesystem::perms{0600});
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(Path(""))) ++files;
  EXPECT_EQ(files, 3u);  // the state, its lock and the trace
}

TEST_F(State, HostFileMayBeginWithAPendingReboot) {
  UseHost("reboot-required: true\n");
  EXPECT_EQ(RebootRequired(), 1);
}

TEST_F(State, PersonalityIsRefusedWhereItDoesNotBelong) {
  UseHost(
      "adapters:\n"
      "  - {family: elm, personality-change-allowed: false, personality: 9, ports: [{}]}\n"
      "  - {family: hazel, ports: [{}]}\n"
      "  - {family: fern, ports: [{}]}\n");
  EXPECT_EQ(TORPI_CheckOrindaPersonalityChangeOption(HandleAt(0)), 0u);
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(0), 1), 121u);
  EXPECT_EQ(PersonalityOf(HandleAt(0)), 9);
  std::uint8_t personality = 0xEE;
  EXPECT_EQ(TORPI_GetPersonalityType(HandleAt(1), &personality), 121u);
  EXPECT_EQ(personality, 0xEE);
  EXPECT_EQ(TORPI_CheckOrindaPersonalityChangeOption(HandleAt(2)), 1u);
  EXPECT_EQ(PersonalityOf(HandleAt(2)), 1);
  EXPECT_EQ(TORPI_ChangePersonalityType(HandleAt(2), 2), 903u);
  EXPECT_EQ(RebootRequired(), 0);
}

}  // namespace
