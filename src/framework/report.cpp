#include "framework/report.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "framework/device_library/calls.h"
#include "runtime/text.h"

Document::Document(CommandRun& run, const char* structure, const char* message, RebootField reboot)
    : out_(run.out) {
  out_.Open(run.mode);
  out_.BeginStructure(structure);
  if (reboot.place == RebootField::kBeforeMessage) out_.WriteBoolField("Reboot Required", reboot.required);
  out_.WriteStringField("Message", message);
  if (reboot.place == RebootField::kAfterMessage) out_.WriteBoolField("Reboot Required", reboot.required);
  run.Trace("%s=%s", "Message", message);
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

ReportDocument::ReportDocument(CommandRun& run, const ReportFrame& frame, RebootField reboot)
    : out_(run.out),
      document_(run, frame.structure, "Success", reboot),
      list_(run.out, frame.field),
      element_(run.out, frame.list_structure) {
  out_.BeginField(frame.data_field);
}

ReportDocument::~ReportDocument() {
  out_.EndField();
}

void ReportDocument::Write(const ReportText& text) {
  out_.WriteFormatted(std::strlen(text.Text()), "%s", DropConversions(text.Text()).c_str());
}

void WriteReport(CommandRun& run, const ReportFrame& frame, const ReportText& text, RebootField reboot) {
  ReportDocument document(run, frame, reboot);
  if (text.Allocated()) document.Write(text);
}

void WriteReportError(CommandRun& run, const ReportFrame& frame, const char* message, RebootField reboot) {
  const Document document(run, frame.structure, message, reboot);
  const ListField list(run.out, frame.field);
}

IdentifierList::IdentifierList(CommandRun& run, const char* structure, const char* field) : out_(run.out) {
  out_.Open(run.mode);
  out_.BeginList(kStructureList);
  Serializer::ItemFrame frame = out_.FrameOfItem(structure, field);
  item_ = std::move(frame.before);
  before_length_ = item_.size();
  after_ = std::move(frame.after);
}

IdentifierList::~IdentifierList() {
  out_.EndList();
  out_.Close();
}

void IdentifierList::Write(std::string_view identifier) {
  const std::size_t length = before_length_ + identifier.size() + after_.size();
  if (item_.size() < length) {
    item_.erase(before_length_);
    item_.append(identifier).append(after_);
  } else {
    char* const text = item_.data();
    identifier.copy(text + before_length_, identifier.size());
    after_.copy(text + length - after_.size(), after_.size());
  }
  out_.WriteText({item_.data(), length});
}

bool IsRebootRequired(CommandRun& run) {
  constexpr std::uint8_t kRequired = 1;
  std::uint8_t flag = kRequired;  // also what holds when the library leaves it alone
  const LibraryStatus result = TORPI_IsRebootRequired(&flag);
  if (result == kLibrarySuccess) return flag == kRequired;
  run.LogFailure("Get Reboot Required failed err=%d", static_cast<int>(result));
  return true;
}
