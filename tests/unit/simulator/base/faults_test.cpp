#include <string>

#include "unit/simulator/lab_fixture.h"
#include "unit/simulator/source_path.h"

namespace {

using Faults = LabTest;

constexpr char kOneElm[] = "adapters:\n  - {family: elm, ports: [{}]}\n";

void SetFaults(const char* faults) {
  setenv("TORPI_LAB_FAULTS", faults, 1);
}

std::uint32_t GetPersonality(const DeviceHandle* handle) {
  std::uint8_t personality = 0;
  return TORPI_GetPersonalityType(handle, &personality);
}

TEST_F(Faults, LastingResultHoldsForEveryCall) {
  SetFaults("TORPI_GetPersonalityType=150");
  EXPECT_EQ(GetPersonality(HandleAt(0)), 150u);
  EXPECT_EQ(GetPersonality(HandleAt(0)), 150u);
}

TEST_F(Faults, ResultsMeantOnceComeFirstAndInOrder) {
  SetFaults("TORPI_GetPersonalityType=9, TORPI_GetPersonalityType=1:once,TORPI_GetPersonalityType=0x2:once");
  const DeviceHandle* handle = HandleAt(0);
  EXPECT_EQ(GetPersonality(handle), 1u);
  EXPECT_EQ(GetPersonality(handle), 2u);
  EXPECT_EQ(GetPersonality(handle), 9u);
  EXPECT_EQ(GetPersonality(handle), 9u);
}

TEST_F(Faults, FailureHasNoEffect) {
  SetFaults("TORPI_ChangePersonalityType=150:once");
  const DeviceHandle* handle = HandleAt(0);
  std::uint8_t personality = 0xEE;
  EXPECT_EQ(TORPI_ChangePersonalityType(handle, 1), 150u);
  EXPECT_EQ(TORPI_GetPersonalityType(handle, &personality), 0u);
  EXPECT_EQ(personality, 0);
  EXPECT_EQ(TORPI_ChangePersonalityType(handle, 1), 0u);
}

TEST_F(Faults, SuccessPerformsTheCallAndReplacesItsAnswer) {
  SetFaults("TORPI_doOptionROMUpdate=205");
  const DeviceHandle* handle = HandleAt(0);
  EXPECT_EQ(TORPI_doOptionROMUpdate(handle, SourcePath("examples/flash/elm-mbi.img").c_str(), 0), 205u);
  EXPECT_EQ(AdapterAt(0)->multiboot_version.View(), "2.02.10");
}

TEST_F(Faults, OtherCallsFailWith205) {
  SetFaults("TORPI_ChangePersonalityType=205");
  const DeviceHandle* handle = HandleAt(0);
  EXPECT_EQ(TORPI_ChangePersonalityType(handle, 1), 205u);
  std::uint8_t personality = 0xEE;
  EXPECT_EQ(TORPI_GetPersonalityType(handle, &personality), 0u);
  EXPECT_EQ(personality, 0);
}

TEST_F(Faults, NumberIsTheAnswerOfACallThatAnswersAValue) {
  SetFaults("TORPI_CheckOrindaPersonalityChangeOption=0:once,TORPI_CheckOrindaPersonalityChangeOption=257");
  const DeviceHandle* handle = HandleAt(0);
  EXPECT_EQ(TORPI_CheckOrindaPersonalityChangeOption(handle), 0u);
  EXPECT_EQ(TORPI_CheckOrindaPersonalityChangeOption(handle), 257u);
}

TEST_F(Faults, NullListOnce) {
  SetFaults("TORPI_GetAdapterList=null:once");
  EXPECT_EQ(TORPI_GetAdapterList(), nullptr);
  EXPECT_NE(TORPI_GetAdapterList(), nullptr);
}

TEST_F(Faults, SessionCallsTakeTheEnvironmentsFaults) {
  SetFaults("TORPI_Initialize=7,TORPI_SetToolID=8:once");
  EXPECT_EQ(TORPI_Initialize(0, 0), 7u);
  EXPECT_EQ(TORPI_SetToolID(11), 8u);
  EXPECT_EQ(TORPI_SetToolID(11), 0u);
}

TEST_F(Faults, UsedUpFaultDoesNotComeBackWhenTheHostIsLoaded) {
  SetFaults("TORPI_SetToolID=8:once");
  EXPECT_EQ(TORPI_SetToolID(11), 8u);
  TORPI_GetAdapterList();
  EXPECT_EQ(TORPI_SetToolID(11), 0u);
}

TEST_F(Faults, FileGivesFaultsToo) {
  UseHost(std::string(kOneElm) +
          "faults:\n"
          "  - {call: TORPI_GetPersonalityType, result: 150}\n"
          "  - {call: TORPI_GetPersonalityType, result: 13, once: true}\n"
          "  - {call: TORPI_GetAdapterList, result: null, once: true}\n");
  EXPECT_EQ(TORPI_GetAdapterList(), nullptr);
  EXPECT_EQ(GetPersonality(HandleAt(0)), 13u);
  EXPECT_EQ(GetPersonality(HandleAt(0)), 150u);
}

TEST_F(Faults, EnvironmentReplacesTheFilesFaultsOfThatCallAlone) {
  UseHost(std::string(kOneElm) +
          "faults:\n"
          "  - {call: TORPI_GetPersonalityType, result: 13, once: true}\n"
          "  - {call: TORPI_GetFlashComponentVersion, result: 14}\n");
  SetFaults("TORPI_GetPersonalityType=150");
  EXPECT_EQ(GetPersonality(HandleAt(0)), 150u);
  FlashComponentVersions versions{};
  EXPECT_EQ(TORPI_GetFlashComponentVersion(HandleAt(0), &versions), 14u);
}

struct BadFaults {
  const char* faults;
  const char* message;
};

TEST_F(Faults, MistakesAreReported) {
  constexpr BadFaults kRows[] = {
      {"TORPI_Nothing=1", "expected the name of a library call, got 'TORPI_Nothing'"},
      {"TORPI_GetVpd", "expected <call>=<result>, got 'TORPI_GetVpd'"},
      {"TORPI_GetVpd=", "expected a number for TORPI_GetVpd, got ''"},
      {"TORPI_GetVpd=4294967296", "expected a number for TORPI_GetVpd, got '4294967296'"},
      {"TORPI_GetVpd=1:twice", "expected a number for TORPI_GetVpd, got '1:twice'"},
      {"TORPI_GetAdapterList=0", "expected null for TORPI_GetAdapterList, got '0'"},
      {"TORPI_GetVpd=1,TORPI_GetVpd=2", "expected one lasting result for TORPI_GetVpd, got a second one"},
  };
  for (const BadFaults& row : kRows) {
    NextRun();
    SetFaults(row.faults);
    testing::internal::CaptureStderr();
    EXPECT_EQ(TORPI_Initialize(0, 0), 0u);
    ASSERT_NE(TORPI_GetAdapterList(), nullptr);
    EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr) << row.faults;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string("TORPI_LAB_FAULTS: ") + row.message + "\n");
  }
}

TEST_F(Faults, OtherVariablesAreCheckedToo) {
  setenv("TORPI_LAB_TIME", "yesterday", 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "TORPI_LAB_TIME: expected a time like 2026-03-14 09:26:53, got 'yesterday'\n");
  unsetenv("TORPI_LAB_TIME");
  NextRun();
  setenv("TORPI_LAB_CHATTER", "loud", 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(TORPI_GetAdapterList()->first, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "TORPI_LAB_CHATTER: expected one of 0, 1, ports, got 'loud'\n");
}

}  // namespace
