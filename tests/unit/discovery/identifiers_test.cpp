#include "discovery/identifiers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/unit_host_records.h"

namespace {

constexpr WorldWideName kName = {0x21, 0x00, 0x00, 0x0E, 0x1E, 0xAB, 0xCD, 0xFF};

// The named parts of one LUN's identifier.
class Identifiers : public testing::Test {
 protected:
  Identifiers() { port_.port_name = kName; }

  HostRecords host_;
  FCProtocolEntry& port_ = host_.AddFcPort(host_.AddAdapter("M", "S"), 0);
  TargetEntry& target_ = host_.AddTarget(port_, 0xA7);
  LunEntry& lun_ = host_.AddLun(target_, 0);
};

TEST_F(Identifiers, NameAPort) {
  EXPECT_EQ(PortIdentifier(port_), "FC_21:00:00:0e:1e:ab:cd:ff");
}

TEST_F(Identifiers, NameAnFcoePortByTheSameWord) {
  port_.protocol_type = ProtocolType::kFcoe;
  EXPECT_EQ(PortIdentifier(port_), "FC_21:00:00:0e:1e:ab:cd:ff");
}

TEST_F(Identifiers, NameATarget) {
  EXPECT_EQ(TargetIdentifier(port_, target_), "FC_21:00:00:0e:1e:ab:cd:ff_Target_50:00:00:00:00:00:00:a7");
}

TEST_F(Identifiers, NameTheLunsOfATarget) {
  LunIdentifiers identifiers(port_, target_);
  EXPECT_EQ(identifiers.Of(lun_), "FC_21:00:00:0e:1e:ab:cd:ff_Target_50:00:00:00:00:00:00:a7_LUN_0");
  lun_.number = 65535;
  EXPECT_EQ(identifiers.Of(lun_), "FC_21:00:00:0e:1e:ab:cd:ff_Target_50:00:00:00:00:00:00:a7_LUN_65535");
  lun_.number = 7;  // nothing of the longer number stays
  EXPECT_EQ(identifiers.Of(lun_), "FC_21:00:00:0e:1e:ab:cd:ff_Target_50:00:00:00:00:00:00:a7_LUN_7");
}

TEST_F(Identifiers, NameTheNamespacesOfAnNvmeTarget) {
  target_.state_flags[5] = 0x08;
  lun_.number = 1;
  EXPECT_EQ(LunIdentifiers(port_, target_).Of(lun_),
            "FC_21:00:00:0e:1e:ab:cd:ff_Target_50:00:00:00:00:00:00:a7_NSID_1");
}

TEST_F(Identifiers, OtherStateBitsMakeNoNvmeTarget) {
  for (std::uint8_t& flags : target_.state_flags) flags = 0xFF;
  target_.state_flags[5] = 0xF7;
  EXPECT_EQ(LunIdentifiers(port_, target_).Of(lun_),
            "FC_21:00:00:0e:1e:ab:cd:ff_Target_50:00:00:00:00:00:00:a7_LUN_0");
}

TEST(TakePort, TakesTheLeadingPart) {
  std::string_view text = "FC_21:00:00:0e:1e:ab:cd:ff_Target";
  WorldWideName name = {};
  ASSERT_TRUE(TakePort(text, name));
  EXPECT_EQ(name, kName);
  EXPECT_EQ(text, "_Target");

  text = "FC_21:00:00:0e:1e:ab:cd:ff";
  ASSERT_TRUE(TakePort(text, name));
  EXPECT_EQ(text, "");
}

TEST(TakePort, TakesNoOtherForm) {
  for (std::string_view text : {"",
                                "FC",
                                "FC_",
                                "fc_21:00:00:0e:1e:ab:cd:ff",
                                "Fc_21:00:00:0e:1e:ab:cd:ff",
                                "FCX_21:00:00:0e:1e:ab:cd:ff",
                                " FC_21:00:00:0e:1e:ab:cd:ff",
                                "FC_ 1:00:00:0e:1e:ab:cd:ff",
                                "FC_21:00:00:0E:1e:ab:cd:ff",
                                "FC_21:00:00:0e:1e:ab:cd:fF",
                                "FC_21:00:00:0e:1e:ab:cd:f",
                                "FC_21:00:00:0e:1e:ab:cd",
                                "FC_21-00:00:0e:1e:ab:cd:ff",
                                "FC_21:00:00:0e:1e:ab:cd-ff",
                                "FC_21:0:00:0e:1e:ab:cd:fff",
                                "FC_2100000e1eabcdff",
                                "FC_g1:00:00:0e:1e:ab:cd:ff",
                                "FC_21:00:00:0e:1e:ab:cd:f/",
                                "FC_21:00:00:0e:1e:ab:cd:f:",
                                "FC_21:00:00:0e:1e:ab:cd:f`",
                                "FC_+1:00:00:0e:1e:ab:cd:ff",
                                "FC__21:00:00:0e:1e:ab:cd:ff"}) {
    SCOPED_TRACE(text);
    WorldWideName name;
    EXPECT_FALSE(TakePort(text, name));
  }
}

TEST(TakeTarget, TakesTheLeadingPart) {
  std::string_view text = "_Target_21:00:00:0e:1e:ab:cd:ff_LUN_3";
  WorldWideName name = {};
  ASSERT_TRUE(TakeTarget(text, name));
  EXPECT_EQ(name, kName);
  EXPECT_EQ(text, "_LUN_3");
}

TEST(TakeTarget, TakesNoOtherForm) {
  for (std::string_view text : {"", "Target_21:00:00:0e:1e:ab:cd:ff", "_target_21:00:00:0e:1e:ab:cd:ff",
                                "_TARGET_21:00:00:0e:1e:ab:cd:ff", "_Target_21:00:00:0e:1e:ab:cd:FF",
                                "_Target_", "_Target_21:00:00:0e:1e:ab:cd-ff"}) {
    SCOPED_TRACE(text);
    WorldWideName name;
    EXPECT_FALSE(TakeTarget(text, name));
  }
}

struct LunPart {
  bool is_namespace;
  std::uint32_t number;
  std::string_view rest;
};

TEST(TakeLun, TakesANumberOfEitherKind) {
  struct Case {
    std::string_view text;
    LunPart expected;
  };
  for (const Case& test : {Case{"_LUN_0", {false, 0, ""}}, Case{"_LUN_7", {false, 7, ""}},
                           Case{"_LUN_65535", {false, 65535, ""}}, Case{"_NSID_1", {true, 1, ""}},
                           Case{"_NSID_4294967295", {true, 4294967295, ""}},
                           Case{"_LUN_10x", {false, 10, "x"}}, Case{"_LUN_3 ", {false, 3, " "}}}) {
    SCOPED_TRACE(test.text);
    std::string_view text = test.text;
    LunPart taken = {};
    ASSERT_TRUE(TakeLun(text, taken.is_namespace, taken.number));
    EXPECT_EQ(taken.is_namespace, test.expected.is_namespace);
    EXPECT_EQ(taken.number, test.expected.number);
    EXPECT_EQ(text, test.expected.rest);
  }
}

TEST(TakeLun, TakesNoOtherForm) {
  for (std::string_view text : {"", "_LUN", "_LUN_", "LUN_1", "_lun_1", "_NSID_", "_nsid_1", "_Lun_1",
                                "_LUN_+1", "_LUN_-1", "_LUN_ 1", "_LUN_x", "_LUN_01", "_LUN_00", "_NSID_007",
                                "_LUN_4294967296", "_LUN_99999999999999999999", "__LUN_1", "_LUN__1"}) {
    SCOPED_TRACE(text);
    bool is_namespace = false;
    std::uint32_t number = 0;
    EXPECT_FALSE(TakeLun(text, is_namespace, number));
  }
}

}  // namespace
