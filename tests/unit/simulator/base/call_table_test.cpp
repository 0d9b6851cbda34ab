#include "base/call_table.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

#include "support/unit_files.h"

namespace {

TEST(CallTable, NamesTheCallsOfTheInterface) {
  const std::string header = ContentOf(ZFC_SOURCE_DIR "/src/framework/device_library/calls.h");
  const std::regex declaration("(TORPI_\\w+)\\(");
  std::set<std::string> declared;
  for (std::sregex_iterator it(header.begin(), header.end(), declaration), end; it != end; ++it) {
    declared.insert((*it)[1]);
  }
  std::set<std::string> known;
  for (const lab::CallInfo& call : lab::kCalls) known.insert(call.name);
  EXPECT_EQ(known, declared);
}

}  // namespace
