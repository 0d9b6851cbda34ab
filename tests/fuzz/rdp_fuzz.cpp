// The answer to a Read Diagnostic Parameters ELS, whatever the switch says, up to the documents of both
// forms.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "framework/report.h"
#include "port/rdp_decoder.h"
#include "support/unit_command_run.h"

namespace {

constexpr std::size_t kResponseBytes = 508;
constexpr std::size_t kReportBytes = 16384;

void Require(bool condition) {
  if (!condition) std::abort();
}

std::string Report(const std::vector<std::uint8_t>& response, std::size_t size) {
  ReportText text(size);
  bool is_cisco = false;
  TestRun test;
  ParseRDPDataBuffer(test.run, response, text, is_cisco);
  return text.Text();
}

void WriteDocuments(const std::vector<std::uint8_t>& response) {
  static std::FILE* const nowhere = std::fopen("/dev/null", "w");
  stdout = nowhere;
  for (const OutputMode mode : {OUTPUT_XML, OUTPUT_CLI}) {
    TestRun test({}, mode);
    ReportText text(kReportBytes);
    bool is_cisco = false;
    ParseRDPDataBuffer(test.run, response, text, is_cisco);
    WriteReport(test.run, {"RDPInformation", "Read Diagnostics Parameters Data", "RDPDataList", "RDPInfo"},
                text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy of its own: a read past its end is an error.
  const std::vector<std::uint8_t> response(data, data + std::min(size, kResponseBytes));
  const std::string whole = Report(response, 4 * kReportBytes);
  Require(whole.empty() || whole.back() == '\n');
  Require(whole.size() + 1 > kReportBytes || Report(response, kReportBytes) == whole);
  WriteDocuments(response);
  return 0;
}
