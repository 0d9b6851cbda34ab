#include "base/call_table.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <string>

#include "support/unit_files.h"
#include "unit/simulator/source_path.h"

namespace {

TEST(CallTable, NamesTheCallsOfTheInterface) {
  const std::string header = ContentOf(SourcePath("src/framework/device_library/calls.h"));
  const std::regex declaration("(TORPI_\\w+)\\(");
  std::set<std::string> declared;
  for (std::sregex_iterator it(header.begin(), header.end(), declaration), end; it != end; ++it) {
    declared.insert((*it)[1]);
  }
  std::set<std::string> known;
  for (const lab::CallInfo& call : lab::kCalls) known.insert(call.name);
  EXPECT_EQ(known, declared);
}

// What a faked answer of a call may be.
TEST(CallTable, KnowsWhatEachCallAnswers) {
  using lab::CallKind;
  const std::map<std::string, CallKind> others = {
      {"TORPI_GetAdapterList", CallKind::kPointer},
      {"TORPI_DiagnosticsReadWriteBufferTest", CallKind::kPointer},
      {"TORPI_doOptionROMUpdate", CallKind::kFlashUpdate},
      {"TORPI_UpdateSpecificFlashRegionFromFile", CallKind::kFlashUpdate},
      {"TORPI_UpdateAdapterFirmwareTableFromFile", CallKind::kFlashUpdate},
      {"TORPI_UpdateAdapterPEPCfgFromFile", CallKind::kFlashUpdate},
      {"TORPI_CheckOrindaPersonalityChangeOption", CallKind::kValue},
      {"TORPI_GetBfsConfigMode", CallKind::kValue},
      {"TORPI_CheckAdapterDPortOption", CallKind::kValue},
      {"TORPI_DiagnosticDPortTest", CallKind::kRecord},
      {"TORPI_DiagnosticsLoopBackTest", CallKind::kRecord},
  };
  for (const lab::CallInfo& call : lab::kCalls) {
    const auto other = others.find(call.name);
    EXPECT_EQ(call.kind, other != others.end() ? other->second : CallKind::kStatus) << call.name;
  }
}

}  // namespace
