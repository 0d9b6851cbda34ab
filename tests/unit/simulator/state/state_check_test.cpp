// A state file that is checked without its host.
#include "state/state_check.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using lab::CheckState;
using lab::IsState;
using lab::StateContent;

TEST(StateCheck, AStateIsAFileWhoseAdaptersAreAMap) {
  EXPECT_TRUE(IsState("reboot-required: false\nadapters:\n  ZX100/A: {}\n"));
  EXPECT_FALSE(IsState("adapters:\n  - family: elm\n"));
  EXPECT_FALSE(IsState("reboot-required: true\n"));
  EXPECT_FALSE(IsState(""));
  EXPECT_FALSE(IsState("adapters: {"));
}

TEST(StateCheck, GoodStateIsCounted) {
  StateContent content;
  EXPECT_EQ(CheckState("s.yaml",
                       "reboot-required: true\n"
                       "adapters:\n"
                       "  ZX100/A:\n"
                       "    personality: cna\n"
                       "    flash: {mpi-firmware: 1.2.3}\n"
                       "    ports:\n"
                       "      21:00:00:0e:1e:11:22:33:\n"
                       "        configuration: {beacon: on}\n"
                       "        congestion: {cleared: true, profile: {management: nvram}}\n"
                       "        reports: {counters-reset: true}\n"
                       "        sfp: {refreshed: true, firmware: 2.08}\n"
                       "        target-speeds: {50:06:0b:00:3b:20:11:c0: 16}\n"
                       "      21:00:00:0e:1e:11:22:34: {}\n"
                       "  ZX320/B: {}\n",
                       content),
            "");
  EXPECT_EQ(content.adapters, 2u);
  EXPECT_EQ(content.ports, 2u);
  EXPECT_TRUE(content.reboot_required);
}

TEST(StateCheck, AllMistakesAreReported) {
  StateContent content;
  EXPECT_EQ(CheckState("s.yaml",
                       "reboot-required: maybe\n"
                       "adapters:\n"
                       "  ZX100/A:\n"
                       "    personality: both\n"
                       "    ports:\n"
                       "      left: {}\n"
                       "      21:00:00:0e:1e:11:22:33:\n"
                       "        sfp: {firmware: 2}\n"
                       "        target-speeds: {50:06: 16}\n"
                       "  ZX320/B: 3\n"
                       "  ZX320/C: {ports: []}\n"
                       "rebot: 1\n",
                       content),
            "s.yaml:1:18: reboot-required: expected true or false, got 'maybe'\n"
            "s.yaml:4:18: personality: expected one of fc, cna, or a number up to 255, got 'both'\n"
            "s.yaml:6:7: left: expected the name of a port\n"
            "s.yaml:8:25: firmware: expected a version like 2.07, got '2'\n"
            "s.yaml:9:25: 50:06: expected the name of a target\n"
            "s.yaml:10:12: ZX320/B: expected a map, got '3'\n"
            "s.yaml:11:20: ports: expected a map, got a list\n"
            "s.yaml:12:1: rebot: expected one of the keys reboot-required, adapters");
}

}  // namespace
