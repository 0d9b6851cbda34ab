// The reports when there is no memory for their text.
#include <gtest/gtest.h>

#include <string>

#include "congestion/fc_target_scm_chk_cmds_processor.h"
#include "congestion/fc_target_scm_stats_cmds_processor.h"
#include "congestion/physical_port_scm_chk_cmds_processor.h"
#include "congestion/physical_port_scm_profile_cmds_processor.h"
#include "congestion/physical_port_scm_stats_cmds_processor.h"
#include "support/unit_captured_stdout.h"
#include "support/unit_fake_library.h"
#include "support/unit_host_records.h"
#include "support/unit_refused_memory.h"
#include "unit/congestion/fake_congestion_calls.h"

namespace {

constexpr std::uint32_t kFirst = 1u << 23;
constexpr std::uint32_t kSecond = 1u << 26;
constexpr const char* kPort = "FC_21:00:00:00:00:00:00:01";
constexpr const char* kTarget = "FC_21:00:00:00:00:00:00:01_Target_50:00:00:00:00:00:00:02";

class ReportMemory : public testing::Test {
 protected:
  ReportMemory() {
    ResetLibrary();
    Congestion() = {};
    Congestion().list = &element_;
    Library().adapters = records_.List();
    fc_.pci.vendor_id = 0x1C9E;
    fc_.pci.device_id = 0x3522;
    fc_.port_name[0] = 0x21;
    fc_.port_name[7] = 0x01;
    fc_.interface_type = PortInterfaceType::kPhysical;
    records_.AddTarget(fc_, 0x02);
  }

  // Runs `getcli` of a node of the class while buffers of `size` bytes are refused; returns what it prints.
  std::string Get(const NodeClass& node_class, const char* identifier, std::uint32_t capabilities,
                  std::size_t size, StatusCode code) {
    fc_.capabilities = capabilities;
    constexpr SubNode kNode = {"node", "", "", nullptr};
    CommandNode node(nullptr, kNode, node_class);
    Words words = {"getcli", identifier};
    CmdProcessor* const leaf = node.FindChild(words);
    CapturedStdout captured;
    const RefusedMemory refused(size);
    EXPECT_EQ(leaf->Execute(words), code);
    return captured.Text();
  }

  HostRecords records_;
  FCProtocolEntry& fc_ = records_.AddFcPort(records_.AddAdapter("M", "S"), 0);
  SCMRStatisticsEntry element_ = {};
};

constexpr const char* kStars = "****************************************************\n";

std::string Document(const char* structure, const char* message, const char* field) {
  return std::string(kStars) + structure + ":\nMessage: " + message + "\n" + field + ": " + kStars;
}

TEST_F(ReportMemory, PortStatisticsHaveNoWordsForIt) {
  const std::string document = Document("PortVCLMStatistics", "Failed, Unknown", "Port VCLM Stats");
  EXPECT_EQ(Get(PhysicalPortSCMStatsCmdsProcessor(), kPort, kFirst, 8192, kMemoryError), document);
  EXPECT_EQ(Get(PhysicalPortSCMStatsCmdsProcessor(), kPort, kSecond, 8192, kMemoryError), document);
}

TEST_F(ReportMemory, PortStatisticsFreeTheListAllTheSame) {
  Get(PhysicalPortSCMStatsCmdsProcessor(), kPort, kSecond, 8192, kMemoryError);
  EXPECT_EQ(Congestion().freed, std::vector<const SCMRStatisticsEntry*>{&element_});
}

TEST_F(ReportMemory, PortStatusAndProfileSayIt) {
  EXPECT_EQ(Get(PhysicalPortSCMChkCmdsProcessor(), kPort, kSecond, 4096, kMemoryError),
            Document("PortVCLMInformation", "Failed, Memory Error", "Port VCLM Status"));
  EXPECT_EQ(Get(PhysicalPortSCMProfileCmdsProcessor(), kPort, kSecond, 1024, kMemoryError),
            Document("PortVCLMProfile", "Failed, Memory Error", "Congestion Profile"));
}

TEST_F(ReportMemory, TargetReportsSayIt) {
  const std::string document = Document("TargetVCLMStatistics", "Failed, Memory Error", "Target VCLM Stats");
  EXPECT_EQ(Get(FCTargetSCMStatsCmdsProcessor(), kTarget, kFirst, 8192, kMemoryError), document);
  EXPECT_EQ(Get(FCTargetSCMStatsCmdsProcessor(), kTarget, kSecond, 8192, kMemoryError), document);
  EXPECT_EQ(Congestion().freed, std::vector<const SCMRStatisticsEntry*>{&element_});
  EXPECT_EQ(Get(FCTargetSCMChkCmdsProcessor(), kTarget, kSecond, 4096, kMemoryError),
            Document("TargetVCLMInformation", "Failed, Memory Error", "Target VCLM Status"));
}

// Both failures at once: a document for each, and the code of the second one.
TEST_F(ReportMemory, FreeingThatFailsTooAddsASecondDocument) {
  Congestion().free_result = 1;
  EXPECT_EQ(Get(PhysicalPortSCMStatsCmdsProcessor(), kPort, kSecond, 8192, kStatisticsClearError),
            Document("PortVCLMStatistics", "Failed, Unknown", "Port VCLM Stats") +
                Document("PortVCLMStatistics", "Failed, Statistics list clear error", "Port VCLM Stats"));
  EXPECT_EQ(Congestion().freed.size(), 1u);
}

TEST_F(ReportMemory, BuffersOfAnotherSizeAreNotAskedFor) {
  for (const std::size_t size : {8191u, 8193u, 4096u, 1024u}) {
    EXPECT_NE(Get(PhysicalPortSCMStatsCmdsProcessor(), kPort, kSecond, size, kSuccess), "");
  }
}

}  // namespace
