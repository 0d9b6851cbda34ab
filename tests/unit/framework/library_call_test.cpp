#include "framework/library_call.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"
#include "support/unit_files.h"

namespace {

constexpr char kLibraryOutput[] = "/var/tmp/torpi-output.log";

TEST(StatusOfCall, IsSuccessForZero) {
  TestRun test;
  EXPECT_EQ(StatusOfCall(test.run, "Get something", 0, kReadFailed), 0u);
}

TEST(StatusOfCall, IsMaintenanceModeFor150) {
  TestRun test;
  EXPECT_EQ(StatusOfCall(test.run, "Get something", 150, kReadFailed), 60u);
}

TEST(StatusOfCall, IsTheStatusOfTheStepForAnyOtherAnswer) {
  TestRun test;
  for (const LibraryStatus result : {1u, 60u, 149u, 151u, 0x100u, 0x10096u, 0xFFFFFFFFu}) {
    EXPECT_EQ(StatusOfCall(test.run, "Get something", result, kReadFailed), 13u) << result;
    EXPECT_EQ(StatusOfCall(test.run, "Set something", result, kUpdateFailed), 20u) << result;
  }
}

class LibraryCall : public testing::Test {
 protected:
  ~LibraryCall() override { stdout = standard_output_; }

  // Makes a call that answers `result`. Returns the status; how often the call was made is in `calls_`.
  StatusCode Call(LibraryStatus result) {
    StatusCode status = kNoCallback;
    printed_ = PrintedBy([&] {
      status = CallLibrary(test_.run, "Get something", kReadFailed, [&] {
        ++calls_;
        std::printf("library text\n");
        return result;
      });
      std::printf("after\n");
    });
    return status;
  }

  std::FILE* const standard_output_ = stdout;
  NoLibraryOutputFile none_;
  TestRun test_;
  int calls_ = 0;
  std::string printed_;
};

TEST_F(LibraryCall, GivesTheStatusOfItsResult) {
  EXPECT_EQ(Call(0), 0u);
  EXPECT_EQ(Call(150), 60u);
  EXPECT_EQ(Call(151), 13u);
  EXPECT_EQ(calls_, 3);
}

TEST_F(LibraryCall, KeepsTheLibrarysChatterOutOfTheOutput) {
  Call(1);
  EXPECT_EQ(printed_, "after\n");
  EXPECT_EQ(ContentOf(kLibraryOutput), "library text\n");
  EXPECT_EQ(stdout, standard_output_);
}

TEST_F(LibraryCall, IsNotMadeWhenTheBracketCannotBeOpened) {
  std::filesystem::create_directory(kLibraryOutput);
  EXPECT_EQ(Call(0), 19u);
  EXPECT_EQ(calls_, 0);
  EXPECT_EQ(printed_, "after\n");
}

TEST_F(LibraryCall, OfOneStatusHasItInMaintenanceModeToo) {
  const auto call = [this](LibraryStatus result) {
    return CallLibraryWithOneStatus(test_.run, "Get something", kReadFailed, [=] { return result; });
  };
  EXPECT_EQ(call(0), 0u);
  EXPECT_EQ(call(1), 13u);
  EXPECT_EQ(call(150), 13u);
  std::filesystem::remove(kLibraryOutput);
  std::filesystem::create_directory(kLibraryOutput);
  EXPECT_EQ(call(0), 19u);
}

TEST_F(LibraryCall, InABracketSaysWhetherItWasMade) {
  bool made = false;
  const auto call = [&] {
    ++calls_;
    std::printf("library text\n");
  };
  EXPECT_EQ(PrintedBy([&] { made = CallInBracket(test_.run, call); }), "");
  EXPECT_TRUE(made);
  EXPECT_EQ(calls_, 1);
  EXPECT_EQ(ContentOf(kLibraryOutput), "library text\n");
  EXPECT_EQ(stdout, standard_output_);

  std::filesystem::remove(kLibraryOutput);
  std::filesystem::create_directory(kLibraryOutput);
  EXPECT_EQ(PrintedBy([&] { made = CallInBracket(test_.run, call); }), "");
  EXPECT_FALSE(made);
  EXPECT_EQ(calls_, 1);
}

}  // namespace
