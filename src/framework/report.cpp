#include "framework/report.h"

#include <cstring>

#include "framework/device_library/calls.h"
#include "runtime/debug_log.h"
#include "runtime/text.h"

Document::Document(Serializer& out, OutputMode mode, const char* structure, const char* message,
                   RebootField reboot)
    : out_(out) {
  out_.Open(mode);
  out_.BeginStructure(structure);
  if (reboot.place == RebootField::kAheadOfMessage) out_.WriteBoolField("Reboot Required", reboot.required);
  out_.WriteStringField("Message", message);
  if (reboot.place == RebootField::kBehindMessage) out_.WriteBoolField("Reboot Required", reboot.required);
  DebugLogLevel(kDebugTrace, "%s: Message=%s", structure, message);
}

Document::~Document() {
  out_.EndStructure();
  out_.Close();
}

void WriteReport(Serializer& out, OutputMode mode, const ReportFrame& frame, const ReportText& text,
                 RebootField reboot) {
  const Document document(out, mode, frame.structure, "Success", reboot);
  out.BeginField(frame.field);
  out.BeginList(kStructureList);
  out.BeginStructure(frame.list_structure);
  out.BeginField(frame.data_field);
  out.WriteFormatted(std::strlen(text.Text()), "%s", DropConversions(text.Text()).c_str());
  out.EndField();
  out.EndStructure();
  out.EndList();
  out.EndField();
}

void WriteReportError(Serializer& out, OutputMode mode, const ReportFrame& frame, const char* message,
                      RebootField reboot) {
  const Document document(out, mode, frame.structure, message, reboot);
  out.BeginField(frame.field);
  out.BeginList(kStructureList);
  out.EndList();
  out.EndField();
}

void WriteIdentifierList(Serializer& out, OutputMode mode, const char* structure, const char* field,
                         std::span<const std::string> identifiers) {
  out.Open(mode);
  out.BeginList(kStructureList);
  for (const std::string& identifier : identifiers) {
    out.BeginStructure(structure);
    out.WriteStringField(field, identifier.c_str());
    out.EndStructure();
  }
  out.EndList();
  out.Close();
}

bool IsRebootRequired(const char* class_name) {
  constexpr std::uint8_t kRequired = 1;
  std::uint8_t flag = kRequired;
  const LibraryStatus result = TORPI_IsRebootRequired(&flag);
  if (result == kLibrarySuccess) return flag == kRequired;
  DebugLogLevel(kDebugFailure, "%s: Get Reboot Required failed err=%u", class_name, result);
  return true;
}
