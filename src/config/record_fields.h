// Fields of a device record as a staged file holds them: written and read by one loop over a table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>

#include "config/staged_file.h"
#include "framework/status.h"

// The numbers that a field takes: up to a limit, or only those of a list.
struct NumberRule {
  std::uint32_t limit = std::numeric_limits<std::uint32_t>::max();
  std::span<const std::uint32_t> only = {};

  bool Allows(std::uint32_t number) const;
};

enum class FieldKind : std::uint8_t {
  kSigned,    // a number that is written as a signed 32-bit one
  kUnsigned,  // a number
  kName,      // a World Wide Name
  kText,      // a text in a field of its own, at most a terminated text of that width
};

struct RecordField {
  const char* key;
  std::size_t offset;
  std::size_t width;  // bytes; of a number 1, 2 or 4. A file's number is cut to it
  FieldKind kind = FieldKind::kUnsigned;
  NumberRule rule = {};
};

// Adds the record's values under the fields' keys. A text that a file cannot hold is left out.
void AddFieldValues(std::span<const RecordField> fields, const void* record, StagedValues& values);

// Stores the file's values in the record, in the order of the fields. A key that the file lacks leaves its
// field as it was; so does a name that is not complete. kInvalidParameter at the first number that its rule
// does not allow.
StatusCode ReadFieldValues(std::span<const RecordField> fields, const StagedFile& file, void* record);

// The same for one field, under another key than the table's.
void AddFieldValue(const RecordField& field, const std::string& key, const void* record,
                   StagedValues& values);
StatusCode ReadFieldValue(const RecordField& field, const std::string& key, const StagedFile& file,
                          void* record);

// True for a text that comes back from a staged file as it was: printable, without blanks and without "#".
bool IsStageable(std::string_view text);
