#include "tools/json/conversion.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace zfc_json {
namespace {

// What a text without any document is.
std::string ProblemOf(const std::string& outside) {
  constexpr std::size_t kRulerLength = 52;
  constexpr std::size_t kMostShown = 80;
  if (outside.find_first_not_of(" \t\r\n") == std::string::npos)
    return "no document: there is no output at all";
  if (outside.find(std::string(kRulerLength, '*')) != std::string::npos) {
    return "no document: this is the text form of a command. The XML form is needed: the word without 'cli'";
  }
  std::string_view shown = outside;
  shown = shown.substr(std::min(shown.find_first_not_of(" \t\r\n"), shown.size()));
  shown = shown.substr(0, std::min(shown.find_first_of("\r\n"), kMostShown));
  std::string quoted;
  AppendJsonString(quoted, shown, Encoding::kLatin1);
  return "no document, but " + quoted;
}

}  // namespace

Verdict Conversion::Result(bool reboot_status) const {
  if (!problem.empty()) return kNoDocument;
  if (!all_succeeded) return kFailed;
  return reboot_status && reboot_required ? kRebootRequired : kSucceeded;
}

Conversion Convert(Source& source, Sink& sink, const WriterOptions& options) {
  using Event = DocumentReader::Event;
  Conversion conversion;
  DocumentReader reader(source);
  DocumentWriter writer(options, sink);
  Event event = Event::kEndInput;
  do {
    event = reader.Next();
    writer.Take(event, reader);
    if (event != Event::kEndDocument) continue;
    ++conversion.documents;
    conversion.all_succeeded = conversion.all_succeeded && writer.Success();
    conversion.reboot_required = conversion.reboot_required || writer.RebootRequired();
  } while (event != Event::kEndInput && event != Event::kBroken);
  sink.Flush();
  if (event == Event::kBroken) {
    conversion.problem = "broken document: " + reader.Problem();
  } else if (conversion.documents == 0) {
    conversion.problem = ProblemOf(reader.OutsideText());
  }
  conversion.outside_bytes = reader.OutsideBytes();
  return conversion;
}

}  // namespace zfc_json
