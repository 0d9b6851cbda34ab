// Reads the documents that zfcesxcli writes as XML, part by part.
//
// The program escapes nothing, so a text from a device can hold tags and what no XML reader takes. This
// reader knows the tags of the program's writer, their nesting and their line ends, and nothing else of XML.
// A text ends at the first closing tag that is followed by what the writer can write at that place, up to the
// next field or the next element of the list. What comes outside of documents, such as lines of the device
// library, is passed over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/json/window.h"

namespace zfc_json {

// The first line of every document.
inline constexpr std::string_view kDocumentHead = "<?xml version=\"1.0\"?><output xmlns:esxcli=\"znfc\">\n";

class DocumentReader {
 public:
  enum class Event {
    kDocument,
    kList,       // of structures
    kStructure,  // Name() is its type
    kField,      // Name() is its name. A value or a list follows, or nothing
    kString,     // Text() is the value: any bytes
    kInteger,    // Text() is a whole number
    kBoolean,    // Text() is "true" or "false"
    kEndField,
    kEndStructure,
    kEndList,
    kEndDocument,
    kEndInput,  // nothing follows
    kBroken,    // the document can't be followed: see Problem(). Nothing follows
  };

  explicit DocumentReader(Source& source) : window_(source) {}

  // The next part. Name() and Text() are those of the latest part.
  Event Next();

  std::string_view Name() const { return name_; }
  std::string_view Text() const { return text_; }

  // What is wrong with a broken document, with the byte at which it is, counted from 0.
  const std::string& Problem() const { return problem_; }

  // How many bytes other than white space were outside of documents, and the first of the bytes there.
  std::uint64_t OutsideBytes() const { return outside_bytes_; }
  const std::string& OutsideText() const { return outside_text_; }

 private:
  enum class Part : std::uint8_t { kDocument, kList, kStructure, kField };

  struct Open {
    Part part;
    bool has_content;        // of a document and of a field: nothing more can come in it
    std::string element;     // of a list: the type of its structures, once it has one
    std::size_t first_name;  // how many names_ there were when it began
  };

  Event FindDocument();
  Event InDocument();
  Event InList();
  Event InStructure();
  Event InField();
  Event ReadString();
  Event ReadScalar(std::string_view end, bool (*is_valid)(std::string_view), Event event);

  Event Begin(Event event, Part part);
  Event End(Event event, std::size_t length);
  Event BeginList();
  Event BeginStructure();
  Event Break(const char* expected, std::size_t offset = 0);
  Event BreakUnexpected(const char* expected);

  void NoteOutside(std::string_view bytes);
  bool NameAt(std::size_t offset, std::string_view& name);
  bool IsNewName(std::string_view name, std::size_t count) const;
  bool IsItem(std::size_t depth) const;
  bool FieldFits(std::size_t offset, std::size_t count);
  bool StructureFits(const Open& list, std::size_t offset, std::size_t count);
  bool FitsAfterField(std::size_t offset);
  bool EndsDocument(std::size_t offset);

  Window window_;
  std::size_t length_ = 0;          // of the latest part in the window
  std::vector<Open> open_;          // from the outermost to the innermost
  std::vector<std::string> names_;  // of all fields so far of the structures that are open
  std::string_view name_;
  std::string_view text_;
  std::string problem_;
  bool is_over_ = false;

  // A tag that EndsDocument has found ahead: its position, and whether it ends a document or begins one.
  std::uint64_t mark_ = 0;
  bool mark_is_end_ = false;

  std::uint64_t outside_bytes_ = 0;
  std::string outside_text_;
};

}  // namespace zfc_json
