#include "runtime/out_of_memory.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

void Say(void* text) {
  [[maybe_unused]] const ssize_t written =
      write(STDERR_FILENO, text, std::strlen(static_cast<const char*>(text)));
}

char one[] = "one ";
char two[] = "two ";
char three[] = "three ";

TEST(OutOfMemoryDeathTest, EndsWithOneMessageAndStatus0) {
  EXPECT_EXIT(
      {
        std::atexit([] { std::fputs("orderly exit", stderr); });
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), "^zfcesxcli: out of memory\n$");
}

TEST(OutOfMemoryDeathTest, RunsThePlannedStepsTheLatestFirst) {
  EXPECT_EXIT(
      {
        const EndStep first(&Say, one);
        const EndStep second(&Say, two);
        const EndStep third(&Say, three);
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), "^three two one zfcesxcli: out of memory\n$");
}

TEST(OutOfMemoryDeathTest, RunsNoStepThatWasDroppedOrHasEnded) {
  EXPECT_EXIT(
      {
        EndStep dropped(&Say, one);
        auto ended = std::make_unique<EndStep>(&Say, two);
        const EndStep planned(&Say, three);
        dropped.Drop();
        dropped.Drop();
        ended.reset();
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), "^three zfcesxcli: out of memory\n$");
}

TEST(OutOfMemoryDeathTest, RunsAStepThatIsPlannedAnewOnceAndAsTheLatest) {
  EXPECT_EXIT(
      {
        EndStep again(&Say, one);
        const EndStep other(&Say, two);
        again.Plan(&Say, three);
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), "^three two zfcesxcli: out of memory\n$");
}

TEST(OutOfMemoryDeathTest, DoesNotRunAStepAgainThatTakesMemoryItself) {
  EXPECT_EXIT(
      {
        const EndStep first(&Say, one);
        const EndStep greedy(
            [](void* text) {
              Say(text);
              EndWithoutMemory();
            },
            two);
        EndWithoutMemory();
      },
      testing::ExitedWithCode(0), "^two one zfcesxcli: out of memory\n$");
}

}  // namespace
