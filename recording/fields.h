// The fields of the device library's records, by their places. What no field names are the records' gaps.
#pragma once

#include <cstdint>
#include <span>

#include "recording/recording.h"

namespace recording {

// How a field is shown.
enum class Form : std::uint8_t {
  kHex,
  kNumber,   // little-endian, at most 8 bytes
  kText,     // up to its terminator
  kName,     // World Wide Name
  kVersion,  // numbers with points between them
};

// What a field gives away about the host that it comes from.
enum class Identity : std::uint8_t { kNone, kName, kSerial, kNqn, kHostId, kLunId };

struct Field {
  const char* name;
  std::uint16_t offset;
  std::uint16_t size;
  Form form;
  Identity identity = Identity::kNone;
};

// The fields of a record by ascending offset; none for a record of gaps alone. The addresses in a record are
// no fields. Defined for the records of recording.h.
template <class Record>
std::span<const Field> FieldsOf();

// The texts of a module's memory (SFF-8472, or SFF-8636 by the module's identifier).
std::span<const Field> FieldsOfModule(const SfpImage& image);

}  // namespace recording
