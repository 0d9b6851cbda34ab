// The reports when there is no memory for their text.
#include "config/physical_port_bbcr_cmds_processor.h"
#include "config/physical_port_boot_config_cmds_processor.h"
#include "config/physical_port_boot_config_ext_cmds_processor.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_refused_memory.h"
#include "unit/config/staged_fixture.h"

namespace {

class ReportMemoryTest : public StagedFixture {
 protected:
  explicit ReportMemoryTest(const char* family = "BBCR") : StagedFixture(family) {}

  // What the node's command prints in text form when the report's buffer of `size` bytes cannot be had.
  static std::string Printed(const NodeClass& node_class, const char* command, std::size_t size,
                             const std::vector<std::string>& options = {}) {
    CommandNode node(nullptr, {.name = "node", .switch_word = "-s", .description = "", .make = nullptr},
                     node_class);
    CmdProcessor* leaf = nullptr;
    for (CmdProcessor* child : node.GetChildren()) {
      if (child->GetName() == std::string(command)) leaf = child;
    }
    Words words = With(options);
    StatusCode status = kSuccess;
    std::string text = PrintedBy([&] {
      const RefusedMemory refused(size);
      status = leaf->Execute(words);
    });
    EXPECT_EQ(status, kMemoryError);
    return text;
  }
};

constexpr const char* kRuler = "****************************************************\n";

std::string Failure(const char* structure, const char* field) {
  return std::string(kRuler) + structure + ":\nMessage: Failed, Memory Error\n" + field + ": " + kRuler;
}

TEST_F(ReportMemoryTest, CreditRecovery) {
  EXPECT_EQ(Printed(PhysicalPortBBCRCmdsProcessor(), "getcli", 1024), Failure("BBCRInfo", "BBCR"));
  EXPECT_EQ(Printed(PhysicalPortBBCRCmdsProcessor(), "setFilecli", 1024), Failure("BBCRInfo", "BBCR"));
}

TEST_F(ReportMemoryTest, ACommitHasHappenedAllTheSame) {
  Stage("BBCR_Count=9\n");
  EXPECT_EQ(Printed(PhysicalPortBBCRCmdsProcessor(), "setcli", 1024), Failure("BBCRInfo", "BBCR"));
  EXPECT_EQ(Config().bbcr_configured, 9);
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(ReportMemoryTest, BootConfiguration) {
  EXPECT_EQ(Printed(PhysicalPortBootConfigCmdsProcessor(), "getcli", 2048),
            Failure("BootConfigInfo", "BootConfig"));
  EXPECT_EQ(Printed(PhysicalPortBootConfigExtCmdsProcessor(), "getcli", 2048),
            Failure("BootConfigInfo", "BootConfig"));
  EXPECT_EQ(Printed(PhysicalPortBootConfigExtCmdsProcessor(), "getcli", 8192, {"-b", "NVME"}),
            Failure("BootConfigInfo", "BootConfig"));
}

}  // namespace
