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

ListField::ListField(Serializer& out, const char* field) : out_(out) {
  out_.BeginField(field);
  out_.BeginList(kStructureList);
}

ListField::~ListField() {
  out_.EndList();
  out_.EndField();
}

ListStructure::ListStructure(Serializer& out, const char* structure) : out_(out) {
  out_.BeginStructure(structure);
}

ListStructure::~ListStructure() {
  out_.EndStructure();
}

void WriteReport(Serializer& out, OutputMode mode, const ReportFrame& frame, const ReportText& text,
                 RebootField reboot) {
  const Document document(out, mode, frame.structure, "Success", reboot);
  const ListField list(out, frame.field);
  const ListStructure element(out, frame.list_structure);
  out.BeginField(frame.data_field);
  if (text.Allocated()) {
    out.WriteFormatted(std::strlen(text.Text()), "%s", DropConversions(text.Text()).c_str());
  }
  out.EndField();
}

void WriteReportError(Serializer& out, OutputMode mode, const ReportFrame& frame, const char* message,
                      RebootField reboot) {
  const Document document(out, mode, frame.structure, message, reboot);
  const ListField list(out, frame.field);
}

IdentifierList::IdentifierList(Serializer& out, OutputMode mode, const char* structure, const char* field)
    : out_(out), structure_(structure), field_(field) {
  out_.Open(mode);
  out_.BeginList(kStructureList);
}

IdentifierList::~IdentifierList() {
  out_.EndList();
  out_.Close();
}

void IdentifierList::Write(const std::string& identifier) {
  out_.WriteListItem(structure_, field_, identifier.c_str());
}

bool IsRebootRequired(const char* class_name) {
  constexpr std::uint8_t kRequired = 1;
  std::uint8_t flag = kRequired;  // also what holds when the library leaves it alone
  const LibraryStatus result = TORPI_IsRebootRequired(&flag);
  if (result == kLibrarySuccess) return flag == kRequired;
  DebugLogLevel(kDebugFailure, "%s: Get Reboot Required failed err=%u", class_name, result);
  return true;
}
