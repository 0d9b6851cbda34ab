#include "discovery/adapter_lookup.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/unit_captured_stdout.h"
#include "support/unit_command_run.h"
#include "support/unit_debug_log.h"
#include "support/unit_fake_library.h"
#include "support/unit_files.h"
#include "support/unit_host_records.h"

namespace {

TEST(AdapterIdentifier, JoinsModelAndSerialNumber) {
  HostRecords host;
  EXPECT_EQ(AdapterIdentifier(host.AddAdapter("ZX100", "AB12345")), "Adapter_ZX100_AB12345");
}

TEST(AdapterIdentifier, ShowsTheTextsAsTheyAre) {
  HostRecords host;
  EXPECT_EQ(AdapterIdentifier(host.AddAdapter("z X%s_", "_b&")), "Adapter_z X%s___b&");
  EXPECT_EQ(AdapterIdentifier(host.AddAdapter("", "")), "Adapter__");
}

TEST(AdapterIdentifier, EndsATextWithItsField) {
  HostRecords host;
  const std::string model(32, 'M');
  const std::string serial_number(32, 'S');
  AdapterEntry& adapter = host.AddAdapter(model, serial_number);
  adapter.type = 0x41414141;                // follows the serial number
  adapter.flash_bios_version = {{'9', 0}};  // follows the model
  EXPECT_EQ(AdapterIdentifier(adapter), "Adapter_" + model + "_" + serial_number);
}

class Lookup : public testing::Test {
 protected:
  Lookup() {
    ResetLibrary();
    Library().adapters = host_.List();
  }

  // Resolves the words; the outcome is in `found_`.
  StatusCode Resolve(const Words& words) {
    found_ = {};
    TestRun test(words);
    return GetPhyPortFromAdapterString(test.run, found_);
  }

  // The usual adapter: one port, one Fibre Channel entry.
  void AddUsual() {
    adapter_ = &host_.AddAdapter("ZX100", "AB12345");
    fc_ = &host_.AddFcPort(*adapter_, 0);
  }

  HostRecords host_;
  AdapterEntry* adapter_ = nullptr;
  const FCProtocolEntry* fc_ = nullptr;
  AdapterSelection found_;
};

TEST_F(Lookup, ResolvesAnIdentifierAsListed) {
  AddUsual();
  EXPECT_EQ(Resolve({AdapterIdentifier(*adapter_)}), 0u);
  EXPECT_EQ(found_.adapter, adapter_);
  EXPECT_EQ(found_.port, adapter_->ports->first);
  EXPECT_EQ(found_.fc, fc_);
}

TEST_F(Lookup, ReadsTheFirstWordAlone) {
  AddUsual();
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345", "help", "?"}), 0u);
  EXPECT_EQ(Resolve({"x", "Adapter_ZX100_AB12345"}), 6u);
}

TEST_F(Lookup, MatchesInAnyCase) {
  AddUsual();
  EXPECT_EQ(Resolve({"aDAPTER_zx100_ab12345"}), 0u);
  EXPECT_EQ(found_.adapter, adapter_);
  EXPECT_EQ(Resolve({"ADAPTER_Zx100_Ab12345"}), 0u);
}

TEST_F(Lookup, TakesRunsOfUnderscoresAsOneSeparatorAndSkipsLeadingOnes) {
  AddUsual();
  EXPECT_EQ(Resolve({"___Adapter__ZX100____AB12345___"}), 0u);
  EXPECT_EQ(found_.adapter, adapter_);
}

TEST_F(Lookup, DropsFurtherTokens) {
  AddUsual();
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345_more_and_more"}), 0u);
  EXPECT_EQ(found_.adapter, adapter_);
}

TEST_F(Lookup, CannotNameTextsThatHoldAnUnderscore) {
  AdapterEntry& model = host_.AddAdapter("ZX_100", "AB12345");
  host_.AddFcPort(model, 0);
  AdapterEntry& serial_number = host_.AddAdapter("ZX200", "AB_12345");
  host_.AddFcPort(serial_number, 0);
  EXPECT_EQ(Resolve({AdapterIdentifier(model)}), 6u);
  EXPECT_EQ(Resolve({AdapterIdentifier(serial_number)}), 6u);
}

TEST_F(Lookup, HelpWordIsFiveWithoutAskingTheLibrary) {
  AddUsual();
  for (const char* word : {"help", "/h", "/help", "-h", "-help", "/?", "?", "HELP"}) {
    EXPECT_EQ(Resolve({word, "Adapter_ZX100_AB12345"}), 5u) << word;
  }
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(Lookup, MissingIdentifierIsSix) {
  AddUsual();
  EXPECT_EQ(Resolve({}), 6u);
  EXPECT_EQ(Resolve({""}), 6u);
  EXPECT_EQ(Resolve({"___"}), 6u);
}

TEST_F(Lookup, OtherTypeWordIsSixWithoutAskingTheLibrary) {
  AddUsual();
  for (const char* identifier :
       {"Adapte_ZX100_AB12345", "Adapters_ZX100_AB12345", "ZX100_AB12345", "FC_21:00:00:11:22:33:44:55",
        "Adapter ZX100_AB12345", " Adapter_ZX100_AB12345", "AdapterAdapterAdapterAdapter_ZX100_AB12345"}) {
    EXPECT_EQ(Resolve({identifier}), 6u) << identifier;
  }
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(Lookup, BadIdentifierIsSixWithoutAnAdapterListToo) {
  Library().adapters = nullptr;
  EXPECT_EQ(Resolve({"x"}), 6u);
}

TEST_F(Lookup, MissingAdapterListIsFourteen) {
  Library().adapters = nullptr;
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 14u);
}

TEST_F(Lookup, AsksTheLibraryOnceAndOutsideAnyBracket) {
  AddUsual();
  const NoLibraryOutputFile none;
  Library().chatter = "library text\n";
  EXPECT_EQ(PrintedBy([&] { Resolve({"Adapter_ZX100_AB12345"}); }), "library text\n");
  EXPECT_EQ(Library().calls, (std::vector<std::string>{"GetAdapterList"}));
  EXPECT_FALSE(std::filesystem::exists("/var/tmp/torpi-output.log"));
}

TEST_F(Lookup, UnknownAdapterIsSix) {
  AddUsual();
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB1234"}), 6u);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB123456"}), 6u);
  EXPECT_EQ(Resolve({"Adapter_ZX10_AB12345"}), 6u);
  EXPECT_EQ(Resolve({"Adapter_AB12345_ZX100"}), 6u);
  EXPECT_EQ(Resolve({"Adapter_ZX100AB12345"}), 6u);
  EXPECT_EQ(found_.adapter, nullptr);
}

TEST_F(Lookup, EmptyHostIsSix) {
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 6u);
}

TEST_F(Lookup, TwoTokensNameNoAdapterWithASerialNumber) {
  AddUsual();
  EXPECT_EQ(Resolve({"Adapter_ZX100"}), 6u);
  EXPECT_EQ(Resolve({"Adapter_ZX100_"}), 6u);
  EXPECT_EQ(Resolve({"Adapter"}), 6u);
}

TEST_F(Lookup, TwoTokensNameAnAdapterWithoutASerialNumber) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "");
  host_.AddFcPort(adapter, 0);
  EXPECT_EQ(Resolve({"Adapter_ZX100_"}), 0u);
  EXPECT_EQ(found_.adapter, &adapter);
}

TEST_F(Lookup, TokensLongerThanAnyFieldNameNothing) {
  AdapterEntry& adapter = host_.AddAdapter(std::string(32, 'M'), std::string(32, 'S'));
  host_.AddFcPort(adapter, 0);
  for (const std::size_t length : {33U, 63U, 64U, 65U, 127U, 128U, 129U, 100000U}) {
    EXPECT_EQ(Resolve({"Adapter_" + std::string(length, 'M') + "_" + std::string(32, 'S')}), 6u) << length;
    EXPECT_EQ(Resolve({"Adapter_" + std::string(32, 'M') + "_" + std::string(length, 'S')}), 6u) << length;
    EXPECT_EQ(Resolve({std::string(length, 'A') + "_M_S"}), 6u) << length;
  }
}

TEST_F(Lookup, MatchesTextsThatFillTheirFields) {
  AdapterEntry& adapter = host_.AddAdapter(std::string(32, 'M'), std::string(32, 'S'));
  adapter.type = 0x53535353;
  adapter.flash_bios_version = {{'M', 'M', 0}};
  host_.AddFcPort(adapter, 0);
  EXPECT_EQ(Resolve({"Adapter_" + std::string(32, 'm') + "_" + std::string(32, 's')}), 0u);
  EXPECT_EQ(found_.adapter, &adapter);
}

TEST_F(Lookup, AdapterWithoutAPortListResolvesToNothing) {
  AddUsual();
  adapter_->ports = nullptr;
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 6u);
  EXPECT_EQ(found_.adapter, nullptr);
}

TEST_F(Lookup, AdapterWithAnEmptyPortListIsSix) {
  host_.AddAdapter("ZX100", "AB12345");
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 6u);
}

TEST_F(Lookup, PortsWithoutProtocolsAreSix) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  host_.AddPort(adapter, 0);
  host_.AddPort(adapter, 1).protocols = nullptr;
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 6u);
}

TEST_F(Lookup, PortsWithoutAnFcEntryAreSix) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  PhyPortEntry& port = host_.AddPort(adapter, 0);
  for (const std::uint32_t type : {2u, 3u, 0xFFFFFFFFu}) host_.AddProtocol(port, type);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 6u);
}

TEST_F(Lookup, SkipsEntriesOfOtherProtocols) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  PhyPortEntry& port = host_.AddPort(adapter, 0);
  host_.AddProtocol(port, 2);
  const FCProtocolEntry& fc = host_.AddProtocol(port, 0);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.fc, &fc);
}

TEST_F(Lookup, ServesFcoeEntries) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  const FCProtocolEntry& fcoe = host_.AddProtocol(host_.AddPort(adapter, 0), 1);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.fc, &fcoe);
}

TEST_F(Lookup, TakesTheFirstEntryOfAPort) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  host_.AddFcPort(adapter, 5);
  PhyPortEntry& port = host_.AddPort(adapter, 1);
  const FCProtocolEntry& first = host_.AddProtocol(port, 1);
  host_.AddProtocol(port, 0);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.port, &port);
  EXPECT_EQ(found_.fc, &first);
}

TEST_F(Lookup, TakesThePortWithTheLowestNumber) {
  struct Case {
    std::vector<std::uint32_t> numbers;
    std::size_t taken;
  };
  for (const Case& test : {Case{{0, 1, 2}, 0}, Case{{2, 1, 0}, 2}, Case{{1, 0, 2}, 1}, Case{{5, 3, 4}, 1},
                           Case{{2, 0, 1}, 1}, Case{{1, 1}, 0}, Case{{0xFFFFFFFF, 0x80000000}, 1}}) {
    SCOPED_TRACE(testing::PrintToString(test.numbers));
    HostRecords host;
    AdapterEntry& adapter = host.AddAdapter("ZX100", "AB12345");
    std::vector<const FCProtocolEntry*> entries;
    for (const std::uint32_t number : test.numbers) entries.push_back(&host.AddFcPort(adapter, number));
    Library().adapters = host.List();
    EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
    EXPECT_EQ(found_.fc, entries[test.taken]);
    EXPECT_EQ(found_.port->number, test.numbers[test.taken]);
  }
}

TEST_F(Lookup, PortsWithoutAnFcEntryDoNotCountAsLowest) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  const FCProtocolEntry& fc = host_.AddFcPort(adapter, 3);
  host_.AddProtocol(host_.AddPort(adapter, 0), 2);
  host_.AddPort(adapter, 1);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.fc, &fc);
  EXPECT_EQ(found_.port->number, 3u);
}

// The first port is taken before its entries are read.
TEST_F(Lookup, FirstPortStaysWhenItHasTheLowestNumberAndNoFcEntry) {
  AdapterEntry& adapter = host_.AddAdapter("ZX100", "AB12345");
  const PhyPortEntry& bare = host_.AddPort(adapter, 0);
  const FCProtocolEntry& first = host_.AddFcPort(adapter, 2);
  host_.AddFcPort(adapter, 1);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.port, &bare);
  EXPECT_EQ(found_.fc, &first);  // the first entry met, although port 1 follows
}

TEST_F(Lookup, OfEqualAdaptersTheLaterGivesAdapterAndPortAndTheEarlierKeepsItsEntry) {
  AdapterEntry& earlier = host_.AddAdapter("ZX100", "AB12345");
  const FCProtocolEntry& earlier_fc = host_.AddFcPort(earlier, 0);
  AdapterEntry& later = host_.AddAdapter("ZX100", "AB12345");
  host_.AddFcPort(later, 0);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.adapter, &later);
  EXPECT_EQ(found_.port, later.ports->first);
  EXPECT_EQ(found_.fc, &earlier_fc);
}

TEST_F(Lookup, OfEqualAdaptersALowerPortOfTheLaterGivesItsEntry) {
  AdapterEntry& earlier = host_.AddAdapter("ZX100", "AB12345");
  host_.AddFcPort(earlier, 0);
  AdapterEntry& later = host_.AddAdapter("zx100", "ab12345");
  host_.AddFcPort(later, 9);
  const FCProtocolEntry& lower = host_.AddFcPort(later, 8);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.adapter, &later);
  EXPECT_EQ(found_.port->number, 8u);
  EXPECT_EQ(found_.fc, &lower);
}

TEST_F(Lookup, OfEqualAdaptersALaterOneWithoutPortsIsSix) {
  AddUsual();
  host_.AddAdapter("ZX100", "AB12345");  // its port list is there, and empty
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 6u);
}

TEST_F(Lookup, OfEqualAdaptersALaterOneWithoutAPortListDoesNotCount) {
  AddUsual();
  host_.AddAdapter("ZX100", "AB12345").ports = nullptr;
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.adapter, adapter_);
  EXPECT_EQ(found_.fc, fc_);
}

TEST_F(Lookup, FindsAnAdapterAmongOthers) {
  host_.AddFcPort(host_.AddAdapter("ZX100", "AB12346"), 0);
  AddUsual();
  host_.AddFcPort(host_.AddAdapter("ZX200", "AB12345"), 0);
  EXPECT_EQ(Resolve({"Adapter_ZX100_AB12345"}), 0u);
  EXPECT_EQ(found_.adapter, adapter_);
  EXPECT_EQ(found_.fc, fc_);
}

TEST_F(Lookup, ForgetsAnEarlierOutcome) {
  AddUsual();
  AdapterSelection selection;
  TestRun known({"Adapter_ZX100_AB12345"});
  EXPECT_EQ(GetPhyPortFromAdapterString(known.run, selection), 0u);
  TestRun unknown({"Adapter_ZX100_other"});
  EXPECT_EQ(GetPhyPortFromAdapterString(unknown.run, selection), 6u);
  EXPECT_EQ(selection.adapter, nullptr);
  EXPECT_EQ(selection.port, nullptr);
  EXPECT_EQ(selection.fc, nullptr);
}

// The lines that a look-up logs at a level, without those of its entry and exit.
std::vector<std::string> LogOf(std::int32_t level, const Words& words) {
  std::vector<std::string> lines = LoggedAt(level, [&] {
    TestRun test(words);
    AdapterSelection selection;
    GetPhyPortFromAdapterString(test.run, selection);
  });
  std::erase_if(lines, [](const std::string& line) {
    return line.ends_with(": Entered") || line.ends_with(": Exiting");
  });
  return lines;
}

TEST_F(Lookup, LogsWhyItFails) {
  AddUsual();
  constexpr const char* kFunction = "AdapterCmdsProcessor::GetPhyPortFromAdapterString: ";
  const auto failure = [&](const char* text) {
    return std::vector<std::string>{kFunction + std::string(text)};
  };
  EXPECT_EQ(LogOf(kDebugFailure, {"FC_1%s"}), failure("Invalid Adapter identifier FC_1%s"));
  EXPECT_EQ(LogOf(kDebugFailure, {}), failure("Invalid Adapter identifier "));
  EXPECT_EQ(LogOf(kDebugFailure, {"Adapter_ZX100_other"}), std::vector<std::string>{});
  EXPECT_EQ(LogOf(kDebugTrace, {"-h"}), failure("Invoking Help"));
  EXPECT_EQ(LogOf(kDebugFailure, {"-h"}), std::vector<std::string>{});
  Library().adapters = nullptr;
  EXPECT_EQ(LogOf(kDebugFailure, {"Adapter_ZX100_AB12345"}), failure("Adapter List is NULL"));
}

TEST_F(Lookup, LogsEntryAndExitUnderItsOwnClass) {
  AddUsual();
  TestRun test({"Adapter_ZX100_AB12345"});
  EXPECT_EQ(LoggedAt(kDebugTrace, [&] { GetPhyPortFromAdapterString(test.run, found_); }),
            (std::vector<std::string>{"AdapterCmdsProcessor::GetPhyPortFromAdapterString: Entered",
                                      "AdapterCmdsProcessor::GetPhyPortFromAdapterString: Exiting"}));
}

TEST_F(Lookup, SelectAdapterLogsTheFailureUnderTheCommandsName) {
  AddUsual();
  const auto select = [](const Words& words) {
    StatusCode status = kNoCallback;
    std::vector<std::string> lines = LoggedAt(kDebugFailure, [&] {
      TestRun test(words);
      AdapterSelection selection;
      status = SelectAdapter(test.run, selection);
    });
    lines.push_back(std::to_string(status));
    return lines;
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(select({"Adapter_ZX100_AB12345"}), Lines{"0"});
  EXPECT_EQ(select({"help"}), (Lines{"TestCmdsProcessor::CmdTestCommon: Get phy port failed err=5", "5"}));
  EXPECT_EQ(select({"Adapter_x"}),
            (Lines{"TestCmdsProcessor::CmdTestCommon: Get phy port failed err=6", "6"}));
  Library().adapters = nullptr;
  EXPECT_EQ(select({"Adapter_x"}),
            (Lines{"AdapterCmdsProcessor::GetPhyPortFromAdapterString: Adapter List is NULL",
                   "TestCmdsProcessor::CmdTestCommon: Get phy port failed err=14", "14"}));
}

}  // namespace
