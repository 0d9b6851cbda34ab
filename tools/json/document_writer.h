// Writes documents as JSON: one value a line.
//
// A document is an object with "structure", "message", "success", "rebootRequired", "fields" and "list"; what
// a document does not have is null. "fields" holds what a structure holds, by name; "list" the structures of
// a list. Structures in lists are objects with "structure" and "fields". docs/json.md has the whole shape.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/json/document_reader.h"
#include "tools/json/json_text.h"
#include "tools/json/sink.h"

namespace zfc_json {

struct WriterOptions {
  bool raw = true;      // reports have their text
  bool parsed = true;   // reports have their lines
  bool stream = false;  // each structure of a document that is a list is a value of its own
};

class DocumentWriter {
 public:
  DocumentWriter(const WriterOptions& options, Sink& sink) : options_(options), sink_(sink) {}

  // Takes the part that the reader is at. A document goes to the sink when it is complete.
  void Take(DocumentReader::Event event, const DocumentReader& reader);

  // What the complete document that was taken last says.
  bool Success() const { return is_list_ || message_ == "Success"; }
  bool RebootRequired() const { return reboot_required_.value_or(false); }

 private:
  using Event = DocumentReader::Event;

  struct Structure {
    bool has_fields = false;
    std::string latin1;  // the names of the fields whose bytes are no UTF-8, as the inside of a JSON array
  };

  void BeginDocument();
  void EndDocument();
  void BeginStructure(std::string_view name);
  void EndStructure();
  void BeginField(std::string_view name);
  void TakeValue(Event event, std::string_view value);
  void TakeVerdict(Event event, std::string_view value);
  void AppendText(std::string_view value);
  void AppendReport(std::string_view text, Encoding encoding);
  void AppendLatin1(const std::string& names);
  bool IsOuterStructure() const { return !is_list_ && structures_.size() == 1; }

  WriterOptions options_;
  Sink& sink_;

  std::string type_;     // of the document's structure, or of its list's
  std::string content_;  // the fields, or the elements of the list
  std::string latin1_;   // of the document's own structure
  bool is_list_ = false;
  bool has_structure_ = false;
  bool has_elements_ = false;          // of the innermost list
  std::vector<Structure> structures_;  // that are open
  std::string field_;
  bool has_value_ = false;  // of the field

  std::optional<std::string> message_;
  std::optional<bool> reboot_required_;
};

}  // namespace zfc_json
