#include "tools/json/document_writer.h"

#include <algorithm>
#include <iterator>

#include "tools/json/report_reader.h"

namespace zfc_json {
namespace {

// The fields that hold the text of a report.
constexpr std::string_view kReportFields[] = {"Data", "Dmi Data", "RDPInfo"};

// The fields of a document's structure that say how it went, the first before the second, and what is next.
constexpr std::string_view kMessageField = "Message";
constexpr std::string_view kVerdictField = "Test Result";
constexpr std::string_view kRebootField = "Reboot Required";

bool IsReport(std::string_view field) {
  return std::find(std::begin(kReportFields), std::end(kReportFields), field) != std::end(kReportFields);
}

const char* TextOf(bool value) {
  return value ? "true" : "false";
}

// Names are ASCII.
void AppendName(std::string& json, std::string_view name) {
  AppendJsonString(json, name, Encoding::kUtf8);
}

// A text, or null for an empty one.
void AppendOrNull(std::string& json, std::string_view text, Encoding encoding) {
  if (text.empty()) {
    json += "null";
  } else {
    AppendJsonString(json, text, encoding);
  }
}

void AppendReportLine(std::string& json, const ReportLine& line, Encoding encoding) {
  json += R"({"section":)";
  AppendOrNull(json, line.section, encoding);
  json += R"(,"group":)";
  AppendOrNull(json, line.group, encoding);
  if (line.label.empty()) {
    json += R"(,"text":)";
    AppendJsonString(json, line.value, encoding);
  } else {
    json += R"(,"label":)";
    AppendJsonString(json, line.label, encoding);
    json += R"(,"value":)";
    AppendJsonString(json, line.value, encoding);
    json += R"(,"unit":)";
    AppendOrNull(json, line.number.unit, encoding);
    json += R"(,"number":)";
    json += line.number.number.empty() ? "null" : line.number.number;
  }
  json += '}';
}

}  // namespace

void DocumentWriter::Take(Event event, const DocumentReader& reader) {
  switch (event) {
    case Event::kDocument:
      return BeginDocument();
    case Event::kList:
      if (structures_.empty()) is_list_ = true;
      has_value_ = true;
      has_elements_ = false;
      content_ += '[';
      if (options_.stream && is_list_ && structures_.empty()) content_.clear();
      return;
    case Event::kStructure:
      return BeginStructure(reader.Name());
    case Event::kField:
      return BeginField(reader.Name());
    case Event::kString:
    case Event::kInteger:
    case Event::kBoolean:
      return TakeValue(event, reader.Text());
    case Event::kEndField:
      if (!has_value_) content_ += "null";
      has_value_ = true;  // of a field around it
      return;
    case Event::kEndStructure:
      return EndStructure();
    case Event::kEndList:
      content_ += ']';
      return;
    case Event::kEndDocument:
      return EndDocument();
    case Event::kEndInput:
    case Event::kBroken:
      return;
  }
}

void DocumentWriter::BeginDocument() {
  type_.clear();
  content_.clear();
  latin1_.clear();
  is_list_ = has_structure_ = false;
  structures_.clear();
  message_.reset();
  reboot_required_.reset();
}

void DocumentWriter::EndDocument() {
  if (!(options_.stream && is_list_)) {
    std::string head = R"({"structure":)";
    AppendOrNull(head, type_, Encoding::kUtf8);
    head += R"(,"message":)";
    if (message_.has_value()) {
      AppendJsonString(head, *message_, EncodingOf(*message_));
    } else {
      head += "null";
    }
    head += R"(,"success":)";
    head += TextOf(Success());
    head += R"(,"rebootRequired":)";
    head += reboot_required_.has_value() ? TextOf(*reboot_required_) : "null";
    head += has_structure_ ? R"(,"fields":)" : R"(,"fields":null,"list":)";
    sink_.Write(head);
    sink_.Write(is_list_ || has_structure_ ? content_ : "null");
    sink_.Write(has_structure_ ? R"(,"list":null)" : "");
    content_.clear();
    AppendLatin1(latin1_);
    content_ += "}\n";
    sink_.Write(content_);
  }
  content_.clear();
  sink_.Flush();
}

void DocumentWriter::BeginStructure(std::string_view name) {
  structures_.emplace_back();
  if (type_.empty()) type_ = name;
  if (IsOuterStructure()) {
    has_structure_ = true;
    content_ += '{';
    return;
  }
  if (has_elements_) content_ += ',';
  content_ += R"({"structure":)";
  AppendName(content_, name);
  content_ += R"(,"fields":{)";
}

void DocumentWriter::EndStructure() {
  content_ += '}';
  if (IsOuterStructure()) {
    latin1_ = structures_.back().latin1;
  } else {
    AppendLatin1(structures_.back().latin1);
    content_ += '}';
  }
  structures_.pop_back();
  has_elements_ = true;
  if (options_.stream && is_list_ && structures_.empty()) {
    content_ += '\n';
    sink_.Write(content_);
    content_.clear();
    has_elements_ = false;
  }
}

void DocumentWriter::BeginField(std::string_view name) {
  Structure& structure = structures_.back();
  if (structure.has_fields) content_ += ',';
  structure.has_fields = true;
  AppendName(content_, name);
  content_ += ':';
  field_ = name;
  has_value_ = false;
}

void DocumentWriter::TakeValue(Event event, std::string_view value) {
  has_value_ = true;
  if (IsOuterStructure()) TakeVerdict(event, value);
  if (event == Event::kString) return AppendText(value);
  content_ += value;  // a whole number, true or false: JSON as it is
}

// What the fields of the document's own structure say about it as a whole.
void DocumentWriter::TakeVerdict(Event event, std::string_view value) {
  if (event == Event::kString && field_ == kMessageField) message_ = value;
  if (event == Event::kString && field_ == kVerdictField && !message_.has_value()) message_ = value;
  if (field_ != kRebootField || event == Event::kInteger) return;
  // A flash update has a text, which can also ask for a cold boot.
  if (value == "false") reboot_required_ = false;
  if (value == "true" || value == "Cold Boot Required") reboot_required_ = true;
}

void DocumentWriter::AppendText(std::string_view value) {
  const Encoding encoding = EncodingOf(value);
  if (encoding == Encoding::kLatin1) {
    std::string& names = structures_.back().latin1;
    if (!names.empty()) names += ',';
    AppendName(names, field_);
  }
  if (IsReport(field_)) {
    AppendReport(value, encoding);
  } else {
    AppendJsonString(content_, value, encoding);
  }
}

void DocumentWriter::AppendReport(std::string_view text, Encoding encoding) {
  content_ += '{';
  if (options_.raw) {
    content_ += R"("text":)";
    AppendJsonString(content_, text, encoding);
  }
  if (options_.parsed) {
    if (options_.raw) content_ += ',';
    content_ += R"("lines":[)";
    ReportReader report(text);
    ReportLine line;
    for (bool first = true; report.Next(line); first = false) {
      if (!first) content_ += ',';
      AppendReportLine(content_, line, encoding);
    }
    content_ += ']';
  }
  content_ += '}';
}

void DocumentWriter::AppendLatin1(const std::string& names) {
  if (names.empty()) return;
  content_ += R"(,"latin1":[)";
  content_ += names;
  content_ += ']';
}

}  // namespace zfc_json
