#include "discovery/listing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/unit_command_run.h"
#include "support/unit_debug_log.h"
#include "support/unit_fake_library.h"
#include "support/unit_host_records.h"

namespace {

class Listing : public testing::Test {
 protected:
  Listing() {
    ResetLibrary();
    Library().adapters = host_.List();
  }

  StatusCode Open(const Words& words) {
    TestRun test(words);
    return OpenListing(test.run, list_);
  }

  HostRecords host_;
  const AdapterList* list_ = nullptr;
};

TEST_F(Listing, TakesTheListWhateverTheWords) {
  for (const Words& words : {Words{}, Words{""}, Words{"more", "help"}}) {
    list_ = nullptr;
    EXPECT_EQ(Open(words), kSuccess);
    EXPECT_EQ(list_, host_.List());
  }
}

TEST_F(Listing, AsksNothingForAHelpWord) {
  for (const char* const word : {"help", "/h", "/help", "-H", "-help", "/?", "?"}) {
    EXPECT_EQ(Open({word}), kHelpWord);
  }
  EXPECT_TRUE(Library().calls.empty());
}

TEST_F(Listing, NeedsAList) {
  Library().adapters = nullptr;
  EXPECT_EQ(Open({}), kHostNotFound);
  EXPECT_EQ(list_, nullptr);
}

TEST_F(Listing, LogsAMissingListAlone) {
  EXPECT_EQ(LoggedAt(kDebugFailure,
                     [&] {
                       Open({});
                       Open({"help"});
                     }),
            std::vector<std::string>{});
  Library().adapters = nullptr;
  EXPECT_EQ(LoggedAt(kDebugFailure, [&] { Open({}); }),
            std::vector<std::string>{"TestCmdsProcessor::CmdTestCommon: List is NULL"});
}

}  // namespace
