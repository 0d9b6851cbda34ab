#include "framework/status.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

StatusCode Code(std::uint32_t number) {
  return static_cast<StatusCode>(number);
}

// The codes whose wording is the same in every class.
const std::map<std::uint32_t, std::string>& CommonTexts() {
  static const std::map<std::uint32_t, std::string> texts = {
      {0, "Success"},
      {6, "Failed, Invalid parameter"},
      {11, "Failed, Flash Update Error"},
      {14, "Failed, Host not found"},
      {15, "Failed, Feature not supported by switch"},
      {16, "Failed, Flash Image Components Validation Error"},
      {19, "Failed, File not found"},
      {21, "Failed, Adapter not found"},
      {22, "Failed, File Open Error"},
      {23, "Failed, File not Valid"},
      {24, "Failed, Personality change not allowed for user"},
      {25, "Failed, File read Error"},
      {26, "Failed, Invalid SSID"},
      {27, "Failed, Corrupted File"},
      {28, "Failed, Target not found"},
      {29, "Failed, Invalid File Size"},
      {30, "Failed, Checksum Error"},
      {31, "Failed, Invalid Signature"},
      {32, "Failed, Flash Update disabled as FW lockdown mode enabled"},
      {34, "Failed, Diagnostic test failed"},
      {35, "Failed, Feature not supported for this adapter"},
      {36, "Failed, Feature not supported for NVMe target"},
      {37, "Failed, Restore and Activation command-line options are mutually exclusive"},
      {38, "Failed, Statistics read error"},
      {40, "Failed, Feature not supported in Boot-From-SAN mode"},
      {41, "Failed, VPD failed"},
      {42, "Failed, Memory Error"},
      {43, "Failed, Feature requires link up"},
      {48, "Failed, Port not in diagnostics mode"},
      {51, "Failed, Feature not supported for virtual port"},
      {52, "Failed, Feature disabled on the port"},
      {53, "Failed, Adapter does not have ROM BIOS"},
      {54, "Failed, Adapter does not have ROM UEFI"},
      {55, "Failed, Tgt Num, Tgt WWPN, Disk Num required for FCP targets"},
      {56, "Failed, Tgt Num, Tgt WWPN, Disk Num, Tgt Enable required for NVMe targets"},
      {57, "Failed, SFP FW file not supported for this SFP"},
      {58, "Failed, SFP FW update not supported for this SFP vendor"},
      {59, "Failed, SFP FW update failed"},
      {60, "Failed, Command not supported when adapter port in maintenance mode"},
      {61, "Failed, Image set validation error"},
      {62, "Failed, Image set config error"},
      {68, "Failed, Host NQN is already registered"},
      {69, "Failed, Host NQN is not registered"},
      {113, "Failed, Feature not supported for this adapter"},
  };
  return texts;
}

TEST(CommonMessage, WordsEachCodeOfTheCommonTable) {
  for (const auto& [code, text] : CommonTexts()) {
    const char* const message = CommonMessage(Code(code));
    ASSERT_NE(message, nullptr) << "code " << code;
    EXPECT_EQ(message, text) << "code " << code;
  }
}

// Framework codes, codes that each class words itself, and codes that mean nothing.
TEST(CommonMessage, WordsNoOtherCode) {
  for (std::uint32_t code = 0; code < 1000; ++code) {
    if (CommonTexts().contains(code)) continue;
    EXPECT_EQ(CommonMessage(Code(code)), nullptr) << "code " << code;
  }
  EXPECT_EQ(CommonMessage(Code(0xFFFFFFFF)), nullptr);
}

TEST(StatusCode, HasItsNumbers) {
  EXPECT_EQ(kSuccess, 0u);
  EXPECT_EQ(kNoCallback, 1u);
  EXPECT_EQ(kNoSuchUsage, 2u);
  EXPECT_EQ(kInitFailed, 3u);
  EXPECT_EQ(kWrongWordCount, 4u);
  EXPECT_EQ(kHelpWord, 5u);
  EXPECT_EQ(kInvalidParameter, 6u);
  EXPECT_EQ(kUnknownCommand, 7u);
  EXPECT_EQ(kDataNotAvailable, 8u);
  EXPECT_EQ(kLeaveShell, 9u);
  EXPECT_EQ(kQuit, 10u);
  EXPECT_EQ(kBadMode, 12u);
  EXPECT_EQ(kReadFailed, 13u);
  EXPECT_EQ(kHostNotFound, 14u);
  EXPECT_EQ(kInvalidData, 17u);
  EXPECT_EQ(kInvalidSerialNumber, 18u);
  EXPECT_EQ(kFileNotFound, 19u);
  EXPECT_EQ(kUpdateFailed, 20u);
  EXPECT_EQ(kAdapterNotFound, 21u);
  EXPECT_EQ(kDiagnosticFailed, 34u);
  EXPECT_EQ(kFeatureNotSupported, 35u);
  EXPECT_EQ(kStatisticsReadError, 38u);
  EXPECT_EQ(kStatisticsClearError, 39u);
  EXPECT_EQ(kVpdFailed, 41u);
  EXPECT_EQ(kMemoryError, 42u);
  EXPECT_EQ(kSpeedTooLow, 44u);
  EXPECT_EQ(kNotSupportedByDriver, 45u);
  EXPECT_EQ(kResponseNotAvailable, 46u);
  EXPECT_EQ(kReadOnlyParameter, 47u);
  EXPECT_EQ(kVirtualPort, 51u);
  EXPECT_EQ(kMaintenanceMode, 60u);
}

constexpr StatusMessage kTable[] = {
    kInvalidParameter,
    {kReadFailed, "Failed, Flash Info read failed"},
    {kInvalidData, "Failed, Invalid data"},
    kMaintenanceMode,
};

TEST(MessageFor, GivesTheRowOfTheTable) {
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(6)), "Failed, Invalid parameter");
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(13)), "Failed, Flash Info read failed");
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(17)), "Failed, Invalid data");
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(60)),
               "Failed, Command not supported when adapter port in maintenance mode");
}

TEST(MessageFor, GivesUnknownForACodeThatTheClassDoesNotList) {
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(5)), "Failed, Unknown");    // a help word
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(14)), "Failed, Unknown");   // listed by other classes
  EXPECT_STREQ(MessageFor(TableOf<kTable>(), Code(151)), "Failed, Unknown");  // listed by none
  EXPECT_STREQ(MessageFor({}, Code(6)), "Failed, Unknown");
}

TEST(MessageFor, PrefersTheClassesOwnWording) {
  static constexpr StatusMessage kOwn[] = {{kInvalidSerialNumber, "Failed, Invalid Serial Number"},
                                           {kFeatureNotSupported, "Failed, in words of its own"}};
  EXPECT_STREQ(MessageFor(TableOf<kOwn>(), Code(35)), "Failed, in words of its own");
}

TEST(FromLibrary, TurnsMaintenanceModeIntoStatus60) {
  EXPECT_EQ(FromLibrary(150, kReadFailed), 60u);
  EXPECT_EQ(FromLibrary(150, kUpdateFailed), 60u);
  EXPECT_EQ(FromLibrary(150, kDiagnosticFailed), 60u);
}

TEST(FromLibrary, GivesEveryOtherAnswerTheStatusOfTheStep) {
  for (const std::uint32_t answer : {1u, 60u, 149u, 151u, 0x10096u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(FromLibrary(answer, kReadFailed), 13u) << answer;
    EXPECT_EQ(FromLibrary(answer, kUpdateFailed), 20u) << answer;
  }
}

TEST(FromLibrary, LooksIntoTheCommandsTableFirst) {
  static constexpr LibraryAnswer kAnswers[] = {{101, kFileOpenError}, {113, kFeatureNotSupported}};
  EXPECT_EQ(FromLibrary(101, kAnswers, kReadFailed), 22u);
  EXPECT_EQ(FromLibrary(113, kAnswers, kReadFailed), 35u);
  EXPECT_EQ(FromLibrary(102, kAnswers, kReadFailed), 13u);
  EXPECT_EQ(FromLibrary(150, kAnswers, kReadFailed), 60u);
  EXPECT_EQ(FromLibrary(150, {}, kReadFailed), 60u);
}

TEST(FromLibrary, TableMayTakeMaintenanceModeForItself) {
  static constexpr LibraryAnswer kAnswers[] = {{150, kReadFailed}};
  EXPECT_EQ(FromLibrary(150, kAnswers, kUpdateFailed), 13u);
}

}  // namespace
