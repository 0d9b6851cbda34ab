// The names that a report's document is made of, and the field that says whether a reboot is needed.
#pragma once

#include <cstdint>

// Names of a report: the result structure, the field that holds the list, the structure of the list's one
// element, and the element's field with the text.
struct ReportFrame {
  const char* structure = nullptr;
  const char* field = nullptr;
  const char* list_structure = nullptr;
  const char* data_field = "Data";
};

// Whether a document says that a reboot is needed, and at which place.
struct RebootField {
  enum Place : std::uint8_t { kAbsent, kBeforeMessage, kAfterMessage };

  Place place = kAbsent;
  bool required = false;
};

// That of a failed change.
inline constexpr RebootField kNoRebootNeeded = {RebootField::kBeforeMessage, false};
