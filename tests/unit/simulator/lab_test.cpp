#include "lab.h"

#include <unistd.h>

#include <cstdlib>

#include "unit/simulator/lab_fixture.h"

namespace {

using Notice = LabTest;

// In a process of its own, as a process says it once.
TEST_F(Notice, OutlastsTheSimulation) {
  const auto lists = [] {
    unsetenv("TORPI_LAB_QUIET");
    lab::Lab::Reset();
    for (int run = 0; run < 3; ++run) {
      TORPI_Initialize(0, 0);
      TORPI_GetAdapterList();
      TORPI_GetAdapterList();
      TORPI_Uninitialize();
    }
    _exit(7);
  };
  EXPECT_EXIT(lists(), testing::ExitedWithCode(7), "^zfcesxcli: simulated host \\(built-in\\)\n$");
}

TEST_F(Notice, ComesWithTheListAlone) {
  const auto asks = [] {
    unsetenv("TORPI_LAB_QUIET");
    lab::Lab::Reset();
    std::uint8_t required = 0;
    TORPI_IsRebootRequired(&required);
    _exit(7);
  };
  EXPECT_EXIT(asks(), testing::ExitedWithCode(7), "^$");
}

TEST_F(Notice, TraceOnStandardErrorIsAmongOtherLines) {
  const auto traces = [] {
    setenv("TORPI_LAB_TRACE", "/dev/stderr", 1);
    lab::Lab::Reset();
    TORPI_Initialize(0, 0);
    _exit(7);
  };
  EXPECT_EXIT(traces(), testing::ExitedWithCode(7), "^TORPI_Initialize\\(0, 0\\) -> 0\n$");
}

}  // namespace
