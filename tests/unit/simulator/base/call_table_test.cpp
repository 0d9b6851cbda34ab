#include "base/call_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace {

TEST(CallTable, NamesTheCallsOfTheInterface) {
  std::ifstream file(ZFC_SOURCE_DIR "/src/framework/device_library/calls.h");
  const std::string header{std::istreambuf_iterator<char>(file), {}};
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
