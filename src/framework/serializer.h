// Writes a command's document to standard output, as XML for the host's shell or as text for a person.
//
// The two forms of a command make the same calls in the same order; only this class makes them look
// different.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "framework/status.h"
#include "runtime/out_of_memory.h"

enum OutputMode : std::uint32_t {
  OUTPUT_NONE = 0,  // outside Open and Close
  OUTPUT_XML = 1,
  OUTPUT_CLI = 2,
};

enum ListKind : std::uint32_t { kStringList = 0, kIntList = 1, kBoolList = 2, kStructureList = 3 };

enum IntKind : std::uint32_t {
  kSigned32 = 0,
  kUnsigned32 = 1,
  kSigned64 = 2,
  kUnsigned64 = 3,
  kHexadecimal32 = 4,  // hexadecimal in text, signed decimal in XML
};

// A document that is open when the program ends without memory is ended: the fields, structures and lists
// that are open, then the document itself.
//
// Every operation prints straight through the C library and returns kSuccess, or kBadMode, having printed
// nothing, outside Open and Close. Nothing is escaped: the reading side takes values as they are.
class Serializer {
 public:
  Serializer() = default;
  Serializer(const Serializer&) = delete;
  Serializer& operator=(const Serializer&) = delete;
  virtual ~Serializer() = default;

  // Stores the mode, whatever it is, and begins the document.
  StatusCode Open(OutputMode mode);
  // Ends the document; a mode that is none stays.
  StatusCode Close();

  StatusCode BeginList(ListKind kind);  // kBadMode also for an unknown kind in XML
  StatusCode EndList();
  StatusCode WriteStringList(const std::vector<std::string>& values);
  StatusCode WriteIntList(const std::vector<std::int32_t>& values);
  StatusCode WriteBoolList(const std::vector<bool>& values);

  StatusCode BeginStructure(const char* name);
  StatusCode EndStructure();
  StatusCode BeginField(const char* name);
  StatusCode EndField();
  StatusCode WriteStringField(const char* name, const char* value);
  // An unknown kind shows the name without a value.
  StatusCode WriteIntField(const char* name, std::int64_t value, IntKind kind);
  StatusCode WriteBoolField(const char* name, bool value);

  // Formats at most `limit` characters and writes them as one string value. kMemoryError when the text's
  // memory cannot be had.
  [[gnu::format(printf, 3, 4)]] StatusCode WriteFormatted(std::size_t limit, const char* format, ...);

  // The text before and after the value of a list's item: a structure whose only field holds the value. Put
  // together once for a list, which can have millions of items.
  struct ItemFrame {
    std::string before;
    std::string after;
  };
  ItemFrame FrameOfItem(const char* structure, const char* field) const;

  // Writes a text that is complete.
  StatusCode WriteText(std::string_view text) const;

 private:
  // What can be open inside a document.
  enum class Part : std::uint8_t { kList, kStructure, kField };
  static constexpr std::size_t kMostOpen = 16;  // a third is in use

  // Prints with the format of the present mode; both take the same arguments.
  StatusCode Print(const char* xml_format, const char* cli_format, ...) const;

  // Count the part in or out when what begins or ends it was printed. Return `status`.
  StatusCode Began(StatusCode status, Part part);
  StatusCode Ended(StatusCode status, Part part);

  // The step of an end without memory.
  static void EndDocument(void* serializer);

  OutputMode mode_ = OUTPUT_NONE;
  std::uint32_t open_count_ = 0;
  Part open_[kMostOpen];  // from the outermost to the innermost
  EndStep end_document_;
};
