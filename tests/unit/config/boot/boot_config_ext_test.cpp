#include "config/boot/boot_config_ext.h"

#include <gtest/gtest.h>

#include "unit/config/boot/boot_fixture.h"

namespace {

TEST_F(BootTest, FcNvmeIsAnOptionOfTheNvmeMode) {
  EXPECT_EQ(CheckedExt({"-m", "true"}, kNvme), "Boot_Mode=4 NVMe_Enable=1");
  EXPECT_EQ(CheckedExt({"--fc-nvme", "False"}, kNvme), "Boot_Mode=4 NVMe_Enable=0");
  EXPECT_EQ(CheckedExt({"-m", "maybe"}, kNvme), "6");
  EXPECT_EQ(CheckedExt({"-m", "true"}, kUefi), "4");
  EXPECT_EQ(CheckedExt({"-m", "true"}), "4");
}

class BootExtFileTest : public BootTest {
 protected:
  BootExtFileTest() : BootTest("BootConfigExt") {}

  StatusCode Read(const std::string& content) {
    Stage(content);
    TestRun test(With({"-b", kNvme}));
    BootConfigExt settings(*fc_);
    EXPECT_EQ(settings.Open(test.run, StagedCommand::kGet), kSuccess);
    const StatusCode status = settings.ReadFile(test.run, StagedFile(path_, BootConfigExt::kNode.value_size));
    record_ = settings.NvmeRecord();
    mode_ = settings.Mode();
    return status;
  }

  NVMeBootRecord record_ = {};
  BootMode mode_ = BootMode::kBios;
};

TEST_F(BootExtFileTest, TheModeMustBeOneOfThree) {
  EXPECT_EQ(Read("Boot_Mode=1\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kBios);
  EXPECT_EQ(Read("Boot_Mode=2\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kUefi);
  EXPECT_EQ(Read("Boot_Mode=4\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kNvme);
  EXPECT_EQ(Read("A=1\n"), kSuccess);
  EXPECT_EQ(mode_, BootMode::kNvme);
  for (const char* const value : {"0", "3", "5", "8", "-1", "word", "257"}) {
    EXPECT_EQ(Read(std::string("Boot_Mode=") + value + "\n"), kInvalidParameter) << value;
  }
}

TEST_F(BootExtFileTest, EnableFlagsAreAtMostOne) {
  for (const char* const key : {"NVMe_Enable", "NVME_0_Enable", "NVME_7_Enable"}) {
    EXPECT_EQ(Read(std::string(key) + "=0\n"), kSuccess) << key;
    EXPECT_EQ(Read(std::string(key) + "=1\n"), kSuccess) << key;
    EXPECT_EQ(Read(std::string(key) + "=2\n"), kInvalidParameter) << key;
    EXPECT_EQ(Read(std::string(key) + "=-1\n"), kInvalidParameter) << key;
  }
}

TEST_F(BootExtFileTest, EntriesAreOverlaid) {
  Config().nvme.entries[5].namespace_id = 99;
  std::strcpy(Config().nvme.entries[5].nqn.bytes, "nqn.old-and-longer");
  EXPECT_EQ(Read("NVME_5_WWPN=50:06:01:60:3b:20:41:99\nNVME_5_WWNN=1:2\nNVME_5_Enable=1\nNVME_5_NQN=nqn.new "
                 "# other\n"
                 "NVME_5_ControllerID=65537\n"),
            kSuccess);
  const NVMeBootEntry& entry = record_.entries[5];
  EXPECT_EQ(entry.port_name[7], 0x99);
  EXPECT_EQ(entry.node_name[0], 0);
  EXPECT_EQ(entry.enable, 1);
  EXPECT_EQ(std::string(entry.nqn.bytes, 20), std::string("nqn.new") + std::string(13, '\0'));
  EXPECT_EQ(entry.controller_id, 1);
  EXPECT_EQ(entry.namespace_id, 99u);
}

TEST_F(BootExtFileTest, AnNqnIsCutAt255Characters) {
  EXPECT_EQ(Read("NVME_0_NQN=" + std::string(300, 'n') + "\n"), kSuccess);
  EXPECT_EQ(std::string(record_.entries[0].nqn.bytes, 256), std::string(255, 'n') + '\0');
}

TEST_F(BootExtFileTest, ANewFileHoldsAllKeys) {
  const auto values_of = [&](std::uint16_t device) {
    UseModel({device});
    TestRun test(With({}));
    BootConfigExt settings(*fc_);
    EXPECT_EQ(settings.Open(test.run, StagedCommand::kGet), kSuccess);
    StagedValues values;
    settings.AddAll(values);
    return values;
  };
  EXPECT_EQ(values_of(0x3522).size(),
            72u);  // 23 of the boot configuration, NVMe_Enable and 48 of the entries
  EXPECT_EQ(values_of(0x3432).size(), 24u);
}

}  // namespace
