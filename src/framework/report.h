// The documents that commands share: their frames, written once.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "framework/command_run.h"
#include "framework/report_frame.h"
#include "framework/report_text.h"

// One document with a "Message", from Open to Close: the constructor writes its head, the destructor its end.
// What the command writes in between are its own fields.
class Document {
 public:
  Document(CommandRun& run, const char* structure, const char* message, RebootField reboot = {});
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

 private:
  Serializer& out_;
};

// A field of a document that holds a list of structures: the constructor begins it, the destructor ends it.
class ListField {
 public:
  ListField(Serializer& out, const char* field);
  ~ListField();
  ListField(const ListField&) = delete;
  ListField& operator=(const ListField&) = delete;

 private:
  Serializer& out_;
};

// One structure of such a list, in the same manner.
class ListStructure {
 public:
  ListStructure(Serializer& out, const char* structure);
  ~ListStructure();
  ListStructure(const ListStructure&) = delete;
  ListStructure& operator=(const ListStructure&) = delete;

 private:
  Serializer& out_;
};

// The document of a report that succeeds, open at the field that takes the text: the constructor writes what
// comes before it, the destructor what follows.
class ReportDocument {
 public:
  ReportDocument(CommandRun& run, const ReportFrame& frame, RebootField reboot = {});
  ~ReportDocument();
  ReportDocument(const ReportDocument&) = delete;
  ReportDocument& operator=(const ReportDocument&) = delete;

  // Writes the text, once. It counts as a format without arguments (see DropConversions), so a percent sign
  // in device data can vanish.
  void Write(const ReportText& text);

 private:
  Serializer& out_;
  const Document document_;
  const ListField list_;
  const ListStructure element_;
};

// Writes the document of a success at once. A report without memory leaves its field empty.
void WriteReport(CommandRun& run, const ReportFrame& frame, const ReportText& text, RebootField reboot = {});

// Writes the document of a failure: the same frame with `message`, and an empty list in place of the text.
void WriteReportError(CommandRun& run, const ReportFrame& frame, const char* message,
                      RebootField reboot = {});

// One document that is a list of identifiers, each in a structure `structure` as its field `field`. The
// identifiers go out as they come, so a long list takes no memory.
class IdentifierList {
 public:
  IdentifierList(CommandRun& run, const char* structure, const char* field);
  ~IdentifierList();
  IdentifierList(const IdentifierList&) = delete;
  IdentifierList& operator=(const IdentifierList&) = delete;

  void Write(std::string_view identifier);

 private:
  Serializer& out_;
  std::string item_;  // the text before an identifier, then room for the identifier and the text after it
  std::size_t before_length_;
  std::string after_;
};

// Asks the library, outside any bracket, whether a change needs a reboot. When it cannot answer, one is
// assumed.
bool IsRebootRequired(CommandRun& run);
