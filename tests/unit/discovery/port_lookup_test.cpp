#include "discovery/port_lookup.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"
#include "support/unit_host_records.h"

namespace {

constexpr char kPort[] = "FC_21:00:00:11:22:33:44:55";
constexpr char kTarget[] = "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a7";
constexpr char kLun[] = "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a7_LUN_3";
constexpr char kNamespace[] = "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:b8_NSID_3";

class PortLookup : public testing::Test {
 protected:
  PortLookup() {
    ResetLibrary();
    Library().adapters = host_.List();
  }

  // Appends a Fibre Channel port named 21:00:00:11:22:33:44:xx.
  FCProtocolEntry& AddPort(AdapterEntry& adapter, std::uint32_t number, std::uint8_t last_octet) {
    return Name(host_.AddFcPort(adapter, number), last_octet);
  }

  static FCProtocolEntry& Name(FCProtocolEntry& entry, std::uint8_t last_octet) {
    entry.port_name = {0x21, 0x00, 0x00, 0x11, 0x22, 0x33, 0x44, last_octet};
    return entry;
  }

  // A host on which each of the usual identifiers names one thing.
  void AddUsual() {
    adapter_ = &host_.AddAdapter("ZX100", "AB12345");
    AddPort(*adapter_, 0, 0x54);
    port_ = &AddPort(*adapter_, 1, 0x55);
    host_.AddTarget(*port_, 0xA6);
    target_ = &host_.AddTarget(*port_, 0xA7);
    host_.AddLun(*target_, 2);
    lun_ = &host_.AddLun(*target_, 3);
    nvme_target_ = &host_.AddTarget(*port_, 0xB8);
    nvme_target_->state_flags[5] = 0x08;
    namespace_ = &host_.AddLun(*nvme_target_, 3);
  }

  StatusCode FindPort(const Words& words) { return GetPhyPortFromPortString(words, found_port_); }
  StatusCode FindTarget(const Words& words) { return GetTargetFromTargetString(words, found_target_); }
  StatusCode FindLun(const Words& words) { return GetLunFromLunString(words, found_lun_); }

  HostRecords host_;
  AdapterEntry* adapter_ = nullptr;
  FCProtocolEntry* port_ = nullptr;
  TargetEntry* target_ = nullptr;
  TargetEntry* nvme_target_ = nullptr;
  const LunEntry* lun_ = nullptr;
  const LunEntry* namespace_ = nullptr;
  PortSelection found_port_;
  TargetSelection found_target_;
  LunSelection found_lun_;
};

TEST_F(PortLookup, FindsAPort) {
  AddUsual();
  EXPECT_EQ(FindPort({kPort, "more"}), 0u);
  EXPECT_EQ(found_port_.adapter, adapter_);
  EXPECT_EQ(found_port_.port->number, 1u);
  EXPECT_EQ(found_port_.fc, port_);
}

TEST_F(PortLookup, FindsATarget) {
  AddUsual();
  EXPECT_EQ(FindTarget({kTarget, "more"}), 0u);
  EXPECT_EQ(found_target_.fc, port_);
  EXPECT_EQ(found_target_.target, target_);
}

TEST_F(PortLookup, FindsALunAndANamespace) {
  AddUsual();
  EXPECT_EQ(FindLun({kLun, "more"}), 0u);
  EXPECT_EQ(found_lun_.fc, port_);
  EXPECT_EQ(found_lun_.target, target_);
  EXPECT_EQ(found_lun_.lun, lun_);
  EXPECT_EQ(FindLun({kNamespace}), 0u);
  EXPECT_EQ(found_lun_.target, nvme_target_);
  EXPECT_EQ(found_lun_.lun, namespace_);
}

TEST_F(PortLookup, HelpWordIsFiveWithoutAskingTheLibrary) {
  AddUsual();
  for (const char* word : {"help", "/h", "/help", "-h", "-help", "/?", "?", "Help"}) {
    EXPECT_EQ(FindPort({word}), 5u) << word;
    EXPECT_EQ(FindTarget({word}), 5u) << word;
    EXPECT_EQ(FindLun({word}), 5u) << word;
  }
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(PortLookup, MissingIdentifierIsSixWithoutAskingTheLibrary) {
  AddUsual();
  for (const Words& words : {Words{}, Words{""}, Words{"", kPort}}) {
    EXPECT_EQ(FindPort(words), 6u);
    EXPECT_EQ(FindTarget(words), 6u);
    EXPECT_EQ(FindLun(words), 6u);
  }
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(PortLookup, IdentifierOfAnotherKindIsSixWithoutAskingTheLibrary) {
  AddUsual();
  for (const char* identifier :
       {"FCX_21:00:00:11:22:33:44:55", "F_21:00:00:11:22:33:44:55", "_FC_21:00:00:11:22:33:44:55",
        "FCFCFCFCFCFCFCFC_21:00:00:11:22:33:44:55", "Adapter_ZX100_AB12345", "21:00:00:11:22:33:44:55"}) {
    EXPECT_EQ(FindPort({identifier}), 6u) << identifier;
  }
  for (const char* identifier : {kPort, "FC_21:00:00:11:22:33:44:55_Tgt_50:00:00:00:00:00:00:a7",
                                 "FC_21:00:00:11:22:33:44_Target_50:00:00:00:00:00:00:a7",
                                 "X_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a7"}) {
    EXPECT_EQ(FindTarget({identifier}), 6u) << identifier;
  }
  for (const char* identifier :
       {kPort, kTarget, "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a7_LUNS_3",
        "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00_LUN_3",
        "FC_21:00:00:11:22:33:44:55_Tgt_50:00:00:00:00:00:00:a7_LUN_3"}) {
    EXPECT_EQ(FindLun({identifier}), 6u) << identifier;
  }
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(PortLookup, MissingAdapterListIsFourteen) {
  Library().adapters = nullptr;
  EXPECT_EQ(FindPort({kPort}), 14u);
  EXPECT_EQ(FindTarget({kTarget}), 14u);
  EXPECT_EQ(FindLun({kLun}), 14u);
  EXPECT_EQ(FindLun({kNamespace}), 14u);
}

// Only the words of an identifier are looked at before the library is asked, in any case and up to an
// underscore or an apostrophe.
TEST_F(PortLookup, MissingAdapterListIsFourteenForAnIdentifierThatNamesNothing) {
  Library().adapters = nullptr;
  for (const char* identifier : {"FC", "FC_", "fc_x", "FC'x", "Fc_21:00:00:11:22:33:44:5F"}) {
    EXPECT_EQ(FindPort({identifier}), 14u) << identifier;
  }
  EXPECT_EQ(FindTarget({"fc_1:2:3:4:5:6:7:8_TARGET"}), 14u);
  EXPECT_EQ(FindTarget({"fc_1:2:3:4:5:6:7:8_target'x"}), 14u);
  EXPECT_EQ(FindLun({"fc_1:2:3:4:5:6:7:8_target_1:2:3:4:5:6:7:8_nsid"}), 14u);
  EXPECT_EQ(FindLun({"fc_1:2:3:4:5:6:7:8_target_1:2:3:4:5:6:7:8_Lun_x"}), 14u);
}

TEST_F(PortLookup, EmptyHostIsSix) {
  EXPECT_EQ(FindPort({kPort}), 6u);
  EXPECT_EQ(FindTarget({kTarget}), 6u);
  EXPECT_EQ(FindLun({kLun}), 6u);
}

TEST_F(PortLookup, AsksTheLibraryOnceAndOutsideAnyBracket) {
  AddUsual();
  const NoLibraryOutputFile none;
  Library().chatter = "library text\n";
  EXPECT_EQ(PrintedBy([&] {
              FindPort({kPort});
              FindTarget({kTarget});
              FindLun({kLun});
            }),
            "library text\nlibrary text\nlibrary text\n");
  EXPECT_EQ(Library().calls, (std::vector<std::string>(3, "GetAdapterList")));
  EXPECT_FALSE(std::filesystem::exists("/var/tmp/torpi-output.log"));
}

TEST_F(PortLookup, MatchesTheWholeTextExactly) {
  AddUsual();
  Name(*port_, 0x5F);
  EXPECT_EQ(FindPort({"FC_21:00:00:11:22:33:44:5f"}), 0u);
  for (const char* identifier :
       {"FC_21:00:00:11:22:33:44:5F", "fc_21:00:00:11:22:33:44:5f", "Fc_21:00:00:11:22:33:44:5f",
        "FC_21:0:00:11:22:33:44:5f", "FC_21:0:0:11:22:33:44:5f", "FC_21:00:00:11:22:33:44:5f ",
        "FC_21:00:00:11:22:33:44:5f_", "FC_21:00:00:11:22:33:44:5ff", "FC_ 21:00:00:11:22:33:44:5f",
        "FC_0x21:00:00:11:22:33:44:5f", "FC_21:00:00:11:22:33:44", "FC_", "FC", "FC'x",
        "FC_21:00:00:11:22:33:44:5f_Target_50:00:00:00:00:00:00:a7"}) {
    EXPECT_EQ(FindPort({identifier}), 6u) << identifier;
  }
}

TEST_F(PortLookup, MatchesTheWholeTextOfATargetExactly) {
  AddUsual();
  for (const char* identifier : {"FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:A7",
                                 "FC_21:00:00:11:22:33:44:55_target_50:00:00:00:00:00:00:a7",
                                 "fc_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a7",
                                 "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00-a7",
                                 "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00",
                                 "FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a7 ",
                                 "FC_21:00:00:11:22:33:44:55_Target", kLun}) {
    EXPECT_EQ(FindTarget({identifier}), 6u) << identifier;
  }
}

TEST_F(PortLookup, MatchesTheWholeTextOfALunExactly) {
  AddUsual();
  for (const char* end : {"_LUN_03", "_LUN_3 ", "_LUN_3_", "_lun_3", "_LUN_+3", "_LUN_", "_LUN_65539",
                          "_LUN_4294967299", "_LUN_x", "_LUN_4"}) {
    EXPECT_EQ(FindLun({std::string(kTarget) + end}), 6u) << end;
  }
}

TEST_F(PortLookup, NamesALunByTheKindOfItsTarget) {
  AddUsual();
  EXPECT_EQ(FindLun({std::string(kTarget) + "_NSID_3"}), 6u);
  EXPECT_EQ(FindLun({"FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:b8_LUN_3"}), 6u);
}

TEST_F(PortLookup, ServesFcoeEntriesAndNoOtherProtocol) {
  AddUsual();
  target_->state_flags[0] = 0xFF;  // of no account
  port_->protocol_type = ProtocolType::kFcoe;
  EXPECT_EQ(FindPort({kPort}), 0u);
  EXPECT_EQ(FindTarget({kTarget}), 0u);
  EXPECT_EQ(FindLun({kLun}), 0u);
  for (const std::uint32_t type : {2u, 3u, 0xFFFFFFFFu}) {
    port_->protocol_type = static_cast<ProtocolType>(type);
    EXPECT_EQ(FindPort({kPort}), 6u);
    EXPECT_EQ(FindTarget({kTarget}), 6u);
    EXPECT_EQ(FindLun({kLun}), 6u);
  }
}

TEST_F(PortLookup, FindsVirtualPorts) {
  AddUsual();
  port_->interface_type = PortInterfaceType::kNpivVirtual;
  EXPECT_EQ(FindPort({kPort}), 0u);
}

TEST_F(PortLookup, TakesTheFirstOfTwoEqualNames) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  FCProtocolEntry& first = AddPort(adapter, 7, 0x55);
  AddPort(adapter, 0, 0x55);
  EXPECT_EQ(FindPort({kPort}), 0u);
  EXPECT_EQ(found_port_.fc, &first);
  EXPECT_EQ(found_port_.port->number, 7u);

  TargetEntry& target = host_.AddTarget(first, 0xA7);
  host_.AddTarget(first, 0xA7);
  EXPECT_EQ(FindTarget({kTarget}), 0u);
  EXPECT_EQ(found_target_.target, &target);

  const LunEntry& lun = host_.AddLun(target, 3);
  host_.AddLun(target, 3);
  EXPECT_EQ(FindLun({kLun}), 0u);
  EXPECT_EQ(found_lun_.lun, &lun);
}

TEST_F(PortLookup, GoesOnBehindAnEqualNameThatLacksWhatIsWanted) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  AddPort(adapter, 0, 0x55);
  FCProtocolEntry& second = AddPort(adapter, 1, 0x55);
  TargetEntry& without_lun = host_.AddTarget(second, 0xA7);
  EXPECT_EQ(FindTarget({kTarget}), 0u);
  EXPECT_EQ(found_target_.fc, &second);
  EXPECT_EQ(found_target_.target, &without_lun);

  TargetEntry& with_lun = host_.AddTarget(second, 0xA7);
  const LunEntry& lun = host_.AddLun(with_lun, 3);
  EXPECT_EQ(FindLun({kLun}), 0u);
  EXPECT_EQ(found_lun_.target, &with_lun);
  EXPECT_EQ(found_lun_.lun, &lun);
}

TEST_F(PortLookup, SkipsNullsAtEveryLevel) {
  host_.AddAdapter("no", "ports").ports = nullptr;
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  host_.AddPort(adapter, 0).protocols = nullptr;
  host_.AddPort(adapter, 1);
  AddPort(adapter, 2, 0x54);
  AddUsual();
  EXPECT_EQ(FindLun({kLun}), 0u);
  EXPECT_EQ(found_lun_.lun, lun_);
}

TEST_F(PortLookup, UnknownNamesAreSix) {
  AddUsual();
  EXPECT_EQ(FindPort({"FC_21:00:00:11:22:33:44:56"}), 6u);
  EXPECT_EQ(FindTarget({"FC_21:00:00:11:22:33:44:54_Target_50:00:00:00:00:00:00:a7"}), 6u);
  EXPECT_EQ(FindTarget({"FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a5"}), 6u);
  EXPECT_EQ(FindLun({"FC_21:00:00:11:22:33:44:55_Target_50:00:00:00:00:00:00:a6_LUN_3"}), 6u);
}

TEST_F(PortLookup, ForgetsAnEarlierOutcome) {
  AddUsual();
  EXPECT_EQ(FindPort({kPort}), 0u);
  EXPECT_EQ(FindPort({"x"}), 6u);
  EXPECT_EQ(found_port_.fc, nullptr);
  EXPECT_EQ(found_port_.adapter, nullptr);
  EXPECT_EQ(FindTarget({kTarget}), 0u);
  EXPECT_EQ(FindTarget({"x"}), 6u);
  EXPECT_EQ(found_target_.target, nullptr);
  EXPECT_EQ(FindLun({kLun}), 0u);
  EXPECT_EQ(FindLun({"x"}), 6u);
  EXPECT_EQ(found_lun_.lun, nullptr);
}

TEST_F(PortLookup, TakesAnIdentifierOfAnyLength) {
  AddUsual();
  const std::string filler(1 << 20, 'F');
  EXPECT_EQ(FindPort({filler}), 6u);
  EXPECT_EQ(FindPort({"FC_" + filler}), 6u);
  EXPECT_EQ(FindTarget({kPort + ("_" + filler)}), 6u);
  EXPECT_EQ(FindLun({kTarget + ("_LUN_" + std::string(1 << 20, '9'))}), 6u);
}

}  // namespace
