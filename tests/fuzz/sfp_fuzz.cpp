// The image of a pluggable module, whatever the module says, through the whole report of `dmi get` in both
// forms.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "framework/report.h"
#include "port/sfp/dmi_report.h"
#include "port/sfp/field_text.h"
#include "port/sfp/sfp_field.h"
#include "support/unit_command_run.h"

namespace {

constexpr std::size_t kReportBytes = 16384;

void Require(bool condition) {
  if (!condition) std::abort();
}

// A report in a buffer of this size.
std::string ReportOf(SfpImage image, std::size_t size) {
  ReportText text(size);
  AppendDmiReport(text, image);
  return text.Text();
}

void WriteDocuments(SfpImage image) {
  static std::FILE* const nowhere = std::fopen("/dev/null", "w");
  stdout = nowhere;
  ReportText text(kReportBytes);
  AppendDmiReport(text, image);
  for (const OutputMode mode : {OUTPUT_XML, OUTPUT_CLI}) {
    TestRun test({}, mode);
    WriteReport(test.run, {"DMIInformation", "Dmi Info", "DMIInfoList", "Dmi Data"}, text);
  }
}

// Any field at any place: the bytes past the image choose them.
void LookUp(SfpImage image, std::span<const std::uint8_t> choice) {
  if (choice.size() < 5) return;
  const auto offset = static_cast<std::uint16_t>(choice[0] << 8 | choice[1]);
  const auto size = static_cast<std::uint16_t>(choice[2] << 8 | choice[3]);
  const auto type = static_cast<SfpFieldType>(FIELD_BIT_LIST - 1 + choice[4] % 11);
  HexTextToInt(GetFieldText(image, {offset, size}, type));
  const std::string name(choice.begin() + 5, choice.end());
  HexTextToInt(name);
  GetFieldValue(image, name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy of its own: a read past its end is an error.
  const std::size_t limit = std::min(size, kSfpImageBytes);
  const std::vector<std::uint8_t> image(data, data + limit);

  const std::string report = ReportOf(image, kReportBytes);
  Require(report.rfind("Media Information:\n", 0) == 0 && report.back() == '\n');
  Require(report == ReportOf(image, 4 * kReportBytes));  // nothing was left out for want of room
  ReportOf(image, 1 + report.size() / 2);
  WriteDocuments(image);
  LookUp(image, {data + limit, size - limit});
  return 0;
}
