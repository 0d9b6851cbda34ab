#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "config/hba_params/hba_params.h"
#include "unit/config/staged_fixture.h"

namespace {

constexpr const char* kLoopOnlyText = "Loop_Only";
constexpr const char* kPointToPoint = "Point_To_Point_Only";
constexpr const char* kLoopPreferredText = "Loop_Preferred_Otherwise_Point_To_Point";
constexpr const char* kEveryCompletion = "Interrupt_For_Every_I/O_Completion";
constexpr const char* kTimerExpires = "Interrupt_When_Interrupt_Delay_Timer_Expires";
constexpr const char* kTimerOrIdle = "Interrupt_When_Interrupt_Delay_Timer_Expires_Or_No_Active_I/O";

class HbaOptionsTest : public StagedFixture {
 protected:
  HbaOptionsTest() : StagedFixture("HBAParams") {}

  // What the options come to: the status, or the values in the form "Key=value Key=value".
  std::string Checked(const std::vector<std::string>& options) const {
    TestRun test(With(options));
    return Taken(HbaParams(*fc_), test.run);
  }

  // The same on another device, with nothing staged.
  std::string CheckedOn(const Model& model, const std::vector<std::string>& options) {
    UseModel(model);
    return Checked(options);
  }
};

TEST_F(HbaOptionsTest, NoOptionsChangeNothing) {
  EXPECT_EQ(Checked({}), "");
}

// Options with a limit, on a device that has them.
struct NumberOption {
  const char* long_name;
  const char* short_name;
  const char* key;
  const char* highest;
  const char* refused;
};

constexpr NumberOption kNumberOptions[] = {
    {"--hard-loop-id", "-l", "Hard_Loop_ID", "125", "126"},
    {"--loop-reset-delay", "-r", "Loop_Reset_Delay", "255", "256"},
    {"--interrupt-delay-timer", "-e", "Interrupt_Delay_Timer", "255", "256"},
    {"--execution-throttle", "-x", "Execution_Throttle", "65535", "65536"},
    {"--login-retry-count", "-u", "Login_Retry_Count", "255", "256"},
    {"--port-down-retry-count", "-w", "Port_Down_Retry_Count", "255", "256"},
    {"--link-down-timeout", "-o", "Link_Down_Timeout", "240", "241"},
    {"--luns-per-target", "-y", "Luns_Per_Target", "256", "257"},
};

TEST_F(HbaOptionsTest, NumbersUpToTheirLimit) {
  UseModel({0x3A02});
  for (const NumberOption& option : kNumberOptions) {
    const std::string key = option.key;
    EXPECT_EQ(Checked({option.long_name, "0"}), key + "=0");
    EXPECT_EQ(Checked({option.short_name, option.highest}), key + "=" + option.highest);
    EXPECT_EQ(Checked({option.short_name, option.refused}), "6") << key;
    EXPECT_EQ(Checked({option.short_name, "-1"}), "6") << key;
    EXPECT_EQ(Checked({option.short_name, "4294967295"}), "6") << key;
    EXPECT_EQ(Checked({option.short_name, "4294967297"}), key + "=1");
    EXPECT_EQ(Checked({option.short_name, "word"}), key + "=0");
    EXPECT_EQ(Checked({option.short_name, "12words"}), key + "=12");
    EXPECT_EQ(Checked({option.short_name}), "") << key;
  }
}

// Options that are true or false, on a device that has them.
struct FlagOption {
  const char* long_name;
  const char* short_name;
  const char* key;
  const char* for_true;
  const char* for_false;
};

constexpr FlagOption kFlagOptions[] = {
    {"--enable-bios", "-b", "Disable_BIOS", "0", "1"},
    {"--enable-hard-loop-id", "-p", "Enable_Hard_Loop_Id", "1", "0"},
    {"--enable-fc-tape", "-f", "Enable_Fibre_Channel_Tape_Support", "1", "0"},
    {"--enable-lip-full-login", "-g", "Enable_Lip_Full_Login", "1", "0"},
    {"--enable-target-reset", "-a", "Enable_Target_Reset", "1", "0"},
    {"--enable-lr", "-k", "Enable_LR", "1", "0"},
    {"--enable-fabric-assigned-wwn", "-n", "Enable_Fabric_Assign_WWN", "1", "0"},
    {"--enable-vclm", "-q", "Disable_SCM", "0", "1"},
    {"--virtual-lane", "-j", "Enable_Virtual_Lane", "1", "0"},
};

TEST_F(HbaOptionsTest, FlagsAreTrueOrFalse) {
  UseModel({0x3640});
  for (const FlagOption& option : kFlagOptions) {
    const std::string key = option.key;
    EXPECT_EQ(Checked({option.long_name, "true"}), key + "=" + option.for_true);
    EXPECT_EQ(Checked({option.short_name, "FALSE"}), key + "=" + option.for_false);
    for (const char* const word : {"maybe", "1", "0", ""}) {
      EXPECT_EQ(Checked({option.short_name, word}), "6") << key << " " << word;
    }
    EXPECT_EQ(Checked({option.short_name}), "") << key;
  }
}

// Which devices lack an option: every device is tried.
TEST_F(HbaOptionsTest, EachOptionHasItsFamilies) {
  struct Rule {
    const char* option;
    const char* value;
    std::function<bool(std::uint16_t)> lacks;
  };
  const auto none = [](std::uint16_t) { return false; };
  const Rule rules[] = {
      {"-c", kPointToPoint, none},
      {"-m", kTimerExpires, Ginkgo},
      {"-z", "512", none},
      {"-l", "1", Cedar},
      {"-r", "1", none},
      {"-e", "1", Ginkgo},
      {"-x", "1", [](std::uint16_t d) { return Elm(d) || HazelIrisOrDahlia(d); }},
      {"-u", "1", none},
      {"-w", "1", none},
      {"-o", "1", none},
      {"-y", "1", none},
      {"-b", "true", none},
      {"-p", "true", Cedar},
      {"-f", "true", none},
      {"-g", "true", Cedar},
      {"-a", "true", none},
      {"-k", "true", [](std::uint16_t d) { return Aster(d) || Ginkgo(d); }},
      {"-n", "true", [](std::uint16_t d) { return Aster(d) || Birch(d) || Cedar(d); }},
      {"-q", "true", [](std::uint16_t d) { return !HazelIrisOrDahlia(d); }},
      {"-j", "true", [](std::uint16_t d) { return !Dahlia(d); }},
  };
  for (const Rule& rule : rules) {
    for (const std::uint16_t device : kDevices) {
      const std::string result = CheckedOn({device}, {rule.option, rule.value});
      if (rule.lacks(device)) {
        EXPECT_EQ(result, "35") << rule.option << " on " << std::hex << device;
        EXPECT_EQ(CheckedOn({device}, {rule.option, "nonsense"}), "35") << rule.option << " " << device;
      } else {
        EXPECT_NE(result.find('='), std::string::npos) << rule.option << " on " << std::hex << device;
      }
    }
  }
}

TEST_F(HbaOptionsTest, AnotherVendorHasNoFamily) {
  UseModel({0x7122});
  fc_->pci.vendor_id = 0x1077;
  EXPECT_EQ(Checked({"-m", kTimerExpires}), "Operation_Mode=5");
  EXPECT_EQ(Checked({"-l", "1"}), "Hard_Loop_ID=1");
  UseModel({0x3640});
  fc_->pci.vendor_id = 0x1077;
  EXPECT_EQ(Checked({"-j", "true"}), "35");
}

TEST_F(HbaOptionsTest, FrameSizes) {
  for (const char* const size : {"512", "1024", "2048"}) {
    EXPECT_EQ(Checked({"--frame-size", size}), std::string("Frame_Size=") + size);
  }
  for (const char* const size : {"0", "511", "513", "1023", "2047", "2049", "2111", "2112", "2113", "word"}) {
    EXPECT_EQ(Checked({"-z", size}), "6") << size;
  }
}

TEST_F(HbaOptionsTest, TheLargestFrameNeedsEncryption) {
  const std::vector<std::string> largest = {"-z", "2112"};
  for (std::uint16_t subsystem = 0x0AFF; subsystem <= 0x0B18; ++subsystem) {
    const bool own = subsystem >= 0x0B01 && subsystem <= 0x0B06;
    const bool partner = subsystem >= 0x0B11 && subsystem <= 0x0B16;
    EXPECT_EQ(CheckedOn({0x3648, kSorvex, subsystem}, largest), own ? "Frame_Size=2112" : "6") << subsystem;
    EXPECT_EQ(CheckedOn({0x3648, kPartner, subsystem}, largest), partner ? "Frame_Size=2112" : "6")
        << subsystem;
    EXPECT_EQ(CheckedOn({0x3648, 0x1234, subsystem}, largest), "6") << subsystem;
    EXPECT_EQ(CheckedOn({0x3640, kSorvex, subsystem}, largest), "6") << subsystem;
    EXPECT_EQ(CheckedOn({0x3748, kSorvex, subsystem}, largest), "6") << subsystem;
  }
}

// Connection options.

TEST_F(HbaOptionsTest, Connections) {
  fc_->supported_speeds = 0x7B;
  EXPECT_EQ(Checked({"--connection-options", kPointToPoint}), "Connection_Options=1");
  EXPECT_EQ(Checked({"-c", kLoopPreferredText}), "Connection_Options=2");
  EXPECT_EQ(Checked({"-c", kLoopOnlyText}), "Connection_Options=0");
  EXPECT_EQ(Checked({"-C", "LOOP_ONLY"}), "Connection_Options=0");
  for (const char* const word : {"", "0", "Loop", "Loop_Onl", "Loop_Only2"}) {
    EXPECT_EQ(Checked({"-c", word}), "6") << word;
  }
}

TEST_F(HbaOptionsTest, AModelWithoutLoop) {
  fc_->supported_speeds = 0x80;
  const Model no_loop = {0x3432, kPartner, 0x0A12};
  EXPECT_EQ(CheckedOn(no_loop, {"-c", kPointToPoint}), "Connection_Options=1");
  EXPECT_EQ(CheckedOn(no_loop, {"-c", kLoopPreferredText}), "6");
  EXPECT_EQ(CheckedOn(no_loop, {"-c", kLoopOnlyText}), "6");  // before the speed, which would be 18
  for (const Model& other :
       {Model{0x3432, kSorvex, 0x0A12}, Model{0x3432, kPartner, 0x0A11}, Model{0x3C32, kPartner, 0x0A12}}) {
    EXPECT_EQ(CheckedOn(other, {"-c", kLoopPreferredText}), "Connection_Options=2");
    EXPECT_EQ(CheckedOn(other, {"-c", kLoopOnlyText}), "18");
  }
}

TEST_F(HbaOptionsTest, A64GbpsPortHasNoLoop) {
  UseModel({0x3A02});
  fc_->supported_speeds = 0x80;
  EXPECT_EQ(Checked({"-c", kLoopOnlyText}), "18");
  EXPECT_EQ(Checked({"-c", kLoopPreferredText}), "Connection_Options=2");
  fc_->supported_speeds = 0x7F;
  EXPECT_EQ(Checked({"-c", kLoopOnlyText}), "Connection_Options=0");
}

TEST_F(HbaOptionsTest, A64GbpsModelHasNoLoop) {
  fc_->supported_speeds = 0x70;
  for (const std::uint16_t device : {std::uint16_t{0x3640}, std::uint16_t{0x3648}}) {
    for (std::uint16_t subsystem = 0x0B00; subsystem <= 0x0B08; ++subsystem) {
      const bool fast = subsystem >= 0x0B01 && subsystem <= 0x0B07;
      for (const std::uint16_t vendor : {kSorvex, kPartner, std::uint16_t{0x1234}}) {
        EXPECT_EQ(CheckedOn({device, vendor, subsystem}, {"-c", kLoopOnlyText}),
                  fast ? "18" : "Connection_Options=0")
            << subsystem;
      }
    }
  }
  EXPECT_EQ(CheckedOn({0x3740, kSorvex, 0x0B01}, {"-c", kLoopOnlyText}), "Connection_Options=0");
}

TEST_F(HbaOptionsTest, LoopOnlyAgainstTheFilesDataRate) {
  fc_->supported_speeds = 0x7B;
  for (const std::uint16_t device : kDevices) {
    const bool checked = FcElm(device) || HazelIrisOrDahlia(device);
    UseModel({device});
    for (const char* const rate : {"0", "2", "4"}) {
      Stage(std::string("Data_Rate=") + rate + "\n");
      EXPECT_EQ(Checked({"-c", kLoopOnlyText}), "Connection_Options=0") << std::hex << device;
    }
    for (const char* const rate : {"5", "6", "7", "8", "-1"}) {
      Stage(std::string("Data_Rate=") + rate + "\n");
      EXPECT_EQ(Checked({"-c", kLoopOnlyText}), checked ? "18" : "Connection_Options=0")
          << std::hex << device;
    }
    Stage("A=1\n");
    EXPECT_EQ(Checked({"-c", kLoopOnlyText}), "Connection_Options=0") << std::hex << device;
    Stage("data_rate = 5 # in another case\n");
    EXPECT_EQ(Checked({"-c", kLoopOnlyText}), checked ? "18" : "Connection_Options=0") << std::hex << device;
  }
}

TEST_F(HbaOptionsTest, LoopOnlyLooksAtTheFileEvenBesideASlowerRate) {
  fc_->supported_speeds = 0x7B;
  Stage("Data_Rate=5\n");
  EXPECT_EQ(Checked({"-c", kLoopOnlyText, "-d", "8_Gbps"}), "18");
  EXPECT_EQ(Checked({"-c", kLoopPreferredText, "-d", "8_Gbps"}), "Connection_Options=2 Data_Rate=4");
}

// Data rates.

struct Rate {
  const char* text;
  std::uint8_t bit;
  const char* value;
};

constexpr Rate kRates[] = {
    {"1_Gbps", 0x01, "0"},  {"2_Gbps", 0x02, "1"},  {"4_Gbps", 0x08, "3"},  {"8_Gbps", 0x10, "4"},
    {"16_Gbps", 0x20, "5"}, {"32_Gbps", 0x40, "6"}, {"64_Gbps", 0x80, "7"},
};

TEST_F(HbaOptionsTest, EachRateNeedsItsBit) {
  for (const Rate& rate : kRates) {
    fc_->supported_speeds = rate.bit;
    EXPECT_EQ(Checked({"--data-rate", rate.text}), std::string("Data_Rate=") + rate.value);
    fc_->supported_speeds = static_cast<std::uint8_t>(~rate.bit);
    EXPECT_EQ(Checked({"-d", rate.text}), "6") << rate.text;
  }
}

TEST_F(HbaOptionsTest, AutoNeedsNoBit) {
  for (const int mask : {0x00, 0xFF}) {
    fc_->supported_speeds = static_cast<std::uint8_t>(mask);
    EXPECT_EQ(Checked({"-d", "auto"}), "Data_Rate=2");
    EXPECT_EQ(Checked({"-d", "Auto"}), "Data_Rate=2");
  }
}

TEST_F(HbaOptionsTest, OtherRatesAreRefused) {
  fc_->supported_speeds = 0xFF;
  for (const char* const text : {"", "10_Gbps", "128_Gbps", "16", "5", "16_Gbp", "16_Gbpss"}) {
    EXPECT_EQ(Checked({"-d", text}), "6") << text;
  }
  EXPECT_EQ(Checked({"-d", "16_gBPS"}), "Data_Rate=5");
}

TEST_F(HbaOptionsTest, TheDataRateIsFixedOnSomeModels) {
  for (const std::uint16_t device : kDevices) {
    const std::string result = CheckedOn({device}, {"-d", "nonsense"});
    EXPECT_EQ(result, Cedar(device) ? "47" : "6") << std::hex << device;
  }
  EXPECT_EQ(CheckedOn({0x3432, kPartner, 0x0A13}, {"-d", "auto"}), "47");
  EXPECT_EQ(CheckedOn({0x3432, kPartner, 0x0A14}, {"-d", "auto"}), "Data_Rate=2");
  EXPECT_EQ(CheckedOn({0x3432, kSorvex, 0x0A13}, {"-d", "auto"}), "Data_Rate=2");
  EXPECT_EQ(CheckedOn({0x3C32, kPartner, 0x0A13}, {"-d", "auto"}), "Data_Rate=2");
}

TEST_F(HbaOptionsTest, MezzanineCardsHaveFewRates) {
  struct Card {
    Model model;
    std::string rates;
  };
  const Card cards[] = {
      {{0x3432, kSorvex, 0x0A11}, "Auto 8_Gbps 16_Gbps"},
      {{0x3432, kPartner, 0x0A12}, "Auto 8_Gbps 16_Gbps"},
      {{0x3522, kSorvex, 0x0A14}, "Auto 16_Gbps 32_Gbps"},
      {{0x3522, kSorvex, 0x0A15}, "Auto 16_Gbps"},
  };
  fc_->supported_speeds = 0xFF;
  for (const Card& card : cards) {
    EXPECT_EQ(CheckedOn(card.model, {"-d", "AUTO"}), "Data_Rate=2");
    for (const Rate& rate : kRates) {
      const bool has = (" " + card.rates + " ").find(std::string(" ") + rate.text + " ") != std::string::npos;
      EXPECT_EQ(CheckedOn(card.model, {"-d", rate.text}), has ? std::string("Data_Rate=") + rate.value : "6")
          << rate.text << " on " << std::hex << card.model.subsystem_device;
    }
  }
  // Neighbours that are no such cards.
  for (const Model& model :
       {Model{0x3432, kSorvex, 0x0A12}, Model{0x3C32, kSorvex, 0x0A11}, Model{0x3522, kPartner, 0x0A14},
        Model{0x3522, kSorvex, 0x0A16}, Model{0x3D22, kSorvex, 0x0A15}}) {
    EXPECT_EQ(CheckedOn(model, {"-d", "64_Gbps"}), "Data_Rate=7") << std::hex << model.subsystem_device;
  }
}

TEST_F(HbaOptionsTest, AMezzanineCardStillNeedsTheBit) {
  fc_->supported_speeds = 0x40;
  EXPECT_EQ(CheckedOn({0x3522, kSorvex, 0x0A14}, {"-d", "16_Gbps"}), "6");
  EXPECT_EQ(CheckedOn({0x3522, kSorvex, 0x0A14}, {"-d", "32_Gbps"}), "Data_Rate=6");
}

TEST_F(HbaOptionsTest, FastRatesAgainstTheFilesConnection) {
  for (const std::uint16_t device : kDevices) {
    if (Cedar(device)) continue;  // has no such option
    const bool checked = FcElm(device) || HazelIrisOrDahlia(device);
    UseModel({device});
    for (const Rate& rate : kRates) {
      const bool fast = rate.bit >= 0x20;
      const std::string stored = std::string("Data_Rate=") + rate.value;
      Stage("Connection_Options=0\n");
      EXPECT_EQ(Checked({"-d", rate.text}), fast && checked ? "18" : stored) << std::hex << device;
      Stage("Connection_Options=word\n");  // reads as 0
      EXPECT_EQ(Checked({"-d", rate.text}), fast && checked ? "18" : stored) << std::hex << device;
      for (const char* const connection : {"1", "2", "3"}) {
        Stage(std::string("Connection_Options=") + connection + "\n");
        EXPECT_EQ(Checked({"-d", rate.text}), stored) << std::hex << device;
      }
      Stage("A=1\n");
      EXPECT_EQ(Checked({"-d", rate.text}), stored) << std::hex << device;
    }
  }
}

TEST_F(HbaOptionsTest, FastRatesAgainstTheCommandsConnection) {
  fc_->supported_speeds = 0x7B;
  for (const char* const rate : {"16_Gbps", "32_Gbps"}) {
    EXPECT_EQ(Checked({"-d", rate, "-c", kLoopOnlyText}), "18");
    EXPECT_EQ(CheckedOn({0x3B41}, {"-d", rate, "-c", kLoopOnlyText}).substr(0, 20), "Connection_Options=0");
    UseModel({0x3522});
  }
  EXPECT_EQ(Checked({"-d", "8_Gbps", "-c", kLoopOnlyText}), "Connection_Options=0 Data_Rate=4");
  EXPECT_EQ(Checked({"-d", "Auto", "-c", kLoopOnlyText}), "Connection_Options=0 Data_Rate=2");
}

TEST_F(HbaOptionsTest, TheCommandsConnectionGoesBeforeTheFiles) {
  fc_->supported_speeds = 0x7B;
  Stage("Connection_Options=0\n");
  EXPECT_EQ(Checked({"-d", "16_Gbps", "-c", kPointToPoint}), "Connection_Options=1 Data_Rate=5");
  EXPECT_EQ(Checked({"-d", "16_Gbps", "-c", kLoopPreferredText}), "Connection_Options=2 Data_Rate=5");
  EXPECT_EQ(Checked({"-d", "16_Gbps"}), "18");
  Stage("Connection_Options=1\nData_Rate=4\n");
  EXPECT_EQ(Checked({"-d", "16_Gbps", "-c", kLoopOnlyText}), "18");
}

// Operation mode and interrupt delay.

TEST_F(HbaOptionsTest, OperationModes) {
  EXPECT_EQ(Checked({"--operation-mode", kEveryCompletion}), "Interrupt_Delay_Timer=0 Operation_Mode=0");
  EXPECT_EQ(Checked({"-m", kTimerExpires}), "Operation_Mode=5");
  EXPECT_EQ(Checked({"-m", kTimerOrIdle}), "Operation_Mode=6");
  EXPECT_EQ(Checked({"-m", "interrupt_for_every_i/o_completion"}),
            "Interrupt_Delay_Timer=0 Operation_Mode=0");
  for (const char* const word :
       {"", "0", "5", "Interrupt", "Interrupt_When_Interrupt_Delay_Timer_Expires_"}) {
    EXPECT_EQ(Checked({"-m", word}), "6") << word;
  }
}

TEST_F(HbaOptionsTest, DelayAgainstTheCommandsMode) {
  EXPECT_EQ(Checked({"-m", kEveryCompletion, "-e", "5"}), "17");
  EXPECT_EQ(Checked({"-m", kEveryCompletion, "-e", "0"}), "Interrupt_Delay_Timer=0 Operation_Mode=0");
  EXPECT_EQ(Checked({"-m", kEveryCompletion, "-e", "256"}), "6");
  EXPECT_EQ(Checked({"-e", "5", "-m", kTimerExpires}), "Interrupt_Delay_Timer=5 Operation_Mode=5");
  EXPECT_EQ(Checked({"-e", "0", "-m", kTimerOrIdle}), "Interrupt_Delay_Timer=0 Operation_Mode=6");
}

TEST_F(HbaOptionsTest, DelayAgainstTheFilesMode) {
  Stage("Operation_Mode=0\n");
  EXPECT_EQ(Checked({"-e", "5"}), "17");
  EXPECT_EQ(Checked({"-e", "256"}), "6");
  EXPECT_EQ(Checked({"-e", "0"}), "");
  EXPECT_EQ(Checked({"-e", "5", "-m", kTimerExpires}), "Interrupt_Delay_Timer=5 Operation_Mode=5");
  Stage("Operation_Mode=5\n");
  EXPECT_EQ(Checked({"-e", "5"}), "Interrupt_Delay_Timer=5");
  EXPECT_EQ(Checked({"-e", "5", "-m", kEveryCompletion}), "17");
  Stage("Operation_Mode=256\n");  // 0 in 8 bits
  EXPECT_EQ(Checked({"-e", "5"}), "17");
  EXPECT_EQ(Checked({"-e", "0"}), "");
  Stage("Operation_Mode=257\n");
  EXPECT_EQ(Checked({"-e", "0"}), "Interrupt_Delay_Timer=0");
  Stage("A=1\n");
  EXPECT_EQ(Checked({"-e", "5"}), "Interrupt_Delay_Timer=5");
  EXPECT_EQ(Checked({"-e", "256"}), "6");
}

// The order of the checks: the first option of the table that fails decides, wherever it is among the
// words.
TEST_F(HbaOptionsTest, TheFirstFailingCheckDecides) {
  UseModel({0x7122});
  const std::vector<std::string> all = {
      "-j", "x",   "-q", "x",   "-n", "x",   "-k", "x",   "-a", "x",   "-g", "x",   "-f", "x",
      "-p", "x",   "-b", "x",   "-y", "257", "-o", "241", "-w", "256", "-u", "256", "-x", "65536",
      "-e", "256", "-r", "256", "-l", "126", "-z", "1",   "-m", "x",   "-d", "x",   "-c", "x"};
  // Status of each option on this device, in the order of the table.
  const char* const statuses[] = {"6", "47", "35", "6", "35", "6", "35", "6",  "6",  "6", "6",
                                  "6", "6",  "35", "6", "35", "6", "35", "35", "35", "35"};
  std::vector<std::string> words = all;
  for (const char* const status : statuses) {
    EXPECT_EQ(Checked(words), status) << words.size();
    words.pop_back();
    words.pop_back();
  }
  EXPECT_TRUE(words.empty());
}

TEST_F(HbaOptionsTest, OptionsThatPassedAreDroppedWithOneThatFails) {
  EXPECT_EQ(Checked({"-u", "3", "-b", "maybe"}), "6");
  EXPECT_EQ(Checked({"-u", "3", "-b", "true"}), "Disable_BIOS=0 Login_Retry_Count=3");
}

TEST_F(HbaOptionsTest, TheFirstOfTwoEqualOptionsCounts) {
  EXPECT_EQ(Checked({"-u", "3", "--login-retry-count", "4"}), "Login_Retry_Count=3");
  EXPECT_EQ(Checked({"--LOGIN-RETRY-COUNT", "4", "-u", "3"}), "Login_Retry_Count=4");
}

}  // namespace
